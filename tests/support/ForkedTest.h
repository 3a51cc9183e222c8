#pragma once

#include <unistd.h>

namespace Kestrel {

/// Ends the process of a death test; the exit code, 0 or 1, tells whether `condition` held.
[[noreturn]] inline void exitWith(bool condition) { ::_exit(condition ? 0 : 1); }

/// Gives up the powers that no permission binds.
inline void becomeNobody() {
  constexpr uid_t nobody = 65534;
  if (::geteuid() == 0 && ::setuid(nobody) != 0) ::_exit(2);
}

}  // namespace Kestrel
