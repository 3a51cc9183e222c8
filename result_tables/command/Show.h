#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `show`: the tables of a results file.
Run declareShow(Arguments& arguments);

}  // namespace Kestrel::ResultTables
