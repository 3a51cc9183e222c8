#pragma once

#include <map>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertySettings.h"

namespace Kestrel {

struct TablePropertySettingsTestAccess {
  using Catalogue = std::map<std::string, std::vector<std::string>>;

  static Catalogue const& initMap() { return TablePropertySettings::initMap(); }

  static std::string const& getProperty(std::string const& key, int column) {
    return TablePropertySettings::getProperty(key, column);
  }

  /// Makes the catalogue what it is when the library has been loaded: empty, so that the next lookup is a
  /// first one. Not while other threads look up.
  static void forget() { const_cast<Catalogue&>(initMap()).clear(); }

  static TablePropertySettings* create() { return new TablePropertySettings; }
  static void destroy(TablePropertySettings const* settings) { delete settings; }
};

}  // namespace Kestrel
