#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "support/DifferencesTesting.h"

// What holds of the differences between any two results files.

namespace Kestrel::ResultTables {
namespace {

using testing::IsEmpty;

/// The normal force of each bolt of a unit.
using Bolts = std::vector<std::pair<std::string, double>>;

struct Unit {
  char digit;  ///< the last of its identifier
  std::string name;
  Bolts bolts;
};
using Units = std::vector<Unit>;

constexpr int s_runs = 40;
constexpr std::size_t s_valuesPerBolt = 5;  ///< in the tables

class AnyDifferences : public testing::Test {
 protected:
  std::size_t below(std::size_t end) { return m_random() % end; }

  /// A force with which sums and products are exact.
  double force() { return (static_cast<double>(below(401)) - 200.0) / 4.0; }

  Units anyUnits() {
    Units units;
    for (char digit = '1'; digit <= '4'; ++digit) {
      auto& unit = units.emplace_back(Unit{digit, std::string("OP") + digit + '0', {}});
      auto const count = 1 + below(6);
      for (std::size_t i = 0; i < count; ++i) unit.bolts.emplace_back(fmt::format("Bolt {}", i), force());
    }
    return units;
  }

  /// The same with other forces, without some bolts and with others.
  Units changed(Units units) {
    for (auto& unit : units) {
      std::erase_if(unit.bolts, [this](auto const&) { return below(4) == 0; });
      for (auto& [id, value] : unit.bolts) {
        if (below(2) == 0) value = force();
      }
      for (std::size_t i = below(3); i > 0; --i) unit.bolts.emplace_back(fmt::format("New {}", i), force());
    }
    std::erase_if(units, [this](auto const&) { return below(6) == 0; });
    return units;
  }

  Units shuffled(Units units) {
    std::ranges::shuffle(units, m_random);
    for (auto& unit : units) std::ranges::shuffle(unit.bolts, m_random);
    return units;
  }

  std::mt19937_64 m_random{20261122};  // NOLINT(cert-msc51-cpp): the same files in every run
};

std::string textOf(Units const& units) {
  std::string text;
  for (auto const& unit : units) {
    std::string bolts;
    for (auto const& [id, value] : unit.bolts)
      bolts += (bolts.empty() ? "" : ", ") + bolt(id, shortestForm(value));
    text += (text.empty() ? "" : ", ") + unitOf(unit.digit, unit.name, bolts);
  }
  return text;
}

ResultDifferences between(Units const& before, Units const& after, Tolerance const& tolerance = {}) {
  return differencesOf(textOf(before), textOf(after), tolerance);
}

std::size_t countBolts(Units const& units) {
  std::size_t count = 0;
  for (auto const& unit : units) count += unit.bolts.size();
  return count;
}

/// The lines of one kind of difference, with the number that only one file has.
std::multiset<std::string> linesOfKind(ResultDifferences const& differences, DifferenceKind kind) {
  std::multiset<std::string> lines;
  for (auto const& table : differences.tables) {
    for (auto const& row : table.rows) {
      for (auto const& value : row.values) {
        if (value.kind != kind) continue;
        auto const& number = value.before ? value.before : value.after;
        lines.insert(fmt::format("{} {} {} ", table.unit, row.item, value.column->key) + shown(number));
      }
    }
  }
  return lines;
}

TEST_F(AnyDifferences, AreNoneBetweenAFileAndItself) {
  for (int run = 0; run < s_runs; ++run) {
    auto const units = anyUnits();
    auto const found = between(units, units);
    ASSERT_THAT(linesOf(found), IsEmpty());
    ASSERT_EQ(found.countCompared(), s_valuesPerBolt * countBolts(units));
  }
}

TEST_F(AnyDifferences, DoNotDependOnTheOrderOfUnitsAndTools) {
  for (int run = 0; run < s_runs; ++run) {
    auto const before = anyUnits();
    ASSERT_FALSE(between(before, shuffled(before)).hasDifferences());
    auto const after = changed(before);
    auto inOrder = linesOf(between(before, after));
    auto shuffledLines = linesOf(between(shuffled(before), shuffled(after)));
    std::ranges::sort(inOrder);
    std::ranges::sort(shuffledLines);
    ASSERT_EQ(shuffledLines, inOrder);
  }
}

TEST_F(AnyDifferences, AreNoneBetweenUnitsThatWereRenamedOrIdentifiedAnew) {
  for (int run = 0; run < s_runs; ++run) {
    auto const units = anyUnits();
    auto renamed = units;
    for (auto& unit : renamed) unit.name = fmt::format("Station {}", below(2));
    ASSERT_FALSE(between(units, renamed).hasDifferences());
    auto identifiedAnew = units;
    for (auto& unit : identifiedAnew) unit.digit = static_cast<char>(unit.digit + 4);
    ASSERT_FALSE(between(units, shuffled(identifiedAnew)).hasDifferences());
  }
}

TEST_F(AnyDifferences, AddTheOtherWayRoundWhatTheyRemove) {
  for (int run = 0; run < s_runs; ++run) {
    auto const before = anyUnits();
    auto const after = changed(before);
    auto const there = between(before, after);
    auto const back = between(after, before);
    using enum DifferenceKind;
    ASSERT_EQ(linesOfKind(there, removed), linesOfKind(back, added));
    ASSERT_EQ(linesOfKind(there, added), linesOfKind(back, removed));
    ASSERT_EQ(linesOfKind(there, changed).size(), linesOfKind(back, changed).size());
    ASSERT_EQ(there.countCompared(), back.countCompared());
  }
}

/// How many forces differ by more than the tolerance, found by comparing all with all.
std::size_t countChangedSlowly(Units const& before, Units const& after, Tolerance const& tolerance) {
  std::size_t count = 0;
  for (auto const& [digit, name, bolts] : before) {
    for (auto const& [otherDigit, otherName, otherBolts] : after) {
      for (auto const& [id, value] : bolts) {
        for (auto const& [otherId, otherValue] : otherBolts) {
          if (digit != otherDigit || id != otherId) continue;
          if (std::abs(otherValue - value) > tolerance.absolute + tolerance.relative * std::abs(value))
            ++count;
        }
      }
    }
  }
  return count;
}

TEST_F(AnyDifferences, AreThoseBeyondTheTolerance) {
  std::size_t sum = 0;
  for (int run = 0; run < s_runs; ++run) {
    auto const before = anyUnits();
    auto const after = changed(before);
    for (auto const& tolerance :
         {Tolerance{}, Tolerance{.absolute = 10}, Tolerance{.relative = 0.5}, Tolerance{5, 0.25}}) {
      auto const expected = countChangedSlowly(before, after, tolerance);
      ASSERT_EQ(linesOfKind(between(before, after, tolerance), DifferenceKind::changed).size(), expected);
      sum += expected;
    }
  }
  EXPECT_GT(sum, 200U) << "the files have differed";
}

TEST_F(AnyDifferences, DoNotBecomeMoreWhenTheToleranceGrows) {
  for (int run = 0; run < s_runs; ++run) {
    auto const before = anyUnits();
    auto const after = changed(before);
    auto last = linesOfKind(between(before, after), DifferenceKind::changed);
    for (double const absolute : {0.25, 1.0, 4.0, 16.0, 64.0, 256.0}) {
      auto const lines = linesOfKind(between(before, after, {.absolute = absolute}), DifferenceKind::changed);
      ASSERT_TRUE(std::ranges::includes(last, lines));
      last = lines;
    }
    ASSERT_THAT(last, IsEmpty()) << "no two forces are 256 N apart";
  }
}

}  // namespace
}  // namespace Kestrel::ResultTables
