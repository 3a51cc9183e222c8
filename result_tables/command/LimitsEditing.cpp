#include "result_tables/command/LimitsEditing.h"

#include <algorithm>
#include <charconv>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/command/CommonOptions.h"
#include "result_tables/limits/LimitType.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsDocument.h"
#include "result_tables/limits/LimitsText.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;
using Units = std::vector<ResultsUnit const*>;

/// What all of them take.
struct EditOptions {
  std::string results;
  std::vector<std::string> units;
  std::string limits;
};

void addEdit(Arguments& arguments, EditOptions& options) {
  addResults(arguments, options.results);
  addLimits(arguments, options.limits, tr("Limits document; RESULTS.limits when it is not named"));
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

// ---- set

struct SetOptions : EditOptions {
  bool all = false;
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

ExitCode set(SetOptions const& options) {
  if (options.all && !options.units.empty())
    throw Error(tr("--all: expected no --unit beside it, found {}", quote(options.units.front())));
  if (!options.all && options.units.empty())
    throw Error(tr("{} (--help says more)", tr("{} is required", tr("{} or {}", "--unit", "--all"))));
  return edit(options, [&](auto& limits, auto const&, Units const& units) {
    setLimits(limits, units, options.type, options.value);
  });
}

}  // namespace

Run declareSetLimits(Arguments& arguments) {
  auto const options = std::make_shared<SetOptions>();
  addEdit(arguments, *options);
  addUnits(arguments, options->units);
  arguments.flag("--all", tr("All units; this or --unit is needed"), options->all);
  arguments.option(
      "--type", "T", Count::one, tr("Kind of limit by its name or number"),
      [options = options.get()](std::string const& text) { options->type = limitTypeFromText(text); },
      {.names = {s_limitTypeNames.begin(), s_limitTypeNames.end()}});
  arguments.option(
      "--value", "V", Count::one, tr("The limit: a number, which may be negative, inf or nan"),
      [options = options.get()](std::string const& text) { options->value = limitFromText(text); });
  arguments.addHelp(kindsSection());
  return [options] { return set(*options); };
}

Run declareResetLimits(Arguments& arguments) {
  auto const options = std::make_shared<EditOptions>();
  addEdit(arguments, *options);
  addUnits(arguments, options->units);
  return [options] { return edit(*options, resetLimits); };
}

Run declareSyncLimits(Arguments& arguments) {
  auto const options = std::make_shared<EditOptions>();
  addEdit(arguments, *options);
  return [options] { return edit(*options, [](auto&, auto const&, Units const&) {}); };
}

// ---- import

namespace {

struct TextImportOptions : EditOptions {
  std::string text;
};

ExitCode importText(TextImportOptions const& options) {
  auto const document = documentOf(options);
  auto const file = readResultsFile(options.results);
  auto const text = readLimitsText(nameOfInput(options.text), readInput(options.text).text());
  checkForImport(text, file);
  editLimits(document, file, [&](TablePropertiesData& limits) { importLimits(text, file, limits); });
  return ExitCode::nothingFound;
}

}  // namespace

Run declareImportLimits(Arguments& arguments) {
  auto const options = std::make_shared<TextImportOptions>();
  addEdit(arguments, *options);
  arguments.operand("TEXT", Count::one, tr("Text of limits; - is standard input"), into(options->text));
  return [options] { return importText(*options); };
}

}  // namespace Kestrel::ResultTables
