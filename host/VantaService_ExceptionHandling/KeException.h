#pragma once

#include <exception>
#include <string>

namespace Kestrel {

/// Base of the exceptions that the host's own operations throw; carries the message as given.
class KeException : public std::exception {
 public:
  /// An exception with a message for people.
  explicit KeException(std::string message);
  ~KeException() override;

  /// The message; valid as long as the exception.
  [[nodiscard]] char const* what() const noexcept override;

 private:
  std::string m_message;
};

}  // namespace Kestrel
