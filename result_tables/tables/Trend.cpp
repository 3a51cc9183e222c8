#include "result_tables/tables/Trend.h"

namespace Kestrel::ResultTables {

ValueStatistics Trend::statistics() const {
  ValueStatistics statistics;
  for (auto const& point : points)
    statistics.add(point.value.value, point.isValid, point.value.origin.count > 0, point.limit.has_value(),
                   point.value.isExceeded);
  return statistics;
}

}  // namespace Kestrel::ResultTables
