#include "result_tables/command/CommonOptions.h"

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Terminal.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/ToolKind.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsDocument.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

HelpSection familiesSection() {
  HelpSection section{tr("Families"), {}};
  for (auto const& family : s_families) {
    auto const elements = family.toolKind ? tr("tools of the kind {}", toolKindName(*family.toolKind))
                                          : tr("line joins of the visible steps");
    section.rows.emplace_back(family.name, fmt::format("{} ({})", familyTitle(family.dataType), elements));
  }
  return section;
}

}  // namespace

void addResults(Arguments& arguments, std::string& results) {
  arguments.operand("RESULTS", Count::one, tr("Results file; - is standard input"), into(results));
}

void addResults(Arguments& arguments, std::vector<std::string>& results) {
  arguments.operand("RESULTS", Count::atLeastOne, tr("Results files; - is standard input"), into(results));
}

void addUnits(Arguments& arguments, std::vector<std::string>& units, Count count) {
  arguments.option("--unit", "U", count, tr("Only the units with this id or name; can be repeated"),
                   into(units));
}

void addSelection(Arguments& arguments, TableSelection& selection) {
  addUnits(arguments, selection.units);
  arguments.option("--family", "F", Count::any, tr("Only this family of elements; can be repeated"),
                   [&selection](std::string const& name) {
                     selection.families.push_back(rowNamed("--family", s_families, name).dataType);
                   });
  arguments.flag("--teaching", tr("Clamps and bolts with their teaching offsets"), selection.teaching);
  arguments.addHelp(familiesSection());
}

void addLimits(Arguments& arguments, std::string& document) {
  addLimits(arguments, document, tr("Limits document; RESULTS.limits when it is not named"));
}

void addLimits(Arguments& arguments, std::string& document, std::string const& help) {
  arguments.option("--limits", "FILE", Count::atMostOne, help, [&document](std::string const& name) {
    if (name.empty()) throw Error(tr("--limits: expected the name of a file, found nothing"));
    document = name;
  });
}

std::shared_ptr<TablePropertiesData> limitsFor(std::string const& results, std::string const& document,
                                               ResultsFile const& file) {
  if (!document.empty()) return readLimits(document, file);
  return results == s_standardStream ? genDefaultLimits(file)
                                     : readLimitsIfExist(limitsDocumentOf(results), file);
}

void addOutputFile(Arguments& arguments, std::string& file) {
  arguments.option("--output", "FILE", Count::atMostOne,
                   tr("File to write whole or not at all, in place of standard output"), into(file));
}

TextStyle styleOfStandardOutput() { return {.colour = terminalHasColour(), .width = terminalWidth()}; }

void refuseName(std::string_view option, std::vector<std::string_view> const& known,
                std::string const& found) {
  throw Error(tr("{}: expected one of {}, found {}", option, listOf(known), quote(found)) +
              suggestion(found, known));
}

}  // namespace Kestrel::ResultTables
