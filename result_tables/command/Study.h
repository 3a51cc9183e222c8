#pragma once

#include <span>

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// What stands behind `study`.
[[nodiscard]] std::span<Command const> studyCommands();

}  // namespace Kestrel::ResultTables
