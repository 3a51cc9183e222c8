#include "python/Calling.h"

#include <cmath>

#include "python/Frame.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace py = pybind11;

namespace Kestrel::ResultTables {

namespace {

py::object textOrNone(std::string const& text) {
  return text.empty() ? py::object(py::none()) : py::object(pythonText(text));
}

void raise(Error const& error) {
  auto const type = py::module_::import("result_tables._error").attr("Error");
  auto const path = error.path().empty() ? py::object(py::none()) : py::object(pythonPath(error.path()));
  PyErr_SetObject(type.ptr(), type(pythonText(error.what()), path, textOrNone(error.place())).ptr());
}

}  // namespace

TableSelection PythonSelection::asTables() const {
  TableSelection selection{units, {}, teaching};
  for (auto const& family : families)
    selection.families.push_back(rowNamed("families", s_families, family).dataType);
  return selection;
}

Tolerance toleranceOf(double absolute, double relative) {
  for (auto const& [name, number] : {std::pair("abs", absolute), std::pair("rel", relative)}) {
    if (!std::isfinite(number) || number < 0.0)
      throw Error(
          tr("{}: expected a finite number that is not negative, found {}", name, shortestForm(number)));
  }
  return {absolute, relative};
}

void registerErrors() {
  py::register_exception_translator(
      [](std::exception_ptr exception) {  // NOLINT(performance-unnecessary-value-param): its type
        try {
          if (exception) std::rethrow_exception(exception);
        } catch (Error const& error) {
          raise(error);
        }
      });
}

}  // namespace Kestrel::ResultTables
