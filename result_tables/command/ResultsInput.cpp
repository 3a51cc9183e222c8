#include "result_tables/command/ResultsInput.h"

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

void expectMap(ResultsInput const& input, std::string_view option) {
  if (!input.map) throw Error(tr("{}: expected {} beside it, found {}", option, "--map", tr("none")));
}

}  // namespace

void addResultsInput(Arguments& arguments, ResultsInput& input) {
  arguments.option("--map", "MAP", Count::atMostOne,
                   tr("RESULTS is what a solver printed, and this file says what its histories feed"),
                   [&input](std::string const& name) { input.map = name; }, {Offer::Kind::files});
  addChoice(arguments, "--from", "FORMAT", Count::atMostOne,
            tr("Format of the print, where its name does not say it: calculix or csv"), s_importFormats,
            [&input](NamedImportFormat const& row) {
              expectMap(input, "--from");
              input.format = row.format;
            });
  arguments.flag("--decimal-comma", tr("Of a print in csv: commas are decimal"), [&input] {
    expectMap(input, "--decimal-comma");
    input.decimalMark = DecimalMark::comma;
  });
}

ResultsFile readResults(std::string const& results, ResultsInput const& input, WantedUnits const& wanted,
                        OnNote const& onNote) {
  if (!input.map) return readResultsFile(results, wanted);
  auto const format = input.format ? input.format : importFormatOf(results);
  if (!format) {
    throw Error(tr("{}: expected a name that ends in .dat or .csv, or the format of the print behind --from",
                   toPrintable(nameOfInput(results))));
  }
  return importResults(*format, results, *input.map, input.decimalMark, onNote);
}

}  // namespace Kestrel::ResultTables
