#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

/// The values of the history `name`, which must be one without several nodes.
inline std::vector<double> valuesOf(Histories const& histories, std::string_view name) {
  auto const& found = histories.find(name);
  if (found.size() != 1) {
    ADD_FAILURE() << name << " is " << found.size() << " histories";
    return {};
  }
  auto const& [table, component] = found.front();
  std::vector<double> values;
  for (std::size_t i = 0; i < table->times.size(); ++i) values.push_back(table->value(i, 0, component));
  return values;
}

/// The message of the `Error` that `act` ends in.
inline std::string errorOf(std::function<void()> const& act) {
  try {
    act();
  } catch (Error const& error) {
    return error.what();
  }
  return "no error";
}

/// A double of any magnitude, now and then a special one.
inline double anyDouble(std::mt19937_64& random) {
  constexpr double special[] = {0.0,
                                -0.0,
                                std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::max()};
  if (random() % 16 == 0) return special[random() % std::size(special)];
  double value;
  do {
    value = std::bit_cast<double>(random());
  } while (!std::isfinite(value));
  return value;
}

/// Equality that tells the zeros apart.
inline void expectSameBits(std::vector<double> const& read, std::vector<double> const& written) {
  ASSERT_EQ(read.size(), written.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    ASSERT_EQ(std::bit_cast<std::uint64_t>(read[i]), std::bit_cast<std::uint64_t>(written[i])) << i;
  }
}

}  // namespace Kestrel::ResultTables
