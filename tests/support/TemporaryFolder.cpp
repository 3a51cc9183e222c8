#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace Kestrel {

TemporaryFolder::TemporaryFolder() {
  auto path = (std::filesystem::temp_directory_path() / "kestrel-test.XXXXXX").string();
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

}  // namespace Kestrel
