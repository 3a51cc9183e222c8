#include "VantaService_PersistenceArchiver/PointerMapContainer.h"

#include <algorithm>
#include <stdexcept>

namespace Kestrel {

PointerMapContainerBase::~PointerMapContainerBase() = default;

void PointerMapContainerBase::reserve(std::size_t count) {
  m_addresses.reserve(count);
  m_objects.reserve(count);
}

std::shared_ptr<void> const* PointerMapContainerBase::find(unsigned int address) const {
  if (m_addresses.empty() || m_addresses.back() < address) return nullptr;
  auto const found = std::lower_bound(m_addresses.begin(), m_addresses.end(), address);
  if (*found != address) return nullptr;
  return &m_objects[static_cast<std::size_t>(found - m_addresses.begin())];
}

void PointerMapContainerBase::insert(unsigned int address, std::shared_ptr<void> object) {
  if (!m_addresses.empty() && m_addresses.back() >= address)
    throw std::logic_error("the addresses of objects ascend in the order in which they are read");
  m_addresses.push_back(address);
  m_objects.push_back(std::move(object));
}

}  // namespace Kestrel
