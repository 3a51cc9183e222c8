#pragma once

#include <chrono>
#include <cstddef>
#include <memory>

namespace Kestrel::ResultTables {

/// Shows on standard error, where that is a terminal, how far work has come that takes longer than a moment:
/// one line that changes in place and is gone when the object is. To be gone before anything else is written.
class Progress {
 public:
  /// Of `files` files, none of them done.
  explicit Progress(std::size_t files, std::chrono::milliseconds moment = std::chrono::seconds(1));
  Progress(Progress const&) = delete;
  Progress& operator=(Progress const&) = delete;
  ~Progress();

  /// One more file is done. May be called on any thread.
  void countOne();

 private:
  class Line;
  std::unique_ptr<Line> m_line;  ///< null where nobody would see it
};

}  // namespace Kestrel::ResultTables
