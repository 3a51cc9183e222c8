#include "result_tables/command/Limits.h"

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/LimitsEditing.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsText.h"
#include "result_tables/render/RenderArchive.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

// ---- list, export

/// What the commands take that show limits.
struct ShownLimitsOptions {
  std::string results;
  std::vector<std::string> units;
  std::string limits;
};

void addShow(Arguments& arguments, ShownLimitsOptions& options) {
  addResults(arguments, options.results);
  addUnits(arguments, options.units);
  addLimits(arguments, options.limits);
}

struct ListOptions : ShownLimitsOptions {
  Output<ListedLimits> output;
};

ExitCode list(ListOptions const& options) {
  auto const file = readResultsFile(options.results);
  auto const units = selectUnits(file, options.units);
  auto const limits = limitsFor(options.results, options.limits, file);
  write(options.output, listLimits(*limits.collection, file, units));
  return ExitCode::nothingFound;
}

Run declareList(Arguments& arguments) {
  auto const options = std::make_shared<ListOptions>();
  addShow(arguments, *options);
  addFormat<ListedLimits>(arguments, s_limitsFormats, options->output);
  return [options] { return list(*options); };
}

struct ExportOptions : ShownLimitsOptions {
  std::string output;
};

ExitCode exportText(ExportOptions const& options) {
  auto const file = readResultsFile(options.results);
  auto const units = selectUnits(file, options.units);
  auto const limits = limitsFor(options.results, options.limits, file);
  writeOutput(options.output, genLimitsText(limits, file, units));
  return ExitCode::nothingFound;
}

Run declareExport(Arguments& arguments) {
  auto const options = std::make_shared<ExportOptions>();
  addShow(arguments, *options);
  addOutputFile(arguments, options->output);
  return [options] { return exportText(*options); };
}

// ---- dump

ExitCode dump(std::string const& document) {
  auto const listing = genArchiveListing(readInput(document).text());
  writeToStandardOutput(renderArchive(listing));
  if (listing.damage.empty()) return ExitCode::nothingFound;
  throw Error(fmt::format("{}: {}", toPrintable(nameOfInput(document)), toPrintable(listing.damage)));
}

Run declareDump(Arguments& arguments) {
  auto const document = std::make_shared<std::string>();
  arguments.operand("FILE", Count::one, tr("Limits document"), into(*document));
  return [document] { return dump(*document); };
}

constexpr Command s_limitsCommands[] = {
    {"list", [] { return tr("List the limits"); }, declareList},
    {"set", [] { return tr("Set a limit of one kind"); }, declareSetLimits},
    {"reset", [] { return tr("Put the limits back to their defaults"); }, declareResetLimits},
    {"sync", [] { return tr("Write the limits in step with the units of the results file"); },
     declareSyncLimits},
    {"export", [] { return tr("Write the limits as a text"); }, declareExport},
    {"import", [] { return tr("Set the limits that a text says"); }, declareImportLimits},
    {"dump", [] { return tr("Show the records of a limits document, also of a damaged one"); }, declareDump},
};

}  // namespace

std::span<Command const> limitsCommands() { return s_limitsCommands; }

}  // namespace Kestrel::ResultTables
