#pragma once

#include <filesystem>
#include <string>

namespace Kestrel::ResultTables {

enum class ImportFormat { calculix, csv };

/// The text of a results file (docs/results-file.md) made of the histories in `input` as the map file says
/// (docs/importing.md). Throws `Error`, with one line that names the file, the place, what was expected and
/// what was found, when either file cannot be read or is not as its format has it. Holds the input's text
/// while it is read and all its numbers; linear in both.
[[nodiscard]] std::string importHistories(ImportFormat format, std::filesystem::path const& input,
                                          std::filesystem::path const& map);

}  // namespace Kestrel::ResultTables
