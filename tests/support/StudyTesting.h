#pragma once

#include <limits>
#include <string>

#include "result_tables/study/RunData.h"

namespace Kestrel::ResultTables {

inline constexpr double s_studyInfinity = std::numeric_limits<double>::infinity();

/// A run with clamps of one unit in two sections and every kind of number that there is. Two runs of other
/// names have one layout.
inline RunData genTestRun(std::string const& name) {
  using Family = MaxValueGroupContainer::DataType;
  RunData data;
  data.run.name = name;
  data.run.file = name + ".json";
  data.run.added = "2026-11-22T09:30:00Z";
  data.run.program = "1.0.0";
  data.run.contentDigest = "content of " + name;
  data.run.labels = {{"gap", "0.5"}, {"tool", "A 'quoted\" one"}};
  std::string const id = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01";
  RunColumn const limited{"ClampNormalForce", "N", ColumnLimit{2, "N"}, {1, 1, 0, 3, 0}, s_studyInfinity};
  data.sections.push_back(
      {"OP20", id, Family::Clamps, "Forces", false, {limited, {"Other", "mm", {}, {}, {}}}, 0, 2});
  data.sections.push_back(
      {"OP20", id, Family::Clamps, "Teaching", true, {{"Shift", "mm", {}, {}, {}}}, 2, 1});
  data.elements = {{0, "Left", "C1", 0}, {0, "Left", "C1", 1}, {1, "", "C1", 0}};
  constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
  data.values = {{0, 0, -0.0, {}, {}, 4, 0, true, false},
                 {0, 1, nan, {}, {}, 0, 3, true, false},
                 {1, 0, -s_studyInfinity, 7, 1.5, 9, 1, true, true},
                 {1, 1, 5e-324, 0, -0.0, 2, 0, false, false},
                 {2, 0, 1.7976931348623157e308, 3, s_studyInfinity, 1, 0, true, false}};
  data.run.valueCount = data.values.size();
  data.run.counts = {1, 1, 2, 3, 0};
  data.run.worst = s_studyInfinity;
  return data;
}

}  // namespace Kestrel::ResultTables
