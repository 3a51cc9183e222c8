#include "result_tables/command/Series.h"

#include "result_tables/command/CommonOptions.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

struct SeriesOptions {
  std::string results;
  SeriesSelection selection;
  std::string limits;
  Output<SeriesList> output;
};

ExitCode showSeries(SeriesOptions const& options) {
  auto const file = readResultsFile(options.results, options.selection.tables.units);
  auto const limits = limitsFor(options.results, options.limits, file);
  write(options.output, genSeries(file, options.selection, limits));
  return ExitCode::nothingFound;
}

}  // namespace

Run declareSeries(Arguments& arguments) {
  auto const options = std::make_shared<SeriesOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection.tables);
  arguments.option("--item", "NAME", Count::any, tr("Only the elements of this name; can be repeated"),
                   into(options->selection.items));
  arguments.option("--key", "KEY", Count::any,
                   tr("Only the columns with this key, as JSON and CSV have it; can be repeated"),
                   into(options->selection.keys));
  addLimits(arguments, options->limits);
  addFormat<SeriesList>(arguments, s_seriesFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  return [options] { return showSeries(*options); };
}

}  // namespace Kestrel::ResultTables
