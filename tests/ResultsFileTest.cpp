#include "result_tables/ResultsFile.h"

#include <gtest/gtest.h>

#include "result_tables/Error.h"

namespace Kestrel::ResultTables {
namespace {

TEST(ResultsFile, HasItsUnitsInTheFilesOrder) {
  auto const file = readResults("two.json", R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0B6F6D3E-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20"},
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a00", "name": "OP10"}]})");
  ASSERT_EQ(file.units.size(), 2U);
  EXPECT_EQ(file.units[0].unit->getSimulationUnitName(), "OP20");
  EXPECT_EQ(file.units[0].unit->getID().toString(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  EXPECT_EQ(file.units[1].unit->getSimulationUnitName(), "OP10");
}

}  // namespace
}  // namespace Kestrel::ResultTables
