#pragma once

#include <memory>

#include "Business_TableProperties/TablePropertyLimit.h"

namespace Kestrel {

struct TablePropertyLimitTestAccess {
  /// A limit as the archive makes it.
  static std::shared_ptr<TablePropertyLimit> genDefault() {
    return std::shared_ptr<TablePropertyLimit>(new TablePropertyLimit());
  }
};

}  // namespace Kestrel
