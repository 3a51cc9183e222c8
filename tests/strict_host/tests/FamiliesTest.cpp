#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_Skin/Skin.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"
#include "Describe.h"
#include "StrictHost/CallLog.h"

namespace Kestrel {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using StrictHost::StepContent;
using StrictHost::UnitContent;
using testing::ElementsAre;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

UnitContent::Series series(std::string name, std::vector<double> values) {
  return {std::move(name), std::make_shared<StepValues<double>>(std::move(values))};
}

std::shared_ptr<SimulationStep> step(StepContent content) {
  return std::make_shared<SimulationStep>(std::move(content));
}

std::shared_ptr<EvalJoiningTong> tong(char const* id, char const* name, unsigned int state) {
  return std::make_shared<EvalJoiningTong>(id, name, state);
}

std::shared_ptr<SimulationBodyJoin> weld(char const* id, char const* name, unsigned int state) {
  return std::make_shared<SimulationBodyJoin>(id, name, state);
}

std::shared_ptr<SimulationBodyLineJoin> lineJoin(char const* id, char const* name, unsigned int state,
                                                 unsigned int definition,
                                                 SimulationBodyLineJoin::Skins skins = {}) {
  return std::make_shared<SimulationBodyLineJoin>(id, name, state, definition, std::move(skins));
}

std::shared_ptr<SkinBase> skin(std::optional<double> minimum, std::optional<double> maximum) {
  return std::make_shared<Skin<double>>(minimum, maximum);
}

/// The unit OP20 and its result.
class FamiliesOnAStrictHost : public testing::Test {
 protected:
  void setVisibleSteps(unsigned int first, unsigned int last) {
    m_unit.hasVisibleSteps = true;
    m_unit.firstVisibleStep = first;
    m_unit.lastVisibleStep = last;
  }

  template <typename Ask>
  std::string describeTable(Ask const& ask) {
    SimulationUnit const unit(m_unit);
    m_result = std::make_shared<SimulationResult>(m_steps);
    SimUnitMaxValuesProvider const provider(unit, m_result);
    StrictHost::callLog().clear();
    auto const table = ask(provider);
    EXPECT_TRUE(table->simulationUnitId == SimulationUnitId(20));
    return describe(*table);
  }
  std::string describeTable(DataType family) {
    return describeTable([&](auto const& provider) { return provider.genGetMaxValuesCollection(family); });
  }
  std::string describeTools(DataType family, SimUnitMaxValuesProvider::ToolGrouping const& grouping) {
    return describeTable(
        [&](auto const& provider) { return provider.genGetToolMaxValuesCollection(grouping, family); });
  }

  /// The calls of the last request that begin with one of the words, in order.
  static std::vector<std::string> calls(std::vector<std::string> const& beginnings) {
    std::vector<std::string> found;
    for (auto const& call : StrictHost::callLog())
      for (auto const& beginning : beginnings)
        if (call.starts_with(beginning)) found.push_back(call);
    return found;
  }

  UnitContent m_unit{.id = SimulationUnitId(20), .name = "OP20"};
  std::map<unsigned int, std::shared_ptr<SimulationStep>> m_steps;
  std::shared_ptr<SimulationResult> m_result;
};

TEST_F(FamiliesOnAStrictHost, ClampsHaveForcesAndDistances) {
  m_unit.tools = {{3, "Clamp 1"}, {9, "Bolt 1"}, {3, "Clamp 2"}};
  m_unit.toolForces["Clamp 1"] = {series("solver.ClampClosingForce", {0.0, -12.0, 8.0}),
                                  series("solver.Unknown", {99.0})};
  m_unit.toolForces["Clamp 2"] = {
      series("solver.ClampNormalForce", {nan, 2.0, -2.0}), series("solver.ClampNormalDisplacement", {}),
      series("solver.ClampTangentialForce", {1.0}), series("solver.ClampTangentialForce", {-3.0, 0.5})};
  EXPECT_EQ(describeTable(DataType::Clamps),
            "family 0\n"
            "titles '[Clamps]' 'OP20[Clamps]'\n"
            "section [Forces], forces\n"
            "  limits 0 24 0 0\n"
            "  columns solver.ClampNormalForce solver.ClampClosingForce solver.ClampSupportingForce "
            "solver.ClampTangentialForce\n"
            "  sub-group ''\n"
            "    Clamp 1: 0 -12 0 0\n"
            "  sub-group ''\n"
            "    Clamp 2: 2 0 0 -3\n"
            "section [Distances]\n"
            "  limits 0\n"
            "  columns solver.ClampNormalDisplacement\n"
            "  sub-group ''\n"
            "    Clamp 1: 0\n"
            "  sub-group ''\n"
            "    Clamp 2: 0\n");
}

TEST_F(FamiliesOnAStrictHost, BoltsHaveTeachingWhenAskedFor) {
  m_unit.tools = {{3, "Clamp 1"}, {9, "Bolt 1"}};
  m_unit.toolForces["Bolt 1"] = {
      {"solver.ClampNormalForce", std::make_shared<StepValues<double>>(
                                      std::vector<std::pair<double, double>>{{4.0, 100.0}, {-5.0, 200.0}})},
      series("solver.ClampTeachingDistanceX", {0.25}),
      series("solver.ClampTeachingDistanceZ", {-0.5, 0.5})};
  EXPECT_EQ(describeTable([](auto const& provider) {
              return provider.genGetClampMaxValuesCollection(DataType::Bolts, true);
            }),
            "family 4\n"
            "titles '[Bolts]' 'OP20[Bolts]'\n"
            "section [Forces], forces\n"
            "  limits 23 0 0 0\n"
            "  columns solver.ClampNormalForce solver.ClampClosingForce solver.ClampSupportingForce "
            "solver.ClampTangentialForce\n"
            "  sub-group ''\n"
            "    Bolt 1: -5 0 0 0\n"
            "section [Distances]\n"
            "  limits 0\n"
            "  columns solver.ClampNormalDisplacement\n"
            "  sub-group ''\n"
            "    Bolt 1: 0\n"
            "section [Teaching], teaching\n"
            "  limits 0 0 0\n"
            "  columns solver.ClampTeachingDistanceX solver.ClampTeachingDistanceY "
            "solver.ClampTeachingDistanceZ\n"
            "  sub-group ''\n"
            "    Bolt 1: 0.25 0 -0.5\n");
}

TEST_F(FamiliesOnAStrictHost, TablesWithoutElementsAreEmpty) {
  for (unsigned int family = 0; family <= 12; ++family)
    EXPECT_EQ(describeTable(DataType(family)), "family " + std::to_string(family) + "\ntitles '' ''\n");
  EXPECT_EQ(describeTools(DataType::Steels, {{"Group", {"Tool"}}}), "family 8\ntitles '' ''\n");
  EXPECT_THAT(calls({"getTranslated"}), ElementsAre());
}

// What the host gives of a series ends with the visit: the names are long enough to lie in memory of their
// own.
TEST_F(FamiliesOnAStrictHost, PilotsAreSplitFromTheSeriesOfTheirTool) {
  m_unit.tools = {{2, "Pilot tool"}, {9, "Bolt with a name that is rather long"}, {2, "Second pilot tool"}};
  m_unit.toolForces["Pilot tool"] = {
      series("solver.PilotForce_Pilot with a name that is rather long", {1.0, -7.5}),
      series("solver.PilotForce_Bolt with a name that is rather long", {1000.0}),
      series("before solver.PilotForce_Another pilot with a long name", {3.0}),
      series("solver.ClampNormalForce_Pilot of another quantity", {55.0}),
      series("solver.PilotForce_Pilot with a name that is rather long", {6.0})};
  m_unit.toolForces["Second pilot tool"] = {series("solver.PilotForce_P9", {9.0})};
  EXPECT_EQ(describeTable(DataType::Pilots),
            "family 3, not default\n"
            "titles '[Pilots]' 'OP20[Pilots]'\n"
            "section [Forces], forces\n"
            "  limits 19\n"
            "  columns solver.PilotForce\n"
            "  sub-group ''\n"
            "    Pilot with a name that is rather long: 6\n"
            "  sub-group ''\n"
            "    Another pilot with a long name: 3\n");
}

TEST_F(FamiliesOnAStrictHost, PilotsAskForTheBoltsBeforeTitlesAreTranslated) {
  m_unit.tools = {{2, "Pilot tool"}};
  m_unit.toolForces["Pilot tool"] = {};
  describeTable(DataType::Pilots);
  EXPECT_THAT(StrictHost::callLog(),
              ElementsAre("getID", "getToolStringIDsOfToolForceType 2", "getToolStringIDsOfToolForceType 9",
                          "translate SimUnitMaxValuesProvider: Pilots", "getSimulationUnitName",
                          "translate SimUnitMaxValuesProvider: Forces", "getToolForces Pilot tool"));
}

TEST_F(FamiliesOnAStrictHost, WithoutAPilotToolNothingElseIsAskedFor) {
  m_unit.tools = {{9, "Bolt 1"}};
  describeTable(DataType::Pilots);
  EXPECT_THAT(StrictHost::callLog(), ElementsAre("getID", "getToolStringIDsOfToolForceType 2"));
}

TEST_F(FamiliesOnAStrictHost, PilotWithoutUnderscoreIsWhatFollowsTheLengthOfTheQuantity) {
  m_unit.tools = {{2, "Pilot tool"}};
  m_unit.toolForces["Pilot tool"] = {series("before solver.PilotForce", {1.0})};
  EXPECT_EQ(describeTable(DataType::Pilots),
            "family 3, not default\n"
            "titles '[Pilots]' 'OP20[Pilots]'\n"
            "section [Forces], forces\n"
            "  limits 19\n"
            "  columns solver.PilotForce\n"
            "  sub-group ''\n"
            "    otForce: 1\n");
}

TEST_F(FamiliesOnAStrictHost, ToolsComeAsTheyAreGrouped) {
  m_unit.tools = {{5, "Steel 1"}};
  m_unit.toolForces["Steel 1"] = {series("business name of TotalToolForces", {2.0, -3.5})};
  m_unit.toolForces["Clamp 1"] = {series("business name of TotalToolForces", {4.0})};
  EXPECT_EQ(
      describeTools(DataType::ClampingTools, {{"Left", {"Clamp 1", "Steel 1", "Unknown"}}, {"None", {}}}),
      "family 1\n"
      "titles '[Clamping Tools]' 'OP20'\n"
      "section [Forces], forces\n"
      "  limits 10 24\n"
      "  columns business name of TotalToolForces\n"
      "  sub-group 'Left'\n"
      "    Clamp 1: 4\n"
      "    Steel 1: -3.5\n"
      "    Unknown: 0\n"
      "  sub-group 'None'\n");
  EXPECT_EQ(describeTools(DataType::Rollers, {{"", {"Steel 1"}}}),
            "family 7, not default\n"
            "titles '[Rollers]' 'OP20'\n"
            "section [Forces], forces\n"
            "  limits 20\n"
            "  columns business name of TotalToolForces\n"
            "  sub-group ''\n"
            "    Steel 1: -3.5\n");
  EXPECT_EQ(describeTools(DataType::Steels, {}),
            "family 8, not default\n"
            "titles '[Steels]' 'OP20'\n"
            "section [Forces], forces\n"
            "  limits 21\n"
            "  columns business name of TotalToolForces\n");
}

TEST_F(FamiliesOnAStrictHost, HemmingBedHasAbsoluteValues) {
  m_unit.tools = {{5, "Bed"}};
  m_unit.toolForces["Bed"] = {series("business name of TotalToolForces", {2.0, -3.5})};
  EXPECT_EQ(describeTools(DataType::HemmingBed, {{"Beds", {"Bed"}}}),
            "family 9, not default\n"
            "titles '[Hemming Bed]' 'OP20'\n"
            "section [Forces], forces\n"
            "  limits 22\n"
            "  columns business name of TotalToolForces\n"
            "  sub-group 'Beds'\n"
            "    Bed: 3.5\n");
}

TEST_F(FamiliesOnAStrictHost, ToolsOfNoToolFamilyHaveNoColumns) {
  m_unit.tools = {{5, "Bed"}};
  EXPECT_EQ(describeTools(DataType::SpotWelds, {{"Beds", {"Bed"}}}),
            "family 10\n"
            "titles '' 'OP20'\n"
            "section [Forces], forces\n"
            "  limits\n"
            "  columns\n"
            "  sub-group 'Beds'\n"
            "    Bed:\n");
}

TEST_F(FamiliesOnAStrictHost, BusinessNameIsAskedForAfterTheTools) {
  m_unit.tools = {{5, "Bed"}};
  describeTools(DataType::HemmingBed, {});
  EXPECT_THAT(calls({"getTool", "getTranslated"}),
              ElementsAre("getToolStringIDsOfToolForceType 5", "getTranslated TotalToolForces"));
}

TEST_F(FamiliesOnAStrictHost, SuctionZonesAreValidWhereTheyWereActiveInAVisibleStep) {
  m_unit.tools = {{8, "Zone 1"}, {8, "Zone 2"}};
  m_unit.toolForces["Zone 1"] = {series("solver.SuctionZoneAbsForce", {40.0, 60.0}),
                                 series("solver.SuctionDistance", {0.5}),
                                 series("solver.SuctionZoneForceX", {1.0})};
  m_unit.toolForces["Zone 2"] = {};
  auto const zone = [](char const* name, bool active) {
    return std::make_shared<EvalSuctionZone>(name, active);
  };
  m_steps[0] = step({.suctionZones = {{EvalSuctionZoneGUID(2), zone("Second", true)}}});
  m_steps[1] = step({.suctionZones = {{EvalSuctionZoneGUID(1), zone("First", false)},
                                      {EvalSuctionZoneGUID(2), zone("Second", false)}}});
  m_steps[2] = step({.suctionZones = {{EvalSuctionZoneGUID(1), zone("First", true)}}});
  m_steps[3] = step({.suctionZones = {{EvalSuctionZoneGUID(1), zone("First", false)}}});
  setVisibleSteps(1, 3);
  EXPECT_EQ(describeTable(DataType::SuctionZones),
            "family 6\n"
            "titles '[Suction Zones]' 'OP20[Suction Zones]'\n"
            "First is valid\n"
            "Second is invalid\n"
            "section [Forces]\n"
            "  limits 18 17\n"
            "  columns solver.SuctionZoneAbsForce solver.SuctionDistance\n"
            "  sub-group ''\n"
            "    Zone 1: 60 0.5\n"
            "  sub-group ''\n"
            "    Zone 2: 0 0\n");
  EXPECT_THAT(calls({"getStep"}), ElementsAre("getStep 1", "getStep 2", "getStep 3"));
}

TEST_F(FamiliesOnAStrictHost, VisibleStepsCountOnlyWhenTheUnitSaysThatItHasThem) {
  m_unit.tools = {{8, "Zone 1"}};
  m_steps[0] =
      step({.suctionZones = {{EvalSuctionZoneGUID(1), std::make_shared<EvalSuctionZone>("First", true)}}});
  setVisibleSteps(0, 0);
  m_unit.hasVisibleSteps = false;
  EXPECT_THAT(describeTable(DataType::SuctionZones), testing::Not(testing::HasSubstr("First")));
  EXPECT_THAT(calls({"getStep"}), ElementsAre());
}

TEST_F(FamiliesOnAStrictHost, FlagOfVisibleStepsIsTestedBeforeTheResultIsLocked) {
  m_unit.tools = {{7, "Tong 1"}, {8, "Zone 1"}};
  setVisibleSteps(0, 0);
  long owners = 0;
  m_unit.onHasVisibleSteps = [&] { owners = m_result.use_count(); };
  for (auto const family : {DataType::SuctionZones, DataType::JoiningTongs, DataType::SpotWelds,
                            DataType::LineWelds, DataType::LineJoiningTools}) {
    owners = 0;
    auto const table = describeTable(family);
    EXPECT_EQ(owners, 1) << table;
  }
}

TEST_F(FamiliesOnAStrictHost, WalkEndsAtTheGreatestStep) {
  m_unit.tools = {{6, "W1"}};
  m_unit.toolForces["W1"] = {};
  setVisibleSteps(0xFFFFFFFD, 0xFFFFFFFF);
  m_steps[0xFFFFFFFF] = step({.joins = {{EvalJoinGUID(1), weld("W1", "Weld 1", 9)}}});
  EXPECT_THAT(describeTable(DataType::SpotWelds), testing::HasSubstr("Weld 1 is invalid"));
  EXPECT_THAT(calls({"getStep"}),
              ElementsAre("getStep 4294967293", "getStep 4294967294", "getStep 4294967295"));
}

class TongsOnAStrictHost : public FamiliesOnAStrictHost {
 protected:
  TongsOnAStrictHost() {
    m_unit.tools = {{7, "T1"}, {7, "T2"}, {7, "T3"}};
    m_unit.toolForces["T1"] = {series("solver.JoiningTongNormalForce", {-510.0, 20.0}),
                               series("solver.JoiningTongGap", {0.75})};
    m_unit.toolForces["T2"] = {series("solver.JoiningTongDistance", {1.5}),
                               series("solver.JoiningTeachingY", {0.125})};
    m_unit.toolForces["T3"] = {};
    m_steps[2] = step({});
    m_steps[3] = step({.joiningTongs = {tong("T1", "Tong one", 5), tong("T2", "Tong two", 10)}});
    m_steps[4] = step({.joiningTongs = {tong("T1", "Tong one later", 4), nullptr}});
  }

  std::string const m_head =
      "family 2, not default\n"
      "titles '[Joining Tools]' 'OP20[Joining Tools]'\n"
      "invalid '[Joining Failed]' '[ (Joining Failed)]'\n"
      "element T1\nelement T2\nelement T3\n";
  std::string const m_validity = "Tong one later is valid\nTong two is invalid\n";
  std::string const m_sections =
      "section [Forces], forces\n"
      "  limits 1 0 0\n"
      "  columns solver.JoiningTongNormalForce solver.JoiningTongClosingForce "
      "solver.JoiningTongSupportingForce\n"
      "  sub-group ''\n    Tong one: -510 0 0\n"
      "  sub-group ''\n    Tong two: 0 0 0\n"
      "  sub-group ''\n    T3: 0 0 0\n"
      "section [Distances]\n"
      "  limits 2 3\n"
      "  columns solver.JoiningTongDistance solver.JoiningTongGap\n"
      "  sub-group ''\n    Tong one: 0 0.75\n"
      "  sub-group ''\n    Tong two: 1.5 0\n"
      "  sub-group ''\n    T3: 0 0\n"
      "section [Teaching], teaching\n"
      "  limits 11 12 13\n"
      "  columns solver.JoiningTeachingX solver.JoiningTeachingY solver.JoiningTeachingZ\n"
      "  sub-group ''\n    Tong one: 0 0 0\n"
      "  sub-group ''\n    Tong two: 0 0.125 0\n"
      "  sub-group ''\n    T3: 0 0 0\n";
};

TEST_F(TongsOnAStrictHost, AreNamedByTheFirstVisibleStepAndValidByTheLast) {
  setVisibleSteps(1, 4);
  EXPECT_EQ(describeTable(DataType::JoiningTongs), m_head + m_validity + m_sections);
}

TEST_F(TongsOnAStrictHost, ReferenceStepDependsOnTheBoundsAlone) {
  setVisibleSteps(2, 4);
  m_unit.hasVisibleSteps = false;
  EXPECT_EQ(describeTable(DataType::JoiningTongs), m_head + m_sections);
}

TEST_F(TongsOnAStrictHost, HaveNoSectionsWhereABoundIsNone) {
  setVisibleSteps(0xFFFFFFFF, 4);
  EXPECT_EQ(describeTable(DataType::JoiningTongs), m_head);
  setVisibleSteps(0xFFFFFFFD, 0xFFFFFFFF);
  m_steps[0xFFFFFFFF] = m_steps[3];
  EXPECT_EQ(describeTable(DataType::JoiningTongs), m_head + "Tong one is invalid\nTong two is invalid\n");
}

TEST_F(TongsOnAStrictHost, HaveNoSectionsWithoutAReferenceStep) {
  setVisibleSteps(0, 2);
  EXPECT_EQ(describeTable(DataType::JoiningTongs), m_head);
}

TEST_F(FamiliesOnAStrictHost, EveryStateButThreeIsValid) {
  m_unit.tools = {{7, "T"}};
  m_unit.toolForces["T"] = {};
  setVisibleSteps(0, 0);
  std::string valid;
  for (unsigned int const state : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 11U, 0xFFFFFFFFU}) {
    m_steps[0] = step({.joiningTongs = {tong("T", "Tong", state)}});
    if (describeTable(DataType::JoiningTongs).find("Tong is valid") != std::string::npos)
      valid += std::to_string(state) + ' ';
  }
  EXPECT_EQ(valid, "0 1 2 3 4 6 7 8 11 4294967295 ");
}

TEST_F(FamiliesOnAStrictHost, SpotWeldsAreThoseOfTheVisibleSteps) {
  m_unit.tools = {{6, "W1"}, {6, "W2"}, {6, "W3"}, {7, "T1"}};
  m_unit.toolForces["W1"] = {series("solver.JoinForceN", {-600.0, 10.0}),
                             series("solver.JoinTangentialForce", {77.0})};
  m_unit.toolForces["W3"] = {};
  m_unit.tangentialForces["W1"] = {1.0, -2.0};
  m_unit.tangentialForces["W3"] = {0.5};
  m_steps[1] = step({.joins = {{EvalJoinGUID(1), weld("W3", "Third", 0)},
                               {EvalJoinGUID(2), weld("W1", "First", 0)},
                               {EvalJoinGUID(3), weld("Not listed", "Fourth", 0)}}});
  m_steps[2] = step({.joins = {{EvalJoinGUID(2), weld("W1", "First later", 9)}}});
  setVisibleSteps(1, 2);
  EXPECT_EQ(describeTable(DataType::SpotWelds),
            "family 10\n"
            "titles '[Joins]' 'OP20[Joins]'\n"
            "invalid '[Joining Failed]' '[ (Joining Failed)]'\n"
            "element W1\nelement W3\n"
            "First later is invalid\nThird is valid\n"
            "section [Forces], forces\n"
            "  limits 5 6\n"
            "  columns solver.JoinForceN solver.JoinTangentialForce\n"
            "  sub-group ''\n    First: -600 -2\n"
            "  sub-group ''\n    Third: 0 0.5\n");
}

class LineJoinsOnAStrictHost : public FamiliesOnAStrictHost {
 protected:
  LineJoinsOnAStrictHost() {
    m_unit.joinsDefinedInUnit.emplace_back(7U);
    m_unit.joinsDefinedInUnit.emplace_back(3U);
    m_steps[1] = step({.lineJoins = {
                           {EvalLineJoinGUID(1), lineJoin("A", "lj 10", 0, 7,
                                                          {{"skin.SumForceN", skin(-12.5, 7.0)},
                                                           {"skin.SumForceT", skin(-7.0, 7.0)},
                                                           {"skin.Gap", skin(0.0, 0.25)}})},
                           {EvalLineJoinGUID(2), lineJoin("B", "LJ 2", 0, 4, {{"skin.Gap", skin(5.0, 6.0)}})},
                       }});
    m_steps[2] = step(
        {.lineJoins = {
             {EvalLineJoinGUID(1), lineJoin("A2", "lj 10", 9, 7,
                                            {{"skin.SumForceN", skin({}, 100.0)},
                                             {"skin.SumForceT", skin(8.0, {})},
                                             {"skin.Gap", std::make_shared<SkinBase>()}})},
             {EvalLineJoinGUID(3), lineJoin("C", "LJ 1", 10, 3, {{"skin.DistToInput", skin(-2.0, 1.0)}})},
         }});
    setVisibleSteps(1, 2);
  }
};

TEST_F(LineJoinsOnAStrictHost, LineWeldsAreAllOfThemInNaturalOrder) {
  EXPECT_EQ(describeTable(DataType::LineWelds),
            "family 11\n"
            "titles '[Line Joins]' 'OP20[Line Joins]'\n"
            "invalid '[Joining Failed]' '[ (Joining Failed)]'\n"
            "element C\nelement B\nelement A\n"
            "LJ 1 is invalid\nLJ 2 is valid\nlj 10 is invalid\n"
            "section [Values]\n"
            "  limits 0 0\n"
            "  columns skin.SumForceN skin.SumForceT\n"
            "  sub-group ''\n    LJ 1: 0 0\n"
            "  sub-group ''\n    LJ 2: 0 0\n"
            "  sub-group ''\n    lj 10: -12.5 7\n");
  EXPECT_THAT(calls({"getEvalID"}), ElementsAre());
}

TEST_F(LineJoinsOnAStrictHost, LineJoiningToolsAreThoseDefinedInTheUnit) {
  EXPECT_EQ(describeTable(DataType::LineJoiningTools),
            "family 5\n"
            "titles '[Line Joining Tools]' 'OP20[Line Joining Tools]'\n"
            "invalid '[Joining Failed]' '[ (Joining Failed)]'\n"
            "element C\nelement A\n"
            "LJ 1 is invalid\nlj 10 is invalid\n"
            "section [Values]\n"
            "  limits 4 9\n"
            "  columns skin.DistToInput skin.Gap\n"
            "  sub-group ''\n    LJ 1: -2 0\n"
            "  sub-group ''\n    lj 10: 0 0.25\n");
}

TEST_F(LineJoinsOnAStrictHost, IdentifiersAreAskedForAfterTheFlagOfVisibleSteps) {
  describeTable(DataType::LineJoiningTools);
  EXPECT_THAT(calls({"hasVisible", "getEvalID", "getStep"}),
              ElementsAre("hasVisibleSimulationSteps", "getEvalIDOfJoinDefinedInSimUnitVector", "getStep 1",
                          "getStep 2"));
  m_unit.hasVisibleSteps = false;
  describeTable(DataType::LineJoiningTools);
  EXPECT_THAT(calls({"hasVisible", "getEvalID", "getStep"}), ElementsAre("hasVisibleSimulationSteps"));
}

TEST_F(LineJoinsOnAStrictHost, AreNotThereWhenTheResultIsGone) {
  auto const familyWithoutResult = [](auto const& unit, DataType family) {
    return describe(
        *SimUnitMaxValuesProvider(unit, std::weak_ptr<SimulationResult>()).genGetMaxValuesCollection(family));
  };
  SimulationUnit const unit(m_unit);
  EXPECT_EQ(familyWithoutResult(unit, DataType::LineWelds), "family 11\ntitles '' ''\n");
  EXPECT_EQ(familyWithoutResult(unit, DataType::LineJoiningTools), "family 5\ntitles '' ''\n");
  EXPECT_EQ(familyWithoutResult(unit, DataType::SpotWelds), "family 10\ntitles '' ''\n");
}

}  // namespace
}  // namespace Kestrel
