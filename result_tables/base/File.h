#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "result_tables/base/LargeMemory.h"

namespace Kestrel::ResultTables {

/// What users write for standard input and standard output.
inline constexpr std::string_view s_standardStream = "-";

/// The bytes of an input, which may be many.
class FileText {
 public:
  FileText() = default;
  /// Room for at least `room` bytes, none of them in use.
  explicit FileText(std::size_t room) : m_memory(room) {}

  [[nodiscard]] std::string_view text() const { return {data(), m_size}; }

  [[nodiscard]] char* data() const { return static_cast<char*>(m_memory.data()); }
  [[nodiscard]] std::size_t size() const { return m_size; }
  [[nodiscard]] std::size_t room() const { return m_memory.size(); }
  /// REQUIRES: size <= room().
  void resize(std::size_t size) { m_size = size; }
  /// Cuts the text off, and gives back to the system what memory it can.
  void cut(std::size_t size) {
    resize(size);
    m_memory.release(size);
  }
  /// REQUIRES: room > room().
  void grow(std::size_t room) { m_memory.grow(room); }

 private:
  LargeMemory m_memory;
  std::size_t m_size = 0;
};

/// The bytes of a file or a pipe. An `Error` names the file and the system's reason, lack of memory included.
[[nodiscard]] std::string readFile(std::filesystem::path const& path);

/// The same, and nothing where there is no such file.
[[nodiscard]] std::optional<std::string> readFileIfExists(std::filesystem::path const& path);

/// The bytes of the file that the user names, or of standard input. What is read twice from there is empty
/// the second time.
[[nodiscard]] FileText readInput(std::string const& name);

/// What messages call the file that the user names: "standard input", or its name as it is.
[[nodiscard]] std::string nameOfInput(std::string const& name);

[[noreturn]] void failForLackOfMemory(std::string_view name);

/// What `read` gives. Where that takes more memory than there is, an `Error` that names the file; what `read`
/// had built is gone by then.
template <typename Read>
auto namingWhatIsTooLarge(std::string_view name, Read const& read) {
  try {
    return read();
  } catch (std::bad_alloc const&) {
  } catch (std::length_error const&) {
  }
  failForLackOfMemory(name);
}

/// Where a symbolic link leads in the end, also when there is nothing yet; any other path as it is.
[[nodiscard]] std::filesystem::path followLinks(std::filesystem::path path);

/// Replaces the content of the file whole or, with an `Error`, not at all: the text is written to a new file
/// in the same folder, which takes the place of the old one when it is safely stored. When all is done but
/// storing the new name fails, the `Error` says so and the new content stands. A symbolic link is followed,
/// the permissions of an old file are kept, owner and group as far as the user may give files away, and a
/// file that may not be written stays as it is. What is no regular file (a terminal, a pipe, a device) is
/// written to directly.
void writeFile(std::filesystem::path const& path, std::string_view text);

/// Takes a part of a text that is written.
using WritePart = std::function<void(std::string_view part)>;

/// The same of a text that comes part by part from `make`. What that throws leaves the file as it is.
void writeFile(std::filesystem::path const& path, std::function<void(WritePart const&)> const& make);

/// The system's temporary folder.
[[nodiscard]] std::string temporaryFolder();

/// A file without a name in the temporary folder, which is gone with the object, or with the process however
/// that ends. What cannot be done is an `Error` that names the folder and the system's reason.
class UnnamedFile {
 public:
  UnnamedFile();
  UnnamedFile(UnnamedFile const&) = delete;
  UnnamedFile& operator=(UnnamedFile const&) = delete;
  ~UnnamedFile();

  /// What others in this process open it by.
  [[nodiscard]] std::string path() const;
  /// Makes sure that the folder has room for so many bytes more; what the file held is gone.
  void checkRoom(std::size_t bytes);
  /// All that is in it.
  [[nodiscard]] std::string read() const;

 private:
  int m_descriptor;
};

/// An `Error` that says that no file in the system's temporary folder could be written, with the reason that
/// is in errno.
[[noreturn]] void failToWriteTemporaryFile();

/// The exclusive right, among all who ask for it, to read a file and to replace it by `writeFile`; waits
/// until nobody else has it. It ends with the object, and with the process however that ends.
///
/// It is the system's lock on an empty file beside the one that it is for, `.lock` appended, which is made on
/// first use and stays. An `Error` when that cannot be had, and when the file itself exists and is no regular
/// one.
class FileLock {
 public:
  /// REQUIRES: followLinks(path) == path, so that all names of a file lead to one lock.
  explicit FileLock(std::filesystem::path const& path);
  FileLock(FileLock const&) = delete;
  FileLock& operator=(FileLock const&) = delete;
  ~FileLock();

 private:
  int m_descriptor;
};

/// Writes to standard output. A reader that has gone away is no error; anything else is an `Error`.
void writeToStandardOutput(std::string_view text);

/// Whether the user's name of an output, which may be missing, stands for standard output.
[[nodiscard]] inline bool goesToStandardOutput(std::string const& name) {
  return name.empty() || name == s_standardStream;
}

/// Writes what a command has made: to standard output, or whole or not at all to the file of that name.
void writeOutput(std::string const& name, std::string_view text);

/// The same of a text that comes part by part from `make`. What that throws ends what standard output gets.
void writeOutput(std::string const& name, std::function<void(WritePart const&)> const& make);

}  // namespace Kestrel::ResultTables
