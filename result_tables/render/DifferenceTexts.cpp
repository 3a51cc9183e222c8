#include "result_tables/render/DifferenceTexts.h"

#include <fmt/format.h>

#include <vector>

#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

bool haveBothNumbers(ValueDifference const& difference) {
  return hasNumber(difference.before) && hasNumber(difference.after);
}

}  // namespace

bool hasNumber(std::optional<ComparedValue> const& value) { return value && value->count > 0; }

std::optional<double> shownChange(ValueDifference const& difference) {
  return haveBothNumbers(difference) ? difference.change() : std::nullopt;
}

std::optional<double> shownRelativeChange(ValueDifference const& difference) {
  return haveBothNumbers(difference) ? difference.relativeChange() : std::nullopt;
}

std::string stateText(ValueDifference const& difference) {
  std::vector<std::string> notes;
  if (difference.kind == DifferenceKind::added) notes.push_back(tr("added"));
  if (difference.kind == DifferenceKind::removed) notes.push_back(tr("removed"));
  if (difference.before && difference.after && difference.before->isValid != difference.after->isValid)
    notes.push_back(difference.after->isValid ? tr("valid again") : tr("no longer valid"));
  if (difference.wentBeyondLimit()) notes.push_back(tr("now beyond its limit"));
  if (difference.cameBackWithinLimit()) notes.push_back(tr("back within its limit"));
  return fmt::format("{}", fmt::join(notes, ", "));
}

std::string quantityText(TableColumn const& column) {
  return column.unit.empty() ? column.shownName() : fmt::format("{} [{}]", column.shownName(), column.unit);
}

}  // namespace Kestrel::ResultTables
