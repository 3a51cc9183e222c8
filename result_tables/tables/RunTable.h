#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/tables/RunValues.h"
#include "result_tables/tables/Statistics.h"

namespace Kestrel::ResultTables {

/// A section as the runs of a study have it.
struct RunTableSection {
  std::string unit;  ///< name and id are those of the first run
  std::string unitId;
  MaxValueGroupContainer::DataType family{};
  std::string name;
};

struct RunTableElement {
  std::size_t section;
  std::string subGroup;
  std::string item;
  std::size_t occurrence;  ///< how often that item has come before in the sub-group
};

/// One value of the tables, through all runs.
struct RunTableColumn {
  std::size_t element;
  std::size_t quantity;  ///< index in the quantities of the table
  std::size_t place;     ///< in the numbers of a run
  ValueStatistics statistics;
  std::optional<double> worst;  ///< the highest utilisation; none where no run has one
  std::size_t findings = 0;     ///< runs in which it is beyond its limit or, with a limit, holds NaN
};

/// What a run has for a value.
struct RunNumber {
  double value = 0.0;
  bool isThere = false;  ///< whether the run has such a value, with data
  bool isNaN = false;    ///< whether the data holds no number at all
  bool isValid = false;
  bool isExceeded = false;
};

/// The values of runs side by side. Takes 9 bytes for each value of a run.
class RunTable {
 public:
  /// In the order in which they were added.
  [[nodiscard]] std::vector<StudyRun> const& runs() const { return m_runs; }
  /// In the order of the tables of the first run that has them; those of later runs behind what they stand
  /// behind there.
  [[nodiscard]] std::vector<RunTableColumn> const& columns() const { return m_columns; }

  [[nodiscard]] RunTableElement const& element(RunTableColumn const& column) const {
    return m_elements[column.element];
  }
  [[nodiscard]] RunTableSection const& section(RunTableColumn const& column) const {
    return m_sections[m_elements[column.element].section];
  }
  /// With the limit of the last run that has one.
  [[nodiscard]] RunQuantity const& quantity(RunTableColumn const& column) const {
    return m_quantities[column.quantity];
  }

  [[nodiscard]] RunNumber number(std::size_t run, RunTableColumn const& column) const;
  [[nodiscard]] std::optional<double> limit(std::size_t run, RunTableColumn const& column) const;

  /// Whether different units of the table have this name.
  [[nodiscard]] bool isAmbiguous(std::string const& unit) const;

 private:
  friend class RunTableBuilder;

  struct Numbers {
    std::vector<double> values;                 ///< by place
    std::vector<std::uint8_t> marks;            ///< by place
    std::vector<std::optional<double>> limits;  ///< by quantity
  };

  std::vector<StudyRun> m_runs;
  std::vector<Numbers> m_numbers;  ///< by run
  std::vector<RunTableSection> m_sections;
  std::vector<RunTableElement> m_elements;
  std::vector<RunQuantity> m_quantities;
  std::vector<RunTableColumn> m_columns;
};

/// Makes such a table out of one run after the other. Values are the same where unit, family, section,
/// sub-group, item, how often that has come before, key and unit of measurement are. Units are the same where
/// their ids are or, where a run has none of the id, their names, as long as these are unique.
class RunTableBuilder {
 public:
  RunTableBuilder();
  ~RunTableBuilder();

  void add(RunValues&& run);
  /// The table; nothing can be added later.
  [[nodiscard]] RunTable take();

 private:
  class Layout;

  void addNumbers(RunValues const& run);
  void addValue(RunRow const& row, RunCell const& cell, RunQuantity const& quantity, std::size_t place);

  RunTable m_table;
  RunValues m_last;  ///< most runs have the layout of the one before
  std::unique_ptr<Layout> m_layout;
};

}  // namespace Kestrel::ResultTables
