#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

/// Writes HTML that is well-formed XML as well. What is put in is shown as text, whatever it holds.
class HtmlWriter {
 public:
  struct Attribute {
    std::string_view name;
    std::string_view value;
  };
  using Attributes = std::initializer_list<Attribute>;

  /// Opens an element, which `close` closes. Attributes with an empty value are left out.
  void open(std::string_view element, Attributes attributes = {});
  void close();

  /// Printable, see `toPrintable`.
  void text(std::string_view text);

  /// An element with nothing but a text in it.
  void element(std::string_view element, std::string_view text, Attributes attributes = {});

  /// An element that holds nothing: "<meta …/>".
  void leaf(std::string_view element, Attributes attributes = {});

  /// What is HTML already.
  void html(std::string_view html) { m_out += html; }

  /// What has been written so far, with all elements closed. The writer is empty afterwards.
  [[nodiscard]] std::string take();

 private:
  void begin(std::string_view element, Attributes attributes);
  void escaped(std::string_view text);

  std::string m_out;
  std::vector<std::string> m_open;
};

}  // namespace Kestrel::ResultTables
