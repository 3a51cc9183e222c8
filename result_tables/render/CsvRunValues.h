#pragma once

#include <string>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/render/RunValuesWriter.h"

namespace Kestrel::ResultTables {

/// One record per value with a header record: those of tables, with the run before them, and behind the item
/// how often that has come before in its sub-group.
class CsvRunValues : public RunValuesWriter {
 public:
  explicit CsvRunValues(CsvDialect const& dialect);

  [[nodiscard]] std::string write(RunValues const& run) override;
  [[nodiscard]] std::string finish() override { return m_csv.take(); }

 private:
  struct Column;

  void writeSection(RunSectionValues const& section, std::string const& ofRun);
  void writeCell(RunCell const& cell, Column const& column);

  CsvWriter m_csv;
};

}  // namespace Kestrel::ResultTables
