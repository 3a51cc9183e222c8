#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Translate.h"
#include "result_tables/command/Arguments.h"
#include "result_tables/limits/NamedLimits.h"
#include "result_tables/render/Formats.h"
#include "result_tables/results/ResultsFile.h"
#include "result_tables/tables/Differences.h"
#include "result_tables/tables/ResultTable.h"

// What several commands take is declared here, so that it has the same name and meaning everywhere.

namespace Kestrel::ResultTables {

/// RESULTS
void addResults(Arguments& arguments, std::string& results);
void addResults(Arguments& arguments, std::vector<std::string>& results);

/// DATABASE of the commands that ask or change a study
void addStudyName(Arguments& arguments, std::string& database);

/// --unit
void addUnits(Arguments& arguments, std::vector<std::string>& units,
              Arguments::Count count = Arguments::Count::any);

/// --unit, --family, --teaching
void addSelection(Arguments& arguments, TableSelection& selection);

/// --family of a command that takes one
void addFamily(Arguments& arguments, MaxValueGroupContainer::DataType& family);

/// --abs, --rel
void addTolerance(Arguments& arguments, Tolerance& tolerance);

/// --limits of a command that only reads, where the document of RESULTS is meant when none is named
void addLimits(Arguments& arguments, std::string& document);
/// The same with a meaning of its own.
void addLimits(Arguments& arguments, std::string& document, std::string const& help);

/// A whole number from 1 to `greatest`; anything else is an `Error` that names the option.
[[nodiscard]] std::size_t countFromText(std::string_view option, std::string const& text,
                                        std::size_t greatest);

/// --output
void addOutputFile(Arguments& arguments, std::string& file);

/// Whether text is coloured.
enum class Colour { automatic, always, never };

/// What the user asks for, with what standard output can show where `file` stands for it.
[[nodiscard]] TextStyle styleFor(std::string const& file, Colour colour, TextStyle style);

/// Where and in which form a command puts out what it has made.
template <typename Subject>
struct Output {
  Format<Subject> const* format = nullptr;
  bool isFormatNamed = false;
  std::string file;  ///< empty or "-": standard output
  Colour colour = Colour::automatic;
  TextStyle style;  ///< what is asked for; colour and width follow from where it goes

  /// The style for the place where the output goes.
  [[nodiscard]] TextStyle styleThere() const { return styleFor(file, colour, style); }
};

/// --digits, --colour
void addTextStyle(Arguments& arguments, TextStyle& style, Colour& colour);
/// --curves
void addCurves(Arguments& arguments, TextStyle& style);
/// --when
void addWhen(Arguments& arguments, TextStyle& style);

/// An option whose value is the name of one of `rows`, which outlive the arguments; `take` gets the row.
template <typename Rows, typename TakeRow>
void addChoice(Arguments& arguments, std::string const& name, std::string const& valueName,
               Arguments::Count count, std::string const& help, Rows const& rows, TakeRow take) {
  Offer offer;
  for (auto const& row : rows) offer.names.push_back(row.name);
  arguments.option(
      name, valueName, count, help,
      [name, rows = std::span(rows), take = std::move(take)](std::string const& text) {
        take(rowNamed(name, rows, text));
      },
      std::move(offer));
}

/// --format; `formats` are all that there are.
template <typename Subject>
void addFormat(Arguments& arguments, std::span<Format<Subject> const> formats, Output<Subject>& output) {
  std::vector<std::string_view> names;
  for (auto const& format : formats) names.push_back(format.name);
  output.format = &formats.front();
  addChoice(arguments, "--format", "F", Arguments::Count::atMostOne,
            tr("Form of the output: {}; {} when it is not named", listOf(names), names.front()), formats,
            [&output](Format<Subject> const& format) {
              output.format = &format;
              output.isFormatNamed = true;
            });
}

/// --csv, which stands for --format csv as well. REQUIRES: declared after --format, of which "csv" is one.
template <typename Subject>
void addCsv(Arguments& arguments, Output<Subject>& output) {
  addChoice(arguments, "--csv", "DIALECT", Arguments::Count::atMostOne,
            tr("Form csv with commas and decimal points (plain) or semicolons and decimal commas "
               "(excel-de)"),
            s_csvDialects<Subject>, [&output](Format<Subject> const& dialect) {
              if (output.isFormatNamed && output.format->name != "csv") {
                throw Error(tr("--csv: expected the form csv, found {}", output.format->name));
              }
              output.format = &dialect;
            });
}

/// All that says how tables are put out.
void addTables(Arguments& arguments, Output<Tables>& output);

/// What is no text on a terminal is an `Error`.
void refuseTerminal(std::string_view format, std::string const& file);

template <typename Subject>
void write(Output<Subject> const& output, Subject const& subject) {
  if (output.format->isBinary) refuseTerminal(output.format->name, output.file);
  writeOutput(output.file, output.format->render(subject, output.styleThere()));
}

}  // namespace Kestrel::ResultTables
