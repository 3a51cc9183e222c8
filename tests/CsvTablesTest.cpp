#include "result_tables/render/CsvTables.h"

#include <gtest/gtest.h>

#include <limits>

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;

constexpr char const* s_header =
    "unit,unitId,family,group,subGroup,item,valid,key,column,value,valueUnit,limit,exceeded\r\n";

class CsvTables : public testing::Test {
 protected:
  CsvTables() { m_limits.updateLimits({m_unit.getID()}); }

  std::string render(MaxValueGroup const& group) {
    m_container->groups = {group};
    return renderCsv({ResultTable(m_unit, m_container, m_limits)});
  }

  SimulationUnit const m_unit{
      SimulationUnitId(*GUIdentifier::fromString("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01")), "OP20, \"left\""};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(DataType::Bolts, m_unit.getID());
  TablePropertiesData m_limits;
};

TEST_F(CsvTables, HaveOneRecordPerValue) {
  m_container->valuesAreValid = {{"B2", false}};
  m_container->invalidValuesNameAppendix = " (bad)";
  MaxValueGroup group{"Forces",
                      false,
                      true,
                      {TablePropertyLimitType::BoltNormalForce, TablePropertyLimitType::NoLimit},
                      {"ClampNormalForce", "Other"},
                      {}};
  group.subGroups.push_back({"Left", {{"B1", {-812.4, 0.1}}, {"B2", {99, 1e300}}}});
  std::string const unit = "\"OP20, \"\"left\"\"\",0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,Forces,Left,";
  EXPECT_EQ(render(group), s_header + unit +
                               "B1,true,ClampNormalForce,Max Normal Force,-812.4,N,30,true\r\n" + unit +
                               "B1,true,Other,,0.1,,,false\r\n" + unit +
                               "B2,false,ClampNormalForce,Max Normal Force,99,N,30,false\r\n" + unit +
                               "B2,false,Other,,1e+300,,,false\r\n");
}

TEST_F(CsvTables, HaveNoRecordOfAnItemWithoutColumns) {
  MaxValueGroup group;
  group.subGroups.push_back({"Left", {{"T1", {}}}});
  EXPECT_EQ(render(group), s_header);
}

TEST_F(CsvTables, QuoteFieldsThatNeedItAndReplaceBadBytes) {
  MaxValueGroup group{"F", false, true, {}, {"K"}, {}};
  group.subGroups.push_back({"", {{"a\r\nb\xFF", {std::numeric_limits<double>::quiet_NaN()}}}});
  EXPECT_EQ(render(group), std::string(s_header) +
                               "\"OP20, "
                               "\"\"left\"\"\",0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,F,,"
                               "\"a\r\nb\xEF\xBF\xBD\",true,K,,nan,,,false\r\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables
