#include "result_tables/study/RunData.h"

#include <gmock/gmock.h>

#include "result_tables/base/Error.h"
#include "support/FindingsTesting.h"
#include "support/StudyTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::DoubleEq;
using testing::Optional;
using testing::SizeIs;
using testing::ThrowsMessage;

class RunDataOfTables : public FindingsFixture {
 protected:
  [[nodiscard]] RunData runData() {
    StudyRun run;
    run.name = "r";
    run.file = "r.json";
    return genRunData(run, {genTable(m_unit, m_container, m_limits)});
  }
};

TEST_F(RunDataOfTables, HaveOneValuePerValueOfTheTablesInTheirOrder) {
  auto const data = runData();
  EXPECT_EQ(data.run.valueCount, 8U);
  ASSERT_THAT(data.sections, SizeIs(2));
  EXPECT_EQ(data.sections[0].unit, "OP20");
  EXPECT_EQ(data.sections[0].unitId, "00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(data.sections[0].family, MaxValueGroupContainer::DataType::SpotWelds);
  EXPECT_EQ(data.sections[1].name, "Second");
  EXPECT_EQ(data.sections[1].firstElement, 2U);
  EXPECT_EQ(data.sections[1].elementCount, 2U);
  ASSERT_THAT(data.elements, SizeIs(4));
  EXPECT_EQ(data.elements[1].subGroup, "Left");
  EXPECT_EQ(data.elements[1].item, "Spot 2");
  EXPECT_EQ(data.elements[2].section, 1U);
  ASSERT_THAT(data.values, SizeIs(8));
  EXPECT_EQ(data.values[1].element, 0U);
  EXPECT_EQ(data.values[1].column, 1U);
  EXPECT_EQ(data.values[1].value, 600);
  EXPECT_TRUE(data.values[1].isExceeded);
  EXPECT_EQ(data.values[1].step, 0U);
  EXPECT_EQ(data.values[1].count, 1U);
  EXPECT_FALSE(data.values[2].isValid);
  EXPECT_FALSE(data.values[2].isExceeded);
}

TEST_F(RunDataOfTables, CountAsACheckDoes) {
  auto const data = runData();
  EXPECT_EQ(data.run.counts.exceeded, 3U);
  EXPECT_EQ(data.run.counts.invalid, 1U);
  EXPECT_EQ(data.run.counts.compared, 4U);
  EXPECT_THAT(data.run.worst, Optional(DoubleEq(1.2)));
  EXPECT_THAT(data.sections[0].columns[0].worst, Optional(DoubleEq(1.001)));
  EXPECT_EQ(data.sections[1].columns[1].counts.exceeded, 1U);
  EXPECT_EQ(data.sections[1].columns[1].limit->value, 500);
}

TEST_F(RunDataOfTables, CountItemsOfOneNameInASubGroup) {
  m_container->groups[0].subGroups[0].items.push_back({"Spot 1", {1, 1}});
  m_container->groups[0].subGroups.push_back({"Right", {{"Spot 1", {1, 1}}}});
  auto const data = runData();
  EXPECT_EQ(data.elements[0].occurrence, 0U);
  EXPECT_EQ(data.elements[2].occurrence, 1U);
  EXPECT_EQ(data.elements[3].subGroup, "Right");
  EXPECT_EQ(data.elements[3].occurrence, 0U);
}

TEST_F(RunDataOfTables, RefuseNamesThatDatabasesCannotHold) {
  m_container->groups[0].subGroups[0].items[0].name = std::string("a\0b", 3);
  EXPECT_THAT(
      [&] { static_cast<void>(runData()); },
      ThrowsMessage<Error>("r.json: expected names without NUL, as databases have none in texts, found "
                           "\"a␀b\""));
  EXPECT_THAT([] { checkStorable("--label", "\xFF"); },
              ThrowsMessage<Error>("--label: expected UTF-8, found \"\xEF\xBF\xBD\""));
  EXPECT_NO_THROW(checkStorable("--label", "'; DROP TABLE study_runs; -- \xF0\x9F\x9A\x97"));
}

TEST(LayoutDigest, IsThatOfTheNamesAloneAndOfTheirPlaces) {
  auto const digest = genTestRun("one").layoutDigest();
  EXPECT_EQ(genTestRun("two").layoutDigest(), digest);
  auto changed = genTestRun("one");
  changed.values.clear();
  changed.sections[0].columns[0].limit->value = 3;
  changed.run.contentDigest = "other";
  EXPECT_EQ(changed.layoutDigest(), digest);
  changed = genTestRun("one");
  changed.elements[0].subGroup = "LeftC";
  changed.elements[0].item = "1";
  EXPECT_NE(changed.layoutDigest(), digest);
  changed = genTestRun("one");
  changed.sections[1].isTeaching = false;
  EXPECT_NE(changed.layoutDigest(), digest);
  changed = genTestRun("one");
  changed.sections[0].columns[0].unit = "kN";
  EXPECT_NE(changed.layoutDigest(), digest);
  changed = genTestRun("one");
  changed.sections[0].elementCount = 1;
  changed.sections[1].elementCount = 2;
  EXPECT_NE(changed.layoutDigest(), digest);
}

}  // namespace
}  // namespace Kestrel::ResultTables
