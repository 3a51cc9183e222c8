#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/StudyRun.h"

namespace Kestrel::ResultTables {

/// One line per run; those with something beyond a limit are red.
[[nodiscard]] std::string renderStudyRunsAsText(std::vector<StudyRun> const& runs, TextStyle const& style);

}  // namespace Kestrel::ResultTables
