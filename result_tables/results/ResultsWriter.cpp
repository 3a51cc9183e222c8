#include "result_tables/results/ResultsWriter.h"

#include <string_view>

#include "result_tables/base/Family.h"
#include "result_tables/base/ToolKind.h"
#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

/// Writes the members of a results file in the order in which its documentation shows them.
class ResultsWriter {
 public:
  std::string write(std::vector<UnitRecords> const& units);

 private:
  void unit(UnitRecords const& unit);
  void visibleSteps(StepBounds const& steps);
  void tool(ToolDraft const& tool);
  void numbers(StepValues<double> const& series);
  void toolGroupings(UnitRecords const& unit);
  void step(std::optional<StepRecords> const& step);
  void lineJoin(LineJoinRecord const& join);
  void range(std::string_view name, std::optional<double> const& bound);
  /// What stands in all records but those of suction zones.
  template <typename Record>
  void names(Record const& record);
  template <typename Elements, typename Write>
  void array(std::string_view name, Elements const& elements, Write const& write);
  /// An array of objects, of which `write` writes the members; none where there are no records.
  template <typename Records, typename Write>
  void records(std::string_view name, Records const& records, Write const& write);

  JsonWriter m_json;
};

std::string ResultsWriter::write(std::vector<UnitRecords> const& units) {
  m_json.beginObject();
  m_json.text("format", "simulation-results");
  m_json.integer("version", 1);
  array("units", units, [this](UnitRecords const& element) { unit(element); });
  m_json.endObject();
  return m_json.take();
}

template <typename Elements, typename Write>
void ResultsWriter::array(std::string_view name, Elements const& elements, Write const& write) {
  m_json.beginArray(name);
  for (auto const& element : elements) write(element);
  m_json.endArray();
}

void ResultsWriter::unit(UnitRecords const& unit) {
  m_json.beginObject();
  m_json.text("id", unit.id.toString());
  m_json.text("name", unit.name);
  if (unit.visibleSteps) visibleSteps(*unit.visibleSteps);
  array("tools", unit.tools, [this](ToolDraft const& element) { tool(element); });
  if (!unit.joinsDefinedInUnit.empty()) {
    array("joinsDefinedInUnit", unit.joinsDefinedInUnit,
          [this](GUIdentifier const& id) { m_json.string(id.toString()); });
  }
  if (!unit.toolGroupings.empty()) toolGroupings(unit);
  if (!unit.steps.empty()) array("steps", unit.steps, [this](auto const& element) { step(element); });
  m_json.endObject();
}

void ResultsWriter::visibleSteps(StepBounds const& steps) {
  m_json.beginObject("visibleSteps");
  m_json.integer("first", steps.first);
  m_json.integer("last", steps.last);
  m_json.endObject();
}

void ResultsWriter::tool(ToolDraft const& tool) {
  m_json.beginObject();
  m_json.text("id", tool.id);
  m_json.text("kind", toolKindName(tool.type));
  array("series", tool.series, [this](auto const& series) {
    m_json.beginObject();
    m_json.text("quantity", series.first);
    numbers(*series.second);
    m_json.endObject();
  });
  if (tool.tangentialForce) {
    m_json.beginObject("tangentialForce");
    numbers(*tool.tangentialForce);
    m_json.endObject();
  }
  m_json.endObject();
}

bool isOfPairs(StepValues<double> const& series) {
  return series.size() > 0 ? !series.pairs().empty() : series.forEachPair([](double, double) {});
}

void ResultsWriter::numbers(StepValues<double> const& series) {
  if (!isOfPairs(series)) {
    m_json.beginInlineArray("values");
    for (auto const value : series.values()) m_json.number(value);
    m_json.endInlineArray();
    return;
  }
  m_json.beginArray("pairs");
  for (auto const& [value, companion] : series.pairs()) {
    m_json.beginInlineArray();
    m_json.number(value);
    m_json.number(companion);
    m_json.endInlineArray();
  }
  m_json.endArray();
}

void ResultsWriter::toolGroupings(UnitRecords const& unit) {
  m_json.beginObject("toolGroupings");
  for (auto const& [family, groups] : unit.toolGroupings) {
    array(familyName(family), groups, [this](auto const& group) {
      m_json.beginObject();
      m_json.text("name", group.first);
      array("tools", group.second, [this](std::string const& tool) { m_json.string(tool); });
      m_json.endObject();
    });
  }
  m_json.endObject();
}

template <typename Records, typename Write>
void ResultsWriter::records(std::string_view name, Records const& records, Write const& write) {
  if (records.empty()) return;
  array(name, records, [&](auto const& record) {
    m_json.beginObject();
    write(record);
    m_json.endObject();
  });
}

template <typename Record>
void ResultsWriter::names(Record const& record) {
  m_json.text("id", record.id);
  m_json.text("name", record.name);
  m_json.integer("state", record.state);
}

void ResultsWriter::step(std::optional<StepRecords> const& step) {
  if (!step) return m_json.null();
  m_json.beginObject();
  records("suctionZones", step->suctionZones, [this](SuctionZoneRecord const& zone) {
    m_json.text("guid", zone.guid.toString());
    m_json.text("name", zone.name);
    m_json.flag("active", zone.active);
  });
  records("joiningTongs", step->joiningTongs, [this](JoiningTongRecord const& tong) { names(tong); });
  records("joins", step->joins, [this](JoinRecord const& join) {
    m_json.text("guid", join.guid.toString());
    names(join);
  });
  records("lineJoins", step->lineJoins, [this](LineJoinRecord const& join) { lineJoin(join); });
  m_json.endObject();
}

void ResultsWriter::lineJoin(LineJoinRecord const& join) {
  m_json.text("guid", join.guid.toString());
  names(join);
  m_json.text("simulationUnitJoin", join.simulationUnitJoin.toString());
  if (join.skins.empty()) return;
  m_json.beginObject("skins");
  for (auto const& [name, skin] : join.skins) {
    if (!skin) {
      m_json.null(name);
      continue;
    }
    m_json.beginObject(name);
    range("min", skin->minimum);
    range("max", skin->maximum);
    m_json.endObject();
  }
  m_json.endObject();
}

void ResultsWriter::range(std::string_view name, std::optional<double> const& bound) {
  bound ? m_json.number(name, *bound) : m_json.null(name);
}

}  // namespace

std::string writeResults(std::vector<UnitRecords> const& units) { return ResultsWriter().write(units); }

}  // namespace Kestrel::ResultTables
