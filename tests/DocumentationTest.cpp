#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

#include "support/Shell.h"
#include "support/TemporaryFolder.h"

// What the pages for people say of files, code and the program is as they say.

namespace Kestrel {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

fs::path const s_source = KESTREL_SOURCE_DIR;

std::string contentOf(fs::path const& path) {
  std::ifstream const file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

Lines linesOf(std::string const& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<fs::path> pages() {
  std::vector<fs::path> found;
  for (auto const& entry : fs::directory_iterator(s_source)) {
    if (entry.path().extension() == ".md") found.push_back(entry.path());
  }
  for (auto const* const folder : {"docs", "examples"}) {
    for (auto const& entry : fs::recursive_directory_iterator(s_source / folder)) {
      if (entry.path().extension() == ".md") found.push_back(entry.path());
    }
  }
  return found;
}

TEST(Documentation, ShowsTheProgramThatTheExampleIs) {
  EXPECT_THAT(contentOf(s_source / "docs/library.md"),
              testing::HasSubstr("```cpp examples/print_table/main.cpp\n" +
                                 contentOf(s_source / "examples/print_table/main.cpp") + "```"));
}

TEST(Documentation, ShowsThePictureThatTheProgramMakes) {
  auto const script = "'" + (s_source / "docs/images/make").string() + "' \"$P\"";
  auto const picture = ResultTables::runShell(s_source, script);
  EXPECT_EQ(picture.exitCode, 0) << picture.err;
  EXPECT_EQ(picture.out, contentOf(s_source / "docs/images/demo.svg"))
      << "docs/images/make PROGRAM >docs/images/demo.svg";
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

// ---- links and names of files

/// What a link calls a heading: small letters and digits, a hyphen for each blank.
std::string anchorOf(std::string const& heading) {
  std::string anchor;
  for (char const c : heading) {
    auto const byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || c == '-' || c == '_') anchor += static_cast<char>(std::tolower(byte));
    if (c == ' ') anchor += '-';
  }
  return anchor;
}

std::set<std::string> anchorsOf(fs::path const& page) {
  std::set<std::string> anchors;
  for (auto const& line : linesOf(contentOf(page))) {
    auto const level = line.find_first_not_of('#');
    if (level != 0 && level != line.npos && line[level] == ' ')
      anchors.insert(anchorOf(line.substr(level + 1)));
  }
  return anchors;
}

TEST(Documentation, LinksToFilesAndHeadingsThatExist) {
  std::regex const link(R"(\]\(([^)#:]*)(#([^)]*))?\))");
  std::size_t links = 0;
  std::size_t anchors = 0;
  for (auto const& page : pages()) {
    auto const text = contentOf(page);
    for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end; ++match, ++links) {
      auto const file = (*match)[1].str();
      auto const target = file.empty() ? page : page.parent_path() / file;
      ASSERT_TRUE(fs::exists(target)) << page << ": " << file;
      if (!(*match)[2].matched) continue;
      EXPECT_THAT(anchorsOf(target), testing::Contains((*match)[3].str())) << page << ": " << file;
      ++anchors;
    }
  }
  EXPECT_GT(links, 0U);
  EXPECT_GT(anchors, 0U);
}

TEST(Documentation, IsLinkedToInTheReadme) {
  auto const readme = contentOf(s_source / "README.md");
  for (auto const& page : pages()) {
    auto const name = page.lexically_relative(s_source).string();
    if (!name.starts_with("docs/")) continue;
    EXPECT_THAT(readme, testing::HasSubstr("](" + name + ")"));
  }
}

/// The paths in a text that begin with a folder of the repository. Of one that ends in a placeholder
/// ("tests/<Class>Test.cpp") it is the folder.
std::set<std::string> pathsIn(std::string const& text) {
  std::string_view const characters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.-/";
  std::set<std::string> paths;
  for (std::size_t begin = 0; (begin = text.find_first_of(characters, begin)) != text.npos;) {
    auto const end = std::min(text.find_first_not_of(characters, begin), text.size());
    auto path = text.substr(begin, end - begin);
    bool const isCut =
        end < text.size() && std::string_view("<*{$").find(text[end]) != std::string_view::npos;
    if (isCut) path.resize(path.rfind('/') + 1);
    while (path.ends_with('.')) path.pop_back();
    auto const folder = path.substr(0, path.find('/'));
    bool const isOurs = folder.size() < path.size() && !folder.empty() && folder != "build" &&
                        folder != ".." && !path.starts_with("./build/") &&
                        fs::is_directory(s_source / folder);
    if (isOurs) paths.insert(path);
    begin = end;
  }
  return paths;
}

TEST(Documentation, NamesFilesThatExist) {
  EXPECT_THAT(
      pathsIn("In `tests/data/x.json`, docs/a.md. (build/docs/b, ./build/c, tests/<Class>Test.cpp, host/)"),
      testing::ElementsAre("docs/a.md", "host/", "tests/", "tests/data/x.json"));
  for (auto const& page : pages()) {
    for (auto const& path : pathsIn(contentOf(page)))
      EXPECT_TRUE(fs::exists(s_source / path) || fs::exists(page.parent_path() / path))
          << page << ": " << path;
  }
}

// ---- examples

/// A block of code that says which file it stands in: "```cpp tests/ExampleTest.cpp".
struct Excerpt {
  std::string file;
  Lines lines;
};

std::vector<Excerpt> excerptsOf(fs::path const& page) {
  std::vector<Excerpt> excerpts;
  bool isInside = false;
  for (auto const& line : linesOf(contentOf(page))) {
    bool const isFence = line.starts_with("```");
    if (isFence && !isInside) {
      auto const blank = line.find(' ');
      excerpts.push_back({blank == line.npos ? "" : line.substr(blank + 1), {}});
    } else if (!isFence && isInside) {
      excerpts.back().lines.push_back(line);
    }
    if (isFence) isInside = !isInside;
  }
  std::erase_if(excerpts, [](Excerpt const& excerpt) { return excerpt.file.empty(); });
  return excerpts;
}

/// The lines without their indentation and without empty ones.
Lines bareLines(Lines const& lines) {
  Lines bare;
  for (auto const& line : lines) {
    auto const begin = line.find_first_not_of(' ');
    if (begin != line.npos) bare.push_back(line.substr(begin));
  }
  return bare;
}

/// Whether the excerpt's lines follow each other in the file; a line "…" or "// …" stands for any number of
/// lines.
bool standsInItsFile(Excerpt const& excerpt) {
  auto const file = bareLines(linesOf(contentOf(s_source / excerpt.file)));
  auto const shown = bareLines(excerpt.lines);
  auto at = file.begin();
  for (auto piece = shown.begin(); piece != shown.end();) {
    auto const end =
        std::find_if(piece, shown.end(), [](auto const& line) { return line == "…" || line == "// …"; });
    at = std::search(at, file.end(), piece, end);
    if (at == file.end()) return false;
    at += end - piece;
    piece = end == shown.end() ? end : std::next(end);
  }
  return true;
}

TEST(Documentation, ShowsCodeThatStandsInTheFilesThatItNames) {
  EXPECT_FALSE(standsInItsFile({"README.md", {"# Business_TableProperties", "and what is not there"}}));
  std::size_t excerpts = 0;
  for (auto const& page : pages()) {
    for (auto const& excerpt : excerptsOf(page)) {
      EXPECT_TRUE(standsInItsFile(excerpt)) << page << ": " << excerpt.file << ": " << excerpt.lines.front();
      ++excerpts;
    }
  }
  EXPECT_GT(excerpts, 0U);
}

std::string replaced(std::string text, std::string const& what, std::string const& by) {
  for (auto at = text.find(what); at != text.npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

TEST(Documentation, ShowsHowALanguageIsTriedOut) {
  auto const page = contentOf(s_source / "docs/translations.md");
  auto const begin = page.rfind("```sh\n") + std::string("```sh\n").size();
  auto script = page.substr(begin, page.find("```", begin) - begin);
  // A language that no other catalogue is for.
  TemporaryFolder const folder;
  script = replaced(replaced(script, "locale/de", folder.path().string() + "/de"), "=locale",
                    "=" + folder.path().string());
  script = replaced(script, "/de/", "/xx/");
  script = replaced(replaced(script, "de_DE.UTF-8", "xx_XX.UTF-8"), "result-tables", "$P");
  auto const outcome = ResultTables::runShell(s_source, script);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, testing::HasSubstr("Clamped panel: Spanner\n"));
}

/// The files of the library, the host and the program, of the tests with another host and of the benchmarks
/// in which a word stands.
std::set<std::string> filesThatName(std::string const& word) {
  std::set<std::string> files;
  for (auto const* const folder : {"Business_TableProperties", "host", "result_tables", "translations",
                                   "benchmarks", "tests/strict_host"}) {
    for (auto const& entry : fs::recursive_directory_iterator(s_source / folder)) {
      if (entry.is_regular_file() && contentOf(entry.path()).find(word) != std::string::npos)
        files.insert(entry.path().lexically_relative(s_source).string());
    }
  }
  return files;
}

TEST(Documentation, ListsEveryFileThatNamesAnExample) {
  std::regex const head(R"(\| where `(\w+)` stands \|.*)");
  std::size_t lists = 0;
  auto const lines = linesOf(contentOf(s_source / "docs/developing.md"));
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    std::smatch match;
    if (!std::regex_match(*line, match, head)) continue;
    auto const end =
        std::find_if(line, lines.end(), [](std::string const& row) { return !row.starts_with('|'); });
    std::set<std::string> listed;
    for (; line != end; ++line) {
      for (auto const& path : pathsIn(*line)) listed.insert(path);
    }
    auto const naming = filesThatName(match[1]);
    EXPECT_FALSE(naming.empty()) << match[1];
    EXPECT_THAT(listed, testing::IsSupersetOf(naming)) << match[1];
    ++lists;
    --line;
  }
  EXPECT_GT(lists, 0U);
}

}  // namespace
}  // namespace Kestrel
