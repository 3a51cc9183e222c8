#include "VantaService_Parameterization/ChildList.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <limits>
#include <numeric>
#include <stdexcept>

#include "VantaService_Parameterization/Object.h"

namespace Kestrel {

namespace {

using SlotNumber = std::uint32_t;

constexpr std::size_t bitsPerWord = 64;

std::uint64_t bitOf(std::size_t slot) { return std::uint64_t{1} << (slot % bitsPerWord); }

std::size_t countBits(std::uint64_t word) { return static_cast<std::size_t>(std::popcount(word)); }

}  // namespace

void ChildList::reserve(std::size_t count) {
  if (m_slots.capacity() - m_slots.size() >= count) return;
  if (m_size * 2 <= m_slots.size()) closeGaps();
  if (m_slots.capacity() - m_slots.size() >= count) return;
  std::size_t const capacity = std::max(m_slots.size() + count, 2 * m_slots.size());
  if (capacity > std::numeric_limits<SlotNumber>::max()) throw std::length_error("too many children");
  std::size_t const words = (capacity + bitsPerWord - 1) / bitsPerWord;
  m_occupied.reserve(words);
  m_counts.reserve(words);
  m_slots.reserve(capacity);
}

void ChildList::append(std::shared_ptr<Object> const& child) noexcept {
  assert(child && m_slots.size() < m_slots.capacity());
  std::size_t const slot = m_slots.size();
  if (holds(*child)) ++m_repetitions;
  if (slot % bitsPerWord == 0) {
    // A node of the tree counts the words since the one that its number without its lowest bit names.
    std::size_t const node = m_counts.size() + 1;
    m_counts.push_back(m_size - countBefore(node & (node - 1)));
    m_occupied.push_back(0);
  }
  m_slots.emplace_back();
  occupy(child, slot);
}

void ChildList::openSlots(std::size_t count) {
  assert(m_slots.empty());
  std::size_t const words = (count + bitsPerWord - 1) / bitsPerWord;
  m_occupied.resize(words);
  m_counts.resize(words);
  m_slots.resize(count);
}

bool ChildList::put(std::shared_ptr<Object> const& child, std::size_t slot) noexcept {
  assert(child && child->m_parent == nullptr);
  if (slot >= m_slots.size() || m_slots[slot]) return false;
  occupy(child, slot);
  return true;
}

void ChildList::occupy(std::shared_ptr<Object> const& child, std::size_t slot) noexcept {
  m_slots[slot] = child;
  child->m_slot = static_cast<SlotNumber>(slot);
  m_occupied[slot / bitsPerWord] |= bitOf(slot);
  count(slot / bitsPerWord, 1);
  ++m_size;
  if (child->m_childId >= m_freshIds.first && child->m_childId < m_freshIds.second)
    m_freshIds.first = std::int64_t{child->m_childId} + 1;
}

void ChildList::remove(Object& child) noexcept {
  assert(holds(child));
  std::size_t const slot = child.m_slot;
  m_slots[slot].reset();
  if (m_repetitions != 0) findAgain(child);
  m_occupied[slot / bitsPerWord] &= ~bitOf(slot);
  count(slot / bitsPerWord, ~std::size_t{0});
  if (--m_size == 0) {
    m_slots.clear();
    m_occupied.clear();
    m_counts.clear();
    m_freshIds = allIds;
  }
}

/// Gives a child that was taken out of its slot the last one that it still has.
void ChildList::findAgain(Object& child) noexcept {
  for (std::size_t slot = m_slots.size(); slot-- != 0;) {
    if (m_slots[slot].get() != &child) continue;
    child.m_slot = static_cast<SlotNumber>(slot);
    --m_repetitions;
    return;
  }
}

void ChildList::releaseAll() noexcept {
  for (auto& child : m_slots) {
    if (!child) continue;
    child->m_parent = nullptr;
    child.reset();
  }
}

bool ChildList::holds(Object const& child) const {
  return child.m_slot < m_slots.size() && m_slots[child.m_slot].get() == &child;
}

std::size_t ChildList::positionOf(Object const& child) const {
  assert(holds(child));
  std::size_t const word = child.m_slot / bitsPerWord;
  return countBefore(word) + countBits(m_occupied[word] & (bitOf(child.m_slot) - 1));
}

std::shared_ptr<Object> const& ChildList::at(std::size_t position) const {
  assert(position < m_size);
  std::size_t word = 0;
  for (std::size_t step = std::bit_floor(m_counts.size()); step != 0; step /= 2) {
    if (word + step > m_counts.size() || m_counts[word + step - 1] > position) continue;
    word += step;
    position -= m_counts[word - 1];
  }
  std::uint64_t bits = m_occupied[word];
  for (; position != 0; --position) bits &= bits - 1;
  return m_slots[word * bitsPerWord + static_cast<std::size_t>(std::countr_zero(bits))];
}

void ChildList::genFreshIds(std::size_t count, std::vector<int>& ids) {
  std::vector<IdRange> ranges{m_freshIds};
  if (sizeOf(m_freshIds) < count) {
    ranges = genFreeIdRanges();
    std::size_t available = 0;
    for (auto const& range : ranges) available += sizeOf(range);
    if (available < count) throw std::length_error("too many children");
    m_freshIds = ranges.front();
  }
  ids.clear();
  ids.reserve(count);
  for (auto const& range : ranges)
    for (auto id = range.first; id < range.second && ids.size() < count; ++id)
      ids.push_back(static_cast<int>(id));
}

std::size_t ChildList::sizeOf(IdRange const& range) {
  return static_cast<std::size_t>(range.second - range.first);
}

/// The runs of ids that no child has, the longest first.
std::vector<ChildList::IdRange> ChildList::genFreeIdRanges() const {
  std::vector<std::int64_t> used{allIds.first - 1, allIds.second};
  forEach([&](std::shared_ptr<Object> const& child) { used.push_back(child->m_childId); });
  std::sort(used.begin(), used.end());
  std::vector<IdRange> ranges;
  for (std::size_t i = 1; i < used.size(); ++i)
    if (used[i - 1] >= allIds.first - 1 && used[i] - used[i - 1] > 1)
      ranges.emplace_back(used[i - 1] + 1, used[i]);
  std::stable_sort(ranges.begin(), ranges.end(),
                   [](IdRange const& a, IdRange const& b) { return sizeOf(a) > sizeOf(b); });
  return ranges;
}

void ChildList::closeGaps() noexcept {
  std::size_t slot = 0;
  for (auto& child : m_slots) {
    if (!child) continue;
    child->m_slot = static_cast<SlotNumber>(slot);
    if (&child != &m_slots[slot]) m_slots[slot] = std::move(child);
    ++slot;
  }
  m_slots.resize(slot);
  m_occupied.clear();
  m_counts.clear();
  for (std::size_t word = 0; word * bitsPerWord < slot; ++word) {
    std::size_t const bits = std::min(bitsPerWord, slot - word * bitsPerWord);
    std::size_t const node = word + 1;
    std::size_t const before = (node & (node - 1)) * bitsPerWord;
    m_occupied.push_back(~std::uint64_t{0} >> (bitsPerWord - bits));
    m_counts.push_back(word * bitsPerWord + bits - before);
  }
}

void ChildList::count(std::size_t word, std::size_t difference) noexcept {
  for (std::size_t node = word + 1; node <= m_counts.size(); node += node & (~node + 1))
    m_counts[node - 1] += difference;
}

/// Number of children in the words before `word`.
std::size_t ChildList::countBefore(std::size_t word) const {
  std::size_t sum = 0;
  for (std::size_t node = word; node != 0; node &= node - 1) sum += m_counts[node - 1];
  return sum;
}

}  // namespace Kestrel
