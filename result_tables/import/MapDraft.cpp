#include "result_tables/import/MapDraft.h"

#include <algorithm>
#include <boost/uuid/name_generator_sha1.hpp>
#include <filesystem>
#include <iterator>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "VantaService_Identifier/GUIdentifier.h"
#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/ToolKind.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/ImportMap.h"
#include "result_tables/import/NameGuess.h"
#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

using Kind = ToolForceDataType;
using enum HistoryRole;

constexpr std::string_view s_nameOfPilots = "Pilots";  ///< of the tool that all pilots of a unit are
constexpr std::string_view s_nameOfGroup = "Tools";

// ---- identifiers

/// The identifier (UUID version 5) of what is called `name` in the space of names of `parent`.
GUIdentifier deriveIdentifier(GUIdentifier const& parent, std::string const& name) {
  return GUIdentifier(boost::uuids::name_generator_sha1(parent.getUuid())(name));
}

GUIdentifier identifierOfInput(std::string const& input) {
  static auto const space = *GUIdentifier::fromString("d1f6c0de-2b1c-4c57-8f5e-6e0c8d2f7a43");
  return deriveIdentifier(space, input);
}

// ---- the draft

struct DraftHistory {
  History history;
  std::string name;  ///< by which the map finds it
  HistoryGuess guess;
  bool feedsAColumn = false;
};

struct DraftTool {
  std::string id;
  Kind kind{};
  std::vector<DraftHistory> histories;
};

struct DraftUnit {
  std::string name;
  std::vector<DraftTool> tools;
  std::unordered_map<std::string, std::size_t> toolsById;
};

/// A series of the map. Refers to the histories of its tool.
struct DraftSeries {
  std::string quantity;  ///< empty: the tangential force of a spot weld
  std::vector<DraftHistory*> terms;
  bool isNorm = false;
  bool isGuessed = true;  ///< feeds a column
};

bool haveTheSameTimes(std::span<DraftHistory* const> terms) {
  auto const& first = *terms.front()->history.table;
  return std::all_of(terms.begin(), terms.end(), [&first](auto const* term) {
    auto const& table = *term->history.table;
    return &table == &first || (table.times == first.times && table.steps == first.steps);
  });
}

/// Which forces of its tool a history tells: a force along z of a part is also that of the part, and the
/// support says nothing of the tangential force.
bool hasRole(DraftHistory const& history, HistoryRole role) {
  auto const& guess = history.guess;
  if ((guess.role == x || guess.role == y) && guess.part == supportingForce) return false;
  return guess.role == role || (guess.role == z && guess.part == role && role != none);
}

std::vector<DraftHistory*> historiesOf(DraftTool& tool, HistoryRole role) {
  std::vector<DraftHistory*> found;
  for (auto& history : tool.histories) {
    if (hasRole(history, role)) found.push_back(&history);
  }
  return found;
}

/// The terms of a feed; none where it cannot be made.
std::vector<DraftHistory*> termsOf(DraftTool& tool, ColumnFeed const& feed) {
  std::vector<DraftHistory*> terms;
  for (auto const role : feed) {
    auto const found = historiesOf(tool, role);
    if (found.empty() || (feed.size() > 1 && found.size() > 1)) return {};
    terms.insert(terms.end(), found.begin(), found.end());
  }
  return !terms.empty() && haveTheSameTimes(terms) ? terms : std::vector<DraftHistory*>();
}

std::optional<DraftSeries> seriesOf(DraftTool& tool, GuessedColumn const& column) {
  DraftSeries series{std::string(column.quantity), {}};
  for (auto& history : tool.histories) {
    if (history.guess.key == column.quantity && !column.quantity.empty()) series.terms = {&history};
  }
  for (auto const& feed : column.feeds) {
    if (!series.terms.empty()) break;
    series.terms = termsOf(tool, feed);
    series.isNorm = feed.size() > 1;
  }
  if (series.terms.empty()) return std::nullopt;
  return series;
}

/// The series of a tool: its columns as far as anything feeds them, then what feeds none of them.
std::vector<DraftSeries> seriesOf(DraftTool& tool) {
  std::vector<DraftSeries> list;
  for (auto const& column : guessedColumnsOf(tool.kind)) {
    if (auto series = seriesOf(tool, column)) {
      for (auto* const term : series->terms) term->feedsAColumn = true;
      if (tool.kind == Kind::pilot) series->quantity += '_' + tool.id;
      list.push_back(std::move(*series));
    }
  }
  for (auto& history : tool.histories) {
    if (!history.feedsAColumn) list.push_back({history.name, {&history}, false, false});
  }
  return list;
}

/// A force that the solver printed in two ways counts once.
void dropRepeatedRole(DraftTool const& tool, DraftHistory& history) {
  if (history.guess.role == none) return;
  auto const repeats = [&history](DraftHistory const& other) {
    return other.guess.role == history.guess.role &&
           other.history.table->entity == history.history.table->entity &&
           !other.history.table->entity.empty();
  };
  if (std::any_of(tool.histories.begin(), tool.histories.end(), repeats)) history.guess.role = none;
}

class Drafter {
 public:
  Drafter(std::string const& input, Histories const& histories);

  std::string write();

 private:
  void add(History const& history);
  DraftUnit& unitNamed(std::string const& name);
  DraftTool& toolOf(DraftUnit& unit, std::string const& id);

  void writeUnit(DraftUnit& unit);
  void writeTools(DraftUnit& unit);
  void writePilots(DraftUnit& unit);
  void writeTool(DraftTool& tool);
  void writeSeries(DraftSeries const& series);
  void writeFormula(DraftSeries const& series);
  void writeStep(DraftUnit const& unit);
  void writeGroupings(DraftUnit const& unit);
  void writeJoins(DraftUnit const& unit);

  std::string m_input;
  Histories const& m_histories;
  std::vector<DraftUnit> m_units;
  JsonWriter m_json;
};

std::vector<DraftTool const*> toolsOf(DraftUnit const& unit, Kind kind) {
  std::vector<DraftTool const*> tools;
  for (auto const& tool : unit.tools) {
    if (tool.kind == kind) tools.push_back(&tool);
  }
  return tools;
}

/// What the tool is called, unless it has a quantity that such tools do not have.
Kind kindOf(DraftTool const& tool) {
  auto const kind = guessToolKind(tool.id).value_or(Kind::tool);
  auto const& columns = guessedColumnsOf(kind);
  for (auto const& history : tool.histories) {
    auto const& key = history.guess.key;
    bool const isKnown =
        key.empty() || std::any_of(columns.begin(), columns.end(),
                                   [&key](auto const& column) { return column.quantity == key; });
    if (!isKnown) return toolKindOfQuantity(key);
  }
  return kind;
}

bool feedsAColumn(DraftTool const& tool) {
  return std::any_of(tool.histories.begin(), tool.histories.end(),
                     [](DraftHistory const& history) { return history.feedsAColumn; });
}

/// Whether the times of a history begin anew, as those of a solver's steps may do.
bool beginsAnew(DraftUnit const& unit) {
  return std::any_of(unit.tools.begin(), unit.tools.end(), [](DraftTool const& tool) {
    return std::any_of(tool.histories.begin(), tool.histories.end(), [](DraftHistory const& history) {
      auto const& times = history.history.table->times;
      return !std::is_sorted(times.begin(), times.end());
    });
  });
}

Drafter::Drafter(std::string const& input, Histories const& histories)
    : m_input(input == s_standardStream ? "input" : input), m_histories(histories) {
  for (auto const& table : histories.tables()) {
    for (std::size_t i = 0; i < table.components.size(); ++i) add({&table, i});
  }
  for (auto& unit : m_units) {
    for (auto& tool : unit.tools) {
      tool.kind = kindOf(tool);
    }
  }
}

void Drafter::add(History const& history) {
  auto name = m_histories.usualName(history);
  if (m_histories.find(name).size() != 1) {
    throw Error(tr("{}: expected names that tell the histories apart, found a second {}",
                   toPrintable(m_histories.source()), quote(name)));
  }
  DraftHistory draft{history, std::move(name), guessHistory(history)};
  auto const stem = std::filesystem::path(m_input).stem().string();
  auto& unit = unitNamed(draft.guess.unit.empty() ? stem : draft.guess.unit);
  auto& tool = toolOf(unit, draft.guess.tool.empty() ? unit.name : draft.guess.tool);
  dropRepeatedRole(tool, draft);
  tool.histories.push_back(std::move(draft));
}

DraftUnit& Drafter::unitNamed(std::string const& name) {
  auto const found = std::find_if(m_units.begin(), m_units.end(),
                                  [&name](DraftUnit const& unit) { return unit.name == name; });
  return found == m_units.end() ? m_units.emplace_back(DraftUnit{name, {}, {}}) : *found;
}

DraftTool& Drafter::toolOf(DraftUnit& unit, std::string const& id) {
  auto const [entry, isNew] = unit.toolsById.emplace(id, unit.tools.size());
  if (isNew) unit.tools.push_back({id, {}, {}});
  return unit.tools[entry->second];
}

std::string Drafter::write() {
  m_json.beginObject();
  m_json.text("format", "import-map");
  m_json.integer("version", 1);
  m_json.beginArray("units");
  for (auto& unit : m_units) writeUnit(unit);
  m_json.endArray();
  m_json.endObject();
  return m_json.take();
}

void Drafter::writeUnit(DraftUnit& unit) {
  m_json.beginObject();
  m_json.text("id", deriveIdentifier(identifierOfInput(m_input), unit.name).toString());
  m_json.text("name", unit.name);
  if (beginsAnew(unit)) m_json.text("step", "all");
  bool const hasJoins = !toolsOf(unit, Kind::spotWeld).empty();
  if (hasJoins) writeStep(unit);
  writeTools(unit);
  writeGroupings(unit);
  if (hasJoins) writeJoins(unit);
  m_json.endObject();
}

void Drafter::writeTools(DraftUnit& unit) {
  m_json.beginArray("tools");
  for (auto& tool : unit.tools) {
    if (tool.kind != Kind::pilot) writeTool(tool);
  }
  if (!toolsOf(unit, Kind::pilot).empty()) writePilots(unit);
  m_json.endArray();
}

void Drafter::writePilots(DraftUnit& unit) {
  std::string id(s_nameOfPilots);
  while (unit.toolsById.contains(id)) id += '_';
  m_json.beginObject();
  m_json.text("id", id);
  m_json.text("kind", toolKindName(Kind::pilot));
  m_json.beginArray("series");
  for (auto& tool : unit.tools) {
    if (tool.kind != Kind::pilot) continue;
    for (auto const& series : seriesOf(tool)) writeSeries(series);
  }
  m_json.endArray();
  m_json.endObject();
}

void Drafter::writeTool(DraftTool& tool) {
  m_json.beginObject();
  m_json.text("id", tool.id);
  m_json.text("kind", toolKindName(tool.kind));
  auto const list = seriesOf(tool);
  m_json.beginArray("series");
  for (auto const& series : list) {
    if (!series.quantity.empty()) writeSeries(series);
  }
  m_json.endArray();
  for (auto const& series : list) {
    if (!series.quantity.empty()) continue;
    m_json.beginObject("tangentialForce");
    writeFormula(series);
    m_json.endObject();
  }
  m_json.endObject();
}

void Drafter::writeSeries(DraftSeries const& series) {
  m_json.beginObject();
  m_json.text("quantity", series.quantity);
  writeFormula(series);
  m_json.endObject();
}

void Drafter::writeFormula(DraftSeries const& series) {
  m_json.text("form", "pairs");
  m_json.beginArray(series.isNorm ? "norm" : "sum");
  for (auto const* const term : series.terms) {
    m_json.beginObject();
    m_json.text("history", term->name);
    if (mustNameNode(*term->history.table)) m_json.text("node", "mean");
    if (term->history.table->hasElements()) m_json.text("reduce", "maxAbs");
    if (series.isGuessed && term->guess.scale != 1.0) m_json.number("scale", term->guess.scale);
    m_json.endObject();
  }
  m_json.endArray();
}

/// One step, at the last time that a spot weld has: without steps no join is shown.
void Drafter::writeStep(DraftUnit const& unit) {
  double last = 0.0;
  for (auto const* const tool : toolsOf(unit, Kind::spotWeld)) {
    for (auto const& history : tool->histories) {
      auto const& times = history.history.table->times;
      if (!times.empty()) last = std::max(last, times.back());
    }
  }
  m_json.beginObject("visibleSteps");
  m_json.integer("first", 0);
  m_json.integer("last", 0);
  m_json.endObject();
  m_json.beginInlineArray("stepTimes");
  m_json.number(last);
  m_json.endInlineArray();
}

void Drafter::writeGroupings(DraftUnit const& unit) {
  auto tools = toolsOf(unit, Kind::tool);
  std::erase_if(tools, [](DraftTool const* tool) { return !feedsAColumn(*tool); });
  if (tools.empty()) return;
  m_json.beginObject("toolGroupings");
  for (auto const& family : groupedFamilyNames()) {
    std::vector<DraftTool const*> members;
    std::copy_if(tools.begin(), tools.end(), std::back_inserter(members),
                 [&family](auto const* tool) { return guessToolFamily(tool->id) == family; });
    if (members.empty()) continue;
    m_json.beginArray(family);
    m_json.beginObject();
    m_json.text("name", s_nameOfGroup);
    m_json.beginArray("tools");
    for (auto const* const tool : members) m_json.string(tool->id);
    m_json.endArray();
    m_json.endObject();
    m_json.endArray();
  }
  m_json.endObject();
}

void Drafter::writeJoins(DraftUnit const& unit) {
  auto const unitId = deriveIdentifier(identifierOfInput(m_input), unit.name);
  m_json.beginArray("joins");
  for (auto const* const tool : toolsOf(unit, Kind::spotWeld)) {
    m_json.beginObject();
    m_json.text("guid", deriveIdentifier(unitId, tool->id).toString());
    m_json.text("id", tool->id);
    m_json.text("name", tool->id);
    m_json.beginInlineArray("states");
    m_json.integer(0);
    m_json.endInlineArray();
    m_json.endObject();
  }
  m_json.endArray();
}

}  // namespace

std::string draftImportMap(std::string const& input, Histories const& histories) {
  return Drafter(input, histories).write();
}

}  // namespace Kestrel::ResultTables
