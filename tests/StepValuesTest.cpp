#include "Business_SimulationResult/StepValues.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace Kestrel {
namespace {

using Pair = StepValues<double>::Pair;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<double> visitedValues(StepValues<double> const& series) {
  std::vector<double> visited;
  series.forEachValue([&](double value) { visited.push_back(value); });
  return visited;
}

TEST(StepValues, MadeOfNothingAreAnEmptySeriesOfPlainValues) {
  StepValues<double> const series;
  EXPECT_EQ(series.size(), 0u);
  EXPECT_THAT(series.values(), IsEmpty());
  EXPECT_FALSE(series.forEachPair([](double, double) {}));
}

TEST(StepValues, GivePlainValuesInStoredOrder) {
  StepValues<double> const series(std::vector<double>{3.0, -7.5, 5.0});
  EXPECT_EQ(series.size(), 3u);
  EXPECT_THAT(series.values(), ElementsAre(3.0, -7.5, 5.0));
  EXPECT_THAT(series.pairs(), IsEmpty());
  EXPECT_THAT(visitedValues(series), ElementsAre(3.0, -7.5, 5.0));
  EXPECT_FALSE(series.forEachPair([](double, double) { ADD_FAILURE() << "plain values have no companion"; }));
}

TEST(StepValues, GivePairsInStoredOrderAndVisitTheirValues) {
  StepValues<double> const series(std::vector<Pair>{{3.0, 0.25}, {-7.5, 0.5}});
  EXPECT_EQ(series.size(), 2u);
  EXPECT_THAT(series.values(), IsEmpty());
  EXPECT_THAT(series.pairs(), ElementsAre(Pair(3.0, 0.25), Pair(-7.5, 0.5)));
  EXPECT_THAT(visitedValues(series), ElementsAre(3.0, -7.5));
  std::vector<Pair> visited;
  EXPECT_TRUE(
      series.forEachPair([&](double value, double companion) { visited.emplace_back(value, companion); }));
  EXPECT_THAT(visited, ElementsAre(Pair(3.0, 0.25), Pair(-7.5, 0.5)));
}

TEST(StepValues, OfNoPairsArePairsAllTheSame) {
  StepValues<double> const series(std::vector<Pair>{});
  EXPECT_TRUE(series.forEachPair([](double, double) { ADD_FAILURE() << "there is no pair"; }));
  EXPECT_EQ(series.size(), 0u);
}

TEST(StepValues, ShareTheirNumbersWithCopies) {
  auto series = std::make_unique<StepValues<double>>(std::vector<double>{1.5});
  auto const copy = *series;
  auto const* const numbers = series->values().data();
  series.reset();
  EXPECT_EQ(copy.values().data(), numbers);
  EXPECT_THAT(copy.values(), ElementsAre(1.5));
}

TEST(StepValues, KeepTheOwnerOfABlockThatSeveralShare) {
  auto block = std::make_shared<std::array<double, 3> const>(std::array{1.0, 2.0, 3.0});
  std::weak_ptr<void const> const owner = block;
  std::span<double const> const numbers(*block);
  auto first = std::make_unique<StepValues<double>>(block, numbers.first(1));
  auto second = std::make_unique<StepValues<double>>(block, numbers.last(2));
  block.reset();
  first.reset();
  EXPECT_FALSE(owner.expired());
  EXPECT_THAT(second->values(), ElementsAre(2.0, 3.0));
  second.reset();
  EXPECT_TRUE(owner.expired());
}

}  // namespace
}  // namespace Kestrel
