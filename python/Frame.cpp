#include "python/Frame.h"

#include <limits>

#include "result_tables/base/Text.h"

namespace py = pybind11;

namespace Kestrel::ResultTables {

py::str pythonText(std::string_view text) { return py::str(toValidUtf8(text)); }

py::str pythonPath(std::string const& path) {
  return py::reinterpret_steal<py::str>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<py::ssize_t>(path.size())));
}

TextColumn::Code TextColumn::codeOf(std::string_view text) {
  // Most texts are as the one before.
  if (!m_codes.empty() && m_codes.back() != s_none && m_texts[m_codes.back()] == text) return m_codes.back();
  if (auto const found = m_codeOfText.find(text); found != m_codeOfText.end()) return found->second;
  auto const code = static_cast<Code>(m_texts.size());
  m_codeOfText.emplace(m_texts.emplace_back(text), code);
  return code;
}

py::object TextColumn::take() {
  std::vector<py::object> texts;
  texts.reserve(m_texts.size());
  for (auto const& text : m_texts) texts.push_back(pythonText(text));
  py::array array(py::dtype("O"), static_cast<py::ssize_t>(m_codes.size()));
  auto* to = static_cast<PyObject**>(array.mutable_data());
  for (auto const code : m_codes) {
    auto const& text = code == s_none ? py::none() : texts[code];
    Py_XDECREF(*to);
    *to++ = text.inc_ref().ptr();
  }
  return array;
}

py::dict Frame::take() {
  py::dict columns;
  for (auto& [name, column] : m_columns)
    columns[py::str(name)] = std::visit([](auto& one) -> py::object { return one.take(); }, column);
  return columns;
}

std::optional<double> shownValueOf(TableValue const& value) {
  if (!value.hasData()) return std::nullopt;
  return value.isNaN() ? std::numeric_limits<double>::quiet_NaN() : value.value;
}

std::optional<std::int64_t> asInteger(std::optional<std::size_t> number) {
  return number ? std::optional(static_cast<std::int64_t>(*number)) : std::nullopt;
}

std::optional<double> valueOf(std::optional<ColumnLimit> const& limit) {
  return limit ? std::optional(limit->value) : std::nullopt;
}

}  // namespace Kestrel::ResultTables
