#include "result_tables/render/JunitFindings.h"

#include <fmt/format.h>

#include <map>
#include <pugixml.hpp>
#include <sstream>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/TextFindings.h"

namespace Kestrel::ResultTables {

namespace {

/// The suite of one file. XML takes no control characters, not even as references: names are made printable.
class Suite {
 public:
  Suite(pugi::xml_node& root, FileFindings const& file) : m_node(root.append_child("testsuite")) {
    m_node.append_attribute("name") = toPrintable(file.file).c_str();
    for (auto const* const count : {"tests", "failures", "errors", "skipped"}) m_node.append_attribute(count);
    if (file.error) {
      ++m_errors;
      append(file.file, "read").append_child("error").append_attribute("message") =
          toPrintable(*file.error).c_str();
    }
    for (auto const& table : file.tables) appendTable(table);
    m_node.attribute("tests") = m_tests;
    m_node.attribute("failures") = m_failures;
    m_node.attribute("errors") = m_errors;
    m_node.attribute("skipped") = m_skipped;
  }

 private:
  /// A test case whose name no other one of the file has.
  pugi::xml_node append(std::string const& className, std::string name) {
    auto const occurrence = ++m_occurrences[className + '\n' + name];
    if (occurrence > 1) name += fmt::format(" ({})", occurrence);
    ++m_tests;
    auto testCase = m_node.append_child("testcase");
    testCase.append_attribute("classname") = toPrintable(className).c_str();
    testCase.append_attribute("name") = toPrintable(name).c_str();
    return testCase;
  }

  void fail(pugi::xml_node testCase, std::string const& lines) {
    ++m_failures;
    auto failure = testCase.append_child("failure");
    failure.append_attribute("message") = lines.substr(0, lines.find('\n')).c_str();
    failure.text() = lines.c_str();
  }

  void skip(pugi::xml_node testCase, std::string const& message) {
    ++m_skipped;
    testCase.append_child("skipped").append_attribute("message") = message.c_str();
  }

  void appendTable(TableFindings const& table) {
    for (auto const& invalid : table.invalidItems) {
      auto const finding = table.findingOf(invalid);
      fail(append(table.unit, placeLine(table, finding.place)),
           findingLine(table, finding, TextStyle().digits));
    }
    for (auto const& value : table.values) appendValue(table, value);
  }

  void appendValue(TableFindings const& table, CheckedValue const& value) {
    auto testCase = append(table.unit, placeLine(table, table.placeOf(value)));
    std::string lines;
    table.forEachFindingOf(value, [&](Finding const& finding) {
      lines += (lines.empty() ? "" : "\n") + findingLine(table, finding, TextStyle().digits);
    });
    if (!lines.empty())
      fail(testCase, lines);
    else if (!value.isValid)
      skip(testCase, tr("not valid"));
    else if (value.isWithoutData())
      skip(testCase, tr("without data"));
  }

  pugi::xml_node m_node;
  std::map<std::string, unsigned> m_occurrences;
  unsigned m_tests = 0;
  unsigned m_failures = 0;
  unsigned m_errors = 0;
  unsigned m_skipped = 0;
};

}  // namespace

std::string renderFindingsAsJunit(std::vector<FileFindings> const& files) {
  pugi::xml_document document;
  auto root = document.append_child("testsuites");
  for (auto const& file : files) Suite(root, file);
  std::ostringstream out;
  document.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
  return out.str();
}

}  // namespace Kestrel::ResultTables
