#pragma once

#include <string>
#include <string_view>

#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

/// The histories that CalculiX has printed for node sets (the `.dat` file): every block
///
///      forces (fx,fy,fz) for set C1_TIP and time  0.1000000E+01
///
///           2001 -1.122702E-04 -1.522247E-05  1.113703E+01
///
/// adds one time to the table of its set and quantity. The rows of a total ("total force (fx,fy,fz) for set
/// ...") have no node. A quantity without components ("temperatures for set ...") is its own component.
/// Values in the local axes of a node (marked L) are taken as printed. All other prints (steps and
/// increments, values of elements, contact, frequencies) are passed over.
///
/// Throws `Error` with the line for a block that is not complete or does not fit the blocks of its set
/// before, a time that goes back, a number that is none, rows outside a block, a last line without end (the
/// solver was killed while it wrote), a byte that is no UTF-8, and a text without any block. `source` is what
/// messages call the text.
/// Linear in the text's length; the histories do not refer to the text.
[[nodiscard]] Histories readCalculixHistories(std::string const& source, std::string_view text);

}  // namespace Kestrel::ResultTables
