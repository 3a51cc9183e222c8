#pragma once

#include <string>
#include <string_view>

#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

/// The histories that CalculiX has printed (the `.dat` file). Every block
///
///      forces (fx,fy,fz) for set C1_TIP and time  0.1000000E+01
///
///           2001 -1.122702E-04 -1.522247E-05  1.113703E+01
///
/// adds one time to the table of its set and quantity; `parseHeading` says which blocks there are. Those of
/// elements and of contact have rows of their own at each time. Statistics of a contact pair or a section
/// are several tables of one row. A block without rows is no time of its table. Values in local axes are
/// taken as printed.
///
/// A node or an integration point that is twice in a block counts once, and so does a print that comes twice
/// in an increment. With other values, the second is of the entity "SET (2)", the third of "SET (3)".
///
/// Each time has the number of its step: as printed ("S T E P       2"), or else counted from 1, where a new
/// one begins with a time that goes back, with the output of eigenvalues or buckling factors, or with the
/// same prints and other values at one time.
///
/// All other prints (eigenvalues, participation factors) are passed over, with a note for each kind.
///
/// Throws `Error` with the line for a block that is not complete or does not fit the blocks of its set
/// before, a time or the number of a step that goes back in a print that numbers its steps, a number that is
/// none, rows outside a block, a last line without end (the solver was killed while it wrote), a byte that is
/// no UTF-8, and a text without any block. `source` is what messages call the text.
/// Linear in the text's length; the histories do not refer to the text.
[[nodiscard]] Histories readCalculixHistories(std::string const& source, std::string_view text);

}  // namespace Kestrel::ResultTables
