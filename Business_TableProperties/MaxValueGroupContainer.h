#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_TableProperties/Export.h"
#include "Business_TableProperties/TablePropertyLimitType.h"

namespace Kestrel {

/// One row of a table section.
struct MaxValueItem {
  std::string name;  ///< display name of the element
  /// The signed value of largest magnitude per column, in column order and in the unit of the column's
  /// quantity; 0.0 where the element has no such quantity.
  std::vector<double> maxValues;
};

/// Rows of a section that belong together.
struct MaxValueSubGroup {
  std::string name;                 ///< display name of the grouping; empty where the section is not grouped
  std::vector<MaxValueItem> items;  ///< the rows, in display order
};

/// One section of a table.
struct MaxValueGroup {
  std::string name;              ///< translated section title
  bool isTeachingGroup = false;  ///< whether the columns are offsets of the teaching
  bool isForceGroup = false;     ///< whether the columns are forces
  /// The limit that applies to each column, in column order. May be longer than `valueNames`.
  std::vector<TablePropertyLimitType> limitTypes;
  std::vector<std::string> valueNames;      ///< the columns: result-quantity keys, in column order
  std::vector<MaxValueSubGroup> subGroups;  ///< the rows, in display order
};

/// The data behind the result table of one family of elements of one simulation unit.
///
/// A plain record without invariants: whoever holds it may change it. Copies are deep.
struct KESTREL_TABLEPROPERTIES_EXPORT MaxValueGroupContainer {
  /// The families of elements.
  enum class DataType : std::uint32_t {
    Clamps = 0,
    ClampingTools = 1,
    JoiningTongs = 2,
    Pilots = 3,
    Bolts = 4,
    LineJoiningTools = 5,
    SuctionZones = 6,
    Rollers = 7,
    Steels = 8,
    HemmingBed = 9,
    SpotWelds = 10,
    LineWelds = 11,
  };

  /// An empty table.
  /// \param type the family, also a number that is none
  /// \param unitId the unit that the values will come from
  MaxValueGroupContainer(DataType type, SimulationUnitId const& unitId);
  ~MaxValueGroupContainer();

  DataType dataType;                  ///< the family as it was asked for
  SimulationUnitId simulationUnitId;  ///< the unit that the values come from
  std::vector<MaxValueGroup> groups;  ///< the sections, in display order
  /// String identifiers of the elements in row order; only the joining families write them.
  std::vector<std::string> elementNames;
  /// Whether the values of an item can be trusted, by item name; only families that can tell write it.
  std::map<std::string, bool> valuesAreValid;
  std::string invalidValuesText;          ///< what invalid values mean, translated
  std::string invalidValuesNameAppendix;  ///< what to append to the name of an item with invalid values
  std::string unitTitle;                  ///< the unit's name and the title, without a separator
  std::string title;                      ///< translated title of the family
  bool isDefaultFamily = true;            ///< whether the table is among those shown first
};

}  // namespace Kestrel
