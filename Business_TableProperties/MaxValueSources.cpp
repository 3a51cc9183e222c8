#include "Business_TableProperties/MaxValueSources.h"

namespace Kestrel::MaxValueSources {

ColumnMap columnsOf(std::vector<std::string> const& valueNames) {
  ColumnMap columns;
  for (unsigned int i = 0; i < valueNames.size(); ++i) columns[valueNames[i]] = i;
  return columns;
}

std::vector<std::string> toolIdsOf(SimulationUnit const& unit, ToolForceDataType kind) {
  std::vector<std::string> ids;
  unit.getToolStringIDsOfToolForceType(ids, kind);
  return ids;
}

ToolSeries::ToolSeries(ColumnMap columns)
    : m_columns(std::move(columns)),
      m_tangentialForce(columnOf(SolverTableDataKeys::getNameOfJoinTangentialForce())) {}

std::string_view pilotNameOf(std::string_view seriesName, std::string_view quantityAndUnderscore) {
  return seriesName.substr(seriesName.find(quantityAndUnderscore) + quantityAndUnderscore.size());
}

std::optional<PilotTool> findPilotTool(SimulationUnit const& unit) {
  auto pilotToolIds = toolIdsOf(unit, FamilySections::pilots().toolKind);
  if (pilotToolIds.empty()) return std::nullopt;
  return PilotTool{std::move(pilotToolIds.front()), toolIdsOf(unit, FamilySections::bolts().toolKind)};
}

std::optional<SkinRange> rangeOfSkin(SimulationBodyLineJoin& record, SkinKey const& key) {
  auto const skin = record.getSkin(key);
  auto* const values = dynamic_cast<Skin<double>*>(skin.get());
  if (values == nullptr) return std::nullopt;
  auto const& minimum = values->getRangeMinimum();
  auto const& maximum = values->getRangeMaximum();
  if (!minimum || !maximum) return std::nullopt;
  return SkinRange{*minimum, *maximum};
}

}  // namespace Kestrel::MaxValueSources
