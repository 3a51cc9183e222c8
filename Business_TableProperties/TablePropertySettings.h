#pragma once

#include <map>
#include <string>
#include <vector>

#include "Business_TableProperties/Export.h"

namespace Kestrel {

/// The vocabulary of the result tables' columns: for the key of a result quantity its four names in the
/// user's language and its unit.
///
/// The key "DescriptionEntry" gives the names of the five texts themselves, in English. The total tool force
/// has its translated business name as key; all other keys are the same in every language.
///
/// The catalogue is filled by the first lookup of the process and stays as it is until the library is
/// unloaded; a later change of the user's language does not reach it. The first lookup throws what the
/// translation throws, and what the standard containers throw (out of memory). The catalogue then keeps the
/// rows that it has by then, and is not filled again unless it has none.
///
/// Lookups may come from any thread. Each takes one process-wide mutex for a moment, the first one until the
/// catalogue is full; then it costs a search by key and a copy of the text. An unknown key gives an empty
/// text.
// Nobody makes or destroys one; the destructor is virtual for the sake of the binary interface.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class KESTREL_TABLEPROPERTIES_EXPORT TablePropertySettings {
 public:
  /// Copies nothing, as there is nothing in an object.
  /// \param other anything
  TablePropertySettings(TablePropertySettings const& other);
  /// Copies nothing.
  /// \param other anything
  /// \return this object
  TablePropertySettings& operator=(TablePropertySettings const& other);

  /// "Normal Force".
  /// \param key of a result quantity, as in `MaxValueGroup::valueNames`
  /// \return the text; an empty one for an unknown key
  [[nodiscard]] static std::string getDisplayName(std::string const& key);
  /// "Norm F".
  /// \param key of a result quantity, as in `MaxValueGroup::valueNames`
  /// \return the text; an empty one for an unknown key
  [[nodiscard]] static std::string getShortDisplayName(std::string const& key);
  /// The header of the table's column: "Max Normal Force".
  /// \param key of a result quantity, as in `MaxValueGroup::valueNames`
  /// \return the text; an empty one for an unknown key
  [[nodiscard]] static std::string getTableDisplayName(std::string const& key);
  /// The short header of the table's column: "Max Norm F".
  /// \param key of a result quantity, as in `MaxValueGroup::valueNames`
  /// \return the text; an empty one for an unknown key
  [[nodiscard]] static std::string getShortTableDisplayName(std::string const& key);
  /// "N" or "mm", in every language.
  /// \param key of a result quantity, as in `MaxValueGroup::valueNames`
  /// \return the text; an empty one for an unknown key
  [[nodiscard]] static std::string getUnitString(std::string const& key);

 private:
  friend struct TablePropertySettingsTestAccess;

  TablePropertySettings();
  virtual ~TablePropertySettings();

  /// The text of `key` in `column` (0 to 4, in the order of the lookups above; not checked), or an empty one.
  /// The reference is valid as long as the library is loaded.
  static std::string const& getProperty(std::string const& key, int column);

  /// The filled catalogue: five texts per key.
  static std::map<std::string, std::vector<std::string>> const& initMap();
};

}  // namespace Kestrel
