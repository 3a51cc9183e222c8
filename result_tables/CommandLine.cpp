#include "result_tables/CommandLine.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "result_tables/Error.h"
#include "result_tables/Family.h"
#include "result_tables/File.h"
#include "result_tables/ResultTable.h"
#include "result_tables/ResultsFile.h"
#include "result_tables/Sample.h"
#include "result_tables/Text.h"
#include "result_tables/import/Import.h"
#include "result_tables/render/JsonTables.h"
#include "result_tables/render/TextTables.h"

namespace Kestrel::ResultTables {

namespace {

/// The options of all commands; each command reads those that it has declared.
struct Options {
  std::string results;
  std::vector<std::string> units;
  std::vector<std::string> families;
  bool teaching = false;
  std::string format = "text";
  std::string output;
  std::string input;
  std::string map;
};

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

ExitCode show(ResultsFile const& file, std::string const& fileName, Options const& options) {
  auto const tables = genResultTables(file, fileName, selectionOf(options));
  write(options.output,
        options.format == "json" ? renderJson(tables) : renderText(tables, mayUseColour(options)));
  return ExitCode::nothingFound;
}

void addFormat(CLI::App& command, Options& options, std::vector<std::string> const& formats) {
  command.add_option("--format", options.format, "Form of the output")
      ->check(CLI::IsMember(formats))
      ->capture_default_str();
}

void addOutput(CLI::App& command, Options& options) {
  command
      .add_option("--output", options.output,
                  "File to write whole or not at all, in place of standard output")
      ->type_name("FILE");
}

void addSelection(CLI::App& command, Options& options) {
  command.add_option("--unit", options.units, "Only the units with this id or name; can be repeated")
      ->type_name("U")
      ->allow_extra_args(false);
  command
      .add_option("--family", options.families,
                  "Only this family of elements, Clamps for example; can be repeated")
      ->type_name("F")
      ->allow_extra_args(false);
  command.add_flag("--teaching", options.teaching, "Clamps and bolts with their teaching offsets");
}

void addShow(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand("show", "Show the tables of a results file");
  command.add_option("RESULTS", options.results, "Results file")->required();
  addSelection(command, options);
  addFormat(command, options, {"text", "json"});
  addOutput(command, options);
  command.final_callback(
      [&] { exitCode = show(readResultsFile(options.results), options.results, options); });
}

void addDemo(CLI::App& app, Options& options, ExitCode& exitCode) {
  auto& command = *app.add_subcommand("demo", "Show the tables of the built-in sample; no file needed");
  addSelection(command, options);
  addFormat(command, options, {"text", "json"});
  addOutput(command, options);
  command.final_callback([&] { exitCode = show(readSample(), "built-in sample", options); });
}

void addImport(CLI::App& app, Options& options) {
  auto& command = *app.add_subcommand("import", "Make a results file out of a solver's histories");
  command.require_subcommand(1);
  struct Source {
    char const* name;
    char const* description;
    ImportFormat format;
  };
  for (auto const& source :
       {Source{"calculix", "Histories that CalculiX printed (.dat)", ImportFormat::calculix},
        Source{"csv", "Histories as comma-separated values, long or wide", ImportFormat::csv}}) {
    auto& from = *command.add_subcommand(source.name, source.description);
    from.add_option("INPUT", options.input, "File with the histories")->required();
    from.add_option("--map", options.map, "File that says what the histories feed")
        ->required()
        ->type_name("MAP");
    addOutput(from, options);
    from.final_callback([&options, format = source.format] {
      write(options.output, importHistories(format, options.input, options.map));
    });
  }
}

ExitCode fail(std::string_view message) {
  fmt::print(stderr, "result-tables: {}\n", message);
  return ExitCode::failed;
}

}  // namespace

ExitCode runCommandLine(int argc, char const* const* argv) {
  Options options;
  auto exitCode = ExitCode::nothingFound;
  CLI::App app("Result tables of a sheet-metal forming and body-assembly simulation", "result-tables");
  app.set_version_flag("--version", "result-tables " RESULT_TABLES_VERSION);
  app.require_subcommand(1);
  addShow(app, options, exitCode);
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
