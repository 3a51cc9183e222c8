#include "result_tables/tables/RunTable.h"

#include <algorithm>
#include <limits>
#include <list>
#include <map>
#include <tuple>
#include <utility>

#include "result_tables/tables/Summary.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::uint8_t s_isThere = 1;
constexpr std::uint8_t s_isNaN = 2;
constexpr std::uint8_t s_isValid = 4;
constexpr std::uint8_t s_isExceeded = 8;

bool hasSameColumns(RunSectionValues const& one, RunSectionValues const& other) {
  return std::ranges::equal(one.columns, other.columns, [](RunQuantity const& a, RunQuantity const& b) {
    return a.key == b.key && a.unit == b.unit;
  });
}

bool hasSameRows(RunSectionValues const& one, RunSectionValues const& other) {
  return std::ranges::equal(one.rows, other.rows, [](RunRow const& a, RunRow const& b) {
    return a.item == b.item && a.subGroup == b.subGroup &&
           std::ranges::equal(a.cells, b.cells, {}, &RunCell::column, &RunCell::column);
  });
}

bool hasSameLayout(RunValues const& one, RunValues const& other) {
  return std::ranges::equal(one.sections, other.sections,
                            [](RunSectionValues const& a, RunSectionValues const& b) {
                              return a.unit == b.unit && a.unitId == b.unitId && a.family == b.family &&
                                     a.name == b.name && hasSameColumns(a, b) && hasSameRows(a, b);
                            });
}

}  // namespace

// ---- the table

RunNumber RunTable::number(std::size_t run, RunTableColumn const& column) const {
  auto const& numbers = m_numbers[run];
  if (column.place >= numbers.values.size()) return {};
  auto const marks = numbers.marks[column.place];
  return {numbers.values[column.place], (marks & s_isThere) != 0, (marks & s_isNaN) != 0,
          (marks & s_isValid) != 0, (marks & s_isExceeded) != 0};
}

std::optional<double> RunTable::limit(std::size_t run, RunTableColumn const& column) const {
  auto const& limits = m_numbers[run].limits;
  return column.quantity < limits.size() ? limits[column.quantity] : std::nullopt;
}

bool RunTable::isAmbiguous(std::string const& unit) const {
  std::string const* id = nullptr;
  for (auto const& section : m_sections) {
    if (section.unit != unit) continue;
    if (id != nullptr && *id != section.unitId) return true;
    id = &section.unitId;
  }
  return false;
}

// ---- what the runs have in common

/// Which place each value of a run has in the table.
class RunTableBuilder::Layout {
 public:
  explicit Layout(RunTable& table) : m_table(&table) {}

  /// Finds the places of the values of a run, and appends those that are new to the table.
  void read(RunValues const& run);

  /// Of the run that was read last, by section: the quantities of its columns.
  [[nodiscard]] std::vector<std::vector<std::size_t>> const& quantities() const { return m_quantities; }
  /// Of the same, by value: its place.
  [[nodiscard]] std::vector<std::size_t> const& places() const { return m_places; }

  /// The columns in order.
  [[nodiscard]] std::vector<RunTableColumn> sorted() const;

 private:
  /// Things that are numbered as they are met, in an order that fits each sequence in which they come.
  class MergedOrder {
   public:
    /// Those that are new go behind the one before them or, where that is none, before the one behind them;
    /// where there is neither, to the end.
    void merge(std::vector<std::size_t> const& sequence) {
      std::vector<std::size_t> waiting;
      std::optional<Place> last;
      for (auto const number : sequence) {
        if (number < m_places.size() && m_places[number]) {
          last = m_places[number];
          for (auto const before : waiting) insert(before, *last);
          waiting.clear();
        } else if (last) {
          last = insert(number, std::next(*last));
        } else {
          waiting.push_back(number);
        }
      }
      for (auto const number : waiting) insert(number, m_order.end());
    }

    [[nodiscard]] std::list<std::size_t> const& order() const { return m_order; }

   private:
    using Place = std::list<std::size_t>::iterator;

    Place insert(std::size_t number, Place before) {
      if (number >= m_places.size()) m_places.resize(number + 1);
      auto const place = m_order.insert(before, number);
      m_places[number] = place;
      return place;
    }

    std::list<std::size_t> m_order;
    std::vector<std::optional<Place>> m_places;  ///< by number
  };

  struct Unit {
    std::string name;
    std::string id;

    friend bool operator==(Unit const&, Unit const&) = default;
  };

  using SectionKey = std::tuple<std::size_t, MaxValueGroupContainer::DataType, std::string, std::size_t>;
  using QuantityKey = std::tuple<std::size_t, std::string, std::string, std::size_t>;
  using ElementKey = std::tuple<std::size_t, std::string, std::string, std::size_t>;
  using Counts = std::map<std::pair<std::string_view, std::string_view>, std::size_t>;

  [[nodiscard]] static std::size_t indexOf(std::vector<Unit>& units, Unit const& unit);
  [[nodiscard]] std::vector<std::size_t> unitsOf(RunValues const& run);
  [[nodiscard]] std::size_t unitNamed(Unit const& unit, std::vector<Unit> const& ofRun);
  [[nodiscard]] std::vector<std::size_t> sectionsOf(RunValues const& run);
  void readColumns(RunSectionValues const& section, std::size_t number);
  void readRows(RunSectionValues const& section, std::size_t number);
  [[nodiscard]] std::size_t placeOf(std::size_t element, std::size_t quantity);

  RunTable* m_table;
  std::vector<Unit> m_units;
  std::map<SectionKey, std::size_t> m_sectionNumbers;
  std::map<QuantityKey, std::size_t> m_quantityNumbers;
  std::map<ElementKey, std::size_t> m_elementNumbers;
  std::vector<std::map<std::size_t, std::size_t>> m_columns;  ///< by element and quantity: the column
  MergedOrder m_sectionOrder;
  std::vector<MergedOrder> m_elementOrder;   ///< by section
  std::vector<MergedOrder> m_quantityOrder;  ///< by section
  std::vector<std::vector<std::size_t>> m_quantities;
  std::vector<std::size_t> m_places;
};

void RunTableBuilder::Layout::read(RunValues const& run) {
  m_quantities.clear();
  m_places.clear();
  auto const sections = sectionsOf(run);
  m_sectionOrder.merge(sections);
  m_elementOrder.resize(m_table->m_sections.size());
  m_quantityOrder.resize(m_table->m_sections.size());
  for (std::size_t i = 0; i < sections.size(); ++i) {
    readColumns(run.sections[i], sections[i]);
    readRows(run.sections[i], sections[i]);
  }
}

/// Appends it where it is not there. Returns its index.
std::size_t RunTableBuilder::Layout::indexOf(std::vector<Unit>& units, Unit const& unit) {
  auto const found = std::ranges::find(units, unit);
  if (found != units.end()) return static_cast<std::size_t>(found - units.begin());
  units.push_back(unit);
  return units.size() - 1;
}

/// By section of the run.
std::vector<std::size_t> RunTableBuilder::Layout::unitsOf(RunValues const& run) {
  std::vector<Unit> ofRun;
  std::vector<std::size_t> indices;
  for (auto const& section : run.sections) indices.push_back(indexOf(ofRun, {section.unit, section.unitId}));
  std::vector<std::size_t> numbers;
  numbers.reserve(ofRun.size());
  for (auto const& unit : ofRun) numbers.push_back(unitNamed(unit, ofRun));
  for (auto& index : indices) index = numbers[index];
  return indices;
}

std::size_t RunTableBuilder::Layout::unitNamed(Unit const& unit, std::vector<Unit> const& ofRun) {
  auto const found = std::ranges::find(m_units, unit.id, &Unit::id);
  if (found != m_units.end()) return static_cast<std::size_t>(found - m_units.begin());
  auto const isLeftOver = [](Unit const& candidate, std::vector<Unit> const& others) {
    return std::ranges::find(others, candidate.id, &Unit::id) == others.end();
  };
  std::vector<std::size_t> candidates;
  for (std::size_t i = 0; i < m_units.size(); ++i) {
    if (m_units[i].name == unit.name && isLeftOver(m_units[i], ofRun)) candidates.push_back(i);
  }
  auto const rivals = std::ranges::count_if(
      ofRun, [&](Unit const& other) { return other.name == unit.name && isLeftOver(other, m_units); });
  if (candidates.size() == 1 && rivals == 1) return candidates.front();
  m_units.push_back(unit);
  return m_units.size() - 1;
}

std::vector<std::size_t> RunTableBuilder::Layout::sectionsOf(RunValues const& run) {
  auto const units = unitsOf(run);
  std::map<SectionKey, std::size_t> met;
  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < run.sections.size(); ++i) {
    auto const& section = run.sections[i];
    SectionKey key{units[i], section.family, section.name, 0};
    std::get<3>(key) = met[key]++;
    auto const [entry, isNew] = m_sectionNumbers.emplace(key, m_table->m_sections.size());
    auto const& unit = m_units[units[i]];
    if (isNew) m_table->m_sections.push_back({unit.name, unit.id, section.family, section.name});
    numbers.push_back(entry->second);
  }
  return numbers;
}

void RunTableBuilder::Layout::readColumns(RunSectionValues const& section, std::size_t number) {
  Counts met;
  std::vector<std::size_t> numbers;
  for (auto const& column : section.columns) {
    auto const [entry, isNew] = m_quantityNumbers.emplace(
        QuantityKey{number, column.key, column.unit, met[{column.key, column.unit}]++},
        m_table->m_quantities.size());
    if (isNew) m_table->m_quantities.push_back({column.key, column.unit, {}});
    numbers.push_back(entry->second);
  }
  m_quantityOrder[number].merge(numbers);
  m_quantities.push_back(std::move(numbers));
}

void RunTableBuilder::Layout::readRows(RunSectionValues const& section, std::size_t number) {
  Counts met;
  std::vector<std::size_t> numbers;
  for (auto const& row : section.rows) {
    auto const occurrence = met[{row.subGroup, row.item}]++;
    auto const [entry, isNew] = m_elementNumbers.emplace(
        ElementKey{number, row.subGroup, row.item, occurrence}, m_table->m_elements.size());
    if (isNew) {
      m_table->m_elements.push_back({number, row.subGroup, row.item, occurrence});
      m_columns.emplace_back();
    }
    numbers.push_back(entry->second);
    for (auto const& cell : row.cells)
      m_places.push_back(placeOf(entry->second, m_quantities.back()[cell.column]));
  }
  m_elementOrder[number].merge(numbers);
}

std::size_t RunTableBuilder::Layout::placeOf(std::size_t element, std::size_t quantity) {
  auto& columns = m_table->m_columns;
  auto const [entry, isNew] = m_columns[element].emplace(quantity, columns.size());
  if (isNew) columns.push_back({element, quantity, columns.size(), {}, {}});
  return entry->second;
}

std::vector<RunTableColumn> RunTableBuilder::Layout::sorted() const {
  std::vector<RunTableColumn> columns;
  columns.reserve(m_table->m_columns.size());
  for (auto const section : m_sectionOrder.order()) {
    for (auto const element : m_elementOrder[section].order()) {
      for (auto const quantity : m_quantityOrder[section].order()) {
        auto const found = m_columns[element].find(quantity);
        if (found != m_columns[element].end()) columns.push_back(m_table->m_columns[found->second]);
      }
    }
  }
  return columns;
}

// ---- the builder

RunTableBuilder::RunTableBuilder() : m_layout(std::make_unique<Layout>(m_table)) {}
RunTableBuilder::~RunTableBuilder() = default;

void RunTableBuilder::add(RunValues&& run) {
  if (m_table.m_runs.empty() || !hasSameLayout(run, m_last)) m_layout->read(run);
  addNumbers(run);
  m_table.m_runs.push_back(run.run);
  m_last = std::move(run);
}

void RunTableBuilder::addNumbers(RunValues const& run) {
  auto& numbers = m_table.m_numbers.emplace_back();
  numbers.values.resize(m_table.m_columns.size());
  numbers.marks.resize(m_table.m_columns.size());
  numbers.limits.resize(m_table.m_quantities.size());
  auto place = m_layout->places().begin();
  for (std::size_t i = 0; i < run.sections.size(); ++i) {
    auto const& section = run.sections[i];
    auto const& quantities = m_layout->quantities()[i];
    for (std::size_t k = 0; k < quantities.size(); ++k) {
      auto const& limit = section.columns[k].limit;
      if (!limit) continue;
      m_table.m_quantities[quantities[k]].limit = limit;
      numbers.limits[quantities[k]] = limit->value;
    }
    for (auto const& row : section.rows) {
      for (auto const& cell : row.cells) addValue(row, cell, section.columns[cell.column], *place++);
    }
  }
}

void RunTableBuilder::addValue(RunRow const& row, RunCell const& cell, RunQuantity const& quantity,
                               std::size_t place) {
  auto const& value = cell.value;
  auto& numbers = m_table.m_numbers.back();
  numbers.values[place] = value.isNaN() ? std::numeric_limits<double>::quiet_NaN() : value.value;
  numbers.marks[place] =
      static_cast<std::uint8_t>((value.hasData() ? s_isThere : 0) | (value.isNaN() ? s_isNaN : 0) |
                                (row.isValid ? s_isValid : 0) | (value.isExceeded ? s_isExceeded : 0));
  auto& column = m_table.m_columns[place];
  column.statistics.add(value.value, row.isValid, value.origin.count > 0, quantity.limit.has_value(),
                        value.isExceeded);
  column.worst = std::max(column.worst, utilisationOf(value, quantity.limit, row.isValid));
  if (value.isExceeded || (quantity.limit && value.origin.nanCount > 0)) ++column.findings;
}

RunTable RunTableBuilder::take() {
  m_table.m_columns = m_layout->sorted();
  return std::move(m_table);
}

}  // namespace Kestrel::ResultTables
