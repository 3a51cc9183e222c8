#pragma once

#include <string>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_IncSimulationPrimitives/LimitAccessInterface.h"
#include "Business_TableProperties/Export.h"
#include "Business_TableProperties/TablePropertyLimitType.h"
#include "VantaService_Parameterization/Object.h"

namespace Kestrel {

class ArchiveAccess;
class PersistenceArchiver;

/// The user's threshold for one kind of result value in one simulation unit.
///
/// The limit and the max limit are one value under two names. Nothing is validated: any double is a limit,
/// negative, infinite and NaN included, in the unit that `getUnitString` names. Neither the display name nor
/// the unit text is translated.
///
/// Ownership: limits are created with std::make_shared and belong to the `TablePropertiesData` whose children
/// they are; one that the collection dropped lives as long as somebody holds it.
///
/// Threads: a limit belongs to the thread that owns the object tree; nothing here locks.
///
/// Errors: none but memory exhaustion while strings are copied, and what a slot throws while `setLimit` calls
/// it.
class KESTREL_TABLEPROPERTIES_EXPORT TablePropertyLimit : public LimitAccessInterface, public Object {
 public:
  /// A limit without a display name.
  /// \param type the kind of values that it is for
  /// \param id the simulation unit
  /// \param limit the value, any double
  /// \param unit of the value, "N" for example
  TablePropertyLimit(TablePropertyLimitType type, SimulationUnitId const& id, double limit,
                     std::string const& unit);
  ~TablePropertyLimit() override;

  /// \return the value that was set last, in the unit that `getUnitString` names
  [[nodiscard]] double getLimit() const override;
  /// Stores the value, then calls the slots of the changed signal: on every call, also with the value that
  /// the limit has already. What a slot throws reaches the caller, with the value stored.
  /// \param limit any double
  void setLimit(double limit) override;
  /// \return a copy of the display name
  [[nodiscard]] std::string getLimitDisplayName() const override;
  /// \return a copy of the unit text, "N" or "mm" for the defaults
  [[nodiscard]] std::string getUnitString() const override;
  /// Calls `slot` after every `setLimit` and `setMaxLimit` until the returned connection is disconnected or
  /// the limit destroyed. A slot may disconnect itself, set the limit again or release the limit.
  /// \param slot called on the thread that sets the limit
  /// \return the connection; who drops it stays connected
  Signals::Connection connectToSigLimitsChanged(Signals::Slot<void()> const& slot) override;

  /// \return `getLimit`
  [[nodiscard]] double getMaxLimit() const;
  /// As `setLimit`, in a class derived from this one too: it does not call an override of that.
  /// \param limit any double
  void setMaxLimit(double limit);
  /// \return the name shown for the limit; empty until somebody sets it, and not stored in documents
  [[nodiscard]] std::string const& getMaxLimitDisplayName() const;
  /// Sets the display name and tells nobody.
  /// \param name what is shown from now on
  void setMaxDisplayName(std::string const& name);
  /// \return the simulation unit that the limit is for
  [[nodiscard]] SimulationUnitId const& getSimUnitID() const;
  /// \return the kind of values that the limit is for
  [[nodiscard]] TablePropertyLimitType getType() const;

  /// Fills `record` (a `BaseClassRegister`) with the entry under which the archive stores limits, and
  /// registers the class first if that has not happened yet.
  /// \param record not null
  static void serialization_register(void* record);
  /// Whether the class is registered with the archive, which happens when the library is loaded.
  static bool s_force_serialization_registration;

 private:
  friend class ArchiveAccess;
  friend struct TablePropertyLimitTestAccess;

  /// What the archive fills: type `NoLimit`, the nil unit, 0.0 and empty strings.
  TablePropertyLimit();

  // Called by the archive through the class's registration. std::runtime_error "Parent not registered" before
  // anything is written or read, when the archive does not know the class to be an `Object`.

  /// Writes the `Object` part, the kind, the unit, the limit and the unit text; not the display name.
  void save(PersistenceArchiver& archive, unsigned int version) const;
  /// Reads what `save` wrote. Documents from before class version 500002 have no unit text.
  void load(PersistenceArchiver& archive, unsigned int version);

  static bool s_isParentRegisteredForSave;
  static bool s_isParentRegisteredForLoad;

  TablePropertyLimitType m_type = TablePropertyLimitType::NoLimit;
  SimulationUnitId m_simUnitID;
  double m_limit = 0.0;  ///< the limit and the max limit
  std::string m_maxLimitDisplayName;
  std::string m_unitString;
};

}  // namespace Kestrel
