#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "result_tables/render/CsvStudyRuns.h"
#include "result_tables/render/JsonStudyRuns.h"
#include "result_tables/render/TextStudyRuns.h"
#include "support/StudyTesting.h"

// The forms of `study list`.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;

std::vector<StudyRun> runs() {
  StudyRun empty;
  empty.name = "empty, and\nnew";
  empty.added = "2026-11-22T09:31:00Z";
  empty.program = "1.0.0";
  return {genTestRun("one").run, empty};
}

TEST(TextStudyRuns, AreOneLineEachAndRedWhereSomethingIsFound) {
  EXPECT_EQ(
      renderStudyRunsAsText(runs(), {}),
      "run              added at               values   compared   without data   beyond limits   NaN   "
      "invalid   worst utilisation   labels\n"
      "one              2026-11-22T09:30:00Z        5          3              0               1     1   "
      "      2               inf %   gap=0.5, tool=A 'quoted\" one\n"
      "empty, and␊new   2026-11-22T09:31:00Z        0          0              0               0     0   "
      "      0\n");
  EXPECT_NE(renderStudyRunsAsText(runs(), {.colour = true}).find("\n\x1b[31mone "), std::string::npos);
}

TEST(CsvStudyRuns, AreOneRecordEach) {
  EXPECT_EQ(
      renderCsv(runs(), s_plainCsv),
      "run,file,added,program,contentDigest,limitsDigest,labels,values,compared,withoutData,exceeded,"
      "notANumber,invalid,worstUtilisation\r\n"
      "one,one.json,2026-11-22T09:30:00Z,1.0.0,content of one,,\"gap=0.5\ntool=A 'quoted\"\" one\",5,3,0,1,1,"
      "2,inf\r\n"
      "\"empty, and\nnew\",,2026-11-22T09:31:00Z,1.0.0,,,,0,0,0,0,0,0,\r\n");
}

TEST(JsonStudyRuns, SayAllThatIsKnown) {
  EXPECT_EQ(json::parse(renderStudyRunsAsJson(runs())), json::parse(R"({"runs": [
    {"run": "one", "file": "one.json", "added": "2026-11-22T09:30:00Z", "program": "1.0.0",
     "contentDigest": "content of one", "limitsDigest": "", "labels": {"gap": "0.5", "tool": "A 'quoted\" one"},
     "values": 5, "compared": 3, "withoutData": 0, "exceeded": 1, "notANumber": 1, "invalid": 2,
     "worstUtilisation": "Infinity"},
    {"run": "empty, and\nnew", "file": "", "added": "2026-11-22T09:31:00Z", "program": "1.0.0", "contentDigest": "",
     "limitsDigest": "", "labels": {}, "values": 0, "compared": 0, "withoutData": 0, "exceeded": 0, "notANumber": 0,
     "invalid": 0, "worstUtilisation": null}]})"));
}

}  // namespace
}  // namespace Kestrel::ResultTables
