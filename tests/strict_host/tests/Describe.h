#pragma once

#include <sstream>
#include <string>

#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

namespace Kestrel {

/// All that a table holds but its unit's identifier, as text.
inline std::string describe(MaxValueGroupContainer const& table) {
  std::ostringstream out;
  out << "family " << static_cast<unsigned int>(table.dataType)
      << (table.isDefaultFamily ? "" : ", not default") << "\ntitles '" << table.title << "' '"
      << table.unitTitle << "'\n";
  if (!table.invalidValuesText.empty() || !table.invalidValuesNameAppendix.empty())
    out << "invalid '" << table.invalidValuesText << "' '" << table.invalidValuesNameAppendix << "'\n";
  for (auto const& name : table.elementNames) out << "element " << name << '\n';
  for (auto const& [name, isValid] : table.valuesAreValid)
    out << name << (isValid ? " is valid\n" : " is invalid\n");
  for (auto const& group : table.groups) {
    out << "section " << group.name << (group.isTeachingGroup ? ", teaching" : "")
        << (group.isForceGroup ? ", forces" : "") << "\n  limits";
    for (auto const type : group.limitTypes) out << ' ' << static_cast<unsigned int>(type);
    out << "\n  columns";
    for (auto const& name : group.valueNames) out << ' ' << name;
    out << '\n';
    for (auto const& subGroup : group.subGroups) {
      out << "  sub-group '" << subGroup.name << "'\n";
      for (auto const& item : subGroup.items) {
        out << "    " << item.name << ':';
        for (double const value : item.maxValues) out << ' ' << value;
        out << '\n';
      }
    }
  }
  return out.str();
}

}  // namespace Kestrel
