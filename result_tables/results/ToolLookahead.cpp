#include "result_tables/results/ToolLookahead.h"

#include <cstring>
#include <new>
#include <stop_token>
#include <system_error>
#include <thread>
#include <utility>

#include "result_tables/base/Parallel.h"
#include "result_tables/results/FastToolReader.h"

namespace Kestrel::ResultTables {

/// A part of the text and the tools that begin in it.
class ToolLookahead::Part {
 public:
  Part(char const* begin, char const* end, char const* endOfText, Series series)
      : m_begin(begin),
        m_end(end),
        m_endOfText(endOfText),
        m_series(series),
        m_thread([this](std::stop_token const& stop) { run(stop); }) {}

  /// Of the place behind a brace.
  [[nodiscard]] bool isAheadOf(char const* at) const { return at <= m_begin; }
  [[nodiscard]] bool isBehind(char const* at) const { return at > m_end; }

  [[nodiscard]] char const* take(char const* at, ToolDraft& tool) {
    if (m_thread.joinable()) m_thread.join();
    while (m_next < m_tools.size() && m_tools[m_next].begin < at) ++m_next;
    if (m_next == m_tools.size() || m_tools[m_next].begin != at) return nullptr;
    tool = std::move(m_tools[m_next].tool);
    return m_tools[m_next].closing;
  }

 private:
  struct FoundTool {
    char const* begin;  ///< behind the opening brace
    char const* closing;
    ToolDraft tool;
  };

  void run(std::stop_token const& stop) {
    BusyThread const busy;
    try {
      readTools(stop);
    } catch (std::bad_alloc const&) {
      // The reader, which has the messages, reads what is missing.
    }
  }

  void readTools(std::stop_token const& stop) {
    FastToolReader reader;
    auto const* at = m_begin;
    while (at < m_end && !stop.stop_requested()) {
      auto const* const brace =
          static_cast<char const*>(std::memchr(at, '{', static_cast<std::size_t>(m_end - at)));
      if (brace == nullptr) return;
      at = brace + 1;
      ToolDraft tool;
      auto const* const closing = m_series == Series::kept ? reader.readTool(at, m_endOfText, tool)
                                                           : reader.passTool(at, m_endOfText, tool);
      if (closing == nullptr) continue;
      m_tools.push_back({at, closing, std::move(tool)});
      at = closing;
    }
  }

  char const* m_begin;
  char const* m_end;
  char const* m_endOfText;
  Series m_series;
  std::vector<FoundTool> m_tools;  ///< the thread's until that is joined
  std::size_t m_next = 0;
  std::jthread m_thread;
};

ToolLookahead::ToolLookahead(std::string_view text, std::size_t threads, Series series) {
  auto const* const end = text.data() + text.size();
  auto const size = text.size() / (threads + 1);
  try {
    for (std::size_t i = 1; i <= threads; ++i) {
      auto const* const begin = text.data() + i * size;
      m_parts.push_back(std::make_unique<Part>(begin, i == threads ? end : begin + size, end, series));
    }
  } catch (std::system_error const&) {
    // The system gives no more threads.
  }
}

ToolLookahead::~ToolLookahead() = default;

char const* ToolLookahead::take(char const* at, ToolDraft& tool) {
  while (m_current < m_parts.size() && m_parts[m_current]->isBehind(at)) m_parts[m_current++].reset();
  if (m_current == m_parts.size() || m_parts[m_current]->isAheadOf(at)) return nullptr;
  return m_parts[m_current]->take(at, tool);
}

}  // namespace Kestrel::ResultTables
