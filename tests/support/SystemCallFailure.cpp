#include "support/SystemCallFailure.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>

namespace {

using Kestrel::TestSupport::SystemCallFault;

struct ThreadState {
  SystemCallFault fault;
  std::size_t calls = 0;
  char const* failedCall = nullptr;
};

thread_local ThreadState state;

/// Counts a call; whether it is to fail, with `errno` set; does not return when it is to kill.
bool fails(char const* name) noexcept {
  if (state.fault.successes == SystemCallFault::never) return false;
  auto const call = state.calls++;
  if (call < state.fault.successes || (call > state.fault.successes && !state.fault.lasts)) return false;
  if (state.fault.kills) static_cast<void>(::raise(SIGKILL));
  if (state.failedCall == nullptr) state.failedCall = name;
  errno = state.fault.error;
  return true;
}

/// The C library's function.
template <typename Function>
Function* real(Function* /*same*/, char const* name) noexcept {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// Libraries that are loaded find these too.
#pragma GCC visibility push(default)
extern "C" {

int open(char const* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return fails("open") ? -1 : real(&::open, "open")(path, flags, mode);
}

int mkostemp(char* pattern, int flags) {
  return fails("mkostemp") ? -1 : real(&::mkostemp, "mkostemp")(pattern, flags);
}

ssize_t read(int file, void* bytes, size_t size) {
  return fails("read") ? -1 : real(&::read, "read")(file, bytes, size);
}

ssize_t write(int file, void const* bytes, size_t size) {
  return fails("write") ? -1 : real(&::write, "write")(file, bytes, std::min(size, state.fault.longestWrite));
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
  return fails("fchown") ? -1 : real(&::fchown, "fchown")(file, owner, group);
}

int fchmod(int file, mode_t mode) noexcept {
  return fails("fchmod") ? -1 : real(&::fchmod, "fchmod")(file, mode);
}

int fstat(int file, struct stat* status) noexcept {
  return fails("fstat") ? -1 : real(&::fstat, "fstat")(file, status);
}

int flock(int file, int operation) noexcept {
  return fails("flock") ? -1 : real(&::flock, "flock")(file, operation);
}

int fsync(int file) { return fails("fsync") ? -1 : real(&::fsync, "fsync")(file); }

int close(int file) {
  int const result = real(&::close, "close")(file);
  return fails("close") ? -1 : result;
}

int rename(char const* from, char const* to) noexcept {
  return fails("rename") ? -1 : real(&::rename, "rename")(from, to);
}

int unlink(char const* path) noexcept { return fails("unlink") ? -1 : real(&::unlink, "unlink")(path); }

// What SQLite calls besides.

int open64(char const* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return fails("open64") ? -1 : real(&::open64, "open64")(path, flags, mode);
}

ssize_t pread64(int file, void* bytes, size_t size, off64_t place) {
  return fails("pread64") ? -1 : real(&::pread64, "pread64")(file, bytes, size, place);
}

ssize_t pwrite64(int file, void const* bytes, size_t size, off64_t place) {
  auto const most = std::min(size, state.fault.longestWrite);
  return fails("pwrite64") ? -1 : real(&::pwrite64, "pwrite64")(file, bytes, most, place);
}

int fdatasync(int file) { return fails("fdatasync") ? -1 : real(&::fdatasync, "fdatasync")(file); }

int ftruncate64(int file, off64_t size) noexcept {
  return fails("ftruncate64") ? -1 : real(&::ftruncate64, "ftruncate64")(file, size);
}

int fcntl64(int file, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  // SQLite takes a lock that it does not get for one of somebody else, whatever the error, and waits.
  bool const isLock = command == F_SETLK || command == F_GETLK;
  return !isLock && fails("fcntl64") ? -1 : real(&::fcntl64, "fcntl64")(file, command, argument);
}

void* mmap64(void* at, size_t size, int protection, int flags, int file, off64_t place) noexcept {
  // Without a file it is memory that somebody allocates.
  if (file >= 0 && fails("mmap64")) return MAP_FAILED;
  return real(&::mmap64, "mmap64")(at, size, protection, flags, file, place);
}

int stat64(char const* path, struct stat64* status) noexcept {
  return fails("stat64") ? -1 : real(&::stat64, "stat64")(path, status);
}

int fstat64(int file, struct stat64* status) noexcept {
  return fails("fstat64") ? -1 : real(&::fstat64, "fstat64")(file, status);
}
}
#pragma GCC visibility pop

namespace Kestrel::TestSupport {

SystemCallFailure::SystemCallFailure(SystemCallFault const& fault) { state = {fault, 0, nullptr}; }

SystemCallFailure::~SystemCallFailure() { state = {}; }

char const* SystemCallFailure::failedCall() const { return state.failedCall; }

}  // namespace Kestrel::TestSupport
