#include "result_tables/import/ResultsWriter.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

/// Writes the members of a results file in the order in which its documentation shows them.
class ResultsWriter {
 public:
  std::string write(ImportMap const& map);

 private:
  void unit(ImportUnit const& unit);
  void visibleSteps(StepBounds const& steps);
  void tool(ImportTool const& tool);
  void numbers(ImportSeries const& series);
  void toolGroupings(ImportUnit const& unit);
  void step(ImportUnit const& unit, std::size_t step);
  void suctionZone(ImportRecord const& record, std::size_t step);
  void record(ImportRecord const& record, std::size_t step, bool hasGuid);
  void lineJoin(ImportRecord const& record, std::size_t step, ImportTime const& time);
  void range(std::vector<ImportFormula> const& formulas, ImportTime const& time);
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
  m_json.text("format", "simulation-results");
  m_json.integer("version", 1);
  array("units", map.units, [this](ImportUnit const& element) { unit(element); });
  m_json.endObject();
  return m_json.take();
}

template <typename Elements, typename Write>
void ResultsWriter::array(std::string_view name, Elements const& elements, Write const& write) {
  m_json.beginArray(name);
  for (auto const& element : elements) write(element);
  m_json.endArray();
}

void ResultsWriter::unit(ImportUnit const& unit) {
  m_json.beginObject();
  m_json.text("id", unit.id.toString());
  m_json.text("name", unit.name);
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

void ResultsWriter::visibleSteps(StepBounds const& steps) {
  m_json.beginObject("visibleSteps");
  m_json.integer("first", steps.first);
  m_json.integer("last", steps.last);
  m_json.endObject();
}

void ResultsWriter::tool(ImportTool const& tool) {
  m_json.beginObject();
  m_json.text("id", tool.id);
  m_json.text("kind", tool.kind);
  array("series", tool.series, [this](ImportSeries const& series) {
    m_json.beginObject();
    m_json.text("quantity", series.quantity);
    numbers(series);
    m_json.endObject();
  });
  if (tool.tangentialForce) {
    m_json.beginObject("tangentialForce");
    numbers(*tool.tangentialForce);
    m_json.endObject();
  }
  m_json.endObject();
}

void ResultsWriter::numbers(ImportSeries const& series) {
  auto const times = series.formula.times();
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
  m_json.beginObject("toolGroupings");
  for (auto const& [family, groups] : unit.toolGroupings) {
    array(family, groups, [this](auto const& group) {
      m_json.beginObject();
      m_json.text("name", group.first);
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
  auto const& time = unit.stepTimes[step];
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
  m_json.text("guid", record.guid.toString());
  m_json.text("name", record.name);
  m_json.flag("active", *record.states[step] != 0);
}

void ResultsWriter::record(ImportRecord const& record, std::size_t step, bool hasGuid) {
  if (hasGuid) m_json.text("guid", record.guid.toString());
  m_json.text("id", record.id);
  m_json.text("name", record.name);
  m_json.integer("state", *record.states[step]);
}

void ResultsWriter::lineJoin(ImportRecord const& lineJoin, std::size_t step, ImportTime const& time) {
  record(lineJoin, step, true);
  m_json.text("simulationUnitJoin", lineJoin.simulationUnitJoin.toString());
  if (lineJoin.skins.empty()) return;
  m_json.beginObject("skins");
  for (auto const& [name, formulas] : lineJoin.skins) {
    m_json.key(name);
    range(formulas, time);
  }
  m_json.endObject();
}

void ResultsWriter::range(std::vector<ImportFormula> const& formulas, ImportTime const& time) {
  auto const range = rangeAt(formulas, time);
  m_json.beginObject();
  m_json.number("min", range ? range->first : std::nan(""));
  m_json.number("max", range ? range->second : std::nan(""));
  m_json.endObject();
}

}  // namespace

std::string writeResults(ImportMap const& map) { return ResultsWriter().write(map); }

}  // namespace Kestrel::ResultTables
