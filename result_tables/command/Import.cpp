#include "result_tables/import/Import.h"

#include <charconv>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/command/Import.h"
#include "result_tables/command/Message.h"
#include "result_tables/import/HistoryList.h"
#include "result_tables/import/MapDraft.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

using ListedHistories = std::vector<ListedHistory>;

constexpr Format<ListedHistories> s_historyFormats[] = {
    {"text", renderInAnyStyle<renderHistoriesAsText, ListedHistories>},
    {"json", renderInAnyStyle<renderHistoriesAsJson, ListedHistories>},
};

struct ImportOptions {
  std::string input;
  std::optional<std::string> map;
  bool lists = false;
  bool makesMap = false;
  bool hasDecimalCommas = false;
  std::optional<ImportSteps> steps;
  Output<ListedHistories> output;
};

ImportSteps stepsOf(std::string const& text) {
  if (text == "all") return {};
  std::uint32_t number = 0;
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) {
    throw Error(tr("--step: expected the number of a step or {}, found {}", quote("all"), quote(text)));
  }
  return {number};
}

/// What the command was told to do with the input.
std::string_view taskOf(ImportOptions const& options) {
  std::vector<std::string_view> given;
  if (options.map) given.push_back("--map");
  if (options.lists) given.push_back("--list");
  if (options.makesMap) given.push_back("--make-map");
  if (given.size() != 1) {
    throw Error(tr("expected exactly one of {}, found {}", "--map, --list, --make-map",
                   given.empty() ? tr("none") : listOf(given)));
  }
  return given.front();
}

template <ImportFormat format>
ExitCode importOrDescribe(ImportOptions const& options) {
  auto const task = taskOf(options);
  if (!options.lists && options.output.isFormatNamed)
    throw Error(tr("{}: expected {} beside it, found {}", "--format", "--list", task));
  if (!options.map && options.steps)
    throw Error(tr("{}: expected {} beside it, found {}", "--step", "--map", task));
  auto const decimalMark = options.hasDecimalCommas ? DecimalMark::comma : DecimalMark::point;
  auto const& file = options.output.file;
  if (options.map) {
    writeOutput(
        file, importHistories(format, options.input, *options.map, decimalMark, options.steps, printMessage));
  } else if (auto const histories = readHistories(format, options.input, decimalMark, printMessage);
             options.lists) {
    write(options.output, listHistories(histories));
  } else {
    writeOutput(file, draftImportMap(std::filesystem::path(options.input).filename().string(), histories));
  }
  return ExitCode::nothingFound;
}

template <ImportFormat format>
Run declareImport(Arguments& arguments) {
  auto const options = std::make_shared<ImportOptions>();
  arguments.operand("INPUT", Count::one, tr("File with the histories"), into(options->input));
  arguments.option("--map", "MAP", Count::atMostOne, tr("File that says what the histories feed"),
                   [options = options.get()](std::string const& name) { options->map = name; },
                   {Offer::Kind::files});
  arguments.flag("--list", tr("List the histories in place of importing them"), options->lists);
  arguments.flag("--make-map", tr("Write a map to be edited, in which everything is guessed from names"),
                 options->makesMap);
  if (format == ImportFormat::csv)
    arguments.flag("--decimal-comma", tr("Commas are decimal"), options->hasDecimalCommas);
  if (format == ImportFormat::calculix) {
    arguments.option("--step", "N", Count::atMostOne,
                     tr("Step of the solver whose values are imported, or all; goes before the map"),
                     [&steps = options->steps](std::string const& text) { steps = stepsOf(text); },
                     {.names = {"all"}});
  }
  addFormat<ListedHistories>(arguments, s_historyFormats, options->output);
  addOutputFile(arguments, options->output.file);
  return [options] { return importOrDescribe<format>(*options); };
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
