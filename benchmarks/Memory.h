#pragma once

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace Kestrel {

/// What an operation adds to the memory of a process that has nothing to reuse, in bytes.
struct MemoryUse {
  double peak = 0.0;  ///< the most while it runs
  double kept = 0.0;  ///< while its result is alive
};

inline double memoryInBytes(std::string const& field) {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word && word != field) {
  }
  double kibibytes = 0.0;
  status >> kibibytes;
  return kibibytes * 1024.0;
}

/// Runs `operate()` in a process of its own and keeps what it returns until the memory has been measured.
template <typename Operate>
MemoryUse measureMemory(Operate const& operate) {
  int channel[2];
  if (::pipe(channel) != 0) return {};
  ::malloc_trim(0);
  auto const child = ::fork();
  if (child == 0) {
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts anew
    auto const before = memoryInBytes("VmHWM:");
    auto const result = operate();
    ::malloc_trim(0);
    MemoryUse const use{memoryInBytes("VmHWM:") - before, memoryInBytes("VmRSS:") - before};
    ::_exit(::write(channel[1], &use, sizeof use) == sizeof use ? 0 : 1);
  }
  MemoryUse use;
  bool const isRead = ::read(channel[0], &use, sizeof use) == sizeof use;
  ::close(channel[0]);
  ::close(channel[1]);
  ::waitpid(child, nullptr, 0);
  return isRead ? use : MemoryUse{};
}

}  // namespace Kestrel
