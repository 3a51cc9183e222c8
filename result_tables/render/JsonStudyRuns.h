#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/StudyRun.h"

namespace Kestrel::ResultTables {

/// { "runs": [ … ] }
[[nodiscard]] std::string renderStudyRunsAsJson(std::vector<StudyRun> const& runs);

}  // namespace Kestrel::ResultTables
