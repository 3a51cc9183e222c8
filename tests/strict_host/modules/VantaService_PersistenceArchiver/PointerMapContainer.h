#pragma once

#include <map>
#include <memory>

namespace Kestrel {

class PointerMapContainerBase {
 public:
  PointerMapContainerBase() = default;
  PointerMapContainerBase(PointerMapContainerBase const&) = delete;
  virtual ~PointerMapContainerBase();

  std::shared_ptr<void> const* find(unsigned int address);
  void insert(unsigned int address, std::shared_ptr<void> object);

 private:
  std::map<unsigned int, std::shared_ptr<void>> m_objects;
};

template <typename T>
class PointerMapContainer : public PointerMapContainerBase {};

}  // namespace Kestrel
