#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `check`: values beyond their limits and failed joins of results files.
Run declareCheck(Arguments& arguments);

}  // namespace Kestrel::ResultTables
