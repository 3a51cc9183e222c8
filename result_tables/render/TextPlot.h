#pragma once

#include <cstddef>
#include <string>

#include "result_tables/render/Chart.h"
#include "result_tables/render/TextStyle.h"

namespace Kestrel::ResultTables {

class DotGrid;

/// The axes that a plot has room for.
[[nodiscard]] ChartIntervals plotIntervals(TextStyle const& style);

/// What marks values and limits in a plot, each one column wide.
struct PlotSigns {
  std::string extreme;
  std::string limit;
};

/// Those signs without colour.
[[nodiscard]] PlotSigns plotSigns(TextStyle const& style);

/// A chart out of characters.
class TextPlot {
 public:
  /// `axisName` is printable; marked values are red where they are exceeded.
  TextPlot(Chart chart, std::string axisName, bool isExceeded, TextStyle const& style);

  [[nodiscard]] Chart const& chart() const { return m_chart; }
  /// As they are in the plot, in their colours.
  [[nodiscard]] PlotSigns const& signs() const { return m_shown; }

  /// Appends the lines of the plot. REQUIRES: the chart is not empty.
  void appendTo(std::string& out) const;

 private:
  void appendHorizontalAxis(std::string& out, DotGrid const& grid, std::size_t columns) const;

  Chart m_chart;
  std::string m_axisName;
  TextStyle m_style;
  PlotSigns m_shown;
  std::size_t m_labelWidth;
};

}  // namespace Kestrel::ResultTables
