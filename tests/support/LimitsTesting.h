#pragma once

#include <string_view>

#include "Business_EvaluationInterface/SimulationUnitId.h"

namespace Kestrel::ResultTables {

/// The units of `s_resultsOfThreeUnits`, in its order.
inline constexpr char const* s_firstUnit = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02";
inline constexpr char const* s_secondUnit = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01";
inline constexpr char const* s_thirdUnit = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03";

/// A results file: two units of one name, not in the order of their identifiers, and a bolt with 40.5 N.
inline constexpr char const* s_resultsOfThreeUnits =
    R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "tools": [
    {"id": "Bolt 1", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [0, -40.5]}]}]},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03", "name": "OP20"}]})";

inline SimulationUnitId unitId(std::string_view id) {
  return SimulationUnitId(GUIdentifier::fromString(id).value());
}

}  // namespace Kestrel::ResultTables
