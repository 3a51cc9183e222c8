#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "result_tables/tables/StudyRun.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// A column of a section of a run, with what a study keeps of its values together.
struct RunColumn {
  std::string key;
  std::string unit;
  std::optional<ColumnLimit> limit;
  TableCounts counts;           ///< none are invalid here
  std::optional<double> worst;  ///< the highest utilisation; none where no value has one
};

/// A section of a table. Its elements lie together in `RunData::elements`.
struct RunSection {
  std::string unit;
  std::string unitId;
  MaxValueGroupContainer::DataType family{};
  std::string name;
  bool isTeaching = false;
  std::vector<RunColumn> columns;
  std::size_t firstElement = 0;
  std::size_t elementCount = 0;
};

/// A row of a section.
struct RunElement {
  std::size_t section;
  std::string subGroup;
  std::string item;
  std::size_t occurrence;  ///< how often that item has come before in the sub-group
};

struct RunValue {
  std::uint32_t element;  ///< index in `RunData::elements`
  std::uint32_t column;   ///< index in the columns of the element's section
  double value;
  std::optional<std::uint64_t> step;
  std::optional<double> time;
  std::uint64_t count;
  std::uint64_t nans;
  bool isValid;
  bool isExceeded;

  [[nodiscard]] TableValue asTableValue() const;
};

/// All that a study keeps of a run, in the order of its tables. Sections and elements without their limits
/// and counts are its layout, which runs of one model share.
struct RunData {
  StudyRun run;
  std::vector<RunSection> sections;
  std::vector<RunElement> elements;
  std::vector<RunValue> values;  ///< by element, then column

  /// SHA-256 of the layout.
  [[nodiscard]] std::string layoutDigest() const;
};

/// Fills in what the tables of a file hold; `run` says what is known of the run besides. Passes once over
/// each series. A name that holds a NUL is an `Error`, as databases have none in texts.
[[nodiscard]] RunData genRunData(StudyRun run, std::vector<ResultTable> const& tables);

/// An `Error` where a text cannot be stored: it is no UTF-8, or holds a NUL. `what` begins the message.
void checkStorable(std::string_view what, std::string_view text);

}  // namespace Kestrel::ResultTables
