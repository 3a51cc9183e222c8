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

/// What the rows "| position | `bytes` | meaning |" of a page spell, if each stands at its position.
std::string bytesShownBy(std::string const& page) {
  std::regex const row(R"(\| (\d+) \| `([0-9a-f ]+)` \|)");
  std::string bytes;
  for (std::sregex_iterator match(page.begin(), page.end(), row), end; match != end; ++match) {
    EXPECT_EQ(std::to_string(bytes.size()), (*match)[1].str());
    std::istringstream digits((*match)[2].str());
    for (std::string byte; digits >> byte;) bytes += static_cast<char>(std::stoi(byte, nullptr, 16));
  }
  return bytes;
}

TEST(Documentation, ShowsTheBytesOfTheLimitsDocumentThatItExplains) {
  EXPECT_EQ(bytesShownBy(contentOf(s_source / "docs/limits-document.md")),
            contentOf(s_source / "tests/data/limits_documents/example.limits"));
}

TEST(Documentation, LinksToFilesThatExist) {
  std::regex const link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
  std::size_t links = 0;
  for (auto const& page : pages()) {
    auto const text = contentOf(page);
    for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end; ++match, ++links) {
      EXPECT_TRUE(std::filesystem::exists(page.parent_path() / (*match)[1].str()))
          << page << ": " << (*match)[1];
    }
  }
  EXPECT_GT(links, 0U);
}

}  // namespace
}  // namespace Kestrel
