#include "result_tables/render/CsvDifferences.h"

#include <gtest/gtest.h>

#include "support/DifferencesTesting.h"

namespace Kestrel::ResultTables {
namespace {

constexpr char const* s_header =
    "unit,unitId,family,group,subGroup,item,key,column,kind,before,after,change,relative,validBefore,"
    "validAfter,"
    "exceededBefore,exceededAfter\r\n";

TEST(CsvDifferences, AreARecordEach) {
  EXPECT_EQ(renderCsv(differencesOf(oneBolt("20"), oneBolt("31"))),
            std::string(s_header) +
                "OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,ClampNormalForce,Max Normal "
                "Force,changed,20,31,11,0.55,true,true,false,true\r\n");
}

TEST(CsvDifferences, LeaveEmptyWhatThereIsNoneOf) {
  auto const pilot = unitOf('1', "OP \\\"1\\\", left", pilots({{"P1", 2}}));
  EXPECT_EQ(
      renderCsv(differencesOf("", pilot)),
      std::string(s_header) +
          "\"OP \"\"1\"\", left\",0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Pilots,Forces,,P1,PilotForce,Max "
          "Force,added,,2,,,,true,,false\r\n");
  EXPECT_EQ(
      renderCsv(differencesOf(pilot, "")),
      std::string(s_header) +
          "\"OP \"\"1\"\", left\",0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Pilots,Forces,,P1,PilotForce,Max "
          "Force,removed,2,,,,true,,false,\r\n");
  EXPECT_EQ(renderCsv(differencesOf(oneBolt("\"-Infinity\""), oneBolt("\"Infinity\""))),
            std::string(s_header) +
                "OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,ClampNormalForce,Max Normal "
                "Force,changed,-inf,inf,,,true,true,true,true\r\n");
}

TEST(CsvDifferences, AreTheHeaderAloneWhereNothingDiffers) {
  EXPECT_EQ(renderCsv(differencesOf(oneBolt("1"), oneBolt("1"))), s_header);
}

}  // namespace
}  // namespace Kestrel::ResultTables
