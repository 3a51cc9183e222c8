#include "result_tables/render/CsvTables.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;

constexpr char const* s_header =
    "file,unit,unitId,family,group,subGroup,item,valid,key,column,value,valueUnit,limit,exceeded,step,time,"
    "count,nans\r\n";

class CsvTables : public testing::Test {
 protected:
  CsvTables() { m_limits.collection->updateLimits({m_unit.getID()}); }

  std::string render(MaxValueGroup const& group) {
    m_container->groups = {group};
    return renderCsv({genTable(m_unit, m_container, m_limits)});
  }

  SimulationUnit const m_unit{
      SimulationUnitId(*GUIdentifier::fromString("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01")), "OP20, \"left\""};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(DataType::Bolts, m_unit.getID());
  ResultLimits m_limits;
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
  std::string const unit =
      "r.json,\"OP20, \"\"left\"\"\",0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,Forces,Left,";
  EXPECT_EQ(render(group), s_header + unit +
                               "B1,true,ClampNormalForce,Max Normal Force,-812.4,N,30,true,0,,1,0\r\n" +
                               unit + "B1,true,Other,,0.1,,,false,0,,1,0\r\n" + unit +
                               "B2,false,ClampNormalForce,Max Normal Force,99,N,30,false,0,,1,0\r\n" + unit +
                               "B2,false,Other,,1e+300,,,false,0,,1,0\r\n");
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
                               "r.json,\"OP20, "
                               "\"\"left\"\"\",0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,F,,"
                               "\"a\r\nb\xEF\xBF\xBD\",true,K,,nan,,,false,,,0,1\r\n");
}

TEST_F(CsvTables, SayWhereAValueComesFrom) {
  auto const csv = renderCsv(genClampTables(R"([
      {"quantity": "ClampNormalForce", "pairs": [[1, 0.5], [-2, 0.75], [null, 1]]},
      {"quantity": "ClampSupportingForce", "values": [0]}])"));
  std::string const begin = "r.json,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Clamps,Forces,,Clamp 1,true,";
  EXPECT_EQ(csv.substr(0, csv.find("r.json,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Clamps,Distances")),
            s_header + begin + "ClampNormalForce,Max Normal Force,-2,N,,false,1,0.75,2,1\r\n" + begin +
                "ClampClosingForce,Max Closing Force,0,N,,false,,,0,0\r\n" + begin +
                "ClampSupportingForce,Max Supporting Force,0,N,,false,,,1,0\r\n" + begin +
                "ClampTangentialForce,Max Tangential Force,0,N,,false,,,0,0\r\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables
