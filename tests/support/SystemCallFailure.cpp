#include "support/SystemCallFailure.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
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
}

namespace Kestrel::TestSupport {

SystemCallFailure::SystemCallFailure(SystemCallFault const& fault) { state = {fault, 0, nullptr}; }

SystemCallFailure::~SystemCallFailure() { state = {}; }

char const* SystemCallFailure::failedCall() const { return state.failedCall; }

}  // namespace Kestrel::TestSupport
