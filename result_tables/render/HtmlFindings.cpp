#include "result_tables/render/HtmlFindings.h"

#include <utility>

#include "result_tables/base/Translate.h"
#include "result_tables/render/HtmlTables.h"

namespace Kestrel::ResultTables {

std::any keepForHtml(Tables const& tables, std::size_t index, TextStyle const& style) {
  return genHtmlFile(tables.files.front(), tables.tables, index, style);
}

std::string renderFindingsAsHtml(std::vector<FileFindings> const& files) {
  std::vector<HtmlFile> pages;
  for (auto const& file : files) {
    if (auto const* const kept = std::any_cast<HtmlFile>(&file.kept))
      pages.push_back(*kept);
    else
      pages.push_back({{file.file, {}, {}, file.error}, pages.size(), {}, {}, {}, {}});
  }
  return renderHtmlFiles(tr("Check of results"), std::move(pages));
}

}  // namespace Kestrel::ResultTables
