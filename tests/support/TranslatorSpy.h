#pragma once

#include <compare>
#include <optional>
#include <string>

// Puts the program between the libraries and their translator, from the first static initialiser on: the
// loader prefers a function of the program to one of a library. For the programs that link it.

namespace Kestrel {

struct TranslatorCall {
  std::string context;
  std::string text;
  std::optional<std::string> comment;
  int count = 0;

  friend auto operator<=>(TranslatorCall const&, TranslatorCall const&) = default;
};

/// Defined by the test: called before each translation; what it throws comes out of `Translator::translate`.
void onTranslate(TranslatorCall const& call);

}  // namespace Kestrel
