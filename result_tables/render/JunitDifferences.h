#pragma once

#include <string>

#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// A JUnit report of one suite with a case per element and section that one of the files has: failed where
/// they differ, with a line per value. A file that could not be read is a case in error. No two cases have
/// the same names.
[[nodiscard]] std::string renderDifferencesAsJunit(ResultDifferences const& differences);

}  // namespace Kestrel::ResultTables
