#include <gtest/gtest.h>

#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

namespace Kestrel {
namespace {

TEST(SimUnitMaxValuesProvider, AnUnknownFamilyIsAnEmptyTable) {
  SimulationUnit const unit(SimulationUnitId(), "OP20");
  auto const table = SimUnitMaxValuesProvider(unit, {}).genGetMaxValuesCollection(
      static_cast<MaxValueGroupContainer::DataType>(12));
  EXPECT_TRUE(table->groups.empty());
}

}  // namespace
}  // namespace Kestrel
