#include "result_tables/render/TextWorstValues.h"

#include <fmt/format.h>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextColumns.h"

namespace Kestrel::ResultTables {

namespace {

std::vector<std::string> worstCells(WorstValue const& worst, int digits) {
  auto const& column = worst.column;
  auto const& origin = worst.value.origin;
  return {formatNumber(worst.utilisation * 100, 4),
          formatNumber(worst.value.value, digits),
          formatNumber(column.limit->value, digits),
          toPrintable(column.unit),
          toPrintable(worst.run),
          placeText(worst.unit, worst.title, {worst.group, worst.subGroup, worst.item, column.shownName()}),
          origin.step ? fmt::format("{}", *origin.step) : "",
          origin.companion ? formatNumber(*origin.companion, digits) : ""};
}

}  // namespace

std::string renderWorstValuesAsText(WorstValues const& values, TextStyle const& style) {
  if (values.empty()) return tr("no values with a limit") + '\n';
  constexpr auto number = TextColumns::Kind::number;
  TextColumns columns({{tr("utilisation") + " [%]", number},
                       {tr("value"), number},
                       {tr("limit"), number},
                       {},
                       {tr("run")},
                       {tr("place")},
                       {tr("step"), number},
                       {tr("time"), number}});
  for (auto const& worst : values) columns.add(worstCells(worst, style.digits), worst.value.isExceeded);
  return columns.render(style.colour, style.width);
}

}  // namespace Kestrel::ResultTables
