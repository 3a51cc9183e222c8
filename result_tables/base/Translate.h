#pragma once

#include <fmt/format.h>

#include <string>

#include "VantaService_Translator/Translator.h"

namespace Kestrel::ResultTables {

/// A text of the program itself in the language of the environment.
inline std::string tr(char const* text) { return Translator::translate("result-tables", text, nullptr, -1); }

/// The same with its places "{}" filled in order, whatever the order in which the translation has them
/// ("{1}").
template <typename... Values>
[[nodiscard]] std::string tr(char const* text, Values const&... values) {
  return fmt::vformat(tr(text), fmt::make_format_args(values...));
}

}  // namespace Kestrel::ResultTables
