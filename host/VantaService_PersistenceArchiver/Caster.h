#pragma once

namespace Kestrel {

/// Converts pointers between a class and one of its bases, both given without their types. Null stays null.
///
/// A caster that is destroyed is withdrawn from the registry, so that a library that is unloaded leaves none
/// behind. Threads: the conversions may be called from any number at once.
class Caster {
 public:
  Caster() = default;
  Caster(Caster const&) = delete;
  Caster& operator=(Caster const&) = delete;
  virtual ~Caster();

  /// The base part of an object of the derived class.
  [[nodiscard]] virtual void* upCast(void* derived) const = 0;
  /// The object of the derived class that a base part belongs to; null when it is of another class.
  [[nodiscard]] virtual void* downCast(void* base) const = 0;
};

/// The caster of two classes that are known to the compiler.
///
/// - `isPolymorphic`: 1 converts down by a dynamic cast, 0 by a static one, which needs to be told the truth.
/// - `isVirtualBase`: 1 when `Base` is a virtual base of `Derived`.
template <typename Base, typename Derived, int isPolymorphic, int isVirtualBase>
class CasterAccess final : public Caster {
  static_assert(isPolymorphic == 1 || isVirtualBase == 0,
                "a virtual base can be left by a dynamic cast only");

 public:
  [[nodiscard]] void* upCast(void* derived) const override {
    return static_cast<Base*>(static_cast<Derived*>(derived));
  }

  [[nodiscard]] void* downCast(void* base) const override {
    if constexpr (isPolymorphic == 1)
      return dynamic_cast<Derived*>(static_cast<Base*>(base));
    else
      return static_cast<Derived*>(static_cast<Base*>(base));
  }
};

}  // namespace Kestrel
