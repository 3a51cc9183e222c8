#pragma once

#include <dlfcn.h>

#include <compare>
#include <optional>
#include <string>

#include "VantaService_Translator/Translator.h"

// Puts the program between the libraries and their translator, from the first static initialiser on: the
// loader prefers a function of the program to one of a library. To be included by one source of a program.

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

[[gnu::visibility("default")]] std::string Translator::translate(char const* context, char const* text,
                                                                 char const* comment, int count) {
  using Translate = std::string (*)(char const*, char const*, char const*, int);
  static auto const translateInLibrary =
      reinterpret_cast<Translate>(::dlsym(RTLD_NEXT, "_ZN7Kestrel10Translator9translateB5cxx11EPKcS2_S2_i"));
  onTranslate({context, text, comment ? std::optional<std::string>(comment) : std::nullopt, count});
  return translateInLibrary(context, text, comment, count);
}

}  // namespace Kestrel
