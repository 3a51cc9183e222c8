#include <gmock/gmock.h>

#include <string>
#include <tuple>
#include <vector>

#include "VantaService_Translator/Translator.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

struct Request {
  std::string context;
  std::string text;
  bool hasComment;
  int count;
};

// A function, because the library asks for its first text before this program's variables are initialised.
std::vector<Request>& requests() {
  static std::vector<Request> all;
  return all;
}

}  // namespace

// The program's own definition takes the place of the host's, also for calls out of the library.
[[gnu::visibility("default")]] std::string Translator::translate(char const* context, char const* text,
                                                                 char const* comment, int count) {
  requests().push_back({context, text, comment != nullptr, count});
  return std::string("<") + text + ">";
}

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

auto isRequestFor(char const* text) {
  return AllOf(Field(&Request::context, "SimUnitMaxValuesProvider"), Field(&Request::text, text),
               Field(&Request::hasComment, false), Field(&Request::count, -1));
}

/// A unit that has one element of every family.
class TranslationRequests : public ::testing::Test {
 protected:
  TranslationRequests() {
    for (unsigned int const kind : {2u, 3u, 5u, 6u, 7u, 8u, 9u})
      m_test.addTool(std::to_string(kind), static_cast<ToolForceDataType>(kind));
    auto& step = m_test.addStep();
    step.addJoiningTong(joiningTong("7", "Tong", 0));
    step.addJoin(EvalJoinGUID(), spotWeld("6", "Spot", 0));
    step.addLineJoin(EvalLineJoinGUID(), lineJoin("LJ", "LJ", 0));
    m_test.unit.addJoinDefinedInSimUnit(EvalSimulationUnitJoinGUID());
    m_test.unit.setVisibleSteps(0, 0);
    m_result = m_test.result();
    auto const tools = provider().genGetToolMaxValuesCollection({}, DataType::Rollers);
    static_cast<void>(tools);  // the total force's business name is asked for once per process
    requests().clear();
  }

  SimUnitMaxValuesProvider provider() const { return {m_test.unit, m_result}; }

  /// Asks for the family `dataType` and returns its table.
  std::shared_ptr<MaxValueGroupContainer> table(DataType dataType) {
    requests().clear();
    return provider().genGetMaxValuesCollection(dataType);
  }

  TestUnit m_test;
  std::shared_ptr<SimulationResult> m_result;
};

TEST_F(TranslationRequests, OfTheAppendixIsMadeWhenTheLibraryIsLoaded) {
  EXPECT_EQ(SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix, "< (Joining Failed)>");
}

TEST_F(TranslationRequests, OfClampsAndBoltsAreTheirTitlesAndSections) {
  auto const clamps = provider().genGetClampMaxValuesCollection(DataType::Clamps, true);
  EXPECT_THAT(requests(), ElementsAre(isRequestFor("Clamps"), isRequestFor("Forces"),
                                      isRequestFor("Distances"), isRequestFor("Teaching")));
  EXPECT_EQ(clamps->title, "<Clamps>");
  EXPECT_EQ(clamps->unitTitle, "OP20<Clamps>");
  EXPECT_EQ(clamps->groups.at(2).name, "<Teaching>");
  EXPECT_EQ(clamps->groups.at(0).valueNames.at(0), "ClampNormalForce") << "keys are not translated";
  EXPECT_EQ(table(DataType::Bolts)->title, "<Bolts>");
  EXPECT_THAT(requests(),
              ElementsAre(isRequestFor("Bolts"), isRequestFor("Forces"), isRequestFor("Distances")));
}

TEST_F(TranslationRequests, OfPilotsAndSuctionZonesAreTheirTitlesAndSections) {
  EXPECT_EQ(table(DataType::Pilots)->unitTitle, "OP20<Pilots>");
  EXPECT_THAT(requests(), ElementsAre(isRequestFor("Pilots"), isRequestFor("Forces")));
  EXPECT_EQ(table(DataType::SuctionZones)->unitTitle, "OP20<Suction Zones>");
  EXPECT_THAT(requests(), ElementsAre(isRequestFor("Suction Zones"), isRequestFor("Forces")));
}

TEST_F(TranslationRequests, OfFormingToolsAreTheirTitlesAndTheSection) {
  for (auto const& [dataType, title] :
       {std::pair(DataType::ClampingTools, "Clamping Tools"), std::pair(DataType::Rollers, "Rollers"),
        std::pair(DataType::Steels, "Steels"), std::pair(DataType::HemmingBed, "Hemming Bed")}) {
    requests().clear();
    auto const tools = provider().genGetToolMaxValuesCollection({{"Left", {"5"}}}, dataType);
    EXPECT_THAT(requests(), ElementsAre(isRequestFor(title), isRequestFor("Forces")));
    EXPECT_EQ(tools->title, std::string("<") + title + ">");
    EXPECT_EQ(tools->unitTitle, "OP20");
    EXPECT_EQ(tools->groups.at(0).valueNames.at(0), "<Total Tool Forces>") << "the key is the business name";
    EXPECT_EQ(rowsOf(tools->groups.at(0)).at(0).subGroup, "Left");
    EXPECT_EQ(rowsOf(tools->groups.at(0)).at(0).name, "5");
  }
}

TEST_F(TranslationRequests, OfAnUnknownToolFamilyIsTheSectionAlone) {
  auto const tools = provider().genGetToolMaxValuesCollection({}, static_cast<DataType>(12));
  EXPECT_THAT(requests(), ElementsAre(isRequestFor("Forces")));
  EXPECT_EQ(tools->title, "");
}

TEST_F(TranslationRequests, OfJoiningFamiliesIncludeTheMarkOfFailureButNotTheAppendix) {
  auto const tongs = table(DataType::JoiningTongs);
  EXPECT_THAT(requests(),
              ElementsAre(isRequestFor("Joining Failed"), isRequestFor("Joining Tools"),
                          isRequestFor("Forces"), isRequestFor("Distances"), isRequestFor("Teaching")));
  EXPECT_EQ(tongs->unitTitle, "OP20<Joining Tools>");
  EXPECT_EQ(tongs->invalidValuesText, "<Joining Failed>");
  EXPECT_EQ(tongs->invalidValuesNameAppendix, "< (Joining Failed)>");
  EXPECT_EQ(table(DataType::SpotWelds)->unitTitle, "OP20<Joins>");
  EXPECT_THAT(requests(),
              ElementsAre(isRequestFor("Joining Failed"), isRequestFor("Joins"), isRequestFor("Forces")));
  EXPECT_EQ(table(DataType::LineWelds)->unitTitle, "OP20<Line Joins>");
  EXPECT_THAT(requests(), ElementsAre(isRequestFor("Joining Failed"), isRequestFor("Line Joins"),
                                      isRequestFor("Values")));
  EXPECT_EQ(table(DataType::LineJoiningTools)->unitTitle, "OP20<Line Joining Tools>");
  EXPECT_THAT(requests(), ElementsAre(isRequestFor("Joining Failed"), isRequestFor("Line Joining Tools"),
                                      isRequestFor("Values")));
}

TEST_F(TranslationRequests, AreNoneForFamiliesWithoutElements) {
  TestUnit const empty;
  SimUnitMaxValuesProvider const provider(empty.unit, {});
  for (unsigned int number = 0; number <= 12; ++number) {
    EXPECT_TRUE(isUntouched(*provider.genGetMaxValuesCollection(static_cast<DataType>(number))));
    EXPECT_TRUE(isUntouched(*provider.genGetToolMaxValuesCollection({}, static_cast<DataType>(number))));
  }
  EXPECT_THAT(requests(), IsEmpty());
}

}  // namespace
}  // namespace Kestrel
