#pragma once

#include <any>
#include <cstddef>
#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Findings.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// What a report keeps of the tables of a file, an `HtmlFile`, for `FileFindings::kept`.
[[nodiscard]] std::any keepForHtml(Tables const& tables, std::size_t index, TextStyle const& style);

/// A report of what is found, with the tables that it is found in, as `renderTablesAsHtml` makes it. Of a
/// file that kept nothing it says why there is nothing.
[[nodiscard]] std::string renderFindingsAsHtml(std::vector<FileFindings> const& files);

}  // namespace Kestrel::ResultTables
