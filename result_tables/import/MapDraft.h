#pragma once

#include <string>

#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

/// A map (docs/importing.md) that imports the histories as it stands and is made to be edited. Units, kinds
/// of tools and what feeds their columns are guessed from names; each history that feeds no column is a
/// series under its own name, which results files keep and no table shows. Identifiers are derived from
/// `input`, the name of the input without its folder, and the names of the units, so that they are the same
/// every time.
///
/// Throws `Error` where no name tells two histories apart.
[[nodiscard]] std::string draftImportMap(std::string const& input, Histories const& histories);

}  // namespace Kestrel::ResultTables
