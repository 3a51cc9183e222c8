#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/Export.h"
#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel {

struct FamilyDefinition;
struct NaturalStringCompare;
struct SectionDefinition;

/// Turns the stored results of one simulation unit into the data behind its result tables: for every element
/// of one family and every result quantity of that family, the value of largest magnitude over the whole
/// series.
///
/// The value of largest magnitude of a series keeps its sign; of values of equal magnitude the first one
/// counts; a NaN never counts, and a series without any other value than NaN and zeros, or without values,
/// gives 0.0. All stored steps count, not only the visible ones.
///
/// Lifetime: the unit must outlive the provider and all copies of it. The result may go at any time: the
/// provider holds it weakly. Clamps, bolts, pilots and forming tools do not need it; without it the suction
/// zones come without validity, and the joining families, whose elements the visible steps name, without
/// sections.
///
/// Threads: a provider, its copies and the unit are used from one thread at a time.
///
/// Errors: the operations throw what the standard containers and the host throw; nothing else is an error. A
/// family without elements, or a number that is no family, gives a container without sections. What the host
/// owes and does not give (a step, a record, a series, the series of a tool) is passed over.
///
/// Cost: a request passes once over the series of the family's elements and, where the family's records lie
/// in the steps, once over the visible steps. Nothing is kept between requests.
class KESTREL_TABLEPROPERTIES_EXPORT SimUnitMaxValuesProvider {
 public:
  /// Elements of the tables' sub-groups: (display name, string identifiers of its tools), in display order.
  using ToolGrouping = std::vector<std::pair<std::string, std::vector<std::string>>>;

  /// Translated once, when the library is loaded: what the joining families append to the name of a failed
  /// join. It begins with a blank.
  static std::string const s_invalidValues_elementNameAppendix;

  /// A provider for a unit and its result; reads nothing yet.
  /// \param simulationUnit must outlive the provider, which keeps its address
  /// \param simulationResult may go at any time; the provider holds it weakly
  SimUnitMaxValuesProvider(SimulationUnit const& simulationUnit,
                           std::weak_ptr<SimulationResult> simulationResult);
  /// A provider of the same unit and result.
  /// \param other what is copied
  SimUnitMaxValuesProvider(SimUnitMaxValuesProvider const& other);
  SimUnitMaxValuesProvider& operator=(SimUnitMaxValuesProvider const&) = delete;
  ~SimUnitMaxValuesProvider();

  /// The table of one family. Clamps and bolts come without their teaching section; the tool families
  /// (clamping tools, rollers, steels, hemming bed) and unknown numbers come empty, with `dataType` and
  /// `simulationUnitId` set.
  /// \param dataType the family
  /// \return never null; each call builds a new container
  [[nodiscard]] std::shared_ptr<MaxValueGroupContainer> genGetMaxValuesCollection(
      MaxValueGroupContainer::DataType dataType) const;

  /// The table of the bolts, when `dataType` is `Bolts`, and of the clamps for every other value, which the
  /// container nevertheless carries.
  /// \param dataType the family
  /// \param withTeaching whether the teaching offsets are the third section
  /// \return never null; each call builds a new container
  [[nodiscard]] std::shared_ptr<MaxValueGroupContainer> genGetClampMaxValuesCollection(
      MaxValueGroupContainer::DataType dataType, bool withTeaching) const;

  /// The table of a tool family: one sub-group per entry of `grouping`, with one row per tool that it lists,
  /// in the order given, whatever the kind of the tool. Comes empty when the unit has no forming tools, and
  /// with rows without columns when `dataType` is no tool family.
  /// \param grouping the sub-groups, in display order
  /// \param dataType the family
  /// \return never null; each call builds a new container
  [[nodiscard]] std::shared_ptr<MaxValueGroupContainer> genGetToolMaxValuesCollection(
      ToolGrouping const& grouping, MaxValueGroupContainer::DataType dataType) const;

 private:
  friend struct SimUnitMaxValuesProviderTestAccess;

  /// Empty when the result is gone.
  [[nodiscard]] std::shared_ptr<SimulationResult> getSimulationResult() const;

  /// Maps each name to its position. Of a name that occurs more than once the last position counts.
  [[nodiscard]] std::map<std::string, unsigned int> createValueNameToColumnIndexMap(
      std::vector<std::string> const& valueNames) const;

  /// The value of largest magnitude, as the class describes it. One pass, nothing is copied.
  [[nodiscard]] double computeMaxValue(StepValues<double>& values) const;

  /// Appends to `group` one unnamed sub-group with one item per tool: named `itemNames[i]`, with the maxima
  /// of the tool `itemIds[i]` in the columns of the map. Series that are no column are passed over; of series
  /// of one name the last counts. Does nothing when the two lists differ in length.
  void assembleGroup(std::vector<std::string> const& itemIds, std::vector<std::string> const& itemNames,
                     std::map<std::string, unsigned int> const& valueNameToColumnIndex,
                     MaxValueGroup& group) const;

  /// Leaves `container` as it is when the unit has no clamps (no bolts).
  void assembleClampGroupContainer(MaxValueGroupContainer& container,
                                   MaxValueGroupContainer::DataType dataType, bool withTeaching) const;

  /// Leaves `container` as it is when the unit has no pilot tool; of several the first counts.
  void assemblePilotGroupContainer(MaxValueGroupContainer& container) const;

  /// Splits the series of the pilot tool, each named by quantity, underscore and pilot, into one row per
  /// pilot, in the order in which they are met column by column. Series of `boltIds` are passed over; of
  /// series of one quantity and pilot the last counts.
  void assemblePilotsGroup(std::string const& pilotToolId,
                           std::map<std::string, unsigned int> const& valueNameToColumnIndex,
                           MaxValueGroup& group, std::vector<std::string> const& boltIds) const;

  /// Leaves `container` as it is when the unit has no forming tools. The unit's title is its name alone, the
  /// values of the hemming bed are absolute values.
  void assembleToolContainer(MaxValueGroupContainer& container, ToolGrouping const& grouping,
                             MaxValueGroupContainer::DataType dataType) const;

  /// Appends one named sub-group per entry of `grouping`, with one item per tool that it lists, named by the
  /// tool's identifier; a tool that the unit does not know has a row of zeros. `itemIds` says how many
  /// sub-groups to make room for; does nothing when the two lists differ in length.
  void assembleGroupWithGrouping(std::vector<std::string> const& itemIds,
                                 std::vector<std::string> const& itemNames,
                                 std::map<std::string, unsigned int> const& valueNameToColumnIndex,
                                 ToolGrouping const& grouping, MaxValueGroup& group) const;

  /// Leaves `container` as it is when the unit has no suction zones.
  void assembleSuctionZoneContainer(MaxValueGroupContainer& container) const;

  /// Whether each suction zone was active in at least one visible step, by presentation name. Zones that no
  /// visible step has get no entry; zones that share a name share the entry.
  [[nodiscard]] std::map<std::string, bool> getSuctionZoneValuesAreValid() const;

  /// The records of each tong, by string identifier, from the visible steps that have it in ascending order.
  using JoiningTongMap = std::map<std::string, std::vector<std::shared_ptr<EvalJoiningTong>>>;

  /// Leaves `container` as it is when the unit has no tongs, and without sections when no visible step has
  /// any. The display names come from the first visible step with tongs; a tong that it lacks shows its
  /// string identifier.
  void assembleJoiningTongGroupContainer(MaxValueGroupContainer& container) const;

  /// Replaces the content of `tongs`.
  void getAllEvalJoiningTongs(JoiningTongMap& tongs) const;

  /// Whether the tongs `stringIDs` joined, by presentation name, as of the last visible step that has the
  /// tong. Tongs that no visible step has get no entry; of tongs that share a name the last one counts.
  [[nodiscard]] std::map<std::string, bool> getJoiningTongValuesAreValid(
      std::vector<std::string> const& stringIDs) const;

  /// The records of each spot weld, by string identifier, from the visible steps that have it in ascending
  /// order.
  using PointJoinMap = std::map<std::string, std::vector<std::shared_ptr<SimulationBodyJoin>>>;

  /// Leaves `container` as it is when no visible step has any of the unit's spot welds; those that none has
  /// are left out. A weld is named by its first visible record.
  void assembleSpotWeldGroupContainer(MaxValueGroupContainer& container) const;

  /// Replaces the content of `joins`.
  void getAllPointJoins(PointJoinMap& joins) const;

  /// As `getJoiningTongValuesAreValid`, for spot welds and their display names.
  [[nodiscard]] std::map<std::string, bool> getPointJoinValuesAreValid(
      std::vector<std::string> const& stringIDs) const;

  /// The records of each line join, by display name in natural order, from the visible steps that have it in
  /// ascending order. Joins of one display name are one join here.
  using LineJoinMap =
      std::map<std::string, std::vector<std::shared_ptr<SimulationBodyLineJoin>>, NaturalStringCompare>;

  /// Both leave `container` as it is when there are no line joins in the visible steps (none that are defined
  /// in the unit).
  void assembleLineWeldGroupContainer(MaxValueGroupContainer& container) const;
  void assembleLineJoiningToolGroupContainer(MaxValueGroupContainer& container) const;

  /// Appends to `group` one unnamed sub-group with one item per line join, named by the key of the map. The
  /// value of a column is the one of largest magnitude among the range values of all the join's skins of that
  /// name; records without such a skin of numbers, or without both range values, are passed over.
  void assembleLineWeldGroup(std::map<std::string, unsigned int> const& valueNameToColumnIndex,
                             LineJoinMap const& lineJoins, MaxValueGroup& group) const;

  /// Both replace the content of `lineJoins`; the latter keeps to the joins that are defined in the unit.
  void getAllLineJoins(LineJoinMap& lineJoins) const;
  void getLineJoinsDefinedInCurrentSimUnit(LineJoinMap& lineJoins) const;

  /// The string identifiers of the first records, in the order of the map.
  [[nodiscard]] std::vector<std::string> genGetLineJoinsStringIDs(LineJoinMap const& lineJoins) const;

  /// As `getJoiningTongValuesAreValid`, by the display names of the last records.
  [[nodiscard]] std::map<std::string, bool> getLineJoinValuesAreValid(LineJoinMap const& lineJoins) const;

  /// False for the states of failed joins; true for all others, those that the solver may add included.
  [[nodiscard]] bool genGetJoinValueIsValid(BodyJoinInterface::JoinState state) const;

  class RowMaker;

  /// The value of one column of a line join, 0.0 where no record has it.
  [[nodiscard]] double computeMaxValueOfSkins(
      std::vector<std::shared_ptr<SimulationBodyLineJoin>> const& records, SkinKey const& key) const;

  /// What the two tables of line joins have in common, which is all but the selection of the joins.
  void assembleLineJoinContainer(MaxValueGroupContainer& container, FamilyDefinition const& family,
                                 LineJoinMap const& lineJoins) const;

  /// Appends the section that `definition` describes, with the rows that `assembleGroup` makes.
  void appendSection(MaxValueGroupContainer& container, SectionDefinition const& definition,
                     std::vector<std::string> const& itemIds,
                     std::vector<std::string> const& itemNames) const;

  /// The same for several sections of the same tools, of which each is visited once for all sections.
  void appendSections(MaxValueGroupContainer& container, std::vector<SectionDefinition> const& definitions,
                      std::vector<std::string> const& itemIds,
                      std::vector<std::string> const& itemNames) const;

  std::function<bool(double, double)> m_compare;  ///< whether the second value takes the place of the first
  SimulationUnit const* m_simulationUnit;
  std::weak_ptr<SimulationResult> m_simulationResult;
};

}  // namespace Kestrel
