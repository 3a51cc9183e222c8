#pragma once

#include <string>
#include <string_view>

#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

/// What stands between the whole part of a number and its fraction.
enum class DecimalMark { point, comma };

/// The histories of a table of comma separated values (RFC 4180, UTF-8), in one of two forms, told apart by
/// the header:
///
/// - long: the header is entity, quantity, time, value in this order; every row is one value of
/// "entity.quantity";
/// - wide: the first column is the time, every other one the history that its header names.
///
/// A row of units may stand right under the header: texts that are no numbers, in the long form under time
/// and value alone. An empty cell is no value: its history does not have the time. Where a cell of the wide
/// form is empty, each column is a table of its own.
///
/// The separator is the first of tab, semicolon and comma that the header has outside quotation marks (of tab
/// and semicolon, where commas are decimal); without any, runs of blanks separate. Blanks around a field,
/// empty lines, rows of empty cells, lines that begin with # and a byte order mark are passed over. A field
/// in quotation marks may hold separators, line ends and doubled quotation marks.
///
/// Throws `Error` with the line for anything else: a row with too few or too many fields, a number that is
/// none, a row without a time, a time that goes back within a history, two histories of one name; a number
/// that only the other decimal mark makes one is told as such. `source` is what messages call the text.
/// Linear in the text's length; the histories do not refer to the text.
[[nodiscard]] Histories readCsvHistories(std::string const& source, std::string_view text,
                                         DecimalMark decimalMark = DecimalMark::point);

}  // namespace Kestrel::ResultTables
