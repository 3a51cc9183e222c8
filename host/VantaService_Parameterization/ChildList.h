#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace Kestrel {

class Object;

/// The children of one object in their order, and the child ids that are free among them.
///
/// A child knows its slot in the list; removal leaves the slot empty, so that nothing moves. The position of
/// a child is the number of occupied slots before its own: one bit per slot says whether it is occupied, and
/// a Fenwick tree counts the bits of the words. So nothing is allocated per child, and neither removal nor
/// position visits the other children.
///
/// Threads: one at a time.
class ChildList {
 public:
  /// Number of children; one that stands in the list twice counts twice.
  [[nodiscard]] std::size_t size() const { return m_size; }

  /// Makes room for `count` more children, so that appending them cannot fail. Amortised O(1) per child. On
  /// failure (out of memory) nothing has changed.
  void reserve(std::size_t count);

  /// Appends a child and takes its child id out of the free ones. A child that the list holds already stands
  /// in it twice from then on, at its last place as far as others ask. O(log n). REQUIRES: room, see
  /// `reserve`; a child that lies in no other list.
  void append(std::shared_ptr<Object> const& child) noexcept;

  /// Opens `count` empty slots, numbered from 0. Linear. REQUIRES: a list that never had a child.
  void openSlots(std::size_t count);

  /// Puts a child into an open slot, as `append` does behind all slots. False, and nothing happens, when the
  /// slot does not exist or is taken. O(log n). REQUIRES: a child that lies in no list.
  [[nodiscard]] bool put(std::shared_ptr<Object> const& child, std::size_t slot) noexcept;

  /// Takes a child out, at the last of its places if it has several. O(log n); linear while any child stands
  /// in the list more than once. REQUIRES: holds(child); the caller keeps the child alive.
  void remove(Object& child) noexcept;

  /// Unlinks the children from their parent and lets go of them, in order.
  void releaseAll() noexcept;

  /// O(1); any object may be asked for.
  [[nodiscard]] bool holds(Object const& child) const;

  /// Position of a child. O(log n). REQUIRES: holds(child).
  [[nodiscard]] std::size_t positionOf(Object const& child) const;

  /// The child at a position. O(log n). REQUIRES: position < size().
  [[nodiscard]] std::shared_ptr<Object> const& at(std::size_t position) const;

  /// Calls `visit(child)` for each child in order. Linear in the largest number of children that the list
  /// held since it was empty. REQUIRES: `visit` does not change the list.
  template <typename Visitor>
  void forEach(Visitor const& visit) const {
    for (auto const& child : m_slots)
      if (child) visit(child);
  }

  /// Fills `ids` with `count` different ids from 0 upwards that no child has. They stay free until children
  /// with them are appended. O(1) each; when the ids above the largest one run out, n log n once per run of
  /// free ids. Throws std::length_error when there are not so many.
  void genFreshIds(std::size_t count, std::vector<int>& ids);

 private:
  /// Ids from `first` to below `second`.
  using IdRange = std::pair<std::int64_t, std::int64_t>;

  static constexpr IdRange allIds{0, std::int64_t{1} << 31};

  [[nodiscard]] static std::size_t sizeOf(IdRange const& range);

  void occupy(std::shared_ptr<Object> const& child, std::size_t slot) noexcept;
  void findAgain(Object& child) noexcept;
  void closeGaps() noexcept;
  void count(std::size_t word, std::size_t difference) noexcept;
  [[nodiscard]] std::size_t countBefore(std::size_t word) const;
  [[nodiscard]] std::vector<IdRange> genFreeIdRanges() const;

  std::vector<std::shared_ptr<Object>> m_slots;  ///< empty where a child was removed
  std::vector<std::uint64_t> m_occupied;         ///< one bit per slot
  std::vector<std::size_t> m_counts;             ///< Fenwick tree over the words of m_occupied
  std::size_t m_size = 0;
  std::size_t m_repetitions = 0;  ///< children less different children
  IdRange m_freshIds = allIds;    ///< a run of ids that no child has
};

}  // namespace Kestrel
