#include "result_tables/command/Show.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <iterator>

#include "result_tables/base/Progress.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"

namespace Kestrel::ResultTables {

namespace {

struct ShowOptions {
  std::vector<std::string> results;
  TableSelection selection;
  std::string limits;
  Output<Tables> output;
};

struct ShownFiles {
  std::deque<ResultsFile> files;  ///< the tables refer to them
  Tables tables;
  std::vector<std::string> errors;  ///< of the other files
};

void readFile(ShownFiles& shown, std::string const& results, ShowOptions const& options,
              NamedLimits const& namedLimits) {
  try {
    auto file = readResultsFile(results);
    auto const limits = namedLimits.of(results, file);
    std::ranges::move(genResultTables(file, options.selection, limits), std::back_inserter(shown.tables));
    shown.files.push_back(std::move(file));
  } catch (std::exception const& error) {
    shown.errors.emplace_back(error.what());
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
  for (auto const& error : shown.errors) printMessage(error);
  if (!shown.files.empty()) write(options.output, shown.tables);
  return shown.errors.empty() ? ExitCode::nothingFound : ExitCode::failed;
}

}  // namespace

Run declareShow(Arguments& arguments) {
  auto const options = std::make_shared<ShowOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  addTables(arguments, options->output);
  return [options] { return show(*options); };
}

}  // namespace Kestrel::ResultTables
