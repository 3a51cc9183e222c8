#include "result_tables/render/JunitFindings.h"

#include <fmt/format.h>

#include <pugixml.hpp>
#include <sstream>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/TextFindings.h"

namespace Kestrel::ResultTables {

namespace {

// XML takes no control characters, not even as references: names are made printable.
pugi::xml_node appendSuite(pugi::xml_node& root, FileFindings const& file) {
  std::size_t failures = 0;
  for (auto const& table : file.tables) failures += table.findings.empty() ? 0U : 1U;
  auto suite = root.append_child("testsuite");
  suite.append_attribute("name") = toPrintable(file.file).c_str();
  suite.append_attribute("tests") = file.error ? 1U : static_cast<unsigned>(file.tables.size());
  suite.append_attribute("failures") = static_cast<unsigned>(failures);
  suite.append_attribute("errors") = file.error ? 1U : 0U;
  return suite;
}

pugi::xml_node appendCase(pugi::xml_node& suite, std::string const& unit, std::string const& name) {
  auto testCase = suite.append_child("testcase");
  testCase.append_attribute("classname") = toPrintable(unit).c_str();
  testCase.append_attribute("name") = toPrintable(name).c_str();
  return testCase;
}

}  // namespace

std::string renderFindingsAsJunit(std::vector<FileFindings> const& files) {
  pugi::xml_document document;
  auto root = document.append_child("testsuites");
  for (auto const& file : files) {
    auto suite = appendSuite(root, file);
    if (file.error) {
      appendCase(suite, file.file, "read").append_child("error").append_attribute("message") =
          toPrintable(*file.error).c_str();
    }
    for (auto const& table : file.tables) {
      auto testCase = appendCase(suite, table.unit, table.family);
      if (table.findings.empty()) continue;
      std::string lines;
      for (auto const& finding : table.findings) lines += findingLine(table, finding) + '\n';
      auto failure = testCase.append_child("failure");
      failure.append_attribute("message") =
          fmt::format("{}: {}", tr("findings"), table.findings.size()).c_str();
      failure.text() = lines.c_str();
    }
  }
  std::ostringstream out;
  document.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
  return out.str();
}

}  // namespace Kestrel::ResultTables
