#include "result_tables/limits/LimitsDocument.h"

#include <fmt/format.h>

#include <exception>

#include "VantaService_PersistenceArchiver/Document.h"
#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Text.h"
#include "result_tables/limits/Limits.h"

namespace Kestrel::ResultTables {

std::filesystem::path limitsDocumentOf(std::string const& resultsFile) { return resultsFile + ".limits"; }

std::shared_ptr<TablePropertiesData> readLimits(std::filesystem::path const& document,
                                                ResultsFile const& file) {
  auto const content = readFileIfExists(document);
  if (!content) return genDefaultLimits(file);
  try {
    auto limits = loadDocument<TablePropertiesData>(*content);
    limits->updateLimits(unitIdsOf(file));
    return limits;
  } catch (std::exception const& damage) {
    throw Error(fmt::format("{}: {}", toPrintable(document.native()), toPrintable(damage.what())));
  }
}

void editLimits(std::filesystem::path const& document, ResultsFile const& file,
                std::function<void(TablePropertiesData&)> const& change) {
  auto const target = followLinks(document);
  FileLock const lock(target);
  auto const limits = readLimits(target, file);
  change(*limits);
  writeFile(target, genDocument(limits));
}

}  // namespace Kestrel::ResultTables
