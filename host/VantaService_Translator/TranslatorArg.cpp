#include "VantaService_Translator/TranslatorArg.h"

#include "VantaService_Translator/Translator.h"

namespace Kestrel {

ArgString TranslatorArg::translate(char const* context, char const* text, char const* comment, int count) {
  return ArgString(Translator::translate(context, text, comment, count));
}

}  // namespace Kestrel
