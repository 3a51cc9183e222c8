#pragma once

#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_Skin/Skin.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// Everything that the host tells of results, as lines of text; numbers to the bit, but for NaN.
class Description {
 public:
  explicit Description(ResultsFile const& file) {
    line("file", file.givenName, file.name);
    for (auto const& unit : file.units) describe(unit);
  }

  [[nodiscard]] std::string const& text() const { return m_text; }

 private:
  template <typename... Parts>
  void line(Parts const&... parts) {
    ((m_text += fmt::format("{} ", parts)), ...);
    m_text += '\n';
  }

  void series(std::string const& name, StepValues<double> const& series) {
    std::string values;
    series.forEachValue([&values](double value) {
      values += std::isnan(value) ? "nan " : fmt::format("{:x} ", std::bit_cast<std::uint64_t>(value));
    });
    bool const isPairs = series.forEachPair([&values](double, double companion) {
      values += fmt::format("{:x} ", std::bit_cast<std::uint64_t>(companion));
    });
    line("series", name, isPairs, values);
  }

  void describe(ResultsUnit const& unit) {
    line("unit", unit.unit->getID().toString(), unit.unit->getSimulationUnitName(),
         unit.unit->getFirstVisibleStep(), unit.unit->getLastVisibleStep());
    for (auto const& id : unit.unit->getEvalIDOfJoinDefinedInSimUnitVector()) line("join", id.toString());
    for (unsigned int kind = 0; kind < 16; ++kind) {
      std::vector<std::string> tools;
      unit.unit->getToolStringIDsOfToolForceType(tools, static_cast<ToolForceDataType>(kind));
      for (auto const& tool : tools) describe(*unit.unit, tool, kind);
    }
    for (auto const& [family, groups] : unit.toolGroupings) {
      for (auto const& [name, tools] : groups) {
        line("group", static_cast<int>(family), name);
        for (auto const& tool : tools) line("member", tool);
      }
    }
    for (std::size_t i = 0; i < unit.result->getNumberOfSteps(); ++i)
      describe(unit.result->getStep(static_cast<unsigned int>(i)).get());
  }

  void describe(SimulationUnit const& unit, std::string const& tool, unsigned int kind) {
    line("tool", kind, tool);
    for (auto const& [name, values] : *unit.getToolForces(tool)) series(name, *values);
    series("tangential", *unit.genGetJoinTangentialForceStepValues(tool));
  }

  void describe(SimulationStep const* step) {
    line("step", step != nullptr);
    if (step == nullptr) return;
    for (auto zone = step->beginSuctionZoneMap(); zone != step->endSuctionZoneMap(); ++zone) {
      line("zone", zone->first.toString(), zone->second->getSuctionZonePresentationName(),
           zone->second->getActive());
    }
    for (auto tong = step->beginJoiningTong(); tong != step->endJoiningTong(); ++tong)
      line("tong", (*tong)->getJoiningTongStringID(), (*tong)->getTongPresentationName(),
           number((*tong)->getState()));
    for (auto join = step->beginJoinMap(); join != step->endJoinMap(); ++join) {
      line("weld", join->first.toString(), join->second->getStringID(), join->second->getName(0),
           number(join->second->getState()));
    }
    for (auto join = step->beginLineJoinMap(); join != step->endLineJoinMap(); ++join) {
      line("line", join->first.toString(), join->second->getStringID(), join->second->getDisplayName(),
           number(join->second->getState()), join->second->getEvalSimulationUnitJoinGUID().toString());
      for (auto const* name : {"LineJoinGap", "LineJoinSumForceN", "LineJoinDistToInput"})
        describe(name, *join->second);
    }
  }

  void describe(std::string const& name, SimulationBodyLineJoin const& join) {
    auto const skin = std::dynamic_pointer_cast<Skin<double>>(join.getSkin(SkinKey(name, 0, "", "")));
    if (!skin) return;
    auto const bound = [](std::optional<double> value) {
      return value ? fmt::format("{}", *value) : std::string("none");
    };
    line("skin", name, bound(skin->getRangeMinimum()), bound(skin->getRangeMaximum()));
  }

  static std::uint32_t number(BodyJoinInterface::JoinState state) {
    return static_cast<std::uint32_t>(state);
  }

  std::string m_text;
};

}  // namespace Kestrel::ResultTables
