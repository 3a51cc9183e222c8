#pragma once

#include <string>

namespace Kestrel {

/// The names under which the application files and shows the forces of tools.
class ToolForceBusinessName {
 public:
  ToolForceBusinessName() = delete;

  /// The translated business name of a force's internal name; a name that is not known is its own.
  ///
  /// The reference is valid as long as the process, and every call with the same name returns the same text:
  /// the language is the one of the first call. Thread safe.
  static std::string const& getTranslated(std::string const& name);
};

}  // namespace Kestrel
