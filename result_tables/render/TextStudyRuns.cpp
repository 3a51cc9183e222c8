#include "result_tables/render/TextStudyRuns.h"

#include <fmt/format.h>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/TextColumns.h"

namespace Kestrel::ResultTables {

namespace {

std::string labelsText(StudyRun const& run) {
  std::string text;
  for (auto const& [key, value] : run.labels)
    text += fmt::format("{}{}={}", text.empty() ? "" : ", ", toPrintable(key), toPrintable(value));
  return text;
}

std::vector<std::string> cellsOf(StudyRun const& run) {
  auto const& counts = run.counts;
  return {toPrintable(run.name),
          run.added,
          fmt::format("{}", run.valueCount),
          fmt::format("{}", counts.compared),
          fmt::format("{}", counts.withoutData),
          fmt::format("{}", counts.exceeded),
          fmt::format("{}", counts.notANumber),
          fmt::format("{}", counts.invalid),
          run.worst ? formatNumber(*run.worst * 100, 4) + " %" : "",
          labelsText(run)};
}

}  // namespace

std::string renderStudyRunsAsText(std::vector<StudyRun> const& runs, TextStyle const& style) {
  constexpr auto number = TextColumns::Kind::number;
  TextColumns columns({{tr("run")},
                       {tr("added at")},
                       {tr("values"), number},
                       {tr("compared"), number},
                       {tr("without data"), number},
                       {tr("beyond limits"), number},
                       {"NaN", number},
                       {tr("invalid"), number},
                       {tr("worst utilisation"), number},
                       {tr("labels")}});
  for (auto const& run : runs)
    columns.add(cellsOf(run), run.counts.exceeded + run.counts.notANumber + run.counts.invalid > 0);
  return columns.render(style.colour, style.width);
}

}  // namespace Kestrel::ResultTables
