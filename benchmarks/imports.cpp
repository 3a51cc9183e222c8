// A solver's print on its way to results: read directly, and through the text of a results file. Both ways
// read the same table of comma separated values.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>

#include "result_tables/base/File.h"
#include "result_tables/import/Import.h"

namespace {

using namespace Kestrel::ResultTables;

constexpr int s_tools = 40;
constexpr int s_times = 20000;

/// A table of forces and the map that feeds each to a clamp, as pairs.
class Print {
 public:
  Print()
      : m_folder(std::filesystem::temp_directory_path() / fmt::format("imports.{}", ::getpid())),
        m_random(20240501) {  // NOLINT(cert-msc51-cpp): the same numbers in every run
    std::filesystem::create_directory(m_folder);
    writeFile(input(), genTable());
    writeFile(map(), genMap());
  }
  Print(Print const&) = delete;
  Print& operator=(Print const&) = delete;
  ~Print() { std::filesystem::remove_all(m_folder); }

  [[nodiscard]] std::filesystem::path input() const { return m_folder / "print.csv"; }
  [[nodiscard]] std::filesystem::path map() const { return m_folder / "map.json"; }
  [[nodiscard]] std::int64_t size() const {
    return static_cast<std::int64_t>(std::filesystem::file_size(input()));
  }

 private:
  std::string genTable() {
    std::normal_distribution<double> force(0.0, 500.0);
    std::string text = "time";
    for (int tool = 0; tool < s_tools; ++tool) text += fmt::format(",C{}.fz", tool);
    for (int time = 0; time < s_times; ++time) {
      text += fmt::format("\n{}", 0.001 * time);
      for (int tool = 0; tool < s_tools; ++tool) text += fmt::format(",{:.7g}", force(m_random));
    }
    return text + '\n';
  }

  static std::string genMap() {
    std::string tools;
    for (int tool = 0; tool < s_tools; ++tool) {
      tools += fmt::format(
          R"({}{{"id": "C{}", "kind": "clamp", "series": [{{"quantity": "ClampNormalForce", "form": "pairs",
             "sum": [{{"history": "C{}.fz"}}]}}]}})",
          tool == 0 ? "" : ", ", tool, tool);
    }
    return fmt::format(
        R"({{"format": "import-map", "version": 1, "units": [
             {{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [{}]}}]}})",
        tools);
  }

  std::filesystem::path m_folder;
  std::mt19937_64 m_random;
};

template <typename Read>
void measure(benchmark::State& state, Read const& read) {
  Print const print;
  for ([[maybe_unused]] auto const iteration : state) benchmark::DoNotOptimize(read(print));
  state.SetBytesProcessed(state.iterations() * print.size());
}

void readingThePrint(benchmark::State& state) {
  measure(state,
          [](Print const& print) { return importResults(ImportFormat::csv, print.input(), print.map()); });
}

void importingAndReadingTheText(benchmark::State& state) {
  measure(state, [](Print const& print) {
    return readResults("results", importHistories(ImportFormat::csv, print.input(), print.map()));
  });
}

void readingTheHistories(benchmark::State& state) {
  measure(state, [](Print const& print) { return readHistories(ImportFormat::csv, print.input()); });
}

BENCHMARK(readingThePrint)->Unit(benchmark::kMillisecond);
BENCHMARK(importingAndReadingTheText)->Unit(benchmark::kMillisecond);
BENCHMARK(readingTheHistories)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
