#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `diff`: what differs between the tables of two results files.
Run declareDiff(Arguments& arguments);

}  // namespace Kestrel::ResultTables
