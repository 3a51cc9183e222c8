#include "result_tables/render/RenderFindings.h"

#include <fmt/format.h>

#include <pugixml.hpp>
#include <sstream>
#include <string_view>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonWriter.h"
#include "result_tables/render/Ansi.h"

namespace Kestrel::ResultTables {

namespace {

std::string withUnit(double value, std::string const& unit) {
  return unit.empty() ? shortestForm(value) : shortestForm(value) + " " + unit;
}

/// "OP20, Clamps, Forces, Clamp 1, Max Closing Force: -846.15 N, limit 500 N"
std::string lineOf(TableFindings const& table, Finding const& finding) {
  auto line = table.unit + ", " + table.family;
  auto const append = [&line](std::string const& part) {
    if (!part.empty()) line += ", " + part;
  };
  append(finding.group);
  append(finding.subGroup);
  append(finding.item);
  if (finding.exceeded) {
    auto const& [column, value, limit] = *finding.exceeded;
    append(column);
    line += fmt::format(": {}, {} {}", withUnit(value, limit.unit), tr("limit"),
                        withUnit(limit.value, limit.unit));
  } else {
    line += ": " + table.invalidValuesText;
  }
  return toPrintable(line);
}

void writeFinding(JsonWriter& json, std::string const& file, TableFindings const& table,
                  Finding const& finding) {
  json.beginObject();
  json.text("file", file);
  json.text("unit", table.unit);
  json.text("family", table.family);
  json.text("group", finding.group);
  json.text("subGroup", finding.subGroup);
  json.text("item", finding.item);
  json.text("kind", finding.exceeded ? "exceeded" : "invalid");
  if (finding.exceeded) {
    json.text("column", finding.exceeded->column);
    json.number("value", finding.exceeded->value);
    json.number("limit", finding.exceeded->limit.value);
  } else {
    for (auto const* const key : {"column", "value", "limit"}) json.null(key);
  }
  json.endObject();
}

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

std::string renderFindingsAsText(std::vector<FileFindings> const& files, TextStyle const& style) {
  std::string out;
  std::size_t exceeded = 0;
  std::size_t invalid = 0;
  for (auto const& file : files) {
    for (auto const& table : file.tables) {
      for (auto const& finding : table.findings) {
        ++(finding.exceeded ? exceeded : invalid);
        auto const line = lineOf(table, finding);
        auto const prefix = files.size() > 1 ? toPrintable(file.file) + ": " : std::string();
        out += prefix + red(line, style.colour) + '\n';
      }
    }
  }
  return out + fmt::format("{}: {}, {}: {}\n", tr("values beyond their limits"), exceeded,
                           tr("invalid elements"), invalid);
}

std::string renderFindingsAsJson(std::vector<FileFindings> const& files) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("findings");
  for (auto const& file : files) {
    for (auto const& table : file.tables) {
      for (auto const& finding : table.findings) writeFinding(json, file.file, table, finding);
    }
  }
  json.endArray();
  json.endObject();
  return json.take();
}

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
      for (auto const& finding : table.findings) lines += lineOf(table, finding) + '\n';
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
