// Checking a results file of 100 MB that is mostly numbers: as the command does it, with where each value
// that has a limit comes from, and without, when only the maxima are compared with their limits; and
// comparing two such files, which are read one after the other here.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "result_tables/base/File.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/tables/Differences.h"
#include "result_tables/tables/Findings.h"

namespace {

using namespace Kestrel::ResultTables;

constexpr int s_bolts = 2000;
constexpr int s_valuesPerBolt = 5000;

std::string makeDocument() {
  std::mt19937_64 random(20261122);  // NOLINT(cert-msc51-cpp): the same numbers in every run
  std::normal_distribution<double> force(0.0, 10.0);
  std::string text = R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [)";
  for (int bolt = 0; bolt < s_bolts; ++bolt) {
    text += fmt::format(
        "{}\n{{\"id\": \"Bolt {}\", \"kind\": \"bolt\", \"series\": [{{\"quantity\": \"ClampNormalForce\", "
        "\"values\": [",
        bolt == 0 ? "" : ",", bolt);
    for (int i = 0; i < s_valuesPerBolt; ++i)
      fmt::format_to(std::back_inserter(text), "{}{:.7g}", i == 0 ? "" : ", ", force(random));
    text += "]}]}";
  }
  return text + "]}]}\n";
}

/// The document in a file of its own, as long as the program runs.
class Document {
 public:
  static std::filesystem::path const& path() {
    static Document const document;
    return document.m_path;
  }

 private:
  Document() : m_path(std::filesystem::temp_directory_path() / fmt::format("check.{}.json", ::getpid())) {
    writeFile(m_path, makeDocument());
  }
  ~Document() { std::filesystem::remove(m_path); }

  std::filesystem::path m_path;
};

template <typename Count>
void measure(benchmark::State& state, Count count) {
  auto const& path = Document::path();
  std::size_t exceeded = 0;
  for ([[maybe_unused]] auto const iteration : state) {
    auto const file = readResultsFile(path);
    exceeded = 0;
    for (auto const& table : genResultTables(file, {}, {.collection = genDefaultLimits(file)}))
      exceeded += count(table);
  }
  state.counters["exceeded"] = static_cast<double>(exceeded);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(path)));
}

void checking(benchmark::State& state) {
  measure(state, [](ResultTable const& table) {
    std::size_t exceeded = 0;
    genFindings(table).forEachFinding(
        [&](Finding const& finding) { exceeded += finding.kind == FindingKind::exceeded ? 1U : 0U; });
    return exceeded;
  });
}

void comparingMaximaAlone(benchmark::State& state) {
  measure(state, [](ResultTable const& table) {
    std::size_t exceeded = 0;
    for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
      for (auto const& subGroup : table.container().groups[i].subGroups) {
        for (auto const& item : subGroup.items) {
          for (std::size_t c = 0; c < item.maxValues.size(); ++c)
            exceeded += table.isExceeded(i, c, item) ? 1U : 0U;
        }
      }
    }
    return exceeded;
  });
}

LimitedResults readWithLimits(std::filesystem::path const& path) {
  auto file = readResultsFile(path);
  ResultLimits limits{.collection = genDefaultLimits(file), .columns = {}};
  return {std::move(file), std::move(limits)};
}

void comparingTwoFiles(benchmark::State& state) {
  auto const& path = Document::path();
  std::size_t compared = 0;
  for ([[maybe_unused]] auto const iteration : state) {
    auto const before = readWithLimits(path);
    auto const after = readWithLimits(path);
    auto const differences = genDifferences(before, after, {}, {});
    if (differences.hasDifferences()) state.SkipWithError("a file differs from itself");
    compared = differences.countCompared();
  }
  state.counters["compared"] = static_cast<double>(compared);
  state.SetBytesProcessed(state.iterations() * 2 *
                          static_cast<std::int64_t>(std::filesystem::file_size(path)));
}

BENCHMARK(checking)->Unit(benchmark::kMillisecond);
BENCHMARK(comparingMaximaAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(comparingTwoFiles)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
