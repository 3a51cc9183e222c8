#pragma once

#include <cstddef>

namespace Kestrel::ResultTables {

/// What the place where a text is shown can do.
struct TextStyle {
  bool colour = false;    ///< shows escape sequences as colours
  std::size_t width = 0;  ///< columns of characters; 0: as many as the text has
};

}  // namespace Kestrel::ResultTables
