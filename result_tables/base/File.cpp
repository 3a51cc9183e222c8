#include "result_tables/base/File.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

enum class Deed { read, write, lock, store };

std::string cannot(Deed deed, std::string_view name, std::string const& reason) {
  auto const printable = toPrintable(name);
  switch (deed) {
    case Deed::read:
      return tr("{}: cannot read: {}", printable, reason);
    case Deed::write:
      return tr("{}: cannot write: {}", printable, reason);
    case Deed::lock:
      return tr("{}: cannot lock: {}", printable, reason);
    case Deed::store:
      break;
  }
  return tr("{}: cannot make sure that the new content is stored: {}", printable, reason);
}

/// The usual reasons in the user's language, all others as the system words them.
std::string reasonOf(int error) {
  switch (error) {
    case ENOENT:
      return tr("No such file or directory");
    case EACCES:
      return tr("Permission denied");
    case EISDIR:
      return tr("Is a directory");
    case ENOTDIR:
      return tr("Not a directory");
    case ENOSPC:
      return tr("No space left on device");
    case EROFS:
      return tr("Read-only file system");
    default:
      return std::generic_category().message(error);
  }
}

[[noreturn]] void failWithErrno(Deed deed, std::string_view name) {
  throw Error(cannot(deed, name, reasonOf(errno)), std::string(name));
}

std::string nameOfOutput() { return tr("standard output"); }

/// The result of a system call that is made again as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call const& call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

template <typename... Mode>
int openFile(std::filesystem::path const& path, int flags, Mode... mode) {
  return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode...); });
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
  [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }
  /// Whether closing, which can be the first to learn of a full disk, succeeded.
  [[nodiscard]] bool close() { return ::close(release()) == 0; }

 private:
  int m_descriptor;
};

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    auto const written = uninterrupted([&] { return ::write(descriptor, text.data(), text.size()); });
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool isStored(int descriptor) {
  return uninterrupted([descriptor] { return ::fsync(descriptor); }) == 0;
}

/// A new file beside the one that it is to replace; removed unless it does.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path const& target)
      : m_target(target),
        m_path(target.string() + ".XXXXXX"),
        m_descriptor(::mkostemp(m_path.data(), O_CLOEXEC)) {
    if (m_descriptor.get() < 0) failWithErrno(Deed::write, target.native());
  }
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;
  ~TemporaryFile() {
    if (!m_path.empty()) ::unlink(m_path.c_str());
  }

  /// Owner and group; where the user may not give the file away, the group alone, if that is allowed.
  void giveTo(uid_t owner, gid_t group) {
    auto const give = [this, group](uid_t to) { return ::fchown(m_descriptor.get(), to, group) == 0; };
    static_cast<void>(give(owner) || give(static_cast<uid_t>(-1)));
  }

  void write(std::string_view text) {
    if (!writeAll(m_descriptor.get(), text)) failWithErrno(Deed::write, m_target.native());
  }

  void finish(mode_t mode) {
    if (::fchmod(m_descriptor.get(), mode) != 0 || !isStored(m_descriptor.get()) || !m_descriptor.close())
      failWithErrno(Deed::write, m_target.native());
  }

  void replaceTarget() {
    if (::rename(m_path.c_str(), m_target.c_str()) != 0) failWithErrno(Deed::write, m_target.native());
    m_path.clear();
    auto const folder = m_target.has_parent_path() ? m_target.parent_path() : std::filesystem::path(".");
    Descriptor const descriptor(openFile(folder, O_RDONLY | O_DIRECTORY));
    // A folder that may not be read, and a system that stores no folders, have done what they can.
    if (descriptor.get() < 0 && errno == EACCES) return;
    if (descriptor.get() < 0 || (!isStored(descriptor.get()) && errno != EINVAL))
      failWithErrno(Deed::store, m_target.native());
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

void writeDirectly(std::filesystem::path const& path, std::function<void(WritePart const&)> const& make) {
  Descriptor descriptor(openFile(path, O_WRONLY));
  if (descriptor.get() < 0) failWithErrno(Deed::write, path.native());
  make([&](std::string_view part) {
    if (!writeAll(descriptor.get(), part)) failWithErrno(Deed::write, path.native());
  });
  if (!descriptor.close()) failWithErrno(Deed::write, path.native());
}

FileText readToEnd(int descriptor, std::string_view name) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) failWithErrno(Deed::read, name);
  // One byte more shows the end without another look.
  FileText text(S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1 : 65536);
  for (;;) {
    if (text.size() == text.room()) text.grow(text.room() * 2);
    auto const got = uninterrupted(
        [&] { return ::read(descriptor, text.data() + text.size(), text.room() - text.size()); });
    if (got < 0) failWithErrno(Deed::read, name);
    if (got == 0) return text;
    text.resize(text.size() + static_cast<std::size_t>(got));
  }
}

FileText readAll(int descriptor, std::string_view name) {
  return namingWhatIsTooLarge(name, [&] { return readToEnd(descriptor, name); });
}

void refuseToLockWhatIsNoRegularFile(std::filesystem::path const& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) failWithErrno(Deed::lock, path.native());
  } else if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    failWithErrno(Deed::lock, path.native());
  } else if (!S_ISREG(status.st_mode)) {
    throw Error(
        tr("{}: cannot lock: expected a regular file, found a pipe or a device", toPrintable(path.native())),
        path.native());
  }
}

int openLockFile(std::filesystem::path const& path) {
  // Open for writing, as network file systems want it.
  int const descriptor = openFile(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0666);
  if (descriptor >= 0 || errno != EACCES) return descriptor;
  // What another user has made can be locked all the same.
  int const foreign = openFile(path, O_RDONLY | O_NOFOLLOW);
  if (foreign < 0) errno = EACCES;
  return foreign;
}

FileText readText(std::filesystem::path const& path) {
  Descriptor const descriptor(openFile(path, O_RDONLY));
  if (descriptor.get() < 0) failWithErrno(Deed::read, path.native());
  return readAll(descriptor.get(), path.native());
}

}  // namespace

std::string readFile(std::filesystem::path const& path) { return std::string(readText(path).text()); }

FileText readInput(std::string const& name) {
  return name == s_standardStream ? readAll(STDIN_FILENO, nameOfInput(name)) : readText(name);
}

std::string nameOfInput(std::string const& name) {
  return name == s_standardStream ? tr("standard input") : name;
}

std::optional<std::string> readFileIfExists(std::filesystem::path const& path) {
  Descriptor const descriptor(openFile(path, O_RDONLY));
  if (descriptor.get() >= 0) return std::string(readAll(descriptor.get(), path.native()).text());
  // There is no file of a name that is too long for one.
  if (errno != ENOENT && errno != ENAMETOOLONG) failWithErrno(Deed::read, path.native());
  return std::nullopt;
}

std::filesystem::path followLinks(std::filesystem::path path) {
  // A ring of links ends somewhere in it; using that fails.
  constexpr int mostLinks = 40;
  for (int i = 0; i < mostLinks; ++i) {
    std::error_code error;
    auto const next = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path;
}

void writeFile(std::filesystem::path const& path, std::string_view text) {
  writeFile(path, [text](WritePart const& write) { write(text); });
}

void writeFile(std::filesystem::path const& path, std::function<void(WritePart const&)> const& make) {
  struct stat status {};
  bool const exists = ::stat(path.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) failWithErrno(Deed::write, path.native());
  if (exists && S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    failWithErrno(Deed::write, path.native());
  }
  if (exists && !S_ISREG(status.st_mode)) return writeDirectly(path, make);
  if (exists && ::access(path.c_str(), W_OK) != 0) failWithErrno(Deed::write, path.native());
  auto const target = followLinks(path);
  TemporaryFile file(target);
  if (exists) file.giveTo(status.st_uid, status.st_gid);
  make([&file](std::string_view part) { file.write(part); });
  file.finish(exists ? status.st_mode & 07777U : permissionsOfNewFiles());
  file.replaceTarget();
}

std::string temporaryFolder() {
  char const* const named = std::getenv("TMPDIR");
  return named && *named ? named : "/tmp";
}

UnnamedFile::UnnamedFile() : m_descriptor(-1) {
  auto path = temporaryFolder() + "/result-tables.XXXXXX";
  m_descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (m_descriptor < 0) failToWriteTemporaryFile();
  ::unlink(path.c_str());
}

UnnamedFile::~UnnamedFile() { ::close(m_descriptor); }

std::string UnnamedFile::path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

void UnnamedFile::checkRoom(std::size_t bytes) {
  errno = ::posix_fallocate(m_descriptor, 0, static_cast<off_t>(bytes));
  if (errno != 0 || ::ftruncate(m_descriptor, 0) != 0) failToWriteTemporaryFile();
}

std::string UnnamedFile::read() const {
  ::lseek(m_descriptor, 0, SEEK_SET);
  return std::string(readAll(m_descriptor, temporaryFolder()).text());
}

void failToWriteTemporaryFile() {
  int const reason = errno;
  auto const folder = temporaryFolder();
  errno = reason;
  failWithErrno(Deed::write, folder);
}

FileLock::FileLock(std::filesystem::path const& path) : m_descriptor(-1) {
  refuseToLockWhatIsNoRegularFile(path);
  auto const lockFile = path.string() + ".lock";
  Descriptor descriptor(openLockFile(lockFile));
  if (descriptor.get() < 0 || uninterrupted([&] { return ::flock(descriptor.get(), LOCK_EX); }) != 0)
    failWithErrno(Deed::lock, lockFile);
  m_descriptor = descriptor.release();
}

FileLock::~FileLock() { ::close(m_descriptor); }

void writeToStandardOutput(std::string_view text) {
  if (!writeAll(STDOUT_FILENO, text) && errno != EPIPE) failWithErrno(Deed::write, nameOfOutput());
}

void writeOutput(std::string const& name, std::string_view text) {
  if (goesToStandardOutput(name)) {
    writeToStandardOutput(text);
  } else {
    writeFile(name, text);
  }
}

void writeOutput(std::string const& name, std::function<void(WritePart const&)> const& make) {
  if (goesToStandardOutput(name)) {
    make(writeToStandardOutput);
  } else {
    writeFile(name, make);
  }
}

void failForLackOfMemory(std::string_view name) {
  throw Error(tr("{}: not enough memory", toPrintable(name)), std::string(name));
}

}  // namespace Kestrel::ResultTables
