#include "result_tables/import/Import.h"

#include <algorithm>
#include <cctype>

#include "result_tables/base/File.h"
#include "result_tables/import/CalculixHistories.h"
#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/ImportMap.h"
#include "result_tables/import/MapRecords.h"
#include "result_tables/results/ResultsBuilder.h"
#include "result_tables/results/ResultsWriter.h"

namespace Kestrel::ResultTables {

namespace {

Histories readText(ImportFormat format, std::string const& source, std::string_view text,
                   DecimalMark decimalMark) {
  switch (format) {
    case ImportFormat::calculix:
      return readCalculixHistories(source, text);
    case ImportFormat::csv:
      break;
  }
  return readCsvHistories(source, text, decimalMark);
}

/// What `make` makes of the map and the histories that it refers to.
template <typename Make>
auto withMap(ImportFormat format, std::filesystem::path const& input, std::filesystem::path const& map,
             DecimalMark decimalMark, std::optional<ImportSteps> const& steps, OnNote const& onNote,
             Make const& make) {
  return namingWhatIsTooLarge(nameOfInput(input.string()), [&] {
    auto const histories = readHistories(format, input, decimalMark, onNote);
    return make(readImportMap(nameOfInput(map.string()), readInput(map.string()).text(), histories, steps));
  });
}

}  // namespace

std::optional<ImportFormat> importFormatOf(std::filesystem::path const& input) {
  auto suffix = input.extension().string();
  std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (suffix == ".dat") return ImportFormat::calculix;
  if (suffix == ".csv" || suffix == ".tsv" || suffix == ".txt") return ImportFormat::csv;
  return std::nullopt;
}

Histories readHistories(ImportFormat format, std::filesystem::path const& input, DecimalMark decimalMark,
                        OnNote const& onNote) {
  auto const name = nameOfInput(input.string());
  auto histories = namingWhatIsTooLarge(
      name, [&] { return readText(format, name, readInput(input.string()).text(), decimalMark); });
  for (auto const& note : histories.notes()) {
    if (onNote) onNote(note);
  }
  return histories;
}

std::string importHistories(ImportFormat format, std::filesystem::path const& input,
                            std::filesystem::path const& map, DecimalMark decimalMark,
                            std::optional<ImportSteps> const& steps, OnNote const& onNote) {
  return withMap(format, input, map, decimalMark, steps, onNote,
                 [](ImportMap const& read) { return writeResults(genUnitRecords(read)); });
}

ResultsFile importResults(ImportFormat format, std::filesystem::path const& input,
                          std::filesystem::path const& map, DecimalMark decimalMark, OnNote const& onNote) {
  auto file = withMap(format, input, map, decimalMark, {}, onNote, [&input](ImportMap const& read) {
    return buildResults(nameOfInput(input.string()), genUnitRecords(read));
  });
  file.givenName = input.string();
  return file;
}

}  // namespace Kestrel::ResultTables
