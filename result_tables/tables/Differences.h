#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/results/ResultsFile.h"
#include "result_tables/results/UnitSelection.h"
#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// How far apart two numbers may be and still be called the same: `absolute` + `relative` * |before|. Both
/// are finite and not negative.
struct Tolerance {
  double absolute = 0.0;
  double relative = 0.0;
};

enum class DifferenceKind {
  changed,  ///< both files have the value, and the numbers differ
  state,    ///< the numbers do not, but whether the value is valid or beyond its limit
  added,    ///< only the second file has it
  removed,  ///< only the first file has it
};

/// The name of a kind in reports, the same in every language.
[[nodiscard]] std::string_view nameOf(DifferenceKind kind);

/// A value of one of the files.
struct ComparedValue {
  double value;
  bool isValid;     ///< whether its item is
  bool isExceeded;  ///< only where the item is valid
  /// The numbers that it was chosen from, and the NaN beside them. Known of values that differ alone.
  std::size_t count = 0;
  std::size_t nanCount = 0;
};

/// A value in which the files differ.
struct ValueDifference {
  DifferenceKind kind;
  TableColumn const* column;            ///< of the first file where it has it
  std::optional<ComparedValue> before;  ///< none where it was added
  std::optional<ComparedValue> after;   ///< none where it was removed

  /// after - before; none where that is no finite number.
  [[nodiscard]] std::optional<double> change() const;
  /// The change by |before|; none where that is no finite number.
  [[nodiscard]] std::optional<double> relativeChange() const;

  /// Whether it is beyond its limit and was not, or was not there.
  [[nodiscard]] bool wentBeyondLimit() const;
  /// Whether it was beyond its limit and is valid and within it now.
  [[nodiscard]] bool cameBackWithinLimit() const;
};

/// An element in a section of a table.
struct RowDifferences {
  std::string_view group;
  std::string_view subGroup;            ///< empty where the element is in none
  std::string_view item;                ///< its name
  std::vector<ValueDifference> values;  ///< in the order of the columns; none where the files agree
};

/// A table of the files as the differences refer to it.
struct ComparedTable {
  std::shared_ptr<MaxValueGroupContainer const> container;
  std::vector<std::vector<TableColumn>> columns;  ///< per section
};

/// What differs in the tables of one family of one unit. Does not refer to the files.
struct TableDifferences {
  std::string unit;  ///< the unit's name and id are those of the first file where it has the unit
  std::string unitId;
  std::string_view family;                      ///< the family's untranslated name
  std::string title;                            ///< its translated one
  std::shared_ptr<ComparedTable const> before;  ///< null where the first file has no such table
  std::shared_ptr<ComparedTable const> after;   ///< null where the second file has none
  /// Section by section: the rows of the first file, then those that the second alone has; also those in
  /// which the files agree.
  std::vector<RowDifferences> rows;
  std::size_t compared = 0;  ///< values that both files have
};

/// A file that could not be compared.
struct UnreadFile {
  std::string file;  ///< as it was given
  std::string message;
};

/// What kinds of differences there are, and how often.
struct DifferenceCounts {
  std::size_t changed = 0;
  std::size_t state = 0;
  std::size_t added = 0;
  std::size_t removed = 0;
  std::size_t wentBeyondLimit = 0;  ///< of all of these
  std::size_t cameBackWithinLimit = 0;

  void add(ValueDifference const& difference);
};

/// What differs between two results files, or why they could not be compared.
struct ResultDifferences {
  std::string before;  ///< the files as they were given
  std::string after;
  /// Units of the first file, then those that the second alone has; families by number inside a unit.
  std::vector<TableDifferences> tables;
  std::vector<UnreadFile> errors;
  Tolerance tolerance = {};
  std::vector<TablesFile> read = {};  ///< what was read of both files; none where one could not be

  [[nodiscard]] bool hasDifferences() const;
  [[nodiscard]] std::size_t countCompared() const;
};

/// Compares the tables of one family; null stands for a table that a file does not have. Sections are paired
/// by name; rows by section, sub-group, name, and how often that name has come before in the sub-group;
/// values by key. REQUIRES: one of the tables is there.
[[nodiscard]] TableDifferences genTableDifferences(ResultTable const* before, ResultTable const* after,
                                                   Tolerance const& tolerance);

/// A results file with the limits that its values are compared with.
struct LimitedResults {
  ResultsFile file;
  ResultLimits limits;
};

/// One of the two sides that are compared.
struct ComparedSide {
  TablesFile read;  ///< without units
  NamedUnits units;
  /// Makes the selected tables of one of them, by its index.
  std::function<std::vector<ResultTable>(std::size_t unit)> genTables;
};

/// Compares the tables of the units that are wanted, none wanted: of all, which are paired by
/// `selectUnitPairs`. Makes each table once and passes over the values alone; holds the tables of all units
/// afterwards, but no series.
[[nodiscard]] ResultDifferences genDifferences(ComparedSide const& before, ComparedSide const& after,
                                               std::vector<std::string> const& units,
                                               Tolerance const& tolerance);

/// The same of two files.
[[nodiscard]] ResultDifferences genDifferences(LimitedResults const& before, LimitedResults const& after,
                                               TableSelection const& selection, Tolerance const& tolerance);

}  // namespace Kestrel::ResultTables
