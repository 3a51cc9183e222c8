#include "result_tables/import/CalculixHistories.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <unordered_map>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/InputText.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::string_view s_beforeSet = " for set ";
constexpr std::string_view s_beforeTime = " and time ";

/// The next run of characters other than blanks, taken off the front of `rest`; empty at the end.
std::string_view takeWord(std::string_view& rest) {
  auto const isBlank = [](char c) { return c == ' ' || c == '\t'; };
  std::size_t begin = 0;
  while (begin < rest.size() && isBlank(rest[begin])) ++begin;
  std::size_t end = begin;
  while (end < rest.size() && !isBlank(rest[end])) ++end;
  auto const word = rest.substr(begin, end - begin);
  rest.remove_prefix(end);
  return word;
}

std::vector<std::string> splitAtCommas(std::string_view list) {
  std::vector<std::string> parts;
  for (std::size_t comma = 0; comma != list.npos;) {
    comma = list.find(',');
    parts.emplace_back(list.substr(0, comma));
    if (comma != list.npos) list.remove_prefix(comma + 1);
  }
  return parts;
}

/// The table that the blocks under `title`, a header without its time, belong to; none where they are not the
/// values of a node set. The list of an element print has blanks in it ("elem, integ.pnt.,sxx").
std::optional<HistoryTable> tableOfTitle(std::string_view title) {
  auto const set = title.find(s_beforeSet);
  if (set == title.npos) return std::nullopt;
  HistoryTable table;
  table.entity = trimmed(title.substr(set + s_beforeSet.size()));
  auto quantity = trimmed(title.substr(0, set));
  auto const list = quantity.find(" (");
  if (list == quantity.npos) {
    table.components.emplace_back(quantity);
    return table;
  }
  auto const components = quantity.substr(list + 2, quantity.size() - list - 3);
  if (quantity.back() != ')' || components.find_first_of(" (") != components.npos) return std::nullopt;
  table.components = splitAtCommas(components);
  table.quantity = quantity.substr(0, list);
  return table;
}

class CalculixReader {
 public:
  CalculixReader(std::string const& source, std::string_view text)
      : m_source(source), m_rest(text), m_histories(source) {}

  Histories read();

 private:
  /// What is known of all blocks under one title.
  struct Block {
    HistoryTable* table = nullptr;  ///< null: passed over
    bool hasNodes = true;
  };

  bool nextLine();
  Block const* blockOfHeader();
  Block const& blockOfTitle(std::string_view title);
  void readTime(HistoryTable& table, std::string_view text) const;
  void readRows(Block const& block);
  void readNode(HistoryTable& table, std::size_t row, std::string_view word) const;
  void readRow(Block const& block, std::size_t row);
  [[noreturn]] void fail(std::string_view expected, std::string_view found) const {
    failAtLine(m_source, m_lineNumber, expected, found);
  }

  std::string const& m_source;
  std::string_view m_rest;
  std::string_view m_line;  ///< without blanks at its ends
  std::size_t m_lineNumber = 0;
  Histories m_histories;
  std::unordered_map<std::string_view, Block> m_blocks;  ///< by title, which lies in the text
};

Histories CalculixReader::read() {
  bool passesOver = false;
  while (nextLine()) {
    if (m_line.empty()) continue;
    if (auto const* block = blockOfHeader()) {
      passesOver = block->table == nullptr;
      if (!passesOver) readRows(*block);
    } else if (auto line = m_line; !passesOver && parseNumber(takeWord(line))) {
      fail(tr("the header of a block"), quote(m_line));
    } else {
      passesOver = true;
    }
  }
  if (m_histories.empty()) {
    throw Error(tr("{}: expected blocks such as {}, found none", toPrintable(m_source),
                   quote("forces (fx,fy,fz) for set NAME and time T")));
  }
  m_histories.index();
  return std::move(m_histories);
}

bool CalculixReader::nextLine() {
  if (m_rest.empty()) return false;
  ++m_lineNumber;
  auto const end = m_rest.find('\n');
  if (end == m_rest.npos) fail(tr("the end of the line"), tr("the end of the file"));
  m_line = trimmed(m_rest.substr(0, end));
  m_rest.remove_prefix(end + 1);
  return true;
}

/// The block that the current line begins, its time read; null where the line begins none.
CalculixReader::Block const* CalculixReader::blockOfHeader() {
  auto const time = m_line.rfind(s_beforeTime);
  if (time == m_line.npos) {
    if (tableOfTitle(m_line)) fail(tr("\"and time\" and a number at the end of the header"), quote(m_line));
    return nullptr;
  }
  auto const& block = blockOfTitle(m_line.substr(0, time));
  if (block.table != nullptr) readTime(*block.table, trimmed(m_line.substr(time + s_beforeTime.size())));
  return &block;
}

CalculixReader::Block const& CalculixReader::blockOfTitle(std::string_view title) {
  auto const [entry, isNew] = m_blocks.try_emplace(title);
  auto& block = entry->second;
  if (!isNew) return block;
  if (auto table = tableOfTitle(title)) {
    block.table = &m_histories.add(std::move(*table));
    block.hasNodes = !title.starts_with("total ");
  }
  return block;
}

void CalculixReader::readTime(HistoryTable& table, std::string_view text) const {
  auto const time = parseNumber(text);
  if (!time || !std::isfinite(*time)) fail(tr("a time at the end of the header"), quote(text));
  if (!table.times.empty() && *time < table.times.back()) {
    fail(tr("a time not before {}", shortestForm(table.times.back())), shortestForm(*time));
  }
  table.times.push_back(*time);
}

void CalculixReader::readRows(Block const& block) {
  bool more = nextLine();
  while (more && m_line.empty()) more = nextLine();
  std::size_t row = 0;
  for (; more && !m_line.empty(); more = nextLine()) readRow(block, row++);
  if (row == 0) fail(tr("rows of values after the header"), tr("the end of the file"));
  if (block.hasNodes && row != block.table->nodes.size()) {
    fail(tr("as many nodes as at the times before ({})", block.table->nodes.size()), std::to_string(row));
  }
}

void CalculixReader::readRow(Block const& block, std::size_t row) {
  auto& table = *block.table;
  auto rest = m_line;
  if (block.hasNodes) {
    readNode(table, row, takeWord(rest));
  } else if (row > 0) {
    fail(tr("a blank line after the row of totals"), quote(m_line));
  }
  auto const count = table.components.size();
  for (std::size_t i = 0; i < count; ++i) {
    auto const word = takeWord(rest);
    if (word.empty()) fail(tr("{} values in the row", count), std::to_string(i));
    auto const value = parseNumber(word);
    if (!value) fail(tr("a number"), quote(word));
    table.values.push_back(*value);
  }
  auto const surplus = takeWord(rest);
  bool const isInLocalAxes = surplus == "L" && takeWord(rest).empty();
  if (!surplus.empty() && !isInLocalAxes) {
    fail(tr("the end of the line after {} values", count), quote(surplus));
  }
}

/// The nodes of a set are learnt from its first block; every later one must repeat them.
void CalculixReader::readNode(HistoryTable& table, std::size_t row, std::string_view word) const {
  std::int64_t node = 0;
  auto const* const end = word.data() + word.size();
  auto const result = std::from_chars(word.data(), end, node);
  if (result.ec != std::errc() || result.ptr != end) fail(tr("the number of a node"), quote(word));
  if (table.times.size() == 1) {
    table.nodes.push_back(node);
  } else if (row >= table.nodes.size()) {
    fail(tr("as many nodes as at the times before ({})", table.nodes.size()), tr("more"));
  } else if (node != table.nodes[row]) {
    fail(tr("node {} as at the times before", table.nodes[row]), std::to_string(node));
  }
}

}  // namespace

Histories readCalculixHistories(std::string const& source, std::string_view text) {
  refuseWhatIsNotUtf8(source, text);
  return CalculixReader(source, text).read();
}

}  // namespace Kestrel::ResultTables
