#include <gmock/gmock.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "Limits.h"
#include "StrictHost/ObjectView.h"

namespace Kestrel {
namespace {

using StrictHost::ObjectView;
using testing::ElementsAre;

SimulationUnitId const a(1);
SimulationUnitId const b(2);
SimulationUnitId const c(3);

/// Notes what the tree is told.
class RecordingData : public TablePropertiesData {
 public:
  using TablePropertiesData::propagateTreeChanged;

  void propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                            std::vector<std::shared_ptr<Object>> const& objects) override {
    m_reports.push_back(std::to_string(static_cast<unsigned int>(reason)) + ": " +
                        std::to_string(objects.size()) + " objects");
  }
  void propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> object) override {
    m_reports.push_back(std::to_string(static_cast<unsigned int>(reason)) + ": " +
                        ObjectView::nameOf(*object));
  }

  std::vector<std::string> m_reports;
};

TEST(LimitOnAStrictHost, HoldsOneValueUnderTwoNames) {
  TablePropertyLimit limit(TablePropertyLimitType::PilotForce, b, 500.0, "N");
  EXPECT_EQ(limit.getType(), TablePropertyLimitType::PilotForce);
  EXPECT_TRUE(limit.getSimUnitID() == b);
  EXPECT_EQ(limit.getUnitString(), "N");
  EXPECT_EQ(limit.getLimitDisplayName(), "");
  limit.setMaxLimit(7.5);
  EXPECT_EQ(limit.getLimit(), 7.5);
  limit.setLimit(-1.0);
  EXPECT_EQ(limit.getMaxLimit(), -1.0);
  limit.setMaxDisplayName("Pilot");
  EXPECT_EQ(limit.getMaxLimitDisplayName(), "Pilot");
  EXPECT_EQ(limit.getLimitDisplayName(), "Pilot");
}

TEST(LimitOnAStrictHost, TellsOfEveryValueAndOfNothingElse) {
  auto const limit = std::make_shared<TablePropertyLimit>(TablePropertyLimitType::PilotForce, a, 1.0, "N");
  LimitAccessInterface& access = *limit;
  std::vector<double> heard;
  auto connection = access.connectToSigLimitsChanged([&] { heard.push_back(limit->getLimit()); });
  access.setLimit(2.0);
  access.setLimit(2.0);
  limit->setMaxLimit(3.0);
  limit->setMaxDisplayName("Pilot");
  connection.disconnect();
  access.setLimit(4.0);
  EXPECT_THAT(heard, ElementsAre(2.0, 2.0, 3.0));
}

TEST(CollectionOnAStrictHost, GivesNewUnitsTheDefaults) {
  RecordingData data;
  data.updateLimits({b, a});
  EXPECT_EQ(
      describeUnit(data, a),
      "1=500N 2=1mm 3=1mm 4=1mm 5=500N 6=500N 7=500N 8=500N 9=1mm 17=1mm 18=500N 19=500N 20=500N 21=500N "
      "22=500N 23=30N ");
  EXPECT_EQ(describeUnit(data, b), describeUnit(data, a));
  EXPECT_EQ(describeUnit(data, c), "");
  EXPECT_EQ(describeOrder(data),
            "unit 2: 1 2 3 4 5 6 7 8 9 19 23 20 21 22 18 17\n"
            "unit 1: 1 2 3 4 5 6 7 8 9 19 23 20 21 22 18 17\n");
  EXPECT_THAT(data.m_reports, ElementsAre("4: 16 objects", "4: 16 objects"));
  std::set<int> ids;
  for (auto const& child : ObjectView::childrenOf(data)) {
    EXPECT_EQ(ObjectView::nameOf(*child), "TablePropertyLimit");
    EXPECT_EQ(ObjectView::parentOf(*child), &data);
    ids.insert(ObjectView::childIdOf(*child));
  }
  EXPECT_EQ(ids.size(), 32U);
}

TEST(CollectionOnAStrictHost, KeepsTheValuesOfUnitsThatStay) {
  RecordingData data;
  data.updateLimits({c, b});
  data.getLimit(c, TablePropertyLimitType::PilotForce)->setLimit(7.0);
  auto const dropped = data.getLimit(b, TablePropertyLimitType::PilotForce);
  data.m_reports.clear();
  data.updateLimits({a, c});
  EXPECT_EQ(describeOrder(data),
            "unit 3: 1 2 3 4 5 6 7 8 9 19 23 20 21 22 18 17\n"
            "unit 1: 1 2 3 4 5 6 7 8 9 19 23 20 21 22 18 17\n");
  EXPECT_EQ(describeUnit(data, c).find("19=7N") != std::string::npos, true);
  EXPECT_EQ(describeUnit(data, b), "");
  EXPECT_EQ(ObjectView::parentOf(*dropped), nullptr);
  auto expected = std::vector<std::string>(32, "7: TablePropertyLimit");
  expected.insert(expected.end(), {"4: 16 objects", "4: 16 objects"});
  EXPECT_EQ(data.m_reports, expected);
}

TEST(CollectionOnAStrictHost, SameUnitsGiveTheSameLimits) {
  RecordingData data;
  data.updateLimits({a, b});
  auto const limit = data.getLimit(a, TablePropertyLimitType::BoltNormalForce);
  data.updateLimits({b, a});
  EXPECT_EQ(data.getLimit(a, TablePropertyLimitType::BoltNormalForce), limit);
  EXPECT_EQ(ObjectView::parentOf(*limit), &data);
  EXPECT_EQ(ObjectView::childrenOf(data).size(), 32U);
}

TEST(CollectionOnAStrictHost, NewUnitThatIsListedTwiceGetsTwoSets) {
  TablePropertiesData data;
  data.updateLimits({a});
  data.updateLimits({b, b, a});
  EXPECT_EQ(ObjectView::childrenOf(data).size(), 48U);
  data.updateLimits({});
  EXPECT_EQ(ObjectView::childrenOf(data).size(), 0U);
}

TEST(CollectionOnAStrictHost, KindsWithoutDefaultHaveNoLimit) {
  TablePropertiesData data;
  data.updateLimits({a});
  for (auto const type : {TablePropertyLimitType::NoLimit, TablePropertyLimitType::ClampingToolForce,
                          TablePropertyLimitType::ClampClosingForce, TablePropertyLimitType(99)})
    EXPECT_EQ(data.getLimit(a, type), nullptr);
}

}  // namespace
}  // namespace Kestrel
