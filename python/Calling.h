#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/tables/Differences.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// What Python passes to say what is meant of results.
struct PythonSelection {
  std::vector<std::string> units;
  std::vector<std::string> families;
  bool teaching = false;

  /// An `Error` for a name of no family.
  [[nodiscard]] TableSelection asTables() const;
};

/// An `Error` for a bound that is no finite number or negative.
[[nodiscard]] Tolerance toleranceOf(double absolute, double relative);

/// What `work` gives, done without Python's lock. An `Error` that is about the file that was asked for names
/// it.
template <typename Work>
auto withoutPython(std::string const& path, Work const& work) {
  pybind11::gil_scoped_release const release;
  try {
    return work();
  } catch (Error const& error) {
    if (!error.path().empty()) throw;
    throw Error(error.what(), path, error.place());
  }
}

/// Makes each `Error` an exception of Python, `result_tables.Error`.
void registerErrors();

}  // namespace Kestrel::ResultTables
