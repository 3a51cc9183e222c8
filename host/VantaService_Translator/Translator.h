#pragma once

#include <string>

namespace Kestrel {

/// Translates the texts that a user sees into the language of the environment.
class Translator {
 public:
  Translator() = delete;

  /// The translation of `text`, or `text` itself where there is none.
  ///
  /// `context` is the name of the class that asks. `comment` tells apart texts that are the same in English;
  /// null is none. `count` chooses the plural form; a negative count is none. The result is UTF-8. Thread
  /// safe.
  static std::string translate(char const* context, char const* text, char const* comment, int count);
};

}  // namespace Kestrel
