// The cost of limits by the number of simulation units: sixteen limits per unit. `time/limit` should not grow
// by more than a factor of 1.6 from 100 to 10,000 units. The peer of the removal is a ranked index of the
// library Boost.MultiIndex, which keeps its order and knows its positions as well; the peer of the rest is
// reading each limit once, which shows how much of the growth is the memory's.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ranked_index.hpp>
#include <boost/multi_index_container.hpp>
#include <boost/uuid/random_generator.hpp>
#include <cstddef>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "VantaService_Parameterization/ObjectHelper.h"

namespace Kestrel {
namespace {

using Ids = std::vector<SimulationUnitId>;

constexpr std::size_t limitsPerUnit = 16;

/// In which order the units are listed.
enum UnitOrder {
  Ascending,  ///< by identifier: the limits lie in memory as those of a document that was read
  Scattered,  ///< at random: walking through the units by identifier jumps through the memory
};

Ids genIds(std::size_t count, UnitOrder order) {
  std::mt19937 random(3);
  boost::uuids::basic_random_generator<std::mt19937> generate(random);
  Ids ids;
  for (std::size_t i = 0; i < count; ++i) ids.emplace_back(GUIdentifier(generate()));
  if (order == Ascending) std::sort(ids.begin(), ids.end());
  return ids;
}

std::size_t unitCount(benchmark::State const& state) { return static_cast<std::size_t>(state.range(0)); }

void countLimits(benchmark::State& state) {
  using benchmark::Counter;
  state.counters["time/limit"] =
      Counter(static_cast<double>(limitsPerUnit) * static_cast<double>(state.range(0)),
              Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void setUp(benchmark::State& state, UnitOrder order) {
  Ids const ids = genIds(unitCount(state), order);
  for ([[maybe_unused]] auto const iteration : state) {
    auto data = std::make_shared<TablePropertiesData>();
    data->updateLimits(ids);
    state.PauseTiming();
    data.reset();
    state.ResumeTiming();
  }
  countLimits(state);
}

void destroy(benchmark::State& state, UnitOrder order) {
  Ids const ids = genIds(unitCount(state), order);
  for ([[maybe_unused]] auto const iteration : state) {
    state.PauseTiming();
    auto data = std::make_shared<TablePropertiesData>();
    data->updateLimits(ids);
    state.ResumeTiming();
    data.reset();
  }
  countLimits(state);
}

void synchronizeSameUnits(benchmark::State& state, UnitOrder order) {
  Ids const ids = genIds(unitCount(state), order);
  TablePropertiesData data;
  data.updateLimits(ids);
  for ([[maybe_unused]] auto const iteration : state) data.updateLimits(ids);
  countLimits(state);
}

void synchronizeHalfReplaced(benchmark::State& state, UnitOrder order) {
  std::size_t const units = unitCount(state);
  Ids const all = genIds(units + units / 2, order);
  // Every third unit is in both lists.
  Ids first;
  Ids second;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i % 3 != 1) first.push_back(all[i]);
    if (i % 3 != 2) second.push_back(all[i]);
  }
  TablePropertiesData data;
  data.updateLimits(second);
  bool isFirst = true;
  for ([[maybe_unused]] auto const iteration : state) {
    data.updateLimits(isFirst ? first : second);
    isFirst = !isFirst;
  }
  countLimits(state);
}

/// As a table asks: unit by unit, and for one column after the other.
void getLimit(benchmark::State& state, UnitOrder order) {
  constexpr unsigned int types[limitsPerUnit] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 18, 19, 20, 21, 22, 23};
  Ids const ids = genIds(unitCount(state), order);
  TablePropertiesData data;
  data.updateLimits(ids);
  for ([[maybe_unused]] auto const iteration : state)
    for (auto const& id : ids)
      for (unsigned int const type : types)
        benchmark::DoNotOptimize(data.getLimit(id, static_cast<TablePropertyLimitType>(type)));
  countLimits(state);
}

/// What the memory alone costs: each limit is read once, by the identifiers of the units.
void readEachLimit(benchmark::State& state, UnitOrder order) {
  Ids const ids = genIds(unitCount(state), order);
  TablePropertiesData data;
  data.updateLimits(ids);
  data.updateLimits(ids);
  auto const limits = data.getRelevantChildren();
  for ([[maybe_unused]] auto const iteration : state) {
    int sum = 0;
    for (auto const& limit : limits) sum ^= limit->getChildId();
    benchmark::DoNotOptimize(sum);
  }
  countLimits(state);
}

enum Order { Front, Back, Random };

std::vector<std::size_t> genOrder(std::size_t count, Order order) {
  std::vector<std::size_t> positions(count);
  std::iota(positions.begin(), positions.end(), std::size_t{0});
  if (order == Back) std::reverse(positions.begin(), positions.end());
  if (order == Random) std::shuffle(positions.begin(), positions.end(), std::mt19937(5));
  return positions;
}

/// Removes one by one and asks for a position after each removal.
void removeChildren(benchmark::State& state, Order order) {
  std::size_t const count = limitsPerUnit * unitCount(state);
  auto const positions = genOrder(count, order);
  std::vector<std::shared_ptr<Object>> children(count);
  for (auto& child : children) child = std::make_shared<Object>();
  Object const& asked = *children[positions.back()];
  for ([[maybe_unused]] auto const iteration : state) {
    state.PauseTiming();
    auto parent = std::make_shared<Object>();
    std::vector<std::shared_ptr<Object>> ignored;
    ObjectHelper::addToVectorAtEnd(parent.get(), children, ignored, std::nullopt, 1, false);
    state.ResumeTiming();
    for (std::size_t const position : positions) {
      parent->removeChild(children[position]);
      benchmark::DoNotOptimize(parent->getChildPosition(asked));
    }
  }
  countLimits(state);
}

struct RankedEntry {
  std::size_t number;
  std::shared_ptr<Object> child;
};

using RankedList = boost::multi_index_container<
    RankedEntry, boost::multi_index::indexed_by<boost::multi_index::ranked_unique<
                     boost::multi_index::member<RankedEntry, std::size_t, &RankedEntry::number>>>>;

void removeFromRankedIndex(benchmark::State& state, Order order) {
  std::size_t const count = limitsPerUnit * unitCount(state);
  auto const positions = genOrder(count, order);
  std::vector<std::shared_ptr<Object>> children(count);
  for (auto& child : children) child = std::make_shared<Object>();
  for ([[maybe_unused]] auto const iteration : state) {
    state.PauseTiming();
    auto list = std::make_unique<RankedList>();
    for (std::size_t i = 0; i < count; ++i) list->emplace_hint(list->end(), RankedEntry{i, children[i]});
    state.ResumeTiming();
    for (std::size_t const position : positions) {
      list->erase(list->find(position));
      benchmark::DoNotOptimize(list->rank(list->find(positions.back())));
    }
  }
  countLimits(state);
}

void overUnits(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(setUp, ascending, Ascending)->Apply(overUnits);
BENCHMARK_CAPTURE(synchronizeSameUnits, ascending, Ascending)->Apply(overUnits);
BENCHMARK_CAPTURE(synchronizeHalfReplaced, ascending, Ascending)->Apply(overUnits);
BENCHMARK_CAPTURE(getLimit, ascending, Ascending)->Apply(overUnits);
BENCHMARK_CAPTURE(destroy, ascending, Ascending)->Apply(overUnits);
BENCHMARK_CAPTURE(readEachLimit, ascending, Ascending)->Apply(overUnits);
BENCHMARK_CAPTURE(setUp, scattered, Scattered)->Apply(overUnits);
BENCHMARK_CAPTURE(synchronizeSameUnits, scattered, Scattered)->Apply(overUnits);
BENCHMARK_CAPTURE(synchronizeHalfReplaced, scattered, Scattered)->Apply(overUnits);
BENCHMARK_CAPTURE(getLimit, scattered, Scattered)->Apply(overUnits);
BENCHMARK_CAPTURE(destroy, scattered, Scattered)->Apply(overUnits);
BENCHMARK_CAPTURE(readEachLimit, scattered, Scattered)->Apply(overUnits);
BENCHMARK_CAPTURE(removeChildren, front, Front)->Apply(overUnits);
BENCHMARK_CAPTURE(removeFromRankedIndex, front, Front)->Apply(overUnits);
BENCHMARK_CAPTURE(removeChildren, back, Back)->Apply(overUnits);
BENCHMARK_CAPTURE(removeFromRankedIndex, back, Back)->Apply(overUnits);
BENCHMARK_CAPTURE(removeChildren, random, Random)->Apply(overUnits);
BENCHMARK_CAPTURE(removeFromRankedIndex, random, Random)->Apply(overUnits);

}  // namespace
}  // namespace Kestrel

BENCHMARK_MAIN();
