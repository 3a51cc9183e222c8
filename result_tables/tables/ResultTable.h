#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "Business_TableProperties/SimUnitMaxValueOrigins.h"
#include "result_tables/limits/ResultLimits.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// The limit that the values of a column are compared with.
struct ColumnLimit {
  double value;
  std::string unit;
};

/// A column of a section with everything that a header can say. Texts that are not known are empty.
struct TableColumn {
  std::string key;  ///< the same in every language
  std::string displayName;
  std::string shortDisplayName;
  std::string tableDisplayName;
  std::string shortTableDisplayName;
  std::string unit;
  TablePropertyLimitType limitType = TablePropertyLimitType::NoLimit;
  std::optional<ColumnLimit> limit;

  /// What a table is headed with; the key where there is no name.
  [[nodiscard]] std::string const& shownName() const {
    return tableDisplayName.empty() ? key : tableDisplayName;
  }
};

/// A value of a table with what is known about it.
struct TableValue {
  double value;
  MaxValueOrigin origin;
  bool isExceeded;

  /// Whether there is anything that the value was chosen from.
  [[nodiscard]] bool hasData() const { return origin.count > 0 || origin.nanCount > 0; }
  /// Whether that holds no number at all.
  [[nodiscard]] bool isNaN() const { return origin.count == 0 && origin.nanCount > 0; }
};

/// Knows where the values of a table come from. May be asked on several threads at once.
class ValueOrigins {
 public:
  virtual ~ValueOrigins() = default;
  [[nodiscard]] virtual MaxValueOrigin originOf(SimUnitMaxValueOrigins::Place const& place) const = 0;
  /// A copy of the series; an empty one where there is none.
  [[nodiscard]] virtual MaxValueSeries genSeriesOf(SimUnitMaxValueOrigins::Place const& place) const = 0;
};

/// What the catalogue says of a column that the library calls `valueName`, without limit.
[[nodiscard]] TableColumn genColumn(std::string const& valueName);

/// The table of one family of one unit, joined from maximum values, where they come from, headers and limits.
/// Knows nothing of how it is shown. Refers to the unit, which must outlive it.
class ResultTable {
 public:
  using Place = SimUnitMaxValueOrigins::Place;

  /// `file` is the results file as it was given. Reads the limits that stand in `limits` now; later changes
  /// do not reach the table.
  ResultTable(std::string file, SimulationUnit const& unit, std::weak_ptr<SimulationResult> const& result,
              std::shared_ptr<MaxValueGroupContainer const> container, ResultLimits const& limits);

  /// The same of values that have been collected before: `columns` are those of each section, with their
  /// limits.
  ResultTable(std::string file, SimulationUnit const& unit,
              std::shared_ptr<MaxValueGroupContainer const> container,
              std::vector<std::vector<TableColumn>> columns, std::shared_ptr<ValueOrigins const> origins);

  [[nodiscard]] std::string const& file() const { return m_file; }
  [[nodiscard]] SimulationUnit const& unit() const { return *m_unit; }
  [[nodiscard]] MaxValueGroupContainer const& container() const { return *m_container; }
  [[nodiscard]] std::shared_ptr<MaxValueGroupContainer const> const& sharedContainer() const {
    return m_container;
  }

  /// The container's title, or where that is empty, as it is without elements, the family's.
  [[nodiscard]] std::string title() const;

  /// The columns of `container().groups[group]`, one per entry of its `valueNames`.
  [[nodiscard]] std::vector<TableColumn> const& columns(std::size_t group) const { return m_columns[group]; }
  /// Of all sections.
  [[nodiscard]] std::vector<std::vector<TableColumn>> const& columns() const { return m_columns; }

  /// Whether the item's values can be trusted: all but those that the container says no to.
  [[nodiscard]] bool isValid(MaxValueItem const& item) const;

  /// The item's name, marked when its values are invalid.
  [[nodiscard]] std::string displayName(MaxValueItem const& item) const;

  /// Whether the item is valid and its value in a column of `container().groups[group]` is beyond the
  /// column's limit.
  [[nodiscard]] bool isExceeded(std::size_t group, std::size_t column, MaxValueItem const& item) const;

  /// Where a value comes from. Passes over its series with each call.
  [[nodiscard]] MaxValueOrigin origin(Place const& place) const { return m_origins->originOf(place); }

  /// The series that a value comes from.
  [[nodiscard]] MaxValueSeries genSeries(Place const& place) const { return m_origins->genSeriesOf(place); }

  /// The value at a place that has a column. Passes over its series.
  [[nodiscard]] TableValue genValue(Place const& place) const;

  /// The values of `container().groups[group].subGroups[subGroup].items[item]` that have a column. Passes
  /// over their series with each call.
  [[nodiscard]] std::vector<TableValue> genRow(std::size_t group, std::size_t subGroup,
                                               std::size_t item) const;

 private:
  std::string m_file;
  SimulationUnit const* m_unit;
  std::shared_ptr<MaxValueGroupContainer const> m_container;
  std::shared_ptr<ValueOrigins const> m_origins;
  std::vector<std::vector<TableColumn>> m_columns;  ///< per group
};

/// What to show of a results file.
struct TableSelection {
  std::vector<std::string> units;                          ///< ids or names; none: all
  std::vector<MaxValueGroupContainer::DataType> families;  ///< none: all that have sections
  bool teaching = false;                                   ///< clamps and bolts with their teaching section
};

/// The tables of the selected families of one unit of `file`, by number. They refer to the unit.
[[nodiscard]] std::vector<ResultTable> genUnitTables(ResultsFile const& file, ResultsUnit const& unit,
                                                     TableSelection const& selection,
                                                     ResultLimits const& limits);

/// The selected tables: units in the file's order, families by number inside a unit. A unit that the file
/// lacks is an `Error`. The tables refer to `file`.
[[nodiscard]] std::vector<ResultTable> genResultTables(ResultsFile const& file,
                                                       TableSelection const& selection,
                                                       ResultLimits const& limits);

}  // namespace Kestrel::ResultTables
