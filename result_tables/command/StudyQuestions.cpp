#include "result_tables/command/StudyQuestions.h"

#include <memory>

#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"
#include "result_tables/study/RunDifferences.h"
#include "result_tables/study/Study.h"
#include "result_tables/study/TrendQuestion.h"
#include "result_tables/study/WorstQuestion.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

// ---- worst

constexpr std::size_t s_usualWorst = 20;
constexpr std::size_t s_mostWorst = 1000000;

struct StudyWorstOptions {
  std::string database;
  TableSelection selection;
  std::size_t top = s_usualWorst;
  Output<WorstValues> output;
};

ExitCode listWorst(StudyWorstOptions const& options) {
  Study const study(options.database, DatabaseAccess::read);
  write(options.output, askWorst(study.database(), options.selection, options.top));
  return ExitCode::nothingFound;
}

// ---- trend

struct StudyTrendOptions {
  std::string database;
  TrendSelection selection;
  Output<Trends> output;
};

ExitCode showTrend(StudyTrendOptions const& options) {
  Study const study(options.database, DatabaseAccess::read);
  auto const answer = askTrend(study.database(), options.selection);
  if (answer.leftOut > 0) {
    printMessage(tr("--by: runs left out, as they have no number under the label {}: {}",
                    quote(options.selection.by), answer.leftOut));
  }
  write(options.output, answer.trends);
  return ExitCode::nothingFound;
}

// ---- compare

struct StudyCompareOptions {
  std::string database;
  std::string before;
  std::string after;
  TableSelection selection;
  Tolerance tolerance;
  Output<ResultDifferences> output;
};

ExitCode compareRuns(StudyCompareOptions const& options) {
  Study const study(options.database, DatabaseAccess::read);
  auto const differences =
      genRunDifferences(study, options.before, options.after, options.selection, options.tolerance);
  write(options.output, differences);
  return differences.hasDifferences() ? ExitCode::found : ExitCode::nothingFound;
}

}  // namespace

Run declareStudyWorst(Arguments& arguments) {
  auto const options = std::make_shared<StudyWorstOptions>();
  addStudyName(arguments, options->database);
  addSelection(arguments, options->selection);
  arguments.option("--top", "N", Count::atMostOne,
                   tr("How many values to list; {} when it is not named", s_usualWorst),
                   [options = options.get()](std::string const& text) {
                     options->top = countFromText("--top", text, s_mostWorst);
                   });
  addFormat<WorstValues>(arguments, s_worstValuesFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  return [options] { return listWorst(*options); };
}

Run declareStudyTrend(Arguments& arguments) {
  auto const options = std::make_shared<StudyTrendOptions>();
  auto& selection = options->selection;
  addStudyName(arguments, options->database);
  arguments.option("--unit", "U", Count::one, tr("The unit, by its id or name"), into(selection.unit));
  addFamily(arguments, selection.family);
  arguments.option("--item", "NAME", Count::one, tr("The element, by its name"), into(selection.item));
  arguments.option("--key", "KEY", Count::one, tr("The column, by its key, as JSON and CSV have it"),
                   into(selection.key));
  arguments.option("--by", "LABEL", Count::atMostOne,
                   tr("Order the runs by the number that they have under this label; in the order in which "
                      "they were added when it is not named"),
                   into(selection.by));
  addFormat<Trends>(arguments, s_trendsFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  return [options] { return showTrend(*options); };
}

Run declareStudyCompare(Arguments& arguments) {
  auto const options = std::make_shared<StudyCompareOptions>();
  addStudyName(arguments, options->database);
  arguments.operand("BEFORE", Count::one, tr("Run of the study"), into(options->before), Offer{});
  arguments.operand("AFTER", Count::one, tr("Run to compare with it"), into(options->after), Offer{});
  addSelection(arguments, options->selection);
  addTolerance(arguments, options->tolerance);
  addFormat<ResultDifferences>(arguments, s_differencesFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  return [options] { return compareRuns(*options); };
}

}  // namespace Kestrel::ResultTables
