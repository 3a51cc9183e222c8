#pragma once

#include <cstddef>

namespace Kestrel::ResultTables {

/// Which curves a report holds.
enum class Curves {
  notable,  ///< of what is found, and of the values that take the most of their limits
  none,
  findings,  ///< of what is found
  all,
};

/// What the place where a text is shown can do, and what of it is wanted.
struct TextStyle {
  bool colour = false;     ///< shows escape sequences as colours
  std::size_t width = 0;   ///< columns of characters; 0: as many as the text has
  std::size_t height = 0;  ///< rows; 0: as many as the text has
  int digits = 7;          ///< significant digits of numbers, 1 to 17
  bool unicode = true;     ///< shows characters beyond ASCII; plots do without them where it does not
  bool when = false;       ///< with the time of each value or, where it has none, its step
  Curves curves = Curves::notable;  ///< of reports
};

}  // namespace Kestrel::ResultTables
