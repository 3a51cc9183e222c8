#include "result_tables/command/Diff.h"

#include <array>
#include <exception>
#include <optional>

#include "result_tables/base/Error.h"
#include "result_tables/base/Parallel.h"
#include "result_tables/base/Progress.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Message.h"

namespace Kestrel::ResultTables {

namespace {

struct DiffOptions {
  std::string before;
  std::string after;
  TableSelection selection;
  std::string limits;
  Tolerance tolerance;
  Output<ResultDifferences> output;
};

/// Reads both files at the same time; a file that cannot be read is an error of the result.
ResultDifferences genDifferences(DiffOptions const& options) {
  std::array<std::string, 2> const names = {options.before, options.after};
  std::array<std::optional<LimitedResults>, 2> results;
  std::array<std::optional<std::string>, 2> errors;
  NamedLimits const namedLimits(options.limits);
  Progress progress(names.size());
  forEachInParallel(names.size(), numberOfProcessors(), [&](std::size_t i) {
    try {
      auto file = readResultsFile(names[i]);
      auto limits = namedLimits.of(names[i], file);
      results[i] = LimitedResults{std::move(file), std::move(limits)};
    } catch (std::exception const& error) {
      errors[i] = error.what();
    }
    progress.countOne();
  });
  if (results[0] && results[1])
    return genDifferences(*results[0], *results[1], options.selection, options.tolerance);
  ResultDifferences none{names[0], names[1], {}, {}};
  if (errors[0]) none.errors.push_back({names[0], *errors[0]});
  // What both need, as limits that are named, fails once.
  if (errors[1] && errors[1] != errors[0]) none.errors.push_back({names[1], *errors[1]});
  return none;
}

ExitCode diff(DiffOptions const& options) {
  if (options.before == s_standardStream && options.after == s_standardStream)
    throw Error(tr("BEFORE, AFTER: expected standard input for one of them, found it for both"));
  auto const differences = genDifferences(options);
  for (auto const& [file, message] : differences.errors) printMessage(message);
  bool const isCompared = differences.errors.empty();
  if (isCompared || options.output.format->reportsErrors) write(options.output, differences);
  if (!isCompared) return ExitCode::failed;
  return differences.hasDifferences() ? ExitCode::found : ExitCode::nothingFound;
}

}  // namespace

Run declareDiff(Arguments& arguments) {
  auto const options = std::make_shared<DiffOptions>();
  arguments.operand("BEFORE", Arguments::Count::one, tr("Results file; - is standard input"),
                    into(options->before), {Offer::Kind::resultsFiles});
  arguments.operand("AFTER", Arguments::Count::one, tr("Results file to compare with it"),
                    into(options->after), {Offer::Kind::resultsFiles});
  addSelection(arguments, options->selection);
  addTolerance(arguments, options->tolerance);
  addLimits(
      arguments, options->limits,
      tr("Limits document or text of limits for both files; that beside each of them when it is not named"));
  addFormat<ResultDifferences>(arguments, s_differencesFormats, options->output);
  addCsv(arguments, options->output);
  addOutputFile(arguments, options->output.file);
  addTextStyle(arguments, options->output.style, options->output.colour);
  return [options] { return diff(*options); };
}

}  // namespace Kestrel::ResultTables
