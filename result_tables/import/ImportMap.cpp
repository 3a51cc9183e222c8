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

using TermRows = ImportTerm::Rows;

constexpr auto s_required = JsonMember::Presence::required;
constexpr auto s_optional = JsonMember::Presence::optional;
constexpr std::uint64_t s_largest32Bit = std::numeric_limits<std::uint32_t>::max();

std::string nodeChoices() { return tr("the number of a node, \"sum\", \"mean\", \"min\" or \"max\""); }

std::string reductions() { return tr("\"sum\", \"mean\", \"min\", \"max\" or \"maxAbs\""); }

std::optional<TermRows> rowsOf(std::string_view name) {
  if (name == "sum") return TermRows::sum;
  if (name == "mean") return TermRows::mean;
  if (name == "min") return TermRows::smallest;
  if (name == "max") return TermRows::largest;
  if (name == "maxAbs") return TermRows::largestMagnitude;
  return std::nullopt;
}

/// Of nodes all but the largest magnitude.
std::optional<TermRows> rowsOfNodes(std::string_view name) {
  return name == "maxAbs" ? std::nullopt : rowsOf(name);
}

std::string describeSteps(HistoryTable const& table) {
  return table.steps.empty() ? tr("no steps") : tr("steps {} to {}", table.steps.front(), table.steps.back());
}

std::string describeTimes(std::span<double const> times) {
  if (times.empty()) return tr("no times");
  return tr("{} times from {} to {}", times.size(), shortestForm(times.front()), shortestForm(times.back()));
}

/// Of two values of one time the one that counts; not a number wins.
double combined(TermRows rows, double value, double other) {
  bool const otherCounts = [&] {
    switch (rows) {
      case TermRows::smallest:
        return other < value;
      case TermRows::largest:
        return other > value;
      case TermRows::largestMagnitude:
        return std::abs(other) > std::abs(value);
      default:
        return false;
    }
  }();
  if (rows == TermRows::sum || rows == TermRows::mean) return value + other;
  return otherCounts || std::isnan(other) ? other : value;
}

/// The format of a map as shapes whose functions fill the draft of what is being read.
class MapReader {
 public:
  MapReader(std::string const& name, Histories const& histories, std::optional<ImportSteps> const& steps)
      : m_json(name), m_histories(histories), m_steps(steps) {}

  ImportMap read(std::string_view text) {
    m_json.read(text, document());
    return std::move(m_map);
  }

 private:
  struct TermDraft {
    ImportTerm term;
    std::optional<std::int64_t> node;
    std::optional<TermRows> nodes;
  };

  JsonShape document();
  JsonShape unit();
  JsonShape stepTimes();
  JsonShape steps();
  JsonShape tool();
  JsonShape series(std::vector<JsonMember> members, std::function<void()> onEnd);
  JsonShape formula(std::vector<JsonMember> members, std::function<void()> onBegin,
                    std::function<void()> onEnd);
  JsonShape terms(bool isNorm);
  JsonShape term();
  JsonShape node();
  JsonShape toolGroupings();
  JsonShape records(std::vector<JsonMember> members, std::vector<ImportRecord>& target);
  JsonShape states();
  JsonShape activity();
  JsonShape skins();

  void findHistory(std::string_view name);
  void finishTerm();
  void chooseNodes();
  void chooseAllNodes(HistoryTable const& table);
  void finishFormula();
  void finishTool();
  void finishUnit();
  void chooseTimes();
  void chooseTimes(ImportFormula& formula, std::string const& place) const;
  void chooseTimes(ImportTerm& term, std::string const& place) const;
  void checkRows(ImportTerm const& term, std::string const& place) const;
  void checkTimes(ImportTerm const& first, ImportTerm const& term, std::string const& place) const;
  void checkRecords(std::vector<ImportRecord> const& records, std::string const& place) const;
  void checkStates(ImportRecord const& record, std::string const& place) const;
  void checkSkins(ImportRecord const& record, std::string const& place) const;
  void checkRecordsOfTools(std::vector<ImportRecord> const& records, std::string_view kind,
                           std::string_view list) const;
  void checkGroupings() const;
  void checkJoinsDefinedInUnit() const;

  JsonReader m_json;
  Histories const& m_histories;
  std::optional<ImportSteps> m_steps;  ///< in place of the units'
  ImportMap m_map;
  ImportTime m_time;
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
          {"step", s_optional, steps()},
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
  auto const step = jsonInteger(
      s_largest32Bit, [this](std::uint64_t value) { m_time.step = static_cast<std::uint32_t>(value); });
  auto time = jsonObject(
      {
          {"step", s_required, step},
          {"time", s_required, jsonNumber([this](double value) { m_time.time = value; })},
      },
      [this] { m_time = {}; }, [this] { m_unit.stepTimes.emplace_back(m_time); });
  time.onNumber = [this](double value) { m_unit.stepTimes.emplace_back(ImportTime{value, {}}); };
  time.expected = [] { return tr("a number, an object"); };
  return jsonArray(jsonOrNull(std::move(time), [this] { m_unit.stepTimes.emplace_back(); }));
}

JsonShape MapReader::steps() {
  auto const expected = [] { return tr("the number of a step or {}", quote("all")); };
  JsonShape steps;
  steps.expected = expected;
  steps.largestInteger = s_largest32Bit;
  steps.onInteger = [this](std::uint64_t value) {
    m_unit.steps = ImportSteps{static_cast<std::uint32_t>(value)};
  };
  steps.onString = [this, expected](std::string_view value) {
    if (value != "all") m_json.fail(expected(), quote(value));
    m_unit.steps = ImportSteps();
  };
  return steps;
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
  constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
  auto const number = [](std::optional<std::int64_t>& target) {
    return jsonInteger(largest,
                       [&target](std::uint64_t value) { target = static_cast<std::int64_t>(value); });
  };
  auto const reduce = jsonString([this](std::string_view value) {
    auto const rows = rowsOf(value);
    if (!rows) m_json.fail(reductions(), quote(value));
    m_term.term.rows = *rows;
  });
  return jsonObject(
      {
          {"history", s_required, jsonString([this](std::string_view name) { findHistory(name); })},
          {"node", s_optional, node()},
          {"element", s_optional, number(m_term.term.element)},
          {"point", s_optional, number(m_term.term.point)},
          {"reduce", s_optional, reduce},
          {"scale", s_optional, jsonNumber([this](double value) { m_term.term.scale = value; })},
          {"offset", s_optional, jsonNumber([this](double value) { m_term.term.offset = value; })},
      },
      [this] { m_term = {}; }, [this] { finishTerm(); });
}

JsonShape MapReader::node() {
  JsonShape node;
  node.expected = nodeChoices;
  node.largestInteger = std::numeric_limits<std::int64_t>::max();
  node.onInteger = [this](std::uint64_t value) { m_term.node = static_cast<std::int64_t>(value); };
  node.onString = [this](std::string_view value) {
    m_term.nodes = rowsOfNodes(value);
    if (!m_term.nodes) m_json.fail(nodeChoices(), quote(value));
  };
  return node;
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
  if (table.hasElements()) {
    if (m_term.node || m_term.nodes) m_json.fail(tr("no \"node\" for a history without nodes"), tr("one"));
  } else if (term.element || term.point || term.rows != TermRows::one) {
    m_json.fail(tr("\"element\", \"point\" and \"reduce\" only for a history of elements"),
                quote(Histories::fullName(term.history)));
  } else {
    chooseNodes();
  }
  m_formula.terms.push_back(term);
}

void MapReader::chooseNodes() {
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
    term.rows = *m_term.nodes;
  } else if (table.nodes.size() > 1) {
    chooseAllNodes(table);
  }
}

/// Forces on the nodes of a set add up to the force on the set; of anything else the map must say what it
/// wants.
void MapReader::chooseAllNodes(HistoryTable const& table) {
  if (mustNameNode(table)) {
    m_json.fail(tr("a member \"node\" ({}) for the {} nodes of set {}", nodeChoices(), table.nodes.size(),
                   quote(table.entity)),
                "none");
  }
  m_term.term.rows = TermRows::sum;
}

void MapReader::finishFormula() {
  if (m_formulaKinds != 1) {
    m_json.fail(tr("exactly one of {} and {}", quote("sum"), quote("norm")),
                m_formulaKinds == 0 ? tr("none") : tr("both"));
  }
  std::string const list = m_formula.isNorm ? "/norm" : "/sum";
  if (m_formula.terms.empty()) m_json.fail(tr("at least one term"), tr("none"), list);
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
  chooseTimes();
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

/// Which steps a unit takes may stand behind its formulas.
void MapReader::chooseTimes() {
  if (m_steps) m_unit.steps = m_steps;
  for (std::size_t i = 0; i < m_unit.tools.size(); ++i) {
    auto& tool = m_unit.tools[i];
    for (std::size_t k = 0; k < tool.series.size(); ++k)
      chooseTimes(tool.series[k].formula, fmt::format("/tools/{}/series/{}", i, k));
    if (tool.tangentialForce)
      chooseTimes(tool.tangentialForce->formula, fmt::format("/tools/{}/tangentialForce", i));
  }
  for (std::size_t i = 0; i < m_unit.lineJoins.size(); ++i) {
    for (auto& [name, formulas] : m_unit.lineJoins[i].skins) {
      auto const place = fmt::format("/lineJoins/{}/skins{}", i, jsonPointerStep(name));
      for (std::size_t k = 0; k < formulas.size(); ++k)
        chooseTimes(formulas[k], fmt::format("{}/{}", place, k));
    }
  }
}

void MapReader::chooseTimes(ImportFormula& formula, std::string const& place) const {
  for (std::size_t i = 0; i < formula.terms.size(); ++i) {
    auto& term = formula.terms[i];
    auto const placeOfTerm = fmt::format("{}/{}/{}", place, formula.isNorm ? "norm" : "sum", i);
    chooseTimes(term, placeOfTerm);
    checkRows(term, placeOfTerm);
    checkTimes(formula.terms.front(), term, placeOfTerm);
  }
}

void MapReader::chooseTimes(ImportTerm& term, std::string const& place) const {
  auto const& table = *term.history.table;
  if (m_unit.steps && m_unit.steps->number) {
    auto const number = *m_unit.steps->number;
    auto const [begin, end] = std::equal_range(table.steps.begin(), table.steps.end(), number);
    if (begin == end) {
      m_json.fail(tr("a history with values in step {}", number),
                  tr("{} with {}", quote(Histories::fullName(term.history)), describeSteps(table)),
                  place + "/history");
    }
    term.firstTime = static_cast<std::size_t>(begin - table.steps.begin());
    term.timeCount = static_cast<std::size_t>(end - begin);
  } else if (!m_unit.steps && !std::is_sorted(table.times.begin(), table.times.end())) {
    m_json.fail(tr("a member \"step\" of the unit or --step, as the times of {} begin anew",
                   quote(Histories::fullName(term.history))),
                tr("none"), place + "/history");
  }
}

void MapReader::checkRows(ImportTerm const& term, std::string const& place) const {
  if (!term.history.table->hasElements()) return;
  for (std::size_t time = 0; time < term.times().size(); ++time) {
    auto const count = term.rowCount(time);
    if (count == 0)
      m_json.fail(tr("a row of this element and point at each time"),
                  tr("none at time {}", shortestForm(term.times()[time])), place);
    if (count > 1 && term.rows == TermRows::one) {
      m_json.fail(tr("a member \"reduce\" ({}) for {} rows of {}", reductions(), count,
                     quote(Histories::fullName(term.history))),
                  tr("none"), place);
    }
  }
}

void MapReader::checkTimes(ImportTerm const& first, ImportTerm const& term, std::string const& place) const {
  auto const times = first.times();
  auto const others = term.times();
  bool const haveSameTimes = std::equal(times.begin(), times.end(), others.begin(), others.end());
  auto const stepsOfFirst = first.steps();
  auto const steps = term.steps();
  bool const haveSameSteps =
      !m_unit.steps || std::equal(stepsOfFirst.begin(), stepsOfFirst.end(), steps.begin(), steps.end());
  if (haveSameTimes && haveSameSteps) return;
  auto const expected = tr("the times of the first term ({})", describeTimes(times));
  if (haveSameTimes) m_json.fail(expected, tr("the same times in other steps"), place);
  if (times.size() != others.size()) m_json.fail(expected, describeTimes(others), place);
  auto const difference = std::mismatch(times.begin(), times.end(), others.begin());
  m_json.fail(expected,
              tr("{} in place of {}", shortestForm(*difference.second), shortestForm(*difference.first)),
              place);
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
                       shortestForm(m_unit.stepTimes[step]->time), step),
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

std::span<std::uint32_t const> ImportTerm::steps() const {
  auto const& steps = history.table->steps;
  return steps.empty() ? std::span<std::uint32_t const>() : std::span(steps).subspan(firstTime, timeCount);
}

bool ImportTerm::uses(std::size_t rowOfAll) const {
  auto const& table = *history.table;
  if (!table.hasElements()) return true;
  auto const& labels = table.elementRows[rowOfAll];
  return (!element || labels.element == *element) && (!point || labels.point == *point);
}

std::size_t ImportTerm::rowCount(std::size_t time) const {
  auto const& table = *history.table;
  auto const first = table.firstRow(firstTime + time);
  std::size_t count = 0;
  for (std::size_t i = 0; i < table.rowCount(firstTime + time); ++i) {
    if (uses(first + i)) ++count;
  }
  return count;
}

double ImportTerm::at(std::size_t time) const {
  auto const& table = *history.table;
  auto const timeOfAll = firstTime + time;
  if (rows == TermRows::one && !table.hasElements())
    return scale * table.value(timeOfAll, row, history.component) + offset;
  auto const first = table.firstRow(timeOfAll);
  double value = 0.0;
  std::size_t count = 0;
  for (std::size_t i = 0; i < table.rowCount(timeOfAll); ++i) {
    if (!uses(first + i)) continue;
    auto const other = table.value(timeOfAll, i, history.component);
    value = count == 0 ? other : combined(rows, value, other);
    ++count;
  }
  if (rows == TermRows::mean) value /= static_cast<double>(count);
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

std::optional<std::size_t> ImportFormula::indexOf(ImportTime const& time) const {
  auto const times = terms.front().times();
  auto const steps = terms.front().steps();
  for (auto end = times.size(); end > 0;) {
    auto const begin =
        steps.empty() ? 0
                      : static_cast<std::size_t>(
                            std::lower_bound(steps.begin(), steps.end(), steps[end - 1]) - steps.begin());
    bool const isMeant = !time.step || (!steps.empty() && steps[begin] == *time.step);
    auto const ofStep = times.subspan(begin, end - begin);
    auto const after = std::upper_bound(ofStep.begin(), ofStep.end(), time.time);
    if (isMeant && after != ofStep.begin() && *(after - 1) == time.time)
      return begin + static_cast<std::size_t>(after - ofStep.begin()) - 1;
    end = begin;
  }
  return std::nullopt;
}

std::optional<std::pair<double, double>> rangeAt(std::vector<ImportFormula> const& formulas,
                                                 ImportTime const& time) {
  std::vector<double> values;
  values.reserve(formulas.size());
  for (auto const& formula : formulas) values.push_back(formula.at(*formula.indexOf(time)));
  bool const isFinite =
      std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
  if (!isFinite) return std::nullopt;
  auto const [smallest, largest] = std::minmax_element(values.begin(), values.end());
  return std::pair(*smallest, *largest);
}

bool mustNameNode(HistoryTable const& table) {
  return table.nodes.size() > 1 && !table.quantity.ends_with("forces");
}

ImportMap readImportMap(std::string const& name, std::string_view text, Histories const& histories,
                        std::optional<ImportSteps> const& steps) {
  return MapReader(name, histories, steps).read(text);
}

}  // namespace Kestrel::ResultTables
