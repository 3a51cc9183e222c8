#include <pybind11/pybind11.h>

#include "python/Calling.h"
#include "python/Results.h"

// The extension behind the package `result_tables`, which alone imports it: what it takes and gives is what
// is most direct in C++, and the package makes of it what people use.
PYBIND11_MODULE(_result_tables, module) {
  module.attr("__version__") = RESULT_TABLES_VERSION;
  Kestrel::ResultTables::registerErrors();
  Kestrel::ResultTables::declareResults(module);
  Kestrel::ResultTables::declareStudy(module);
  Kestrel::ResultTables::declareDrafts(module);
}
