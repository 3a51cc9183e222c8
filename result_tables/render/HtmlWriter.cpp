#include "result_tables/render/HtmlWriter.h"

#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

void HtmlWriter::open(std::string_view element, Attributes attributes) {
  begin(element, attributes);
  m_out += '>';
  m_open.emplace_back(element);
}

void HtmlWriter::close() {
  m_out.append("</").append(m_open.back()) += '>';
  m_open.pop_back();
}

void HtmlWriter::text(std::string_view text) { escaped(toPrintable(text)); }

void HtmlWriter::element(std::string_view element, std::string_view content, Attributes attributes) {
  open(element, attributes);
  text(content);
  close();
}

void HtmlWriter::leaf(std::string_view element, Attributes attributes) {
  begin(element, attributes);
  m_out += "/>";
}

std::string HtmlWriter::take() {
  while (!m_open.empty()) close();
  return std::exchange(m_out, {});
}

void HtmlWriter::begin(std::string_view element, Attributes attributes) {
  m_out.append(1, '<').append(element);
  for (auto const& [name, value] : attributes) {
    if (value.empty()) continue;
    m_out.append(1, ' ').append(name).append("=\"");
    escaped(toPrintable(value));
    m_out += '"';
  }
}

void HtmlWriter::escaped(std::string_view text) {
  for (char const c : text) {
    switch (c) {
      case '&':
        m_out += "&amp;";
        break;
      case '<':
        m_out += "&lt;";
        break;
      case '>':
        m_out += "&gt;";
        break;
      case '"':
        m_out += "&quot;";
        break;
      default:
        m_out += c;
    }
  }
}

}  // namespace Kestrel::ResultTables
