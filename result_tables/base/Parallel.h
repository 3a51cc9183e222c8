#pragma once

#include <cstddef>
#include <functional>

namespace Kestrel::ResultTables {

/// Calls `work(0)` to `work(count - 1)`, up to `jobs` at a time, each on one thread, begun in this order.
/// Returns when all have ended. What one throws ends the others that have not begun; the first by number is
/// thrown on. REQUIRES: jobs > 0.
void forEachInParallel(std::size_t count, std::size_t jobs, std::function<void(std::size_t)> const& work);

/// The processors that this process may use, at least one.
[[nodiscard]] std::size_t numberOfProcessors();

/// A thread of this program beside its first one, as long as the object lives.
class BusyThread {
 public:
  BusyThread();
  BusyThread(BusyThread const&) = delete;
  BusyThread& operator=(BusyThread const&) = delete;
  ~BusyThread();
};

/// The processors that have no thread of this program to run: the first one has its own, and there is one for
/// each `BusyThread`.
[[nodiscard]] std::size_t numberOfIdleProcessors();

}  // namespace Kestrel::ResultTables
