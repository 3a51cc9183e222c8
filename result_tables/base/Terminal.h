#pragma once

#include <cstddef>

namespace Kestrel::ResultTables {

/// Whether escape sequences on standard output are shown as colours: it is a terminal, which TERM names and
/// does not call "dumb", and NO_COLOR is absent or empty.
[[nodiscard]] bool terminalHasColour();

/// Columns of the terminal that standard output is: as the terminal says or, where it does not, as COLUMNS
/// says. 0 where standard output is no terminal and where nobody knows.
[[nodiscard]] std::size_t terminalWidth();

}  // namespace Kestrel::ResultTables
