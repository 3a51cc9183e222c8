#include "result_tables/import/Import.h"

#include "result_tables/base/File.h"
#include "result_tables/import/CalculixHistories.h"
#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/ImportMap.h"
#include "result_tables/import/ResultsWriter.h"

namespace Kestrel::ResultTables {

namespace {

Histories readHistories(ImportFormat format, std::string const& source, std::string_view text) {
  switch (format) {
    case ImportFormat::calculix:
      return readCalculixHistories(source, text);
    case ImportFormat::csv:
      break;
  }
  return readCsvHistories(source, text);
}

Histories readHistories(ImportFormat format, std::filesystem::path const& input) {
  return readHistories(format, nameOfInput(input.string()), readInput(input.string()));
}

}  // namespace

std::string importHistories(ImportFormat format, std::filesystem::path const& input,
                            std::filesystem::path const& map) {
  return namingWhatIsTooLarge(nameOfInput(input.string()), [&] {
    auto const histories = readHistories(format, input);
    return writeResults(readImportMap(nameOfInput(map.string()), readInput(map.string()), histories));
  });
}

}  // namespace Kestrel::ResultTables
