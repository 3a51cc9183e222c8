#pragma once

#include <string>
#include <vector>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "Business_TableProperties/TablePropertyLimitType.h"

namespace Kestrel::ResultTables {

/// A column that the table of a family can have.
struct FamilyColumn {
  std::string key;  ///< the same in every language
  TablePropertyLimitType limitType = TablePropertyLimitType::NoLimit;
};

/// The columns of a family's table, teaching offsets included, in the order of the table.
[[nodiscard]] std::vector<FamilyColumn> familyColumns(MaxValueGroupContainer::DataType dataType);

}  // namespace Kestrel::ResultTables
