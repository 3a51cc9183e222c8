#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/StudyRun.h"

namespace Kestrel::ResultTables {

/// A column of a section of a run.
struct RunQuantity {
  std::string key;
  std::string unit;
  std::optional<ColumnLimit> limit;

  /// What a table is headed with; empty where that is not known.
  [[nodiscard]] std::string name() const;
  /// The same; the key where it is not known.
  [[nodiscard]] std::string shownName() const;
};

struct RunCell {
  std::size_t column;  ///< index in the columns of the section
  TableValue value;
};

/// An element of a section. One that has no values need not be there.
struct RunRow {
  std::string subGroup;
  std::string item;
  std::size_t occurrence;  ///< how often that item has come before in the sub-group
  bool isValid;
  std::vector<RunCell> cells;  ///< by column
};

struct RunSectionValues {
  std::string unit;
  std::string unitId;
  MaxValueGroupContainer::DataType family{};
  std::string name;
  std::vector<RunQuantity> columns;
  std::vector<RunRow> rows;
};

/// Values of a run, in the order of its tables. Refers to nothing.
struct RunValues {
  StudyRun run;
  std::vector<RunSectionValues> sections;
};

}  // namespace Kestrel::ResultTables
