#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `demo`: the tables of the built-in sample.
Run declareDemo(Arguments& arguments);

}  // namespace Kestrel::ResultTables
