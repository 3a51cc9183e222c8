#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "Business_TableProperties/TablePropertiesData.h"

namespace Kestrel::ResultTables {

/// A column by its family and its key, which is the same in every language.
using ColumnName = std::pair<MaxValueGroupContainer::DataType, std::string>;

/// Limits of columns, in the unit of the column.
using ColumnLimits = std::map<ColumnName, double>;

/// What the values of a results file are compared with.
struct ResultLimits {
  /// By unit and kind of limit. Never null.
  std::shared_ptr<TablePropertiesData> collection = std::make_shared<TablePropertiesData>();
  /// By unit, for columns that the collection has no limit for.
  std::map<SimulationUnitId, ColumnLimits> columns = {};
  /// The document or the text that they were read from; empty where they are the defaults.
  std::string source = {};

  /// The limit of the column itself; empty where there is none.
  [[nodiscard]] std::optional<double> ofColumn(SimulationUnitId const& unit, ColumnName const& column) const {
    auto const ofUnit = columns.find(unit);
    if (ofUnit == columns.end()) return std::nullopt;
    auto const found = ofUnit->second.find(column);
    return found == ofUnit->second.end() ? std::nullopt : std::optional(found->second);
  }
};

}  // namespace Kestrel::ResultTables
