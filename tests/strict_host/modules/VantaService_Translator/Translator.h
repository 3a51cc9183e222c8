#pragma once

#include <string>

namespace Kestrel {

class Translator {
 public:
  static std::string translate(char const* context, char const* text, char const* comment, int count);
};

}  // namespace Kestrel
