#include "Business_TableProperties/TablePropertySettings.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "VantaService_UnicodeTools/UnicodeTools.h"
#include "support/AllocationFailure.h"
#include "support/ChildProcess.h"
#include "support/TablePropertySettingsTestAccess.h"
#include "support/TranslatorSpy.h"

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::Pair;
using TestSupport::countLiveBlocks;
using TestSupport::failEachAllocation;
using Access = TablePropertySettingsTestAccess;
using Texts = std::vector<std::string>;

struct CatalogueRow {
  char const* key;
  Texts english;  ///< in the order of the columns
};

// In the order in which the catalogue is filled.
std::vector<CatalogueRow> const catalogue = {
    {"ClampNormalForce", {"Normal Force", "Norm F", "Max Normal Force", "Max Norm F", "N"}},
    {"ClampClosingForce", {"Closing Force", "Clos F", "Max Closing Force", "Max Clos F", "N"}},
    {"ClampSupportingForce", {"Supporting Force", "Sup F", "Max Supporting Force", "Max Sup F", "N"}},
    {"ClampTangentialForce", {"Tangential Force", "Tang F", "Max Tangential Force", "Max Tang F", "N"}},
    {"ClampNormalDisplacement", {"Distance", "Distance", "Max Distance", "Max Dist", "mm"}},
    {"ClampTeachingDistanceX", {"Teaching ΔX", "ΔX", "Teaching ΔX", "ΔX", "mm"}},
    {"ClampTeachingDistanceY", {"Teaching ΔY", "ΔY", "Teaching ΔY", "ΔY", "mm"}},
    {"ClampTeachingDistanceZ", {"Teaching ΔZ", "ΔZ", "Teaching ΔZ", "ΔZ", "mm"}},
    {"ClampTotalVariation", {"Teaching Distance", "Distance", "Teaching Distance", "Distance", "mm"}},
    {"ToolForceInWorkingDir",
     {"Force in Working Direction", "F WorkDir", "Max Force in Working Direction", "Max Force", "N"}},
    {"Total Tool Forces",
     {"Force in Working Direction", "F WorkDir", "Max Force in Working Direction", "Max Force", "N"}},
    {"PilotForce", {"Force", "Force", "Max Force", "Max Force", "N"}},
    {"JoiningTongNormalForce", {"Normal Force", "Norm F", "Normal Force", "Norm F", "N"}},
    {"JoiningTongClosingForce", {"Closing Force", "Clos F", "Closing Force", "Clos F", "N"}},
    {"JoiningTongSupportingForce", {"Supporting Force", "Sup F", "Supporting Force", "Sup F", "N"}},
    {"JoiningTongDistance", {"Distance", "Distance", "Distance", "Distance", "mm"}},
    {"JoiningTongGap", {"Gap", "Gap", "Gap", "Gap", "mm"}},
    {"JoiningTeachingX", {"Teaching ΔX", "ΔX", "ΔTeaching ΔX", "ΔX", "mm"}},
    {"JoiningTeachingY", {"Teaching ΔY", "ΔY", "ΔTeaching ΔY", "ΔY", "mm"}},
    {"JoiningTeachingZ", {"Teaching ΔZ", "ΔZ", "ΔTeaching ΔZ", "ΔZ", "mm"}},
    {"JoiningTeachingTotalVariation",
     {"Teaching Distance", "Distance", "Teaching Distance", "Distance", "mm"}},
    {"LineJoinDistToInput", {"Max Distance", "Max Distance", "Max Distance", "Max Distance", "mm"}},
    {"LineJoinGap", {"Max Gap", "Max Gap", "Max Gap", "Max Gap", "mm"}},
    {"JoinForceN", {"Normal Force", "Norm F", "Max Normal Force", "Max Norm F", "N"}},
    {"JoinTangentialForce", {"Tangential Force", "Tang F", "Max Tangential Force", "Max Tang F", "N"}},
    {"LineJoinSumForceN", {"Normal Force", "Norm F", "Max Normal Force", "Max Norm F", "N"}},
    {"LineJoinSumForceT", {"Tangential Force", "Tang F", "Max Tangential Force", "Max Tang F", "N"}},
    {"SuctionZoneForceX", {"Suction Force X", "Frc X", "Frc X", "Frc X", "N"}},
    {"SuctionZoneForceY", {"Suction Force Y", "Frc Y", "Frc Y", "Frc Y", "N"}},
    {"SuctionZoneForceZ", {"Suction Force Z", "Frc Z", "Frc Z", "Frc Z", "N"}},
    {"SuctionZoneAbsForce", {"Suction Force", "Force", "Force", "Force", "N"}},
    {"SuctionDistance", {"Distance", "Distance", "Distance", "Distance", "mm"}},
};

Texts const header = {"DisplayName", "ShortDisplayName", "TableDisplayName", "ShortTableDisplayName", "Unit"};
Texts const nothing = {"", "", "", "", ""};

constexpr std::size_t totalToolForcesRow = 10;

bool isSkin(CatalogueRow const& row) {
  return row.key == std::string("LineJoinSumForceN") || row.key == std::string("LineJoinSumForceT");
}

Texts textsOf(std::string const& key) {
  return {TablePropertySettings::getDisplayName(key), TablePropertySettings::getShortDisplayName(key),
          TablePropertySettings::getTableDisplayName(key),
          TablePropertySettings::getShortTableDisplayName(key), TablePropertySettings::getUnitString(key)};
}

/// What the catalogue asks of the host, as the test arranges and sees it.
struct Host {
  std::function<void(TranslatorCall const&)> onTranslate;
  std::function<void()> onPilotKey;
  std::string totalToolForcesKey = "Total Tool Forces";
  std::vector<std::string> calls;  ///< in order; kept while `isRecording`
  bool isRecording = false;

  void note(std::string const& call) {
    if (isRecording) calls.push_back(call);
  }
};

Host& host() {
  static Host instance;
  return instance;
}

class TablePropertySettingsTest : public testing::Test {
 public:
  TablePropertySettingsTest() { makeNew(); }
  ~TablePropertySettingsTest() override { makeNew(); }

 protected:
  static void makeNew() {
    host() = {};
    Access::forget();
  }
};

/// What the calling thread does with mutexes, L(ock) and U(nlock), and how many blocks it has at each.
struct Trace {
  static inline thread_local bool isOn = false;
  static inline thread_local std::array<std::pair<char, std::ptrdiff_t>, 8> events = {};
  static inline thread_local std::size_t size = 0;

  static void note(char event) {
    if (isOn && size < events.size()) events[size++] = {event, countLiveBlocks()};
  }

  /// Calls `lookup`; what it allocates is counted from 0.
  template <typename Lookup>
  static std::vector<std::pair<char, std::ptrdiff_t>> of(Lookup const& lookup) {
    auto const before = countLiveBlocks();
    size = 0;
    isOn = true;
    std::string const text = lookup();
    isOn = false;
    std::ptrdiff_t const after = countLiveBlocks();
    std::vector<std::pair<char, std::ptrdiff_t>> all(events.begin(), events.begin() + static_cast<int>(size));
    all.emplace_back('E', after);
    for (auto& event : all) event.second -= before;
    return all;
  }
};

}  // namespace

void onTranslate(TranslatorCall const& call) {
  host().note("translate " + call.context + "|" + call.comment.value_or("") + "|" + call.text);
  if (host().onTranslate) host().onTranslate(call);
}

[[gnu::visibility("default")]] std::string UnicodeTools::wstring_to_utf8(std::wstring const& text) {
  host().note("delta");
  EXPECT_EQ(text, std::wstring(1, wchar_t{0x394}));
  return "\xCE\x94";
}

[[gnu::visibility("default")]] std::string const& ToolForceBusinessName::getTranslated(
    std::string const& name) {
  host().note("name of " + name);
  return host().totalToolForcesKey;
}

[[gnu::visibility("default")]] std::string const& SolverTableDataKeys::getNameOfPilotForce() {
  static std::string const key = "PilotForce";
  if (host().onPilotKey) host().onPilotKey();
  return key;
}

}  // namespace Kestrel

#ifndef __SANITIZE_THREAD__  // which needs these functions for itself
extern "C" [[gnu::visibility("default")]] int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  static auto const lock = reinterpret_cast<int (*)(pthread_mutex_t*)>(::dlsym(RTLD_NEXT, __func__));
  Kestrel::Trace::note('L');
  return lock(mutex);
}

extern "C" [[gnu::visibility("default")]] int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
  static auto const unlock = reinterpret_cast<int (*)(pthread_mutex_t*)>(::dlsym(RTLD_NEXT, __func__));
  Kestrel::Trace::note('U');
  return unlock(mutex);
}
#endif

namespace Kestrel {
namespace {

TEST_F(TablePropertySettingsTest, HoldsTheWholeCatalogue) {
  for (auto const& row : catalogue) EXPECT_EQ(textsOf(row.key), row.english) << row.key;
  EXPECT_EQ(textsOf("DescriptionEntry"), header);
  EXPECT_EQ(catalogue.size(), 32u);
  EXPECT_EQ(Access::initMap().size(), 33u);
}

TEST_F(TablePropertySettingsTest, ComesInTheOrderOfItsRowsAndColumns) {
  Texts const names = {"translate TablePropertySettings|Property display name|",
                       "translate TablePropertySettings|Property short display name|",
                       "translate TablePropertySettings|Property table display name|",
                       "translate TablePropertySettings|Property short table display name|"};
  Texts const skinNames = {"translate SkinBaseNameUtilities|Skin display name|",
                           "translate SkinBaseNameUtilities|Skin short display name|", names[2], names[3]};
  Texts expected;
  for (auto const& row : catalogue) {
    if (row.key == std::string("Total Tool Forces")) {
      expected.emplace_back("name of TotalToolForces");
      continue;
    }
    if (row.key == std::string("ClampTeachingDistanceX")) expected.emplace_back("delta");
    for (std::size_t column = 0; column < 4; ++column) {
      auto text = row.english[column];
      for (std::size_t at = 0; (at = text.find("Δ")) != std::string::npos;) text.replace(at, 2, "%1");
      expected.push_back((isSkin(row) ? skinNames : names)[column] + text);
    }
  }
  host().isRecording = true;
  (void)TablePropertySettings::getDisplayName("");
  EXPECT_EQ(host().calls, expected);
}

TEST_F(TablePropertySettingsTest, AsksForNoPluralForm) {
  int calls = 0;
  host().onTranslate = [&calls](TranslatorCall const& call) {
    EXPECT_EQ(call.count, -1) << call.text;
    ++calls;
  };
  (void)TablePropertySettings::getDisplayName("");
  EXPECT_EQ(calls, 124);
}

TEST_F(TablePropertySettingsTest, IsTranslatedOnce) {
  (void)TablePropertySettings::getDisplayName("");
  host().isRecording = true;
  for (auto const& row : catalogue) (void)textsOf(row.key);
  EXPECT_THAT(host().calls, ElementsAre());
}

TEST_F(TablePropertySettingsTest, TheTotalToolForcesHaveTheTextsOfTheRowAbove) {
  EXPECT_EQ(textsOf("Total Tool Forces"), textsOf("ToolForceInWorkingDir"));
  EXPECT_EQ(TablePropertySettings::getDisplayName("Total Tool Forces"), "Force in Working Direction");
}

TEST_F(TablePropertySettingsTest, TheTotalToolForcesAreKeyedByTheirBusinessName) {
  host().totalToolForcesKey = "Werkzeugkräfte";
  EXPECT_EQ(TablePropertySettings::getShortDisplayName("Werkzeugkräfte"), "F WorkDir");
  EXPECT_EQ(textsOf("Total Tool Forces"), nothing);
  EXPECT_EQ(textsOf("TotalToolForces"), nothing);
}

TEST_F(TablePropertySettingsTest, ALaterRowReplacesAnEarlierOneOfTheSameKey) {
  host().totalToolForcesKey = "ClampNormalForce";
  EXPECT_EQ(TablePropertySettings::getDisplayName("ClampNormalForce"), "Force in Working Direction");
  EXPECT_EQ(Access::initMap().size(), 32u);

  makeNew();
  host().totalToolForcesKey = "PilotForce";
  EXPECT_EQ(TablePropertySettings::getDisplayName("PilotForce"), "Force");

  makeNew();
  host().totalToolForcesKey = "DescriptionEntry";
  EXPECT_EQ(TablePropertySettings::getUnitString("DescriptionEntry"), "N");
}

TEST_F(TablePropertySettingsTest, AnUnknownKeyHasEmptyTexts) {
  for (auto const* key : {"", "clampnormalforce", "ClampNormalForce ", "ClampNormalForc", "Unit", "\xFF"}) {
    EXPECT_EQ(textsOf(key), nothing) << key;
  }
  EXPECT_EQ(textsOf(std::string("ClampNormalForce\0", 17)), nothing);
}

TEST_F(TablePropertySettingsTest, UnknownKeysShareOneEmptyText) {
  auto const& text = Access::getProperty("none", 0);
  EXPECT_EQ(text, "");
  EXPECT_EQ(&text, &Access::getProperty("", 4));
}

TEST_F(TablePropertySettingsTest, GivesReferencesInsideAndCopiesOutside) {
  auto const& stored = Access::getProperty("JoiningTongGap", 2);
  EXPECT_EQ(&stored, &Access::initMap().at("JoiningTongGap")[2]);

  auto copy = TablePropertySettings::getTableDisplayName("JoiningTongGap");
  copy += "!";
  EXPECT_EQ(TablePropertySettings::getTableDisplayName("JoiningTongGap"), "Gap");
}

TEST_F(TablePropertySettingsTest, CannotBeMadeOrDestroyedFromOutside) {
  static_assert(!std::is_default_constructible_v<TablePropertySettings>);
  static_assert(!std::is_destructible_v<TablePropertySettings>);
  static_assert(std::has_virtual_destructor_v<TablePropertySettings>);
  static_assert(std::is_copy_assignable_v<TablePropertySettings>);
  static_assert(sizeof(TablePropertySettings) == sizeof(void*), "no data members");

  auto const* first = Access::create();
  auto* second = new TablePropertySettings(*first);
  EXPECT_EQ(&(*second = *first), second);
  Access::destroy(first);
  Access::destroy(second);
}

TEST_F(TablePropertySettingsTest, KeepsTheRowsOfAFillingThatFailsAndNeverFillsAgain) {
  for (int refused = 0; refused < 124; ++refused) {
    int calls = 0;
    host().onTranslate = [&calls, refused](TranslatorCall const&) {
      if (calls++ == refused) throw std::runtime_error("no translation");
    };
    EXPECT_THROW((void)TablePropertySettings::getDisplayName("ClampNormalForce"), std::runtime_error);

    // Four translations per row, but none for the total tool forces.
    auto complete = static_cast<std::size_t>(refused) / 4;
    if (complete >= totalToolForcesRow) ++complete;
    EXPECT_EQ(textsOf("DescriptionEntry"), header);
    for (std::size_t i = 0; i < catalogue.size(); ++i) {
      EXPECT_EQ(textsOf(catalogue[i].key), i < complete ? catalogue[i].english : nothing)
          << catalogue[i].key << ", failed at translation " << refused;
    }
    EXPECT_EQ(calls, refused + 1);
    makeNew();
  }
}

TEST_F(TablePropertySettingsTest, KeepsTheRowsBeforeAKeyThatFails) {
  host().onPilotKey = [] { throw std::logic_error("no key"); };
  EXPECT_THROW((void)TablePropertySettings::getUnitString("PilotForce"), std::logic_error);
  host().onPilotKey = nullptr;
  EXPECT_EQ(Access::initMap().size(), 12u);
  EXPECT_EQ(TablePropertySettings::getUnitString("Total Tool Forces"), "N");
  EXPECT_EQ(TablePropertySettings::getUnitString("PilotForce"), "");
}

/// The catalogue before a first lookup, and again when it goes.
struct NewCatalogue {
  NewCatalogue() { Access::forget(); }
  NewCatalogue(NewCatalogue const&) = delete;
  NewCatalogue& operator=(NewCatalogue const&) = delete;
  ~NewCatalogue() { Access::forget(); }
};

TEST_F(TablePropertySettingsTest, AFirstLookupWithoutMemoryLeaksNothingAndLeavesWholeRows) {
  // Without the first row the catalogue is still empty, and the next lookup is the first one.
  auto const expectWholeRows = [](NewCatalogue const&) {
    auto const size = Access::initMap().size();
    EXPECT_EQ(textsOf("DescriptionEntry"), header);
    for (std::size_t i = 0; i < catalogue.size(); ++i) {
      EXPECT_EQ(textsOf(catalogue[i].key), i + 1 < size ? catalogue[i].english : nothing) << catalogue[i].key;
    }
  };
  auto const failures = failEachAllocation(
      [] { return NewCatalogue(); },
      [](NewCatalogue const&) { (void)TablePropertySettings::getUnitString("SuctionDistance"); },
      expectWholeRows);
  EXPECT_GT(failures.count, 100u);
  EXPECT_EQ(failures.swallowed, 0u);
  EXPECT_EQ(failures.leaking, 0u);
}

TEST_F(TablePropertySettingsTest, FirstLookupsOfManyThreadsWaitUntilTheCatalogueIsFull) {
  constexpr int threadCount = 64;
  std::atomic<int> started = 0;
  std::atomic<int> translations = 0;
  host().onTranslate = [&](TranslatorCall const&) {
    if (translations++ > 0) return;
    while (started < threadCount) std::this_thread::yield();  // all others are on their way to the lookup
  };
  std::vector<Texts> seen(threadCount);
  std::vector<std::thread> threads;
  threads.reserve(seen.size());
  for (auto& texts : seen) {
    threads.emplace_back([&started, &texts] {
      ++started;
      texts = textsOf("SuctionDistance");
    });
  }
  for (auto& thread : threads) thread.join();
  for (auto const& texts : seen)
    EXPECT_THAT(texts, ElementsAre("Distance", "Distance", "Distance", "Distance", "mm"));
  EXPECT_EQ(translations, 124);
}

#ifndef __SANITIZE_THREAD__
TEST_F(TablePropertySettingsTest, EveryLookupTakesTheMutexAndCopiesAfterReleasingIt) {
  std::string const key = "ToolForceInWorkingDir";
  std::string const unknown = "none";
  (void)TablePropertySettings::getDisplayName(unknown);
  EXPECT_THAT(Trace::of([&] { return TablePropertySettings::getTableDisplayName(key); }),
              ElementsAre(Pair('L', 0), Pair('U', 0), Pair('E', 1)));
  EXPECT_THAT(Trace::of([&] { return TablePropertySettings::getUnitString(key); }),
              ElementsAre(Pair('L', 0), Pair('U', 0), Pair('E', 0)));
  EXPECT_THAT(Trace::of([&] { return TablePropertySettings::getShortDisplayName(unknown); }),
              ElementsAre(Pair('L', 0), Pair('U', 0), Pair('E', 0)));
}
#endif

struct TranslatedRow {
  char const* key;
  Texts texts;
};

void expectInLanguage(std::string const& language, std::vector<TranslatedRow> const& rows) {
  for (auto const& row : rows) {
    std::string expected;
    for (auto const& text : row.texts) expected += text + '\n';
    EXPECT_EQ(outputOfThisProgram({"LANG=" + language}, {"--texts-of", row.key}), expected) << row.key;
  }
}

TEST(TablePropertySettings, SpeaksGerman) {
  expectInLanguage(
      "de_DE.UTF-8",
      {{"ClampClosingForce", {"Schließkraft", "F Schl", "Max. Schließkraft", "Max. F Schl", "N"}},
       {"ClampNormalDisplacement", {"Abstand", "Abstand", "Max. Abstand", "Max. Abst", "mm"}},
       {"ClampTeachingDistanceX", {"Teachen ΔX", "ΔX", "Teachen ΔX", "ΔX", "mm"}},
       {"JoiningTeachingX", {"Teachen ΔX", "ΔX", "ΔTeachen ΔX", "ΔX", "mm"}},
       {"LineJoinSumForceT", {"Tangentialkraft", "F Tang", "Max. Tangentialkraft", "Max. F Tang", "N"}},
       {"DescriptionEntry", header}});
}

TEST(TablePropertySettings, SpeaksJapanese) {
  expectInLanguage("ja_JP.UTF-8",
                   {{"ClampClosingForce", {"締付力", "締付力", "最大締付力", "最大締付力", "N"}},
                    {"JoiningTongGap", {"隙間", "隙間", "隙間", "隙間", "mm"}},
                    {"JoiningTeachingZ", {"ティーチングΔZ", "ΔZ", "ΔティーチングΔZ", "ΔZ", "mm"}},
                    {"LineJoinSumForceN", {"法線力", "法線力", "最大法線力", "最大法線力", "N"}},
                    {"DescriptionEntry", header}});
}

}  // namespace
}  // namespace Kestrel

int main(int argc, char** argv) {
  if (argc == 3 && std::string(argv[1]) == "--texts-of") {
    for (auto const& text : Kestrel::textsOf(argv[2])) std::cout << text << '\n';
    return 0;
  }
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
