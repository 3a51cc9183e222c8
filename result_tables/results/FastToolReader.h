#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "result_tables/json/JsonCursor.h"
#include "result_tables/results/NumberStore.h"
#include "result_tables/results/ToolDraft.h"

namespace Kestrel::ResultTables {

/// Reads the tools of a results file as files usually have them, and much faster than the shapes of the
/// format do. What is read is what the shapes would have read; anything else, the wrong as well as the
/// unusual, is left to them, with the messages that they have.
///
/// The numbers of the series are kept together in few blocks of memory.
class FastToolReader {
 public:
  /// Keeps numbers in spare memory before it takes new one.
  explicit FastToolReader(SpareMemorySource const& spareMemory = {})
      : m_values(spareMemory), m_pairs(spareMemory) {}

  /// Reads a tool from behind its opening brace on. Returns where its closing brace stands; null, `tool`
  /// being anything, where it is left to the shapes.
  [[nodiscard]] char const* readTool(char const* at, char const* end, ToolDraft& tool);

  /// The same for a tool whose series nobody needs: `tool` gets none, and that takes half the time.
  [[nodiscard]] char const* passTool(char const* at, char const* end, ToolDraft& tool);

  /// Reads an array of plain values or of pairs from behind its opening bracket on into the store that
  /// `takeSeries` empties. Returns where its closing bracket stands; null, with an empty store, as above.
  [[nodiscard]] char const* readValues(char const* at, char const* end);
  [[nodiscard]] char const* readPairs(char const* at, char const* end);

  /// For who reads numbers one by one.
  void addValue(double value) { m_values.add(value); }
  void addPair(double value, double companion) { m_pairs.add({value, companion}); }

  /// The series that was read last.
  [[nodiscard]] StepValues<double> takeSeries(bool isPairs);

 private:
  using Pair = StepValues<double>::Pair;

  template <bool isKept>
  [[nodiscard]] char const* takeTool(char const* at, char const* end, ToolDraft& tool);
  /// A series with its braces; `quantity` is null where none belongs to it.
  template <bool isKept>
  [[nodiscard]] bool takeSeriesObject(JsonCursor& json, std::string_view* quantity,
                                      StepValues<double>& series);
  template <bool isKept>
  [[nodiscard]] bool takeSeriesList(JsonCursor& json, ToolDraft& tool);

  NumberStore<double> m_values;
  NumberStore<Pair> m_pairs;
  std::vector<std::pair<std::string_view, StepValues<double>>> m_seriesOfTool;
};

}  // namespace Kestrel::ResultTables
