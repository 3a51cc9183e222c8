#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace Kestrel {
namespace {

std::filesystem::path const s_source = KESTREL_SOURCE_DIR;

std::string contentOf(std::filesystem::path const& path) {
  std::ifstream const file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

std::vector<std::filesystem::path> pages() {
  std::vector<std::filesystem::path> found = {s_source / "README.md"};
  for (auto const* const folder : {"docs", "examples"}) {
    for (auto const& entry : std::filesystem::recursive_directory_iterator(s_source / folder)) {
      if (entry.path().extension() == ".md") found.push_back(entry.path());
    }
  }
  return found;
}

TEST(Documentation, ShowsTheProgramThatTheExampleIs) {
  EXPECT_THAT(contentOf(s_source / "README.md"),
              testing::HasSubstr("```cpp\n" + contentOf(s_source / "examples/print_table/main.cpp") + "```"));
}

TEST(Documentation, LinksToFilesThatExist) {
  std::regex const link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
  std::size_t links = 0;
  for (auto const& page : pages()) {
    auto const text = contentOf(page);
    for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end; ++match, ++links) {
      EXPECT_TRUE(std::filesystem::exists(page.parent_path() / (*match)[1].str())) << page << ": " << (*match)[1];
    }
  }
  EXPECT_GT(links, 0U);
}

}  // namespace
}  // namespace Kestrel
