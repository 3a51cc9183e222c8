#include "python/Results.h"

#include <pybind11/stl.h>

#include <cmath>
#include <optional>
#include <tuple>

#include "python/TableFrames.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/ToolKind.h"
#include "result_tables/base/Translate.h"
#include "result_tables/import/Import.h"
#include "result_tables/limits/FamilyColumns.h"
#include "result_tables/limits/LimitType.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsText.h"
#include "result_tables/results/Sample.h"
#include "result_tables/results/UnitSelection.h"
#include "result_tables/tables/Series.h"
#include "result_tables/tables/Tables.h"

namespace py = pybind11;

namespace Kestrel::ResultTables {

namespace {

using Held = std::shared_ptr<PythonResults>;
using Names = std::vector<std::string>;

// ---- reading

Held hold(ResultsFile file, NamedLimits const& limits, std::string const& results) {
  auto held = limits.of(results, file);
  return std::make_shared<PythonResults>(std::move(file), std::move(held));
}

Held readPath(std::string const& path, std::string const& limits) {
  return withoutPython(path, [&] { return hold(readResultsFile(path), NamedLimits(limits), path); });
}

/// Nothing stands beside results that are in memory.
Held readContent(std::string const& name, py::bytes const& content, std::string const& limits) {
  auto const text = static_cast<std::string_view>(content);
  return withoutPython(name, [&] {
    return hold(readResults(name, text), NamedLimits(limits), std::string(s_standardStream));
  });
}

ImportFormat formatOf(std::string const& path, std::string const& name) {
  if (!name.empty()) return rowNamed("format", s_importFormats, name).format;
  if (auto const format = importFormatOf(path)) return *format;
  throw Error(
      tr("{}: expected a name that ends in .dat or .csv, or the format of the print beside it, found neither",
         toPrintable(path)));
}

/// The results of a print, and what of it is passed over.
std::pair<Held, std::vector<std::string>> readPrint(std::string const& path, std::string const& map,
                                                    std::string const& format, bool hasDecimalCommas,
                                                    std::string const& limits) {
  return withoutPython(path, [&] {
    std::vector<std::string> notes;
    auto const decimalMark = hasDecimalCommas ? DecimalMark::comma : DecimalMark::point;
    auto file = importResults(formatOf(path, format), path, map, decimalMark,
                              [&notes](std::string const& note) { notes.push_back(note); });
    return std::pair(hold(std::move(file), NamedLimits(limits), path), std::move(notes));
  });
}

Held readExample() {
  return withoutPython({}, [] {
    auto file = readSample();
    auto limits = ResultLimits{genDefaultLimits(file)};
    return std::make_shared<PythonResults>(std::move(file), std::move(limits));
  });
}

// ---- what there is

std::vector<std::tuple<std::string, std::string>> unitsOf(PythonResults const& results) {
  std::vector<std::tuple<std::string, std::string>> units;
  for (auto const& unit : results.file().units)
    units.emplace_back(unit.unit->getID().toString(), unit.unit->getSimulationUnitName());
  return units;
}

std::vector<ResultTable> tablesOf(LimitedResults const& results, PythonSelection const& selection) {
  return genResultTables(results.file, selection.asTables(), results.limits);
}

py::dict valuesOf(PythonResults const& results, PythonSelection const& selection) {
  return results.read([&](LimitedResults const& read) { return genValuesFrame(tablesOf(read, selection)); })
      .take();
}

py::list sectionsOf(PythonResults const& results, PythonSelection const& selection) {
  auto sections =
      results.read([&](LimitedResults const& read) { return genSectionFrames(tablesOf(read, selection)); });
  py::list taken;
  for (auto& section : sections) taken.append(section.take());
  return taken;
}

py::tuple findingsOf(PythonResults const& results, PythonSelection const& selection) {
  auto found =
      results.read([&](LimitedResults const& read) { return genFindingsFrame(tablesOf(read, selection)); });
  return py::make_tuple(found.findings.take(), found.compared, found.withoutData);
}

py::tuple differencesOf(PythonResults const& before, PythonResults const& after,
                        PythonSelection const& selection, double absolute, double relative) {
  std::size_t compared = 0;
  auto frame = before.readWith(after, [&](LimitedResults const& one, LimitedResults const& other) {
    auto const differences =
        genDifferences(one, other, selection.asTables(), toleranceOf(absolute, relative));
    compared = differences.countCompared();
    return genDifferencesFrame(differences);
  });
  return py::make_tuple(frame.take(), compared);
}

// ---- series

template <typename Number>
py::object arrayOrNone(std::vector<Number>&& numbers) {
  return numbers.empty() ? py::object(py::none()) : py::object(arrayOf(std::move(numbers)));
}

template <typename Number>
py::object numberOrNone(std::optional<Number> number) {
  return number ? py::cast(*number) : py::object(py::none());
}

/// The attributes of a series, and its numbers: those that it may lack are None.
py::tuple takeSeries(TableSeries& series) {
  py::dict about;
  for (auto const& [name, text] :
       {std::pair("file", std::string_view(series.file)), std::pair("unit", std::string_view(series.unit)),
        std::pair("unitId", std::string_view(series.unitId)), std::pair("family", series.family),
        std::pair("title", std::string_view(series.title)),
        std::pair("group", std::string_view(series.group)),
        std::pair("subGroup", std::string_view(series.subGroup)),
        std::pair("item", std::string_view(series.item)),
        std::pair("key", std::string_view(series.column.key)),
        std::pair("column", std::string_view(series.column.tableDisplayName)),
        std::pair("valueUnit", std::string_view(series.column.unit))})
    about[name] = pythonText(text);
  about["limit"] = numberOrNone(valueOf(series.column.limit));
  about["exceeded"] = series.isExceeded;
  about["step"] = numberOrNone(series.step());
  about["time"] = numberOrNone(series.time());
  auto& [name, steps, values, times, minima, maxima] = series.series;
  std::vector<std::int64_t> const indices(steps.begin(), steps.end());
  return py::make_tuple(about, arrayOf(std::vector(indices)), arrayOf(std::move(values)),
                        arrayOrNone(std::move(times)), arrayOrNone(std::move(minima)),
                        arrayOrNone(std::move(maxima)));
}

py::list seriesOf(PythonResults const& results, PythonSelection const& selection, Names const& items,
                  Names const& keys) {
  auto all = results.read([&](LimitedResults const& read) {
    return genSeries(read.file, {selection.asTables(), items, keys}, read.limits);
  });
  py::list taken;
  for (auto& series : all) taken.append(takeSeries(series));
  return taken;
}

/// The numbers of a series where they are: an array that cannot be written to and keeps them.
py::array sharedArrayOf(StepValues<double> const& series) {
  py::capsule const owner(new StepValues<double>(series),
                          [](void* shared) { delete static_cast<StepValues<double>*>(shared); });
  auto const size = static_cast<py::ssize_t>(series.size());
  constexpr auto step = static_cast<py::ssize_t>(sizeof(double));
  bool const isPairs = !series.pairs().empty();
  auto array = isPairs ? py::array_t<double>({size, py::ssize_t{2}}, {2 * step, step},
                                             &series.pairs().data()->first, owner)
                       : py::array_t<double>({size}, {step}, series.values().data(), owner);
  py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return array;
}

py::tuple takeTool(SimulationUnit const& unit, std::string const& id, ToolForceDataType kind) {
  py::dict series;
  for (auto const& [quantity, values] : *unit.getToolForces(id))
    series[pythonText(columnKey(quantity))] = sharedArrayOf(*values);
  auto const tangential = unit.genGetJoinTangentialForceStepValues(id);
  auto const force =
      tangential->size() == 0 ? py::object(py::none()) : py::object(sharedArrayOf(*tangential));
  return py::make_tuple(pythonText(unit.getSimulationUnitName()), unit.getID().toString(), pythonText(id),
                        toolKindName(kind), series, force);
}

constexpr ToolForceDataType s_toolKinds[] = {ToolForceDataType::pilot,       ToolForceDataType::clamp,
                                             ToolForceDataType::tool,        ToolForceDataType::spotWeld,
                                             ToolForceDataType::joiningTong, ToolForceDataType::suctionZone,
                                             ToolForceDataType::bolt};

py::list toolsOf(PythonResults const& results, Names const& units) {
  auto const selected =
      results.read([&](LimitedResults const& read) { return selectUnits(read.file, units); });
  py::list tools;
  for (auto const* unit : selected) {
    for (auto const kind : s_toolKinds) {
      std::vector<std::string> ids;
      unit->unit->getToolStringIDsOfToolForceType(ids, kind);
      for (auto const& id : ids) tools.append(takeTool(*unit->unit, id, kind));
    }
  }
  return tools;
}

// ---- limits

/// A limit by the name of its kind, or of a column by family and key, and its value.
using KindLimits = std::vector<std::pair<std::string, double>>;
using NamedColumnLimits = std::vector<std::tuple<std::string, std::string, double>>;

TablePropertyLimitType kindNamed(std::string const& name) {
  for (std::size_t i = 0; i < s_limitTypeNames.size(); ++i) {
    if (s_limitTypeNames[i] == name) return static_cast<TablePropertyLimitType>(i);
  }
  refuseName("limits", {s_limitTypeNames.begin(), s_limitTypeNames.end()}, name);
}

[[noreturn]] void refuse(std::string_view what, std::string const& expected, std::string const& found) {
  throw Error(tr("{}: expected {}, found {}", what, expected, found));
}

void checkKinds(LimitedResults const& results, std::vector<ResultsUnit const*> const& units,
                KindLimits const& limits) {
  auto const& collection = *results.limits.collection;
  for (auto const& [name, value] : limits) {
    for (auto const* unit : units) {
      auto const& id = unit->unit->getID();
      if (collection.getLimit(id, kindNamed(name))) continue;
      refuse("limits",
             tr("a kind of limit that the unit {} has (one of {})",
                quote(unit->unit->getSimulationUnitName()), listOf(limitKindsOf(collection, id))),
             quote(name));
    }
  }
}

void checkColumns(LimitedResults const& results, std::vector<ResultsUnit const*> const& units,
                  NamedColumnLimits const& limits) {
  for (auto const& [family, key, value] : limits) {
    auto const type = rowNamed("limits", s_families, family).dataType;
    for (auto const* unit : units) {
      std::vector<std::string> possible;
      for (auto const& column : familyColumns(type)) {
        if (!results.limits.collection->getLimit(unit->unit->getID(), column.limitType))
          possible.push_back(column.key);
      }
      if (std::ranges::find(possible, key) != possible.end()) continue;
      std::vector<std::string_view> const names(possible.begin(), possible.end());
      refuse("limits",
             tr("a column of {} without a kind of limit ({})", family,
                names.empty() ? tr("none") : listOf(names)),
             quote(key) + suggestion(key, names));
    }
  }
}

void setLimitsOf(PythonResults& results, KindLimits const& kinds, NamedColumnLimits const& columns,
                 Names const& units) {
  results.change([&](LimitedResults& changed) {
    auto const selected = selectUnits(changed.file, units);
    checkKinds(changed, selected, kinds);
    checkColumns(changed, selected, columns);
    for (auto const& [name, value] : kinds)
      setLimits(*changed.limits.collection, selected, kindNamed(name), value);
    for (auto const& [family, key, value] : columns) {
      for (auto const* unit : selected)
        changed.limits.columns[unit->unit->getID()].insert_or_assign({familyNamed(family)->dataType, key},
                                                                     value);
    }
  });
}

void resetLimitsOf(PythonResults& results, Names const& units) {
  results.change([&](LimitedResults& changed) {
    auto const selected = selectUnits(changed.file, units);
    resetLimits(*changed.limits.collection, changed.file, selected);
    for (auto const* unit : selected) changed.limits.columns.erase(unit->unit->getID());
  });
}

/// By the id of the unit, in the file's order: the limits of kinds, and those of columns.
std::vector<std::tuple<std::string, KindLimits, NamedColumnLimits>> limitsOf(PythonResults const& results) {
  return results.read([](LimitedResults const& read) {
    std::vector<std::tuple<std::string, KindLimits, NamedColumnLimits>> all;
    for (auto const& unit : read.file.units) {
      auto const& id = unit.unit->getID();
      auto& [name, kinds, columns] = all.emplace_back(id.toString(), KindLimits(), NamedColumnLimits());
      for (auto const& kind : limitKindsOf(*read.limits.collection, id)) {
        auto const limit = read.limits.collection->getLimit(id, kindNamed(std::string(kind)));
        kinds.emplace_back(kind, limit->getLimit());
      }
      auto const ofUnit = read.limits.columns.find(id);
      if (ofUnit == read.limits.columns.end()) continue;
      for (auto const& [column, value] : ofUnit->second)
        columns.emplace_back(familyName(column.first), column.second, value);
    }
    return all;
  });
}

void readLimitsOf(PythonResults& results, std::string const& path) {
  results.change([&](LimitedResults& changed) { changed.limits = readLimits(path, changed.file); });
}

void saveLimitsOf(PythonResults const& results, std::string const& path) {
  results.read([&](LimitedResults const& read) {
    for (auto const& [unit, columns] : read.limits.columns) {
      for (auto const& [column, value] : columns) {
        refuse(toPrintable(path), tr("no limit of a column, which documents cannot hold"),
               fmt::format("{}/{}", familyName(column.first), column.second));
      }
    }
    replaceLimits(path, read.limits.collection);
  });
}

std::string limitsTextOf(PythonResults const& results, Names const& units) {
  return results.read([&](LimitedResults const& read) {
    return genLimitsText(read.limits, read.file, selectUnits(read.file, units));
  });
}

}  // namespace

void declareResults(py::module_& module) {
  py::class_<PythonSelection>(module, "Selection")
      .def(py::init([](Names units, Names families, bool teaching) {
             return PythonSelection{std::move(units), std::move(families), teaching};
           }),
           py::arg("units"), py::arg("families"), py::arg("teaching"));
  py::class_<PythonResults, Held>(module, "Results")
      .def_property_readonly("name", [](PythonResults const& of) { return pythonPath(of.file().givenName); })
      .def("units", unitsOf)
      .def("values", valuesOf, py::arg("selection"))
      .def("sections", sectionsOf, py::arg("selection"))
      .def("findings", findingsOf, py::arg("selection"))
      .def("differences", differencesOf, py::arg("after"), py::arg("selection"), py::arg("abs"),
           py::arg("rel"))
      .def("series", seriesOf, py::arg("selection"), py::arg("items"), py::arg("keys"))
      .def("tools", toolsOf, py::arg("units"))
      .def("limits", limitsOf)
      .def("set_limits", setLimitsOf, py::arg("kinds"), py::arg("columns"), py::arg("units"))
      .def("reset_limits", resetLimitsOf, py::arg("units"))
      .def("read_limits", readLimitsOf, py::arg("path"))
      .def("save_limits", saveLimitsOf, py::arg("path"))
      .def("limits_text", limitsTextOf, py::arg("units"));
  module.def("read_path", readPath, py::arg("path"), py::arg("limits"));
  module.def("read_content", readContent, py::arg("name"), py::arg("content"), py::arg("limits"));
  module.def("read_print", readPrint, py::arg("path"), py::arg("map"), py::arg("format"),
             py::arg("decimal_comma"), py::arg("limits"));
  module.def("read_sample", readExample);
}

}  // namespace Kestrel::ResultTables
