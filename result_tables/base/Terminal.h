#pragma once

#include <cstddef>

namespace Kestrel::ResultTables {

[[nodiscard]] bool standardOutputIsTerminal();

/// Whether escape sequences on standard output are shown as colours: it is a terminal, which TERM names and
/// does not call "dumb", and NO_COLOR is absent or empty.
[[nodiscard]] bool terminalHasColour();

/// Columns of the terminal that standard output is: as the terminal says or, where it does not, as COLUMNS
/// says. 0 where standard output is no terminal and where nobody knows.
[[nodiscard]] std::size_t terminalWidth();

/// Its rows, in the same way, with LINES.
[[nodiscard]] std::size_t terminalHeight();

/// Whether text is UTF-8 in the locale of the environment, the first of LC_ALL, LC_CTYPE and LANG that is not
/// empty: as its name says ("de_DE.UTF-8"), whether it is installed or not, or, where the name says nothing,
/// as the system says. The locale of the process stays as it is.
[[nodiscard]] bool localeIsUtf8();

}  // namespace Kestrel::ResultTables
