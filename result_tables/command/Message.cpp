#include "result_tables/command/Message.h"

#include <fmt/format.h>

#include <cstdio>

namespace Kestrel::ResultTables {

void printMessage(std::string_view message) { fmt::print(stderr, "result-tables: {}\n", message); }

}  // namespace Kestrel::ResultTables
