#include "result_tables/import/NameGuess.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <tuple>
#include <utility>

#include "result_tables/import/InputText.h"

namespace Kestrel::ResultTables {

namespace {

using enum HistoryRole;
using Kind = ToolForceDataType;

constexpr std::string_view s_separators = "_-./: ";

/// The letters and digits of a name, in lower case.
std::string folded(std::string_view name) {
  std::string out;
  for (char const c : name) {
    if (isLetter(c) || isDigit(c)) out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return out;
}

std::vector<std::string_view> wordsOf(std::string_view name) {
  std::vector<std::string_view> words;
  while (true) {
    auto const begin = name.find_first_not_of(s_separators);
    if (begin == name.npos) return words;
    auto const end = std::min(name.find_first_of(s_separators, begin), name.size());
    words.push_back(name.substr(begin, end - begin));
    name.remove_prefix(end);
  }
}

/// The row of a table whose `name` is that; null where there is none.
template <typename Rows>
auto const* rowOf(Rows const& rows, std::string_view name) {
  auto const found =
      std::find_if(rows.begin(), rows.end(), [name](auto const& row) { return row.name == name; });
  return found == rows.end() ? nullptr : &*found;
}

// ---- roles

struct NamedRole {
  std::string_view name;
  HistoryRole role;
};

constexpr auto s_roles = std::to_array<NamedRole>({
    {"fx", x},
    {"fy", y},
    {"fz", z},
    {"forcex", x},
    {"forcey", y},
    {"forcez", z},
    {"xforce", x},
    {"yforce", y},
    {"zforce", z},
    {"f", force},
    {"force", force},
    {"totalforce", force},
    {"fn", normalForce},
    {"normal", normalForce},
    {"normalforce", normalForce},
    {"closing", closingForce},
    {"closingforce", closingForce},
    {"supporting", supportingForce},
    {"supportingforce", supportingForce},
    {"ft", tangentialForce},
    {"tangential", tangentialForce},
    {"tangentialforce", tangentialForce},
    {"shear", tangentialForce},
    {"uz", normalDisplacement},
    {"vz", normalDisplacement},
    {"displacement", normalDisplacement},
    {"normaldisplacement", normalDisplacement},
    {"distance", distance},
    {"gap", gap},
});

constexpr auto s_parts = std::to_array<NamedRole>({
    {"tip", closingForce},
    {"closing", closingForce},
    {"upper", closingForce},
    {"rest", supportingForce},
    {"support", supportingForce},
    {"supporting", supportingForce},
    {"lower", supportingForce},
});

bool isLength(HistoryRole role) { return role == normalDisplacement || role == distance || role == gap; }

/// The role of a component. What a solver calls its components together says what the letters stand for.
HistoryRole roleOf(std::string_view quantity, std::string_view component) {
  auto const* const row = rowOf(s_roles, folded(component));
  if (row == nullptr) return none;
  auto const kind = folded(quantity);
  auto const expected = std::string_view(isLength(row->role) ? "displacement" : "force");
  return kind.empty() || kind.find(expected) != kind.npos ? row->role : none;
}

// ---- quantities of results files

using Columns = std::vector<GuessedColumn>;

Columns genClampColumns() {
  return {
      {"ClampNormalForce", {{normalForce}, {z}, {force}}},
      {"ClampClosingForce", {{closingForce}}},
      {"ClampSupportingForce", {{supportingForce}}},
      {"ClampTangentialForce", {{tangentialForce}, {x, y}}},
      {"ClampNormalDisplacement", {{normalDisplacement}}},
      {"ClampTeachingDistanceX", {}},
      {"ClampTeachingDistanceY", {}},
      {"ClampTeachingDistanceZ", {}},
  };
}

Columns genJoiningTongColumns() {
  return {
      {"JoiningTongNormalForce", {{normalForce}, {z}, {force}}},
      {"JoiningTongClosingForce", {{closingForce}}},
      {"JoiningTongSupportingForce", {{supportingForce}}},
      {"JoiningTongDistance", {{distance}}},
      {"JoiningTongGap", {{gap}}},
      {"JoiningTeachingX", {}},
      {"JoiningTeachingY", {}},
      {"JoiningTeachingZ", {}},
  };
}

/// The columns of each kind of tool.
std::vector<std::pair<Kind, Columns>> const& columnsByKind() {
  static std::vector<std::pair<Kind, Columns>> const rows = {
      {Kind::clamp, genClampColumns()},
      {Kind::bolt, genClampColumns()},
      {Kind::pilot, {{"PilotForce", {{force}, {x, y}}}}},
      {Kind::tool, {{"TotalToolForces", {{force}, {x, y, z}, {normalForce}}}}},
      {Kind::spotWeld, {{"JoinForceN", {{normalForce}, {z}, {force}}}, {"", {{tangentialForce}, {x, y}}}}},
      {Kind::joiningTong, genJoiningTongColumns()},
      {Kind::suctionZone, {{"SuctionZoneAbsForce", {{force}, {x, y, z}}}, {"SuctionDistance", {{distance}}}}},
  };
  return rows;
}

std::string_view keyOf(std::string_view component) {
  auto const name = folded(component);
  if (name.empty()) return {};
  for (auto const& [kind, columns] : columnsByKind()) {
    for (auto const& column : columns) {
      if (folded(column.quantity) == name) return column.quantity;
    }
  }
  return {};
}

// ---- physical units

struct PhysicalUnit {
  std::string_view name;
  bool isLength;
  double scale;
};

constexpr auto s_physicalUnits = std::to_array<PhysicalUnit>({
    {"N", false, 1.0},
    {"daN", false, 10.0},
    {"kN", false, 1e3},
    {"MN", false, 1e6},
    {"mm", true, 1.0},
    {"cm", true, 10.0},
    {"m", true, 1e3},
    {"µm", true, 1e-3},
    {"um", true, 1e-3},
});

// ---- names of entities

/// A first word that stands for an operation or a station: "OP10", "ST3".
bool isOperation(std::string_view word) {
  auto const letters = std::min(word.find_first_of("0123456789"), word.size());
  auto const name = folded(word.substr(0, letters));
  return letters < word.size() && word.find_first_not_of("0123456789", letters) == word.npos &&
         (name == "op" || name == "st" || name == "station");
}

/// Splits the name of an entity. The tool's name ends with the first word that has a digit, or before a last
/// word that names a part.
void guessNames(std::string_view entity, HistoryGuess& guess) {
  auto words = wordsOf(entity);
  if (words.size() > 1 && isOperation(words.front())) {
    guess.unit = words.front();
    words.erase(words.begin());
  }
  if (words.empty()) return;
  auto const numbered = std::find_if(words.begin(), words.end(), [](std::string_view word) {
    return std::any_of(word.begin(), word.end(), isDigit);
  });
  auto last = numbered == words.end() ? words.end() - 1 : numbered;
  auto const* const part = rowOf(s_parts, folded(words.back()));
  if (part != nullptr && words.size() > 1) {
    guess.part = part->role;
    if (last == words.end() - 1) --last;
  }
  auto const* const begin = words.front().data();
  guess.tool.assign(begin, last->data() + last->size());
}

/// The entity and the component that the name of a column is made of: "C1" and "fz" of "C1.fz" and "C1 fz".
std::pair<std::string_view, std::string_view> splitColumn(std::string_view name) {
  if (roleOf({}, name) != none || !keyOf(name).empty()) return {{}, name};
  auto const point = name.rfind('.');
  auto const last = point != name.npos ? point : name.find_last_of(s_separators);
  if (last == name.npos) return {name, {}};
  auto const component = name.substr(last + 1);
  bool const isKnown = roleOf({}, component) != none || !keyOf(component).empty();
  return point != name.npos || isKnown ? std::pair(name.substr(0, last), component)
                                       : std::pair(name, std::string_view());
}

}  // namespace

HistoryGuess guessHistory(History const& history) {
  auto const& table = *history.table;
  std::string_view entity = table.entity;
  std::string_view component = table.components[history.component];
  if (entity.empty()) std::tie(entity, component) = splitColumn(component);
  HistoryGuess guess;
  guessNames(entity, guess);
  guess.key = keyOf(component);
  guess.role = roleOf(table.quantity, component);
  if (table.units.empty()) return guess;
  auto const* const unit = rowOf(s_physicalUnits, table.units[history.component]);
  if (unit == nullptr) return guess;
  guess.scale = unit->scale;
  if (component.empty() && !unit->isLength) guess.role = force;
  if (guess.role != none && isLength(guess.role) != unit->isLength) guess.role = none;
  return guess;
}

std::optional<ToolForceDataType> guessToolKind(std::string_view tool) {
  struct Word {
    std::string_view name;
    Kind kind;
  };
  // One or two letters say something only before a number.
  static constexpr auto words = std::to_array<Word>({
      {"c", Kind::clamp},
      {"cl", Kind::clamp},
      {"clamp", Kind::clamp},
      {"p", Kind::pilot},
      {"pin", Kind::pilot},
      {"pilot", Kind::pilot},
      {"pilots", Kind::pilot},
      {"b", Kind::bolt},
      {"bolt", Kind::bolt},
      {"screw", Kind::bolt},
      {"w", Kind::spotWeld},
      {"sw", Kind::spotWeld},
      {"weld", Kind::spotWeld},
      {"spot", Kind::spotWeld},
      {"spotweld", Kind::spotWeld},
      {"jt", Kind::joiningTong},
      {"tong", Kind::joiningTong},
      {"gun", Kind::joiningTong},
      {"sz", Kind::suctionZone},
      {"cup", Kind::suctionZone},
      {"suction", Kind::suctionZone},
      {"vacuum", Kind::suctionZone},
  });
  auto const wordsOfTool = wordsOf(tool);
  for (std::size_t i = 0; i < wordsOfTool.size(); ++i) {
    auto const word = wordsOfTool[i];
    auto const letters = word.substr(0, word.find_first_of("0123456789"));
    bool const isNumbered =
        letters.size() < word.size() || (i + 1 < wordsOfTool.size() && isDigit(wordsOfTool[i + 1].front()));
    auto const* const row = rowOf(words, folded(letters));
    if (row != nullptr && (row->name.size() > 2 || isNumbered)) return row->kind;
  }
  return std::nullopt;
}

std::vector<GuessedColumn> const& guessedColumnsOf(ToolForceDataType kind) {
  static Columns const none;
  for (auto const& [each, columns] : columnsByKind()) {
    if (each == kind) return columns;
  }
  return none;
}

ToolForceDataType toolKindOfQuantity(std::string_view quantity) {
  for (auto const& [kind, columns] : columnsByKind()) {
    bool const hasIt = std::any_of(columns.begin(), columns.end(),
                                   [quantity](auto const& column) { return column.quantity == quantity; });
    if (hasIt) return kind;
  }
  return Kind::tool;
}

std::string_view guessToolFamily(std::string_view tool) {
  auto const name = folded(tool);
  auto const has = [&name](std::string_view word) { return name.find(word) != name.npos; };
  if (has("roller")) return "Rollers";
  if (has("steel")) return "Steels";
  return has("hem") ? "HemmingBed" : "ClampingTools";
}

}  // namespace Kestrel::ResultTables
