#include "result_tables/import/CalculixHistories.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>
#include <deque>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/FastNumber.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/CalculixHeadings.h"
#include "result_tables/import/InputText.h"

namespace Kestrel::ResultTables {

namespace {

using Rows = CalculixHeading::Rows;

/// The n-th blocks that one print has in each increment.
struct Occurrence {
  std::vector<HistoryTable*> tables;  ///< one for each quantity
  bool repeatsTheFirst = false;       ///< every block has the values of the first one in its increment
};

struct Block;

/// All blocks under one title.
struct Print {
  std::string kind;                          ///< for messages
  std::optional<CalculixHeading> heading;    ///< none: passed over
  std::vector<CalculixQuantity> quantities;  ///< of a row, from left to right; learnt from the first block
  std::vector<std::int64_t> labels;          ///< of the last block
  std::vector<std::size_t> repetitions;      ///< its rows that repeat one before, ascending
  std::deque<Occurrence> occurrences;
  std::uint32_t step = 0;        ///< of the last block
  double time = 0.0;             ///< of the last block
  std::size_t increment = 0;     ///< the last one that has blocks
  std::size_t count = 0;         ///< of the blocks in it
  Block const* first = nullptr;  ///< of them
};

/// Rows as they are printed.
struct Block {
  Print* print = nullptr;
  std::vector<std::int64_t> labels;  ///< as many for each row as the heading says
  std::vector<double> values;
  std::size_t rowCount = 0;
  bool areLocal = false;  ///< some are in the local axes of their node or element

  [[nodiscard]] bool hasValuesOf(Block const& other) const {
    return areLocal == other.areLocal && labels == other.labels && values.size() == other.values.size() &&
           std::memcmp(values.data(), other.values.data(), values.size() * sizeof(double)) == 0;
  }
};

/// The same for all spellings of a title.
std::string nameOf(Print const& print) {
  if (!print.heading) return print.kind;
  auto const& quantity = print.heading->quantity;
  return fmt::format("{}\n{}\n{}", print.heading->entity, quantity.name, fmt::join(quantity.components, ","));
}

bool isText(std::string_view line) {
  auto const first = takeWord(line);
  bool const beginsWithLetter =
      !first.empty() && std::isalpha(static_cast<unsigned char>(first.front())) != 0;
  return beginsWithLetter && !parseNumber(first);
}

/// Takes the rows with the given indices out of a list of rows of `width` each.
template <typename T>
void removeRows(std::vector<T>& list, std::size_t width, std::vector<std::size_t> const& rows) {
  auto target = list.begin();
  auto next = rows.begin();
  for (std::size_t row = 0; row * width < list.size(); ++row) {
    if (next != rows.end() && *next == row) {
      ++next;
      continue;
    }
    auto const first = list.begin() + static_cast<std::ptrdiff_t>(row * width);
    target = std::copy(first, first + static_cast<std::ptrdiff_t>(width), target);
  }
  list.erase(target, list.end());
}

/// Which rows begin with the numbers of a row before, ascending. `width` numbers begin each.
std::vector<std::size_t> repetitionsIn(std::vector<std::int64_t> const& labels, std::size_t width) {
  std::vector<std::size_t> repetitions;
  std::set<std::pair<std::int64_t, std::int64_t>> known;
  for (std::size_t row = 0; row * width < labels.size(); ++row) {
    auto const second = width == 2 ? labels[row * width + 1] : 0;
    if (!known.emplace(labels[row * width], second).second) repetitions.push_back(row);
  }
  return repetitions;
}

class CalculixReader {
 public:
  CalculixReader(std::string const& source, std::string_view text)
      : m_source(source), m_rest(text), m_histories(source) {}

  Histories read();

 private:
  // lines
  void nextLine();
  void skipEmptyLines();
  void readLine();
  bool readMark();
  void beginMarkedStep();
  void passOver(std::string kind, std::size_t line);

  // blocks
  void readBlock(TimedHeading const& timed);
  Print& printOf(std::string_view title);
  double readTime(std::string_view text) const;
  void enterIncrement(Print& print, double time);
  bool hasRows(Print const& print, std::size_t headingLine);
  void readRows(Print& print);
  void readRow(Block& block);
  template <typename Expected>
  std::int64_t readLabel(std::string_view& rest, Expected const& expected) const;
  void readLabels(Block& block, std::string_view& rest) const;
  std::optional<double> takePlainNumber(std::string_view& rest) const;
  void readValues(CalculixQuantity& quantity, std::string_view& rest, std::vector<double>& values) const;
  void readEnd(std::string_view rest, Block& block) const;
  void readStatisticsRow(std::vector<CalculixQuantity> quantities);
  void endStatistics();

  // tables
  void keepIncrement();
  [[nodiscard]] std::vector<std::size_t> beginsOfSteps() const;
  void keep(Block const& block);
  void addToTables(Occurrence& occurrence, Block const& block);
  HistoryTable& addTable(Print const& print, CalculixQuantity const& quantity, Occurrence const& occurrence);
  void finish();

  [[noreturn]] void fail(std::string_view expected, std::string_view found) const {
    failAtLine(m_source, m_lineNumber, expected, found);
  }

  std::string const& m_source;
  std::string_view m_rest;
  std::string_view m_line;  ///< without blanks at its ends
  bool m_hasLine = true;
  std::size_t m_lineNumber = 0;
  enum class Place {
    atTheBeginning,
    behindABlock,
    behindAMark,
    inAnotherPrint
  } m_place = Place::atTheBeginning;
  std::set<std::string, std::less<>> m_passedOver;

  std::deque<Print> m_prints;
  std::unordered_map<std::string_view, Print*> m_byTitle;  ///< the titles lie in the text
  std::unordered_map<std::string, Print*> m_byName;

  Block m_statistics;  ///< whose rows come next; of no print: none
  std::vector<CalculixQuantity> m_statisticsQuantities;
  std::size_t m_statisticsLine = 0;

  std::uint32_t m_step = 1;
  bool m_stepIsMarked = false;
  bool m_stepHasBlocks = false;
  std::size_t m_increment = 0;  ///< counts up
  bool m_isInIncrement = false;
  double m_time = 0.0;          ///< of the last block
  std::vector<Block> m_blocks;  ///< of the increment

  std::deque<std::pair<HistoryTable, Occurrence const*>> m_tables;
  Histories m_histories;
};

Histories CalculixReader::read() {
  nextLine();
  while (m_hasLine) readLine();
  endStatistics();
  keepIncrement();
  finish();
  return std::move(m_histories);
}

// ---- lines

void CalculixReader::nextLine() {
  m_hasLine = !m_rest.empty();
  if (!m_hasLine) return;
  ++m_lineNumber;
  auto const end = m_rest.find('\n');
  if (end == m_rest.npos) fail(tr("the end of the line"), tr("the end of the file"));
  m_line = trimmed(m_rest.substr(0, end));
  m_rest.remove_prefix(end + 1);
}

void CalculixReader::skipEmptyLines() {
  while (m_hasLine && m_line.empty()) nextLine();
}

/// Reads what begins with the current line, up to a line that does not belong to it.
void CalculixReader::readLine() {
  if (m_line.empty()) return nextLine();
  if (auto const timed = splitAtTime(m_line)) return readBlock(*timed);
  if (m_statistics.print != nullptr) {
    if (auto quantities = quantitiesOfStatistics(m_line); !quantities.empty())
      return readStatisticsRow(std::move(quantities));
  }
  if (parseHeading(m_line)) fail(tr("\"and time\" and a number at the end of the header"), quote(m_line));
  if (!readMark()) {
    bool const mayBeNumbers = m_place == Place::behindAMark || m_place == Place::inAnotherPrint;
    auto rest = m_line;
    bool const isNumber = parseNumber(takeWord(rest)).has_value();
    if (isNumber && !mayBeNumbers) fail(tr("the header of a block"), quote(m_line));
    if (!isNumber && m_place != Place::inAnotherPrint) passOver(withSingleBlanks(m_line), m_lineNumber);
  }
  nextLine();
}

/// Whether the line divides the print: into steps, increments, modes, or from a print of spaced letters.
bool CalculixReader::readMark() {
  constexpr std::string_view increment = "INCREMENT ";
  auto const words = wordsOfSpacedLetters(m_line);
  bool const isIncrement =
      m_line.starts_with(increment) && parseNumber(trimmed(m_line.substr(increment.size())));
  if (words.empty() && !isIncrement) return false;
  endStatistics();
  keepIncrement();
  m_isInIncrement = false;
  if (words == "STEP") {
    beginMarkedStep();
  } else if (!isIncrement && words != "EIGENVALUE NUMBER" && words != "REAL PART" &&
             words != "IMAGINARY PART") {
    bool const isStep = words == "EIGENVALUE OUTPUT" || words == "BUCKLING FACTOR OUTPUT";
    if (isStep && m_stepHasBlocks && !m_stepIsMarked) {
      ++m_step;
      m_stepHasBlocks = false;
    }
    passOver(words, m_lineNumber);
    return true;
  }
  m_place = Place::behindAMark;
  return true;
}

void CalculixReader::beginMarkedStep() {
  auto const number = m_line.find_first_of("0123456789");
  std::uint32_t step = 0;
  auto const* const end = m_line.data() + m_line.size();
  auto const* const begin = number == m_line.npos ? end : m_line.data() + number;
  if (auto const result = std::from_chars(begin, end, step); result.ec != std::errc() || result.ptr != end)
    fail(tr("the number of a step"), quote(m_line));
  if (m_stepHasBlocks && step < m_step) fail(tr("a step not before {}", m_step), std::to_string(step));
  if (step != m_step || !m_stepIsMarked) m_stepHasBlocks = false;
  m_step = step;
  m_stepIsMarked = true;
}

/// The lines up to the next heading are none of ours, which is told once for each kind.
void CalculixReader::passOver(std::string kind, std::size_t line) {
  m_place = Place::inAnotherPrint;
  if (m_passedOver.contains(kind)) return;
  m_histories.addNote(tr("{}: line {}: passed over {}, which import does not know", toPrintable(m_source),
                         line, quote(kind)));
  m_passedOver.insert(std::move(kind));
}

// ---- blocks

void CalculixReader::readBlock(TimedHeading const& timed) {
  endStatistics();
  auto& print = printOf(timed.title);
  auto const headingLine = m_lineNumber;
  if (!print.heading) {
    passOver(print.kind, headingLine);
    return nextLine();
  }
  enterIncrement(print, readTime(timed.time));
  nextLine();
  m_place = Place::behindABlock;
  if (print.heading->rows == Rows::statistics) {
    m_statistics.print = &print;
    m_statisticsLine = headingLine;
  } else if (hasRows(print, headingLine)) {
    readRows(print);
  }
}

Print& CalculixReader::printOf(std::string_view title) {
  auto& byTitle = m_byTitle[title];
  if (byTitle != nullptr) return *byTitle;
  Print print;
  print.kind = withSingleBlanks(title);
  print.heading = parseHeading(title);
  auto& byName = m_byName[nameOf(print)];
  if (byName == nullptr) byName = &m_prints.emplace_back(std::move(print));
  return *(byTitle = byName);
}

double CalculixReader::readTime(std::string_view text) const {
  auto const time = parseNumber(text);
  if (!time || !std::isfinite(*time)) fail(tr("a time at the end of the header"), quote(text));
  return *time;
}

/// Where a print does not say where its steps begin, the times tell: they begin anew.
void CalculixReader::enterIncrement(Print& print, double time) {
  if (!m_isInIncrement || time != m_time) {
    keepIncrement();
    if (m_stepIsMarked) {
      if (print.step == m_step && time < print.time)
        fail(tr("a time not before {}", shortestForm(print.time)), shortestForm(time));
    } else if (m_stepHasBlocks && time < m_time) {
      ++m_step;
    }
    m_isInIncrement = true;
    m_stepHasBlocks = true;
    m_time = time;
  }
  print.step = m_step;
  print.time = time;
}

/// Whether rows follow the heading. Where there is no contact, or no element is left, there are none; where
/// text follows, it is the heading of columns that are not known.
bool CalculixReader::hasRows(Print const& print, std::size_t headingLine) {
  skipEmptyLines();
  auto const kind = print.heading->rows;
  if (!m_hasLine) {
    if (kind == Rows::ofContact) return false;
    fail(tr("rows of values after the header"), tr("the end of the file"));
  }
  if (!isText(m_line)) return true;
  if (kind == Rows::ofContact || kind == Rows::ofElements) return false;
  if (splitAtTime(m_line)) return true;
  passOver(print.kind, headingLine);
  return false;
}

/// A node, or a point of an element, that is more than once in its set counts once.
void CalculixReader::readRows(Print& print) {
  if (print.quantities.empty()) print.quantities = {print.heading->quantity};
  auto& block = m_blocks.emplace_back();
  block.print = &print;
  for (; m_hasLine && !m_line.empty(); nextLine()) readRow(block);
  bool const isOfNodes = print.heading->rows == Rows::ofNodes;
  if (isOfNodes && !print.labels.empty() && block.labels.size() != print.labels.size())
    fail(tr("as many nodes as at the times before ({})", print.labels.size()),
         std::to_string(block.rowCount));
  auto const width = print.heading->labels;
  if (block.labels != print.labels) {
    print.labels = block.labels;
    bool const mayRepeat = isOfNodes || print.heading->rows == Rows::ofElements;
    print.repetitions = mayRepeat ? repetitionsIn(block.labels, width) : std::vector<std::size_t>();
  }
  if (print.repetitions.empty()) return;
  removeRows(block.labels, width, print.repetitions);
  removeRows(block.values, print.quantities.front().components.size(), print.repetitions);
}

void CalculixReader::readRow(Block& block) {
  auto& print = *block.print;
  auto rest = m_line;
  if (print.heading->rows == Rows::ofTotal && block.rowCount > 0)
    fail(tr("a blank line after the row of totals"), quote(m_line));
  readLabels(block, rest);
  readValues(print.quantities.front(), rest, block.values);
  readEnd(rest, block);
  ++block.rowCount;
}

/// `expected()` is what a message says.
template <typename Expected>
std::int64_t CalculixReader::readLabel(std::string_view& rest, Expected const& expected) const {
  auto const word = takeWord(rest);
  auto const* const end = word.data() + word.size();
  std::int64_t label = 0;
  auto const [after, error] = std::from_chars(word.data(), end, label);
  bool const touchesValue = after != end && *after == '-';
  if (error != std::errc() || (after != end && !touchesValue)) fail(expected(), quote(word));
  if (touchesValue) rest = std::string_view(after, rest.data() + rest.size());
  return label;
}

/// The nodes of a set are learnt from its first block; every later one must repeat them.
void CalculixReader::readLabels(Block& block, std::string_view& rest) const {
  auto const& heading = *block.print->heading;
  if (heading.labels == 0) return;
  bool const isNode = heading.rows == Rows::ofNodes;
  auto const label = readLabel(
      rest, [isNode] { return isNode ? tr("the number of a node") : tr("the number of an element"); });
  block.labels.push_back(label);
  if (heading.labels == 2)
    block.labels.push_back(readLabel(rest, [] { return tr("the number of an integration point"); }));
  auto const& nodes = block.print->labels;
  if (!isNode || nodes.empty()) return;
  if (block.rowCount >= nodes.size())
    fail(tr("as many nodes as at the times before ({})", nodes.size()), tr("more"));
  if (auto const node = nodes[block.rowCount]; label != node)
    fail(tr("node {} as at the times before", node), std::to_string(label));
}

/// The next number, where it is spelt as usual and blanks follow; nothing, and nothing is taken, for all
/// else.
std::optional<double> CalculixReader::takePlainNumber(std::string_view& rest) const {
  auto const* const end = rest.data() + rest.size();
  auto const* const begin = std::find_if_not(rest.data(), end, isBlank);
  double value = 0.0;
  // The text goes on behind the line, and no number goes beyond its end.
  auto const* const after = readDecimal(begin, m_rest.data() + m_rest.size(), value);
  if (after == nullptr || (after != end && !isBlank(*after))) return std::nullopt;
  rest.remove_prefix(static_cast<std::size_t>(after - rest.data()));
  return value;
}

void CalculixReader::readValues(CalculixQuantity& quantity, std::string_view& rest,
                                std::vector<double>& values) const {
  auto& components = quantity.components;
  if (components.empty()) {
    auto row = rest;
    for (auto word = takeNumberText(row); parseNumber(word); word = takeNumberText(row))
      components.push_back(std::to_string(components.size() + 1));
    if (components.empty()) fail(tr("a number"), quote(trimmed(rest)));
  }
  for (std::size_t i = 0; i < components.size(); ++i) {
    if (auto const plain = takePlainNumber(rest)) {
      values.push_back(*plain);
      continue;
    }
    auto const word = takeNumberText(rest);
    if (word.empty()) fail(tr("{} values in the row", components.size()), std::to_string(i));
    auto const value = parseNumber(word);
    if (!value) fail(tr("a number"), quote(word));
    values.push_back(*value);
  }
}

/// Behind the values stands at most a mark: L of local axes, or the name of those of an element.
void CalculixReader::readEnd(std::string_view rest, Block& block) const {
  auto const surplus = takeWord(rest);
  if (surplus.empty()) return;
  bool const isOfElements = block.print->heading->rows == Rows::ofElements;
  bool const isName = surplus.find('.') == surplus.npos || !parseNumber(surplus);
  block.areLocal = isOfElements ? isName : surplus == "L";
  if (!block.areLocal || !takeWord(rest).empty()) {
    auto const count = block.print->quantities.front().components.size();
    fail(tr("the end of the line after {} values", count), quote(surplus));
  }
}

void CalculixReader::readStatisticsRow(std::vector<CalculixQuantity> quantities) {
  m_place = Place::behindABlock;
  nextLine();
  skipEmptyLines();
  if (!m_hasLine) fail(tr("rows of values after the header"), tr("the end of the file"));
  auto rest = m_line;
  for (auto& quantity : quantities) {
    readValues(quantity, rest, m_statistics.values);
    m_statisticsQuantities.push_back(std::move(quantity));
  }
  if (auto const surplus = takeWord(rest); !surplus.empty()) fail(tr("the end of the line"), quote(surplus));
  nextLine();
}

/// Every block has the rows of the first one.
void CalculixReader::endStatistics() {
  if (m_statistics.print == nullptr) return;
  auto block = std::exchange(m_statistics, {});
  auto const quantities = std::exchange(m_statisticsQuantities, {});
  auto& print = *block.print;
  if (quantities.empty() && print.quantities.empty()) return passOver(print.kind, m_statisticsLine);
  if (print.quantities.empty()) print.quantities = quantities;
  if (quantities != print.quantities)
    fail(tr("the rows that the statistics have at the times before"),
         m_hasLine ? tr("others") : tr("the end of the file"));
  m_blocks.push_back(std::move(block));
}

// ---- tables

void CalculixReader::keepIncrement() {
  auto const begins = beginsOfSteps();
  auto next = begins.begin();
  ++m_increment;
  for (std::size_t i = 0; i < m_blocks.size(); ++i) {
    if (next != begins.end() && *next == i) {
      ++next;
      ++m_step;
      ++m_increment;
    }
    keep(m_blocks[i]);
  }
  m_blocks.clear();
}

/// The blocks of one time can be of several steps that all end at this time. Each of them begins with the
/// same print, and brings other values than the first one; a print that is asked for twice does not.
std::vector<std::size_t> CalculixReader::beginsOfSteps() const {
  if (m_stepIsMarked || m_blocks.empty()) return {};
  auto const& first = m_blocks.front();
  auto const isLikeFirst = [&first](Block const& block) {
    return block.print == first.print && block.areLocal == first.areLocal;
  };
  bool const isAlone = first.print->heading->rows != Rows::statistics &&
                       std::all_of(m_blocks.begin(), m_blocks.end(),
                                   [&](Block const& block) { return block.print == first.print; });
  std::vector<std::size_t> begins;
  for (std::size_t i = 1; i < m_blocks.size(); ++i) {
    if (isLikeFirst(m_blocks[i]) && (isAlone || !isLikeFirst(m_blocks[i - 1]))) begins.push_back(i);
  }
  if (begins.empty()) return {};

  std::map<std::pair<Print const*, std::size_t>, Block const*> ofFirst;
  std::map<Print const*, std::size_t> counts;
  auto next = begins.begin();
  for (std::size_t i = 0; i < m_blocks.size(); ++i) {
    if (next != begins.end() && *next == i) {
      ++next;
      counts.clear();
    }
    auto const& block = m_blocks[i];
    std::pair const place(block.print, counts[block.print]++);
    if (i < begins.front()) {
      ofFirst.emplace(place, &block);
    } else if (auto const before = ofFirst.find(place); before != ofFirst.end()) {
      if (before->second->areLocal == block.areLocal && !before->second->hasValuesOf(block)) return begins;
    }
  }
  return {};
}

/// A print that is asked for several times, with the same values or others, is told apart by its place in the
/// increment.
void CalculixReader::keep(Block const& block) {
  auto& print = *block.print;
  if (print.increment != m_increment) {
    print.increment = m_increment;
    print.count = 0;
    print.first = &block;
  }
  if (++print.count > print.occurrences.size()) print.occurrences.push_back({{}, print.count > 1});
  auto& occurrence = print.occurrences[print.count - 1];
  occurrence.repeatsTheFirst = occurrence.repeatsTheFirst && block.hasValuesOf(*print.first);
  addToTables(occurrence, block);
}

void CalculixReader::addToTables(Occurrence& occurrence, Block const& block) {
  auto const& print = *block.print;
  auto const width = print.heading->labels;
  auto values = block.values.begin();
  for (std::size_t i = 0; i < print.quantities.size(); ++i) {
    auto const& quantity = print.quantities[i];
    if (occurrence.tables.size() == i) occurrence.tables.push_back(&addTable(print, quantity, occurrence));
    auto& table = *occurrence.tables[i];
    table.times.push_back(m_time);
    table.steps.push_back(m_step);
    bool const isLast = i + 1 == print.quantities.size();
    auto const end = isLast ? block.values.end() : values + std::ssize(quantity.components);
    table.values.insert(table.values.end(), values, end);
    values = end;
    if (print.heading->rows == Rows::ofNodes) {
      if (table.nodes.empty()) table.nodes = block.labels;
    } else if (width > 0) {
      for (std::size_t label = 0; label < block.labels.size(); label += width)
        table.elementRows.push_back({block.labels[label], width == 2 ? block.labels[label + 1] : 0});
      table.rowEnds.push_back(table.elementRows.size());
    }
  }
}

HistoryTable& CalculixReader::addTable(Print const& print, CalculixQuantity const& quantity,
                                       Occurrence const& occurrence) {
  auto& table = m_tables.emplace_back(HistoryTable(), &occurrence).first;
  table.entity = print.heading->entity;
  if (print.count > 1) table.entity += fmt::format(" ({})", print.count);
  table.quantity = quantity.name;
  table.components = quantity.components;
  return table;
}

void CalculixReader::finish() {
  for (auto& [table, occurrence] : m_tables) {
    if (!occurrence->repeatsTheFirst) m_histories.add(std::move(table));
  }
  if (m_histories.empty()) {
    throw Error(tr("{}: expected blocks such as {}, found none", toPrintable(m_source),
                   quote("forces (fx,fy,fz) for set NAME and time T")));
  }
  m_histories.index();
}

}  // namespace

Histories readCalculixHistories(std::string const& source, std::string_view text) {
  refuseWhatIsNotUtf8(source, text);
  return CalculixReader(source, text).read();
}

}  // namespace Kestrel::ResultTables
