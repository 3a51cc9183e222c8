#include "result_tables/command/StudyExport.h"

#include <algorithm>

#include "result_tables/base/Progress.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/study/RunReading.h"

namespace Kestrel::ResultTables {

namespace {

struct StudyExportOptions {
  std::string database;
  TableSelection selection;
  Output<RunTable> output;
  bool isLong = false;
  bool isStatistics = false;
};

/// The row for the form that is asked for; an `Error` where there is none.
template <typename Rows>
auto const& exportFormat(Rows const& rows, StudyExportOptions const& options, std::string_view option,
                         std::string const& expected) {
  auto const name = options.output.format->name;
  auto const* const found = std::ranges::find_if(rows, [name](auto const& row) { return row.name == name; });
  if (found != std::ranges::end(rows)) return *found;
  throw Error(tr("{}: expected the form {}, found {}", option, expected, name));
}

template <typename Visit>
void forEachRun(Study const& study, TableSelection const& selection, Visit const& visit) {
  checkSelection(study, selection);
  auto const runs = study.runs();
  Progress progress(runs.size());
  for (auto const& run : runs) {
    visit(readRunValues(study, run.name, selection));
    progress.countOne();
  }
}

/// Value by value, which are written as they are read.
void exportValues(StudyExportOptions const& options, Study const& study) {
  auto const& format = exportFormat(s_runValuesFormats, options, "--long", "csv, json, xlsx");
  if (format.isBinary) refuseTerminal(format.name, options.output.file);
  auto const writer = format.genWriter();
  writeOutput(options.output.file, [&](WritePart const& write) {
    forEachRun(study, options.selection, [&](RunValues const& run) { write(writer->write(run)); });
    write(writer->finish());
  });
}

RunTable readTable(StudyExportOptions const& options, Study const& study) {
  RunTableBuilder builder;
  forEachRun(study, options.selection, [&builder](RunValues&& run) { builder.add(std::move(run)); });
  return builder.take();
}

ExitCode exportRuns(StudyExportOptions options) {
  if (options.isLong && options.isStatistics)
    throw Error(tr("--statistics: expected to stand without --long, found both"));
  if (options.isStatistics)
    options.output.format = &exportFormat(s_statisticsFormats, options, "--statistics", "csv");
  Study const study(options.database, DatabaseAccess::read);
  if (options.isLong)
    exportValues(options, study);
  else
    write(options.output, readTable(options, study));
  return ExitCode::nothingFound;
}

}  // namespace

Run declareStudyExport(Arguments& arguments) {
  auto const options = std::make_shared<StudyExportOptions>();
  addStudyName(arguments, options->database);
  addSelection(arguments, options->selection);
  arguments.flag("--long", tr("A row for each value of each run, in place of one for each run"),
                 options->isLong);
  arguments.flag("--statistics", tr("Form csv with a row for each value: what the runs make of it together"),
                 options->isStatistics);
  addFormat<RunTable>(arguments, s_runTableFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addCurves(arguments, options->output.style);
  return [options] { return exportRuns(*options); };
}

}  // namespace Kestrel::ResultTables
