#pragma once

#include <string>

#include "VantaService_Parameterization/ArchiveListing.h"

namespace Kestrel::ResultTables {

/// A document record by record, for people who look for the reason of a trouble; never translated. A line has
/// the record's offset, its class and version ("-" without a class), indented by depth, and its fields, each
/// with its offset behind an "@": numbers, reals (with a point or an exponent), "texts", `null`, `->` and the
/// offset of the record that is referred to, bytes in hexadecimal, `unread:` before those that no class read.
[[nodiscard]] std::string renderArchive(ArchiveListing const& listing);

}  // namespace Kestrel::ResultTables
