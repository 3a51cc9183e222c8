#include "result_tables/import/ImportMap.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonShapes.h"

namespace Kestrel::ResultTables {

namespace {

using Nodes = ImportTerm::Nodes;

constexpr auto s_required = JsonMember::Presence::required;
constexpr auto s_optional = JsonMember::Presence::optional;
constexpr std::uint64_t s_largest32Bit = std::numeric_limits<std::uint32_t>::max();

std::string nodeChoices() { return tr("the number of a node, \"sum\", \"mean\", \"min\" or \"max\""); }

std::optional<Nodes> nodesOf(std::string_view name) {
  if (name == "sum") return Nodes::sum;
  if (name == "mean") return Nodes::mean;
  if (name == "min") return Nodes::smallest;
  if (name == "max") return Nodes::largest;
  return std::nullopt;
}

std::string describeTimes(std::vector<double> const& times) {
  return tr("{} times from {} to {}", times.size(), shortestForm(times.front()), shortestForm(times.back()));
}

/// The format of a map as shapes whose functions fill the draft of what is being read.
class MapReader {
 public:
  MapReader(std::string const& name, Histories const& histories) : m_json(name), m_histories(histories) {}

  ImportMap read(std::string const& text) {
    m_json.read(text, document());
    return std::move(m_map);
  }

 private:
  struct TermDraft {
    ImportTerm term;
    std::optional<std::int64_t> node;
    std::optional<Nodes> nodes;
  };

  JsonShape document();
  JsonShape unit();
  JsonShape stepTimes();
  JsonShape tool();
  JsonShape series(std::vector<JsonMember> members, std::function<void()> onEnd);
  JsonShape formula(std::vector<JsonMember> members, std::function<void()> onBegin,
                    std::function<void()> onEnd);
  JsonShape terms(bool isNorm);
  JsonShape term();
  JsonShape toolGroupings();
  JsonShape records(std::vector<JsonMember> members, std::vector<ImportRecord>& target);
  JsonShape states();
  JsonShape activity();
  JsonShape skins();

  void findHistory(std::string_view name);
  void finishTerm();
  void chooseAllNodes(HistoryTable const& table);
  void finishFormula();
  void finishTool();
  void finishUnit();
  void checkRecords(std::vector<ImportRecord> const& records, std::string const& place) const;
  void checkStates(ImportRecord const& record, std::string const& place) const;
  void checkSkins(ImportRecord const& record, std::string const& place) const;
  void checkRecordsOfTools(std::vector<ImportRecord> const& records, std::string_view kind,
                           std::string_view list) const;
  void checkGroupings() const;
  void checkJoinsDefinedInUnit() const;

  JsonReader m_json;
  Histories const& m_histories;
  ImportMap m_map;
  std::unordered_set<GUIdentifier> m_unitIds;
  std::unordered_map<std::string, std::string> m_toolKinds;  ///< of the unit, by identifier
  ImportUnit m_unit;
  ImportTool m_tool;
  ImportSeries m_series;
  ImportRecord m_record;
  ImportFormula m_formula;
  int m_formulaKinds = 0;  ///< how many of "sum" and "norm" there were
  TermDraft m_term;
};

JsonShape MapReader::document() {
  return jsonObject({
      {"format", s_required, jsonFormatName(m_json, "import-map")},
      {"version", s_required, jsonFormatVersion(m_json)},
      {"units", s_required,
       jsonArray(unit(), {},
                 [this] {
                   if (m_map.units.empty()) m_json.fail(tr("at least one unit"), tr("none"));
                 })},
  });
}

JsonShape MapReader::unit() {
  auto const joinDefinedInUnit =
      jsonIdentifier(m_json, [this](GUIdentifier const& id) { m_unit.joinsDefinedInUnit.push_back(id); });
  JsonMember const guid{"guid", s_required, jsonIdentifier(m_json, m_record.guid)};
  JsonMember const id{"id", s_required, jsonText(m_record.id)};
  JsonMember const name{"name", s_required, jsonText(m_record.name)};
  JsonMember const state{"states", s_required, states()};
  JsonMember const active{"active", s_required, activity()};
  JsonMember const unitJoin{"simulationUnitJoin", s_required,
                            jsonIdentifier(m_json, m_record.simulationUnitJoin)};
  JsonMember const skin{"skins", s_optional, skins()};
  return jsonObject(
      {
          {"id", s_required, jsonIdentifier(m_json, m_unit.id)},
          {"name", s_required, jsonText(m_unit.name)},
          {"visibleSteps", s_optional, jsonStepBounds(m_unit.visibleSteps)},
          {"stepTimes", s_optional, stepTimes()},
          {"tools", s_optional, jsonArray(tool())},
          {"joinsDefinedInUnit", s_optional, jsonArray(joinDefinedInUnit)},
          {"toolGroupings", s_optional, toolGroupings()},
          {"suctionZones", s_optional, records({guid, name, active}, m_unit.suctionZones)},
          {"joiningTongs", s_optional, records({id, name, state}, m_unit.joiningTongs)},
          {"joins", s_optional, records({guid, id, name, state}, m_unit.joins)},
          {"lineJoins", s_optional, records({guid, id, name, state, unitJoin, skin}, m_unit.lineJoins)},
      },
      [this] {
        m_unit = {};
        m_toolKinds.clear();
      },
      [this] { finishUnit(); });
}

JsonShape MapReader::stepTimes() {
  auto const time = jsonNumber([this](double value) { m_unit.stepTimes.emplace_back(value); });
  return jsonArray(jsonOrNull(time, [this] { m_unit.stepTimes.emplace_back(); }));
}

JsonShape MapReader::tool() {
  auto const kind =
      jsonToolKind(m_json, [this](std::string_view name, ToolForceDataType) { m_tool.kind = name; });
  auto const ofQuantity = series({{"quantity", s_required, jsonText(m_series.quantity)}},
                                 [this] { m_tool.series.push_back(std::move(m_series)); });
  auto const tangentialForce = series({}, [this] { m_tool.tangentialForce = std::move(m_series); });
  return jsonObject(
      {
          {"id", s_required, jsonText(m_tool.id)},
          {"kind", s_required, kind},
          {"series", s_optional, jsonArray(ofQuantity)},
          {"tangentialForce", s_optional, tangentialForce},
      },
      [this] { m_tool = {}; }, [this] { finishTool(); });
}

JsonShape MapReader::series(std::vector<JsonMember> members, std::function<void()> onEnd) {
  auto const form = jsonString([this](std::string_view value) {
    if (value != "values" && value != "pairs")
      m_json.fail(tr("{} or {}", quote("values"), quote("pairs")), quote(value));
    m_series.isPairs = value == "pairs";
  });
  members.push_back({"form", s_optional, form});
  return formula(
      std::move(members), [this] { m_series = {}; },
      [this, onEnd = std::move(onEnd)] {
        m_series.formula = std::move(m_formula);
        onEnd();
      });
}

JsonShape MapReader::formula(std::vector<JsonMember> members, std::function<void()> onBegin,
                             std::function<void()> onEnd) {
  members.push_back({"sum", s_optional, terms(false)});
  members.push_back({"norm", s_optional, terms(true)});
  return jsonObject(
      std::move(members),
      [this, onBegin = std::move(onBegin)] {
        m_formula = {};
        m_formulaKinds = 0;
        onBegin();
      },
      [this, onEnd = std::move(onEnd)] {
        finishFormula();
        onEnd();
      });
}

JsonShape MapReader::terms(bool isNorm) {
  return jsonArray(term(), [this, isNorm] {
    ++m_formulaKinds;
    m_formula.isNorm = isNorm;
  });
}

JsonShape MapReader::term() {
  JsonShape node;
  node.expected = nodeChoices;
  node.largestInteger = std::numeric_limits<std::int64_t>::max();
  node.onInteger = [this](std::uint64_t value) { m_term.node = static_cast<std::int64_t>(value); };
  node.onString = [this](std::string_view value) {
    m_term.nodes = nodesOf(value);
    if (!m_term.nodes) m_json.fail(nodeChoices(), quote(value));
  };
  return jsonObject(
      {
          {"history", s_required, jsonString([this](std::string_view name) { findHistory(name); })},
          {"node", s_optional, node},
          {"scale", s_optional, jsonNumber([this](double value) { m_term.term.scale = value; })},
          {"offset", s_optional, jsonNumber([this](double value) { m_term.term.offset = value; })},
      },
      [this] { m_term = {}; }, [this] { finishTerm(); });
}

JsonShape MapReader::toolGroupings() {
  return jsonToolGroupings(groupedFamilyNames(), [this](std::string_view family) -> ToolGroups& {
    return m_unit.toolGroupings.emplace_back(family, ToolGroups()).second;
  });
}

JsonShape MapReader::records(std::vector<JsonMember> members, std::vector<ImportRecord>& target) {
  return jsonArray(jsonObject(
      std::move(members), [this] { m_record = {}; },
      [this, &target] { target.push_back(std::move(m_record)); }));
}

JsonShape MapReader::states() {
  auto const state =
      jsonInteger(s_largest32Bit, [this](std::uint64_t value) { m_record.states.emplace_back(value); });
  return jsonArray(jsonOrNull(state, [this] { m_record.states.emplace_back(); }));
}

JsonShape MapReader::activity() {
  auto const active = jsonBoolean([this](bool value) { m_record.states.emplace_back(value ? 1 : 0); });
  return jsonArray(jsonOrNull(active, [this] { m_record.states.emplace_back(); }));
}

JsonShape MapReader::skins() {
  auto const onName = [this](std::string_view name) {
    auto& skins = m_record.skins;
    bool const isNew =
        std::none_of(skins.begin(), skins.end(), [&](auto const& skin) { return skin.first == name; });
    skins.push_back({std::string(name), {}});
    return isNew;
  };
  auto const formulas =
      jsonArray(formula(
                    {}, [] {}, [this] { m_record.skins.back().second.push_back(std::move(m_formula)); }),
                {}, [this] {
                  if (m_record.skins.back().second.empty())
                    m_json.fail(tr("at least one formula"), tr("none"));
                });
  return jsonMap(onName, formulas);
}

void MapReader::findHistory(std::string_view name) {
  auto const& found = m_histories.find(name);
  if (found.empty()) {
    m_json.fail(tr("a history of {} ({})", toPrintable(m_histories.source()), m_histories.namesLike(name)),
                quote(name));
  }
  if (found.size() > 1) {
    std::string names;
    for (auto const& history : found) {
      auto const fullName = quote(Histories::fullName(history));
      names = names.empty() ? fullName : tr("{} or {}", names, fullName);
    }
    m_json.fail(names, quote(name));
  }
  m_term.term.history = found.front();
}

void MapReader::finishTerm() {
  auto& term = m_term.term;
  auto const& table = *term.history.table;
  bool const isChosen = m_term.node || m_term.nodes;
  if (table.nodes.empty() && isChosen) m_json.fail(tr("no \"node\" for a history without nodes"), tr("one"));
  if (m_term.node) {
    auto const node = std::find(table.nodes.begin(), table.nodes.end(), *m_term.node);
    if (node == table.nodes.end()) {
      m_json.fail(tr("one of the {} nodes of set {}", table.nodes.size(), quote(table.entity)),
                  std::to_string(*m_term.node), "/node");
    }
    term.row = static_cast<std::size_t>(node - table.nodes.begin());
  } else if (m_term.nodes) {
    term.nodes = *m_term.nodes;
  } else if (table.nodes.size() > 1) {
    chooseAllNodes(table);
  }
  m_formula.terms.push_back(term);
}

/// Forces on the nodes of a set add up to the force on the set; of anything else the map must say what it
/// wants.
void MapReader::chooseAllNodes(HistoryTable const& table) {
  if (!table.quantity.ends_with("forces")) {
    m_json.fail(tr("a member \"node\" ({}) for the {} nodes of set {}", nodeChoices(), table.nodes.size(),
                   quote(table.entity)),
                "none");
  }
  m_term.term.nodes = Nodes::sum;
}

void MapReader::finishFormula() {
  if (m_formulaKinds != 1) {
    m_json.fail(tr("exactly one of {} and {}", quote("sum"), quote("norm")),
                m_formulaKinds == 0 ? tr("none") : tr("both"));
  }
  std::string const list = m_formula.isNorm ? "/norm" : "/sum";
  if (m_formula.terms.empty()) m_json.fail(tr("at least one term"), tr("none"), list);
  auto const& times = m_formula.times();
  for (std::size_t i = 1; i < m_formula.terms.size(); ++i) {
    auto const& others = m_formula.terms[i].history.table->times;
    if (&others == &times || others == times) continue;
    auto const difference = std::mismatch(times.begin(), times.end(), others.begin(), others.end());
    auto const found =
        times.size() != others.size()
            ? describeTimes(others)
            : tr("{} in place of {}", shortestForm(*difference.second), shortestForm(*difference.first));
    m_json.fail(tr("the times of the first term ({})", describeTimes(times)), found,
                fmt::format("{}/{}", list, i));
  }
}

void MapReader::finishTool() {
  if (!m_toolKinds.emplace(m_tool.id, m_tool.kind).second) {
    m_json.fail(tr("an identifier that is unique in the unit"), quote(m_tool.id), "/id");
  }
  m_unit.tools.push_back(std::move(m_tool));
}

void MapReader::finishUnit() {
  if (!m_unitIds.insert(m_unit.id).second) {
    m_json.fail(tr("an identifier that is unique in the file"), m_unit.id.toString(), "/id");
  }
  checkStepBounds(m_json, m_unit.visibleSteps, m_unit.stepTimes.size());
  checkRecords(m_unit.suctionZones, "/suctionZones");
  checkRecords(m_unit.joiningTongs, "/joiningTongs");
  checkRecords(m_unit.joins, "/joins");
  checkRecords(m_unit.lineJoins, "/lineJoins");
  checkRecordsOfTools(m_unit.joiningTongs, "joiningTong", "/joiningTongs");
  checkRecordsOfTools(m_unit.joins, "spotWeld", "/joins");
  checkGroupings();
  checkJoinsDefinedInUnit();
  m_map.units.push_back(std::move(m_unit));
}

void MapReader::checkRecords(std::vector<ImportRecord> const& records, std::string const& list) const {
  bool const areTongs = &records == &m_unit.joiningTongs;
  std::unordered_set<std::string> ids;
  for (std::size_t i = 0; i < records.size(); ++i) {
    auto const& record = records[i];
    auto const place = fmt::format("{}/{}", list, i);
    auto const id = areTongs ? record.id : record.guid.toString();
    if (!ids.insert(id).second) {
      m_json.fail(tr("an identifier that is unique in its list"), areTongs ? quote(id) : id,
                  place + (areTongs ? "/id" : "/guid"));
    }
    checkStates(record, place + (&records == &m_unit.suctionZones ? "/active" : "/states"));
    checkSkins(record, place + "/skins");
  }
}

void MapReader::checkStates(ImportRecord const& record, std::string const& place) const {
  auto const& states = record.states;
  if (states.size() != m_unit.stepTimes.size()) {
    m_json.fail(tr("one entry for each of {} steps", m_unit.stepTimes.size()), std::to_string(states.size()),
                place);
  }
  bool isInAStep = false;
  for (std::size_t step = 0; step < states.size(); ++step) {
    if (!states[step]) continue;
    isInAStep = true;
    if (!m_unit.stepTimes[step]) {
      m_json.fail(tr("null in a step that has no time"), tr("a value"), fmt::format("{}/{}", place, step));
    }
  }
  if (!isInAStep) m_json.fail(tr("a value in at least one step"), tr("none"), place);
}

/// Every formula must have a value at the time of every step that holds the record.
void MapReader::checkSkins(ImportRecord const& record, std::string const& place) const {
  for (auto const& [name, formulas] : record.skins) {
    for (auto const& formula : formulas) {
      for (std::size_t step = 0; step < record.states.size(); ++step) {
        if (!record.states[step] || formula.indexOf(*m_unit.stepTimes[step])) continue;
        m_json.fail(tr("histories of {} with a value at time {} of step {}", quote(name),
                       shortestForm(*m_unit.stepTimes[step]), step),
                    describeTimes(formula.times()), place);
      }
    }
  }
}

void MapReader::checkRecordsOfTools(std::vector<ImportRecord> const& records, std::string_view kind,
                                    std::string_view list) const {
  for (std::size_t i = 0; i < records.size(); ++i) {
    auto const tool = m_toolKinds.find(records[i].id);
    if (tool == m_toolKinds.end() || tool->second != kind) {
      m_json.fail(tr("the identifier of a tool of kind {}", kind), quote(records[i].id),
                  fmt::format("{}/{}/id", list, i));
    }
  }
}

void MapReader::checkGroupings() const {
  for (auto const& [family, groups] : m_unit.toolGroupings) {
    for (auto const& [name, tools] : groups) {
      for (auto const& tool : tools) {
        if (!m_toolKinds.contains(tool)) {
          m_json.fail(tr("identifiers of tools of the unit"), quote(tool), "/toolGroupings/" + family);
        }
      }
    }
  }
}

void MapReader::checkJoinsDefinedInUnit() const {
  std::unordered_set<GUIdentifier> used;
  for (auto const& lineJoin : m_unit.lineJoins) used.insert(lineJoin.simulationUnitJoin);
  for (std::size_t i = 0; i < m_unit.joinsDefinedInUnit.size(); ++i) {
    auto const& id = m_unit.joinsDefinedInUnit[i];
    if (!used.contains(id)) {
      m_json.fail(tr("the simulationUnitJoin of a line join"), id.toString(),
                  fmt::format("/joinsDefinedInUnit/{}", i));
    }
  }
}

}  // namespace

double ImportTerm::at(std::size_t time) const {
  auto const& table = *history.table;
  auto const valueOf = [&](std::size_t i) { return table.value(time, i, history.component); };
  auto value = valueOf(row);
  for (std::size_t i = 1; nodes != Nodes::one && i < table.rowsPerTime(); ++i) {
    auto const other = valueOf(i);
    switch (nodes) {
      case Nodes::smallest:
        value = other < value || std::isnan(other) ? other : value;
        break;
      case Nodes::largest:
        value = other > value || std::isnan(other) ? other : value;
        break;
      default:
        value += other;
    }
  }
  if (nodes == Nodes::mean) value /= static_cast<double>(table.rowsPerTime());
  return scale * value + offset;
}

double ImportFormula::at(std::size_t time) const {
  double value = 0.0;
  for (auto const& term : terms) {
    auto const summand = term.at(time);
    value = isNorm ? std::hypot(value, summand) : value + summand;
  }
  return value;
}

std::optional<std::size_t> ImportFormula::indexOf(double time) const {
  auto const after = std::upper_bound(times().begin(), times().end(), time);
  if (after == times().begin() || *(after - 1) != time) return std::nullopt;
  return static_cast<std::size_t>(after - times().begin()) - 1;
}

ImportMap readImportMap(std::string const& name, std::string const& text, Histories const& histories) {
  return MapReader(name, histories).read(text);
}

}  // namespace Kestrel::ResultTables
