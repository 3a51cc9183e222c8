#pragma once

#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

namespace Kestrel {

/// The private members of a provider.
struct SimUnitMaxValuesProviderTestAccess {
  using Provider = SimUnitMaxValuesProvider;
  using Names = std::vector<std::string>;
  using Columns = std::map<std::string, unsigned int>;

  static auto& compare(Provider& provider) { return provider.m_compare; }
  static auto const& unit(Provider const& provider) { return provider.m_simulationUnit; }
  static auto const& weakResult(Provider const& provider) { return provider.m_simulationResult; }

  static auto result(Provider const& provider) { return provider.getSimulationResult(); }
  static auto columns(Provider const& provider, Names const& valueNames) {
    return provider.createValueNameToColumnIndexMap(valueNames);
  }
  static double maxValue(Provider const& provider, StepValues<double>& values) {
    return provider.computeMaxValue(values);
  }
  static void assembleGroup(Provider const& provider, Names const& ids, Names const& names,
                            Columns const& columns, MaxValueGroup& group) {
    provider.assembleGroup(ids, names, columns, group);
  }

  static void assemblePilots(Provider const& provider, std::string const& toolId, Columns const& columns,
                             MaxValueGroup& group, Names const& boltIds) {
    provider.assemblePilotsGroup(toolId, columns, group, boltIds);
  }

  static void assembleGroupWithGrouping(Provider const& provider, Names const& ids, Names const& names,
                                        Columns const& columns, Provider::ToolGrouping const& grouping,
                                        MaxValueGroup& group) {
    provider.assembleGroupWithGrouping(ids, names, columns, grouping, group);
  }

  static auto suctionZoneValidity(Provider const& provider) {
    return provider.getSuctionZoneValuesAreValid();
  }

  using JoiningTongMap = Provider::JoiningTongMap;
  static void allJoiningTongs(Provider const& provider, JoiningTongMap& tongs) {
    provider.getAllEvalJoiningTongs(tongs);
  }
  static auto joiningTongValidity(Provider const& provider, Names const& ids) {
    return provider.getJoiningTongValuesAreValid(ids);
  }
  using PointJoinMap = Provider::PointJoinMap;
  static void allPointJoins(Provider const& provider, PointJoinMap& joins) {
    provider.getAllPointJoins(joins);
  }
  static auto pointJoinValidity(Provider const& provider, Names const& ids) {
    return provider.getPointJoinValuesAreValid(ids);
  }

  using LineJoinMap = Provider::LineJoinMap;
  static void allLineJoins(Provider const& provider, LineJoinMap& lineJoins) {
    provider.getAllLineJoins(lineJoins);
  }
  static void lineJoinsOfTheUnit(Provider const& provider, LineJoinMap& lineJoins) {
    provider.getLineJoinsDefinedInCurrentSimUnit(lineJoins);
  }
  static auto lineJoinIds(Provider const& provider, LineJoinMap const& lineJoins) {
    return provider.genGetLineJoinsStringIDs(lineJoins);
  }
  static auto lineJoinValidity(Provider const& provider, LineJoinMap const& lineJoins) {
    return provider.getLineJoinValuesAreValid(lineJoins);
  }
  static void assembleLineWeldGroup(Provider const& provider, Columns const& columns,
                                    LineJoinMap const& lineJoins, MaxValueGroup& group) {
    provider.assembleLineWeldGroup(columns, lineJoins, group);
  }

  static bool joinIsValid(Provider const& provider, BodyJoinInterface::JoinState state) {
    return provider.genGetJoinValueIsValid(state);
  }
};

}  // namespace Kestrel
