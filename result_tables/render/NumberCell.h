#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// A number as text, cut at its decimal point: "-12" and ".5" of "-12.5". What has no point, an exponent, a
/// word or a sign for no number included, has no fraction.
class NumberCell {
 public:
  /// `text` is printable.
  explicit NumberCell(std::string text);

  [[nodiscard]] std::string const& text() const { return m_text; }
  /// Columns of the terminal before the decimal point, and from it on.
  [[nodiscard]] std::size_t integerWidth() const { return m_integerWidth; }
  [[nodiscard]] std::size_t fractionWidth() const { return m_fractionWidth; }

 private:
  std::string m_text;
  std::size_t m_integerWidth;
  std::size_t m_fractionWidth;
};

/// A column of such cells with their decimal points in line.
class NumberColumn {
 public:
  /// Makes room for the cell.
  void add(NumberCell const& cell);

  [[nodiscard]] std::size_t width() const { return m_integerWidth + m_fractionWidth; }

  /// The cell filled up with blanks to `width()`. `shown` is what stands for its text: the same in colour.
  /// REQUIRES: the cell was added.
  [[nodiscard]] std::string aligned(NumberCell const& cell, std::string_view shown) const;
  [[nodiscard]] std::string aligned(NumberCell const& cell) const { return aligned(cell, cell.text()); }

  /// Appends the same to `out`.
  void appendAligned(std::string& out, NumberCell const& cell, std::string_view shown) const;

 private:
  std::size_t m_integerWidth = 0;
  std::size_t m_fractionWidth = 0;
};

}  // namespace Kestrel::ResultTables
