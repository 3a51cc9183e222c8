#include "result_tables/command/ShellLine.h"

#include <algorithm>
#include <cctype>

namespace Kestrel::ResultTables {

namespace {

bool isOneOf(std::string_view characters, char c) { return characters.find(c) != characters.npos; }

/// Takes a line apart, character by character.
class Lexer {
 public:
  explicit Lexer(std::string_view line) : m_line(line) {}

  ShellLine parse() {
    while (!isAtEnd()) takeNext();
    return std::move(m_result);
  }

 private:
  [[nodiscard]] bool isAtEnd() const { return m_position == m_line.size(); }

  void takeNext() {
    auto const c = m_line[m_position++];
    bool const mayQuote = c == '\\' && m_result.openQuote != '\'';
    if (mayQuote && isAtEnd()) return;  // what it quotes is not typed yet
    if (m_result.openQuote != '\0') {
      takeQuoted(c);
    } else if (isOneOf(" \t\n", c)) {
      if (!m_result.typed.empty()) finishWord();
    } else if (isOneOf("<>", c)) {
      redirect();
    } else {
      takePlain(c);
    }
  }

  void takeQuoted(char c) {
    m_result.typed += c;
    if (c == m_result.openQuote) {
      m_result.openQuote = '\0';
    } else if (c == '\\' && m_result.openQuote == '"' && isOneOf("$`\"\\\n", m_line[m_position])) {
      takeEscaped();
    } else {
      m_result.word += c;
    }
  }

  void takePlain(char c) {
    m_result.typed += c;
    if (isOneOf("\"'", c)) {
      m_result.openQuote = c;
      m_result.openQuoteEnd = m_result.typed.size();
    } else if (c == '\\') {
      takeEscaped();
    } else {
      m_result.word += c;
    }
  }

  void takeEscaped() {
    auto const c = m_line[m_position++];
    m_result.typed += c;
    if (c != '\n') m_result.word += c;
  }

  void finishWord() {
    if (!m_result.isRedirected) m_result.words.push_back(m_result.word);
    startWord(false);
  }

  void startWord(bool isRedirected) {
    m_result.word.clear();
    m_result.typed.clear();
    m_result.isRedirected = isRedirected;
  }

  /// The digits before the sign belong to it, as does a second one.
  void redirect() {
    bool const isOfSign =
        std::ranges::all_of(m_result.typed, [](unsigned char c) { return std::isdigit(c) != 0 || c == '&'; });
    if (!isOfSign) finishWord();
    startWord(true);
  }

  std::string_view m_line;
  std::size_t m_position = 0;
  ShellLine m_result;
};

/// In what is typed without open quotation marks, behind the last of `breaks` that is not quoted.
std::size_t endOfLastBreak(std::string_view typed, std::string_view breaks) {
  std::size_t end = 0;
  char quote = '\0';
  for (std::size_t i = 0; i < typed.size(); ++i) {
    auto const c = typed[i];
    if (quote != '\0') {
      if (c == '\\' && quote == '"') ++i;
      if (c == quote) quote = '\0';
    } else if (c == '\\') {
      ++i;
    } else if (isOneOf("\"'", c)) {
      quote = c;
    } else if (isOneOf(breaks, c)) {
      end = i + 1;
    }
  }
  return end;
}

}  // namespace

ShellLine parseShellLine(std::string_view line) { return Lexer(line).parse(); }

std::string quoteForShell(std::string_view text, char openQuote) {
  std::string quoted;
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    bool const isPlain = byte >= 0x80 || std::isalnum(byte) != 0 || isOneOf("_-./:=@%+,", c);
    if (openQuote == '\'' && c == '\'') {
      quoted += R"('\'')";
      continue;
    }
    if ((openQuote == '\0' && !isPlain) || (openQuote == '"' && isOneOf("$`\"\\", c))) quoted += '\\';
    quoted += c;
  }
  return quoted;
}

std::string replacementInBash(ShellLine const& line, std::string_view word, std::string_view breaks) {
  auto const whole = line.typed + quoteForShell(word.substr(line.word.size()), line.openQuote);
  return whole.substr(line.openQuote != '\0' ? line.openQuoteEnd : endOfLastBreak(line.typed, breaks));
}

}  // namespace Kestrel::ResultTables
