#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_Skin/Skin.h"
#include "Business_TableProperties/FamilySections.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"

// Where the host keeps what the values of the tables are made of: the one place with these rules, for the
// provider, which takes the maxima, and for the origins, which say where they lie.

namespace Kestrel::MaxValueSources {

/// The order of the values of a series: whether the second takes the place of the first.
struct GreaterMagnitude {
  bool operator()(double current, double value) const { return std::abs(value) > std::abs(current); }
};

/// Position of a column by its key. Of a key that occurs more than once the last position counts.
using ColumnMap = std::map<std::string, unsigned int>;
[[nodiscard]] ColumnMap columnsOf(std::vector<std::string> const& valueNames);

/// The identifiers of the unit's tools of one kind, in the unit's order.
[[nodiscard]] std::vector<std::string> toolIdsOf(SimulationUnit const& unit, ToolForceDataType kind);

/// The series of a section's columns, tool by tool.
class ToolSeries {
 public:
  explicit ToolSeries(ColumnMap columns);
  ToolSeries(ToolSeries const&) = delete;
  ToolSeries(ToolSeries&&) = default;

  [[nodiscard]] std::size_t numberOfColumns() const { return m_columns.size(); }

  /// Calls `visit(column, series)` for the series of one tool that are columns. Of several calls for one
  /// column the last counts: series come in stored order, the tangential force of the join comes after them.
  /// `toolForces` are the tool's series, null where the host has none. The series live until `visit` returns.
  template <typename ToolForces, typename Visit>
  void forEach(SimulationUnit const& unit, std::string const& toolId, ToolForces* toolForces,
               Visit const& visit) const {
    if (toolForces != nullptr) {
      for (auto const& [quantity, series] : *toolForces) {
        if (auto const* const column = series ? columnOf(quantity) : nullptr) visit(*column, *series);
      }
    }
    if (m_tangentialForce != nullptr) {
      auto const series = unit.genGetJoinTangentialForceStepValues(toolId);
      if (series) visit(*m_tangentialForce, *series);
    }
  }

 private:
  /// Null where there is no such column.
  [[nodiscard]] unsigned int const* columnOf(std::string const& quantity) const {
    auto const found = m_columns.find(quantity);
    return found == m_columns.end() ? nullptr : &found->second;
  }

  ColumnMap m_columns;
  unsigned int const* m_tangentialForce;  // into the map
};

/// What follows the quantity and its underscore in the name of a pilot's series. Where no underscore follows
/// the quantity, the search's "not found" (the greatest number) plus the length of both wraps around to the
/// length of the quantity.
[[nodiscard]] std::string_view pilotNameOf(std::string_view seriesName,
                                           std::string_view quantityAndUnderscore);

/// Calls `visit(pilot, column, seriesName, series)` for the series of the pilot tool, column by column in the
/// order of the keys, within a column in stored order; the series of `boltIds` are passed over. Of several
/// calls for one pilot and column the last counts. `toolForces` as in `ToolSeries`; `pilot` lives until
/// `visit` returns.
template <typename ToolForces, typename Visit>
void forEachPilotSeries(ToolForces* toolForces, ColumnMap const& columns,
                        std::vector<std::string> const& boltIds, Visit const& visit) {
  if (toolForces == nullptr) return;
  std::unordered_set<std::string_view> const bolts(boltIds.begin(), boltIds.end());
  for (auto const& [valueName, column] : columns) {
    auto const valueNameAndUnderscore = valueName + '_';
    for (auto const& [seriesName, series] : *toolForces) {
      if (!series || seriesName.find(valueName) == std::string::npos) continue;
      auto const pilot = pilotNameOf(seriesName, valueNameAndUnderscore);
      if (!bolts.contains(pilot)) visit(pilot, column, seriesName, series);
    }
  }
}

/// The tool that holds the series of all pilots, and the bolts, whose series it holds as well.
struct PilotTool {
  std::string id;
  std::vector<std::string> boltIds;
};

/// Of several pilot tools the first counts; empty where there is none.
[[nodiscard]] std::optional<PilotTool> findPilotTool(SimulationUnit const& unit);

/// Access to the entries of a map for keys that come in rounds, mostly the same keys in the same order in
/// each round: such a key costs one comparison with the key that came at its place in the round before.
///
/// The table of 20,000 spot welds over 100 steps takes 390 ms with it and 937 ms without, that of line welds
/// 1.0 and 2.8 s (benchmarks/families).
template <typename Map>
class RecurringKeys {
 public:
  explicit RecurringKeys(Map& map) : m_map(map) {}

  void startRound() { m_place = 0; }

  /// The entry of `key`, which is made if there is none.
  typename Map::mapped_type& operator[](typename Map::key_type const& key) {
    if (m_place == m_entries.size()) {
      m_entries.push_back(m_map.try_emplace(key).first);
    } else if (m_entries[m_place]->first != key) {
      m_entries[m_place] = m_map.try_emplace(key).first;
    }
    return m_entries[m_place++]->second;
  }

 private:
  Map& m_map;
  std::vector<typename Map::iterator> m_entries;  // by place in the round
  std::size_t m_place = 0;
};

/// The number behind the last step that a walk up to `last` has to ask for. A result that tells how many
/// steps it has keeps the walk from asking for those beyond.
template <typename Result>
std::uint64_t endOfSteps(Result const& result, unsigned int last) {
  std::uint64_t const end = std::uint64_t{last} + 1;
  if constexpr (requires { result.getNumberOfSteps(); })
    return std::min<std::uint64_t>(end, result.getNumberOfSteps());
  else
    return end;
}

/// The first visible step for which `isWanted(step, number)`, ascending; empty where there is none. Steps
/// without data, and those of a result that is gone, are passed over.
template <typename IsWanted>
std::shared_ptr<SimulationStep> findVisibleStep(SimulationUnit const& unit,
                                                std::shared_ptr<SimulationResult> const& result,
                                                IsWanted const& isWanted) {
  if (!result) return nullptr;
  auto const end = endOfSteps(*result, unit.getLastVisibleStep());
  for (std::uint64_t next = unit.getFirstVisibleStep(); next < end; ++next) {
    auto const number = static_cast<unsigned int>(next);
    auto step = result->getStep(number);
    if (step && isWanted(*step, number)) return step;
  }
  return nullptr;
}

/// Calls `visit(step, number)` for each of them.
template <typename Visit>
void forEachVisibleStep(SimulationUnit const& unit, std::shared_ptr<SimulationResult> const& result,
                        Visit const& visit) {
  findVisibleStep(unit, result, [&visit](SimulationStep& step, unsigned int number) {
    visit(step, number);
    return false;
  });
}

/// The identifiers of the joins that a unit defines. They are compared; where the host orders them too, that
/// is used. The identifiers that are asked for come in rounds, mostly the same ones in the same order, so
/// that each is compared first with the one that came at its place in an earlier round.
///
/// The table of 20,000 line joining tools over 100 steps takes 0.9 s with it and 1.2 s without
/// (benchmarks/families).
template <typename Id>
class DefinedJoins {
 public:
  explicit DefinedJoins(std::vector<Id> ids) : m_ids(std::move(ids)) {
    if constexpr (s_isOrdered) std::sort(m_ids.begin(), m_ids.end(), isBefore);
  }

  void startRound() { m_place = 0; }

  [[nodiscard]] bool contains(Id const& id) {
    auto const place = m_place++;
    if (place == m_answers.size()) m_answers.push_back({id, find(id)});
    return m_answers[place].id == id ? m_answers[place].isDefined : find(id);
  }

 private:
  struct Answer {
    Id id;
    bool isDefined;
  };

  static constexpr bool s_isOrdered = requires(Id const& a, Id const& b) { a < b; };
  static bool isBefore(Id const& a, Id const& b) { return a < b; }

  [[nodiscard]] bool find(Id const& id) const {
    if constexpr (s_isOrdered)
      return std::binary_search(m_ids.begin(), m_ids.end(), id, isBefore);
    else
      return std::find(m_ids.begin(), m_ids.end(), id) != m_ids.end();
  }

  std::vector<Id> m_ids;
  std::vector<Answer> m_answers;  // by place in the round
  std::size_t m_place = 0;
};

/// Wants every line join.
struct AnyLineJoin {
  void startRound() {}
  bool operator()(SimulationBodyLineJoin&) { return true; }
};

/// Wants those that are defined in the unit.
class LineJoinDefinedIn {
 public:
  explicit LineJoinDefinedIn(SimulationUnit const& unit)
      : m_definedJoins(unit.getEvalIDOfJoinDefinedInSimUnitVector()) {}

  void startRound() { m_definedJoins.startRound(); }
  bool operator()(SimulationBodyLineJoin& lineJoin) {
    return m_definedJoins.contains(lineJoin.getEvalSimulationUnitJoinGUID());
  }

 private:
  DefinedJoins<EvalSimulationUnitJoinGUID> m_definedJoins;
};

/// Replaces the content of `lineJoins`, a map from display names to lists, by what `genRecord(lineJoin,
/// number)` makes of the line joins of the visible steps that are wanted, ascending by step.
template <typename LineJoins, typename GenRecord, typename IsWanted>
void collectLineJoins(LineJoins& lineJoins, SimulationUnit const& unit,
                      std::weak_ptr<SimulationResult> const& result, GenRecord const& genRecord,
                      IsWanted isWanted) {
  RecurringKeys recordsOf(lineJoins);
  forEachVisibleStep(unit, result.lock(), [&](SimulationStep& step, unsigned int number) {
    recordsOf.startRound();
    isWanted.startRound();
    std::for_each(step.beginLineJoinMap(), step.endLineJoinMap(), [&](auto const& entry) {
      auto const& lineJoin = entry.second;
      if (lineJoin && isWanted(*lineJoin))
        recordsOf[lineJoin->getDisplayName()].push_back(genRecord(lineJoin, number));
    });
  });
}

/// All line joins of the visible steps.
template <typename LineJoins, typename GenRecord>
void collectAllLineJoins(LineJoins& lineJoins, SimulationUnit const& unit,
                         std::weak_ptr<SimulationResult> const& result, GenRecord const& genRecord) {
  lineJoins.clear();
  if (unit.hasVisibleSimulationSteps()) collectLineJoins(lineJoins, unit, result, genRecord, AnyLineJoin());
}

/// Those of them that are defined in the unit.
template <typename LineJoins, typename GenRecord>
void collectDefinedLineJoins(LineJoins& lineJoins, SimulationUnit const& unit,
                             std::weak_ptr<SimulationResult> const& result, GenRecord const& genRecord) {
  lineJoins.clear();
  if (unit.hasVisibleSimulationSteps())
    collectLineJoins(lineJoins, unit, result, genRecord, LineJoinDefinedIn(unit));
}

/// The range values of a line join's skin.
struct SkinRange {
  double minimum;
  double maximum;

  /// The one that stands for the record: the minimum where its magnitude is greater.
  [[nodiscard]] double extreme() const { return std::abs(minimum) > std::abs(maximum) ? minimum : maximum; }
};

/// Empty for a record without such a skin of numbers, or without both range values.
[[nodiscard]] std::optional<SkinRange> rangeOfSkin(SimulationBodyLineJoin& record, SkinKey const& key);

}  // namespace Kestrel::MaxValueSources
