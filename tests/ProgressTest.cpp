#include "result_tables/base/Progress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <array>
#include <thread>

namespace Kestrel::ResultTables {
namespace {

/// While it lives, standard error is a terminal.
class Terminal {
 public:
  Terminal() : m_saved(::dup(STDERR_FILENO)) {
    EXPECT_EQ(::openpty(&m_master, &m_slave, nullptr, nullptr, nullptr), 0);
    ::dup2(m_slave, STDERR_FILENO);
  }
  Terminal(Terminal const&) = delete;
  Terminal& operator=(Terminal const&) = delete;
  ~Terminal() {
    ::dup2(m_saved, STDERR_FILENO);
    for (int const descriptor : {m_saved, m_master, m_slave}) ::close(descriptor);
  }

  /// What has been shown on it since the last call; waits for something.
  [[nodiscard]] std::string read() const {
    std::array<char, 4096> buffer{};
    auto const count = ::read(m_master, buffer.data(), buffer.size());
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

 private:
  int m_saved;
  int m_master = -1;
  int m_slave = -1;
};

TEST(Progress, IsALineThatIsGoneInTheEnd) {
  Terminal const terminal;
  {
    Progress progress(7, std::chrono::milliseconds(1));
    EXPECT_EQ(terminal.read(), "\r0 of 7 files, 0 s");
    std::thread([&progress] { progress.countOne(); }).join();
    auto shown = terminal.read();
    while (shown.find("1 of 7") == shown.npos) shown = terminal.read();
    EXPECT_THAT(shown, testing::MatchesRegex("\r1 of 7 files, [0-9]+ s"));
  }
  EXPECT_THAT(terminal.read(), testing::MatchesRegex("(\r1 of 7 files, [0-9]+ s)?\r +\r"));
}

TEST(Progress, IsNotShownForAMomentsWork) {
  Terminal const terminal;
  { Progress(7).countOne(); }
  ASSERT_EQ(::write(STDERR_FILENO, "end", 3), 3);
  EXPECT_EQ(terminal.read(), "end");
}

}  // namespace
}  // namespace Kestrel::ResultTables
