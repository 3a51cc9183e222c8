#include "result_tables/command/Demo.h"

#include "result_tables/command/CommonOptions.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsDocument.h"
#include "result_tables/results/Sample.h"

namespace Kestrel::ResultTables {

namespace {

struct DemoOptions {
  TableSelection selection;
  std::string limits;
  Output<Tables> output;
};

ExitCode demo(DemoOptions const& options) {
  auto const sample = readSample();
  auto const limits =
      options.limits.empty() ? ResultLimits{genDefaultLimits(sample)} : readLimits(options.limits, sample);
  write(options.output, genTables(sample, options.selection, limits));
  return ExitCode::nothingFound;
}

}  // namespace

Run declareDemo(Arguments& arguments) {
  auto const options = std::make_shared<DemoOptions>();
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits,
            tr("Limits document or text of limits; the default limits when it is not named"));
  addTables(arguments, options->output);
  return [options] { return demo(*options); };
}

}  // namespace Kestrel::ResultTables
