#include "result_tables/limits/LimitsDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/limits/Limits.h"
#include "support/ForkedTest.h"
#include "support/LimitsTesting.h"
#include "support/Shell.h"
#include "support/SystemCallFailure.h"

namespace Kestrel::ResultTables {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::KilledBySignal;
using testing::StartsWith;
using TestSupport::SystemCallFailure;
using TestSupport::SystemCallFault;

constexpr auto s_bolt = TablePropertyLimitType::BoltNormalForce;

class LimitsDocument : public testing::Test {
 protected:
  [[nodiscard]] SimulationUnitId firstUnit() const { return m_file.units[0].unit->getID(); }

  void edit(fs::path const& document, double value) const {
    editLimits(document, m_file,
               [&](TablePropertiesData& limits) { limits.getLimit(firstUnit(), s_bolt)->setLimit(value); });
  }

  [[nodiscard]] double valueIn(fs::path const& document) const {
    return readLimitsContent(document).limitsOf(m_file).collection->getLimit(firstUnit(), s_bolt)->getLimit();
  }

  /// The error of an edit, empty when there is none.
  [[nodiscard]] std::string errorOfEditing(fs::path const& document, double value = 45.5) const {
    try {
      edit(document, value);
      return "";
    } catch (Error const& error) {
      return error.what();
    }
  }

  [[nodiscard]] std::string errorOfReading(fs::path const& document) const {
    try {
      (void)readLimits(document, m_file);
      return "";
    } catch (Error const& error) {
      return error.what();
    }
  }

  /// What an edit makes of a document; of none where it is empty.
  [[nodiscard]] std::string edited(std::string const& content, double value) const {
    TemporaryFolder const folder;
    if (!content.empty()) folder.write("limits", content);
    edit(folder.path() / "limits", value);
    return folder.read("limits");
  }

  ResultsFile const m_file = readResults("r.json", s_resultsOfThreeUnits);
  TemporaryFolder m_folder;
  fs::path const m_document = m_folder.path() / "limits";
};

/// Death tests of the same.
using LimitsDocumentDeathTest = LimitsDocument;

TEST_F(LimitsDocument, IsBesideTheResultsFile) {
  EXPECT_EQ(limitsDocumentOf("folder/r.json"), "folder/r.json.limits");
}

TEST_F(LimitsDocument, IsNotNeededForDefaults) {
  EXPECT_EQ(valueIn(m_document), 30.0);
  EXPECT_EQ(valueIn(m_folder.path() / "no folder" / "limits"), 30.0);
  EXPECT_THAT(m_folder.names(), ElementsAre());
}

TEST_F(LimitsDocument, MustExistToBeReadByName) {
  EXPECT_EQ(errorOfReading("/nowhere/limits"), "/nowhere/limits: cannot read: No such file or directory");
}

TEST_F(LimitsDocument, KeepsWhatWasSet) {
  edit(m_document, 45.5);
  EXPECT_EQ(valueIn(m_document), 45.5);
  EXPECT_THAT(m_folder.names(), ElementsAre("limits", "limits.lock"));
}

TEST_F(LimitsDocument, IsBroughtInStepWithTheUnitsOfTheFile) {
  edit(m_document, 45.5);
  auto const other = readResults("o.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11", "name": "new"},
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "renamed"}]})");
  auto const before = m_folder.read("limits");
  auto const limits = readLimits(m_document, other).collection;
  EXPECT_EQ(limits->getChildCount(), 32U);
  EXPECT_EQ(limits->getLimit(firstUnit(), s_bolt)->getLimit(), 45.5);
  EXPECT_EQ(limits->getLimit(other.units[0].unit->getID(), s_bolt)->getLimit(), 30.0);
  EXPECT_EQ(m_folder.read("limits"), before) << "in memory only";
}

TEST_F(LimitsDocument, StaysUntouchedWhenItIsDamaged) {
  auto const whole = edited("", 45.5);
  for (auto const& damaged :
       {std::string(), whole.substr(0, whole.size() / 2), whole + "x", std::string("[]")}) {
    m_folder.write("limits", damaged);
    EXPECT_THAT(errorOfReading(m_document), StartsWith(m_document.string() + ": byte "));
    EXPECT_EQ(errorOfEditing(m_document), errorOfReading(m_document));
    EXPECT_EQ(m_folder.read("limits"), damaged);
  }
}

TEST_F(LimitsDocument, MayBeATextForThoseWhoOnlyRead) {
  std::string const text =
      R"({"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 45.5}}})";
  m_folder.write("limits", text);
  EXPECT_EQ(valueIn(m_document), 45.5);
  EXPECT_EQ(readLimits(m_document, m_file).collection->getLimit(firstUnit(), s_bolt)->getLimit(), 45.5);
  EXPECT_EQ(errorOfEditing(m_document),
            m_document.string() +
                ": expected a limits document, found a text of limits, which limits import reads");
  EXPECT_EQ(m_folder.read("limits"), text);
  m_folder.write("limits", "\n{}");
  EXPECT_EQ(errorOfReading(m_document),
            m_document.string() + ": document: expected a member \"format\", found none");
}

TEST_F(LimitsDocument, IsNamedByWhatIsReadFromIt) {
  EXPECT_EQ(readLimitsContent(m_document).limitsOf(m_file).source, "") << "the defaults";
  editLimits(m_document, m_file, [](TablePropertiesData&) {});
  EXPECT_EQ(readLimitsContent(m_document).limitsOf(m_file).source, m_document);
  EXPECT_EQ(limitsIn(R"({"format": "limits", "version": 1})", "policy.json", m_file).source, "policy.json");
}

TEST_F(LimitsDocument, IsAnErrorWhenItExistsAndCannotBeRead) {
  fs::create_directory(m_document);
  EXPECT_EQ(errorOfReading(m_document), m_document.string() + ": cannot read: Is a directory");
  EXPECT_EQ(errorOfEditing(m_document), m_document.string() + ": cannot lock: Is a directory");
  EXPECT_EQ(errorOfEditing("/dev/null"),
            "/dev/null: cannot lock: expected a regular file, found a pipe or a device");
  EXPECT_EQ(errorOfReading(m_folder.write("file", "") / "limits"),
            m_folder.path().string() + "/file/limits: cannot read: Not a directory");
}

TEST_F(LimitsDocument, IsNotWrittenWhenTheChangeFails) {
  edit(m_document, 45.5);
  auto const before = m_folder.read("limits");
  auto const fail = [&](TablePropertiesData& limits) {
    limits.getLimit(firstUnit(), s_bolt)->setLimit(1.0);
    throw std::runtime_error("no");
  };
  EXPECT_THROW(editLimits(m_document, m_file, fail), std::runtime_error);
  EXPECT_EQ(m_folder.read("limits"), before);
  EXPECT_EQ(errorOfEditing(m_document), "") << "the lock has ended";
}

TEST_F(LimitsDocument, HasOneLockUnderAllItsNames) {
  fs::create_directory(m_folder.path() / "folder");
  fs::create_symlink("folder/limits", m_folder.path() / "link");
  edit(m_folder.path() / "link", 45.5);
  EXPECT_TRUE(fs::is_symlink(m_folder.path() / "link"));
  EXPECT_EQ(valueIn(m_folder.path() / "folder/limits"), 45.5);
  EXPECT_THAT(m_folder.names(), ElementsAre("folder", "link"));
  EXPECT_THAT(m_folder.names("folder"), ElementsAre("limits", "limits.lock"));
}

TEST_F(LimitsDocument, IsTheOldOneOrTheNewOneWhicheverSystemCallFails) {
  auto const oldContent = edited("", 45.5);
  auto const newContent = edited(oldContent, 46.5);
  edit(m_document, 45.5);
  std::set<std::string> failedCalls;
  for (auto const& fault : {SystemCallFault{.error = ENOSPC}, SystemCallFault{.error = EIO},
                            SystemCallFault{.error = EINTR}, SystemCallFault{.error = EIO, .lasts = true}}) {
    for (std::size_t successes = 0;; ++successes) {
      m_folder.write("limits", oldContent);
      auto failure = std::make_unique<SystemCallFailure>(
          SystemCallFault{.successes = successes, .error = fault.error, .lasts = fault.lasts});
      auto const error = errorOfEditing(m_document, 46.5);
      char const* const failed = failure->failedCall();
      failure.reset();
      bool const isReplaced = m_folder.read("limits") == newContent;
      EXPECT_TRUE(isReplaced || m_folder.read("limits") == oldContent) << failed;
      EXPECT_TRUE(isReplaced || !error.empty()) << failed;
      // What fails for good cannot remove the new file that it could not finish.
      EXPECT_TRUE(fault.lasts || m_folder.names() == std::vector<std::string>({"limits", "limits.lock"}))
          << failed;
      EXPECT_EQ(errorOfEditing(m_document, 45.5), "") << failed << ": the lock has ended";
      if (failed == nullptr) break;
      failedCalls.insert(failed);
    }
  }
  EXPECT_THAT(failedCalls, ElementsAre("close", "fchmod", "fchown", "flock", "fstat", "fsync", "mkostemp",
                                       "open", "read", "rename", "write"));
}

TEST_F(LimitsDocument, IsWrittenInAsManyStepsAsTheSystemLikes) {
  SystemCallFailure const failure({.longestWrite = 1});
  edit(m_document, 46.5);
  EXPECT_EQ(m_folder.read("limits"), edited("", 46.5));
}

TEST_F(LimitsDocumentDeathTest, IsTheOldOneOrTheNewOneWhereverTheProcessIsKilled) {
  auto const oldContent = edited("", 45.5);
  auto const newContent = edited(oldContent, 46.5);
  constexpr std::size_t callsOfAnEdit = 18;
  std::size_t replaced = 0;
  for (std::size_t successes = 0; successes < callsOfAnEdit; ++successes) {
    m_folder.write("limits", oldContent);
    auto const editAndDie = [&] {
      SystemCallFailure const failure({.successes = successes, .kills = true});
      edit(m_document, 46.5);
    };
    EXPECT_EXIT(editAndDie(), KilledBySignal(SIGKILL), "") << successes;
    auto const content = m_folder.read("limits");
    if (content == newContent) ++replaced;
    EXPECT_EQ(content, replaced > 0 ? newContent : oldContent) << successes;
    EXPECT_EQ(errorOfEditing(m_document, 45.5), "") << "the lock has ended with its process";
  }
  EXPECT_EQ(replaced, 4U);
}

TEST_F(LimitsDocumentDeathTest, StaysUntouchedWhenTheDiskIsFull) {
  edit(m_document, 45.5);
  auto const before = m_folder.read("limits");
  auto const editTooMuch = [&] {
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    rlimit const limit{1000, 1000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    exitWith(errorOfEditing(m_document, 46.5) == m_document.string() + ": cannot write: File too large");
  };
  EXPECT_EXIT(editTooMuch(), ExitedWithCode(0), "");
  EXPECT_EQ(m_folder.read("limits"), before);
  EXPECT_THAT(m_folder.names(), ElementsAre("limits", "limits.lock"));
}

TEST_F(LimitsDocumentDeathTest, StaysUntouchedInAFolderThatMayNotBeWritten) {
  edit(m_document, 45.5);
  auto const before = m_folder.read("limits");
  fs::permissions(m_document, fs::perms{0666});
  fs::permissions(m_folder.path(), fs::perms{0555});
  auto const expectError = [&](std::string const& error) {
    becomeNobody();
    exitWith(valueIn(m_document) == 45.5 && errorOfEditing(m_document, 46.5) == error);
  };
  EXPECT_EXIT(expectError(m_document.string() + ": cannot write: Permission denied"), ExitedWithCode(0), "");
  fs::remove(m_document.string() + ".lock");
  EXPECT_EXIT(expectError(m_document.string() + ".lock: cannot lock: Permission denied"), ExitedWithCode(0),
              "");
  fs::permissions(m_folder.path(), fs::perms{0700});
  EXPECT_EQ(m_folder.read("limits"), before);
  EXPECT_THAT(m_folder.names(), ElementsAre("limits"));
}

TEST_F(LimitsDocumentDeathTest, IsAnErrorWhenItMayNotBeReadOrWritten) {
  edit(m_document, 45.5);
  fs::permissions(m_folder.path(), fs::perms{0777});
  fs::permissions(m_document, fs::perms{0});
  auto const read = [&] {
    becomeNobody();
    exitWith(errorOfReading(m_document) == m_document.string() + ": cannot read: Permission denied" &&
             errorOfEditing(m_document) == errorOfReading(m_document));
  };
  EXPECT_EXIT(read(), ExitedWithCode(0), "");
  fs::permissions(m_document, fs::perms{0444});
  auto const write = [&] {
    becomeNobody();
    exitWith(errorOfEditing(m_document, 46.5) == m_document.string() + ": cannot write: Permission denied");
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
  EXPECT_EQ(valueIn(m_document), 45.5);
}

}  // namespace
}  // namespace Kestrel::ResultTables
