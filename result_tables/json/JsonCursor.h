#pragma once

#include <cstring>
#include <limits>
#include <string_view>

#include "result_tables/base/FastNumber.h"

namespace Kestrel::ResultTables {

/// Walks through the JSON that files are usually made of, fast. Every operation answers false where something
/// else stands that could still be right, or wrong in a way that a message is owed for: escape sequences,
/// characters beyond ASCII, unusual numbers, the end of the text. Whoever gets this answer starts over with
/// `JsonReader`.
class JsonCursor {
 public:
  JsonCursor(char const* at, char const* end) : m_at(at), m_end(end) {}

  [[nodiscard]] char const* at() const { return m_at; }

  /// Whether the next character other than a blank is `c`; stands before it then.
  [[nodiscard]] bool isBefore(char c) {
    while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t')) ++m_at;
    return m_at != m_end && *m_at == c;
  }

  /// The same; stands behind it then.
  [[nodiscard]] bool take(char c) {
    bool const isThere = isBefore(c);
    if (isThere) ++m_at;
    return isThere;
  }

  /// Takes a string and gives what is between its quotation marks.
  [[nodiscard]] bool takeText(std::string_view& text) {
    if (!take('"')) return false;
    auto const* const begin = m_at;
    while (m_at != m_end && *m_at != '"') {
      if (*m_at < ' ' || *m_at > '~' || *m_at == '\\') return false;
      ++m_at;
    }
    if (m_at == m_end) return false;
    text = std::string_view(begin, static_cast<std::size_t>(m_at - begin));
    ++m_at;
    return true;
  }

  /// Takes a number, null (not a number), "Infinity" or "-Infinity".
  [[nodiscard]] bool takeSeriesNumber(double& value) {
    return takeNumberBy([&] { return readDecimal(m_at, m_end, value); }, value);
  }

  /// Passes over what `takeSeriesNumber` takes.
  [[nodiscard]] bool passSeriesNumber() {
    double unused = 0.0;
    return takeNumberBy([&] { return passDecimal(m_at, m_end); }, unused);
  }

  /// Takes what is in an object or an array, from behind its opening bracket to before its closing one:
  /// `element()`, separated by commas, until it answers false.
  template <char Closing, typename Element>
  [[nodiscard]] bool takeElements(Element const& element) {
    if (isBefore(Closing)) return true;
    do {
      if (!element()) return false;
    } while (take(','));
    return isBefore(Closing);
  }

 private:
  template <typename Read>
  bool takeNumberBy(Read const& read, double& value) {
    // Most numbers stand behind a comma or a comma and a space.
    if (m_at != m_end && *m_at == ' ') ++m_at;
    auto const* behind = read();
    if (behind == nullptr && !isBefore('"') && !isBefore('n')) behind = read();
    if (behind == nullptr) return takeWord(value);
    m_at = behind;
    return true;
  }

  bool takeWord(double& value) {
    constexpr std::string_view null = "null";
    if (isBefore('n') && static_cast<std::size_t>(m_end - m_at) >= null.size() &&
        std::string_view(m_at, null.size()) == null) {
      value = std::numeric_limits<double>::quiet_NaN();
      m_at += null.size();
      return true;
    }
    std::string_view text;
    if (!takeText(text) || (text != "Infinity" && text != "-Infinity")) return false;
    auto const infinity = std::numeric_limits<double>::infinity();
    value = text.front() == '-' ? -infinity : infinity;
    return true;
  }

  char const* m_at;
  char const* m_end;
};

}  // namespace Kestrel::ResultTables
