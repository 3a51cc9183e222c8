#include "result_tables/command/Show.h"

#include "result_tables/command/CommonOptions.h"

namespace Kestrel::ResultTables {

namespace {

struct ShowOptions {
  std::string results;
  TableSelection selection;
  std::string limits;
  Output<Tables> output;
};

ExitCode show(ShowOptions const& options) {
  auto const file = readResultsFile(options.results);
  auto const limits = limitsFor(options.results, options.limits, file);
  write(options.output, genResultTables(file, options.selection, *limits));
  return ExitCode::nothingFound;
}

}  // namespace

Run declareShow(Arguments& arguments) {
  auto const options = std::make_shared<ShowOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  addFormat<Tables>(arguments, s_tableFormats, options->output);
  addOutputFile(arguments, options->output.file);
  return [options] { return show(*options); };
}

}  // namespace Kestrel::ResultTables
