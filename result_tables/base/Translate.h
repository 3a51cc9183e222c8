#pragma once

#include <string>

#include "VantaService_Translator/Translator.h"

namespace Kestrel::ResultTables {

/// A text of the program itself in the language of the environment.
inline std::string tr(char const* text) { return Translator::translate("result-tables", text, nullptr, -1); }

}  // namespace Kestrel::ResultTables
