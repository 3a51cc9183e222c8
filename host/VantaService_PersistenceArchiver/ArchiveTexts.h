#pragma once

#include <initializer_list>
#include <string>

namespace Kestrel {

/// Why a document cannot be read, in the language of the environment: the translation of `text` with the
/// values in the places "%1", "%2".
[[nodiscard, gnu::visibility("hidden")]] std::string archiveText(
    char const* text, std::initializer_list<std::string> values = {});

/// The same with numbers.
template <typename... Numbers>
[[nodiscard, gnu::visibility("hidden")]] std::string archiveText(char const* text, Numbers... numbers) {
  return archiveText(text, {std::to_string(numbers)...});
}

}  // namespace Kestrel
