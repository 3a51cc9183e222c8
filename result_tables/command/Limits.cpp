#include "result_tables/command/Limits.h"

#include <algorithm>
#include <charconv>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/limits/LimitType.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsDocument.h"
#include "result_tables/render/RenderArchive.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;
using Units = std::vector<ResultsUnit const*>;

// ---- list

struct ListOptions {
  std::string results;
  std::vector<std::string> units;
  std::string limits;
  Output<ListedLimits> output;
};

ExitCode list(ListOptions const& options) {
  auto const file = readResultsFile(options.results);
  auto const units = selectUnits(file, options.units);
  write(options.output, listLimits(*limitsFor(options.results, options.limits, file), file, units));
  return ExitCode::nothingFound;
}

Run declareList(Arguments& arguments) {
  auto const options = std::make_shared<ListOptions>();
  addResults(arguments, options->results);
  addUnits(arguments, options->units);
  addLimits(arguments, options->limits);
  addFormat<ListedLimits>(arguments, s_limitsFormats, options->output);
  return [options] { return list(*options); };
}

// ---- set, reset, sync

/// What the commands take that change a document.
struct EditOptions {
  std::string results;
  std::vector<std::string> units;
  std::string limits;
};

void addEdit(Arguments& arguments, EditOptions& options) {
  addResults(arguments, options.results);
  addLimits(arguments, options.limits);
}

std::filesystem::path documentOf(EditOptions const& options) {
  if (!options.limits.empty()) return options.limits;
  if (options.results == s_standardStream)
    throw Error(tr("--limits: expected the name of a document, as none stands beside standard input"));
  return limitsDocumentOf(options.results);
}

/// Changes the document; `change` gets its limits, the results and the units that are named.
template <typename Change>
ExitCode edit(EditOptions const& options, Change const& change) {
  auto const document = documentOf(options);
  auto const file = readResultsFile(options.results);
  auto const units = selectUnits(file, options.units);
  editLimits(document, file, [&](TablePropertiesData& limits) { change(limits, file, units); });
  return ExitCode::nothingFound;
}

struct SetOptions : EditOptions {
  TablePropertyLimitType type{};
  double value = 0.0;
};

TablePropertyLimitType limitTypeFromText(std::string const& text) {
  constexpr auto known = s_limitTypeNames.size();
  auto const* const name = std::find(s_limitTypeNames.begin(), s_limitTypeNames.end(), text);
  auto number = static_cast<std::size_t>(name - s_limitTypeNames.begin());
  auto const* const end = text.data() + text.size();
  if (number == known && std::from_chars(text.data(), end, number).ptr != end) number = known;
  if (number >= known) {
    std::vector<std::string_view> const names(s_limitTypeNames.begin(), s_limitTypeNames.end());
    throw Error(tr("--type: expected a number from 0 to {} or one of {}, found {}", known - 1, listOf(names),
                   quote(text)) +
                suggestion(text, names));
  }
  return static_cast<TablePropertyLimitType>(number);
}

double limitFromText(std::string const& text) {
  auto const number = numberFromText(text);
  if (!number) throw Error(tr("--value: expected a number, found {}", quote(text)));
  return *number;
}

HelpSection kindsSection() {
  HelpSection section{tr("Kinds of limits"), {}};
  for (std::size_t number = 0; number < s_limitTypeNames.size(); ++number)
    section.rows.emplace_back(std::to_string(number), s_limitTypeNames[number]);
  return section;
}

Run declareSet(Arguments& arguments) {
  auto const options = std::make_shared<SetOptions>();
  addEdit(arguments, *options);
  addUnits(arguments, options->units, Count::atLeastOne);
  arguments.option(
      "--type", "T", Count::one, tr("Kind of limit by its name or number"),
      [options = options.get()](std::string const& text) { options->type = limitTypeFromText(text); });
  arguments.option(
      "--value", "V", Count::one, tr("The limit: a number, which may be negative, inf or nan"),
      [options = options.get()](std::string const& text) { options->value = limitFromText(text); });
  arguments.addHelp(kindsSection());
  return [options] {
    return edit(*options, [&](auto& limits, auto const&, Units const& units) {
      setLimits(limits, units, options->type, options->value);
    });
  };
}

Run declareReset(Arguments& arguments) {
  auto const options = std::make_shared<EditOptions>();
  addEdit(arguments, *options);
  addUnits(arguments, options->units);
  return [options] { return edit(*options, resetLimits); };
}

Run declareSync(Arguments& arguments) {
  auto const options = std::make_shared<EditOptions>();
  addEdit(arguments, *options);
  return [options] { return edit(*options, [](auto&, auto const&, Units const&) {}); };
}

// ---- dump

ExitCode dump(std::string const& document) {
  auto const listing = genArchiveListing(readInput(document));
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
    {"set", [] { return tr("Set a limit of one kind"); }, declareSet},
    {"reset", [] { return tr("Put the limits back to their defaults"); }, declareReset},
    {"sync", [] { return tr("Write the limits in step with the units of the results file"); }, declareSync},
    {"dump", [] { return tr("Show the records of a limits document, also of a damaged one"); }, declareDump},
};

}  // namespace

std::span<Command const> limitsCommands() { return s_limitsCommands; }

}  // namespace Kestrel::ResultTables
