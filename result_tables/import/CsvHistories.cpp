#include "result_tables/import/CsvHistories.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
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
  CsvRecords(std::string const& source, std::string_view text) : m_source(source), m_rest(text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (m_rest.starts_with(byteOrderMark)) m_rest.remove_prefix(byteOrderMark.size());
  }

  /// Goes to the next record; false at the end of the text. The first one decides about the separator.
  bool next();
  /// Of the current record, without quotation marks and the blanks around them. Valid until the next record.
  [[nodiscard]] std::vector<std::string_view> const& fields() const { return m_fields; }
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
  std::size_t m_line = 1;
  std::size_t m_recordLine = 1;
  char m_separator = '\0';
  std::vector<std::string_view> m_fields;
  std::deque<std::string> m_unescaped;  ///< the fields that had doubled quotation marks
};

bool CsvRecords::next() {
  if (!skipToRecord()) return false;
  if (m_separator == '\0') detectSeparator();
  m_recordLine = m_line;
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

class CsvReader {
 public:
  CsvReader(std::string const& source, std::string_view text)
      : m_source(source), m_records(source, text), m_histories(source) {}

  Histories read();

 private:
  void readLong();
  HistoryTable& tableOf(std::string_view entity, std::string_view quantity);
  void readWide();
  HistoryTable tableOfHeader() const;
  void readFields(std::size_t count) const;
  double number(std::string_view field) const;
  void addTime(HistoryTable& table, std::string_view field) const;

  std::string const& m_source;
  CsvRecords m_records;
  Histories m_histories;
  std::unordered_map<std::string, HistoryTable*> m_tables;  ///< of the long form
  std::string m_key;
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

void CsvReader::readFields(std::size_t count) const {
  auto const found = m_records.fields().size();
  if (found != count)
    m_records.fail(tr("as many fields as in the header ({})", count), std::to_string(found));
}

double CsvReader::number(std::string_view field) const {
  auto const value = parseNumber(field);
  if (!value) m_records.fail(tr("a number"), quote(field));
  return *value;
}

void CsvReader::addTime(HistoryTable& table, std::string_view field) const {
  auto const time = parseNumber(field);
  if (!time || !std::isfinite(*time)) m_records.fail(tr("a time"), quote(field));
  if (!table.times.empty() && *time < table.times.back()) {
    m_records.fail(tr("a time not before {}", shortestForm(table.times.back())), shortestForm(*time));
  }
  table.times.push_back(*time);
}

void CsvReader::readLong() {
  while (m_records.next()) {
    readFields(s_longHeader.size());
    auto const& fields = m_records.fields();
    auto& table = tableOf(fields[0], fields[1]);
    addTime(table, fields[2]);
    table.values.push_back(number(fields[3]));
  }
  if (m_histories.empty()) m_records.fail(tr("rows of values after the header"), tr("the end of the file"));
}

HistoryTable& CsvReader::tableOf(std::string_view entity, std::string_view quantity) {
  m_key.assign(entity).append(1, '.').append(quantity);
  auto& table = m_tables[m_key];
  if (table == nullptr) {
    if (entity.empty() || quantity.empty())
      m_records.fail(tr("an entity and a quantity"), tr("an empty field"));
    table = &m_histories.add({std::string(entity), {}, {std::string(quantity)}, {}, {}, {}});
  } else if (table->entity != entity) {
    m_records.fail(tr("another name for another history"), tr("a second {}", quote(m_key)));
  }
  return *table;
}

void CsvReader::readWide() {
  auto& table = m_histories.add(tableOfHeader());
  auto const count = table.components.size() + 1;
  while (m_records.next()) {
    readFields(count);
    auto const& fields = m_records.fields();
    addTime(table, fields[0]);
    for (std::size_t i = 1; i < count; ++i) table.values.push_back(number(fields[i]));
  }
  if (table.times.empty()) m_records.fail(tr("rows of values after the header"), tr("the end of the file"));
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

Histories readCsvHistories(std::string const& source, std::string_view text) {
  refuseWhatIsNotUtf8(source, text);
  return CsvReader(source, text).read();
}

}  // namespace Kestrel::ResultTables
