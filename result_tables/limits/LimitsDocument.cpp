#include "result_tables/limits/LimitsDocument.h"

#include <fmt/format.h>

#include <exception>

#include "VantaService_PersistenceArchiver/Document.h"
#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsText.h"

namespace Kestrel::ResultTables {

std::filesystem::path limitsDocumentOf(std::string const& resultsFile) { return resultsFile + ".limits"; }

namespace {

std::shared_ptr<TablePropertiesData> limitsInArchive(std::string const& content,
                                                     std::filesystem::path const& document,
                                                     ResultsFile const& file) {
  try {
    auto limits = loadDocument<TablePropertiesData>(content);
    limits->updateLimits(unitIdsOf(file));
    return limits;
  } catch (std::exception const& damage) {
    throw Error(fmt::format("{}: {}", toPrintable(document.native()), toPrintable(damage.what())),
                document.native());
  }
}

/// What a document that is to be changed holds, which is nothing where there is none.
std::optional<std::string> contentToChange(std::filesystem::path const& document) {
  auto content = readFileIfExists(document);
  if (!content || !isLimitsText(*content)) return content;
  throw Error(tr("{}: expected a limits document, found a text of limits, which {} reads",
                 toPrintable(document.native()), "limits import"),
              document.native());
}

/// What a change begins with.
std::shared_ptr<TablePropertiesData> limitsToChange(std::filesystem::path const& document,
                                                    ResultsFile const& file) {
  auto const content = contentToChange(document);
  return content ? limitsInArchive(*content, document, file) : genDefaultLimits(file);
}

}  // namespace

ResultLimits limitsIn(std::string const& content, std::filesystem::path const& document,
                      ResultsFile const& file) {
  auto limits = isLimitsText(content) ? genLimits(readLimitsText(document.native(), content), file)
                                      : ResultLimits{limitsInArchive(content, document, file)};
  limits.source = document.native();
  return limits;
}

ResultLimits readLimits(std::filesystem::path const& document, ResultsFile const& file) {
  return limitsIn(readFile(document), document, file);
}

LimitsContent readLimitsContent(std::filesystem::path const& document) {
  return {document, readFileIfExists(document)};
}

ResultLimits LimitsContent::limitsOf(ResultsFile const& file) const {
  return content ? limitsIn(*content, document, file) : ResultLimits{genDefaultLimits(file)};
}

void editLimits(std::filesystem::path const& document, ResultsFile const& file,
                std::function<void(TablePropertiesData&)> const& change) {
  auto const target = followLinks(document);
  FileLock const lock(target);
  auto const limits = limitsToChange(target, file);
  change(*limits);
  writeFile(target, genDocument(limits));
}

void replaceLimits(std::filesystem::path const& document,
                   std::shared_ptr<TablePropertiesData> const& limits) {
  auto const target = followLinks(document);
  FileLock const lock(target);
  static_cast<void>(contentToChange(target));
  writeFile(target, genDocument(limits));
}

}  // namespace Kestrel::ResultTables
