// Reading a results file that is mostly numbers, beside reading its bytes and parsing it with another
// library. Each line's argument is the kind of document; `peak_ratio` is the most memory that reading takes
// over what it may take, which is the file and twice its doubles.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>

#include "benchmarks/Memory.h"
#include "result_tables/base/File.h"
#include "result_tables/results/ResultsFile.h"

namespace {

using namespace Kestrel::ResultTables;

constexpr int s_tools = 40;
constexpr int s_numbersPerTool = 50000;

/// How the numbers of a document look.
struct DocumentKind {
  std::string_view name;
  bool isPairs;
  int digits;  ///< significant ones; 0: as many as it takes to read back the same double
};

constexpr DocumentKind s_kinds[] = {
    {"values, 7 digits", false, 7},
    {"values, shortest form", false, 0},
    {"pairs, 7 digits", true, 7},
    {"pairs, shortest form", true, 0},
};

std::string makeDocument(DocumentKind const& kind) {
  std::mt19937_64 random(20240501);  // NOLINT(cert-msc51-cpp): the same numbers in every run
  std::normal_distribution<double> force(0.0, 500.0);
  std::string text = R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [)";
  auto const appendNumber = [&] {
    if (kind.digits == 0) {
      fmt::format_to(std::back_inserter(text), "{}", force(random));
    } else {
      fmt::format_to(std::back_inserter(text), "{:.{}g}", force(random), kind.digits);
    }
  };
  for (int tool = 0; tool < s_tools; ++tool) {
    text += fmt::format(
        "{}\n{{\"id\": \"Clamp {}\", \"kind\": \"clamp\", \"series\": [{{\"quantity\": \"F\", \"{}\": [",
        tool == 0 ? "" : ",", tool, kind.isPairs ? "pairs" : "values");
    for (int i = 0; i < s_numbersPerTool; i += kind.isPairs ? 2 : 1) {
      if (i != 0) text += ", ";
      if (kind.isPairs) text += '[';
      appendNumber();
      if (kind.isPairs) {
        text += ", ";
        appendNumber();
        text += ']';
      }
    }
    text += "]}]}";
  }
  return text + "]}]}\n";
}

/// A document of one kind in a file of its own.
class Document {
 public:
  explicit Document(DocumentKind const& kind)
      : m_path(std::filesystem::temp_directory_path() / fmt::format("results_file.{}.json", ::getpid())) {
    writeFile(m_path, makeDocument(kind));
  }
  Document(Document const&) = delete;
  Document& operator=(Document const&) = delete;
  ~Document() { std::filesystem::remove(m_path); }

  [[nodiscard]] std::filesystem::path const& path() const { return m_path; }
  [[nodiscard]] std::int64_t size() const {
    return static_cast<std::int64_t>(std::filesystem::file_size(m_path));
  }

 private:
  std::filesystem::path m_path;
};

template <typename Read>
void measure(benchmark::State& state, Read read) {
  auto const& kind = s_kinds[state.range(0)];
  Document const document(kind);
  for ([[maybe_unused]] auto const iteration : state) benchmark::DoNotOptimize(read(document.path()));
  state.SetBytesProcessed(state.iterations() * document.size());
  state.SetLabel(std::string(kind.name));
}

void readingResultsFile(benchmark::State& state) {
  measure(state, [](auto const& path) { return readResultsFile(path); });
  Document const document(s_kinds[state.range(0)]);
  constexpr double doubles = static_cast<double>(s_tools) * s_numbersPerTool * sizeof(double);
  state.counters["peak_ratio"] =
      Kestrel::measureMemory([&] { return readResultsFile(document.path()); }).peak /
      (2.0 * doubles + static_cast<double>(document.size()));
}

void readingBytes(benchmark::State& state) {
  measure(state, [](auto const& path) { return readFile(path); });
}

void parsingWithNlohmannJson(benchmark::State& state) {
  measure(state, [](auto const& path) {
    std::ifstream stream(path, std::ios::binary);
    return nlohmann::json::parse(stream);
  });
}

BENCHMARK(readingResultsFile)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(readingBytes)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(parsingWithNlohmannJson)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
