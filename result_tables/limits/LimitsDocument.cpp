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

namespace {

std::shared_ptr<TablePropertiesData> limitsIn(std::string const& content,
                                              std::filesystem::path const& document,
                                              ResultsFile const& file) {
  try {
    auto limits = loadDocument<TablePropertiesData>(content);
    limits->updateLimits(unitIdsOf(file));
    return limits;
  } catch (std::exception const& damage) {
    throw Error(fmt::format("{}: {}", toPrintable(document.native()), toPrintable(damage.what())));
  }
}

}  // namespace

std::shared_ptr<TablePropertiesData> readLimits(std::filesystem::path const& document,
                                                ResultsFile const& file) {
  return limitsIn(readFile(document), document, file);
}

std::shared_ptr<TablePropertiesData> readLimitsIfExist(std::filesystem::path const& document,
                                                       ResultsFile const& file) {
  auto const content = readFileIfExists(document);
  return content ? limitsIn(*content, document, file) : genDefaultLimits(file);
}

void editLimits(std::filesystem::path const& document, ResultsFile const& file,
                std::function<void(TablePropertiesData&)> const& change) {
  auto const target = followLinks(document);
  FileLock const lock(target);
  auto const limits = readLimitsIfExist(target, file);
  change(*limits);
  writeFile(target, genDocument(limits));
}

}  // namespace Kestrel::ResultTables
