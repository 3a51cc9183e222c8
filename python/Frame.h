#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "result_tables/tables/ResultTable.h"

// The columns of a data frame, filled without Python's lock and handed to Python without a copy of the
// numbers. A column of numbers is an array, or where values can be missing, a pair of the values and of where
// they are missing.

namespace Kestrel::ResultTables {

/// Texts as Python has them. Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] pybind11::str pythonText(std::string_view text);

/// A name of a file as Python has it, which stands for the same bytes.
[[nodiscard]] pybind11::str pythonPath(std::string const& path);

/// The vector as an array that owns it.
template <typename Number>
[[nodiscard]] pybind11::array arrayOf(std::vector<Number>&& numbers, pybind11::dtype const& type) {
  auto* const owned = new std::vector<Number>(std::move(numbers));
  pybind11::capsule const owner(owned,
                                [](void* vector) { delete static_cast<std::vector<Number>*>(vector); });
  return {type,
          {static_cast<pybind11::ssize_t>(owned->size())},
          {static_cast<pybind11::ssize_t>(sizeof(Number))},
          owned->data(),
          owner};
}

template <typename Number>
[[nodiscard]] pybind11::array arrayOf(std::vector<Number>&& numbers) {
  return arrayOf(std::move(numbers), pybind11::dtype::of<Number>());
}

/// Texts, each different one once.
class TextColumn {
 public:
  /// A text of the column, to be added as often as it stands there.
  using Code = std::uint32_t;
  [[nodiscard]] Code codeOf(std::string_view text);
  void add(Code code) { m_codes.push_back(code); }
  void add(std::string_view text) { add(codeOf(text)); }
  void addNone() { m_codes.push_back(s_none); }

  [[nodiscard]] pybind11::object take();

 private:
  static constexpr Code s_none = UINT32_MAX;

  std::deque<std::string> m_texts;  ///< stay where they are
  std::unordered_map<std::string_view, Code> m_codeOfText;
  std::vector<Code> m_codes;
};

/// Numbers, some of which may be missing: that is not the same as NaN.
template <typename Number>
class NumberColumn {
 public:
  void add(std::optional<Number> number) {
    m_numbers.push_back(number.value_or(Number()));
    m_isMissing.push_back(number ? 0 : 1);
  }
  [[nodiscard]] pybind11::object take() {
    auto numbers = arrayOf(std::move(m_numbers));
    return pybind11::make_tuple(std::move(numbers),
                                arrayOf(std::move(m_isMissing), pybind11::dtype::of<bool>()));
  }

 private:
  std::vector<Number> m_numbers;
  std::vector<std::uint8_t> m_isMissing;
};

/// Whole numbers that are always there.
class CountColumn {
 public:
  void add(std::size_t count) { m_counts.push_back(static_cast<std::int64_t>(count)); }
  [[nodiscard]] pybind11::object take() { return arrayOf(std::move(m_counts)); }

 private:
  std::vector<std::int64_t> m_counts;
};

/// Truth values that are always there.
class FlagColumn {
 public:
  void add(bool flag) { m_flags.push_back(flag ? 1 : 0); }
  [[nodiscard]] pybind11::object take() { return arrayOf(std::move(m_flags), pybind11::dtype::of<bool>()); }

 private:
  std::vector<std::uint8_t> m_flags;
};

/// Truth values, some of which may be missing.
class OptionalFlagColumn {
 public:
  void add(std::optional<bool> flag) {
    m_flags.push_back(flag.value_or(false) ? 1 : 0);
    m_isMissing.push_back(flag ? 0 : 1);
  }
  [[nodiscard]] pybind11::object take() {
    auto const type = pybind11::dtype::of<bool>();
    auto flags = arrayOf(std::move(m_flags), type);
    return pybind11::make_tuple(std::move(flags), arrayOf(std::move(m_isMissing), type));
  }

 private:
  std::vector<std::uint8_t> m_flags;
  std::vector<std::uint8_t> m_isMissing;
};

using RealColumn = NumberColumn<double>;
using IntegerColumn = NumberColumn<std::int64_t>;

/// Columns by name, in their order.
class Frame {
 public:
  /// A new column of the type, which stays where it is.
  template <typename Column>
  [[nodiscard]] Column& add(std::string name) {
    return std::get<Column>(
        m_columns.emplace_back(std::move(name), AnyColumn(std::in_place_type<Column>)).second);
  }

  /// All columns as a dictionary; the frame is of no use afterwards.
  [[nodiscard]] pybind11::dict take();

 private:
  using AnyColumn =
      std::variant<TextColumn, RealColumn, IntegerColumn, CountColumn, FlagColumn, OptionalFlagColumn>;

  std::deque<std::pair<std::string, AnyColumn>> m_columns;
};

/// A value as frames have it: missing where there is no data, NaN where there is no number.
[[nodiscard]] std::optional<double> shownValueOf(TableValue const& value);

[[nodiscard]] std::optional<std::int64_t> asInteger(std::optional<std::size_t> number);

[[nodiscard]] std::optional<double> valueOf(std::optional<ColumnLimit> const& limit);

}  // namespace Kestrel::ResultTables
