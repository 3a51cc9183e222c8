#include "result_tables/tables/Tables.h"

#include <gmock/gmock.h>

#include "result_tables/base/Error.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TablesTest : public testing::Test {
 protected:
  ResultsFile const m_file =
      readResults("r.json", R"({"format": "simulation-results", "version": 1, "units": [
        {"id": "00000000-0000-0000-0000-000000000001", "name": "OP10",
         "tools": [{"id": "B1", "kind": "bolt"}, {"id": "P1", "kind": "pilot"}]},
        {"id": "00000000-0000-0000-0000-000000000002", "name": "OP20"}]})");
};

TEST_F(TablesTest, SayWhatWasReadThoughNothingIsShownOfIt) {
  auto const tables = genTables(m_file, {{"OP20"}, {}, false}, {});
  EXPECT_THAT(tables.tables, IsEmpty());
  ASSERT_EQ(tables.files.size(), 1U);
  EXPECT_EQ(tables.files[0].name, "r.json");
  EXPECT_THAT(tables.files[0].units, ElementsAre("OP20"));
  EXPECT_EQ(tables.files[0].limits, "");
  EXPECT_FALSE(tables.files[0].error.has_value());
}

TEST_F(TablesTest, NameTheLimitsThatTheyAreComparedWith) {
  ResultLimits limits;
  limits.source = "policy.json";
  EXPECT_EQ(genTables(m_file, {}, limits).files[0].limits, "policy.json");
}

TEST_F(TablesTest, AreThoseOfTheFilesOneAfterTheOther) {
  auto tables = genTables(m_file, {}, {});
  ASSERT_EQ(tables.tables.size(), 2U);
  tables.append(genTables(m_file, {{}, {MaxValueGroupContainer::DataType::Bolts}, false}, {}));
  EXPECT_EQ(tables.files.size(), 2U);
  EXPECT_THAT(tables.files[1].units, ElementsAre("OP10", "OP20"));
  ASSERT_EQ(tables.tables.size(), 4U);
  EXPECT_EQ(tables.tables[2].container().dataType, MaxValueGroupContainer::DataType::Bolts);
}

TEST_F(TablesTest, AreNotMadeOfAUnitThatTheFileLacks) {
  EXPECT_THROW((void)genTables(m_file, {{"OP30"}, {}, false}, {}), Error);
}

}  // namespace
}  // namespace Kestrel::ResultTables
