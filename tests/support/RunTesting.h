#pragma once

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// A value of one number.
inline TableValue runValue(double value, bool isExceeded = false) {
  return {value, {{}, 0, {}, 1, 0}, isExceeded};
}
inline TableValue noData() { return {0.0, {}, false}; }
inline TableValue onlyNaN() { return {std::numeric_limits<double>::quiet_NaN(), {{}, {}, {}, 0, 2}, false}; }

/// An element with values from the first column on.
inline RunRow runRow(std::string item, std::vector<TableValue> const& values, std::string subGroup = {},
                     bool isValid = true) {
  RunRow row{std::move(subGroup), std::move(item), 0, isValid, {}};
  for (std::size_t i = 0; i < values.size(); ++i) row.cells.push_back({i, values[i]});
  return row;
}

/// Forces of the bolts of a unit, whose id ends in the digit; normal forces have a limit of 30 N.
inline RunSectionValues boltForces(std::vector<RunRow> rows, std::string unit = "OP20", char digit = '1') {
  return {std::move(unit),
          std::string("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a0") + digit,
          MaxValueGroupContainer::DataType::Bolts,
          "Forces",
          {{"ClampNormalForce", "N", ColumnLimit{30, "N"}}, {"ClampClosingForce", "N", {}}},
          std::move(rows)};
}

inline RunValues runOf(std::string name, std::vector<RunSectionValues> sections) {
  RunValues values;
  values.run.name = std::move(name);
  values.run.file = values.run.name + ".json";
  values.run.added = "2026-11-22T09:30:00Z";
  values.sections = std::move(sections);
  return values;
}

inline RunTable tableOf(std::vector<RunValues> runs) {
  RunTableBuilder builder;
  for (auto& run : runs) builder.add(std::move(run));
  return builder.take();
}

/// A run beyond its limit, one with NaN alone, and one with neither number for the second bolt; the third
/// bolt is in the second run alone.
inline RunTable genBoltRuns() {
  auto first = runOf(
      "r1",
      {boltForces({runRow("B1", {runValue(-45, true), noData()}), runRow("B2", {onlyNaN(), runValue(0)})})});
  first.run.labels = {{"speed", "1"}, {"by", "Ann, \"A\""}};
  first.run.counts.exceeded = 1;
  first.run.counts.notANumber = 1;
  first.run.counts.compared = 1;
  first.run.valueCount = 4;
  first.run.worst = 1.5;
  auto second =
      runOf("r2", {boltForces({runRow("B1", {runValue(15), runValue(-0.5)}),
                               runRow("B3", {runValue(std::numeric_limits<double>::infinity(), true)}),
                               runRow("B2", {noData(), noData()})})});
  second.run.labels = {{"speed", "2"}};
  return tableOf({std::move(first), std::move(second)});
}

}  // namespace Kestrel::ResultTables
