#pragma once

#include <stdexcept>

namespace Kestrel::ResultTables {

/// Something that could not be done. `what()` is the one line that the user reads: what, where, expected,
/// found.
struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace Kestrel::ResultTables
