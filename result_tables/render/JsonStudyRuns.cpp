#include "result_tables/render/JsonStudyRuns.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void appendRun(JsonWriter& json, StudyRun const& run) {
  json.beginObject();
  json.text("run", run.name);
  json.text("file", run.file);
  json.text("added", run.added);
  json.text("program", run.program);
  json.text("contentDigest", run.contentDigest);
  json.text("limitsDigest", run.limitsDigest);
  json.beginObject("labels");
  for (auto const& [key, value] : run.labels) json.text(key, value);
  json.endObject();
  json.integer("values", run.valueCount);
  json.integer("compared", run.counts.compared);
  json.integer("withoutData", run.counts.withoutData);
  json.integer("exceeded", run.counts.exceeded);
  json.integer("notANumber", run.counts.notANumber);
  json.integer("invalid", run.counts.invalid);
  if (run.worst)
    json.number("worstUtilisation", *run.worst);
  else
    json.null("worstUtilisation");
  json.endObject();
}

}  // namespace

std::string renderStudyRunsAsJson(std::vector<StudyRun> const& runs) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("runs");
  for (auto const& run : runs) appendRun(json, run);
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables
