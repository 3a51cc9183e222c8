#include "VantaService_Translator/Translator.h"

#include "StrictHost/CallLog.h"
#include "VantaService_Translator/TranslatorArg.h"

namespace Kestrel {

// Every text is translated by putting it into brackets, so that what was not translated shows.
std::string Translator::translate(char const* context, char const* text, char const* comment, int count) {
  auto request = std::string("translate ") + context + ": " + text;
  if (comment != nullptr) request += std::string(" (") + comment + ')';
  if (count != -1) request += ", count " + std::to_string(count);
  StrictHost::callLog().push_back(request);
  return '[' + std::string(text) + ']';
}

ArgString TranslatorArg::translate(char const* context, char const* text, char const* comment, int count) {
  return ArgString(Translator::translate(context, text, comment, count));
}

ArgString ArgString::arg(std::string const& argument) {
  std::string text = m_text;
  for (auto place = text.find("%1"); place != std::string::npos;
       place = text.find("%1", place + argument.size()))
    text.replace(place, 2, argument);
  return ArgString(text);
}

}  // namespace Kestrel
