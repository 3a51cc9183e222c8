#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "result_tables/study/Database.h"
#include "result_tables/tables/ResultTable.h"

// Fields of the tables of a study as the program has them. What cannot be there is an `Error`: the study is
// damaged.

namespace Kestrel::ResultTables {

[[nodiscard]] constexpr std::int64_t signedOf(std::size_t number) {
  return static_cast<std::int64_t>(number);
}
/// A number that is not negative.
[[nodiscard]] std::size_t numberIn(Database const& database, DatabaseRow const& row, int column);

/// An index of something that there are `size` of.
[[nodiscard]] std::size_t indexIn(Database const& database, DatabaseRow const& row, int column,
                                  std::size_t size);

/// Expects a number that can only be `next`, as the rows before it have the others.
void expectNext(Database const& database, DatabaseRow const& row, int column, std::size_t next);

[[nodiscard]] std::optional<double> readOptional(DatabaseRow const& row, int column);

/// value, step, time, count, nans and exceeded, which are columns in a row.
[[nodiscard]] TableValue readValue(Database const& database, DatabaseRow const& row, int firstColumn);

[[nodiscard]] MaxValueGroupContainer::DataType readFamily(Database const& database, DatabaseRow const& row,
                                                          int column);

}  // namespace Kestrel::ResultTables
