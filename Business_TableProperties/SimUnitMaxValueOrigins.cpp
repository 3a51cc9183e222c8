#include "Business_TableProperties/SimUnitMaxValueOrigins.h"

#include <cmath>
#include <functional>
#include <unordered_map>
#include <utility>

#include "Business_TableProperties/MaxValueSources.h"
#include "Business_TableProperties/NaturalStringCompare.h"

namespace Kestrel {

namespace {

using DataType = MaxValueGroupContainer::DataType;
using Place = SimUnitMaxValueOrigins::Place;
using namespace MaxValueSources;

/// Calls `visit(value, companion)` for every value of a series, first to last. A host that does not tell
/// companions has none: they are NaN then, as they are for plain values.
template <typename Series, typename Visit>
void forEachStored(Series& series, Visit const& visit) {
  if constexpr (requires { series.forEachPair(visit); }) {
    if (series.forEachPair(visit)) return;
  }
  series.forEachValue([&visit](double value) { visit(value, std::nan("")); });
}

/// Whether the series has companions, as far as the host tells.
template <typename Series>
bool hasCompanions(Series& series) {
  if constexpr (requires { series.forEachPair([](double, double) {}); })
    return series.forEachPair([](double, double) {});
  else
    return false;
}

/// Sees the series of one value, of which the last counts, and makes its origin.
class OriginMaker {
 public:
  template <typename Series>
  void see(std::string_view name, Series& series) {
    start(name);
    std::size_t index = 0;
    forEachStored(series, [&](double value, double companion) { add(index++, value, companion); });
  }

  void startRecords(std::string_view name) { start(name); }
  void seeRecord(unsigned int step, SkinRange const& range) { add(step, range.extreme(), std::nan("")); }

  [[nodiscard]] MaxValueOrigin take() const { return m_origin; }

 private:
  void start(std::string_view name) {
    m_origin = {};
    m_origin.seriesName = name;
    m_current = 0.0;
  }

  void add(std::size_t step, double value, double companion) {
    if (std::isnan(value)) {
      ++m_origin.nanCount;
      return;
    }
    ++m_origin.count;
    if (GreaterMagnitude()(m_current, value)) [[unlikely]] {
      m_current = value;
      m_origin.step = step;
      m_origin.companion = std::isnan(companion) ? std::nullopt : std::optional(companion);
    }
  }

  MaxValueOrigin m_origin;
  double m_current = 0.0;
};

/// The same for a copy of the series.
class SeriesMaker {
 public:
  template <typename Series>
  void see(std::string_view name, Series& series) {
    m_series = {};
    m_series.name = name;
    bool const keepsCompanions = hasCompanions(series);
    forEachStored(series, [&](double value, double companion) {
      m_series.steps.push_back(m_series.steps.size());
      m_series.values.push_back(value);
      if (keepsCompanions) m_series.companions.push_back(companion);
    });
  }

  void startRecords(std::string_view name) { m_series.name = name; }
  void seeRecord(unsigned int step, SkinRange const& range) {
    m_series.steps.push_back(step);
    m_series.values.push_back(range.extreme());
    m_series.minima.push_back(range.minimum);
    m_series.maxima.push_back(range.maximum);
  }

  [[nodiscard]] MaxValueSeries take() { return std::move(m_series); }

 private:
  MaxValueSeries m_series;
};

/// A series of the pilot tool.
struct PilotSeries {
  std::string name;
  std::shared_ptr<StepValues<double>> series;
};

/// A record of a line join.
struct LineJoinRecord {
  std::shared_ptr<SimulationBodyLineJoin> record;
  unsigned int step;
};

bool isOfLineJoins(DataType dataType) {
  return dataType == DataType::LineWelds || dataType == DataType::LineJoiningTools;
}

/// Whether the rows have display names, and the identifiers of the tools stand beside them.
bool namesTools(DataType dataType) {
  return dataType == DataType::JoiningTongs || dataType == DataType::SpotWelds;
}

}  // namespace

/// Where the series of a container's values lie.
class SimUnitMaxValueOrigins::Sources {
 public:
  Sources(SimulationUnit const& unit, std::weak_ptr<SimulationResult> const& result,
          std::shared_ptr<MaxValueGroupContainer const> container)
      : m_unit(unit), m_container(std::move(container)) {
    if (m_container->dataType == DataType::Pilots) {
      findPilots();
    } else if (isOfLineJoins(m_container->dataType)) {
      findLineJoins(result);
    } else {
      for (auto const& group : m_container->groups) m_toolSeries.emplace_back(columnsOf(group.valueNames));
    }
  }

  /// Shows `maker` what the value at `place` comes from; nothing where there is no such value.
  template <typename Maker>
  void show(Place const& place, Maker& maker) const {
    auto const* const item = itemAt(place);
    if (item == nullptr || place.column >= item->maxValues.size()) return;
    auto const& keys = m_container->groups[place.group].valueNames;
    if (place.column >= keys.size()) return;
    if (m_container->dataType == DataType::Pilots)
      showPilot(place, item->name, maker);
    else if (isOfLineJoins(m_container->dataType))
      showLineJoin(keys[place.column], item->name, maker);
    else
      showTool(place, toolIdOf(place, *item), keys[place.column], maker);
  }

 private:
  [[nodiscard]] MaxValueItem const* itemAt(Place const& place) const {
    if (place.group >= m_container->groups.size()) return nullptr;
    auto const& subGroups = m_container->groups[place.group].subGroups;
    if (place.subGroup >= subGroups.size()) return nullptr;
    auto const& items = subGroups[place.subGroup].items;
    return place.item < items.size() ? &items[place.item] : nullptr;
  }

  [[nodiscard]] std::string const& toolIdOf(Place const& place, MaxValueItem const& item) const {
    auto const& ids = m_container->elementNames;
    return namesTools(m_container->dataType) && place.subGroup < ids.size() ? ids[place.subGroup] : item.name;
  }

  void findPilots();
  void findLineJoins(std::weak_ptr<SimulationResult> const& result);

  template <typename Maker>
  void showTool(Place const& place, std::string const& toolId, std::string const& key, Maker& maker) const {
    m_toolSeries[place.group].forEach(m_unit, toolId, m_unit.getToolForces(toolId),
                                      [&](unsigned int column, StepValues<double>& series) {
                                        if (column == place.column) maker.see(key, series);
                                      });
  }

  template <typename Maker>
  void showPilot(Place const& place, std::string const& pilot, Maker& maker) const {
    if (place.group >= m_pilots.size()) return;
    auto const found = m_pilots[place.group].find(pilot);
    if (found == m_pilots[place.group].end() || place.column >= found->second.size()) return;
    auto const& source = found->second[place.column];
    if (source.series) maker.see(source.name, *source.series);
  }

  template <typename Maker>
  void showLineJoin(std::string const& key, std::string const& lineJoin, Maker& maker) const {
    auto const found = m_lineJoins.find(lineJoin);
    if (found == m_lineJoins.end()) return;
    SkinKey const skinKey(key, 0, "", "");
    bool isStarted = false;
    for (auto const& [record, step] : found->second) {
      auto const range = rangeOfSkin(*record, skinKey);
      if (!range) continue;
      if (!isStarted) maker.startRecords(key);
      isStarted = true;
      maker.seeRecord(step, *range);
    }
  }

  /// By pilot, the series of each column.
  using Pilots = std::unordered_map<std::string, std::vector<PilotSeries>>;

  SimulationUnit const& m_unit;
  std::shared_ptr<MaxValueGroupContainer const> m_container;
  std::vector<ToolSeries> m_toolSeries;  // per section
  std::vector<Pilots> m_pilots;          // per section
  std::map<std::string, std::vector<LineJoinRecord>, NaturalStringCompare> m_lineJoins;
};

void SimUnitMaxValueOrigins::Sources::findPilots() {
  auto const tool = findPilotTool(m_unit);
  if (!tool) return;
  for (auto const& group : m_container->groups) {
    auto& pilots = m_pilots.emplace_back();
    forEachPilotSeries(m_unit.getToolForces(tool->id), columnsOf(group.valueNames), tool->boltIds,
                       [&](std::string_view pilot, unsigned int column, std::string const& name,
                           std::shared_ptr<StepValues<double>> const& series) {
                         auto& columns = pilots[std::string(pilot)];
                         columns.resize(group.valueNames.size());
                         columns[column] = {name, series};
                       });
  }
}

void SimUnitMaxValueOrigins::Sources::findLineJoins(std::weak_ptr<SimulationResult> const& result) {
  auto const genRecord = [](std::shared_ptr<SimulationBodyLineJoin> const& record, unsigned int step) {
    return LineJoinRecord{record, step};
  };
  if (m_container->dataType == DataType::LineJoiningTools)
    collectDefinedLineJoins(m_lineJoins, m_unit, result, genRecord);
  else
    collectAllLineJoins(m_lineJoins, m_unit, result, genRecord);
}

SimUnitMaxValueOrigins::SimUnitMaxValueOrigins(SimulationUnit const& simulationUnit,
                                               std::weak_ptr<SimulationResult> const& simulationResult,
                                               std::shared_ptr<MaxValueGroupContainer const> container)
    : m_sources(std::make_unique<Sources const>(simulationUnit, simulationResult, std::move(container))) {}

SimUnitMaxValueOrigins::~SimUnitMaxValueOrigins() = default;

MaxValueOrigin SimUnitMaxValueOrigins::getOrigin(Place const& place) const {
  OriginMaker maker;
  m_sources->show(place, maker);
  return maker.take();
}

MaxValueSeries SimUnitMaxValueOrigins::genGetSeries(Place const& place) const {
  SeriesMaker maker;
  m_sources->show(place, maker);
  return maker.take();
}

}  // namespace Kestrel
