#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// A value of a run of a study that takes much of its limit. Refers to nothing.
struct WorstValue {
  std::string run;
  std::string file;  ///< of the run, as it was given
  std::string unit;  ///< the unit's name
  std::string unitId;
  std::string_view family;  ///< the family's untranslated name
  std::string title;        ///< its translated one
  std::string group;        ///< the section's name
  std::string subGroup;     ///< empty where the item is in none
  std::string item;
  TableColumn column;  ///< with its limit, which is there
  TableValue value;
  double utilisation;  ///< as `utilisationOf` has it
};

/// From the highest utilisation down; equal ones in the order in which the runs were added, then as in the
/// tables.
using WorstValues = std::vector<WorstValue>;

}  // namespace Kestrel::ResultTables
