#include "result_tables/render/HtmlWriter.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

TEST(HtmlWriter, WritesElementsThatNestAndClosesThemAll) {
  HtmlWriter html;
  html.open("section", {{"id", "a"}, {"class", ""}});
  html.element("h2", "Clamps", {{"dir", "auto"}});
  html.leaf("meta", {{"charset", "utf-8"}});
  html.open("p");
  html.close();
  html.open("table");
  html.html("<tbody></tbody>");
  EXPECT_EQ(html.take(),
            "<section id=\"a\"><h2 dir=\"auto\">Clamps</h2><meta charset=\"utf-8\"/><p></p>"
            "<table><tbody></tbody></table></section>");
  EXPECT_EQ(html.take(), "");
}

TEST(HtmlWriter, ShowsWhateverItGetsAsText) {
  HtmlWriter html;
  html.element("td", "</td><script>\"a\" & 'b'", {{"title", "\" onclick=\"&<>"}});
  html.text(std::string("\0\x1b\n\xff", 4));
  EXPECT_EQ(
      html.take(),
      "<td title=\"&quot; onclick=&quot;&amp;&lt;&gt;\">&lt;/td&gt;&lt;script&gt;&quot;a&quot; &amp; 'b'"
      "</td>␀␛␊\xEF\xBF\xBD");
}

}  // namespace
}  // namespace Kestrel::ResultTables
