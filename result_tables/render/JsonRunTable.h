#pragma once

#include <string>

#include "result_tables/json/JsonWriter.h"
#include "result_tables/render/RunValuesWriter.h"
#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// { "columns": [ { "name", "unit", "unitId", "family", "group", "subGroup", "item", "occurrence", "key",
///                  "column", "valueUnit", "limit" } ],
///   "runs": [ { "run", "file", "added", "labels": { … }, "worstUtilisation", "values": […],
///               "notANumber": […], "exceeded": […], "invalid": […] } ],
///   "statistics": [ { "name", "count", "minimum", "maximum", "mean", "standardDeviation",
///                     "shareBeyondLimit", "worstUtilisation" } ] }
///
/// `values` has a number for each column, null where the run has no such value or no number for it. The lists
/// behind it are indices of columns: of values with data and no number in it, of those beyond their limits,
/// of those of elements that are not valid. `statistics` has an entry for each column, null where there is no
/// such number. `name` is from `genColumnNames`, `limit` the one of the last run that has one, or null.
[[nodiscard]] std::string renderRunTableAsJson(RunTable const& table);

/// { "values": [ { "run", "file", "unit", "unitId", "family", "group", "subGroup", "item", "occurrence",
///                 "valid", "key", "column", "value", "valueUnit", "limit", "exceeded", "step", "time",
///                 "count", "nans" } ] }
class JsonRunValues : public RunValuesWriter {
 public:
  JsonRunValues();

  [[nodiscard]] std::string write(RunValues const& run) override;
  [[nodiscard]] std::string finish() override;

 private:
  void writeCell(RunValues const& run, RunSectionValues const& section, RunRow const& row,
                 RunCell const& cell);

  JsonWriter m_json;
};

}  // namespace Kestrel::ResultTables
