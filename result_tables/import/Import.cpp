#include "result_tables/import/Import.h"

#include <algorithm>
#include <cmath>

#include "result_tables/base/File.h"
#include "result_tables/import/CalculixHistories.h"
#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/ImportMap.h"
#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

/// Writes the members of a results file in the order in which its documentation shows them.
class ResultsWriter {
 public:
  std::string write(ImportMap const& map);

 private:
  void unit(ImportUnit const& unit);
  void visibleSteps(ImportVisibleSteps const& steps);
  void tool(ImportTool const& tool);
  void numbers(ImportSeries const& series);
  void toolGroupings(ImportUnit const& unit);
  void step(ImportUnit const& unit, std::size_t step);
  void suctionZone(ImportRecord const& record, std::size_t step);
  void record(ImportRecord const& record, std::size_t step, bool hasGuid);
  void lineJoin(ImportRecord const& record, std::size_t step, double time);
  void range(std::vector<ImportFormula> const& formulas, double time);
  void member(std::string_view name, std::string_view text);
  void bound(std::string_view name, double value);
  /// An array under `name` with what `write` writes of each element that the step holds; no array where it
  /// holds none.
  template <typename Write>
  void recordsOfStep(std::string_view name, std::vector<ImportRecord> const& records, std::size_t step,
                     Write const& write);
  template <typename Elements, typename Write>
  void array(std::string_view name, Elements const& elements, Write const& write);

  JsonWriter m_json;
};

std::string ResultsWriter::write(ImportMap const& map) {
  m_json.beginObject();
  member("format", "simulation-results");
  m_json.key("version");
  m_json.integer(1);
  array("units", map.units, [this](ImportUnit const& element) { unit(element); });
  m_json.endObject();
  return m_json.take();
}

void ResultsWriter::member(std::string_view name, std::string_view text) {
  m_json.key(name);
  m_json.string(text);
}

template <typename Elements, typename Write>
void ResultsWriter::array(std::string_view name, Elements const& elements, Write const& write) {
  m_json.key(name);
  m_json.beginArray();
  for (auto const& element : elements) write(element);
  m_json.endArray();
}

void ResultsWriter::unit(ImportUnit const& unit) {
  m_json.beginObject();
  member("id", unit.id.toString());
  member("name", unit.name);
  if (unit.visibleSteps) visibleSteps(*unit.visibleSteps);
  array("tools", unit.tools, [this](ImportTool const& element) { tool(element); });
  if (!unit.joinsDefinedInUnit.empty()) {
    array("joinsDefinedInUnit", unit.joinsDefinedInUnit,
          [this](GUIdentifier const& id) { m_json.string(id.toString()); });
  }
  if (!unit.toolGroupings.empty()) toolGroupings(unit);
  if (!unit.stepTimes.empty()) {
    std::size_t index = 0;
    array("steps", unit.stepTimes, [&](auto const&) { step(unit, index++); });
  }
  m_json.endObject();
}

void ResultsWriter::visibleSteps(ImportVisibleSteps const& steps) {
  m_json.key("visibleSteps");
  m_json.beginObject();
  m_json.key("first");
  m_json.integer(steps.first);
  m_json.key("last");
  m_json.integer(steps.last);
  m_json.endObject();
}

void ResultsWriter::tool(ImportTool const& tool) {
  m_json.beginObject();
  member("id", tool.id);
  member("kind", tool.kind);
  array("series", tool.series, [this](ImportSeries const& series) {
    m_json.beginObject();
    member("quantity", series.quantity);
    numbers(series);
    m_json.endObject();
  });
  if (tool.tangentialForce) {
    m_json.key("tangentialForce");
    m_json.beginObject();
    numbers(*tool.tangentialForce);
    m_json.endObject();
  }
  m_json.endObject();
}

void ResultsWriter::numbers(ImportSeries const& series) {
  auto const& times = series.formula.times();
  m_json.key(series.isPairs ? "pairs" : "values");
  if (!series.isPairs) {
    m_json.beginInlineArray();
    for (std::size_t i = 0; i < times.size(); ++i) m_json.number(series.formula.at(i));
    m_json.endInlineArray();
    return;
  }
  m_json.beginArray();
  for (std::size_t i = 0; i < times.size(); ++i) {
    m_json.beginInlineArray();
    m_json.number(series.formula.at(i));
    m_json.number(times[i]);
    m_json.endInlineArray();
  }
  m_json.endArray();
}

void ResultsWriter::toolGroupings(ImportUnit const& unit) {
  m_json.key("toolGroupings");
  m_json.beginObject();
  for (auto const& [family, groups] : unit.toolGroupings) {
    array(family, groups, [this](auto const& group) {
      m_json.beginObject();
      member("name", group.first);
      array("tools", group.second, [this](std::string const& tool) { m_json.string(tool); });
      m_json.endObject();
    });
  }
  m_json.endObject();
}

template <typename Write>
void ResultsWriter::recordsOfStep(std::string_view name, std::vector<ImportRecord> const& records,
                                  std::size_t step, Write const& write) {
  auto const isHeld = [step](ImportRecord const& record) { return record.states[step].has_value(); };
  if (std::none_of(records.begin(), records.end(), isHeld)) return;
  array(name, records, [&](ImportRecord const& element) {
    if (!isHeld(element)) return;
    m_json.beginObject();
    write(element);
    m_json.endObject();
  });
}

void ResultsWriter::step(ImportUnit const& unit, std::size_t step) {
  auto const time = unit.stepTimes[step];
  if (!time) return m_json.null();
  m_json.beginObject();
  recordsOfStep("suctionZones", unit.suctionZones, step,
                [this, step](ImportRecord const& zone) { suctionZone(zone, step); });
  recordsOfStep("joiningTongs", unit.joiningTongs, step,
                [this, step](ImportRecord const& tong) { record(tong, step, false); });
  recordsOfStep("joins", unit.joins, step,
                [this, step](ImportRecord const& join) { record(join, step, true); });
  recordsOfStep("lineJoins", unit.lineJoins, step,
                [&](ImportRecord const& join) { lineJoin(join, step, *time); });
  m_json.endObject();
}

void ResultsWriter::suctionZone(ImportRecord const& record, std::size_t step) {
  member("guid", record.guid.toString());
  member("name", record.name);
  m_json.key("active");
  m_json.boolean(*record.states[step] != 0);
}

void ResultsWriter::record(ImportRecord const& record, std::size_t step, bool hasGuid) {
  if (hasGuid) member("guid", record.guid.toString());
  member("id", record.id);
  member("name", record.name);
  m_json.key("state");
  m_json.integer(*record.states[step]);
}

void ResultsWriter::lineJoin(ImportRecord const& lineJoin, std::size_t step, double time) {
  record(lineJoin, step, true);
  member("simulationUnitJoin", lineJoin.simulationUnitJoin.toString());
  if (lineJoin.skins.empty()) return;
  m_json.key("skins");
  m_json.beginObject();
  for (auto const& [name, formulas] : lineJoin.skins) {
    m_json.key(name);
    range(formulas, time);
  }
  m_json.endObject();
}

/// A range is of finite numbers; where a solver has diverged there is none.
void ResultsWriter::range(std::vector<ImportFormula> const& formulas, double time) {
  std::vector<double> values;
  values.reserve(formulas.size());
  for (auto const& formula : formulas) values.push_back(formula.at(*formula.indexOf(time)));
  bool const isFinite =
      std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
  auto const [smallest, largest] = std::minmax_element(values.begin(), values.end());
  m_json.beginObject();
  bound("min", isFinite ? *smallest : std::nan(""));
  bound("max", isFinite ? *largest : std::nan(""));
  m_json.endObject();
}

void ResultsWriter::bound(std::string_view name, double value) {
  m_json.key(name);
  m_json.number(value);
}

Histories readHistories(ImportFormat format, std::filesystem::path const& input) {
  auto const text = readFile(input);
  switch (format) {
    case ImportFormat::calculix:
      return readCalculixHistories(input.string(), text);
    case ImportFormat::csv:
      break;
  }
  return readCsvHistories(input.string(), text);
}

}  // namespace

std::string importHistories(ImportFormat format, std::filesystem::path const& input,
                            std::filesystem::path const& map) {
  auto const histories = readHistories(format, input);
  return ResultsWriter().write(readImportMap(map.string(), readFile(map), histories));
}

}  // namespace Kestrel::ResultTables
