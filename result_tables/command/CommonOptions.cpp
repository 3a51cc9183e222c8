#include "result_tables/command/CommonOptions.h"

#include <charconv>
#include <cmath>

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Terminal.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/ToolKind.h"

namespace Kestrel::ResultTables {

namespace {

using Count = Arguments::Count;

struct ColourName {
  std::string_view name;
  Colour colour;
};

struct CurvesName {
  std::string_view name;
  Curves curves;
};

constexpr CurvesName s_curves[] = {
    {"none", Curves::none}, {"findings", Curves::findings}, {"all", Curves::all}};

constexpr ColourName s_colours[] = {
    {"auto", Colour::automatic}, {"always", Colour::always}, {"never", Colour::never}};

HelpSection familiesSection() {
  HelpSection section{tr("Families"), {}};
  for (auto const& family : s_families) {
    auto const elements = family.toolKind ? tr("tools of the kind {}", toolKindName(*family.toolKind))
                                          : tr("line joins of the visible steps");
    section.rows.emplace_back(family.name, tr("{} ({})", familyTitle(family.dataType), elements));
  }
  return section;
}

double toleranceFromText(std::string_view option, std::string const& text) {
  auto const number = numberFromText(text);
  if (!number || !std::isfinite(*number) || *number < 0.0)
    throw Error(tr("{}: expected a finite number that is not negative, found {}", option, quote(text)));
  return *number;
}

}  // namespace

void addResults(Arguments& arguments, std::string& results) {
  arguments.operand("RESULTS", Count::one, tr("Results file; - is standard input"), into(results),
                    {Offer::Kind::resultsFiles});
}

void addResults(Arguments& arguments, std::vector<std::string>& results) {
  arguments.operand("RESULTS", Count::atLeastOne, tr("Results files; - is standard input"), into(results),
                    {Offer::Kind::resultsFiles});
}

void addStudyName(Arguments& arguments, std::string& database) {
  arguments.operand("DATABASE", Count::one, tr("Study: a file, or the address postgresql://… of a server"),
                    into(database));
}

void addUnits(Arguments& arguments, std::vector<std::string>& units, Count count) {
  arguments.option("--unit", "U", count, tr("Only the units with this id or name; can be repeated"),
                   into(units), {Offer::Kind::units});
}

void addSelection(Arguments& arguments, TableSelection& selection) {
  addUnits(arguments, selection.units);
  addChoice(arguments, "--family", "F", Count::any, tr("Only this family of elements; can be repeated"),
            s_families,
            [&selection](Family const& family) { selection.families.push_back(family.dataType); });
  arguments.flag("--teaching", tr("Clamps and bolts with their teaching offsets"), selection.teaching);
  arguments.addHelp(familiesSection());
}

void addFamily(Arguments& arguments, MaxValueGroupContainer::DataType& family) {
  addChoice(arguments, "--family", "F", Count::one, tr("The family of the element"), s_families,
            [&family](Family const& row) { family = row.dataType; });
  arguments.addHelp(familiesSection());
}

void addTolerance(Arguments& arguments, Tolerance& tolerance) {
  arguments.option(
      "--abs", "X", Arguments::Count::atMostOne,
      tr("Numbers are the same up to this difference, in the column's unit; 0 when it is not named"),
      [&tolerance](std::string const& text) { tolerance.absolute = toleranceFromText("--abs", text); });
  arguments.option(
      "--rel", "X", Arguments::Count::atMostOne,
      tr("The same as a part of the number in BEFORE, which is added; 0.01 is one percent, 0 when it is not "
         "named"),
      [&tolerance](std::string const& text) { tolerance.relative = toleranceFromText("--rel", text); });
}

void addLimits(Arguments& arguments, std::string& document) {
  addLimits(arguments, document,
            tr("Limits document or text of limits; RESULTS.limits when it is not named"));
}

void addLimits(Arguments& arguments, std::string& document, std::string const& help) {
  arguments.option("--limits", "FILE", Count::atMostOne, help,
                   [&document](std::string const& name) {
                     if (name.empty())
                       throw Error(tr("--limits: expected the name of a file, found nothing"));
                     document = name;
                   },
                   {Offer::Kind::files});
}

void addTables(Arguments& arguments, Output<Tables>& output) {
  addFormat<Tables>(arguments, s_tableFormats, output);
  addCsv(arguments, output);
  addOutputFile(arguments, output.file);
  addTextStyle(arguments, output.style, output.colour);
  addWhen(arguments, output.style);
  addCurves(arguments, output.style);
}

void addOutputFile(Arguments& arguments, std::string& file) {
  arguments.option("--output", "FILE", Count::atMostOne,
                   tr("File to write whole or not at all, in place of standard output"), into(file),
                   {Offer::Kind::files});
}

void refuseTerminal(std::string_view format, std::string const& file) {
  if (!goesToStandardOutput(file) || !standardOutputIsTerminal()) return;
  throw Error(
      tr("--format {}: expected --output with the name of a file, as this is no text, found a terminal",
         format));
}

TextStyle styleFor(std::string const& file, Colour colour, TextStyle style) {
  bool const isShown = goesToStandardOutput(file);
  style.colour = colour == Colour::always || (colour == Colour::automatic && isShown && terminalHasColour());
  style.width = isShown ? terminalWidth() : 0;
  style.height = isShown ? terminalHeight() : 0;
  style.unicode = localeIsUtf8();
  return style;
}

void addTextStyle(Arguments& arguments, TextStyle& style, Colour& colour) {
  arguments.option("--digits", "N", Count::atMostOne,
                   tr("Significant digits of numbers in texts, 1 to 17; 7 when it is not named"),
                   [&style](std::string const& text) {
                     style.digits = static_cast<int>(countFromText("--digits", text, 17));
                   });
  addChoice(arguments, "--colour", "C", Count::atMostOne,
            tr("Colour in texts: {}; {} when it is not named", "auto, always, never", "auto"), s_colours,
            [&colour](ColourName const& row) { colour = row.colour; });
}

void addCurves(Arguments& arguments, TextStyle& style) {
  addChoice(arguments, "--curves", "WHICH", Count::atMostOne,
            tr("Curves in a report: none, those of findings, or all; those of findings and of the 200 "
               "highest utilisations when it is not named"),
            s_curves, [&style](CurvesName const& row) { style.curves = row.curves; });
}

void addWhen(Arguments& arguments, TextStyle& style) {
  arguments.flag("--when", tr("Texts show the time or the step beside each value"), style.when);
}

std::size_t countFromText(std::string_view option, std::string const& text, std::size_t greatest) {
  std::size_t count = 0;
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, count);
  if (result.ec != std::errc() || result.ptr != end || count == 0 || count > greatest)
    throw Error(tr("{}: expected a whole number from 1 to {}, found {}", option, greatest, quote(text)));
  return count;
}

}  // namespace Kestrel::ResultTables
