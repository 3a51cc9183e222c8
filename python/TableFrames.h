#pragma once

#include <string>
#include <vector>

#include "python/Frame.h"
#include "result_tables/study/Study.h"
#include "result_tables/tables/Differences.h"
#include "result_tables/tables/Findings.h"
#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/RunValues.h"
#include "result_tables/tables/Trend.h"
#include "result_tables/tables/WorstValues.h"

// Data frames of what the program shows, named as in its CSV. Made without Python's lock.

namespace Kestrel::ResultTables {

/// A row for each value.
[[nodiscard]] Frame genValuesFrame(std::vector<ResultTable> const& tables);

/// A section of a table: a row for each element, a column for each quantity.
struct SectionFrame {
  std::string file;
  std::string unit;
  std::string unitId;
  std::string_view family;
  std::string title;
  std::string group;
  bool isTeaching = false;
  bool isGrouped = false;  ///< its elements are in sub-groups with names
  TextColumn subGroups;
  TextColumn items;
  std::vector<std::string> invalidItems;
  std::vector<TableColumn> columns;
  Frame values;

  [[nodiscard]] pybind11::dict take();
};

/// The sections of all tables.
[[nodiscard]] std::vector<SectionFrame> genSectionFrames(std::vector<ResultTable> const& tables);

/// What `check` finds.
struct FindingsFrame {
  Frame findings;
  std::size_t compared = 0;
  std::size_t withoutData = 0;
};

[[nodiscard]] FindingsFrame genFindingsFrame(std::vector<ResultTable> const& tables);

[[nodiscard]] Frame genDifferencesFrame(ResultDifferences const& differences);

// ---- of studies

[[nodiscard]] Frame genRunsFrame(std::vector<StudyRun> const& runs);
[[nodiscard]] Frame genWorstFrame(WorstValues const& values);
[[nodiscard]] Frame genTrendFrame(Trends const& trends);
/// A row for each value of each run.
[[nodiscard]] Frame genRunValuesFrame(std::vector<RunValues> const& runs);

}  // namespace Kestrel::ResultTables
