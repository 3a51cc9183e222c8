#pragma once

#include <string>
#include <utility>

namespace Kestrel {

class ArgString {
 public:
  explicit ArgString(std::string text) : m_text(std::move(text)) {}
  ArgString(ArgString const&) = delete;

  ArgString arg(std::string const& argument);
  operator std::string() { return m_text; }  // NOLINT(google-explicit-constructor)

 private:
  std::string m_text;
};

}  // namespace Kestrel
