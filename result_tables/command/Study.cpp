#include "result_tables/command/Study.h"

#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/StudyAdding.h"
#include "result_tables/command/StudyExport.h"
#include "result_tables/command/StudyQuestions.h"
#include "result_tables/study/Study.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

// ---- list

struct StudyListOptions {
  std::string database;
  Output<StudyRuns> output;
};

ExitCode listRuns(StudyListOptions const& options) {
  write(options.output, Study(options.database, DatabaseAccess::read).runs());
  return ExitCode::nothingFound;
}

Run declareStudyList(Arguments& arguments) {
  auto const options = std::make_shared<StudyListOptions>();
  addStudyName(arguments, options->database);
  addFormat<StudyRuns>(arguments, s_studyRunsFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  return [options] { return listRuns(*options); };
}

// ---- remove

struct StudyRemoveOptions {
  std::string database;
  std::vector<std::string> runs;
};

ExitCode removeRuns(StudyRemoveOptions const& options) {
  Study(options.database, DatabaseAccess::read).remove(options.runs);
  return ExitCode::nothingFound;
}

Run declareStudyRemove(Arguments& arguments) {
  auto const options = std::make_shared<StudyRemoveOptions>();
  addStudyName(arguments, options->database);
  arguments.operand("RUN", Count::atLeastOne, tr("Runs to remove, all or none"), into(options->runs),
                    Offer{});
  return [options] { return removeRuns(*options); };
}

constexpr Command s_studyCommands[] = {
    {"add", [] { return tr("Add results files to a study"); }, declareStudyAdd},
    {"list", [] { return tr("List the runs of a study"); }, declareStudyList},
    {"worst", [] { return tr("List the values that take the most of their limits"); }, declareStudyWorst},
    {"trend", [] { return tr("Show a value through the runs of a study"); }, declareStudyTrend},
    {"compare", [] { return tr("Compare two runs of a study; exits with 1 if they differ"); },
     declareStudyCompare},
    {"export", [] { return tr("Put out the values of all runs of a study, and their statistics"); },
     declareStudyExport},
    {"remove", [] { return tr("Remove runs from a study"); }, declareStudyRemove},
};

}  // namespace

std::span<Command const> studyCommands() { return s_studyCommands; }

}  // namespace Kestrel::ResultTables
