#include "result_tables/base/Error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/import/CsvHistories.h"
#include "result_tables/limits/LimitsText.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {
namespace {

struct Said {
  std::string line;
  std::string path;
  std::string place;

  bool operator==(Said const&) const = default;
};

template <typename Work>
Said errorOf(Work const& work) {
  try {
    work();
  } catch (Error const& error) {
    return {error.what(), error.path(), error.place()};
  }
  return {};
}

TEST(Error, SaysFileAndPlaceApart) {
  EXPECT_EQ(errorOf([] { static_cast<void>(readResults("a.json", std::string_view(R"({"units": 1})"))); }),
            (Said{"a.json: /units: expected an array, found 1", "a.json", "/units"}));
  EXPECT_EQ(errorOf([] { static_cast<void>(readResults("a.json", std::string_view("{\n  1"))); }),
            (Said{"a.json: line 2, column 3: expected a member name in quotation marks, found \"1\"",
                  "a.json", "line 2, column 3"}));
  EXPECT_EQ(errorOf([] { static_cast<void>(readResultsFile("/no\nsuch")); }),
            (Said{"/no␊such: cannot read: No such file or directory", "/no\nsuch", ""}));
}

TEST(Error, SaysTheLineOfAPrint) {
  EXPECT_EQ(errorOf([] {
              static_cast<void>(readCsvHistories("a.csv", "time,C1\n0,1\n0.1,x\n", DecimalMark::point));
            }).place,
            "line 3");
  EXPECT_EQ(errorOf([] {
              static_cast<void>(readCsvHistories("a.csv", "time,C1\n0,\xFC\n", DecimalMark::point));
            }).place,
            "line 2, byte 3");
}

TEST(Error, KnowsNoFileWhereItIsAboutNone) {
  EXPECT_EQ(errorOf([] { throw Error("what happened"); }), (Said{"what happened", "", ""}));
}

}  // namespace
}  // namespace Kestrel::ResultTables
