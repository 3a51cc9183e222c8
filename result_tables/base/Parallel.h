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

}  // namespace Kestrel::ResultTables
