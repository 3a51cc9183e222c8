#include "result_tables/study/StoredFields.h"

#include "result_tables/base/Family.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

std::size_t indexIn(Database const& database, DatabaseRow const& row, int column, std::size_t size) {
  auto const index = row.integer(column);
  if (index >= 0 && unsignedOf(index) < size) return unsignedOf(index);
  failForDamage(database.name(), tr("a number out of range"));
}

std::optional<double> readOptional(DatabaseRow const& row, int column) {
  return row.isNull(column) ? std::nullopt : std::optional(row.real(column));
}

MaxValueGroupContainer::DataType readFamily(Database const& database, DatabaseRow const& row, int column) {
  auto const* const family = familyNamed(row.text(column));
  if (family != nullptr) return family->dataType;
  failForDamage(database.name(), tr("a family that there is not"));
}

}  // namespace Kestrel::ResultTables
