#include "VantaService_PersistenceArchiver/StreamposMap.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstdint>
#include <utility>

namespace Kestrel {

// Pages are spread over the table by a multiplication; within its page an object keeps its place in units
// that few objects are smaller than. Slots are probed one after the other.
std::size_t StreamposMap::slotOf(void const* object) const {
  constexpr std::size_t pageSize = 4096;
  constexpr std::size_t unitSize = 64;
  auto const place = reinterpret_cast<std::uintptr_t>(object);
  std::uint64_t const page = place / pageSize * 0x9E3779B97F4A7C15U;
  auto const bits = std::countr_zero(m_slots.size());
  std::size_t const mask = m_slots.size() - 1;
  std::size_t slot = (static_cast<std::size_t>(page >> (64 - bits)) + place % pageSize / unitSize) & mask;
  while (m_slots[slot] != 0 && m_entries[m_slots[slot] - 1].object.get() != object) slot = (slot + 1) & mask;
  return slot;
}

unsigned int StreamposMap::findOrInsert(std::shared_ptr<void const> object, unsigned int address) {
  assert(address != 0);
  if (2 * m_entries.size() >= m_slots.size()) grow();
  auto& slot = m_slots[slotOf(object.get())];
  if (slot != 0) return m_entries[slot - 1].address;
  m_entries.push_back({std::move(object), address});
  slot = static_cast<std::uint32_t>(m_entries.size());
  return 0;
}

void StreamposMap::grow() {
  constexpr std::size_t smallest = 64;
  m_slots.assign(std::max(smallest, 2 * m_slots.size()), 0);
  for (std::uint32_t i = 0; i < m_entries.size(); ++i) m_slots[slotOf(m_entries[i].object.get())] = i + 1;
}

}  // namespace Kestrel
