// A study in a file when the system refuses something: each system call of each deed fails once, and once
// with all that follow. The study is then as it was before or as it is to be, and the message is one line
// that says what to do.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "result_tables/base/Error.h"
#include "result_tables/study/Study.h"
#include "support/SystemCallFailure.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

using testing::AnyOf;
using testing::Eq;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using TestSupport::SystemCallFailure;
using TestSupport::SystemCallFault;

/// A run of some sections, of which each has more values than a page of a database holds.
RunData genRun(std::string const& name, std::string const& content) {
  RunData data;
  data.run.name = name;
  data.run.file = name + ".json";
  data.run.contentDigest = content;
  auto& section = data.sections.emplace_back();
  section.family = MaxValueGroupContainer::DataType::Bolts;
  section.name = content;
  section.columns.push_back({"ClampNormalForce", "N", ColumnLimit{30.0, "N"}, {}, 0.5});
  section.elementCount = 200;
  for (std::uint32_t i = 0; i < section.elementCount; ++i) {
    data.elements.push_back({0, "", "Bolt " + std::to_string(i), 0});
    data.values.push_back({i, 0, 1.5 * i, i, std::nullopt, 1, 0, true, false});
  }
  data.run.valueCount = data.values.size();
  return data;
}

/// Runs with their contents, which are read whole: what is not whole is an `Error`.
std::string contentOf(std::string const& file) {
  if (!std::filesystem::exists(file) || std::filesystem::file_size(file) == 0) return "";
  Study const study(file, DatabaseAccess::write);
  std::string soundness;
  study.database().query("PRAGMA integrity_check", {},
                         [&](DatabaseRow const& row) { soundness += row.text(0); });
  EXPECT_EQ(soundness, "ok");
  std::string content;
  for (auto const& run : study.runs())
    content += run.name + "=" + study.read(run.name).sections.front().name + " ";
  return content;
}

struct Deed {
  std::function<void(std::string const& file)> act;
  std::string before;  ///< what `contentOf` says where it has not been done
  std::string after;
};

std::map<std::string, Deed> deeds() {
  auto const study = [](std::string const& file) { return Study(file, DatabaseAccess::write); };
  return {
      {"make", {[=](auto const& file) { study(file).add(genRun("a", "A")); }, "", "a=A "}},
      {"add", {[=](auto const& file) { study(file).add(genRun("b", "B")); }, "a=A ", "a=A b=B "}},
      {"replace", {[=](auto const& file) { study(file).add(genRun("a", "B")); }, "a=A ", "a=B "}},
      {"remove", {[=](auto const& file) { study(file).remove({"a"}); }, "a=A ", ""}},
      {"list",
       {[](auto const& file) { static_cast<void>(Study(file, DatabaseAccess::read).runs()); }, "a=A ",
        "a=A "}},
  };
}

class StudyFailureTest : public testing::TestWithParam<std::string> {
 protected:
  /// Does the deed with a fault, and says whether that was reached.
  bool failsAt(Deed const& deed, SystemCallFault const& fault) {
    auto const file = prepare(deed);
    auto const message = tryIt(deed, file, fault);
    if (!m_failedCall) return false;
    SCOPED_TRACE(testing::Message() << m_failedCall << " after " << fault.successes
                                    << " calls: " << message.value_or("done"));
    if (message) {
      EXPECT_THAT(*message, StartsWith(file + ": "));
      EXPECT_THAT(*message, Not(HasSubstr("\n")));
      EXPECT_THAT(*message, AnyOf(HasSubstr("try again"), HasSubstr("take a copy that is not")));
      EXPECT_THAT(contentOf(file), AnyOf(Eq(deed.before), Eq(deed.after)));
    } else {
      EXPECT_EQ(contentOf(file), deed.after);
    }
    return true;
  }

 private:
  [[nodiscard]] std::string prepare(Deed const& deed) const {
    auto const folder = m_folder.path() / "study";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    auto file = (folder / "study.db").string();
    auto const original = (m_folder.path() / "original.db").string();
    if (!std::filesystem::exists(original)) Study(original, DatabaseAccess::write).add(genRun("a", "A"));
    if (!deed.before.empty()) std::filesystem::copy_file(original, file);
    return file;
  }

  std::optional<std::string> tryIt(Deed const& deed, std::string const& file, SystemCallFault const& fault) {
    std::optional<std::string> message;
    SystemCallFailure const failure(fault);
    try {
      deed.act(file);
    } catch (Error const& error) {
      message = error.what();
    }
    m_failedCall = failure.failedCall();
    return message;
  }

  TemporaryFolder m_folder;
  char const* m_failedCall = nullptr;
};

TEST_P(StudyFailureTest, LeavesTheOldStateOrTheNewOne) {
  auto const deed = deeds().at(GetParam());
  for (auto const& fault : {SystemCallFault{.error = ENOSPC}, SystemCallFault{.error = EIO},
                            SystemCallFault{.error = EIO, .lasts = true}}) {
    std::size_t successes = 0;
    while (failsAt(deed, {.successes = successes, .error = fault.error, .lasts = fault.lasts})) ++successes;
    EXPECT_GT(successes, 20U);
  }
}

INSTANTIATE_TEST_SUITE_P(Deeds, StudyFailureTest, testing::Values("make", "add", "replace", "remove", "list"),
                         [](auto const& deed) { return deed.param; });

}  // namespace
}  // namespace Kestrel::ResultTables
