#include "result_tables/base/File.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "result_tables/base/Error.h"
#include "support/ForkedTest.h"
#include "support/MemoryLimit.h"
#include "support/SystemCallFailure.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::UnorderedElementsAre;
using TestSupport::SystemCallFailure;

std::string allBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

std::string errorOfReading(fs::path const& path) {
  try {
    auto const text = readFile(path);
    return "no error, read " + text;
  } catch (Error const& error) {
    return error.what();
  }
}

std::string errorOfWriting(fs::path const& path, std::string_view text = "new") {
  try {
    writeFile(path, text);
    return "no error";
  } catch (Error const& error) {
    return error.what();
  }
}

class FileTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path path(std::string const& name) const { return m_folder.path() / name; }

  TemporaryFolder m_folder;
};

using ReadFile = FileTest;
using FileLockTest = FileTest;
using WriteFile = FileTest;
using FileDeathTest = FileTest;

TEST_F(ReadFile, GivesEveryByte) {
  EXPECT_EQ(readFile(m_folder.write("bytes", allBytes())), allBytes());
  EXPECT_EQ(readFile(m_folder.write("empty", "")), "");
}

TEST_F(ReadFile, GivesTheWholeOfWhatDoesNotTellItsSize) {
  EXPECT_THAT(readFile("/proc/self/status"), testing::HasSubstr("\nVmHWM:"));
  EXPECT_EQ(readFile("/dev/null"), "");

  std::string const text(300'000, 'x');
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  auto writer = std::async(std::launch::async, [&] { writeFile(path("pipe"), text); });
  EXPECT_EQ(readFile(path("pipe")), text);
  writer.get();
}

TEST_F(ReadFile, FailsWithNameAndReason) {
  auto const folder = m_folder.path().string();
  m_folder.write("file", "");
  EXPECT_EQ(errorOfReading(path("none")), folder + "/none: cannot read: No such file or directory");
  EXPECT_EQ(errorOfReading(folder), folder + ": cannot read: Is a directory");
  EXPECT_EQ(errorOfReading(path("file/x")), folder + "/file/x: cannot read: Not a directory");
  EXPECT_EQ(errorOfReading(path("two\nlines\xFF")),
            folder + "/two␊lines\uFFFD: cannot read: No such file or directory");
  EXPECT_EQ(errorOfReading(""), ": cannot read: No such file or directory");
}

TEST_F(ReadFile, TellsAFileThatDoesNotExistFromOneThatCannotBeRead) {
  EXPECT_EQ(readFileIfExists(m_folder.write("file", "text")), "text");
  EXPECT_EQ(readFileIfExists(m_folder.write("empty", "")), "");
  EXPECT_EQ(readFileIfExists(path("none")), std::nullopt);
  EXPECT_EQ(readFileIfExists(path("no folder/none")), std::nullopt);
  EXPECT_EQ(readFileIfExists(path(std::string(256, 'x'))), std::nullopt);
  fs::create_symlink("none", path("link to nothing"));
  EXPECT_EQ(readFileIfExists(path("link to nothing")), std::nullopt);
  EXPECT_THROW((void)readFileIfExists(m_folder.path()), Error);
  EXPECT_THROW((void)readFileIfExists(path("file/none")), Error);
}

TEST_F(ReadFile, FollowsLinksToTheLastOne) {
  fs::create_directory(path("folder"));
  fs::create_symlink("folder/link", path("first"));
  fs::create_symlink("file", path("folder/link"));
  fs::create_symlink(path("first"), path("absolute"));
  EXPECT_EQ(followLinks(path("absolute")), path("folder/file"));
  EXPECT_EQ(followLinks(path("folder/file")), path("folder/file"));
  EXPECT_EQ(followLinks("none"), "none");
}

TEST_F(WriteFile, MakesANewFileWithTheUsualPermissions) {
  auto const oldMask = ::umask(027);
  writeFile(path("new"), allBytes());
  ::umask(oldMask);
  EXPECT_EQ(m_folder.read("new"), allBytes());
  EXPECT_EQ(fs::status(path("new")).permissions(), fs::perms{0640});
  EXPECT_THAT(m_folder.names(), ElementsAre("new"));
}

TEST_F(WriteFile, ReplacesTheWholeContentAndKeepsThePermissions) {
  m_folder.write("file", "a much longer old content");
  fs::permissions(path("file"), fs::perms{0604});
  writeFile(path("file"), "new");
  EXPECT_EQ(m_folder.read("file"), "new");
  EXPECT_EQ(fs::status(path("file")).permissions(), fs::perms{0604});
  EXPECT_THAT(m_folder.names(), ElementsAre("file"));
}

TEST_F(WriteFile, KeepsTheOwnerAndTheGroupWhenTheUserMayGiveFilesAway) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs the powers of root";
  m_folder.write("file", "old");
  ASSERT_EQ(::chown(path("file").c_str(), 65534, 4321), 0);
  fs::permissions(path("file"), fs::perms{0640});
  writeFile(path("file"), "new");
  struct stat status {};
  ASSERT_EQ(::stat(path("file").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 65534U);
  EXPECT_EQ(status.st_gid, 4321U);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(WriteFile, LeavesTheOldFileWholeForThoseWhoStillReadIt) {
  m_folder.write("file", "old");
  fs::create_hard_link(path("file"), path("still reading"));
  writeFile(path("file"), "new");
  EXPECT_EQ(m_folder.read("still reading"), "old");
}

TEST_F(WriteFile, TakesATextPartByPart) {
  m_folder.write("file", "old");
  writeFile(path("file"), [&](WritePart const& write) {
    write("new ");
    EXPECT_EQ(m_folder.read("file"), "old");
    write("text");
  });
  EXPECT_EQ(m_folder.read("file"), "new text");
}

TEST_F(WriteFile, LeavesTheOldFileWhereThePartsEndWithAnError) {
  m_folder.write("file", "old");
  auto const fail = [&](WritePart const& write) {
    write("new");
    throw Error("no more");
  };
  EXPECT_THROW(writeFile(path("file"), fail), Error);
  EXPECT_THROW(writeFile(path("other"), fail), Error);
  EXPECT_EQ(m_folder.read("file"), "old");
  EXPECT_EQ(m_folder.names(), std::vector<std::string>{"file"});
}

TEST_F(WriteFile, FollowsSymbolicLinks) {
  fs::create_directory(path("folder"));
  m_folder.write("folder/file", "old");
  fs::create_symlink("folder/file", path("link"));
  fs::create_symlink("link", path("link to link"));
  writeFile(path("link to link"), "new");
  EXPECT_EQ(m_folder.read("folder/file"), "new");
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_TRUE(fs::is_symlink(path("link to link")));
  EXPECT_THAT(m_folder.names("folder"), ElementsAre("file"));
}

TEST_F(WriteFile, MakesTheFileThatALinkLeadsTo) {
  fs::create_directory(path("folder"));
  fs::create_symlink("folder/file", path("relative"));
  writeFile(path("relative"), "one");
  EXPECT_EQ(m_folder.read("folder/file"), "one");
  fs::create_symlink(path("folder/other"), path("absolute"));
  writeFile(path("absolute"), "two");
  EXPECT_EQ(m_folder.read("folder/other"), "two");
}

TEST_F(WriteFile, RefusesLinksThatLeadNowhere) {
  fs::create_symlink("b", path("a"));
  fs::create_symlink("a", path("b"));
  EXPECT_EQ(errorOfWriting(path("a")),
            path("a").string() + ": cannot write: Too many levels of symbolic links");
  EXPECT_TRUE(fs::is_symlink(path("a")));
  fs::create_symlink("none/file", path("c"));
  EXPECT_EQ(errorOfWriting(path("c")),
            path("none/file").string() + ": cannot write: No such file or directory");
  EXPECT_THAT(m_folder.names(), UnorderedElementsAre("a", "b", "c"));
}

TEST_F(WriteFile, FailsWithNameAndReason) {
  auto const folder = m_folder.path().string();
  m_folder.write("file", "old");
  EXPECT_EQ(errorOfWriting(path("none/x")), folder + "/none/x: cannot write: No such file or directory");
  EXPECT_EQ(errorOfWriting(path("file/x")), folder + "/file/x: cannot write: Not a directory");
  EXPECT_EQ(errorOfWriting(folder), folder + ": cannot write: Is a directory");
  EXPECT_EQ(errorOfWriting(path("no\nne/x")), folder + "/no␊ne/x: cannot write: No such file or directory");
  EXPECT_EQ(errorOfWriting(path(std::string(256, 'x'))),
            folder + "/" + std::string(256, 'x') + ": cannot write: File name too long");
  EXPECT_THAT(m_folder.names(), ElementsAre("file"));
  EXPECT_EQ(m_folder.read("file"), "old");
}

TEST_F(WriteFile, WritesToDevicesDirectly) {
  EXPECT_EQ(errorOfWriting("/dev/full"), "/dev/full: cannot write: No space left on device");
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  writeFile("/dev/null", "new");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(WriteFile, WritesToPipesDirectly) {
  std::string const text(300'000, 'x');
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  auto reader = std::async(std::launch::async, [&] { return readFile(path("pipe")); });
  writeFile(path("pipe"), text);
  EXPECT_EQ(reader.get(), text);
  EXPECT_TRUE(fs::is_fifo(path("pipe")));
}

TEST_F(WriteFile, WritesToAPipeThatHasNoNameOfItsOwn) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  writeFile("/proc/self/fd/" + std::to_string(ends[1]), "new");
  ::close(ends[1]);
  EXPECT_EQ(readFile("/proc/self/fd/" + std::to_string(ends[0])), "new");
  ::close(ends[0]);
}

TEST_F(WriteFile, ReportsEachFailureOfTheSystemAndLeavesTheOldFileOrTheNewOne) {
  std::vector<std::string> failedCalls;
  for (std::size_t successes = 0;; ++successes) {
    m_folder.write("file", "old");
    auto const failure = std::make_unique<SystemCallFailure>(
        TestSupport::SystemCallFault{.successes = successes, .error = ENOSPC});
    auto const error = errorOfWriting(path("file"));
    if (failure->failedCall() == nullptr) {
      EXPECT_EQ(error, "no error");
      break;
    }
    failedCalls.emplace_back(failure->failedCall());
    auto const isReplaced = m_folder.read("file") == "new";
    if (!isReplaced) {
      EXPECT_EQ(m_folder.read("file"), "old") << failedCalls.back();
      EXPECT_EQ(error, path("file").string() + ": cannot write: No space left on device")
          << failedCalls.back();
    }
    EXPECT_THAT(m_folder.names(), ElementsAre("file")) << failedCalls.back();
  }
  // The last three are those of the folder.
  EXPECT_THAT(failedCalls, ElementsAre("mkostemp", "fchown", "write", "fchmod", "fsync", "close", "rename",
                                       "open", "fsync", "close"));
}

TEST_F(WriteFile, SaysWhenTheNewContentStandsButItsNameMayNotBeStored) {
  m_folder.write("file", "old");
  SystemCallFailure const failure({.successes = 8, .error = EIO});
  EXPECT_EQ(errorOfWriting(path("file")),
            path("file").string() + ": cannot make sure that the new content is stored: Input/output error");
  EXPECT_EQ(m_folder.read("file"), "new");
}

TEST_F(WriteFile, SaysTheSameWhenTheFolderCannotBeOpened) {
  SystemCallFailure const failure({.successes = 6, .error = EMFILE});
  EXPECT_EQ(errorOfWriting(path("file")),
            path("file").string() + ": cannot make sure that the new content is stored: Too many open files");
  EXPECT_STREQ(failure.failedCall(), "open");
}

TEST_F(WriteFile, LeavesTheMaskOfNewFilesAsItIs) {
  auto const old = ::umask(0002);
  writeFile(path("file"), "new");
  EXPECT_EQ(::umask(old), 0002U);
  EXPECT_EQ(fs::status(path("file")).permissions(), fs::perms(0664));
}

TEST_F(WriteFile, GoesOnAfterInterruptionsAndShortWrites) {
  for (std::size_t successes = 0; successes < 10; ++successes) {
    m_folder.write("file", "old");
    SystemCallFailure const failure({.successes = successes, .error = EINTR, .longestWrite = 7});
    auto const error = errorOfWriting(path("file"), allBytes());
    EXPECT_EQ(m_folder.read("file"), error == "no error" ? allBytes() : "old") << failure.failedCall();
    std::string const failed = failure.failedCall();
    EXPECT_TRUE(error == "no error" || (failed != "write" && failed != "fsync")) << failed;
  }
}

TEST_F(FileLockTest, LetsOneAtATime) {
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  auto const work = [&] {
    for (int i = 0; i < 200; ++i) {
      FileLock const lock(path("file"));
      int const now = ++inside;
      if (now > most) most = now;
      std::this_thread::yield();
      --inside;
    }
  };
  auto other = std::async(std::launch::async, work);
  work();
  other.get();
  EXPECT_EQ(most, 1);
  EXPECT_THAT(m_folder.names(), ElementsAre("file.lock"));
}

TEST_F(FileLockTest, EndsWithItsProcessHoweverThatEnds) {
  EXPECT_EXIT(
      {
        FileLock const lock(path("file"));
        static_cast<void>(::raise(SIGKILL));
      },
      testing::KilledBySignal(SIGKILL), "");
  EXPECT_THAT(m_folder.names(), ElementsAre("file.lock"));
  FileLock const lock(path("file"));
  int const lockFile = ::open(path("file.lock").c_str(), O_RDONLY);
  EXPECT_EQ(::flock(lockFile, LOCK_EX | LOCK_NB), -1) << "and is a new one now";
  ::close(lockFile);
}

std::string errorOfLocking(fs::path const& path) {
  try {
    FileLock const lock(path);
    return "no error";
  } catch (Error const& error) {
    return error.what();
  }
}

TEST_F(FileLockTest, FailsWithNameAndReason) {
  auto const folder = m_folder.path().string();
  EXPECT_EQ(errorOfLocking(path("none/x")), folder + "/none/x.lock: cannot lock: No such file or directory");
  EXPECT_EQ(errorOfLocking(folder), folder + ": cannot lock: Is a directory");
  EXPECT_EQ(errorOfLocking("/dev/null"),
            "/dev/null: cannot lock: expected a regular file, found a pipe or a device");
  fs::create_symlink("a", path("a"));
  EXPECT_EQ(errorOfLocking(path("a")), folder + "/a: cannot lock: Too many levels of symbolic links");
  fs::create_symlink("elsewhere", path("b.lock"));
  EXPECT_EQ(errorOfLocking(path("b")), folder + "/b.lock: cannot lock: Too many levels of symbolic links");
  EXPECT_THAT(m_folder.names(), UnorderedElementsAre("a", "b.lock"));
}

TEST_F(FileDeathTest, WriteFileLeavesNothingBehindWhenTheDiskIsFull) {
  m_folder.write("file", "old");
  auto const writeTooMuch = [&] {
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    rlimit const limit{1000, 1000};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(2);
    exitWith(errorOfWriting(path("file"), std::string(2000, 'x')) ==
             path("file").string() + ": cannot write: File too large");
  };
  EXPECT_EXIT(writeTooMuch(), ExitedWithCode(0), "");
  EXPECT_EQ(m_folder.read("file"), "old");
  EXPECT_THAT(m_folder.names(), ElementsAre("file"));
}

TEST_F(FileDeathTest, WriteFileLeavesAFolderAloneThatMayNotBeWritten) {
  m_folder.write("file", "old");
  fs::permissions(path("file"), fs::perms{0666});
  fs::permissions(m_folder.path(), fs::perms{0555});
  auto const write = [&] {
    becomeNobody();
    exitWith(errorOfWriting(path("file")) == path("file").string() + ": cannot write: Permission denied");
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
  fs::permissions(m_folder.path(), fs::perms{0700});
  EXPECT_EQ(m_folder.read("file"), "old");
}

TEST_F(FileDeathTest, WriteFileLeavesAFileAloneThatMayNotBeWritten) {
  m_folder.write("file", "old");
  fs::permissions(path("file"), fs::perms{0444});
  fs::permissions(m_folder.path(), fs::perms{0777});
  auto const write = [&] {
    becomeNobody();
    exitWith(errorOfWriting(path("file")) == path("file").string() + ": cannot write: Permission denied");
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
  EXPECT_EQ(m_folder.read("file"), "old");
  EXPECT_THAT(m_folder.names(), ElementsAre("file"));
}

TEST_F(FileDeathTest, FileLockTakesTheLockFileOfAnotherUser) {
  { FileLock const lock(path("file")); }
  fs::permissions(path("file.lock"), fs::perms{0644});
  fs::permissions(m_folder.path(), fs::perms{0755});
  auto const lock = [&] {
    becomeNobody();
    exitWith(errorOfLocking(path("file")) == "no error" &&
             errorOfLocking(path("other")) ==
                 path("other.lock").string() + ": cannot lock: Permission denied");
  };
  EXPECT_EXIT(lock(), ExitedWithCode(0), "");
}

TEST_F(FileDeathTest, ReadFileNamesTheFileThatMayNotBeRead) {
  m_folder.write("file", "old");
  fs::permissions(path("file"), fs::perms{0});
  fs::permissions(m_folder.path(), fs::perms{0755});
  auto const read = [&] {
    becomeNobody();
    exitWith(errorOfReading(path("file")) == path("file").string() + ": cannot read: Permission denied");
  };
  EXPECT_EXIT(read(), ExitedWithCode(0), "");
}

/// What `writeToStandardOutput` says when standard output is `descriptor`.
std::string errorOfStandardOutput(int descriptor) {
  ::dup2(descriptor, STDOUT_FILENO);
  try {
    writeToStandardOutput("new");
    return "";
  } catch (Error const& error) {
    return error.what();
  }
}

TEST_F(FileDeathTest, WriteToStandardOutputReportsAFullDisk) {
  auto const write = [&] {
    exitWith(errorOfStandardOutput(::open("/dev/full", O_WRONLY)) ==
             "standard output: cannot write: No space left on device");
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
}

TEST_F(FileDeathTest, WriteToStandardOutputIsContentWhenTheReaderHasGone) {
  auto const write = [&] {
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    int ends[2];
    if (::pipe(ends) != 0) ::_exit(2);
    ::close(ends[0]);
    exitWith(errorOfStandardOutput(ends[1]).empty());
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
}

TEST_F(FileDeathTest, WriteToStandardOutputWritesEveryByte) {
  auto const write = [&] {
    exitWith(errorOfStandardOutput(::open(path("out").c_str(), O_WRONLY | O_CREAT, 0600)).empty());
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
  EXPECT_EQ(m_folder.read("out"), "new");
}

TEST_F(FileDeathTest, ReadFileNamesTheFileThatIsLargerThanTheMemory) {
  if (TestSupport::s_isSanitized) GTEST_SKIP() << "sanitizers take address space of their own";
  fs::resize_file(m_folder.write("large", ""), std::uintmax_t{1} << 30);
  auto const read = [&] {
    TestSupport::limitMemory(std::size_t{64} << 20);
    auto const expected = path("large").string() + ": not enough memory";
    exitWith(errorOfReading(path("large")) == expected);
  };
  EXPECT_EXIT(read(), ExitedWithCode(0), "");
}

TEST_F(FileTest, CallsStandardInputByItsName) {
  EXPECT_EQ(nameOfInput("-"), "standard input");
  EXPECT_EQ(nameOfInput("./-"), "./-");
  EXPECT_EQ(nameOfInput("r.json"), "r.json");
}

TEST_F(FileTest, ReadsAFileThatTheUserNames) {
  EXPECT_EQ(readInput(m_folder.write("-x", "text").string()).text(), "text");
  EXPECT_THROW((void)readInput(path("none").string()), Error);
}

TEST_F(FileDeathTest, ReadInputTakesStandardInputToItsEnd) {
  m_folder.write("in", allBytes());
  auto const read = [&] {
    ::dup2(::open(path("in").c_str(), O_RDONLY), STDIN_FILENO);
    exitWith(readInput("-").text() == allBytes() && readInput("-").text().empty());
  };
  EXPECT_EXIT(read(), ExitedWithCode(0), "");
}

TEST_F(FileDeathTest, ReadInputSaysThatStandardInputCannotBeRead) {
  auto const read = [&] {
    ::dup2(::open(m_folder.path().c_str(), O_RDONLY), STDIN_FILENO);
    try {
      (void)readInput("-");
    } catch (Error const& error) {
      exitWith(error.what() == std::string("standard input: cannot read: Is a directory"));
    }
    ::_exit(2);
  };
  EXPECT_EXIT(read(), ExitedWithCode(0), "");
}

TEST_F(FileDeathTest, WriteOutputKnowsStandardOutputByItsSignAndByNoName) {
  auto const write = [&] {
    ::dup2(::open(path("out").c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    writeOutput("-", "one ");
    writeOutput("", "two ");
    writeOutput(path("file").string(), "three");
    ::_exit(0);
  };
  EXPECT_EXIT(write(), ExitedWithCode(0), "");
  EXPECT_EQ(m_folder.read("out"), "one two ");
  EXPECT_EQ(m_folder.read("file"), "three");
  EXPECT_TRUE(goesToStandardOutput(""));
  EXPECT_TRUE(goesToStandardOutput("-"));
  EXPECT_FALSE(goesToStandardOutput("./-"));
}

TEST(UnnamedFile, IsReadWhateverItIsWrittenBy) {
  UnnamedFile file;
  { std::ofstream(file.path()) << "old and long"; }
  { std::ofstream(file.path()) << "new"; }
  EXPECT_EQ(file.read(), "new");
  EXPECT_EQ(file.read(), "new");
}

TEST(UnnamedFile, LeavesNothingBehindAndSaysWhereItCannotBe) {
  TemporaryFolder const folder;
  ::setenv("TMPDIR", folder.path().c_str(), 1);
  {
    UnnamedFile file;
    file.checkRoom(1U << 20U);
    EXPECT_EQ(file.read(), "");
    EXPECT_THAT(folder.names(), testing::IsEmpty());
  }
  ::setenv("TMPDIR", "/nowhere", 1);
  try {
    UnnamedFile const file;
    FAIL();
  } catch (Error const& error) {
    EXPECT_STREQ(error.what(), "/nowhere: cannot write: No such file or directory");
  }
  ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace Kestrel::ResultTables
