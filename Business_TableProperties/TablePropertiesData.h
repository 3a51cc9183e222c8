#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_TableProperties/Export.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "Business_TableProperties/TablePropertyLimitType.h"
#include "VantaService_Parameterization/Object.h"

namespace Kestrel {

class ArchiveAccess;
class PersistenceArchiver;

/// The limits of all simulation units of a document: kept in step with the list of units, looked up by unit
/// and kind.
///
/// Every limit is a child of the collection in the object tree, named "TablePropertyLimit", with a child id
/// that no other limit has. A new unit gets sixteen limits from a fixed default table.
///
/// Ownership: the collection shares its limits with everybody who looked them up. A collection that is
/// destroyed leaves such limits alive and without a parent.
///
/// Threads: a collection belongs to the thread that owns the object tree. Different collections may be used
/// from different threads at once.
///
/// Errors: the operations throw what the standard containers throw (out of memory), and what overrides of
/// `propagateTreeChanged` throw; nothing else is an error. Identifiers are not validated.
class KESTREL_TABLEPROPERTIES_EXPORT TablePropertiesData : public Object {
 public:
  /// No limits.
  TablePropertiesData();
  ~TablePropertiesData() override;

  /// The limit of a kind in a unit. Empty for a unit without limits and for a kind that it has no limit of:
  /// `NoLimit`, and the kinds without a default (`ClampingToolForce`, `ClampClosingForce`) unless a document
  /// held one. O(log n) in the number of units.
  /// \param id the unit
  /// \param type the kind
  /// \return the limit, shared with the collection, or null
  [[nodiscard]] std::shared_ptr<TablePropertyLimit> getLimit(SimulationUnitId const& id,
                                                             TablePropertyLimitType type) const;

  /// Brings the limits in step with the document's simulation units.
  ///
  /// Limits of units in `ids` are kept with their values, those of other units are dropped, new units get the
  /// defaults. Afterwards the kept units come first, ordered by identifier, then the new ones in the order of
  /// `ids`; in a collection without limits all units come in that order. Every kept limit leaves the tree and
  /// enters it again, with a new child id. A new identifier that occurs twice in `ids` gets two sets of
  /// limits.
  ///
  /// When it throws, the kept limits have their values, and the next call completes the work.
  ///
  /// Cost: n log n in units plus limits. REQUIRES: a tree report does not call this operation again.
  /// \param ids the document's units, in their order
  void updateLimits(std::vector<SimulationUnitId> const& ids);

  /// Fills `record` (a `BaseClassRegister`) with the entry under which the archive stores collections, and
  /// registers the class first if that has not happened yet.
  /// \param record not null
  static void serialization_register(void* record);
  /// Whether the class is registered with the archive, which happens when the library is loaded.
  static bool s_force_serialization_registration;

 private:
  friend class ArchiveAccess;
  friend struct TablePropertiesDataTestAccess;

  using LimitList = std::vector<std::shared_ptr<TablePropertyLimit>>;
  using LimitMap = std::map<SimulationUnitId, LimitList>;
  /// Kind, limit and unit of each default, in the order in which a unit's limits are created.
  using DefaultLimits = std::vector<std::tuple<TablePropertyLimitType, double, std::string>>;

  /// One set of the defaults as new limits of a unit.
  [[nodiscard]] static LimitList genLimits(DefaultLimits const& defaults, SimulationUnitId const& id);

  /// One more than the highest kind.
  static constexpr std::int32_t s_currentDataVersion = 25;

  [[nodiscard]] bool hasAnyLimits() const;
  /// Replaces all limits by the defaults of each identifier in order.
  void setupLimits(std::vector<SimulationUnitId> const& ids);
  /// Appends one set of defaults, whatever the unit has already; leaves the map as it is.
  void setupLimitsForSimUnit(SimulationUnitId const& id);
  /// Empties the map and fills it from the list. When memory runs out, the units whose limits stand first in
  /// the list are in the map, and at least those that had as many limits in it before.
  void setupLimitsAccessMap();
  /// `updateLimits` of a collection that has limits.
  void synchronizeLimits(std::vector<SimulationUnitId> const& ids);
  /// Brings limits of another data version up to the current one. From a lower version each unit that has
  /// limits gets the defaults that it lacks, kind by kind; from a higher one each limit is replaced by a full
  /// set of defaults for its unit.
  void extendLimits();
  /// Defaults for the kinds that the units of the map lack, kind by kind and by unit within a kind.
  [[nodiscard]] LimitList genMissingLimits() const;
  void replaceLimitsByDefaults();

  // Called by the archive through the class's registration. std::runtime_error "Parent not registered" before
  // anything is written or read, when the archive does not know the class to be an `Object`.

  /// Writes the `Object` part, the current data version and the limits in list order; a limit that the list
  /// holds twice is written once.
  void save(PersistenceArchiver& archive, unsigned int version) const;
  /// Reads what `save` wrote, whatever the program's version, and brings it up to the current data version.
  /// Limits of documents from before class version 500002 are discarded: the next `updateLimits` gives all
  /// units their defaults.
  void load(PersistenceArchiver& archive, unsigned int version);
  void loadLimits(PersistenceArchiver& archive);

  static bool s_isParentRegisteredForSave;
  static bool s_isParentRegisteredForLoad;

  /// Makes the limits children of the collection and appends them to the list.
  void addLimits(LimitList const& limits);

  /// Filled once for the process, under a lock; never changes afterwards and is read without it. Any thread.
  [[nodiscard]] static DefaultLimits const& initDefaultLimits();

  LimitList m_limits;  ///< in the order in which they were added
  /// The limits of each unit, in list order. Only `setupLimitsAccessMap` changes it: in between it may hold
  /// limits that the list has lost, which `synchronizeLimits` relies on.
  LimitMap m_limitsAccessMap;
  std::int32_t m_dataVersion = s_currentDataVersion;
};

}  // namespace Kestrel
