#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "result_tables/results/ToolDraft.h"

namespace Kestrel::ResultTables {

/// Reads the tools of a results file on other threads, each in a part of the text ahead of the reader.
///
/// A thread cannot know whether the brace from which it reads begins a tool. So what it has read counts only
/// where the reader comes to the same brace and knows that it does: what it would have read there is the
/// same.
class ToolLookahead {
 public:
  enum class Series { kept, passed };

  /// Starts `threads` threads on as many parts of the text, all behind a first part of the same size. The
  /// text stays as long as the object.
  ToolLookahead(std::string_view text, std::size_t threads, Series series = Series::kept);
  ToolLookahead(ToolLookahead const&) = delete;
  ToolLookahead& operator=(ToolLookahead const&) = delete;
  /// Stops the threads.
  ~ToolLookahead();

  /// Gives the tool whose opening brace stands before `at`, and returns where its closing brace stands; null
  /// where it was not read. Waits for the thread that has the place in its part. To be asked from front to
  /// back.
  [[nodiscard]] char const* take(char const* at, ToolDraft& tool);

 private:
  class Part;

  std::vector<std::unique_ptr<Part>> m_parts;  ///< from front to back
  std::size_t m_current = 0;
};

}  // namespace Kestrel::ResultTables
