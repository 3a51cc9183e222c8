#include "result_tables/import/Histories.h"

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

std::string withEntity(HistoryTable const& table, std::string const& component) {
  return table.entity.empty() ? component : table.entity + '.' + component;
}

std::string shortName(History const& history) {
  return withEntity(*history.table, history.table->components[history.component]);
}

}  // namespace

HistoryTable& Histories::add(HistoryTable table) { return m_tables.emplace_back(std::move(table)); }

void Histories::index() {
  for (auto const& table : m_tables) {
    for (std::size_t i = 0; i < table.components.size(); ++i) {
      History const history{&table, i};
      m_byName[shortName(history)].push_back(history);
      if (!table.quantity.empty()) m_byName[fullName(history)].push_back(history);
    }
  }
}

std::vector<History> const& Histories::find(std::string_view name) const {
  static std::vector<History> const none;
  auto const found = m_byName.find(name);
  return found == m_byName.end() ? none : found->second;
}

std::string Histories::fullName(History const& history) {
  auto const& table = *history.table;
  auto const& component = table.components[history.component];
  return withEntity(table, table.quantity.empty() ? component : table.quantity + ' ' + component);
}

std::string Histories::usualName(History const& history) const {
  auto name = shortName(history);
  return find(name).size() > 1 ? fullName(history) : name;
}

std::string Histories::namesLike(std::string_view name) const {
  constexpr std::size_t most = 8;
  auto const isNear = [name](HistoryTable const& table) {
    return !table.entity.empty() && name.starts_with(table.entity + '.');
  };
  std::string all;
  std::string near;
  std::size_t allCount = 0;
  std::size_t nearCount = 0;
  auto const append = [](std::string& list, std::size_t& count, std::string const& text) {
    if (++count <= most) list += (list.empty() ? "" : ", ") + quote(text);
  };
  for (auto const& table : m_tables) {
    bool const tableIsNear = isNear(table);
    for (std::size_t i = 0; i < table.components.size(); ++i) {
      auto const usual = usualName({&table, i});
      append(all, allCount, usual);
      if (tableIsNear) append(near, nearCount, usual);
    }
  }
  auto const& list = near.empty() ? all : near;
  auto const count = near.empty() ? allCount : nearCount;
  return count > most ? tr("{}, … ({} in all)", list, count) : list;
}

}  // namespace Kestrel::ResultTables
