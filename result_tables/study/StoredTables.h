#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "result_tables/results/UnitSelection.h"
#include "result_tables/study/RunData.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// The tables of a run as they were when it was added, but for what a study does not keep: series, names of
/// series, texts about invalid elements, and units and families without sections. Headings are in the
/// language of today, names of sections in that of the day.
class StoredTables {
 public:
  /// `study` is what messages call the study. An `Error` where what is stored makes no tables.
  StoredTables(std::string const& study, RunData data);

  [[nodiscard]] StudyRun const& run() const { return m_data->run; }

  /// In the order of the tables. Messages call them those of the run.
  [[nodiscard]] NamedUnits units() const;

  /// The tables of the selected families of one unit, by number. They refer to this object.
  [[nodiscard]] std::vector<ResultTable> genTables(std::size_t unit, TableSelection const& selection) const;

 private:
  struct Unit {
    std::unique_ptr<SimulationUnit const> unit;
    std::vector<std::size_t> sections;
  };

  void addSection(std::string const& study, std::size_t section);
  void indexValues(std::string const& study);
  [[nodiscard]] ResultTable genTable(SimulationUnit const& unit, MaxValueGroupContainer::DataType family,
                                     std::vector<std::size_t> const& sections) const;
  void appendRows(MaxValueGroupContainer& container, MaxValueGroup& group, RunSection const& section) const;

  std::shared_ptr<RunData const> m_data;
  std::vector<Unit> m_units;
  /// Of each element its first value in `m_data`, and behind the last element, the end.
  std::shared_ptr<std::vector<std::size_t> const> m_firstValues;
};

}  // namespace Kestrel::ResultTables
