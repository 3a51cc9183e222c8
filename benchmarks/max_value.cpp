// What the value of largest magnitude of a series costs, beside others that go through the same numbers.
//
// `library` is the provider's operation, comparator and all, `baseline` what it does on a machine without
// AVX, `loop` the three steps one value after the other. `idamax` is OpenBLAS's, which finds the magnitude of
// numbers that are none otherwise, and `read` sums the values in AVX2 and does nothing else. Names that begin
// with `pairs` are of series with a companion for each value. Series are as large together as the first cache
// at least, so that no loop learns one by heart.

#include <benchmark/benchmark.h>
#include <cblas.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Business_TableProperties/LargestMagnitude.h"
#include "support/SimUnitMaxValuesProviderTestAccess.h"

namespace {

using namespace Kestrel;
using Series = std::vector<StepValues<double>>;

constexpr std::size_t s_valuesTogether = 4096;

/// Of `state.range(0)` values each; kept until other ones are asked for.
Series& seriesOf(benchmark::State const& state, bool ofPairs) {
  static Series series;
  static std::pair<std::size_t, bool> made;
  std::pair const wanted(static_cast<std::size_t>(state.range(0)), ofPairs);
  if (made == wanted) return series;
  made = wanted;
  series.clear();
  std::mt19937_64 random(20261122);
  std::uniform_real_distribution<double> numbers(-1000.0, 1000.0);
  for (std::size_t k = 0; k < std::max<std::size_t>(1, s_valuesTogether / wanted.first); ++k) {
    std::vector<double> values(wanted.first);
    for (double& value : values) value = numbers(random);
    if (!ofPairs) {
      series.emplace_back(std::move(values));
      continue;
    }
    std::vector<std::pair<double, double>> pairs;
    pairs.reserve(values.size());
    for (double const value : values) pairs.emplace_back(value, numbers(random));
    series.emplace_back(std::move(pairs));
  }
  return series;
}

// --- the peers ---------------------------------------------------------------------------------------------

SimulationUnit const unit{SimulationUnitId(), "OP20"};
SimUnitMaxValuesProvider const provider(unit, {});

double library(StepValues<double>& series) {
  return SimUnitMaxValuesProviderTestAccess::maxValue(provider, series);
}

double baseline(StepValues<double>& series) {
  auto const values = series.values();
  return values.empty() ? largestMagnitude(series.pairs(), InstructionSet::baseline)
                        : largestMagnitude(values, InstructionSet::baseline);
}

double loop(StepValues<double>& series) {
  double current = 0.0;
  double magnitude = 0.0;
  series.forEachValue([&](double value) {
    // Four times as slow unless this is said to be unlikely.
    if (std::abs(value) > magnitude) [[unlikely]] {
      current = value;
      magnitude = std::abs(value);
    }
  });
  return current;
}

double idamax(StepValues<double>& series) {
  auto const values = series.values();
  return values[cblas_idamax(static_cast<blasint>(values.size()), values.data(), 1)];
}

using Lanes [[gnu::vector_size(4 * sizeof(double))]] = double;

#ifdef __x86_64__
#define KESTREL_TARGET [[gnu::target("avx2")]]
#else
#define KESTREL_TARGET
#endif

/// The sum; of values whose number is no multiple of four, without the last ones.
KESTREL_TARGET double read(StepValues<double>& series) {
  auto const values = series.values();
  Lanes sums[8] = {};
  std::size_t i = 0;
  for (; i + 32 <= values.size(); i += 32) {
#pragma GCC unroll 8
    for (std::size_t k = 0; k < 8; ++k) {
      Lanes lanes;
      std::memcpy(&lanes, values.data() + i + 4 * k, sizeof lanes);
      sums[k] += lanes;
    }
  }
  for (; i + 4 <= values.size(); i += 4) {
    Lanes lanes;
    std::memcpy(&lanes, values.data() + i, sizeof lanes);
    sums[0] += lanes;
  }
#pragma GCC unroll 8
  for (std::size_t k = 1; k < 8; ++k) sums[0] += sums[k];
  return sums[0][0] + sums[0][1] + sums[0][2] + sums[0][3];
}

// --- the benchmarks ----------------------------------------------------------------------------------------

struct Peer {
  double (*function)(StepValues<double>&);
  bool givesTheValue = true;
};

void run(benchmark::State& state, Peer const& peer, bool ofPairs) {
  auto& series = seriesOf(state, ofPairs);
  for (auto& one : series) {
    if (!peer.givesTheValue || peer.function(one) == loop(one)) continue;
    state.SkipWithError("another value than the loop's");
    return;
  }
  std::size_t next = 0;
  for ([[maybe_unused]] auto const iteration : state) {
    benchmark::DoNotOptimize(peer.function(series[next]));
    next = next + 1 == series.size() ? 0 : next + 1;
  }
  state.counters["s_per_value"] =
      benchmark::Counter(static_cast<double>(state.range(0)),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

bool canRead() {
#ifdef __x86_64__
  return __builtin_cpu_supports("avx2") != 0;
#else
  return true;
#endif
}

void plain(benchmark::State& state, Peer const& peer) { run(state, peer, false); }

void pairs(benchmark::State& state, Peer const& peer) { run(state, peer, true); }

void reading(benchmark::State& state) {
  if (canRead()) {
    run(state, {read, false}, false);
  } else {
    state.SkipWithError("this machine has no AVX2");
  }
}

void lengths(benchmark::internal::Benchmark* one) {
  one->ArgName("values");
  for (auto const values : {64, 500, 4096, 100'000, 10'000'000}) one->Arg(values);
}

BENCHMARK_CAPTURE(plain, library, Peer{library})->Name("library")->Apply(lengths);
BENCHMARK_CAPTURE(plain, baseline, Peer{baseline})->Name("baseline")->Apply(lengths);
BENCHMARK_CAPTURE(plain, loop, Peer{loop})->Name("loop")->Apply(lengths);
BENCHMARK_CAPTURE(plain, idamax, Peer{idamax})->Name("idamax")->Apply(lengths);
BENCHMARK(reading)->Name("read")->Apply(lengths);
BENCHMARK_CAPTURE(pairs, library, Peer{library})->Name("pairs_library")->Apply(lengths);
BENCHMARK_CAPTURE(pairs, baseline, Peer{baseline})->Name("pairs_baseline")->Apply(lengths);
BENCHMARK_CAPTURE(pairs, loop, Peer{loop})->Name("pairs_loop")->Apply(lengths);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  openblas_set_num_threads(1);
  benchmark::RunSpecifiedBenchmarks();
}
