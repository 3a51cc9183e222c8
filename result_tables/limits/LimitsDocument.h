#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "Business_TableProperties/TablePropertiesData.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// Where the limits of a results file are kept when no other place is named: beside it, `.limits` appended.
[[nodiscard]] std::filesystem::path limitsDocumentOf(std::string const& resultsFile);

/// The limits of a document, in step with the units of the file. A document that cannot be read or is damaged
/// is an `Error`. Takes no lock and writes nothing: it gets what a writer has finished last.
[[nodiscard]] std::shared_ptr<TablePropertiesData> readLimits(std::filesystem::path const& document,
                                                              ResultsFile const& file);

/// The same, and the defaults where there is no document.
[[nodiscard]] std::shared_ptr<TablePropertiesData> readLimitsIfExist(std::filesystem::path const& document,
                                                                     ResultsFile const& file);

/// Changes the limits that `readLimitsIfExist` gives and writes them back, whole or not at all. Nobody else
/// who comes this way changes the document in between, see `FileLock`. When `change` throws nothing is
/// written.
void editLimits(std::filesystem::path const& document, ResultsFile const& file,
                std::function<void(TablePropertiesData&)> const& change);

}  // namespace Kestrel::ResultTables
