#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `series`: the series behind values of the tables of a results file.
Run declareSeries(Arguments& arguments);

}  // namespace Kestrel::ResultTables
