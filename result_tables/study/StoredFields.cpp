#include "result_tables/study/StoredFields.h"

#include "result_tables/base/Family.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

std::size_t numberIn(Database const& database, DatabaseRow const& row, int column) {
  auto const number = row.integer(column);
  if (number < 0) failForDamage(database.name(), tr("a number out of range"));
  return static_cast<std::size_t>(number);
}

std::size_t indexIn(Database const& database, DatabaseRow const& row, int column, std::size_t size) {
  auto const index = numberIn(database, row, column);
  if (index >= size) failForDamage(database.name(), tr("a number out of range"));
  return index;
}

void expectNext(Database const& database, DatabaseRow const& row, int column, std::size_t next) {
  if (numberIn(database, row, column) != next)
    failForDamage(database.name(), tr("a row is missing or there twice"));
}

std::optional<double> readOptional(DatabaseRow const& row, int column) {
  return row.isNull(column) ? std::nullopt : std::optional(row.real(column));
}

TableValue readValue(Database const& database, DatabaseRow const& row, int firstColumn) {
  int const step = firstColumn + 1;
  return {row.real(firstColumn),
          {{},
           row.isNull(step) ? std::nullopt : std::optional(numberIn(database, row, step)),
           readOptional(row, firstColumn + 2),
           numberIn(database, row, firstColumn + 3),
           numberIn(database, row, firstColumn + 4)},
          row.integer(firstColumn + 5) != 0};
}

MaxValueGroupContainer::DataType readFamily(Database const& database, DatabaseRow const& row, int column) {
  auto const* const family = familyNamed(row.text(column));
  if (family != nullptr) return family->dataType;
  failForDamage(database.name(), tr("a family that there is not"));
}

}  // namespace Kestrel::ResultTables
