#pragma once

#include <string>

#include "result_tables/tables/RunValues.h"

namespace Kestrel::ResultTables {

/// Writes the values of runs, value by value, run after run: nothing that was written is kept.
class RunValuesWriter {
 public:
  virtual ~RunValuesWriter() = default;

  /// Returns what comes next in the output.
  [[nodiscard]] virtual std::string write(RunValues const& run) = 0;
  /// Returns the rest of it. REQUIRES: once, after all runs.
  [[nodiscard]] virtual std::string finish() = 0;
};

}  // namespace Kestrel::ResultTables
