#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

// The commands that change the limits document of a results file.

/// `limits set`: a limit of one kind, in some units or in all.
Run declareSetLimits(Arguments& arguments);

/// `limits reset`: back to the defaults.
Run declareResetLimits(Arguments& arguments);

/// `limits sync`: in step with the units of the results file, and no more.
Run declareSyncLimits(Arguments& arguments);

/// `limits import`: the limits that a text says.
Run declareImportLimits(Arguments& arguments);

}  // namespace Kestrel::ResultTables
