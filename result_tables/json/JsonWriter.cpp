#include "result_tables/json/JsonWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

void JsonWriter::beginObject() { begin('{', false); }
void JsonWriter::endObject() { end('}'); }
void JsonWriter::beginArray() { begin('[', true); }
void JsonWriter::endArray() { end(']'); }

void JsonWriter::beginInlineArray() {
  beginArray();
  ++m_inlineArrays;
}

// The closing bracket stands on the line as well.
void JsonWriter::endInlineArray() {
  endArray();
  --m_inlineArrays;
}

void JsonWriter::key(std::string_view name) { string(name); }

void JsonWriter::string(std::string_view text) {
  beginValue();
  m_out += '"';
  bool const isPlain = std::all_of(text.begin(), text.end(),
                                   [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
  if (isPlain) {
    m_out += text;
  } else {
    escape(toValidUtf8(text));
  }
  m_out += '"';
}

void JsonWriter::number(double value) {
  if (std::isnan(value)) {
    null();
  } else if (std::isinf(value)) {
    string(value > 0 ? "Infinity" : "-Infinity");
  } else {
    beginValue();
    appendShortestForm(m_out, value);
  }
}

void JsonWriter::integer(std::uint64_t value) {
  beginValue();
  appendInteger(m_out, value);
}

void JsonWriter::boolean(bool value) {
  beginValue();
  m_out += value ? "true" : "false";
}

void JsonWriter::null() {
  beginValue();
  m_out += "null";
}

void JsonWriter::beginObject(std::string_view name) {
  key(name);
  beginObject();
}

void JsonWriter::beginArray(std::string_view name) {
  key(name);
  beginArray();
}

void JsonWriter::beginInlineArray(std::string_view name) {
  key(name);
  beginInlineArray();
}

void JsonWriter::text(std::string_view name, std::string_view value) {
  key(name);
  string(value);
}

void JsonWriter::number(std::string_view name, double value) {
  key(name);
  number(value);
}

void JsonWriter::integer(std::string_view name, std::uint64_t value) {
  key(name);
  integer(value);
}

void JsonWriter::flag(std::string_view name, bool value) {
  key(name);
  boolean(value);
}

void JsonWriter::null(std::string_view name) {
  key(name);
  null();
}

std::string JsonWriter::take() {
  m_out += '\n';
  return std::exchange(m_out, {});
}

void JsonWriter::begin(char bracket, bool isArray) {
  beginValue();
  m_out += bracket;
  m_levels.push_back({isArray});
}

void JsonWriter::end(char bracket) {
  bool const isEmpty = m_levels.back().count == 0;
  m_levels.pop_back();
  if (!isEmpty && m_inlineArrays == 0) beginLine();
  m_out += bracket;
}

/// What stands between a value or a key and what is before it.
void JsonWriter::beginValue() {
  if (m_levels.empty()) return;
  auto& [isArray, count] = m_levels.back();
  bool const isMember = !isArray && count % 2 != 0;
  bool const isFirst = count++ == 0;
  if (isMember) {
    m_out += ": ";
  } else if (m_inlineArrays > 0) {
    if (!isFirst) m_out += ", ";
  } else {
    if (!isFirst) m_out += ',';
    beginLine();
  }
}

void JsonWriter::beginLine() {
  m_out += '\n';
  m_out.append(2 * m_levels.size(), ' ');
}

void JsonWriter::escape(std::string_view text) {
  constexpr std::string_view characters = "\"\\\b\f\n\r\t";
  constexpr std::string_view letters = "\"\\bfnrt";
  for (char const c : text) {
    if (auto const place = characters.find(c); place != characters.npos) {
      m_out += '\\';
      m_out += letters[place];
    } else if (c >= '\0' && c < ' ') {
      fmt::format_to(std::back_inserter(m_out), "\\u{:04X}", static_cast<unsigned char>(c));
    } else {
      m_out += c;
    }
  }
}

}  // namespace Kestrel::ResultTables
