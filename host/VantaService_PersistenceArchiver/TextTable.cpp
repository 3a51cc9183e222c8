#include "VantaService_PersistenceArchiver/TextTable.h"

#include <xxhash.h>

#include <algorithm>

namespace Kestrel {

// Objects that are written one after the other have most of their texts in common. benchmarks/archive: saving
// 10,000 units takes 20 ms, up to 1.2 ms more without the recent ones (and 11 % more instructions).
std::uint32_t TextTable::add(std::string_view text) {
  if (!m_entries.empty())
    for (auto const number : m_recent)
      if (isText(m_entries[number], text)) return number;
  auto const number = findOrInsert(text);
  m_recent[m_next++ % m_recent.size()] = number;
  return number;
}

std::uint32_t TextTable::findOrInsert(std::string_view text) {
  if (2 * m_entries.size() >= m_slots.size()) grow();
  std::uint64_t const hash = XXH3_64bits(text.data(), text.size());
  std::size_t const mask = m_slots.size() - 1;
  std::size_t slot = hash & mask;
  for (; m_slots[slot] != 0; slot = (slot + 1) & mask) {
    auto const& entry = m_entries[m_slots[slot] - 1];
    if (entry.hash == hash && isText(entry, text)) return m_slots[slot] - 1;
  }
  m_bytes.writeNumber(static_cast<std::uint32_t>(text.size()));
  m_entries.push_back({m_bytes.getPosition(), static_cast<std::uint32_t>(text.size()), hash});
  m_bytes.writeBytes(text);
  m_slots[slot] = static_cast<std::uint32_t>(m_entries.size());
  return m_slots[slot] - 1;
}

void TextTable::grow() {
  constexpr std::size_t smallest = 64;
  m_slots.assign(std::max(smallest, 2 * m_slots.size()), 0);
  std::size_t const mask = m_slots.size() - 1;
  for (std::uint32_t i = 0; i < m_entries.size(); ++i) {
    std::size_t slot = m_entries[i].hash & mask;
    while (m_slots[slot] != 0) slot = (slot + 1) & mask;
    m_slots[slot] = i + 1;
  }
}

}  // namespace Kestrel
