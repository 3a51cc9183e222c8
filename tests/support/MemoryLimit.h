#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>

namespace Kestrel::TestSupport {

/// Whether a sanitizer takes memory and address space of its own, so that neither can be measured or limited.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool s_isSanitized = true;
#elif defined(__has_feature)
inline constexpr bool s_isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool s_isSanitized = false;
#endif

/// From now on the process can take only so many bytes more than it has. For the child of a death test.
inline void limitMemory(std::size_t more) {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  auto const limit = pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) + more;
  rlimit const bytes{limit, limit};
  if (pages == 0 || ::setrlimit(RLIMIT_AS, &bytes) != 0) ::_exit(3);
}

}  // namespace Kestrel::TestSupport
