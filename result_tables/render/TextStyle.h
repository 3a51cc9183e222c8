#pragma once

#include <cstddef>

namespace Kestrel::ResultTables {

/// What the place where a text is shown can do.
struct TextStyle {
  bool colour = false;    ///< shows escape sequences as colours
  std::size_t width = 0;  ///< columns of characters; 0: as many as the text has
  int digits = 7;         ///< significant digits of numbers, 1 to 17
  bool unicode = true;    ///< shows characters beyond ASCII; plots do without them where it does not
  bool when = false;      ///< with the time of each value or, where it has none, its step
};

}  // namespace Kestrel::ResultTables
