#pragma once

#include <optional>
#include <string>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// A value beyond its limit.
struct ExceededValue {
  std::string column;  ///< table display name
  double value;
  ColumnLimit limit;
};

/// Something in a table that a person should look at.
struct Finding {
  std::string group;                      ///< empty for an invalid item
  std::string subGroup;                   ///< empty where the item is in none
  std::string item;                       ///< the item's name
  std::optional<ExceededValue> exceeded;  ///< none: the item's values are invalid
};

/// What is found in one table.
struct TableFindings {
  std::string unit;    ///< the unit's name
  std::string family;  ///< the family's untranslated name
  std::string invalidValuesText;
  std::vector<Finding> findings;
};

/// What is found in one file, or why the file could not be checked.
struct FileFindings {
  std::string file;  ///< as it was given
  std::vector<TableFindings> tables;
  std::optional<std::string> error;
};

/// The invalid items of the table, in the order of the first section's rows, where the family says what
/// invalid means; then the values beyond their limits, section by section, row by row.
[[nodiscard]] TableFindings genFindings(ResultTable const& table);

}  // namespace Kestrel::ResultTables
