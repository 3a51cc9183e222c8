#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Kestrel::ResultTables {

/// Some quantities of one entity at the same times.
struct HistoryTable {
  std::string entity;    ///< node set, measured point; empty where columns are named as a whole
  std::string quantity;  ///< what the solver calls the components together; may be empty
  std::vector<std::string> components;  ///< at least one
  std::vector<std::int64_t> nodes;  ///< numbers of the rows that each time has; empty: one row without number
  std::vector<double> times;        ///< finite, never decreasing
  std::vector<double> values;       ///< by time, within it by node, within it by component

  [[nodiscard]] std::size_t rowsPerTime() const { return nodes.empty() ? 1 : nodes.size(); }
  [[nodiscard]] double value(std::size_t time, std::size_t row, std::size_t component) const {
    return values[(time * rowsPerTime() + row) * components.size() + component];
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

  /// Makes the names of all tables known. To be called once, after the last `add`.
  void index();

  /// The histories that `name` stands for: none, one, or several between which the name does not decide. A
  /// history is called "entity.component" (without the point where it has no entity), and also
  /// "entity.quantity component" where its table has a quantity. O(1).
  [[nodiscard]] std::vector<History> const& find(std::string_view name) const;

  /// The name that tells `history` from all others.
  [[nodiscard]] static std::string fullName(History const& history);

  /// For a message: names in quotation marks, those of the entity that `name` begins with or, where there is
  /// no such entity, of all; cut after eight. Linear in the number of histories.
  [[nodiscard]] std::string namesLike(std::string_view name) const;

  [[nodiscard]] bool empty() const { return m_tables.empty(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  std::string m_source;
  std::deque<HistoryTable> m_tables;
  std::unordered_map<std::string, std::vector<History>, Hash, std::equal_to<>> m_byName;
};

}  // namespace Kestrel::ResultTables
