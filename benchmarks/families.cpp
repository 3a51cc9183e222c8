// What the table of each family costs, beside a hand-written loop that gets the same numbers out of the same
// host data with as little as it takes, and beside a mere read of that data.
//
// `read` sums every value of the family's series and the state of every record in the visible steps, `loop`
// keeps the name, the maxima and the validity of each element in a plain row, `library` makes the table. The
// counters of `library` are its time over the times that `loop` and `read` took just before.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "Business_Skin/Skin.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "Persistence_SkinBaseName/SkinBaseName.h"

namespace {

using namespace Kestrel;
using DataType = MaxValueGroupContainer::DataType;
using Keys = SolverTableDataKeys;

enum class Records { none, suctionZones, joiningTongs, joins, lineJoins };

/// How the data of a family lie in the host.
struct Family {
  DataType dataType;
  char const* name;
  ToolForceDataType toolKind;
  Records records;
  std::vector<std::string> columns;
};

std::vector<Family> const& families() {
  using enum ToolForceDataType;
  static std::vector<std::string> const clampColumns{
      Keys::getNameOfClampNormalForce(), Keys::getNameOfClampClosingForce(),
      Keys::getNameOfClampSupportingForce(), Keys::getNameOfClampTangentialForce(),
      Keys::getNameOfClampNormalDisplacement()};
  static std::vector<std::string> const totalForce{GlobalForcesDefinition::s_totalToolForces};
  static std::vector<Family> const all{
      {DataType::Clamps, "Clamps", clamp, Records::none, clampColumns},
      {DataType::ClampingTools, "ClampingTools", tool, Records::none, totalForce},
      {DataType::JoiningTongs,
       "JoiningTongs",
       joiningTong,
       Records::joiningTongs,
       {Keys::getNameOfJoiningTongNormalForce(), Keys::getNameOfJoiningTongClosingForce(),
        Keys::getNameOfJoiningTongSupportingForce(), Keys::getNameOfJoiningTongDistance(),
        Keys::getNameOfJoiningTongGap(), Keys::getNameOfJoiningTeachingX(), Keys::getNameOfJoiningTeachingY(),
        Keys::getNameOfJoiningTeachingZ()}},
      {DataType::Pilots, "Pilots", pilot, Records::none, {Keys::getNameOfPilotForce()}},
      {DataType::Bolts, "Bolts", bolt, Records::none, clampColumns},
      {DataType::LineJoiningTools,
       "LineJoiningTools",
       ToolForceDataType{},
       Records::lineJoins,
       {SkinBaseName::LINE_JOIN_DIST_TO_INPUT, SkinBaseName::LINE_JOIN_GAP}},
      {DataType::SuctionZones,
       "SuctionZones",
       suctionZone,
       Records::suctionZones,
       {Keys::getNameOfSuctionZoneAbsForce(), Keys::getNameOfSuctionDistance()}},
      {DataType::Rollers, "Rollers", tool, Records::none, totalForce},
      {DataType::Steels, "Steels", tool, Records::none, totalForce},
      {DataType::HemmingBed, "HemmingBed", tool, Records::none, totalForce},
      {DataType::SpotWelds,
       "SpotWelds",
       spotWeld,
       Records::joins,
       {Keys::getNameOfJoinForceN(), Keys::getNameOfJoinTangentialForce()}},
      {DataType::LineWelds,
       "LineWelds",
       ToolForceDataType{},
       Records::lineJoins,
       {SkinBaseName::LINE_JOIN_SUMFORCE_N, SkinBaseName::LINE_JOIN_SUMFORCE_T}},
  };
  return all;
}

// --- host data ---------------------------------------------------------------------------------------------

/// A unit with as many elements of one family, and its result.
struct Host {
  Family const& family;
  SimulationUnit unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<SimulationResult> result;
  SimUnitMaxValuesProvider::ToolGrouping grouping;

  Host(Family const& ofFamily, unsigned int elements, unsigned int steps);

 private:
  void addSeries(unsigned int element, unsigned int steps);
  void addRecord(SimulationStep& step, unsigned int element);

  [[nodiscard]] double number() { return m_numbers(m_random); }

  std::mt19937_64 m_random{20240618};
  std::uniform_real_distribution<double> m_numbers{-1000.0, 1000.0};
};

std::string idOf(unsigned int element) { return std::string("Id ") + std::to_string(element); }
std::string nameOf(unsigned int element) { return std::string("Name ") + std::to_string(element); }

template <typename Id>
Id guidOf(unsigned int element) {
  boost::uuids::uuid uuid{};
  // Spread over the bytes, as real identifiers are: a step's records come in no order of their names.
  std::uint64_t const bits = (element + 1) * 0x9E3779B97F4A7C15u;
  std::memcpy(uuid.data, &bits, sizeof bits);
  return Id(GUIdentifier(uuid));
}

Host::Host(Family const& ofFamily, unsigned int elements, unsigned int steps) : family(ofFamily) {
  if (family.dataType == DataType::Pilots) unit.addTool("Pilots", family.toolKind);
  if (family.toolKind != ToolForceDataType{}) {
    for (unsigned int i = 0; i < elements; ++i) addSeries(i, steps);
  }
  std::vector<std::shared_ptr<SimulationStep>> allSteps;
  for (unsigned int s = 0; s < steps; ++s) {
    auto& step = *allSteps.emplace_back(std::make_shared<SimulationStep>());
    for (unsigned int i = 0; i < elements; ++i) addRecord(step, i);
  }
  if (family.records == Records::lineJoins) {
    for (unsigned int i = 0; i < elements; ++i)
      unit.addJoinDefinedInSimUnit(guidOf<EvalSimulationUnitJoinGUID>(i));
  }
  unit.setVisibleSteps(0, steps - 1);
  result = std::make_shared<SimulationResult>(std::move(allSteps));
  grouping.emplace_back("All", std::vector<std::string>());
  unit.getToolStringIDsOfToolForceType(grouping.back().second, family.toolKind);
}

void Host::addSeries(unsigned int element, unsigned int steps) {
  bool const isPilot = family.dataType == DataType::Pilots;
  auto const id = isPilot ? std::string("Pilots") : idOf(element);
  if (!isPilot) unit.addTool(id, family.toolKind);
  for (auto const& column : family.columns) {
    std::vector<double> values(steps);
    for (double& value : values) value = number();
    if (column == Keys::getNameOfJoinTangentialForce()) {
      unit.setJoinTangentialForce(id, StepValues<double>(std::move(values)));
    } else {
      unit.addToolForce(id, isPilot ? column + '_' + nameOf(element) : column,
                        std::make_shared<StepValues<double>>(std::move(values)));
    }
  }
}

void Host::addRecord(SimulationStep& step, unsigned int element) {
  auto const state = BodyJoinInterface::JoinState(element % 11);
  switch (family.records) {
    case Records::none:
      break;
    case Records::suctionZones:
      step.addSuctionZone(guidOf<EvalSuctionZoneGUID>(element),
                          std::make_shared<EvalSuctionZone>(idOf(element), element % 7 == 0));
      break;
    case Records::joiningTongs:
      step.addJoiningTong(std::make_shared<EvalJoiningTong>(idOf(element), nameOf(element), state));
      break;
    case Records::joins:
      step.addJoin(guidOf<EvalJoinGUID>(element),
                   std::make_shared<SimulationBodyJoin>(idOf(element), nameOf(element), state));
      break;
    case Records::lineJoins: {
      auto const join = std::make_shared<SimulationBodyLineJoin>(idOf(element), nameOf(element), state,
                                                                 guidOf<EvalSimulationUnitJoinGUID>(element));
      for (auto const& column : family.columns)
        join->setSkin(SkinKey(column, 0, "", ""), std::make_shared<Skin<double>>(number(), number()));
      step.addLineJoin(guidOf<EvalLineJoinGUID>(element), join);
      break;
    }
  }
}

/// The data of the benchmark that runs, which its peers share and the next family replaces.
Host& hostOf(Family const& family, benchmark::State const& state) {
  static std::unique_ptr<Host> host;
  static std::pair<unsigned int, unsigned int> size;
  std::pair const wanted(static_cast<unsigned int>(state.range(0)),
                         static_cast<unsigned int>(state.range(1)));
  if (!host || &host->family != &family || size != wanted) {
    host.reset();
    malloc_trim(0);  // no family pays for the heap that the one before leaves behind
    host = std::make_unique<Host>(family, wanted.first, wanted.second);
    size = wanted;
  }
  return *host;
}

// --- the peers ---------------------------------------------------------------------------------------------

template <typename Visit>
void forEachRecord(Host const& host, Visit const& visit) {
  for (auto s = host.unit.getFirstVisibleStep(); s <= host.unit.getLastVisibleStep(); ++s) {
    auto const step = host.result->getStep(s);
    switch (host.family.records) {
      case Records::none:
        break;
      case Records::suctionZones:
        for (auto i = step->beginSuctionZoneMap(); i != step->endSuctionZoneMap(); ++i) visit(*i->second);
        break;
      case Records::joiningTongs:
        for (auto i = step->beginJoiningTong(); i != step->endJoiningTong(); ++i) visit(**i);
        break;
      case Records::joins:
        for (auto i = step->beginJoinMap(); i != step->endJoinMap(); ++i) visit(*i->second);
        break;
      case Records::lineJoins:
        for (auto i = step->beginLineJoinMap(); i != step->endLineJoinMap(); ++i) visit(*i->second);
        break;
    }
  }
}

struct ReadRecord {
  Family const& family;
  double& sum;
  std::vector<SkinKey> keys;

  void operator()(EvalSuctionZone const& zone) const { sum += zone.getActive() ? 1.0 : 0.0; }
  void operator()(EvalJoiningTong const& tong) const { sum += static_cast<unsigned int>(tong.getState()); }
  void operator()(SimulationBodyJoin const& join) const { sum += static_cast<unsigned int>(join.getState()); }
  void operator()(SimulationBodyLineJoin const& join) const {
    sum += static_cast<unsigned int>(join.getState());
    for (auto const& key : keys) {
      auto const skin = join.getSkin(key);
      auto const& values = dynamic_cast<Skin<double> const&>(*skin);
      sum += *values.getRangeMinimum() + *values.getRangeMaximum();
    }
  }
};

std::vector<SkinKey> skinKeysOf(Family const& family) {
  std::vector<SkinKey> keys;
  for (auto const& column : family.columns) keys.emplace_back(column, 0, "", "");
  return keys;
}

double readAll(Host const& host) {
  double sum = 0.0;
  auto const add = [&sum](double value) { sum += value; };
  std::vector<std::string> ids;
  host.unit.getToolStringIDsOfToolForceType(ids, host.family.toolKind);
  for (auto const& id : ids) {
    for (auto const& entry : *host.unit.getToolForces(id)) entry.second->forEachValue(add);
    if (host.family.records == Records::joins)
      host.unit.genGetJoinTangentialForceStepValues(id)->forEachValue(add);
  }
  forEachRecord(host, ReadRecord{host.family, sum, skinKeysOf(host.family)});
  return sum;
}

struct LoopRow {
  std::string_view name;
  std::array<double, 8> maxValues{};
  bool isValid = true;
};

double maxOf(StepValues<double> const& series) {
  double current = 0.0;
  series.forEachValue([&current](double value) {
    if (std::abs(value) > std::abs(current)) current = value;
  });
  return current;
}

bool isValid(BodyJoinInterface::JoinState state) {
  auto const number = static_cast<unsigned int>(state);
  return number != 5 && number != 9 && number != 10;
}

using LoopRows = std::vector<LoopRow>;

void loopOverSeries(Host const& host, LoopRows& rows) {
  static std::vector<std::string> ids;  // the rows refer to them
  ids.clear();
  host.unit.getToolStringIDsOfToolForceType(ids, host.family.toolKind);
  rows.reserve(ids.size());
  for (auto const& id : ids) {
    auto& row = rows.emplace_back();
    row.name = id;
    std::size_t column = 0;
    for (auto const& [quantity, series] : *host.unit.getToolForces(id))
      row.maxValues[column++] = maxOf(*series);
    if (host.family.records == Records::joins)
      row.maxValues[column] = maxOf(*host.unit.genGetJoinTangentialForceStepValues(id));
    if (host.family.dataType == DataType::HemmingBed) row.maxValues[0] = std::abs(row.maxValues[0]);
  }
}

void loopOverPilots(Host const& host, LoopRows& rows) {
  auto const prefix = host.family.columns[0].size() + 1;
  for (auto const& [name, series] : *host.unit.getToolForces("Pilots")) {
    auto& row = rows.emplace_back();
    row.name = std::string_view(name).substr(prefix);
    row.maxValues[0] = maxOf(*series);
  }
}

/// Finds the row of each record by its key and takes what the record says.
struct LoopRecord {
  LoopRows& rows;
  std::unordered_map<std::string_view, std::size_t> rowOf;
  std::vector<SkinKey> keys;

  explicit LoopRecord(Host const& host, LoopRows& allRows) : rows(allRows), keys(skinKeysOf(host.family)) {
    rowOf.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) rowOf.emplace(rows[i].name, i);
    if (host.family.records == Records::suctionZones) {
      for (auto& row : rows) row.isValid = false;
    }
  }

  LoopRow& row(std::string_view key) { return rows[rowOf.find(key)->second]; }

  void operator()(EvalSuctionZone const& zone) {
    if (zone.getActive()) row(zone.getSuctionZonePresentationName()).isValid = true;
  }
  void operator()(EvalJoiningTong const& tong) {
    row(tong.getJoiningTongStringID()).isValid = isValid(tong.getState());
  }
  void operator()(SimulationBodyJoin const& join) {
    row(join.getStringID()).isValid = isValid(join.getState());
  }
  void operator()(SimulationBodyLineJoin const& join) {
    auto const [entry, isNew] = rowOf.try_emplace(join.getDisplayName(), rows.size());
    if (isNew) rows.emplace_back().name = join.getDisplayName();
    auto& lineJoin = rows[entry->second];
    lineJoin.isValid = isValid(join.getState());
    for (std::size_t column = 0; column < keys.size(); ++column) {
      auto const skin = join.getSkin(keys[column]);
      auto const& values = dynamic_cast<Skin<double> const&>(*skin);
      for (double const value : {*values.getRangeMinimum(), *values.getRangeMaximum()}) {
        if (std::abs(value) > std::abs(lineJoin.maxValues[column])) lineJoin.maxValues[column] = value;
      }
    }
  }
};

LoopRows loopOverAll(Host const& host) {
  LoopRows rows;
  if (host.family.dataType == DataType::Pilots) {
    loopOverPilots(host, rows);
  } else {
    loopOverSeries(host, rows);
    LoopRecord record(host, rows);
    forEachRecord(host, [&record](auto const& theRecord) { record(theRecord); });
  }
  return rows;
}

std::shared_ptr<MaxValueGroupContainer> tableOf(Host const& host) {
  SimUnitMaxValuesProvider const provider(host.unit, host.result);
  if (host.family.toolKind == ToolForceDataType::tool)
    return provider.genGetToolMaxValuesCollection(host.grouping, host.family.dataType);
  return provider.genGetMaxValuesCollection(host.family.dataType);
}

/// Whether the table holds what the loop found.
bool agree(MaxValueGroupContainer const& table, LoopRows const& rows) {
  std::unordered_map<std::string_view, LoopRow const*> rowOf;
  for (auto const& row : rows) rowOf.emplace(row.name, &row);
  std::size_t column = 0;
  for (auto const& group : table.groups) {
    std::size_t i = 0;
    for (auto const& subGroup : group.subGroups) {
      for (auto const& item : subGroup.items) {
        // Tongs and spot welds are named otherwise than identified; their rows are in the loop's order.
        auto const named = rowOf.find(item.name);
        auto const& row = named == rowOf.end() ? rows.at(i) : *named->second;
        auto const valid = table.valuesAreValid.find(item.name);
        if ((valid == table.valuesAreValid.end() || valid->second) != row.isValid) return false;
        for (std::size_t k = 0; k < item.maxValues.size(); ++k) {
          if (item.maxValues[k] != row.maxValues[column + k]) return false;
        }
        ++i;
      }
    }
    if (i != rows.size()) return false;
    column += group.valueNames.size();
  }
  return !table.groups.empty();
}

// --- the benchmarks ----------------------------------------------------------------------------------------

/// Processor time per iteration of the peers that ran last.
double secondsOfRead = 0.0;
double secondsOfLoop = 0.0;

template <typename Work>
double secondsOf(benchmark::State& state, Work const& work) {
  auto const start = std::clock();
  for ([[maybe_unused]] auto const iteration : state) work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / static_cast<double>(state.iterations());
}

void read(benchmark::State& state, Family const& family) {
  Host const& host = hostOf(family, state);
  secondsOfRead = secondsOf(state, [&host] { benchmark::DoNotOptimize(readAll(host)); });
}

void loop(benchmark::State& state, Family const& family) {
  Host const& host = hostOf(family, state);
  secondsOfLoop = secondsOf(state, [&host] { benchmark::DoNotOptimize(loopOverAll(host)); });
}

void library(benchmark::State& state, Family const& family) {
  Host const& host = hostOf(family, state);
  if (!agree(*tableOf(host), loopOverAll(host))) {
    state.SkipWithError("the table and the hand-written loop differ");
    return;
  }
  double const seconds = secondsOf(state, [&host] { benchmark::DoNotOptimize(tableOf(host)); });
  state.counters["over_loop"] = seconds / secondsOfLoop;
  state.counters["over_read"] = seconds / secondsOfRead;
}

int registerAll() {
  for (auto const& [elements, steps] : {std::pair(200, 100), std::pair(2000, 10), std::pair(2000, 100),
                                        std::pair(2000, 1000), std::pair(20000, 100)}) {
    for (auto const& family : families()) {
      for (auto const& [name, function] :
           {std::pair("read", &read), std::pair("loop", &loop), std::pair("library", &library)}) {
        benchmark::RegisterBenchmark((std::string(family.name) + '/' + name).c_str(), function,
                                     std::cref(family))
            ->ArgNames({"elements", "steps"})
            ->Args({elements, steps})
            ->Unit(benchmark::kMillisecond);
      }
    }
  }
  return 0;
}

[[maybe_unused]] int const registered = registerAll();

}  // namespace
