#include "result_tables/import/CsvHistories.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/InputText.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::array<std::string_view, 4> s_longHeader = {"entity", "quantity", "time", "value"};

/// Goes through the records of a text.
class CsvRecords {
 public:
  CsvRecords(std::string const& source, std::string_view text, DecimalMark decimalMark)
      : m_source(source), m_rest(text), m_decimalMark(decimalMark) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (m_rest.starts_with(byteOrderMark)) m_rest.remove_prefix(byteOrderMark.size());
  }

  /// Goes to the next record; false at the end of the text. The first one decides about the separator.
  bool next();
  /// Of the current record, without quotation marks and the blanks around them. Valid until the next record.
  [[nodiscard]] std::vector<std::string_view> const& fields() const { return m_fields; }
  [[nodiscard]] bool areSeparatedByCommas() const { return m_separator == ','; }
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

  std::string const& m_source;
  std::string_view m_rest;
  DecimalMark m_decimalMark;
  std::size_t m_line = 1;
  std::size_t m_recordLine = 1;
  char m_separator = '\0';
  std::vector<std::string_view> m_fields;
  std::deque<std::string> m_unescaped;  ///< the fields that had doubled quotation marks
};

bool CsvRecords::next() {
  if (!skipToRecord()) return false;
  m_recordLine = m_line;
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

// ---- fields

std::optional<double> parseNumberWithComma(std::string_view field) {
  if (field.find('.') != field.npos) return std::nullopt;
  std::string text(field);
  std::replace(text.begin(), text.end(), ',', '.');
  return parseNumber(text);
}

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
  HistoryTable& tableOf(std::string_view entity, std::string_view quantity);
  void readWide();
  HistoryTable tableOfHeader() const;
  bool takeWideUnits(HistoryTable& table) const;
  void readWideRow(HistoryTable& table);
  bool nextRow(std::size_t count);
  std::optional<double> parse(std::string_view field) const;
  double number(std::string_view field) const;
  double time(HistoryTable const& table, std::string_view field) const;
  [[noreturn]] void refuseNumber(std::string const& expected, std::string_view field) const;
  [[noreturn]] void refuseCount(std::size_t count) const;

  std::string const& m_source;
  DecimalMark m_decimalMark;
  CsvRecords m_records;
  Histories m_histories;
  std::unordered_map<std::string, HistoryTable*> m_tables;  ///< of the long form
  std::string m_key;
  std::string m_unit;               ///< of all values of the long form
  std::string m_timeUnit;           ///< likewise
  std::vector<std::size_t> m_gaps;  ///< of the wide form: places of the empty cells among the values
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

std::optional<double> CsvReader::parse(std::string_view field) const {
  return m_decimalMark == DecimalMark::comma ? parseNumberWithComma(field) : parseNumber(field);
}

void CsvReader::refuseNumber(std::string const& expected, std::string_view field) const {
  if (m_decimalMark == DecimalMark::comma && !parseNumberWithComma(field) && parseNumber(field))
    m_records.fail(tr("{} with a decimal comma", expected), quote(field));
  if (m_decimalMark == DecimalMark::point && !parseNumber(field) && parseNumberWithComma(field))
    m_records.fail(expected, tr("{} (--decimal-comma reads decimal commas)", quote(field)));
  m_records.fail(expected, quote(field));
}

double CsvReader::number(std::string_view field) const {
  auto const value = parse(field);
  if (!value) refuseNumber(tr("a number"), field);
  return *value;
}

/// The time of a row, which is not before those of the table.
double CsvReader::time(HistoryTable const& table, std::string_view field) const {
  auto const time = parse(field);
  if (!time || !std::isfinite(*time)) refuseNumber(tr("a time"), field);
  if (!table.times.empty() && *time < table.times.back()) {
    m_records.fail(tr("a time not before {}", shortestForm(table.times.back())), shortestForm(*time));
  }
  return *time;
}

void CsvReader::readLong() {
  bool more = nextRow(s_longHeader.size());
  if (more && takeLongUnits()) more = nextRow(s_longHeader.size());
  for (; more; more = nextRow(s_longHeader.size())) readLongRow();
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
  auto& table = tableOf(fields[0], fields[1]);
  auto const timeOfRow = time(table, fields[2]);
  if (fields[3].empty()) return;
  table.values.push_back(number(fields[3]));
  table.times.push_back(timeOfRow);
}

HistoryTable& CsvReader::tableOf(std::string_view entity, std::string_view quantity) {
  m_key.assign(entity).append(1, '.').append(quantity);
  auto& table = m_tables[m_key];
  if (table == nullptr) {
    if (entity.empty() || quantity.empty())
      m_records.fail(tr("an entity and a quantity"), tr("an empty field"));
    table = &m_histories.add({std::string(entity), {}, {std::string(quantity)}, {}, {}, {}});
    if (!m_unit.empty()) table->units = {m_unit};
    table->timeUnit = m_timeUnit;
  } else if (table->entity != entity) {
    m_records.fail(tr("another name for another history"), tr("a second {}", quote(m_key)));
  }
  return *table;
}

void CsvReader::readWide() {
  auto table = tableOfHeader();
  auto const count = table.components.size() + 1;
  bool more = nextRow(count);
  if (more && takeWideUnits(table)) more = nextRow(count);
  for (; more; more = nextRow(count)) readWideRow(table);
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
