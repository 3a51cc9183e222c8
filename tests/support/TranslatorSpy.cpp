#include "support/TranslatorSpy.h"

#include <dlfcn.h>

#include "VantaService_Translator/Translator.h"

namespace Kestrel {

[[gnu::visibility("default")]] std::string Translator::translate(char const* context, char const* text,
                                                                 char const* comment, int count) {
  using Translate = std::string (*)(char const*, char const*, char const*, int);
  static auto const translateInLibrary =
      reinterpret_cast<Translate>(::dlsym(RTLD_NEXT, "_ZN7Kestrel10Translator9translateB5cxx11EPKcS2_S2_i"));
  onTranslate({context, text, comment ? std::optional<std::string>(comment) : std::nullopt, count});
  return translateInLibrary(context, text, comment, count);
}

}  // namespace Kestrel
