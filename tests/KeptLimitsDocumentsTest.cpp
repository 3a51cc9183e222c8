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
#include "support/LimitsWriter.h"
#include "support/TablePropertiesDataTestAccess.h"

// Documents of every version that users may have. The files are frozen: a program that reads or writes them
// otherwise is wrong. How each was made is a row below; a new document is a new row.

namespace Kestrel {
namespace {

namespace fs = std::filesystem;

using Access = TablePropertiesDataTestAccess;

fs::path const s_folder = fs::path(KESTREL_SOURCE_DIR) / "tests/data/limits_documents";

/// Where a test leaves what is not as it is kept.
fs::path const s_otherwise = fs::path(KESTREL_BINARY_DIR) / "tests/limits_documents";

SimulationUnitId unit(char const* id) { return SimulationUnitId(GUIdentifier::fromString(id).value()); }

SimulationUnitId const s_firstUnit = unit("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
SimulationUnitId const s_secondUnit = unit("7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11");

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

void expectKept(std::string const& file, std::string const& content) {
  if (fs::exists(s_folder / file) && contentOf(s_folder / file) == content) return;
  fs::create_directories(s_otherwise);
  std::ofstream(s_otherwise / file, std::ios::binary) << content;
  ADD_FAILURE() << "not as it is kept. For a document that is new: cp " << s_otherwise / file << ' '
                << s_folder;
}

/// A collection with one limit, which the list that `arrange` makes holds as it likes.
template <typename Arrange>
std::string genDocumentOfOneLimit(TablePropertyLimitType type, double value, Arrange const& arrange) {
  auto const data = std::make_shared<TablePropertiesData>();
  auto const limit = std::make_shared<TablePropertyLimit>(type, s_firstUnit, value, "N");
  auto& limits = Access::limits(*data);
  constexpr int freshIds = 1;
  ObjectHelper::addToVectorAtEnd(data.get(), {limit}, limits, "TablePropertyLimit", freshIds, false);
  arrange(limits);
  return genDocument(data);
}

std::string genDocumentWithUnusualValues() {
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({s_firstUnit, s_secondUnit});
  auto const set = [&data](SimulationUnitId const& id, TablePropertyLimitType type, double value) {
    data->getLimit(id, type)->setLimit(value);
  };
  set(s_firstUnit, TablePropertyLimitType::BoltNormalForce, 31.5);
  set(s_firstUnit, TablePropertyLimitType::SteelForce,
      std::bit_cast<double>(std::uint64_t{0xFFF80000000004D2}));
  set(s_secondUnit, TablePropertyLimitType::RollerForce, -std::numeric_limits<double>::infinity());
  set(s_secondUnit, TablePropertyLimitType::HemmingBedForce, -0.0);
  set(s_secondUnit, TablePropertyLimitType::PilotForce, std::numeric_limits<double>::denorm_min());
  return genDocument(data);
}

struct KeptDocument {
  char const* name;
  std::string document;
};

std::vector<KeptDocument> keptDocuments() {
  std::vector<WrittenLimit> const one = {{1, s_firstUnit, 480.0, "N"}};
  std::vector<WrittenLimit> const two = {one[0], {2, s_firstUnit, 1.25, "mm"}};
  std::vector<WrittenLimit> const three = {two[0], two[1], {24, s_secondUnit, -3.5, "N"}};
  using enum TablePropertyLimitType;
  return {
      {"class-500001",
       LimitsWriter{.collectionVersion = 500001, .limitVersion = 500001, .limits = three}.genDocument()},
      {"class-500002", genDocumentWithUnusualValues()},
      {"class-500003",
       LimitsWriter{
           .collectionVersion = 500003, .limitVersion = 500003, .limits = three, .hasUnknownFields = true}
           .genDocument()},
      {"collection-500001", LimitsWriter{.collectionVersion = 500001, .limits = three}.genDocument()},
      {"data-0", LimitsWriter{.dataVersion = 0}.genDocument()},
      {"data-20", LimitsWriter{.dataVersion = 20, .limits = one}.genDocument()},
      {"data-30", LimitsWriter{.dataVersion = 30, .limits = two}.genDocument()},
      {"empty", genDocument(std::make_shared<TablePropertiesData>())},
      {"example", genDocumentOfOneLimit(BoltNormalForce, 31.5,
                                        [](auto& limits) {
                                          limits.push_back(limits.front());
                                          limits.push_back(nullptr);
                                        })},
      {"limit-500001", LimitsWriter{.limitVersion = 500001, .limits = three}.genDocument()},
      {"null-and-shared", genDocumentOfOneLimit(JoinNormalForce, 2.0,
                                                [](auto& limits) {
                                                  limits.insert(limits.begin(), nullptr);
                                                  limits.push_back(limits.back());
                                                })},
  };
}

class KeptLimitsDocuments : public testing::TestWithParam<KeptDocument> {};

TEST_P(KeptLimitsDocuments, AreWrittenByTheseVeryBytes) {
  expectKept(GetParam().name + std::string(".limits"), GetParam().document);
}

TEST_P(KeptLimitsDocuments, AreReadAsTheyWereMeant) {
  auto const data = loadDocument<TablePropertiesData>(GetParam().document);
  expectKept(GetParam().name + std::string(".txt"), describe(*data));
}

INSTANTIATE_TEST_SUITE_P(All, KeptLimitsDocuments, testing::ValuesIn(keptDocuments()), [](auto const& test) {
  std::string name = test.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

TEST(KeptLimitsDocumentsFolder, HoldsNoOtherDocuments) {
  std::vector<std::string> expected;
  for (auto const& kept : keptDocuments()) {
    expected.push_back(kept.name + std::string(".limits"));
    expected.push_back(kept.name + std::string(".txt"));
  }
  std::vector<std::string> found;
  for (auto const& entry : fs::directory_iterator(s_folder))
    found.push_back(entry.path().filename().string());
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(expected));
}

}  // namespace
}  // namespace Kestrel
