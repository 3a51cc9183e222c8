#pragma once

#include <string>

namespace Kestrel {

/// The names that the result-variable layer shows for skins.
class SkinBaseNameUtilities {
 public:
  SkinBaseNameUtilities() = delete;

  /// The translated display name for an untranslated English one.
  static std::string getSkinDisplayName(std::string const& name);

  /// The translated short display name for an untranslated English one.
  static std::string getSkinShortDisplayName(std::string const& name);
};

}  // namespace Kestrel
