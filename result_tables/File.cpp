#include "result_tables/File.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "result_tables/Error.h"
#include "result_tables/Text.h"

namespace Kestrel::ResultTables {

namespace {

[[noreturn]] void failWithErrno(std::string_view what, std::string_view name) {
  auto const reason = std::generic_category().message(errno);
  throw Error(fmt::format("{}: cannot {}: {}", toPrintable(name), what, reason));
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;
  ~Descriptor() {
    if (m_descriptor >= 0) ::close(m_descriptor);
  }
  [[nodiscard]] int get() const { return m_descriptor; }
  /// Whether closing, which can be the first to learn of a full disk, succeeded.
  [[nodiscard]] bool close() { return ::close(std::exchange(m_descriptor, -1)) == 0; }

 private:
  int m_descriptor;
};

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    auto const written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// A new file beside the one that it is to replace; removed unless it does.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path const& target)
      : m_target(target),
        m_path(target.string() + ".XXXXXX"),
        m_descriptor(::mkostemp(m_path.data(), O_CLOEXEC)) {
    if (m_descriptor.get() < 0) failWithErrno("write", target.native());
  }
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;
  ~TemporaryFile() {
    if (!m_path.empty()) ::unlink(m_path.c_str());
  }

  void write(std::string_view text, mode_t mode) {
    if (!writeAll(m_descriptor.get(), text) || ::fchmod(m_descriptor.get(), mode) != 0 ||
        ::fsync(m_descriptor.get()) != 0 || !m_descriptor.close()) {
      failWithErrno("write", m_target.native());
    }
  }

  void replaceTarget() {
    if (::rename(m_path.c_str(), m_target.c_str()) != 0) failWithErrno("write", m_target.native());
    m_path.clear();
    // The new name is on disk when the folder is; a system that cannot say so has done what it can.
    auto const folder = m_target.has_parent_path() ? m_target.parent_path() : std::filesystem::path(".");
    Descriptor const descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() >= 0) ::fsync(descriptor.get());
  }

 private:
  std::filesystem::path m_target;
  std::string m_path;
  Descriptor m_descriptor;
};

mode_t permissionsOfNewFiles() {
  auto const mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

/// Where a symbolic link leads, also when there is nothing yet.
std::filesystem::path followLinks(std::filesystem::path path) {
  std::error_code error;
  while (std::filesystem::is_symlink(path, error)) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path;
}

void writeDirectly(std::filesystem::path const& path, std::string_view text) {
  Descriptor descriptor(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (descriptor.get() < 0 || !writeAll(descriptor.get(), text) || !descriptor.close()) {
    failWithErrno("write", path.native());
  }
}

}  // namespace

std::string readFile(std::filesystem::path const& path) {
  Descriptor const descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (descriptor.get() < 0 || ::fstat(descriptor.get(), &status) != 0) failWithErrno("read", path.native());
  std::string text;
  std::size_t size = 0;
  auto room = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1 : 65536;
  for (;;) {
    if (size == text.size()) text.resize(size == 0 ? room : size * 2);
    auto const got = ::read(descriptor.get(), text.data() + size, text.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) failWithErrno("read", path.native());
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  text.resize(size);
  return text;
}

void writeFile(std::filesystem::path const& path, std::string_view text) {
  struct stat status {};
  bool const exists = ::stat(path.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) failWithErrno("write", path.native());
  if (exists && S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    failWithErrno("write", path.native());
  }
  if (exists && !S_ISREG(status.st_mode)) return writeDirectly(path, text);
  if (exists && ::access(path.c_str(), W_OK) != 0) failWithErrno("write", path.native());
  auto const target = followLinks(path);
  TemporaryFile file(target);
  file.write(text, exists ? status.st_mode & 07777U : permissionsOfNewFiles());
  file.replaceTarget();
}

void writeToStandardOutput(std::string_view text) {
  if (!writeAll(STDOUT_FILENO, text) && errno != EPIPE) failWithErrno("write", "standard output");
}

}  // namespace Kestrel::ResultTables
