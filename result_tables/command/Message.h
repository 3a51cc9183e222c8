#pragma once

#include <string_view>

namespace Kestrel::ResultTables {

/// One line on standard error, with the program's name before it.
void printMessage(std::string_view message);

}  // namespace Kestrel::ResultTables
