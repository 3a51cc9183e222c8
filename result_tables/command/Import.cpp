#include "result_tables/import/Import.h"

#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Import.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

struct ImportOptions {
  std::string input;
  std::string map;
  std::string output;
};

template <ImportFormat format>
Run declareImport(Arguments& arguments) {
  auto const options = std::make_shared<ImportOptions>();
  arguments.operand("INPUT", Count::one, tr("File with the histories"), into(options->input));
  arguments.option("--map", "MAP", Count::one, tr("File that says what the histories feed"),
                   into(options->map));
  addOutputFile(arguments, options->output);
  return [options] {
    writeOutput(options->output, importHistories(format, options->input, options->map));
    return ExitCode::nothingFound;
  };
}

constexpr Command s_importCommands[] = {
    {"calculix", [] { return tr("Histories that CalculiX printed (.dat)"); },
     declareImport<ImportFormat::calculix>},
    {"csv", [] { return tr("Histories as comma-separated values, long or wide"); },
     declareImport<ImportFormat::csv>},
};

}  // namespace

std::span<Command const> importCommands() { return s_importCommands; }

}  // namespace Kestrel::ResultTables
