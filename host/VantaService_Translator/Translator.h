#pragma once

#include <string>

namespace Kestrel {

/// Translates the texts that a user sees into the language of the environment.
///
/// The translations come from compiled gettext catalogues, `<directory>/<language>/LC_MESSAGES/kestrel.mo`.
/// The languages are those of `LANGUAGE`, `LC_ALL`, `LC_MESSAGES` and `LANG`, by gettext's rules; the locales
/// need not be installed, and the program's locale plays no part. The directory is the one that is installed
/// with this library (or built beside it), or the one that the variable `KESTREL_LOCALEDIR` names. Language
/// and catalogues are chosen once, when the library is loaded; a catalogue that is missing, cannot be read or
/// is damaged counts as empty.
class Translator {
 public:
  Translator() = delete;

  /// The translation of `text`, UTF-8, or `text` itself where there is none.
  ///
  /// `context` is the name of the class that asks. `comment` tells apart texts that are the same in English;
  /// null is none. `count` chooses the plural form; a negative count is none. In a catalogue the message's
  /// context (msgctxt) is "context|comment", or "context" where there is no comment; a message that has a
  /// comment but no entry of its own takes the entry without comment. The first language that has an entry
  /// counts; an empty entry is none.
  ///
  /// Thread safe, also while libraries are being loaded. Costs a few look-ups in a hash table.
  static std::string translate(char const* context, char const* text, char const* comment, int count);
};

}  // namespace Kestrel
