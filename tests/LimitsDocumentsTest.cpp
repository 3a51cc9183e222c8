#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/TablePropertiesDataTestAccess.h"

// Documents of every version that users may have. The files are frozen: a program that reads or writes them
// otherwise is wrong.

namespace Kestrel {
namespace {

namespace fs = std::filesystem;

using Access = TablePropertiesDataTestAccess;

fs::path const s_folder = fs::path(KESTREL_SOURCE_DIR) / "tests/data/limits_documents";

std::string contentOf(fs::path const& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A line for the tree and one for each limit: unit, type, value with its bits, unit text, child id.
std::string describe(TablePropertiesData& data) {
  std::string text =
      fmt::format("data version {}, {} children\n", Access::dataVersion(data), data.getChildCount());
  for (auto const& limit : Access::limits(data)) {
    if (limit) {
      text += fmt::format("{} {} {} {:016x} \"{}\" {} {}\n", limit->getSimUnitID().toString(),
                          static_cast<unsigned int>(limit->getType()), limit->getLimit(),
                          std::bit_cast<std::uint64_t>(limit->getLimit()), limit->getUnitString(),
                          limit->getObjectName(),
                          limit->getParentObject() == &data ? std::to_string(limit->getChildId()) : "alone");
    } else {
      text += "null\n";
    }
  }
  return text;
}

class LimitsDocumentsTest : public testing::TestWithParam<std::string> {};

TEST_P(LimitsDocumentsTest, IsReadAsItWasMeant) {
  auto const data = loadDocument<TablePropertiesData>(contentOf(s_folder / (GetParam() + ".limits")));
  EXPECT_EQ(describe(*data), contentOf(s_folder / (GetParam() + ".txt")));
}

std::vector<std::string> namesOfDocuments() {
  std::vector<std::string> names;
  for (auto const& entry : fs::directory_iterator(s_folder))
    if (entry.path().extension() == ".limits") names.push_back(entry.path().stem().string());
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(All, LimitsDocumentsTest, testing::ValuesIn(namesOfDocuments()),
                         [](auto const& test) {
                           std::string name = test.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(LimitsDocuments, AreOfEveryVersionThatMatters) {
  EXPECT_THAT(
      namesOfDocuments(),
      testing::ElementsAre("class-500001", "class-500002", "class-500003", "collection-500001", "data-0",
                           "data-20", "data-30", "empty", "example", "limit-500001", "null-and-shared"));
}

TEST(LimitsDocuments, AreWrittenByTheseVeryBytes) {
  auto const unit = [](char const* id) { return SimulationUnitId(GUIdentifier::fromString(id).value()); };
  auto const first = unit("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  auto const second = unit("7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11");
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({first, second});
  data->getLimit(first, TablePropertyLimitType::BoltNormalForce)->setLimit(31.5);
  data->getLimit(first, TablePropertyLimitType::SteelForce)
      ->setLimit(std::bit_cast<double>(std::uint64_t{0xFFF80000000004D2}));
  data->getLimit(second, TablePropertyLimitType::RollerForce)
      ->setLimit(-std::numeric_limits<double>::infinity());
  data->getLimit(second, TablePropertyLimitType::HemmingBedForce)->setLimit(-0.0);
  data->getLimit(second, TablePropertyLimitType::PilotForce)
      ->setLimit(std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(genDocument(data), contentOf(s_folder / "class-500002.limits"));
}

}  // namespace
}  // namespace Kestrel
