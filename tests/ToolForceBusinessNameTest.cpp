#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "Business_TableProperties/TablePropertySettings.h"
#include "support/ChildProcess.h"

namespace Kestrel {
namespace {

/// The business name of the total tool forces and the catalogue's header for it, in another language.
std::string inLanguage(std::string const& language) {
  return outputOfThisProgram({"LANG=" + language}, {"--total-tool-forces"});
}

TEST(ToolForceBusinessName, NamesTheTotalToolForces) {
  EXPECT_EQ(GlobalForcesDefinition::s_totalToolForces, "TotalToolForces");
  EXPECT_EQ(ToolForceBusinessName::getTranslated("TotalToolForces"), "Total Tool Forces");
  EXPECT_EQ(inLanguage("de_DE.UTF-8"), "Werkzeugkräfte gesamt: Max. Kraft in Arbeitsrichtung\n");
  EXPECT_EQ(inLanguage("ja_JP.UTF-8"), "工具合計力: 最大作動方向力\n");
}

TEST(ToolForceBusinessName, AnUnknownNameIsItsOwn) {
  EXPECT_EQ(ToolForceBusinessName::getTranslated("Force"), "Force");
  EXPECT_EQ(ToolForceBusinessName::getTranslated(""), "");
}

TEST(ToolForceBusinessName, StaysInItsPlace) {
  auto const& name = ToolForceBusinessName::getTranslated("TotalToolForces");
  for (int i = 0; i < 1000; ++i) (void)ToolForceBusinessName::getTranslated(std::to_string(i));
  EXPECT_EQ(&name, &ToolForceBusinessName::getTranslated("TotalToolForces"));
  EXPECT_EQ(name, "Total Tool Forces");
}

}  // namespace
}  // namespace Kestrel

int main(int argc, char** argv) {
  if (argc == 2 && std::string(argv[1]) == "--total-tool-forces") {
    auto const& name = Kestrel::ToolForceBusinessName::getTranslated("TotalToolForces");
    std::cout << name << ": " << Kestrel::TablePropertySettings::getTableDisplayName(name) << '\n';
    return 0;
  }
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
