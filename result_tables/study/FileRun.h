#pragma once

#include <map>
#include <string>

#include "result_tables/base/File.h"
#include "result_tables/limits/NamedLimits.h"
#include "result_tables/study/RunData.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// A results file that is to become a run of a study. Its bytes say whether it is stored already, before it
/// is read.
class FileRun {
 public:
  /// Takes in the bytes of the results and of their limits. An `Error` where these cannot be had, or a name
  /// cannot be stored.
  FileRun(std::string name, std::string const& results, std::map<std::string, std::string> labels,
          TableSelection const& selection, NamedLimits const& limits);

  /// What is known of the run by now: its name, its labels and what its content is told by.
  [[nodiscard]] StudyRun const& run() const { return m_run; }

  /// Reads the file and makes its tables.
  [[nodiscard]] RunData read() &&;

 private:
  StudyRun m_run;
  TableSelection m_selection;
  FileText m_text;
  LimitsContent m_limits;
};

/// What a run of a results file is called that is given no name.
[[nodiscard]] std::string usualRunNameOf(std::string const& results);

/// When a run is added that is added now.
[[nodiscard]] std::string timeOfAdding();

}  // namespace Kestrel::ResultTables
