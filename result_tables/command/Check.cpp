#include "result_tables/command/Check.h"

#include <algorithm>
#include <exception>

#include "result_tables/base/Error.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"

namespace Kestrel::ResultTables {

namespace {

struct CheckOptions {
  std::vector<std::string> results;
  TableSelection selection;
  std::string limits;
  Output<Findings> output;
};

FileFindings checkFile(std::string const& results, CheckOptions const& options) {
  FileFindings found{results, {}, std::nullopt};
  try {
    auto const file = readResultsFile(results);
    auto const limits = limitsFor(results, options.limits, file);
    for (auto const& table : genResultTables(file, options.selection, *limits))
      found.tables.push_back(genFindings(table));
  } catch (std::exception const& error) {
    found.error = error.what();
    printMessage(error.what());
  }
  return found;
}

ExitCode exitCodeOf(FileFindings const& file) {
  if (file.error) return ExitCode::failed;
  auto const hasFindings = [](TableFindings const& table) { return !table.findings.empty(); };
  return std::any_of(file.tables.begin(), file.tables.end(), hasFindings) ? ExitCode::found
                                                                          : ExitCode::nothingFound;
}

ExitCode check(CheckOptions const& options) {
  if (!options.limits.empty() && options.results.size() > 1) {
    throw Error(tr("--limits: expected one results file, as each has its own limits, found {}",
                   options.results.size()));
  }
  auto exitCode = ExitCode::nothingFound;
  Findings files;
  for (auto const& results : options.results) {
    files.push_back(checkFile(results, options));
    exitCode = std::max(exitCode, exitCodeOf(files.back()));
  }
  write(options.output, files);
  return exitCode;
}

}  // namespace

Run declareCheck(Arguments& arguments) {
  auto const options = std::make_shared<CheckOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  addFormat<Findings>(arguments, s_findingsFormats, options->output);
  return [options] { return check(*options); };
}

}  // namespace Kestrel::ResultTables
