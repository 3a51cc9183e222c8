#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// A name for each column that no other has: unit, family, section, sub-group, item, how often that item has
/// come before in the sub-group, and key, as "OP20/Clamps/Forces//C1/0/ClampNormalForce". In a part "/" is
/// "\/" and "\" is "\\". Where units of different ids have one name, the id stands behind it as a part of its
/// own. Of columns that have all these in common the second ends with a part "2", and so on.
[[nodiscard]] std::vector<std::string> genColumnNames(RunTable const& table);

/// The names of the labels that runs have, sorted.
[[nodiscard]] std::vector<std::string> labelNamesOf(std::vector<StudyRun> const& runs);

/// The run's label of that name; empty where it has none.
[[nodiscard]] std::string labelOf(StudyRun const& run, std::string const& name);

}  // namespace Kestrel::ResultTables
