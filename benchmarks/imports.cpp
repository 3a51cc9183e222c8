// A solver's print on its way to results: its histories alone, from each form of print; results, read
// directly and through the text of a results file. All forms have forces of the same random numbers.

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

/// What is written, and where the forces stand side by side.
enum class Form { wide, longRows, calculix };

/// A print of forces and, for the wide form, the map that feeds each to a clamp, as pairs.
class Print {
 public:
  explicit Print(Form form)
      : m_folder(std::filesystem::temp_directory_path() / fmt::format("imports.{}", ::getpid())),
        m_random(20240501),  // NOLINT(cert-msc51-cpp): the same numbers in every run
        m_form(form) {
    std::filesystem::create_directory(m_folder);
    writeFile(input(), genText());
    writeFile(map(), genMap());
  }
  Print(Print const&) = delete;
  Print& operator=(Print const&) = delete;
  ~Print() { std::filesystem::remove_all(m_folder); }

  [[nodiscard]] ImportFormat format() const {
    return m_form == Form::calculix ? ImportFormat::calculix : ImportFormat::csv;
  }
  [[nodiscard]] std::filesystem::path input() const { return m_folder / "print"; }
  [[nodiscard]] std::filesystem::path map() const { return m_folder / "map.json"; }
  [[nodiscard]] std::int64_t size() const {
    return static_cast<std::int64_t>(std::filesystem::file_size(input()));
  }

 private:
  std::string genText() {
    switch (m_form) {
      case Form::wide:
        return genWide();
      case Form::longRows:
        return genLong();
      case Form::calculix:
        break;
    }
    return genCalculix();
  }

  std::string genWide() {
    std::string text = "time";
    auto const out = std::back_inserter(text);
    for (int tool = 0; tool < s_tools; ++tool) fmt::format_to(out, ",C{}.fz", tool);
    for (int time = 0; time < s_times; ++time) {
      fmt::format_to(out, "\n{}", 0.001 * time);
      for (int tool = 0; tool < s_tools; ++tool) fmt::format_to(out, ",{:.9g}", m_force(m_random));
    }
    return text + '\n';
  }

  std::string genLong() {
    std::string text = "entity,quantity,time,value\n";
    for (int time = 0; time < s_times; ++time) {
      for (int tool = 0; tool < s_tools; ++tool)
        fmt::format_to(std::back_inserter(text), "C{},fz,{},{:.9g}\n", tool, 0.001 * time, m_force(m_random));
    }
    return text;
  }

  std::string genCalculix() {
    std::string text;
    auto const out = std::back_inserter(text);
    for (int time = 0; time < s_times; ++time) {
      fmt::format_to(out, "\n forces (fx,fy,fz) for set C and time {:14.7E}\n\n", 0.001 * time);
      for (int node = 1; node <= s_tools; ++node)
        fmt::format_to(out, "{:10} {:13.6E} {:13.6E} {:13.6E}\n", node, m_force(m_random), m_force(m_random),
                       m_force(m_random));
    }
    return text;
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
  std::normal_distribution<double> m_force{0.0, 500.0};
  Form m_form;
};

template <typename Read>
void measure(benchmark::State& state, Form form, Read const& read) {
  Print const print(form);
  for ([[maybe_unused]] auto const iteration : state) benchmark::DoNotOptimize(read(print));
  state.SetBytesProcessed(state.iterations() * print.size());
}

void readingTheHistories(benchmark::State& state, Form form) {
  measure(state, form, [](Print const& print) { return readHistories(print.format(), print.input()); });
}

void readingThePrint(benchmark::State& state) {
  measure(state, Form::wide,
          [](Print const& print) { return importResults(print.format(), print.input(), print.map()); });
}

void importingAndReadingTheText(benchmark::State& state) {
  measure(state, Form::wide, [](Print const& print) {
    return readResults("results", importHistories(print.format(), print.input(), print.map()));
  });
}

BENCHMARK_CAPTURE(readingTheHistories, wide, Form::wide)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readingTheHistories, long, Form::longRows)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readingTheHistories, calculix, Form::calculix)->Unit(benchmark::kMillisecond);
BENCHMARK(readingThePrint)->Unit(benchmark::kMillisecond);
BENCHMARK(importingAndReadingTheText)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
