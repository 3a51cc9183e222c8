#pragma once

#include "VantaService_Translator/ArgString.h"

namespace Kestrel {

class TranslatorArg {
 public:
  static ArgString translate(char const* context, char const* text, char const* comment, int count);
};

}  // namespace Kestrel
