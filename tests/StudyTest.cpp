#include "result_tables/study/Study.h"

#include <gmock/gmock.h>

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "result_tables/base/Error.h"
#include "support/StudyTesting.h"
#include "support/TemporaryFolder.h"

// In files; that servers do the same is shown with the program.

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::ThrowsMessage;

class StudyInFile : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> runNames() const {
    std::vector<std::string> names;
    for (auto const& run : m_study.runs()) names.push_back(run.name);
    return names;
  }

  /// How many rows the tables of a study have that no run may leave behind.
  [[nodiscard]] std::vector<std::int64_t> rowCounts() const {
    std::vector<std::int64_t> counts;
    auto const take = [&counts](DatabaseRow const& row) { counts.push_back(row.integer(0)); };
    auto& database = m_study.database();
    database.query("SELECT count(*) FROM study_layouts", {}, take);
    database.query("SELECT count(*) FROM study_sections", {}, take);
    database.query("SELECT count(*) FROM study_columns", {}, take);
    database.query("SELECT count(*) FROM study_elements", {}, take);
    database.query("SELECT count(*) FROM study_labels", {}, take);
    database.query("SELECT count(*) FROM study_run_columns", {}, take);
    database.query("SELECT count(*) FROM study_values", {}, take);
    return counts;
  }

  TemporaryFolder m_folder;
  std::string m_file = m_folder.path() / "study.db";
  Study m_study{m_file, DatabaseAccess::write};
};

TEST_F(StudyInFile, GivesBackBitForBitWhatWasAdded) {
  EXPECT_EQ(m_study.add(genTestRun("one")), Added::asNew);
  auto const expected = genTestRun("one");
  auto const found = Study(m_file, DatabaseAccess::read).read("one");
  EXPECT_EQ(found.run.file, "one.json");
  EXPECT_EQ(found.run.added, "2026-11-22T09:30:00Z");
  EXPECT_EQ(found.run.program, "1.0.0");
  EXPECT_EQ(found.run.contentDigest, "content of one");
  EXPECT_THAT(found.run.labels, ElementsAre(Pair("gap", "0.5"), Pair("tool", "A 'quoted\" one")));
  EXPECT_EQ(found.run.valueCount, 5U);
  EXPECT_EQ(found.layoutDigest(), expected.layoutDigest());
  EXPECT_EQ(found.sections.at(0).columns.at(0).limit->value, 2);
  EXPECT_EQ(found.sections.at(0).columns.at(0).worst, s_studyInfinity);
  EXPECT_EQ(found.sections.at(0).columns.at(1).limit, std::nullopt);
  ASSERT_EQ(found.values.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    auto const& one = found.values[i];
    auto const& other = expected.values[i];
    EXPECT_EQ(std::bit_cast<std::uint64_t>(one.value), std::bit_cast<std::uint64_t>(other.value)) << i;
    EXPECT_EQ(one.step, other.step) << i;
    EXPECT_EQ(one.time, other.time) << i;
    EXPECT_EQ(one.count, other.count) << i;
    EXPECT_EQ(one.nans, other.nans) << i;
    EXPECT_EQ(one.isValid, other.isValid) << i;
    EXPECT_EQ(one.isExceeded, other.isExceeded) << i;
  }
  EXPECT_EQ(std::bit_cast<std::uint64_t>(*found.values[3].time), 0x8000000000000000U);
}

TEST_F(StudyInFile, ListsRunsInTheOrderInWhichTheyWereAddedFirst) {
  m_study.add(genTestRun("zwei"));
  m_study.add(genTestRun("eins"));
  auto changed = genTestRun("zwei");
  changed.run.contentDigest = "other";
  EXPECT_EQ(m_study.add(changed), Added::asReplacement);
  EXPECT_THAT(runNames(), ElementsAre("zwei", "eins"));
  auto const run = m_study.runs().at(1);
  EXPECT_EQ(run.counts.exceeded, 1U);
  EXPECT_EQ(run.counts.notANumber, 1U);
  EXPECT_EQ(run.counts.invalid, 2U);
  EXPECT_EQ(run.counts.compared, 3U);
  EXPECT_EQ(run.worst, s_studyInfinity);
}

TEST_F(StudyInFile, ChangesNothingWhereContentLimitsAndSelectionAreTheSame) {
  auto stored = genTestRun("one");
  stored.run.limitsDigest = "limits of one";
  stored.run.selection = "teaching\n";
  m_study.add(stored);
  auto again = stored;
  again.run.added = "2027-01-01T00:00:00Z";
  again.values.clear();
  EXPECT_TRUE(m_study.has(again.run));
  EXPECT_EQ(m_study.add(again), Added::notAgain);
  EXPECT_EQ(m_study.read("one").run.added, "2026-11-22T09:30:00Z");
  EXPECT_EQ(m_study.read("one").values.size(), 5U);
  for (auto const change : {&StudyRun::contentDigest, &StudyRun::limitsDigest, &StudyRun::selection}) {
    auto other = stored.run;
    other.*change += "!";
    EXPECT_FALSE(m_study.has(other));
  }
}

TEST_F(StudyInFile, ReplacesLabelsWhereThereAreNewOnes) {
  m_study.add(genTestRun("one"));
  auto run = genTestRun("one").run;
  EXPECT_EQ(m_study.addLabels(run), Added::notAgain);
  run.labels = {{"gap", "1"}};
  EXPECT_EQ(m_study.addLabels(run), Added::labelsOnly);
  EXPECT_THAT(m_study.read("one").run.labels, ElementsAre(Pair("gap", "1")));
  run.labels.clear();
  EXPECT_EQ(m_study.addLabels(run), Added::notAgain);
  EXPECT_THAT(m_study.runs().front().labels, ElementsAre(Pair("gap", "1")));
}

TEST_F(StudyInFile, KeepsOneLayoutForRunsOfOneModelAndNothingOfRemovedOnes) {
  m_study.add(genTestRun("one"));
  m_study.add(genTestRun("two"));
  EXPECT_THAT(rowCounts(), ElementsAre(1, 2, 3, 3, 4, 6, 10));
  auto other = genTestRun("two");
  other.elements[2].item = "C2";
  other.run.contentDigest = "other";
  m_study.add(other);
  EXPECT_THAT(rowCounts(), ElementsAre(2, 4, 6, 6, 4, 6, 10));
  m_study.remove({"one"});
  EXPECT_THAT(rowCounts(), ElementsAre(1, 2, 3, 3, 2, 3, 5));
  EXPECT_EQ(m_study.read("two").elements[2].item, "C2");
  m_study.remove({"two"});
  EXPECT_THAT(rowCounts(), ElementsAre(0, 0, 0, 0, 0, 0, 0));
  EXPECT_THAT(runNames(), IsEmpty());
}

TEST_F(StudyInFile, RemovesAllOrNone) {
  m_study.add(genTestRun("one"));
  m_study.add(genTestRun("two"));
  EXPECT_THAT(
      [&] {
        m_study.remove({"one", "tow"});
      },
      ThrowsMessage<Error>(m_file + ": expected the name of a run (\"one\", \"two\"), found \"tow\"; "
                                    "did you mean \"two\"?"));
  EXPECT_THAT(runNames(), ElementsAre("one", "two"));
  EXPECT_EQ(m_study.read("one").values.size(), 5U);
}

TEST_F(StudyInFile, RefusesToReadWhatIsNotThere) {
  EXPECT_THAT([&] { static_cast<void>(m_study.read("x")); },
              ThrowsMessage<Error>(m_file + ": expected the name of a run (none), found \"x\""));
  EXPECT_THAT([&] { Study(m_folder.path() / "no.db", DatabaseAccess::read); },
              ThrowsMessage<Error>((m_folder.path() / "no.db").string() + ": there is no such study"));
  EXPECT_FALSE(std::filesystem::exists(m_folder.path() / "no.db"));
}

TEST_F(StudyInFile, HasAViewForPeoplesOwnQuestions) {
  m_study.add(genTestRun("one"));
  std::vector<std::string> rows;
  m_study.database().query(
      "SELECT run || '|' || file || '|' || unit || '|' || unit_id || '|' || family || '|' || section || '|' "
      "|| "
      "sub_group || '|' || item || '|' || occurrence || '|' || valid || '|' || quantity || '|' || value || "
      "'|' || "
      "value_unit || '|' || coalesce(limit_value, 'none') || '|' || exceeded || '|' || coalesce(step, "
      "'none') || "
      "'|' || coalesce(time, 'none') || '|' || count || '|' || nans FROM result_values WHERE nans = 1",
      {}, [&rows](DatabaseRow const& row) { rows.push_back(row.text(0)); });
  EXPECT_THAT(rows,
              ElementsAre("one|one.json|OP20|0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01|Clamps|Forces|Left|C1|1|1|"
                          "ClampNormalForce|-Inf|N|2.0|1|7|1.5|9|1"));
}

}  // namespace
}  // namespace Kestrel::ResultTables
