#pragma once

namespace Kestrel {

class Caster {
 public:
  Caster() = default;
  Caster(Caster const&) = delete;
  virtual ~Caster();

  virtual void* upCast(void* derived) = 0;
  virtual void* downCast(void* base) = 0;
};

template <typename Base, typename Derived, int isPolymorphic, int isVirtualBase>
class CasterAccess : public Caster {
 public:
  void* upCast(void* derived) override { return static_cast<Base*>(static_cast<Derived*>(derived)); }
  void* downCast(void* base) override { return dynamic_cast<Derived*>(static_cast<Base*>(base)); }
};

}  // namespace Kestrel
