#pragma once

#include <cstddef>
#include <new>

namespace Kestrel::TestSupport {

/// While it lives, one allocation that the calling thread makes with operator new fails with std::bad_alloc:
/// the one after `successes` allocations that succeed. Linking this replaces the program's operator new and
/// delete; the sanitizers go on seeing every block.
class AllocationFailure {
 public:
  explicit AllocationFailure(std::size_t successes);
  AllocationFailure(AllocationFailure const&) = delete;
  AllocationFailure& operator=(AllocationFailure const&) = delete;
  ~AllocationFailure();

  /// Whether the allocation was reached.
  [[nodiscard]] bool hasHappened() const;
};

/// Blocks that the calling thread got from operator new, less those that it gave back.
[[nodiscard]] std::ptrdiff_t countLiveBlocks();

/// What came of failing every allocation of an operation in turn.
struct AllocationFailures {
  std::size_t count = 0;      ///< allocations that were failed, each in a run of its own
  std::size_t swallowed = 0;  ///< of these the ones after which no std::bad_alloc came out
  std::size_t leaking = 0;    ///< of these the ones that left blocks behind when the subject was gone
};

/// Runs `operate(subject)` on subjects made by `genSubject()`, with the first, the second, ... allocation of
/// `operate` failing, until a run gets by without. After each failed run `inspect(subject)` looks at what is
/// left. What the operation makes once per process must exist already.
template <typename GenSubject, typename Operate, typename Inspect>
AllocationFailures failEachAllocation(GenSubject const& genSubject, Operate const& operate,
                                      Inspect const& inspect) {
  AllocationFailures result;
  for (;; ++result.count) {
    std::ptrdiff_t const before = countLiveBlocks();
    {
      auto subject = genSubject();
      bool hasThrown = false;
      bool hasHappened = false;
      {
        AllocationFailure const failure(result.count);
        try {
          operate(subject);
        } catch (std::bad_alloc const&) {
          hasThrown = true;
        }
        hasHappened = failure.hasHappened();
      }
      if (!hasHappened) return result;
      if (!hasThrown) ++result.swallowed;
      inspect(subject);
    }
    if (countLiveBlocks() != before) ++result.leaking;
  }
}

}  // namespace Kestrel::TestSupport
