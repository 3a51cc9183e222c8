#include "support/Shell.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace Kestrel::ResultTables {

TemporaryFolder::TemporaryFolder() {
  auto path = (std::filesystem::temp_directory_path() / "result-tables-test.XXXXXX").string();
  if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder");
  m_path = path;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TemporaryFolder::write(std::string const& name, std::string const& content) const {
  std::ofstream(m_path / name, std::ios::binary) << content;
  return m_path / name;
}

std::string TemporaryFolder::read(std::string const& name) const {
  std::ifstream const file(m_path / name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

std::vector<std::string> TemporaryFolder::names(std::string const& subFolder) const {
  std::vector<std::string> names;
  for (auto const& entry : std::filesystem::directory_iterator(m_path / subFolder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

ShellResult runShell(std::filesystem::path const& folder, std::string const& script) {
  TemporaryFolder const capture;
  auto const file =
      capture.write("script", "unset LANGUAGE LC_ALL LC_MESSAGES LANG NO_COLOR\ncd '" + folder.string() +
                                  "' || exit 99\nP='" KESTREL_PROGRAM "'\n" + script + "\n");
  auto const command = "sh '" + file.string() + "' >'" + (capture.path() / "out").string() + "' 2>'" +
                       (capture.path() / "err").string() + "' </dev/null";
  int const status = std::system(command.c_str());  // NOLINT(cert-env33-c): the shell is what is asked for
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, capture.read("out"), capture.read("err")};
}

}  // namespace Kestrel::ResultTables
