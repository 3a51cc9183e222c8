#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "result_tables/study/Database.h"

namespace Kestrel::ResultTables {

/// Opens a file of SQLite. One that is of another kind, or that holds something else than a study, stays as
/// it is and is an `Error`; so is one that is missing and only to be read. Whatever is in the file can do no
/// more than be read: nothing that it defines is run.
///
/// Files are in the mode of a write-ahead log: others read while one writes, and a process that is ended in
/// the middle leaves the state before. One that is only to be read may lie on a file system that cannot be
/// written.
[[nodiscard]] std::unique_ptr<Database> openSqliteDatabase(std::string const& file, DatabaseAccess access,
                                                           std::chrono::milliseconds wait = s_longestWait);

}  // namespace Kestrel::ResultTables
