#include "result_tables/render/TrendTexts.h"

#include <fmt/format.h>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/SeriesTexts.h"

namespace Kestrel::ResultTables {

std::string titleText(Trend const& trend) {
  auto const item =
      trend.occurrence == 0 ? trend.item : fmt::format("{} ({})", trend.item, trend.occurrence + 1);
  auto title =
      placeText(trend.unit, trend.title, {trend.group, trend.subGroup, item, trend.column.shownName()});
  if (auto const& unit = trend.column.unit; !unit.empty()) title += fmt::format(" [{}]", toPrintable(unit));
  return title;
}

std::string axisText(Trend const& trend) { return trend.by.empty() ? tr("run") : toPrintable(trend.by); }

std::string statisticsText(Trend const& trend, int digits, char decimalMark) {
  constexpr int digitsOfPercent = 3;
  auto const statistics = trend.statistics();
  auto text = tr("runs: {}", statistics.count());
  auto const append = [&](std::string const& name, std::optional<double> number) {
    if (number)
      text += fmt::format(", {} {}", name, withUnit(*number, trend.column.unit, digits, decimalMark));
  };
  append(tr("minimum"), statistics.minimum());
  append(tr("maximum"), statistics.maximum());
  append(tr("mean"), statistics.mean());
  append(tr("standard deviation"), statistics.standardDeviation());
  if (auto const share = statistics.shareBeyondLimit())
    text += fmt::format(", {} {}", tr("beyond the limit"),
                        withUnit(*share * 100, "%", digitsOfPercent, decimalMark));
  return text;
}

}  // namespace Kestrel::ResultTables
