#pragma once

#include <memory>

#include "Business_TableProperties/TablePropertyLimit.h"

namespace Kestrel {

struct TablePropertyLimitTestAccess {
  /// A limit as the archive makes it.
  static std::shared_ptr<TablePropertyLimit> genDefault() {
    return std::shared_ptr<TablePropertyLimit>(new TablePropertyLimit());
  }
  static bool& isParentRegisteredForSave() { return TablePropertyLimit::s_isParentRegisteredForSave; }
  static bool& isParentRegisteredForLoad() { return TablePropertyLimit::s_isParentRegisteredForLoad; }
};

}  // namespace Kestrel
