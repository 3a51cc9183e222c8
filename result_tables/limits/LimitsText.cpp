#include "result_tables/limits/LimitsText.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <functional>
#include <set>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonShapes.h"
#include "result_tables/json/JsonWriter.h"
#include "result_tables/limits/FamilyColumns.h"
#include "result_tables/limits/LimitType.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

namespace {

using Part = LimitsText::Part;
using Presence = JsonMember::Presence;

constexpr std::string_view s_format = "limits";

std::vector<std::string_view> kindNames() { return {s_limitTypeNames.begin(), s_limitTypeNames.end()}; }

/// What texts call a kind: its name, or its number where it has none.
std::string keyOfKind(TablePropertyLimitType type) {
  auto const name = limitTypeName(type);
  return name.empty() ? std::to_string(static_cast<std::uint32_t>(type)) : std::string(name);
}

/// The kind that texts call `key`; each has one spelling.
std::optional<TablePropertyLimitType> kindOfKey(std::string_view key) {
  auto const* const name = std::find(s_limitTypeNames.begin(), s_limitTypeNames.end(), key);
  auto number = static_cast<std::uint32_t>(name - s_limitTypeNames.begin());
  if (name == s_limitTypeNames.end()) std::from_chars(key.data(), key.data() + key.size(), number);
  auto const type = static_cast<TablePropertyLimitType>(number);
  return keyOfKind(type) == key ? std::optional(type) : std::nullopt;
}

/// The format of a text of limits as shapes whose functions fill the parts.
class TextReader {
 public:
  explicit TextReader(std::string const& name) : m_json(name) {
    m_text.name = name;
    m_defaults.updateLimits({SimulationUnitId()});
  }

  LimitsText read(std::string_view text) {
    m_json.read(text, document());
    return std::move(m_text);
  }

 private:
  JsonShape document();
  JsonShape part(std::vector<JsonMember> members, JsonShape const& columns, std::function<void()> onEnd);
  JsonShape limits();
  JsonShape columns();
  JsonShape columnsOf(Family const& family);
  JsonShape number();

  void finishUnit();
  [[nodiscard]] bool hasKindOfItsOwn(FamilyColumn const& column) const;
  void checkColumn(Family const& family, std::vector<FamilyColumn> const& columns,
                   std::string_view key) const;

  JsonReader m_json;
  LimitsText m_text;
  Part m_part;                ///< the one that is being read
  double* m_value = nullptr;  ///< where the limit goes that is being read
  /// What every unit has.
  TablePropertiesData m_defaults;
};

JsonShape TextReader::document() {
  auto const ofColumns = columns();
  auto const unit = part({{"id", Presence::optional,
                           jsonIdentifier(m_json, [this](GUIdentifier const& id) { m_part.id.emplace(id); })},
                          {"name", Presence::optional,
                           jsonString([this](std::string_view name) { m_part.name.emplace(name); })}},
                         ofColumns, [this] { finishUnit(); });
  return jsonObject({
      {"format", Presence::required, jsonFormatName(m_json, s_format)},
      {"version", Presence::required, jsonFormatVersion(m_json)},
      {"all", Presence::optional, part({}, ofColumns, [this] { m_text.all = std::move(m_part); })},
      {"units", Presence::optional, jsonArray(unit)},
  });
}

JsonShape TextReader::part(std::vector<JsonMember> members, JsonShape const& columns,
                           std::function<void()> onEnd) {
  members.push_back({"limits", Presence::optional, limits()});
  members.push_back({"columns", Presence::optional, columns});
  return jsonObject(
      std::move(members),
      [this] {
        m_part = {};
        m_part.place = "/all";
      },
      std::move(onEnd));
}

JsonShape TextReader::number() {
  return jsonSeriesNumber([this](double value) { *m_value = value; });
}

JsonShape TextReader::limits() {
  auto const onName = [this](std::string_view key) {
    auto const type = kindOfKey(key);
    if (!type) m_json.fail(tr("one of {}", listOf(kindNames())), quote(key) + suggestion(key, kindNames()));
    auto const [limit, isNew] = m_part.limits.try_emplace(*type);
    m_value = &limit->second;
    return isNew;
  };
  return jsonMap(onName, number());
}

JsonShape TextReader::columns() {
  std::vector<JsonMember> families;
  families.reserve(s_families.size());
  for (auto const& family : s_families)
    families.push_back({std::string(family.name), Presence::optional, columnsOf(family)});
  return jsonObject(std::move(families));
}

JsonShape TextReader::columnsOf(Family const& family) {
  auto const onName = [this, &family, columns = familyColumns(family.dataType)](std::string_view key) {
    checkColumn(family, columns, key);
    auto const [limit, isNew] = m_part.columns.try_emplace({family.dataType, std::string(key)});
    m_value = &limit->second;
    return isNew;
  };
  return jsonMap(onName, number());
}

bool TextReader::hasKindOfItsOwn(FamilyColumn const& column) const {
  return m_defaults.getLimit(SimulationUnitId(), column.limitType) != nullptr;
}

void TextReader::checkColumn(Family const& family, std::vector<FamilyColumn> const& columns,
                             std::string_view key) const {
  std::vector<std::string_view> possible;
  FamilyColumn const* limitedByKind = nullptr;
  for (auto const& column : columns) {
    if (!hasKindOfItsOwn(column)) {
      if (column.key == key) return;
      possible.push_back(column.key);
    } else if (column.key == key) {
      limitedByKind = &column;
    }
  }
  auto const found = limitedByKind == nullptr
                         ? quote(key) + suggestion(key, possible)
                         : tr("{}, whose kind is {}", quote(key), limitTypeName(limitedByKind->limitType));
  m_json.fail(tr("a column of {} without a kind of limit ({})", family.name,
                 possible.empty() ? tr("none") : listOf(possible)),
              found);
}

void TextReader::finishUnit() {
  auto const position = m_text.units.size();
  m_part.place = fmt::format("/units/{}", position);
  if (m_part.id) {
    if (!m_text.unitsById.try_emplace(*m_part.id, position).second)
      m_json.fail(tr("an identifier that is unique in the file"), m_part.id->toString(), "/id");
  } else if (m_part.name) {
    if (!m_text.unitsByNameOnly.try_emplace(*m_part.name, position).second)
      m_json.fail(tr("a name that is unique among the units without an id"), quote(*m_part.name), "/name");
  } else {
    m_json.fail(tr("a member {}", tr("{} or {}", quote("id"), quote("name"))), tr("none"));
  }
  m_text.units.push_back(std::move(m_part));
}

// ---- what is done with it

[[noreturn]] void refuse(LimitsText const& text, std::string const& place, std::string const& expected,
                         std::string const& found) {
  throw Error(tr("{}: {}: expected {}, found {}", toPrintable(text.name), place, expected, found), text.name,
              place);
}

/// The parts of the text that are about a unit; each goes before those in front of it.
std::vector<Part const*> partsAbout(LimitsText const& text, SimulationUnit const& unit) {
  std::vector<Part const*> parts = {&text.all};
  auto const append = [&](auto const& positions, auto const& key) {
    auto const found = positions.find(key);
    if (found != positions.end()) parts.push_back(&text.units[found->second]);
  };
  append(text.unitsByNameOnly, unit.getSimulationUnitName());
  append(text.unitsById, unit.getID());
  return parts;
}

void setPart(LimitsText const& text, Part const& part, SimulationUnit const& unit,
             TablePropertiesData const& limits) {
  for (auto const& [type, value] : part.limits) {
    auto const limit = limits.getLimit(unit.getID(), type);
    if (!limit) {
      auto const key = keyOfKind(type);
      refuse(text, fmt::format("{}/limits/{}", part.place, key),
             tr("a kind of limit that the unit {} has (one of {})", quote(unit.getSimulationUnitName()),
                listOf(limitKindsOf(limits, unit.getID()))),
             quote(key));
    }
    limit->setLimit(value);
  }
}

/// The first of the columns that the part has limits of is refused.
void refuseColumns(LimitsText const& text, Part const& part) {
  for (auto const& [column, value] : part.columns) {
    auto const& [family, key] = column;
    refuse(text, fmt::format("{}/columns/{}/{}", part.place, familyName(family), key),
           tr("no limit of a column, which documents cannot hold"), shortestForm(value));
  }
}

void writeColumns(JsonWriter& json, ColumnLimits const& columns) {
  json.beginObject("columns");
  for (auto column = columns.begin(); column != columns.end();) {
    auto const family = column->first.first;
    json.beginObject(familyName(family));
    for (; column != columns.end() && column->first.first == family; ++column)
      json.number(column->first.second, column->second);
    json.endObject();
  }
  json.endObject();
}

}  // namespace

bool isLimitsText(std::string_view content) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (content.starts_with(byteOrderMark)) content.remove_prefix(byteOrderMark.size());
  auto const first = content.find_first_not_of(" \t\r\n");
  return first != content.npos && content[first] == '{';
}

LimitsText readLimitsText(std::string const& name, std::string_view text) {
  return namingWhatIsTooLarge(name, [&] { return TextReader(name).read(text); });
}

ResultLimits genLimits(LimitsText const& text, ResultsFile const& file) {
  ResultLimits limits{genDefaultLimits(file)};
  for (auto const& unit : file.units) {
    for (auto const* part : partsAbout(text, *unit.unit)) {
      setPart(text, *part, *unit.unit, *limits.collection);
      for (auto const& [column, value] : part->columns)
        limits.columns[unit.unit->getID()].insert_or_assign(column, value);
    }
  }
  return limits;
}

void checkForImport(LimitsText const& text, ResultsFile const& file) {
  std::set<SimulationUnitId> ids;
  std::set<std::string> names;
  for (auto const& unit : file.units) {
    ids.insert(unit.unit->getID());
    names.insert(unit.unit->getSimulationUnitName());
  }
  refuseColumns(text, text.all);
  for (auto const& part : text.units) {
    refuseColumns(text, part);
    if (part.id ? ids.contains(*part.id) : names.contains(*part.name)) continue;
    refuse(text, part.place + (part.id ? "/id" : "/name"),
           tr("the id or the name of one of the units of {} ({})", toPrintable(file.name),
              describeUnits(namedUnitsOf(file))),
           part.id ? part.id->toString() : quote(*part.name));
  }
}

void importLimits(LimitsText const& text, ResultsFile const& file, TablePropertiesData const& limits) {
  for (auto const& unit : file.units) {
    for (auto const* part : partsAbout(text, *unit.unit)) setPart(text, *part, *unit.unit, limits);
  }
}

std::string genLimitsText(ResultLimits const& limits, ResultsFile const& file,
                          std::vector<ResultsUnit const*> const& units) {
  JsonWriter json;
  json.beginObject();
  json.text("format", s_format);
  json.integer("version", 1);
  json.beginArray("units");
  auto const listed = listLimits(*limits.collection, file, units);
  for (auto limit = listed.begin(); limit != listed.end();) {
    auto const& unit = *limit->unit;
    json.beginObject();
    json.text("id", unit.getID().toString());
    json.text("name", unit.getSimulationUnitName());
    json.beginObject("limits");
    std::set<TablePropertyLimitType> kinds;
    for (; limit != listed.end() && limit->unit == &unit; ++limit) {
      auto const type = limit->limit->getType();
      if (kinds.insert(type).second) json.number(keyOfKind(type), limit->limit->getLimit());
    }
    json.endObject();
    auto const columns = limits.columns.find(unit.getID());
    writeColumns(json, columns == limits.columns.end() ? ColumnLimits() : columns->second);
    json.endObject();
  }
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables
