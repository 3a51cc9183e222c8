#include "result_tables/json/JsonWriter.h"

#include <cmath>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

JsonWriter::JsonWriter() : m_writer(m_output) { m_writer.SetIndent(' ', 2); }

void JsonWriter::beginObject() { m_writer.StartObject(); }
void JsonWriter::endObject() { m_writer.EndObject(); }
void JsonWriter::beginArray() { m_writer.StartArray(); }
void JsonWriter::endArray() { m_writer.EndArray(); }

// The format applies when a value is written, and an array's closing bracket breaks the line unless it is on
// one.
void JsonWriter::beginInlineArray() {
  m_writer.StartArray();
  m_writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  ++m_inlineArrays;
}

void JsonWriter::endInlineArray() {
  m_writer.EndArray();
  if (--m_inlineArrays == 0) m_writer.SetFormatOptions(rapidjson::kFormatDefault);
}

void JsonWriter::key(std::string_view name) { string(name); }

void JsonWriter::string(std::string_view text) {
  m_value.clear();
  appendValidUtf8(m_value, text);
  m_writer.String(m_value.data(), static_cast<rapidjson::SizeType>(m_value.size()));
}

void JsonWriter::number(double value) {
  if (std::isnan(value)) {
    null();
  } else if (std::isinf(value)) {
    string(value > 0 ? "Infinity" : "-Infinity");
  } else {
    m_value.clear();
    appendShortestForm(m_value, value);
    raw(m_value, rapidjson::kNumberType);
  }
}

void JsonWriter::integer(std::uint64_t value) { m_writer.Uint64(value); }
void JsonWriter::boolean(bool value) { m_writer.Bool(value); }
void JsonWriter::null() { m_writer.Null(); }

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
  auto document = std::exchange(m_output.text, {});
  document += '\n';
  m_writer.Reset(m_output);
  return document;
}

std::string JsonWriter::takeWritten() { return std::exchange(m_output.text, {}); }

void JsonWriter::raw(std::string_view json, rapidjson::Type type) {
  m_writer.RawValue(json.data(), json.size(), type);
}

}  // namespace Kestrel::ResultTables
