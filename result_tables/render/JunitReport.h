#pragma once

#include <map>
#include <pugixml.hpp>
#include <string>

namespace Kestrel::ResultTables {

/// Writes a JUnit report of suites of cases. XML takes no control characters, not even as references: names
/// and messages are made printable. A case whose names another one of its suite has gets a number.
class JunitReport {
 public:
  JunitReport();

  /// The cases that follow are those of this suite. REQUIRES: comes before the first case.
  void beginSuite(std::string const& name);

  void addPassed(std::string const& className, std::string const& name);
  /// `message` may have several lines, of which the first stands for all.
  void addFailed(std::string const& className, std::string const& name, std::string const& message);
  void addSkipped(std::string const& className, std::string const& name, std::string const& message);
  void addError(std::string const& className, std::string const& name, std::string const& message);

  [[nodiscard]] std::string text() const;

 private:
  pugi::xml_node addCase(std::string const& className, std::string const& name);
  /// `name`, numbered where it is taken; from now on it is taken. Both are printable.
  std::string takeName(std::string const& className, std::string const& name);
  /// What became of a case other than that it passed, which the suite's `count` counts.
  pugi::xml_node addOutcome(pugi::xml_node testCase, char const* outcome, char const* count,
                            std::string const& message);

  pugi::xml_document m_document;
  pugi::xml_node m_suite;
  std::map<std::string, unsigned> m_uses;  ///< of the names of the suite's cases
};

}  // namespace Kestrel::ResultTables
