#pragma once

#include <exception>

namespace Kestrel {

/// Only the host makes exceptions of this kind.
class KeException : public std::exception {
 public:
  ~KeException() override;

 protected:
  KeException();
};

}  // namespace Kestrel
