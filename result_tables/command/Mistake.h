#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace Kestrel::ResultTables {

/// What is wrong with arguments that `program` has tried to parse and refused: the most telling mistake, in
/// one line, with what was probably meant. `last` is the last of the arguments.
[[nodiscard]] std::string describeMistake(CLI::App const& program, std::string const& last);

}  // namespace Kestrel::ResultTables
