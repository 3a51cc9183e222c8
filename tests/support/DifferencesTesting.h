#pragma once

#include <fmt/format.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// A results file of these units.
inline std::string resultsOf(std::string const& units) {
  return R"({"format": "simulation-results", "version": 1, "units": [)" + units + "]}";
}

/// A unit with these tools whose identifier ends in `digit`.
inline std::string unitOf(char digit, std::string const& name, std::string const& tools) {
  return fmt::format(R"({{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a0{}", "name": "{}", "tools": [{}]}})",
                     digit, name, tools);
}

/// A bolt whose normal force, of which the default limit is 30 N, has these values.
inline std::string bolt(std::string const& id, std::string const& values) {
  return fmt::format(
      R"({{"id": "{}", "kind": "bolt", "series": [{{"quantity": "ClampNormalForce", "values": [{}]}}]}})", id,
      values);
}

/// The pilots with these names, whose forces are their values.
inline std::string pilots(std::initializer_list<std::pair<char const*, double>> forces) {
  std::string series;
  for (auto const& [name, force] : forces) {
    series += fmt::format(R"({}{{"quantity": "PilotForce_{}", "values": [{}]}})", series.empty() ? "" : ", ",
                          name, force);
  }
  return R"({"id": "Pilots", "kind": "pilot", "series": [)" + series + "]}";
}

/// OP20 with the bolt "Bolt 1".
inline std::string oneBolt(std::string const& values) { return unitOf('2', "OP20", bolt("Bolt 1", values)); }

/// A file of these units under a name, with the default limits.
inline LimitedResults limitedResultsOf(std::string const& name, std::string const& units) {
  auto file = readResults(name, resultsOf(units));
  ResultLimits limits{.collection = genDefaultLimits(file)};
  return {std::move(file), std::move(limits)};
}

/// What differs between the files "before.json" and "after.json" of these units.
inline ResultDifferences differencesOf(std::string const& before, std::string const& after,
                                       Tolerance const& tolerance = {},
                                       TableSelection const& selection = {}) {
  return genDifferences(limitedResultsOf("before.json", before), limitedResultsOf("after.json", after),
                        selection, tolerance);
}

inline std::string shown(std::optional<double> number) { return number ? shortestForm(*number) : "-"; }

/// "20", "31!" beyond the limit, "20?" not valid, "-" none
inline std::string shown(std::optional<ComparedValue> const& value) {
  if (!value) return "-";
  return shortestForm(value->value) + (value->isExceeded ? "!" : "") + (value->isValid ? "" : "?");
}

/// Each difference as "OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 20 31! 11 0.55".
inline std::vector<std::string> linesOf(TableDifferences const& table) {
  std::vector<std::string> lines;
  for (auto const& row : table.rows) {
    for (auto const& value : row.values) {
      lines.push_back(fmt::format("{} {}/{}/{}/{} {} {} {} {} {} {}", table.unit, table.family, row.group,
                                  row.subGroup, row.item, value.column->key, nameOf(value.kind),
                                  shown(value.before), shown(value.after), shown(value.change()),
                                  shown(value.relativeChange())));
    }
  }
  return lines;
}

inline std::vector<std::string> linesOf(ResultDifferences const& differences) {
  std::vector<std::string> lines;
  for (auto const& table : differences.tables) {
    for (auto& line : linesOf(table)) lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace Kestrel::ResultTables
