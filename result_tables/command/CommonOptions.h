#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Translate.h"
#include "result_tables/command/Arguments.h"
#include "result_tables/render/Formats.h"
#include "result_tables/results/ResultsFile.h"
#include "result_tables/tables/ResultTable.h"

// What several commands take is declared here, so that it has the same name and meaning everywhere.

namespace Kestrel::ResultTables {

/// RESULTS
void addResults(Arguments& arguments, std::string& results);
void addResults(Arguments& arguments, std::vector<std::string>& results);

/// --unit
void addUnits(Arguments& arguments, std::vector<std::string>& units,
              Arguments::Count count = Arguments::Count::any);

/// --unit, --family, --teaching
void addSelection(Arguments& arguments, TableSelection& selection);

/// --limits, where the document of RESULTS is meant when none is named
void addLimits(Arguments& arguments, std::string& document);
/// The same with a meaning of its own.
void addLimits(Arguments& arguments, std::string& document, std::string const& help);

/// The limits that results are compared with: those of the document, which must exist when it is named. Not
/// named, it is the one beside the results or, where there is none, the defaults.
[[nodiscard]] std::shared_ptr<TablePropertiesData> limitsFor(std::string const& results,
                                                             std::string const& document,
                                                             ResultsFile const& file);

/// --output
void addOutputFile(Arguments& arguments, std::string& file);

/// What standard output can show.
[[nodiscard]] TextStyle styleOfStandardOutput();

/// Where and in which form a command puts out what it has made.
template <typename Subject>
struct Output {
  Format<Subject> const* format = nullptr;
  std::string file;  ///< empty or "-": standard output
};

[[noreturn]] void refuseName(std::string_view option, std::vector<std::string_view> const& known,
                             std::string const& found);

/// The row of that name. An unknown name is an `Error` that names the option and the rows that there are.
template <typename Rows>
auto const& rowNamed(std::string_view option, Rows const& rows, std::string const& name) {
  std::vector<std::string_view> known;
  for (auto const& row : rows) {
    if (row.name == name) return row;
    known.push_back(row.name);
  }
  refuseName(option, known, name);
}

/// --format; `formats` are all that there are.
template <typename Subject>
void addFormat(Arguments& arguments, std::span<Format<Subject> const> formats, Output<Subject>& output) {
  std::vector<std::string_view> names;
  for (auto const& format : formats) names.push_back(format.name);
  output.format = &formats.front();
  arguments.option(
      "--format", "F", Arguments::Count::atMostOne,
      tr("Form of the output: {}; {} when it is not named", listOf(names), names.front()),
      [&output, formats](std::string const& name) { output.format = &rowNamed("--format", formats, name); });
}

template <typename Subject>
void write(Output<Subject> const& output, Subject const& subject) {
  auto const style = goesToStandardOutput(output.file) ? styleOfStandardOutput() : TextStyle();
  writeOutput(output.file, output.format->render(subject, style));
}

}  // namespace Kestrel::ResultTables
