#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/Histories.h"
#include "result_tables/import/ImportMap.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

enum class ImportFormat { calculix, csv };

struct NamedImportFormat {
  std::string_view name;
  ImportFormat format;
};

inline constexpr NamedImportFormat s_importFormats[] = {
    {"calculix", ImportFormat::calculix},
    {"csv", ImportFormat::csv},
};

/// The format of the inputs that are called so: calculix of ".dat", csv of ".csv", ".tsv" and ".txt", in
/// either case; none of other names.
[[nodiscard]] std::optional<ImportFormat> importFormatOf(std::filesystem::path const& input);

/// Gets a line for each kind of print in an input that is passed over.
using OnNote = std::function<void(std::string const&)>;

/// The histories in `input`. Commas are decimal in CSV alone. Throws `Error`, with one line that names the
/// file, the place, what was expected and what was found, when it cannot be read or is not as its format has
/// it. Holds the input's text while it is read; linear in it.
[[nodiscard]] Histories readHistories(ImportFormat format, std::filesystem::path const& input,
                                      DecimalMark decimalMark = DecimalMark::point,
                                      OnNote const& onNote = {});

/// The text of a results file (docs/results-file.md) made of the histories in `input` as the map file says
/// (docs/importing.md). `steps` goes before what the map says of steps. Throws `Error` as `readHistories`
/// does, for the map as for the input; linear in both.
[[nodiscard]] std::string importHistories(ImportFormat format, std::filesystem::path const& input,
                                          std::filesystem::path const& map,
                                          DecimalMark decimalMark = DecimalMark::point,
                                          std::optional<ImportSteps> const& steps = {},
                                          OnNote const& onNote = {});

/// What a reader makes of that text, without the text between. The input's name is that of the results.
[[nodiscard]] ResultsFile importResults(ImportFormat format, std::filesystem::path const& input,
                                        std::filesystem::path const& map,
                                        DecimalMark decimalMark = DecimalMark::point,
                                        OnNote const& onNote = {});

}  // namespace Kestrel::ResultTables
