#pragma once

#include <cstddef>
#include <optional>

namespace Kestrel::ResultTables {

/// What the runs of a study make of one value together.
class ValueStatistics {
 public:
  /// Adds the value of a run. One that is not valid, or that is no number, is passed over.
  void add(double value, bool isValid, bool hasNumber, bool hasLimit, bool isExceeded);

  /// Values that were added.
  [[nodiscard]] std::size_t count() const { return m_count; }
  /// None where no value was added; the mean also where there is none of infinite values.
  [[nodiscard]] std::optional<double> minimum() const;
  [[nodiscard]] std::optional<double> maximum() const;
  [[nodiscard]] std::optional<double> mean() const;
  /// Of a sample; none of fewer than two values.
  [[nodiscard]] std::optional<double> standardDeviation() const;
  /// The part of those with a limit that is beyond it; none where none has a limit.
  [[nodiscard]] std::optional<double> shareBeyondLimit() const;

 private:
  std::size_t m_count = 0;
  std::size_t m_limited = 0;
  std::size_t m_exceeded = 0;
  double m_minimum = 0.0;
  double m_maximum = 0.0;
  double m_mean = 0.0;
  double m_squares = 0.0;  ///< sum of the squared distances from the mean
};

}  // namespace Kestrel::ResultTables
