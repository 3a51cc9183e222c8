#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/Export.h"
#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel {

/// Where one value of a table comes from, and from how much data. As it is made, it says: no data.
struct MaxValueOrigin {
  /// The name of the series, or of the line join's skin, as the host stores it; empty where there is none. Of
  /// several that feed one value, it is the last, which the value comes from. Lives as long as the
  /// `SimUnitMaxValueOrigins`.
  std::string_view seriesName;
  /// The index in the stored series of the first value of largest magnitude; of a line join, the number of
  /// the step whose record has it. None where that value is 0.
  std::optional<std::size_t> step;
  /// The companion of that value; none where the series holds none or a NaN, and for line joins.
  std::optional<double> companion;
  std::size_t count = 0;     ///< values that are not NaN; of a line join, records with both range values
  std::size_t nanCount = 0;  ///< values that are; of a line join, records for which a NaN would stand
};

/// A series that a value of a table comes from. The lists are in line with each other.
struct MaxValueSeries {
  std::string name;                ///< as in `MaxValueOrigin`
  std::vector<std::size_t> steps;  ///< indices in the stored series; of a line join, numbers of the steps
  /// In stored order, with their sign; of a line join, per record, the range value that stands for it.
  std::vector<double> values;
  std::vector<double> companions;  ///< empty where the series holds none
  std::vector<double> minima;      ///< of a line join; empty for all others
  std::vector<double> maxima;      ///< of a line join; empty for all others
};

/// Tells, for the values of one container, where in the results of the unit they come from. The container is
/// the one that a `SimUnitMaxValuesProvider` has made for the same unit and result; what it holds beyond them
/// (rows, columns and sections that were added, elements that the unit does not have) has no data.
///
/// Lifetime: the unit must outlive the object; the container is shared. The result is read while the object
/// is made, and not held.
///
/// Threads: the object may be used on several threads at once where the unit may.
///
/// Errors: what the standard containers and the host throw; nothing else is an error.
///
/// Cost: making the object visits the container's rows (of pilots, the names of the series; of line joins,
/// the visible steps) and no value. Each operation passes once over the one series that it is asked for.
class KESTREL_TABLEPROPERTIES_EXPORT SimUnitMaxValueOrigins {
 public:
  /// Indices of a value in a container: `groups[group].subGroups[subGroup].items[item].maxValues[column]`.
  struct Place {
    std::size_t group;     ///< of the container's sections
    std::size_t subGroup;  ///< of the section's sub-groups
    std::size_t item;      ///< of the sub-group's rows
    std::size_t column;    ///< of the section's columns
  };

  /// \param simulationUnit the unit that the container was made for; its address is kept
  /// \param simulationResult the result that the container was made from; read now, and not held
  /// \param container not null; does not change as long as the object lives
  SimUnitMaxValueOrigins(SimulationUnit const& simulationUnit,
                         std::weak_ptr<SimulationResult> const& simulationResult,
                         std::shared_ptr<MaxValueGroupContainer const> container);
  SimUnitMaxValueOrigins(SimUnitMaxValueOrigins const&) = delete;
  SimUnitMaxValueOrigins& operator=(SimUnitMaxValueOrigins const&) = delete;
  ~SimUnitMaxValueOrigins();

  /// Where a value comes from; copies no series.
  /// \param place of the value; any indices
  /// \return the origin, which says "no data" where there is none, or no such place
  [[nodiscard]] MaxValueOrigin getOrigin(Place const& place) const;

  /// The series that a value comes from.
  /// \param place of the value; any indices
  /// \return a copy of the series; an empty one where there is none, or no such place
  [[nodiscard]] MaxValueSeries genGetSeries(Place const& place) const;

 private:
  class Sources;

  std::unique_ptr<Sources const> m_sources;
};

}  // namespace Kestrel
