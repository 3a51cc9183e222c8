#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

// docs/linking-a-host.md lists what the strict host declares, and nothing else.

namespace Kestrel {
namespace {

using Operations = std::set<std::string>;  // "class: declaration"

std::filesystem::path const s_source = KESTREL_SOURCE_DIR;

std::string contentOf(std::filesystem::path const& path) {
  std::ifstream const file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

/// Whether a declaration is that of a constructor or a destructor.
bool isMaking(std::string const& className, std::string const& declaration) {
  return declaration.starts_with(className + '(') || declaration.starts_with("explicit ") ||
         declaration.find('~') != std::string::npos;
}

/// Finds the declarations that a class shows to others.
class HeaderReader {
 public:
  explicit HeaderReader(Operations& found) : m_found(found) {}

  void readLine(std::string const& line) {
    static std::regex const classHead(R"((class|struct) (\w+)( .*|<.*)?\{)");
    std::smatch match;
    if (line == "namespace StrictHost {") m_isHidden = true;
    if (line == "}  // namespace StrictHost") m_isHidden = false;
    if (std::regex_match(line, match, classHead)) {
      m_class = match[2];
      m_isStruct = m_isShown = match[1] == "struct";
    } else if (line == "};") {
      m_class.clear();
    } else if (line == " public:" || line == " protected:" || line == " private:") {
      m_isShown = line != " private:";
    } else if (!m_class.empty() && m_isShown && !m_isHidden) {
      readMember(line);
    }
  }

 private:
  void readMember(std::string const& line) {
    bool const isBegin = line.size() > 2 && line.starts_with("  ") && line[2] != ' ' && line[2] != '}';
    if (isBegin)
      m_declaration = line.substr(2);
    else if (!m_declaration.empty())
      m_declaration += (m_declaration.ends_with('(') ? "" : " ") +
                       line.substr(std::min(line.find_first_not_of(' '), line.size()));
    auto const end = std::min(m_declaration.find(" {"), m_declaration.find(';'));
    if (end == std::string::npos) {
      if (m_declaration.starts_with("template") || m_declaration.starts_with("//")) m_declaration.clear();
      return;
    }
    m_declaration.resize(end);
    addDeclaration();
    m_declaration.clear();
  }

  void addDeclaration() {
    if (m_declaration.starts_with("friend bool")) m_declaration.erase(0, 7);
    for (auto const* const kept :
         {" = delete", " = default", " override", "friend ", "using ", "enum ", "struct "})
      if (m_declaration.find(kept) != std::string::npos || m_declaration.starts_with(kept)) return;
    m_declaration.resize(std::min(m_declaration.find(" = "), m_declaration.size()));
    bool const isOperation =
        m_declaration.find('(') != std::string::npos || m_declaration.starts_with("static ");
    if ((m_isStruct || isOperation) && !isMaking(m_class, m_declaration))
      m_found.insert(m_class + ": " + m_declaration);
  }

  Operations& m_found;
  std::string m_class;
  std::string m_declaration;
  bool m_isStruct = false;
  bool m_isShown = false;
  bool m_isHidden = false;
};

Operations declaredOperations() {
  Operations found;
  auto const modules = s_source / "tests/strict_host/modules";
  for (auto const& entry : std::filesystem::recursive_directory_iterator(modules)) {
    if (entry.path().extension() != ".h" || entry.path().parent_path().filename() == "StrictHost") continue;
    std::istringstream lines(contentOf(entry.path()));
    HeaderReader reader(found);
    for (std::string line; std::getline(lines, line);) reader.readLine(line);
  }
  return found;
}

/// The rows "| `class` | `declaration` | when | promise |" of the page.
Operations documentedOperations() {
  Operations found;
  auto const page = contentOf(s_source / "docs/linking-a-host.md");
  std::regex const row(R"(\n\| `(\w+)` \| `([^`]+)` \|)");
  for (std::sregex_iterator match(page.begin(), page.end(), row), end; match != end; ++match)
    if (!isMaking((*match)[1], (*match)[2])) found.insert((*match)[1].str() + ": " + (*match)[2].str());
  return found;
}

TEST(ListedOperations, AreThoseThatTheStrictHostDeclares) {
  auto const declared = declaredOperations();
  auto const documented = documentedOperations();
  EXPECT_TRUE(declared.contains("SimulationUnit: bool hasVisibleSimulationSteps() const"));
  for (auto const& operation : declared) EXPECT_TRUE(documented.contains(operation)) << operation;
  for (auto const& operation : documented) EXPECT_TRUE(declared.contains(operation)) << operation;
}

}  // namespace
}  // namespace Kestrel
