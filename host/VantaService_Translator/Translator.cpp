#include "VantaService_Translator/Translator.h"

namespace Kestrel {

std::string Translator::translate(char const* /*context*/, char const* text, char const* /*comment*/,
                                  int /*count*/) {
  return text;
}

}  // namespace Kestrel
