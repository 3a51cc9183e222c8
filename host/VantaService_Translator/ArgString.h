#pragma once

#include <string>

namespace Kestrel {

/// A text whose placeholders "%1" are still open.
class ArgString {
 public:
  /// A text with its placeholders.
  explicit ArgString(std::string text);

  /// A new text in which every "%1" of this one is `argument`; "%1" inside `argument` stays as it is.
  [[nodiscard]] ArgString arg(std::string const& argument) const;

  /// The text as it stands, open placeholders included.
  operator std::string() const;  // NOLINT(google-explicit-constructor): the host converts implicitly

 private:
  std::string m_text;
};

}  // namespace Kestrel
