#pragma once

#include <cstddef>

namespace Kestrel::TestSupport {

/// What becomes of the calls with which the calling thread uses files.
struct SystemCallFault {
  static constexpr std::size_t never = static_cast<std::size_t>(-1);

  std::size_t successes = never;     ///< calls that succeed before one fails
  int error = 0;                     ///< the `errno` of a call that fails
  bool lasts = false;                ///< all further calls fail too
  bool kills = false;                ///< the process is killed in place of a failure
  std::size_t longestWrite = never;  ///< bytes that one `write` takes
};

/// Makes the calls of open, read, write and so on of the calling thread fail while it lives. A `close` that
/// fails has closed the file. Linking this puts functions before those of the C library.
class SystemCallFailure {
 public:
  explicit SystemCallFailure(SystemCallFault const& fault);
  SystemCallFailure(SystemCallFailure const&) = delete;
  SystemCallFailure& operator=(SystemCallFailure const&) = delete;
  ~SystemCallFailure();

  /// The name of the call that failed first; null: none was reached.
  [[nodiscard]] char const* failedCall() const;
};

}  // namespace Kestrel::TestSupport
