#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/render/HtmlWriter.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// A number that a person wants to know first. `kind` is its class.
struct HtmlCount {
  std::string_view kind;
  std::string text;
  std::size_t count;
};

/// What a report begins with.
struct HtmlSummary {
  std::string_view verdictKind;  ///< "failed", "found", "nothing" or "fine"
  std::string verdict;
  std::vector<HtmlCount> counts;
  std::vector<TablesFile> files;
};

/// Opens the first section of a report, with the summary in it: the verdict, the counts, the files that could
/// not be read, and what was read, as far as there is any. The caller may add to the section, and closes it.
void openHtmlSummary(HtmlWriter& html, HtmlSummary const& summary);

/// A mark behind a number, which says what it means.
void appendHtmlMark(HtmlWriter& html, std::string_view mark, std::string const& meaning);

}  // namespace Kestrel::ResultTables
