#include "result_tables/render/SeriesTexts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

std::size_t countNaNs(MaxValueSeries const& series) {
  return static_cast<std::size_t>(std::count_if(series.values.begin(), series.values.end(),
                                                [](double value) { return std::isnan(value); }));
}

}  // namespace

std::string placeText(std::string_view unit, std::string_view title,
                      std::initializer_list<std::string_view> parts) {
  auto place = std::string(unit).append(": ").append(title);
  for (auto const part : parts) {
    if (!part.empty()) place.append(", ").append(part);
  }
  return toPrintable(place);
}

std::string placeText(TableSeries const& series) {
  return placeText(series.unit, series.title,
                   {series.group, series.subGroup, series.shownItem, series.column.shownName()});
}

std::string titleText(TableSeries const& series) {
  auto title = placeText(series);
  if (auto const& unit = series.column.unit; !unit.empty()) title += fmt::format(" [{}]", toPrintable(unit));
  return title;
}

std::string extremeText(TableSeries const& series, int digits, char decimalMark) {
  auto const& values = series.series.values;
  if (values.empty()) return tr("no data");
  if (countNaNs(series.series) == values.size()) return "NaN";
  auto text = withUnit(series.value, series.column.unit, digits, decimalMark);
  if (auto const step = series.step()) text += fmt::format(", {} {}", tr("step"), *step);
  if (auto const time = series.time())
    text += fmt::format(", {} {}", tr("time"), formatNumber(*time, digits, decimalMark));
  return text;
}

std::string limitText(double limit, std::string const& unit, int digits, char decimalMark) {
  return fmt::format("{} {}", tr("limit"), withUnit(limit, unit, digits, decimalMark));
}

std::string extentText(TableSeries const& series) {
  auto const count = series.series.values.size();
  if (series.hasRanges()) return tr("records: {}, minimum and maximum of each", count);
  auto const nans = countNaNs(series.series);
  return nans == 0 ? tr("values: {}", count) : tr("values: {}, not numbers: {}", count, nans);
}

}  // namespace Kestrel::ResultTables
