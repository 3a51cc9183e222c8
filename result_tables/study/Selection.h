#pragma once

#include <string>
#include <vector>

#include "result_tables/study/RunData.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// Whether a section is among those of the selected families: the teaching section of clamps and bolts is
/// only where that is asked for.
[[nodiscard]] bool isOfFamilies(TableSelection const& selection, RunSection const& section);

/// What is asked of the runs of a study, section by section. A unit need not be in every run, but one that no
/// run has is an `Error`.
class StudySelection {
 public:
  explicit StudySelection(TableSelection const& selection)
      : m_selection(selection), m_isMet(selection.units.size(), false) {}

  /// Whether a section is selected. Takes down its unit. `columns` and elements of the section do not matter.
  [[nodiscard]] bool has(RunSection const& section);

  /// Throws the `Error` for a unit that no section was of. `name` is the study's.
  void checkUnits(std::string const& name) const;

 private:
  TableSelection m_selection;
  std::vector<bool> m_isMet;         ///< by unit of the selection
  std::vector<std::string> m_known;  ///< names of the units that there are
};

}  // namespace Kestrel::ResultTables
