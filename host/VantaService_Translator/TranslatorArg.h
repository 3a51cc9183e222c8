#pragma once

#include "VantaService_Translator/ArgString.h"

namespace Kestrel {

/// Translates texts with placeholders; the translator sees the placeholders, not what replaces them.
class TranslatorArg {
 public:
  TranslatorArg() = delete;

  /// As `Translator::translate`, with the placeholders of the translation still open.
  static ArgString translate(char const* context, char const* text, char const* comment, int count);
};

}  // namespace Kestrel
