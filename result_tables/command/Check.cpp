#include "result_tables/command/Check.h"

#include <algorithm>
#include <exception>

#include "result_tables/base/Parallel.h"
#include "result_tables/base/Progress.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"
#include "result_tables/command/ResultsInput.h"

namespace Kestrel::ResultTables {

namespace {

struct CheckOptions {
  std::vector<std::string> results;
  ResultsInput input;
  TableSelection selection;
  std::string limits;
  std::size_t jobs = numberOfProcessors();
  Output<Findings> output;
};

FileFindings checkFile(std::size_t index, CheckOptions const& options, NamedLimits const& namedLimits,
                       std::vector<std::string>& notes) {
  auto const& results = options.results[index];
  FileFindings found{results, {}, std::nullopt};
  try {
    auto const file = readResults(results, options.input, options.selection.units,
                                  [&notes](std::string const& note) { notes.push_back(note); });
    auto const limits = namedLimits.of(results, file);
    auto const tables = genTables(file, options.selection, limits);
    for (auto const& table : tables.tables) found.tables.push_back(genFindings(table));
    if (auto const keepOf = options.output.format->keepOf)
      found.kept = keepOf(tables, index, options.output.style);
  } catch (std::exception const& error) {
    found.error = error.what();
  }
  return found;
}

/// `notes` gets for each file what of it is passed over.
void checkFiles(Findings& files, std::vector<std::vector<std::string>>& notes, CheckOptions const& options,
                NamedLimits const& limits) {
  Progress progress(files.size());
  forEachInParallel(files.size(), options.jobs, [&](std::size_t i) {
    files[i] = checkFile(i, options, limits, notes[i]);
    progress.countOne();
  });
}

ExitCode exitCodeOf(Findings const& files) {
  if (std::ranges::any_of(files, [](auto const& file) { return file.error.has_value(); }))
    return ExitCode::failed;
  if (std::ranges::any_of(files, &FileFindings::hasFindings)) return ExitCode::found;
  bool const isAnyCompared =
      std::ranges::any_of(files, [](auto const& file) { return file.countCompared() > 0; });
  return isAnyCompared ? ExitCode::nothingFound : ExitCode::nothingCompared;
}

ExitCode check(CheckOptions const& options) {
  NamedLimits const limits(options.limits);
  limits.checkFor(options.results);
  Findings files(options.results.size());
  std::vector<std::vector<std::string>> notes(files.size());
  checkFiles(files, notes, options, limits);
  for (std::size_t i = 0; i < files.size(); ++i) {
    for (auto const& note : notes[i]) printMessage(note);
    if (files[i].error) printMessage(*files[i].error);
  }
  write(options.output, files);
  return exitCodeOf(files);
}

}  // namespace

Run declareCheck(Arguments& arguments) {
  auto const options = std::make_shared<CheckOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  addFormat<Findings>(arguments, s_findingsFormats, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  addCurves(arguments, options->output.style);
  arguments.option(
      "--jobs", "N", Arguments::Count::atMostOne,
      tr("Files to check at the same time; as many as there are processors when it is not named"),
      [options = options.get()](std::string const& text) {
        options->jobs = countFromText("--jobs", text, 1024);
      });
  addResultsInput(arguments, options->input);
  return [options] { return check(*options); };
}

}  // namespace Kestrel::ResultTables
