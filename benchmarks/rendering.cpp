// Tables as text, CSV, JSON and a workbook, beside what all of them need: where each value comes from, for
// which the series are read.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "result_tables/render/Formats.h"
#include "result_tables/results/ResultsFile.h"

namespace {

using namespace Kestrel::ResultTables;

constexpr int s_clamps = 20000;
constexpr int s_steps = 100;

std::string genResults() {
  std::mt19937_64 random(20240501);  // NOLINT(cert-msc51-cpp): the same numbers in every run
  std::normal_distribution<double> force(0.0, 500.0);
  std::string text = R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [)";
  for (int clamp = 0; clamp < s_clamps; ++clamp) {
    auto const out = std::back_inserter(text);
    fmt::format_to(out, "{}{{\"id\": \"Clamp {}\", \"kind\": \"clamp\", \"series\": [",
                   clamp == 0 ? "" : ", ", clamp);
    char const* separator = "";
    for (auto const* const quantity :
         {"ClampNormalForce", "ClampClosingForce", "ClampSupportingForce", "ClampTangentialForce"}) {
      fmt::format_to(out, "{}{{\"quantity\": \"{}\", \"values\": [{:.9g}", separator, quantity,
                     force(random));
      for (int step = 1; step < s_steps; ++step) fmt::format_to(out, ",{:.9g}", force(random));
      text += "]}";
      separator = ", ";
    }
    text += "]}";
  }
  return text + "]}]}";
}

Tables const& tables() {
  static auto const file = readResults("results.json", genResults());
  static auto const all = genTables(file, {}, {});
  return all;
}

void origins(benchmark::State& state) {
  auto const& all = tables();
  for ([[maybe_unused]] auto const iteration : state) {
    for (auto const& table : all.tables) {
      auto const& groups = table.container().groups;
      for (std::size_t i = 0; i < groups.size(); ++i) {
        for (std::size_t k = 0; k < groups[i].subGroups.size(); ++k) {
          for (std::size_t m = 0; m < groups[i].subGroups[k].items.size(); ++m)
            benchmark::DoNotOptimize(table.genRow(i, k, m));
        }
      }
    }
  }
}

void rendering(benchmark::State& state, std::string_view form) {
  auto const& all = tables();
  auto const* const format = std::ranges::find(s_tableFormats, form, &Format<Tables>::name);
  std::size_t size = 0;
  for ([[maybe_unused]] auto const iteration : state) size = format->render(all, {}).size();
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

BENCHMARK(origins)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rendering, text, "text")->Name("text")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rendering, json, "json")->Name("json")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rendering, csv, "csv")->Name("csv")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(rendering, xlsx, "xlsx")->Name("xlsx")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
