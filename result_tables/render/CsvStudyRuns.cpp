#include "result_tables/render/CsvStudyRuns.h"

namespace Kestrel::ResultTables {

namespace {

std::string labelsField(StudyRun const& run) {
  std::string field;
  for (auto const& [key, value] : run.labels)
    field.append(field.empty() ? "" : "\n").append(key).append("=").append(value);
  return field;
}

}  // namespace

std::string renderCsv(std::vector<StudyRun> const& runs, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.record({"run", "file", "added", "program", "contentDigest", "limitsDigest", "labels", "values",
              "compared", "withoutData", "exceeded", "notANumber", "invalid", "worstUtilisation"});
  for (auto const& run : runs) {
    for (auto const& text : {run.name, run.file, run.added, run.program, run.contentDigest, run.limitsDigest})
      csv.text(text);
    csv.text(labelsField(run));
    auto const& counts = run.counts;
    for (auto const count : {run.valueCount, counts.compared, counts.withoutData, counts.exceeded,
                             counts.notANumber, counts.invalid})
      csv.integer(count);
    csv.number(run.worst);
    csv.endRecord();
  }
  return csv.take();
}

}  // namespace Kestrel::ResultTables
