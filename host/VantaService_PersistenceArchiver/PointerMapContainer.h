#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace Kestrel {

/// The objects of one class that an archive has read, by the address of their first record.
///
/// A document is read from its beginning to its end, so that addresses come in ascending order: the table is
/// two flat arrays in that order. The objects are shared; the table keeps them alive until the archive is
/// destroyed.
class PointerMapContainerBase {
 public:
  PointerMapContainerBase() = default;
  PointerMapContainerBase(PointerMapContainerBase const&) = delete;
  PointerMapContainerBase& operator=(PointerMapContainerBase const&) = delete;
  virtual ~PointerMapContainerBase();

  /// Makes room for `count` objects in all.
  void reserve(std::size_t count);
  /// Number of objects.
  [[nodiscard]] std::size_t size() const { return m_addresses.size(); }

  /// The object whose first record has the address, of the class itself and without its type; null when there
  /// is none. Constant for an address behind all others, O(log n) else.
  [[nodiscard]] std::shared_ptr<void> const* find(unsigned int address) const;

  /// Adds an object. Throws std::logic_error unless the address is greater than all before. Amortised O(1).
  void insert(unsigned int address, std::shared_ptr<void> object);

 private:
  std::vector<unsigned int> m_addresses;         ///< ascending
  std::vector<std::shared_ptr<void>> m_objects;  ///< at the index of their address
};

/// The table of the class `T`.
template <typename T>
class PointerMapContainer final : public PointerMapContainerBase {
 public:
  /// The object with its type; empty when there is none.
  [[nodiscard]] std::shared_ptr<T> get(unsigned int address) const {
    auto const* const object = find(address);
    return object != nullptr ? std::static_pointer_cast<T>(*object) : nullptr;
  }
};

}  // namespace Kestrel
