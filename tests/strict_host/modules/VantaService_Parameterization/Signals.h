#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace Kestrel {
class Object;
}

namespace Kestrel::Signals {

template <typename Signature>
class Slot;

/// What a signal calls; made from any callable.
template <>
class Slot<void()> {
 public:
  template <typename Callable>
  Slot(Callable callable)  // NOLINT(google-explicit-constructor)
      : m_callable(std::make_shared<std::function<void()>>(std::move(callable))) {}

 private:
  friend class Connection;

  std::shared_ptr<std::function<void()>> m_callable;
};

class Connection {
 public:
  explicit Connection(Slot<void()> const& slot) : m_callable(slot.m_callable) {}

  void disconnect() { *m_callable = nullptr; }

 private:
  friend class Kestrel::Object;

  void call() const {
    if (*m_callable) (*m_callable)();
  }

  std::shared_ptr<std::function<void()>> m_callable;
};

}  // namespace Kestrel::Signals
