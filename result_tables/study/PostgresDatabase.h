#pragma once

#include <memory>
#include <string>

#include "result_tables/study/Database.h"

namespace Kestrel::ResultTables {

/// Connects to a PostgreSQL server by an address "postgresql://…". What the address does not say comes from
/// the usual places: the environment, the service file, the password file. The client's library is loaded
/// when it is first needed, and need not be there before.
[[nodiscard]] std::unique_ptr<Database> openPostgresDatabase(std::string const& address);

}  // namespace Kestrel::ResultTables
