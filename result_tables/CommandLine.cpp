#include "result_tables/CommandLine.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/Error.h"
#include "result_tables/Family.h"
#include "result_tables/File.h"
#include "result_tables/Findings.h"
#include "result_tables/ResultTable.h"
#include "result_tables/ResultsFile.h"
#include "result_tables/Sample.h"
#include "result_tables/Text.h"
#include "result_tables/Translate.h"
#include "result_tables/import/Import.h"
#include "result_tables/render/CsvTables.h"
#include "result_tables/render/JsonTables.h"
#include "result_tables/render/RenderFindings.h"
#include "result_tables/render/TextTables.h"

namespace Kestrel::ResultTables {

namespace {

/// The options of all commands; each command reads those that it has declared.
struct Options {
  std::string file;
  std::vector<std::string> files;
  std::vector<std::string> units;
  std::vector<std::string> families;
  bool teaching = false;
  std::string format = "text";
  std::string output;
  std::string input;
  std::string map;
};

void printMessage(std::string_view message) { fmt::print(stderr, "result-tables: {}\n", message); }

void write(std::string const& output, std::string_view text) {
  if (output.empty()) {
    writeToStandardOutput(text);
  } else {
    writeFile(output, text);
  }
}

bool mayUseColour(Options const& options) {
  auto const* const noColour = std::getenv("NO_COLOR");
  return options.output.empty() && (noColour == nullptr || *noColour == '\0') && ::isatty(STDOUT_FILENO) != 0;
}

MaxValueGroupContainer::DataType familyFromName(std::string const& name) {
  std::string known;
  for (auto const& family : s_families) {
    if (name == family.name) return family.dataType;
    known += (known.empty() ? "" : ", ") + std::string(family.name);
  }
  throw Error(fmt::format("--family: expected one of {}, found {}", known, quote(name)));
}

TableSelection selectionOf(Options const& options) {
  TableSelection selection{options.units, {}, options.teaching};
  for (auto const& name : options.families) selection.families.push_back(familyFromName(name));
  return selection;
}

/// Limits in step with the units of the file, all at their defaults.
std::shared_ptr<TablePropertiesData> genDefaultLimits(ResultsFile const& file) {
  auto limits = std::make_shared<TablePropertiesData>();
  std::vector<SimulationUnitId> ids;
  for (auto const& unit : file.units) ids.push_back(unit.unit->getID());
  limits->updateLimits(ids);
  return limits;
}

ExitCode show(ResultsFile const& file, std::string const& fileName, Options const& options) {
  auto const tables = genResultTables(file, fileName, selectionOf(options), *genDefaultLimits(file));
  write(options.output, options.format == "json"  ? renderJson(tables)
                        : options.format == "csv" ? renderCsv(tables)
                                                  : renderText(tables, mayUseColour(options)));
  return ExitCode::nothingFound;
}

FileFindings checkFile(std::string const& results, TableSelection const& selection) {
  FileFindings found{results, {}, std::nullopt};
  try {
    auto const file = readResultsFile(results);
    for (auto const& table : genResultTables(file, results, selection, *genDefaultLimits(file)))
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

ExitCode check(Options const& options) {
  auto const selection = selectionOf(options);
  auto exitCode = ExitCode::nothingFound;
  std::vector<FileFindings> files;
  for (auto const& results : options.files) {
    files.push_back(checkFile(results, selection));
    exitCode = std::max(exitCode, exitCodeOf(files.back()));
  }
  writeToStandardOutput(options.format == "json"    ? renderFindingsAsJson(files)
                        : options.format == "junit" ? renderFindingsAsJunit(files)
                                                    : renderFindingsAsText(files, mayUseColour(options)));
  return exitCode;
}

void addFormat(CLI::App& command, Options& options, std::vector<std::string> const& formats) {
  command.add_option("--format", options.format, tr("Form of the output"))
      ->check(CLI::IsMember(formats))
      ->capture_default_str();
}

void addOutput(CLI::App& command, Options& options) {
  command
      .add_option("--output", options.output,
                  tr("File to write whole or not at all, in place of standard output"))
      ->type_name("FILE");
}

void addSelection(CLI::App& command, Options& options) {
  command.add_option("--unit", options.units, tr("Only the units with this id or name; can be repeated"))
      ->type_name("U")
      ->allow_extra_args(false);
  command
      .add_option("--family", options.families,
                  tr("Only this family of elements, Clamps for example; can be repeated"))
      ->type_name("F")
      ->allow_extra_args(false);
  command.add_flag("--teaching", options.teaching, tr("Clamps and bolts with their teaching offsets"));
}

void addShow(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand("show", tr("Show the tables of a results file"));
  command.add_option("RESULTS", options.file, tr("Results file"))->required();
  addSelection(command, options);
  addFormat(command, options, {"text", "csv", "json"});
  addOutput(command, options);
  command.final_callback([&] { exitCode = show(readResultsFile(options.file), options.file, options); });
}

void addCheck(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand(
      "check", tr("List values beyond their limits and failed joins; exits with 1 if any"));
  command.add_option("RESULTS", options.files, tr("Results files"))->required()->expected(1, -1);
  addSelection(command, options);
  addFormat(command, options, {"text", "json", "junit"});
  command.final_callback([&] { exitCode = check(options); });
}

void addDemo(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand("demo", tr("Show the tables of the built-in sample; no file needed"));
  addSelection(command, options);
  addFormat(command, options, {"text", "csv", "json"});
  addOutput(command, options);
  command.final_callback([&] { exitCode = show(readSample(), "built-in sample", options); });
}

void addImport(CLI::App& app, Options& options) {
  auto& command = *app.add_subcommand("import", tr("Make a results file out of a solver's histories"));
  command.require_subcommand(1);
  struct Source {
    char const* name;
    std::string description;
    ImportFormat format;
  };
  for (auto const& source :
       {Source{"calculix", tr("Histories that CalculiX printed (.dat)"), ImportFormat::calculix},
        Source{"csv", tr("Histories as comma-separated values, long or wide"), ImportFormat::csv}}) {
    auto& from = *command.add_subcommand(source.name, source.description);
    from.add_option("INPUT", options.input, tr("File with the histories"))->required();
    from.add_option("--map", options.map, tr("File that says what the histories feed"))
        ->required()
        ->type_name("MAP");
    addOutput(from, options);
    from.final_callback([&options, format = source.format] {
      write(options.output, importHistories(format, options.input, options.map));
    });
  }
}

ExitCode fail(std::string_view message) {
  printMessage(message);
  return ExitCode::failed;
}

}  // namespace

ExitCode runCommandLine(int argc, char const* const* argv) {
  Options options;
  auto exitCode = ExitCode::nothingFound;
  CLI::App app(tr("Result tables of a sheet-metal forming and body-assembly simulation"), "result-tables");
  app.set_version_flag("--version", "result-tables " RESULT_TABLES_VERSION);
  app.require_subcommand(1);
  addShow(app, options, exitCode);
  addCheck(app, options, exitCode);
  addDemo(app, options, exitCode);
  addImport(app, options);
  try {
    app.parse(argc, argv);
    return exitCode;
  } catch (CLI::Success const& asked) {
    app.exit(asked);
    return ExitCode::nothingFound;
  } catch (CLI::ParseError const& wrong) {
    return fail(toPrintable(wrong.what()) + " (--help says more)");
  } catch (std::exception const& error) {
    return fail(error.what());
  }
}

}  // namespace Kestrel::ResultTables
