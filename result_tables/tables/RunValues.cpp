#include "result_tables/tables/RunValues.h"

#include "Business_TableProperties/TablePropertySettings.h"
#include "result_tables/base/Family.h"

namespace Kestrel::ResultTables {

std::string RunQuantity::name() const { return TablePropertySettings::getTableDisplayName(valueNameOf(key)); }

std::string RunQuantity::shownName() const {
  auto known = name();
  return known.empty() ? key : known;
}

}  // namespace Kestrel::ResultTables
