// It makes no difference to what is read, and to what is said of what cannot be, how fast a results file is
// read.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/results/ResultsFile.h"
#include "support/ResultsDescription.h"

namespace Kestrel::ResultTables {
namespace {

/// What is read, or the message.
std::string outcomeOf(std::string const& text, ReadingWays ways) {
  try {
    return Description(readResults("r", text, {}, ways)).text();
  } catch (Error const& error) {
    return error.what();
  }
}

bool isMessage(std::string const& outcome) { return outcome.starts_with("r: "); }

/// The message, if there is one, where no unit is wanted.
std::string messageOfPassing(std::string const& text, ReadingWays ways) {
  try {
    for (auto const& unit : readResults("r", text, {"no unit"}, ways).units) EXPECT_FALSE(unit.hasTools);
    return {};
  } catch (Error const& error) {
    return error.what();
  }
}

/// The outcome where the text may be used up.
std::string outcomeOfUsing(std::string const& text, ReadingWays ways) {
  FileText copy(text.size());
  std::copy(text.begin(), text.end(), copy.data());
  copy.resize(text.size());
  try {
    return Description(readResults("r", std::move(copy), {}, ways)).text();
  } catch (Error const& error) {
    return error.what();
  }
}

void expectNoDifference(std::string const& text, bool withThreads = true) {
  auto const byShapes = outcomeOf(text, {.atOnce = false, .threads = 0});
  ASSERT_EQ(outcomeOf(text, {.atOnce = true, .threads = 0}), byShapes) << text;
  ASSERT_EQ(outcomeOfUsing(text, {.atOnce = true, .threads = 0}), byShapes) << text;
  ASSERT_EQ(messageOfPassing(text, {.atOnce = true, .threads = 0}), isMessage(byShapes) ? byShapes : "")
      << text;
  if (withThreads) {
    ASSERT_EQ(messageOfPassing(text, {.atOnce = true, .threads = 2}), isMessage(byShapes) ? byShapes : "")
        << text;
    ASSERT_EQ(outcomeOfUsing(text, {.atOnce = true, .threads = 3}), byShapes) << text;
    ASSERT_EQ(outcomeOf(text, {.atOnce = true, .threads = 2}), byShapes) << text;
  }
}

std::string fileWith(std::string const& tool) {
  return R"({"format": "simulation-results", "version": 1, "units": [{"id": "00000000-0000-0000-0000-000000000001",
 "name": "U", "tools": [)" +
         tool + R"(, {"id": "last", "kind": "bolt", "series": []}]}]})" + "\n";
}

std::string fileOfNumber(std::string const& number) {
  return fileWith(R"({"id": "C", "kind": "clamp", "series": [{"quantity": "q", "values": [1.5, )" + number +
                  R"(]}, {"quantity": "p", "pairs": [[)" + number + ", 2], [3, " + number + "]]}]}");
}

TEST(ReadingWays, MakeNoDifferenceToNumbers) {
  for (auto const& number : std::vector<std::string>{"0",
                                                     "-0",
                                                     "-0.0",
                                                     "-0e0",
                                                     "-0.000E-7",
                                                     "-0e+300",
                                                     "0e308",
                                                     "0e309",
                                                     "-0e309",
                                                     "5.e3",
                                                     ".5",
                                                     "5.",
                                                     "+1",
                                                     "01",
                                                     "1e",
                                                     "1e+",
                                                     "0.1234567890123456789012",
                                                     "1234567890123456789",
                                                     "12345678901234567890",
                                                     "123456789012345678901234567890",
                                                     "9007199254740993",
                                                     "9007199254740995",
                                                     "9007199254740993.00000000000000000001",
                                                     "4.9e-324",
                                                     "2.4e-324",
                                                     "2.4703282292062327e-324",
                                                     "2.4703282292062328e-324",
                                                     "2.2250738585072011e-308",
                                                     "2.2250738585072014e-308",
                                                     "1.7976931348623157e308",
                                                     "1.7976931348623159e308",
                                                     "1e308",
                                                     "1e309",
                                                     "1e-400",
                                                     "1e22",
                                                     "1e23",
                                                     "1e-22",
                                                     "1e-23",
                                                     "8.5e22",
                                                     "123456789e-30",
                                                     "null",
                                                     "nul",
                                                     "NaN",
                                                     "Infinity",
                                                     "\"Infinity\"",
                                                     "\"-Infinity\"",
                                                     "\"+Infinity\"",
                                                     "\"Infin\\u0069ty\"",
                                                     "true",
                                                     "[]",
                                                     "[1, 2]",
                                                     "{}",
                                                     "",
                                                     " \t\r\n1",
                                                     "1 \t\r\n",
                                                     "/**/1",
                                                     std::string("1\0", 2),
                                                     "\357\273\2771",
                                                     "0x10"})
    expectNoDifference(fileOfNumber(number));
  expectNoDifference(fileOfNumber(std::string(309, '9')));
  expectNoDifference(fileOfNumber(std::string(400, '9')));
  expectNoDifference(fileOfNumber("0." + std::string(400, '0') + "1"));
  expectNoDifference(fileOfNumber("0." + std::string(330, '3')));
  expectNoDifference(fileOfNumber(std::string(320, '0')));
}

TEST(ReadingWays, MakeNoDifferenceToTools) {
  std::string const series = R"("series": [{"quantity": "q", "values": [1, 2]}])";
  std::string const twice = series + ", " + series;
  for (auto const& members : std::vector<std::string>{
           R"("id": "C", "kind": "clamp", )" + series,
           R"("kind": "clamp", "id": "C", )" + series,
           series + R"(, "id": "C", "kind": "clamp")",
           R"("id": "last", "kind": "clamp", )" + series,
           R"("id": "\u0043", "kind": "clamp", )" + series,
           R"("id": "ä\u00e4", "kind": "clamp", )" + series,
           R"("id": "\ud83d", "kind": "clamp", )" + series,
           R"("id": "\udc00", "kind": "clamp", )" + series,
           R"("id": "C", "kind": "crane", )" + series,
           R"("id": "C", "kind": "clamp", )" + twice,
           R"("id": "C", "id": "D", "kind": "clamp", )" + series,
           R"("id": "C", )" + series,
           R"("kind": "clamp", )" + series,
           R"("id": "C", "kind": "clamp", "x": 1, )" + series,
           std::string(),
           R"("id": "C", "kind": "clamp", "series": null)",
           R"("id": "C", "kind": "clamp", "series": [{}])",
           R"("id": "C", "kind": "clamp", "series": [{"quantity": "q", "values": [1], "pairs": []}])",
           R"("id": "C", "kind": "clamp", "series": [{"quantity": "q", "pairs": []}])",
           R"("id": "C", "kind": "clamp", "series": [{"quantity": "q", "pairs": [[1, 2, 3]]}])",
           R"("id": "C", "kind": "clamp", "tangentialForce": {"values": [1]})",
           R"("id": "C", "kind": "clamp", "tangentialForce": {"quantity": "q", "values": [1]})",
           R"("id": "C", "kind": "clamp", "tangentialForce": {})",
           R"("id": "C", "kind": "clamp",)",
           R"("id" "C")",
           std::string("\"id\": \"\xFF\", \"kind\": \"clamp\""),
           std::string("\"id\": \"\n\", \"kind\": \"clamp\""),
           std::string("\"id\": \"\x7F\", \"kind\": \"clamp\"")}) {
    expectNoDifference(fileWith("{" + members + "}"));
    expectNoDifference(fileWith("{" + members + "},"));
    expectNoDifference(fileWith("{" + members + "} {}"));
  }
}

TEST(ReadingWays, MakeNoDifferenceWhereverAFileEnds) {
  auto const text = fileOfNumber("-123.456789");
  for (std::size_t size = 0; size <= text.size(); ++size) expectNoDifference(text.substr(0, size));
}

TEST(ReadingWays, MakeNoDifferenceToTheExamples) {
  for (auto const* const name : {"clamped_panel/panel.results.json", "door_line/door_line.results.json"})
    expectNoDifference(readFile(std::filesystem::path(KESTREL_SOURCE_DIR) / "examples" / name));
}

/// A file so large that its numbers take the place of its text many times; something else stands behind its
/// tools.
std::string largeFileWith(std::string const& rest, std::string const& number) {
  std::string tools;
  for (int i = 0; i < 400; ++i) {
    tools += "  {\"id\": \"C" + std::to_string(i) + "\", \"kind\": \"clamp\", \"series\": [";
    for (int k = 0; k < 2; ++k) {
      tools += std::string(k == 0 ? "" : ",\n") +
               (k == 0 ? "{\"quantity\": \"q\", \"values\": [" : "{\"quantity\": \"p\", \"pairs\": [");
      for (int j = 0; j < 50; ++j)
        tools += (j == 0 ? "" : ", ") + (k == 0 ? number : "[" + number + "," + std::to_string(j) + "]");
      tools += "]}";
    }
    tools += i % 100 == 50 ? "], \"tangentialForce\": {\"values\": [7]}},\n" : "]},\n";
  }
  return fileWith(tools + rest);
}

TEST(ReadingWays, MakeNoDifferenceToLargeFiles) {
  for (std::string const number : {"-123.456789", "0", "1e400", "12345678901234567890", "null"}) {
    for (std::string const rest :
         {R"({"id": "C", "kind": "clamp"})",
          R"({"id": "\u0043", "kind": "clamp", "series": [{"quantity": "q", "values": [1, 2]}]})",
          R"({"id": "C7", "kind": "clamp"})", "\"ä\" ]", "", "{\n\n\"id\": ä"})
      expectNoDifference(largeFileWith(rest, number));
  }
}

/// A text with some characters changed, removed, doubled or moved.
std::string mutated(std::string text, std::mt19937& random) {
  constexpr std::string_view characters = "0123456789+-.eE,:[]{}\" \n\tnulIfity\\u\xC3\xA4\x80\xFF";
  auto const below = [&](std::size_t end) { return static_cast<std::size_t>(random()) % end; };
  for (auto changes = 1 + below(3); changes > 0 && !text.empty(); --changes) {
    auto const at = below(text.size());
    auto const size = 1 + below(below(3) == 0 ? 30 : 3);
    switch (below(4)) {
      case 0:
        text[at] = characters[below(characters.size())];
        break;
      case 1:
        text.erase(at, size);
        break;
      case 2:
        text.insert(at, text.substr(below(text.size()), size));
        break;
      default:
        text.insert(at, 1, characters[below(characters.size())]);
    }
  }
  return text;
}

/// The number in the environment, where it says one.
unsigned long fromEnvironment(char const* name, unsigned long otherwise) {
  auto const* const text = std::getenv(name);
  return text != nullptr ? std::stoul(text) : otherwise;
}

/// More of them than each run of the tests has, and other ones:
/// KESTREL_MUTATIONS=10000000 KESTREL_SEED=1 build/release/tests/ReadingWaysTest
TEST(ReadingWays, MakeNoDifferenceToDamagedFiles) {
  auto const count = fromEnvironment("KESTREL_MUTATIONS", 5'000);
  std::vector<std::string> const texts = {
      fileOfNumber("-123.456789"), fileOfNumber("null"), fileOfNumber("\"-Infinity\""),
      fileOfNumber("12345678901234567890e-7"),
      fileWith(
          R"({"id":"C","kind":"clamp","tangentialForce":{"pairs":[[1,0.5],[-2e3,1]]}},{"id":"D","kind":"pilot"})")};
  std::mt19937 random(static_cast<std::mt19937::result_type>(fromEnvironment("KESTREL_SEED", 20261122)));
  for (unsigned long i = 0; i < count; ++i)
    expectNoDifference(mutated(texts[i % texts.size()], random), i % 100 == 0);
}

}  // namespace
}  // namespace Kestrel::ResultTables
