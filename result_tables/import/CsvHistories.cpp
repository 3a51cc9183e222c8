#include "result_tables/import/CsvHistories.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>

#include "result_tables/base/FastNumber.h"
#include "result_tables/base/LargeMemory.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/InputText.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::array<std::string_view, 4> s_longHeader = {"entity", "quantity", "time", "value"};

std::optional<double> parseNumberWithComma(std::string_view field) {
  if (field.find('.') != field.npos) return std::nullopt;
  std::string text(field);
  std::replace(text.begin(), text.end(), ',', '.');
  return parseNumber(text);
}

std::optional<double> parseNumberWith(DecimalMark decimalMark, std::string_view field) {
  return decimalMark == DecimalMark::comma ? parseNumberWithComma(field) : parseNumber(field);
}

/// Goes through the records of a text.
class CsvRecords {
 public:
  CsvRecords(std::string const& source, std::string_view text, DecimalMark decimalMark)
      : m_source(source), m_size(text.size()), m_rest(text), m_decimalMark(decimalMark) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (m_rest.starts_with(byteOrderMark)) m_rest.remove_prefix(byteOrderMark.size());
  }

  /// Goes to the next record; false at the end of the text. The first one decides about the separator.
  bool next();
  /// Takes the next record as numbers, without `fields`, where it is a usual one: the same text as `begin`,
  /// then a time not before `earliest`, then numbers and empty fields, `row.size()` in all, on one line
  /// without further quotation marks. `gaps` become the indices of the empty ones, whose number is 0. False,
  /// and nothing is taken, for any other record, which `next` reads. REQUIRES: `next` was true, `begin` is
  /// empty or what `textBefore` gave, and the row is not empty.
  bool nextOfNumbers(std::string_view begin, std::span<double> row, double earliest,
                     std::vector<std::size_t>& gaps);
  /// The current record up to a field that has no doubled quotation marks; empty where that is more than a
  /// line.
  [[nodiscard]] std::string_view textBefore(std::size_t field) const;
  /// Of the current record, without quotation marks and the blanks around them. Valid until the next record.
  [[nodiscard]] std::vector<std::string_view> const& fields() const { return m_fields; }
  [[nodiscard]] bool areSeparatedByCommas() const { return m_separator == ','; }
  /// How many records the text has when the part that has been read, with `count` records, is like the rest;
  /// 0 as long as that part is too small to tell.
  [[nodiscard]] std::size_t estimatedCount(std::size_t count) const;
  [[noreturn]] void fail(std::string_view expected, std::string_view found) const {
    failAtLine(m_source, m_recordLine, expected, found);
  }

 private:
  static constexpr char s_blanks = ' ';  ///< as a separator: any run of spaces and tabs

  [[nodiscard]] bool isBlank(char c) const { return c == ' ' || (c == '\t' && m_separator != '\t'); }
  [[nodiscard]] bool isAtLineEnd() const {
    return m_rest.empty() || m_rest.front() == '\n' || m_rest == "\r" || m_rest.starts_with("\r\n");
  }
  void skipBlanks();
  bool skipToRecord();
  void detectSeparator();
  void readField();
  void readQuotedField();
  bool takeSeparator();
  bool takeLineEnd();

  template <char Point>
  char const* readNumbers(char const* at, std::span<double> row, double earliest,
                          std::vector<std::size_t>& gaps) const;
  template <char Point>
  char const* readCell(char const* at, char const* end, double& value, bool& isGap) const;
  char const* readOddCell(char const* at, char const* end, double& value, bool& isGap) const;
  [[nodiscard]] bool endsField(char c) const {
    return c == m_separator || c == '\n' || c == '\r' || (m_separator == s_blanks && c == '\t');
  }
  char const* behindSeparator(char const* at) const;
  char const* behindLineEnd(char const* at, char const* end) const;

  std::string const& m_source;
  std::size_t m_size;  ///< of the text
  std::string_view m_rest;
  DecimalMark m_decimalMark;
  std::size_t m_line = 1;
  std::size_t m_recordLine = 1;
  char const* m_record = nullptr;  ///< where the current one begins
  char m_separator = '\0';
  std::vector<std::string_view> m_fields;
  std::deque<std::string> m_unescaped;  ///< the fields that had doubled quotation marks
};

bool CsvRecords::next() {
  if (!skipToRecord()) return false;
  m_recordLine = m_line;
  m_record = m_rest.data();
  if (m_separator == '\0') detectSeparator();
  m_fields.clear();
  m_unescaped.clear();
  do {
    readField();
  } while (takeSeparator());
  if (!takeLineEnd()) fail(tr("a separator after the closing quotation mark"), quote(m_rest.substr(0, 1)));
  return true;
}

void CsvRecords::skipBlanks() {
  while (!m_rest.empty() && isBlank(m_rest.front())) m_rest.remove_prefix(1);
}

/// Passes over empty lines and comments; false at the end of the text.
bool CsvRecords::skipToRecord() {
  while (!m_rest.empty()) {
    auto const first = m_rest.find_first_not_of(m_separator == '\t' ? " \r" : " \t\r");
    bool const isEmpty = first == m_rest.npos || m_rest[first] == '\n';
    if (!isEmpty && m_rest[first] != '#') return true;
    auto const end = m_rest.find('\n');
    m_rest.remove_prefix(end == m_rest.npos ? m_rest.size() : end + 1);
    ++m_line;
  }
  return false;
}

void CsvRecords::detectSeparator() {
  std::string_view const separators = "\t;,";
  auto best = separators.size();
  bool isQuoted = false;
  for (char const c : m_rest) {
    if (c == '"') isQuoted = !isQuoted;
    if (isQuoted) continue;
    if (c == '\n') break;
    best = std::min(best, separators.find(c));
  }
  m_separator = best < separators.size() ? separators[best] : s_blanks;
  if (m_separator == ',' && m_decimalMark == DecimalMark::comma)
    fail(tr("semicolons, tabs or blanks between the fields, as commas are decimal"), quote(","));
}

void CsvRecords::readField() {
  skipBlanks();
  if (m_rest.starts_with('"')) return readQuotedField();
  std::size_t length = 0;
  for (; length < m_rest.size(); ++length) {
    char const c = m_rest[length];
    if (c == m_separator || c == '\n' || (m_separator == s_blanks && c == '\t')) break;
    if (c == '"') fail(tr("quotation marks around a whole field only"), quote(m_rest.substr(0, length + 1)));
  }
  m_fields.push_back(trimmed(m_rest.substr(0, length)));
  m_rest.remove_prefix(length);
}

void CsvRecords::readQuotedField() {
  std::string* unescaped = nullptr;
  std::string_view field;
  for (bool isOpen = true; isOpen;) {
    m_rest.remove_prefix(1);
    auto const length = m_rest.find('"');
    if (length == m_rest.npos) fail(tr("a closing quotation mark"), tr("the end of the file"));
    field = m_rest.substr(0, length);
    m_rest.remove_prefix(length + 1);
    m_line += static_cast<std::size_t>(std::count(field.begin(), field.end(), '\n'));
    isOpen = m_rest.starts_with('"');
    if (isOpen && unescaped == nullptr) unescaped = &m_unescaped.emplace_back();
    if (unescaped != nullptr) unescaped->append(field).append(isOpen ? "\"" : "");
  }
  m_fields.push_back(unescaped != nullptr ? *unescaped : field);
}

/// Whether a further field follows.
bool CsvRecords::takeSeparator() {
  bool const hadBlanks = !m_rest.empty() && isBlank(m_rest.front());
  skipBlanks();
  if (m_separator == s_blanks) return hadBlanks && !isAtLineEnd();
  if (!m_rest.starts_with(m_separator)) return false;
  m_rest.remove_prefix(1);
  return true;
}

/// Whether the record ends here.
bool CsvRecords::takeLineEnd() {
  if (!isAtLineEnd()) return false;
  auto const end = m_rest.find('\n');
  m_rest.remove_prefix(end == m_rest.npos ? m_rest.size() : end + 1);
  ++m_line;
  return true;
}

// ---- records of numbers

bool CsvRecords::nextOfNumbers(std::string_view begin, std::span<double> row, double earliest,
                               std::vector<std::size_t>& gaps) {
  if (!m_rest.starts_with(begin)) return false;
  gaps.clear();
  auto const* const at = m_rest.data() + begin.size();
  auto const* const end = m_decimalMark == DecimalMark::comma ? readNumbers<','>(at, row, earliest, gaps)
                                                              : readNumbers<'.'>(at, row, earliest, gaps);
  if (end == nullptr) return false;
  m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
  m_recordLine = m_line++;
  return true;
}

std::string_view CsvRecords::textBefore(std::size_t field) const {
  std::string_view const text(m_record, m_fields[field].data());
  return text.find('\n') == text.npos ? text : std::string_view();
}

// The operations that follow return where what they read ends, and null where the record is no usual one.

template <char Point>
char const* CsvRecords::readNumbers(char const* at, std::span<double> row, double earliest,
                                    std::vector<std::size_t>& gaps) const {
  auto const* const end = m_rest.data() + m_rest.size();
  bool isGap = false;
  at = readCell<Point>(at, end, row.front(), isGap);
  bool const isTime = at != nullptr && !isGap && std::isfinite(row.front()) && row.front() >= earliest;
  if (!isTime) return nullptr;
  for (std::size_t i = 1; i < row.size(); ++i) {
    at = behindSeparator(at);
    if (at != nullptr) at = readCell<Point>(at, end, row[i], isGap);
    if (at == nullptr) return nullptr;
    if (isGap) gaps.push_back(i);
  }
  return behindLineEnd(at, end);
}

/// A number, or nothing, for which stands 0.
template <char Point>
char const* CsvRecords::readCell(char const* at, char const* end, double& value, bool& isGap) const {
  isGap = false;
  while (at != end && isBlank(*at)) ++at;
  auto const* const after = readDecimal<Point>(at, end, value);
  return after != nullptr && endsField(*after) ? after : readOddCell(at, end, value, isGap);
}

/// The same for nothing and for other spellings of numbers.
char const* CsvRecords::readOddCell(char const* at, char const* end, double& value, bool& isGap) const {
  auto const* const after =
      std::find_if(at, end, [this](char c) { return c == '"' || (c != '\r' && endsField(c)); });
  if (after == end || *after == '"') return nullptr;
  auto const field = trimmed({at, after});
  auto const number = parseNumberWith(m_decimalMark, field);
  isGap = field.empty() && m_separator != s_blanks;
  value = number.value_or(0.0);
  return number || isGap ? after : nullptr;
}

char const* CsvRecords::behindSeparator(char const* at) const {
  bool const isSeparator = m_separator == s_blanks ? isBlank(*at) : *at == m_separator;
  return isSeparator ? at + 1 : nullptr;
}

char const* CsvRecords::behindLineEnd(char const* at, char const* end) const {
  while (at != end && isBlank(*at)) ++at;
  if (at != end && *at == '\r') ++at;
  return at != end && *at == '\n' ? at + 1 : nullptr;
}

std::size_t CsvRecords::estimatedCount(std::size_t count) const {
  constexpr std::size_t smallestPart = 64;
  auto const read = m_size - m_rest.size();
  if (read < m_size / smallestPart) return 0;
  auto const ratio = static_cast<double>(m_size) / static_cast<double>(read);
  constexpr double surplus = 1.02;
  return static_cast<std::size_t>(static_cast<double>(count) * ratio * surplus);
}

// ---- fields

/// Whether a text can be the unit of a column: in neither notation a number, and no date or time of day.
bool canBeUnit(std::string_view field) {
  if (field.empty() || field == "-") return true;
  if (parseNumber(field) || parseNumberWithComma(field)) return false;
  return field.find_first_not_of("0123456789+-.,:/ ") != field.npos;
}

bool areEmpty(std::span<std::string_view const> fields) {
  return std::all_of(fields.begin(), fields.end(), [](auto field) { return field.empty(); });
}

bool areUnits(std::span<std::string_view const> fields) {
  return !areEmpty(fields) && std::all_of(fields.begin(), fields.end(), canBeUnit);
}

/// "N" of "N", "[N]" and "(N)".
std::string_view withoutBrackets(std::string_view unit) {
  bool const isBracketed =
      unit.size() > 2 &&
      (unit.starts_with('[') ? unit.ends_with(']') : unit.starts_with('(') && unit.ends_with(')'));
  return isBracketed ? trimmed(unit.substr(1, unit.size() - 2)) : unit;
}

/// A table for each column, with the times at which it has a value. `gaps` are the places of the empty cells
/// among the values, ascending.
std::vector<HistoryTable> splitAtGaps(HistoryTable const& table, std::vector<std::size_t> const& gaps) {
  auto const count = table.components.size();
  std::vector<HistoryTable> columns(count);
  for (std::size_t i = 0; i < count; ++i) {
    columns[i].components = {table.components[i]};
    if (!table.units.empty()) columns[i].units = {table.units[i]};
    columns[i].timeUnit = table.timeUnit;
    columns[i].times.reserve(table.times.size());
    columns[i].values.reserve(table.times.size());
  }
  auto gap = gaps.begin();
  std::size_t place = 0;
  for (auto const time : table.times) {
    for (auto& column : columns) {
      bool const isGap = gap != gaps.end() && *gap == place;
      if (isGap) {
        ++gap;
      } else {
        column.times.push_back(time);
        column.values.push_back(table.values[place]);
      }
      ++place;
    }
  }
  return columns;
}

/// A history of the long form.
struct LongHistory {
  HistoryTable* table = nullptr;
  std::string_view begin;       ///< of its last row that `next` read, up to the time; empty: not usual
  LongHistory* next = nullptr;  ///< the one whose row came behind the last of its own
  double earliest = -std::numeric_limits<double>::infinity();  ///< that the time of its next row may be
};

class CsvReader {
 public:
  CsvReader(std::string const& source, std::string_view text, DecimalMark decimalMark)
      : m_source(source),
        m_decimalMark(decimalMark),
        m_records(source, text, decimalMark),
        m_histories(source) {}

  Histories read();

 private:
  void readLong();
  bool takeLongUnits();
  void readLongRow();
  void readUsualLongRows();
  LongHistory& historyOf(std::string_view entity, std::string_view quantity);
  void readWide();
  HistoryTable tableOfHeader() const;
  bool takeWideUnits(HistoryTable& table) const;
  void readWideRow(HistoryTable& table);
  void readUsualRows(HistoryTable& table);
  void makeRoom(HistoryTable& table) const;
  bool nextRow(std::size_t count);
  double number(std::string_view field) const;
  double time(HistoryTable const& table, std::string_view field) const;
  [[noreturn]] void refuseNumber(std::string const& expected, std::string_view field) const;
  [[noreturn]] void refuseCount(std::size_t count) const;

  std::string const& m_source;
  DecimalMark m_decimalMark;
  CsvRecords m_records;
  Histories m_histories;
  std::unordered_map<std::string, LongHistory> m_longHistories;
  LongHistory* m_last = nullptr;  ///< of them, the one that the last row is of
  std::string m_key;
  std::string m_unit;                    ///< of all values of the long form
  std::string m_timeUnit;                ///< likewise
  std::vector<std::size_t> m_gaps;       ///< of the wide form: places of the empty cells among the values
  std::vector<double> m_row;             ///< of the wide form: the numbers of the last usual row
  std::vector<std::size_t> m_gapsOfRow;  ///< and which of them are missing
};

Histories CsvReader::read() {
  if (!m_records.next()) failAtLine(m_source, 1, tr("a header"), tr("the end of the file"));
  auto const& header = m_records.fields();
  if (std::equal(header.begin(), header.end(), s_longHeader.begin(), s_longHeader.end())) {
    readLong();
  } else {
    readWide();
  }
  m_histories.index();
  return std::move(m_histories);
}

/// Goes to the next row that has `count` fields and not all of them empty; false at the end.
bool CsvReader::nextRow(std::size_t count) {
  while (m_records.next()) {
    if (m_records.fields().size() != count) refuseCount(count);
    if (!areEmpty(m_records.fields())) return true;
  }
  return false;
}

/// Decimal commas between commas divide numbers.
void CsvReader::refuseCount(std::size_t count) const {
  auto const& fields = m_records.fields();
  auto const expected = tr("as many fields as in the header ({})", count);
  bool const canBeDivided =
      m_records.areSeparatedByCommas() && fields.size() > count && fields.size() <= 2 * count &&
      std::all_of(fields.begin(), fields.end(), [](auto field) { return parseNumber(field); });
  if (!canBeDivided) m_records.fail(expected, std::to_string(fields.size()));
  m_records.fail(expected, tr("{} (decimal commas need semicolons between the fields, and --decimal-comma)",
                              fields.size()));
}

void CsvReader::refuseNumber(std::string const& expected, std::string_view field) const {
  if (m_decimalMark == DecimalMark::comma && !parseNumberWithComma(field) && parseNumber(field))
    m_records.fail(tr("{} with a decimal comma", expected), quote(field));
  if (m_decimalMark == DecimalMark::point && !parseNumber(field) && parseNumberWithComma(field))
    m_records.fail(expected, tr("{} (--decimal-comma reads decimal commas)", quote(field)));
  m_records.fail(expected, quote(field));
}

double CsvReader::number(std::string_view field) const {
  auto const value = parseNumberWith(m_decimalMark, field);
  if (!value) refuseNumber(tr("a number"), field);
  return *value;
}

/// The time of a row, which is not before those of the table.
double CsvReader::time(HistoryTable const& table, std::string_view field) const {
  auto const time = parseNumberWith(m_decimalMark, field);
  if (!time || !std::isfinite(*time)) refuseNumber(tr("a time"), field);
  if (!table.times.empty() && *time < table.times.back()) {
    m_records.fail(tr("a time not before {}", shortestForm(table.times.back())), shortestForm(*time));
  }
  return *time;
}

void CsvReader::readLong() {
  bool more = nextRow(s_longHeader.size());
  if (more && takeLongUnits()) more = nextRow(s_longHeader.size());
  for (; more; more = nextRow(s_longHeader.size())) {
    readLongRow();
    readUsualLongRows();
  }
  if (m_histories.empty()) m_records.fail(tr("rows of values after the header"), tr("the end of the file"));
}

/// Whether the row is one of units: of the time and of all values, beside no entity and no quantity.
bool CsvReader::takeLongUnits() {
  std::span const fields = m_records.fields();
  auto const isNothing = [](std::string_view field) {
    return field.empty() || withoutBrackets(field) == "-";
  };
  if (!isNothing(fields[0]) || !isNothing(fields[1]) || !areUnits(fields.subspan(2))) return false;
  m_timeUnit = withoutBrackets(fields[2]);
  m_unit = withoutBrackets(fields[3]);
  return true;
}

/// A row without a value says nothing but that there is such a history.
void CsvReader::readLongRow() {
  auto const& fields = m_records.fields();
  auto& history = historyOf(fields[0], fields[1]);
  auto const timeOfRow = time(*history.table, fields[2]);
  history.begin = m_records.textBefore(2);
  if (m_last != nullptr) m_last->next = &history;
  m_last = &history;
  if (fields[3].empty()) return;
  history.table->values.push_back(number(fields[3]));
  history.table->times.push_back(timeOfRow);
  history.earliest = timeOfRow;
}

/// Reads on as long as histories follow each other as they did before, in rows that begin as they did. The
/// benchmark readingTheHistories/long takes 37 ms with it and 113 ms without.
void CsvReader::readUsualLongRows() {
  m_row.resize(2);
  while (auto* const history = m_last->next) {
    bool const isUsual = !history->begin.empty() &&
                         m_records.nextOfNumbers(history->begin, m_row, history->earliest, m_gapsOfRow);
    if (!isUsual) return;
    m_last = history;
    if (!m_gapsOfRow.empty()) continue;
    auto& table = *history->table;
    // A history whose rows are in one place may have no more of them.
    bool const isSpread = history->next != history;
    if (isSpread && table.values.capacity() == table.values.size()) makeRoom(table);
    history->earliest = m_row[0];
    table.times.push_back(m_row[0]);
    table.values.push_back(m_row[1]);
  }
}

LongHistory& CsvReader::historyOf(std::string_view entity, std::string_view quantity) {
  m_key.assign(entity).append(1, '.').append(quantity);
  auto& history = m_longHistories[m_key];
  if (history.table == nullptr) {
    if (entity.empty() || quantity.empty())
      m_records.fail(tr("an entity and a quantity"), tr("an empty field"));
    history.table = &m_histories.add({std::string(entity), {}, {std::string(quantity)}, {}, {}, {}});
    if (!m_unit.empty()) history.table->units = {m_unit};
    history.table->timeUnit = m_timeUnit;
  } else if (history.table->entity != entity) {
    m_records.fail(tr("another name for another history"), tr("a second {}", quote(m_key)));
  }
  return history;
}

void CsvReader::readWide() {
  auto table = tableOfHeader();
  auto const count = table.components.size() + 1;
  bool more = nextRow(count);
  if (more && takeWideUnits(table)) more = nextRow(count);
  for (; more; more = nextRow(count)) {
    readWideRow(table);
    readUsualRows(table);
  }
  if (table.times.empty()) m_records.fail(tr("rows of values after the header"), tr("the end of the file"));
  if (m_gaps.empty()) {
    m_histories.add(std::move(table));
  } else {
    for (auto& column : splitAtGaps(table, m_gaps)) m_histories.add(std::move(column));
  }
}

/// Whether the row is one of units, which are the table's then.
bool CsvReader::takeWideUnits(HistoryTable& table) const {
  auto const& fields = m_records.fields();
  if (!areUnits(fields)) return false;
  table.timeUnit = withoutBrackets(fields[0]);
  for (std::size_t i = 1; i < fields.size(); ++i) table.units.emplace_back(withoutBrackets(fields[i]));
  return true;
}

void CsvReader::readWideRow(HistoryTable& table) {
  auto const& fields = m_records.fields();
  table.times.push_back(time(table, fields[0]));
  for (std::size_t i = 1; i < fields.size(); ++i) {
    if (fields[i].empty()) m_gaps.push_back(table.values.size());
    table.values.push_back(fields[i].empty() ? 0.0 : number(fields[i]));
  }
}

/// Reads on as long as the rows are the usual ones.
void CsvReader::readUsualRows(HistoryTable& table) {
  auto const count = table.components.size();
  m_row.resize(count + 1);
  while (m_records.nextOfNumbers({}, m_row, table.times.back(), m_gapsOfRow)) {
    for (auto const index : m_gapsOfRow) m_gaps.push_back(table.values.size() + index - 1);
    if (table.values.capacity() - table.values.size() < count) makeRoom(table);
    table.times.push_back(m_row.front());
    table.values.insert(table.values.end(), m_row.begin() + 1, m_row.end());
  }
}

/// For all its rows as soon as it can be told how many they are, so that no value is moved from then on.
void CsvReader::makeRoom(HistoryTable& table) const {
  auto const rows = m_records.estimatedCount(table.times.size() + 1);
  table.times.reserve(rows);
  table.values.reserve(rows * table.components.size());
  askForLargePages(table.values.data(), table.values.capacity() * sizeof(double));
}

HistoryTable CsvReader::tableOfHeader() const {
  auto const& header = m_records.fields();
  if (header.size() < 2) {
    m_records.fail(
        tr("the header {}, or a time and the names of histories", quote("entity,quantity,time,value")),
        quote(header.front()));
  }
  if (parseNumber(header.front())) m_records.fail(tr("a header"), tr("the number {}", header.front()));
  HistoryTable table;
  std::unordered_set<std::string_view> seen;
  for (std::size_t i = 1; i < header.size(); ++i) {
    if (header[i].empty()) m_records.fail(tr("the name of a history"), tr("an empty field"));
    if (!seen.insert(header[i]).second) {
      m_records.fail(tr("another name for another history"), tr("a second {}", quote(header[i])));
    }
    table.components.emplace_back(header[i]);
  }
  return table;
}

}  // namespace

Histories readCsvHistories(std::string const& source, std::string_view text, DecimalMark decimalMark) {
  refuseWhatIsNotUtf8(source, text);
  return CsvReader(source, text, decimalMark).read();
}

}  // namespace Kestrel::ResultTables
