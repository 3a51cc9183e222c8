#include "result_tables/tables/Statistics.h"

#include <algorithm>
#include <cmath>

namespace Kestrel::ResultTables {

namespace {

std::optional<double> ifNumber(double number) {
  return std::isnan(number) ? std::nullopt : std::optional(number);
}

}  // namespace

void ValueStatistics::add(double value, bool isValid, bool hasNumber, bool hasLimit, bool isExceeded) {
  if (!isValid || !hasNumber) return;
  if (hasLimit) ++m_limited;
  if (isExceeded) ++m_exceeded;
  m_minimum = m_count == 0 ? value : std::min(m_minimum, value);
  m_maximum = m_count == 0 ? value : std::max(m_maximum, value);
  ++m_count;
  // Welford's recurrence, which loses nothing where values are large and near each other.
  double const distance = value - m_mean;
  auto const count = static_cast<double>(m_count);
  if (std::isinf(value))
    m_mean += value;
  else if (std::isfinite(m_mean))
    m_mean += value / count - m_mean / count;
  m_squares += distance * (value - m_mean);
}

std::optional<double> ValueStatistics::minimum() const {
  return m_count == 0 ? std::nullopt : std::optional(m_minimum);
}

std::optional<double> ValueStatistics::maximum() const {
  return m_count == 0 ? std::nullopt : std::optional(m_maximum);
}

std::optional<double> ValueStatistics::mean() const { return m_count == 0 ? std::nullopt : ifNumber(m_mean); }

std::optional<double> ValueStatistics::standardDeviation() const {
  if (m_count < 2) return std::nullopt;
  return ifNumber(std::sqrt(m_squares / static_cast<double>(m_count - 1)));
}

std::optional<double> ValueStatistics::shareBeyondLimit() const {
  if (m_limited == 0) return std::nullopt;
  return static_cast<double>(m_exceeded) / static_cast<double>(m_limited);
}

}  // namespace Kestrel::ResultTables
