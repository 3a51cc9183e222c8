#include "result_tables/render/HtmlFindings.h"

#include <gmock/gmock.h>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(HtmlFindings, ShowTheTablesThatWereChecked) {
  auto const tables = genClampTables(R"([{"quantity": "ClampNormalForce", "values": [7.25]}])");
  FileFindings file{"r.json", {}, std::nullopt};
  file.kept = keepForHtml({tables, {{"r.json", {"OP20"}, "p.json", std::nullopt, 1}}}, 0, {});
  auto const page = renderFindingsAsHtml({file});
  EXPECT_THAT(page, HasSubstr("<title>Check of results</title>"));
  EXPECT_THAT(page, HasSubstr("<tr data-v=\"7.25 - - -\""));
  EXPECT_THAT(page, HasSubstr("<td dir=\"auto\">p.json</td>"));
  EXPECT_THAT(page, HasSubstr("<p class=\"verdict nothing\">"));
}

TEST(HtmlFindings, SayWhyAFileCouldNotBeChecked) {
  auto const page = renderFindingsAsHtml({{"r.json", {}, "r.json: cannot read"}});
  EXPECT_THAT(page, HasSubstr("<p class=\"verdict failed\">"));
  EXPECT_THAT(page, HasSubstr("<li dir=\"auto\">r.json: cannot read</li>"));
  EXPECT_THAT(page, Not(HasSubstr("class=\"unit\"")));
}

}  // namespace
}  // namespace Kestrel::ResultTables
