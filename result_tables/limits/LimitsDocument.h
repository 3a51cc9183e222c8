#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Business_TableProperties/TablePropertiesData.h"
#include "result_tables/limits/ResultLimits.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// Where the limits of a results file are kept when no other place is named: beside it, `.limits` appended.
[[nodiscard]] std::filesystem::path limitsDocumentOf(std::string const& resultsFile);

/// The limits of a document or of a text of limits, in step with the units of the file. One that cannot be
/// read or is damaged is an `Error`. Takes no lock and writes nothing: it gets what a writer has finished
/// last.
[[nodiscard]] ResultLimits readLimits(std::filesystem::path const& document, ResultsFile const& file);

/// The same for a document whose content is in memory.
[[nodiscard]] ResultLimits limitsIn(std::string const& content, std::filesystem::path const& document,
                                    ResultsFile const& file);

/// What stands in a document or a text of limits; nothing where the limits are the defaults.
struct LimitsContent {
  std::filesystem::path document;
  std::optional<std::string> content;

  [[nodiscard]] ResultLimits limitsOf(ResultsFile const& file) const;
};

/// Nothing stands in a document that does not exist.
[[nodiscard]] LimitsContent readLimitsContent(std::filesystem::path const& document);

/// Changes the limits of a document, the defaults where there is none, and writes them back, whole or not at
/// all. Nobody else who comes this way changes the document in between, see `FileLock`. When `change` throws
/// nothing is written, and neither when a text of limits stands in the document's place, which is an `Error`.
void editLimits(std::filesystem::path const& document, ResultsFile const& file,
                std::function<void(TablePropertiesData&)> const& change);

/// Puts limits in the place of a document's, whatever these were, or makes a new document; otherwise as
/// `editLimits`.
void replaceLimits(std::filesystem::path const& document, std::shared_ptr<TablePropertiesData> const& limits);

}  // namespace Kestrel::ResultTables
