#include "result_tables/render/HtmlPage.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <pugixml.hpp>
#include <regex>

#include "support/Shell.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;
using testing::Not;

class HtmlPageTest : public testing::Test {
 protected:
  static std::string fileOf(char const* name) {
    std::ifstream file(std::string(KESTREL_SOURCE_DIR "/result_tables/render/html/") + name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string const m_page = renderHtmlPage({"A & B", "<p>main</p>", "{\"t0\":{\"a\":\"</script>&\"}}"});
};

TEST_F(HtmlPageTest, IsWellFormedXmlWithTheGivenContent) {
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(m_page.c_str(), pugi::parse_full));
  auto const html = document.child("html");
  EXPECT_STREQ(html.attribute("lang").value(), "en");
  EXPECT_STREQ(html.child("head").child("title").child_value(), "A & B");
  EXPECT_STREQ(html.child("body").child("header").child("h1").child_value(), "A & B");
  EXPECT_STREQ(html.child("body").child("main").child("p").child_value(), "main");
}

TEST_F(HtmlPageTest, HoldsItsStyleAndItsScript) {
  EXPECT_THAT(m_page, HasSubstr("<style>/*<![CDATA[*/\n" + fileOf("report.css") + "/*]]>*/</style>"));
  EXPECT_THAT(m_page, HasSubstr("<script>/*<![CDATA[*/\n" + fileOf("report.js") + "/*]]>*/</script>"));
}

/// The contents of elements that a browser holds against the policy.
std::vector<std::string> contentsOf(std::string const& page, std::string const& element) {
  std::vector<std::string> contents;
  auto const begin = '<' + element + '>';
  for (std::size_t at = 0; (at = page.find(begin, at)) != std::string::npos; ++at) {
    auto const from = at + begin.size();
    contents.push_back(page.substr(from, page.find("</" + element + '>', from) - from));
  }
  return contents;
}

TEST_F(HtmlPageTest, AllowsNothingButItsStyleAndItsScripts) {
  std::smatch match;
  std::regex const policy(
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
      "style-src 'sha256-([^']+)'; script-src 'sha256-([^']+)' 'sha256-([^']+)'; "
      "base-uri 'none'; form-action 'none'\"/>");
  ASSERT_TRUE(std::regex_search(m_page, match, policy));
  auto contents = contentsOf(m_page, "style");
  auto const scripts = contentsOf(m_page, "script");
  contents.insert(contents.end(), scripts.begin(), scripts.end());
  ASSERT_EQ(contents.size(), 3U);
  TemporaryFolder const folder;
  for (std::size_t i = 0; i < contents.size(); ++i) {
    folder.write("content", contents[i]);
    auto const hash =
        runShell(folder.path(),
                 "python3 -c 'import base64, hashlib\n"
                 "print(base64.b64encode(hashlib.sha256(open(\"content\", \"rb\").read()).digest())"
                 ".decode())'");
    EXPECT_EQ(match[i + 1].str() + '\n', hash.out);
  }
}

TEST_F(HtmlPageTest, NamesNoOtherPlace) {
  for (auto const* const place : {"://", "url(", " src=", "@import", "import("})
    EXPECT_THAT(m_page, Not(HasSubstr(place)));
}

TEST_F(HtmlPageTest, EmbedsDataThatCannotEndItsElement) {
  EXPECT_THAT(m_page, HasSubstr("<script type=\"application/json\" id=\"curves\">"
                                "{\"t0\":{\"a\":\"\\u003c/script\\u003e\\u0026\"}}</script>"));
  EXPECT_THAT(m_page, HasSubstr("\"onlyFindings\": \"Only findings\""));
}

TEST(NumbersInHtml, AreWrittenForPeople) {
  EXPECT_EQ(numberInHtml(-1234.5678, 7), "-1234.568");
  EXPECT_EQ(numberInHtml(std::numeric_limits<double>::infinity(), 7), "inf");
  EXPECT_EQ(percentInHtml(1.04), "104 %");
  EXPECT_EQ(percentInHtml(0.123456), "12.35 %");
}

TEST(UtilisationClass, HasStepsOfFivePercent) {
  EXPECT_EQ(utilisationClass(std::nullopt, false), "");
  EXPECT_EQ(utilisationClass(0.0, false), "u0");
  EXPECT_EQ(utilisationClass(0.04999, false), "u0");
  EXPECT_EQ(utilisationClass(0.5, false), "u10");
  EXPECT_EQ(utilisationClass(0.999, false), "u19");
  EXPECT_EQ(utilisationClass(1.0, false), "u20");
  EXPECT_EQ(utilisationClass(1.0, true), "u21");
  EXPECT_EQ(utilisationClass(std::numeric_limits<double>::infinity(), true), "u21");
}

}  // namespace
}  // namespace Kestrel::ResultTables
