#include "result_tables/render/Thinning.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <set>
#include <utility>

namespace Kestrel::ResultTables {

namespace {

/// Indices of points, ascending.
using Indices = std::vector<std::size_t>;

/// The first, the lowest, the highest and the last of the points from `first` to before `behind`.
std::array<std::size_t, 4> outstandingOf(std::vector<ChartPoint> const& points, std::size_t first,
                                         std::size_t behind) {
  std::array<std::size_t, 4> chosen{first, first, first, behind - 1};
  auto& [begin, lowest, highest, end] = chosen;
  for (std::size_t i = first; i < behind; ++i) {
    if (points[i].y < points[lowest].y) lowest = i;
    if (points[i].y > points[highest].y) highest = i;
  }
  return chosen;
}

/// Appends each of them once.
void appendInOrder(Indices& kept, std::array<std::size_t, 4> chosen) {
  std::sort(chosen.begin(), chosen.end());
  kept.insert(kept.end(), chosen.begin(), std::unique(chosen.begin(), chosen.end()));
}

/// The points of lines, one line behind the other.
struct LineSequence {
  std::vector<ChartPoint> points;
  std::vector<std::size_t> lines;  ///< per point the number of its line

  void append(std::vector<ChartPoint> const& line) {
    auto const number = lines.empty() ? 0 : lines.back() + 1;
    points.insert(points.end(), line.begin(), line.end());
    lines.insert(lines.end(), line.size(), number);
  }

  [[nodiscard]] bool isFirst(std::size_t i) const { return i == 0 || lines[i] != lines[i - 1]; }
  [[nodiscard]] bool isEnd(std::size_t i) const {
    return isFirst(i) || i + 1 == lines.size() || isFirst(i + 1);
  }
  /// Whether the line does not go on upwards, or downwards, there.
  [[nodiscard]] bool isTurn(std::size_t i) const {
    return isEnd(i) || (points[i].y >= points[i - 1].y) != (points[i + 1].y > points[i].y);
  }

  /// The lines with these points alone, without those that have none.
  [[nodiscard]] std::vector<std::vector<ChartPoint>> withPoints(Indices const& kept) const {
    std::vector<std::vector<ChartPoint>> found;
    for (std::size_t k = 0; k < kept.size(); ++k) {
      if (k == 0 || lines[kept[k]] != lines[kept[k - 1]]) found.emplace_back();
      found.back().push_back(points[kept[k]]);
    }
    return found;
  }
};

enum class Grouping { withinLines, acrossLines };

/// Neighbours that lie in one of so many columns, in groups of them.
class ColumnGroups {
 public:
  ColumnGroups(LineSequence const& sequence, std::size_t columns, Grouping grouping)
      : m_sequence(sequence), m_grouping(grouping) {
    auto const columnOf = [&](std::size_t i) {
      return std::min(std::floor(sequence.points[i].x * static_cast<double>(columns)),
                      static_cast<double>(columns - 1));
    };
    for (std::size_t i = 0; i < sequence.points.size(); ++i) {
      bool const isNew = i == 0 || columnOf(i) != columnOf(i - 1);
      if (isNew || (grouping == Grouping::withinLines && sequence.isFirst(i))) m_runs.push_back(i);
    }
  }

  /// How many columns go into a group so that there are no more groups than that; than these and one for each
  /// line where groups are within lines.
  [[nodiscard]] std::size_t sizeFor(std::size_t groups) const {
    return (m_runs.size() + groups - 1) / groups;
  }

  /// Calls `visit(first, behind)` with the points of each group.
  template <typename Visit>
  void forEach(std::size_t columns, Visit const& visit) const {
    for (std::size_t run = 0, next = 0; run < m_runs.size(); run = next) {
      for (next = run + 1; next < m_runs.size() && next - run < columns && areJoined(run, next);) ++next;
      visit(m_runs[run], next < m_runs.size() ? m_runs[next] : m_sequence.points.size());
    }
  }

  /// What stands out in each group.
  [[nodiscard]] Indices outstanding(std::size_t columns) const {
    Indices kept;
    forEach(columns, [&](std::size_t first, std::size_t behind) {
      appendInOrder(kept, outstandingOf(m_sequence.points, first, behind));
    });
    return kept;
  }

 private:
  [[nodiscard]] bool areJoined(std::size_t one, std::size_t other) const {
    return m_grouping == Grouping::acrossLines ||
           m_sequence.lines[m_runs[one]] == m_sequence.lines[m_runs[other]];
  }

  LineSequence const& m_sequence;
  Grouping m_grouping;
  Indices m_runs;  ///< where they begin
};

/// Leaves points out, from the one that the picture misses least.
class Pruning {
 public:
  Pruning(LineSequence const& sequence, Indices points)
      : m_sequence(sequence), m_points(std::move(points)), m_isNeeded(m_points.size(), false) {
    for (std::size_t k = 0; k < m_points.size(); ++k) {
      m_before.push_back(k - 1);
      m_behind.push_back(k + 1);
      m_isNeeded[k] = sequence.isEnd(m_points[k]);
    }
  }

  /// Is not left out. The point must be one of those that there are.
  void need(std::size_t point) {
    auto const found = std::lower_bound(m_points.begin(), m_points.end(), point);
    m_isNeeded[static_cast<std::size_t>(found - m_points.begin())] = true;
  }

  [[nodiscard]] Indices leave(std::size_t most) && {
    for (std::size_t k = 0; k < m_points.size(); ++k) {
      if (!m_isNeeded[k]) m_queue.emplace(missOf(k), k);
    }
    auto count = m_points.size();
    while (!m_queue.empty() && (count > most || m_queue.begin()->first < s_invisible)) {
      leaveOut(m_queue.begin()->second);
      --count;
    }
    Indices left;
    for (std::size_t k = 0; k < m_points.size(); k = m_behind[k]) left.push_back(m_points[k]);
    return left;
  }

 private:
  /// A part of the picture's width or height that nobody sees.
  static constexpr double s_invisible = 1.0 / 500;

  [[nodiscard]] ChartPoint const& at(std::size_t k) const { return m_sequence.points[m_points[k]]; }

  /// How far the line would pass by the point.
  [[nodiscard]] double missOf(std::size_t k) const {
    auto const& from = at(m_before[k]);
    auto const& to = at(m_behind[k]);
    double const width = to.x - from.x;
    double const part = width > 0 ? std::clamp((at(k).x - from.x) / width, 0.0, 1.0) : 0.5;
    return std::max(std::abs(at(k).x - (from.x + part * width)),
                    std::abs(at(k).y - (from.y + part * (to.y - from.y))));
  }

  void leaveOut(std::size_t k) {
    m_queue.erase({missOf(k), k});
    auto const neighbours = {m_before[k], m_behind[k]};
    for (auto const neighbour : neighbours) {
      if (!m_isNeeded[neighbour]) m_queue.erase({missOf(neighbour), neighbour});
    }
    m_behind[m_before[k]] = m_behind[k];
    m_before[m_behind[k]] = m_before[k];
    for (auto const neighbour : neighbours) {
      if (!m_isNeeded[neighbour]) m_queue.emplace(missOf(neighbour), neighbour);
    }
  }

  LineSequence const& m_sequence;
  Indices m_points;
  std::vector<bool> m_isNeeded;
  std::vector<std::size_t> m_before;  ///< places in `m_points`, of those that are left
  std::vector<std::size_t> m_behind;
  std::set<std::pair<double, std::size_t>> m_queue;
};

}  // namespace

std::vector<ChartPoint> thinned(std::vector<ChartPoint> const& line, std::size_t columns) {
  auto const columnOf = [&](std::size_t i) { return std::floor(line[i].x * static_cast<double>(columns)); };
  Indices kept;
  for (std::size_t first = 0, behind = 0; first < line.size(); first = behind) {
    for (behind = first + 1; behind < line.size() && columnOf(behind) == columnOf(first);) ++behind;
    appendInOrder(kept, outstandingOf(line, first, behind));
  }
  std::vector<ChartPoint> points;
  points.reserve(kept.size());
  for (auto const i : kept) points.push_back(line[i]);
  return points;
}

std::vector<std::vector<ChartPoint>> reduced(std::vector<std::vector<ChartPoint>> const& lines,
                                             std::size_t most) {
  assert(most >= s_fewestReduced);
  LineSequence sequence;
  for (auto const& line : lines) sequence.append(line);
  if (sequence.points.size() <= most) return lines;
  if (lines.size() > most / 8) {
    ColumnGroups const groups(sequence, most, Grouping::acrossLines);
    return sequence.withPoints(groups.outstanding(groups.sizeFor(most / 4)));
  }
  ColumnGroups const groups(sequence, most, Grouping::withinLines);
  auto const size = groups.sizeFor(most);
  Pruning pruning(sequence, groups.outstanding(size));
  groups.forEach(4 * size, [&](std::size_t first, std::size_t behind) {
    auto const [begin, lowest, highest, end] = outstandingOf(sequence.points, first, behind);
    for (auto const extreme : {lowest, highest}) {
      if (sequence.isTurn(extreme)) pruning.need(extreme);
    }
  });
  return sequence.withPoints(std::move(pruning).leave(most));
}

std::vector<ChartPoint> reducedPoints(std::vector<ChartPoint> const& points, std::size_t most) {
  assert(most >= s_fewestReduced);
  if (points.size() <= most) return points;
  LineSequence sequence;
  sequence.append(points);
  ColumnGroups const groups(sequence, most, Grouping::acrossLines);
  std::vector<ChartPoint> left;
  for (auto const i : groups.outstanding(groups.sizeFor(most / 4))) left.push_back(points[i]);
  return left;
}

}  // namespace Kestrel::ResultTables
