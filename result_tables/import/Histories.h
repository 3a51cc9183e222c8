#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Kestrel::ResultTables {

/// One row of an element print: the numbers before its values.
struct ElementRow {
  std::int64_t element = 0;  ///< of a contact print: of the slave node or slave element
  std::int64_t point = 0;    ///< number of the integration point; of a contact print: of the face; 0: none

  [[nodiscard]] bool operator==(ElementRow const&) const = default;
};

/// Some quantities of one entity at the same times. Each time has the rows of `nodes`, or in an element print
/// rows of its own, whose number may change: elements are removed, contact opens.
struct HistoryTable {
  std::string entity;    ///< node set, measured point; empty where columns are named as a whole
  std::string quantity;  ///< what the solver calls the components together; may be empty
  std::vector<std::string> components;  ///< at least one
  std::vector<std::int64_t> nodes;  ///< numbers of the rows that each time has; empty: one row without number
  std::vector<double> times;        ///< finite, never decreasing within a step
  std::vector<double> values;       ///< by time, within it by row, within it by component
  std::vector<std::string> units = {};  ///< of the components, as the input has them; empty: it does not say
  std::string timeUnit = {};            ///< likewise
  /// Of an element print the rows of all times, one time after the other; otherwise empty.
  std::vector<ElementRow> elementRows{};
  std::vector<std::size_t> rowEnds{};  ///< of an element print, by time: how many rows end with it
  /// By time the number of the solver's step, never decreasing; empty: the input has no steps.
  std::vector<std::uint32_t> steps{};

  [[nodiscard]] bool hasElements() const { return !elementRows.empty(); }
  /// REQUIRES: no element print.
  [[nodiscard]] std::size_t rowsPerTime() const { return nodes.empty() ? 1 : nodes.size(); }
  /// The index of the first row of a time among the rows of all times; of `times.size()`: how many there are.
  [[nodiscard]] std::size_t firstRow(std::size_t time) const {
    if (!hasElements()) return time * rowsPerTime();
    return time == 0 ? 0 : rowEnds[time - 1];
  }
  [[nodiscard]] std::size_t rowCount(std::size_t time) const { return firstRow(time + 1) - firstRow(time); }
  [[nodiscard]] double value(std::size_t time, std::size_t row, std::size_t component) const {
    return values[(firstRow(time) + row) * components.size() + component];
  }
};

/// One component of a table: the history of one quantity.
struct History {
  HistoryTable const* table = nullptr;
  std::size_t component = 0;
};

/// Everything that an input holds. The tables are filled on one thread and never move; after `index` the
/// histories may be looked up on any number of threads.
class Histories {
 public:
  /// `source` is what messages call the input.
  explicit Histories(std::string source) : m_source(std::move(source)) {}
  Histories(Histories const&) = delete;
  Histories& operator=(Histories const&) = delete;
  Histories(Histories&&) = default;

  [[nodiscard]] std::string const& source() const { return m_source; }

  /// Appends a table, owned by this object.
  HistoryTable& add(HistoryTable table);

  /// Keeps a line for who reads the input: something that it holds and that is no history.
  void addNote(std::string note) { m_notes.push_back(std::move(note)); }
  [[nodiscard]] std::vector<std::string> const& notes() const { return m_notes; }

  /// Makes the names of all tables known. To be called once, after the last `add`.
  void index();

  /// The histories that `name` stands for: none, one, or several between which the name does not decide. A
  /// history is called "entity.component" (without the point where it has no entity), and also
  /// "entity.quantity component" where its table has a quantity. O(1).
  [[nodiscard]] std::vector<History> const& find(std::string_view name) const;

  /// The name that tells `history` from all others.
  [[nodiscard]] static std::string fullName(History const& history);

  /// The shortest of the names that find `history` and no other; the full one where there is none.
  [[nodiscard]] std::string usualName(History const& history) const;

  /// For a message: names in quotation marks, those of the entity that `name` begins with or, where there is
  /// no such entity, of all; cut after eight. Linear in the number of histories.
  [[nodiscard]] std::string namesLike(std::string_view name) const;

  [[nodiscard]] bool empty() const { return m_tables.empty(); }

  /// In the order of the input.
  [[nodiscard]] std::deque<HistoryTable> const& tables() const { return m_tables; }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  std::string m_source;
  std::deque<HistoryTable> m_tables;
  std::vector<std::string> m_notes;
  std::unordered_map<std::string, std::vector<History>, Hash, std::equal_to<>> m_byName;
};

}  // namespace Kestrel::ResultTables
