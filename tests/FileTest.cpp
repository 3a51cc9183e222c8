#include "result_tables/File.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <string>
#include <vector>

#include "result_tables/Error.h"
#include "support/Shell.h"

namespace Kestrel::ResultTables {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::UnorderedElementsAre;

std::string allBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

/// The names of the files in a folder.
std::vector<std::string> namesIn(fs::path const& folder) {
  std::vector<std::string> names;
  for (auto const& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  return names;
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

TEST_F(WriteFile, MakesANewFileWithTheUsualPermissions) {
  auto const oldMask = ::umask(027);
  writeFile(path("new"), allBytes());
  ::umask(oldMask);
  EXPECT_EQ(m_folder.read("new"), allBytes());
  EXPECT_EQ(fs::status(path("new")).permissions(), fs::perms{0640});
  EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("new"));
}

TEST_F(WriteFile, ReplacesTheWholeContentAndKeepsThePermissions) {
  m_folder.write("file", "a much longer old content");
  fs::permissions(path("file"), fs::perms{0604});
  writeFile(path("file"), "new");
  EXPECT_EQ(m_folder.read("file"), "new");
  EXPECT_EQ(fs::status(path("file")).permissions(), fs::perms{0604});
  EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("file"));
}

TEST_F(WriteFile, LeavesTheOldFileWholeForThoseWhoStillReadIt) {
  m_folder.write("file", "old");
  fs::create_hard_link(path("file"), path("still reading"));
  writeFile(path("file"), "new");
  EXPECT_EQ(m_folder.read("still reading"), "old");
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
  EXPECT_THAT(namesIn(path("folder")), ElementsAre("file"));
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
  EXPECT_THAT(namesIn(m_folder.path()), UnorderedElementsAre("a", "b", "c"));
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
  EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("file"));
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

/// Ends the process; the exit code tells whether `condition` held.
[[noreturn]] void exitWith(bool condition) { ::_exit(condition ? 0 : 1); }

TEST_F(FileDeathTest, WriteFileLeavesNothingBehindWhenTheDiskIsFull) {
  m_folder.write("file", "old");
  auto const writeTooMuch = [&] {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit const limit{1000, 1000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    exitWith(errorOfWriting(path("file"), std::string(2000, 'x')) ==
             path("file").string() + ": cannot write: File too large");
  };
  EXPECT_EXIT(writeTooMuch(), ExitedWithCode(0), "");
  EXPECT_EQ(m_folder.read("file"), "old");
  EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("file"));
}

/// Gives up the powers that no permission binds.
void becomeNobody() {
  constexpr uid_t nobody = 65534;
  if (::geteuid() == 0 && ::setuid(nobody) != 0) ::_exit(2);
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
  EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("file"));
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
    std::signal(SIGPIPE, SIG_IGN);
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

}  // namespace
}  // namespace Kestrel::ResultTables
