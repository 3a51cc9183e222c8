#include "result_tables/render/JunitReport.h"

#include <fmt/format.h>

#include <cassert>
#include <sstream>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

/// Line ends separate the lines of a message; all else is made printable.
std::string printableLines(std::string_view text) {
  std::string lines;
  while (true) {
    auto const end = text.find('\n');
    lines += toPrintable(text.substr(0, end));
    if (end == text.npos) return lines;
    lines += '\n';
    text.remove_prefix(end + 1);
  }
}

void increment(pugi::xml_attribute count) { count = count.as_uint() + 1; }

}  // namespace

JunitReport::JunitReport() { m_document.append_child("testsuites"); }

void JunitReport::beginSuite(std::string const& name) {
  m_suite = m_document.document_element().append_child("testsuite");
  m_suite.append_attribute("name") = toPrintable(name).c_str();
  for (auto const* const count : {"tests", "failures", "errors", "skipped"})
    m_suite.append_attribute(count) = 0U;
  m_uses.clear();
}

std::string JunitReport::takeName(std::string const& className, std::string const& name) {
  auto const keyOf = [&className](std::string const& of) { return className + '\n' + of; };
  auto& uses = m_uses[keyOf(name)];
  if (++uses == 1) return name;
  for (;; ++uses) {
    auto numbered = fmt::format("{} ({})", name, uses);
    if (m_uses.try_emplace(keyOf(numbered), 1U).second) return numbered;
  }
}

pugi::xml_node JunitReport::addCase(std::string const& className, std::string const& name) {
  assert(m_suite);
  auto const printable = toPrintable(className);
  auto testCase = m_suite.append_child("testcase");
  testCase.append_attribute("classname") = printable.c_str();
  testCase.append_attribute("name") = takeName(printable, toPrintable(name)).c_str();
  increment(m_suite.attribute("tests"));
  return testCase;
}

pugi::xml_node JunitReport::addOutcome(pugi::xml_node testCase, char const* outcome, char const* count,
                                       std::string const& message) {
  increment(m_suite.attribute(count));
  auto node = testCase.append_child(outcome);
  node.append_attribute("message") = message.c_str();
  return node;
}

void JunitReport::addPassed(std::string const& className, std::string const& name) {
  addCase(className, name);
}

void JunitReport::addFailed(std::string const& className, std::string const& name,
                            std::string const& message) {
  auto const lines = printableLines(message);
  auto const firstLine = lines.substr(0, lines.find('\n'));
  addOutcome(addCase(className, name), "failure", "failures", firstLine).text() = lines.c_str();
}

void JunitReport::addSkipped(std::string const& className, std::string const& name,
                             std::string const& message) {
  addOutcome(addCase(className, name), "skipped", "skipped", toPrintable(message));
}

void JunitReport::addError(std::string const& className, std::string const& name,
                           std::string const& message) {
  addOutcome(addCase(className, name), "error", "errors", toPrintable(message));
}

std::string JunitReport::text() const {
  std::ostringstream out;
  m_document.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
  return out.str();
}

}  // namespace Kestrel::ResultTables
