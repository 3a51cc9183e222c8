#include "result_tables/command/Show.h"

#include <deque>
#include <exception>

#include "result_tables/base/Progress.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"
#include "result_tables/command/ResultsInput.h"

namespace Kestrel::ResultTables {

namespace {

struct ShowOptions {
  std::vector<std::string> results;
  ResultsInput input;
  TableSelection selection;
  std::string limits;
  Output<Tables> output;
};

struct ShownFiles {
  std::deque<ResultsFile> files;  ///< the tables refer to them
  Tables tables;
  std::vector<std::string> messages;  ///< of what is passed over, and of the other files
  bool hasErrors = false;
};

void readFile(ShownFiles& shown, std::string const& results, ShowOptions const& options,
              NamedLimits const& namedLimits) {
  try {
    auto file = readResults(results, options.input, options.selection.units,
                            [&shown](std::string const& note) { shown.messages.push_back(note); });
    auto const limits = namedLimits.of(results, file);
    shown.tables.append(genTables(file, options.selection, limits));
    shown.files.push_back(std::move(file));
  } catch (std::exception const& error) {
    shown.messages.emplace_back(error.what());
    shown.tables.files.push_back({results, {}, {}, error.what(), 0});
    shown.hasErrors = true;
  }
}

ShownFiles readFiles(ShowOptions const& options, NamedLimits const& limits) {
  Progress progress(options.results.size());
  ShownFiles shown;
  for (auto const& results : options.results) {
    readFile(shown, results, options, limits);
    progress.countOne();
  }
  return shown;
}

ExitCode show(ShowOptions const& options) {
  NamedLimits const limits(options.limits);
  limits.checkFor(options.results);
  auto const shown = readFiles(options, limits);
  for (auto const& message : shown.messages) printMessage(message);
  if (!shown.files.empty()) write(options.output, shown.tables);
  return shown.hasErrors ? ExitCode::failed : ExitCode::nothingFound;
}

}  // namespace

Run declareShow(Arguments& arguments) {
  auto const options = std::make_shared<ShowOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  addTables(arguments, options->output);
  addResultsInput(arguments, options->input);
  return [options] { return show(*options); };
}

}  // namespace Kestrel::ResultTables
