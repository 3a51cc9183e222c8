#include "result_tables/command/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Terminal.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/Import.h"
#include "result_tables/limits/LimitType.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsDocument.h"
#include "result_tables/render/CsvTables.h"
#include "result_tables/render/JsonTables.h"
#include "result_tables/render/RenderArchive.h"
#include "result_tables/render/RenderFindings.h"
#include "result_tables/render/RenderLimits.h"
#include "result_tables/render/TextTables.h"
#include "result_tables/results/ResultsFile.h"
#include "result_tables/results/Sample.h"
#include "result_tables/results/UnitSelection.h"
#include "result_tables/tables/Family.h"
#include "result_tables/tables/Findings.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

namespace {

/// The options of all commands; each command reads those that it has declared.
struct Options {
  std::string file;
  std::vector<std::string> files;
  std::vector<std::string> units;
  std::vector<std::string> families;
  bool teaching = false;
  std::string limits;
  std::string type;
  std::string value;
  std::string format = "text";
  std::string output;
  std::string input;
  std::string map;
};

void printMessage(std::string_view message) { fmt::print(stderr, "result-tables: {}\n", message); }

TextStyle styleOf(Options const& options) {
  if (!goesToStandardOutput(options.output)) return {};
  return {.colour = terminalHasColour(), .width = terminalWidth()};
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

std::filesystem::path limitsDocument(Options const& options, std::string const& results) {
  return options.limits.empty() ? limitsDocumentOf(results) : std::filesystem::path(options.limits);
}

ExitCode show(ResultsFile const& file, std::string const& fileName, TablePropertiesData const& limits,
              Options const& options) {
  auto const tables = genResultTables(file, fileName, selectionOf(options), limits);
  writeOutput(options.output, options.format == "json"  ? renderJson(tables)
                              : options.format == "csv" ? renderCsv(tables)
                                                        : renderText(tables, styleOf(options)));
  return ExitCode::nothingFound;
}

ExitCode showFile(Options const& options) {
  auto const file = readResultsFile(options.file);
  return show(file, options.file, *readLimits(limitsDocument(options, options.file), file), options);
}

ExitCode showSample(Options const& options) {
  auto const sample = readSample();
  auto const limits = options.limits.empty() ? genDefaultLimits(sample) : readLimits(options.limits, sample);
  return show(sample, "built-in sample", *limits, options);
}

FileFindings checkFile(std::string const& results, TableSelection const& selection, Options const& options) {
  FileFindings found{results, {}, std::nullopt};
  try {
    auto const file = readResultsFile(results);
    auto const limits = readLimits(limitsDocument(options, results), file);
    for (auto const& table : genResultTables(file, results, selection, *limits))
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
  if (!options.limits.empty() && options.files.size() > 1) {
    throw Error(fmt::format("--limits: expected one results file, as each has its own limits, found {}",
                            options.files.size()));
  }
  auto const selection = selectionOf(options);
  auto exitCode = ExitCode::nothingFound;
  std::vector<FileFindings> files;
  for (auto const& results : options.files) {
    files.push_back(checkFile(results, selection, options));
    exitCode = std::max(exitCode, exitCodeOf(files.back()));
  }
  writeToStandardOutput(options.format == "json"    ? renderFindingsAsJson(files)
                        : options.format == "junit" ? renderFindingsAsJunit(files)
                                                    : renderFindingsAsText(files, styleOf(options)));
  return exitCode;
}

TablePropertyLimitType limitTypeFromText(std::string const& text) {
  constexpr auto known = s_limitTypeNames.size();
  auto const name = std::find(s_limitTypeNames.begin(), s_limitTypeNames.end(), text);
  auto number = static_cast<std::size_t>(name - s_limitTypeNames.begin());
  auto const* const end = text.data() + text.size();
  if (number == known && std::from_chars(text.data(), end, number).ptr != end) number = known;
  if (number >= known) {
    throw Error(fmt::format("--type: expected a number from 0 to {} or one of {}, found {}", known - 1,
                            fmt::join(s_limitTypeNames, ", "), quote(text)));
  }
  return static_cast<TablePropertyLimitType>(number);
}

double limitFromText(std::string const& text) {
  auto const number = numberFromText(text);
  if (!number) throw Error(fmt::format("--value: expected a number, found {}", quote(text)));
  return *number;
}

void showLimits(Options const& options) {
  auto const file = readResultsFile(options.file);
  auto const units = selectUnits(file, options.file, options.units);
  auto const limits = listLimits(*readLimits(limitsDocument(options, options.file), file), file, units);
  writeToStandardOutput(options.format == "json" ? renderLimitsAsJson(limits)
                                                 : renderLimitsAsText(limits, styleOf(options)));
}

using LimitsChange = std::function<void(TablePropertiesData& limits, ResultsFile const& file,
                                        std::vector<ResultsUnit const*> const& units)>;

/// Changes the limits document of the options' file; `change` gets the options' units.
void editDocument(Options const& options, LimitsChange const& change) {
  auto const file = readResultsFile(options.file);
  auto const units = selectUnits(file, options.file, options.units);
  editLimits(limitsDocument(options, options.file), file,
             [&](TablePropertiesData& limits) { change(limits, file, units); });
}

void setLimit(Options const& options) {
  auto const type = limitTypeFromText(options.type);
  auto const value = limitFromText(options.value);
  editDocument(options,
               [&](auto& limits, auto const&, auto const& units) { setLimits(limits, units, type, value); });
}

void dumpArchive(std::string const& fileName) {
  auto const listing = genArchiveListing(readInput(fileName));
  writeToStandardOutput(renderArchive(listing));
  if (!listing.damage.empty())
    throw Error(fmt::format("{}: {}", toPrintable(nameOfInput(fileName)), toPrintable(listing.damage)));
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

void addResults(CLI::App& command, Options& options) {
  command.add_option("RESULTS", options.file, tr("Results file"))->required();
}

CLI::Option& addUnits(CLI::App& command, Options& options) {
  return *command
              .add_option("--unit", options.units, tr("Only the units with this id or name; can be repeated"))
              ->type_name("U")
              ->allow_extra_args(false);
}

void addLimits(CLI::App& command, Options& options, std::string const& description) {
  auto const isNamed = [](std::string const& name) {
    return name.empty() ? std::string("expected the name of a file, found nothing") : std::string();
  };
  command.add_option("--limits", options.limits, description)->type_name("FILE")->check(isNamed, "");
}

std::string besideTheResults() { return tr("Limits document; RESULTS.limits when it is not named"); }

void addSelection(CLI::App& command, Options& options) {
  addUnits(command, options);
  command
      .add_option("--family", options.families,
                  tr("Only this family of elements, Clamps for example; can be repeated"))
      ->type_name("F")
      ->allow_extra_args(false);
  command.add_flag("--teaching", options.teaching, tr("Clamps and bolts with their teaching offsets"));
}

void addShow(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand("show", tr("Show the tables of a results file"));
  addResults(command, options);
  addSelection(command, options);
  addLimits(command, options, besideTheResults());
  addFormat(command, options, {"text", "csv", "json"});
  addOutput(command, options);
  command.final_callback([&] { exitCode = showFile(options); });
}

void addCheck(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand(
      "check", tr("List values beyond their limits and failed joins; exits with 1 if any"));
  command.add_option("RESULTS", options.files, tr("Results files"))->required()->expected(1, -1);
  addSelection(command, options);
  addLimits(command, options, besideTheResults());
  addFormat(command, options, {"text", "json", "junit"});
  command.final_callback([&] { exitCode = check(options); });
}

void addDemo(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand("demo", tr("Show the tables of the built-in sample; no file needed"));
  addSelection(command, options);
  addLimits(command, options, tr("Limits document; the default limits when it is not named"));
  addFormat(command, options, {"text", "csv", "json"});
  addOutput(command, options);
  command.final_callback([&] { exitCode = showSample(options); });
}

/// A command that changes the limits document.
CLI::App& addEdit(CLI::App& limits, Options& options, std::string const& name, std::string const& description,
                  std::function<void()> const& edit) {
  auto& command = *limits.add_subcommand(name, description);
  addResults(command, options);
  addLimits(command, options, besideTheResults());
  command.final_callback(edit);
  return command;
}

void addLimitsEdits(CLI::App& limits, Options& options) {
  auto& set = addEdit(limits, options, "set", tr("Set a limit of one kind"), [&] { setLimit(options); });
  addUnits(set, options).required();
  set.add_option("--type", options.type,
                 tr("Kind of limit by its name, BoltNormalForce for example, or number"))
      ->required()
      ->type_name("T");
  set.add_option("--value", options.value, tr("The limit: a number, which may be negative, inf or nan"))
      ->required()
      ->type_name("V");

  auto& reset = addEdit(limits, options, "reset", tr("Put the limits back to their defaults"),
                        [&] { editDocument(options, resetLimits); });
  addUnits(reset, options);

  addEdit(limits, options, "sync", tr("Write the limits in step with the units of the results file"),
          [&] { editDocument(options, [](auto&, auto const&, auto const&) {}); });
}

void addLimitsCommands(CLI::App& app, Options& options) {
  auto& limits = *app.add_subcommand("limits", tr("Show and change the limits of a results file"));
  limits.require_subcommand(1);

  auto& list = *limits.add_subcommand("list", tr("List the limits"));
  addResults(list, options);
  addUnits(list, options);
  addLimits(list, options, besideTheResults());
  addFormat(list, options, {"text", "json"});
  list.final_callback([&] { showLimits(options); });

  addLimitsEdits(limits, options);

  auto& dump =
      *limits.add_subcommand("dump", tr("Show the records of a limits document, also of a damaged one"));
  dump.add_option("FILE", options.file, tr("Limits document"))->required();
  dump.final_callback([&] { dumpArchive(options.file); });
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
      writeOutput(options.output, importHistories(format, options.input, options.map));
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
  addLimitsCommands(app, options);
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
