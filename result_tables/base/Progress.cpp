#include "result_tables/base/Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

using Clock = std::chrono::steady_clock;

class Progress::Line {
 public:
  Line(std::size_t files, std::chrono::milliseconds moment)
      : m_files(files), m_painter([this, moment](std::stop_token const& stop) { paint(stop, moment); }) {}

  void countOne() {
    std::scoped_lock const lock(m_mutex);
    ++m_done;
  }

 private:
  void paint(std::stop_token const& stop, std::chrono::milliseconds moment) {
    constexpr std::chrono::milliseconds interval(250);
    auto const begin = Clock::now();
    std::size_t width = 0;
    std::unique_lock lock(m_mutex);
    for (auto next = begin + moment; !m_wake.wait_until(lock, stop, next, [] { return false; });
         next += interval) {
      if (stop.stop_requested()) break;
      auto const seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin).count();
      auto const text = tr("{} of {} files, {} s", m_done, m_files, seconds);
      width = displayWidth(text);
      fmt::print(stderr, "\r{}", text);
    }
    if (width > 0) fmt::print(stderr, "\r{:{}}\r", "", width);
  }

  std::size_t const m_files;
  std::size_t m_done = 0;
  std::mutex m_mutex;
  std::condition_variable_any m_wake;
  std::jthread m_painter;  // last, as it uses the others
};

Progress::Progress(std::size_t files, std::chrono::milliseconds moment) {
  if (::isatty(STDERR_FILENO) != 0) m_line = std::make_unique<Line>(files, moment);
}

Progress::~Progress() = default;

void Progress::countOne() {
  if (m_line) m_line->countOne();
}

}  // namespace Kestrel::ResultTables
