#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

#include "python/Results.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/ToolKind.h"
#include "result_tables/base/Translate.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/results/ResultsBuilder.h"
#include "result_tables/results/ResultsWriter.h"

namespace py = pybind11;

namespace Kestrel::ResultTables {

namespace {

using Array = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Range = std::optional<std::pair<std::optional<double>, std::optional<double>>>;
using Skins = std::vector<std::pair<std::string, Range>>;

[[noreturn]] void refuseDraft(std::string const& place, std::string const& expected,
                              std::string const& found) {
  throw Error(tr("{}: expected {}, found {}", place, expected, found), {}, place);
}

GUIdentifier identifierIn(std::string const& place, std::string const& text) {
  if (auto const id = GUIdentifier::fromString(text)) return *id;
  refuseDraft(place, tr("a UUID of 8-4-4-4-12 hexadecimal digits"), quote(text));
}

/// The array as one of doubles in order. Whole numbers are numbers too; what would lose digits or a part is
/// not.
Array numbersIn(std::string const& place, py::array const& array) {
  auto const kind = array.dtype().kind();
  bool const isNumber = kind == 'i' || kind == 'u' || kind == 'f';
  if (!isNumber || array.itemsize() > static_cast<py::ssize_t>(sizeof(double)))
    refuseDraft(place, tr("an array of numbers up to 64 bits"), py::str(array.dtype()));
  if (array.ndim() != 1 && !(array.ndim() == 2 && array.shape(1) == 2))
    refuseDraft(place, tr("an array of the shape (n,) or (n, 2)"), py::str(array.attr("shape")));
  return Array::ensure(array);
}

/// A copy of the numbers: what Python has may change.
StepValues<double> valuesIn(std::string const& place, py::array const& given) {
  auto const array = numbersIn(place, given);
  auto const* const numbers = array.data();
  auto const size = static_cast<std::size_t>(array.shape(0));
  if (array.ndim() == 1) return StepValues<double>(std::vector<double>(numbers, numbers + size));
  std::vector<std::pair<double, double>> pairs;
  pairs.reserve(size);
  for (std::size_t i = 0; i < size; ++i) pairs.emplace_back(numbers[2 * i], numbers[2 * i + 1]);
  return StepValues<double>(std::move(pairs));
}

/// A step that is being made. Whatever is refused leaves it as it was.
class StepDraft {
 public:
  [[nodiscard]] StepRecords const& records() const { return m_records; }

  void addSuctionZone(std::string const& guid, std::string const& name, bool active) {
    auto const key = identifierIn("guid", guid);
    takeKey("suctionZones", key.toString());
    m_records.suctionZones.push_back({key, name, active});
  }

  void addJoiningTong(std::string const& id, std::string const& name, std::uint32_t state) {
    takeKey("joiningTongs", id);
    m_records.joiningTongs.push_back({id, name, state});
  }

  void addJoin(std::string const& guid, std::string const& id, std::string const& name, std::uint32_t state) {
    auto const key = identifierIn("guid", guid);
    takeKey("joins", key.toString());
    m_records.joins.push_back({key, id, name, state});
  }

  void addLineJoin(std::string const& guid, std::string const& id, std::string const& name,
                   std::uint32_t state, std::string const& simulationUnitJoin, Skins const& skins) {
    auto const key = identifierIn("guid", guid);
    LineJoinRecord record{key, id, name, state, identifierIn("simulationUnitJoin", simulationUnitJoin), {}};
    for (auto const& [skin, range] : skins) record.skins.emplace_back(skin, rangeIn(skin, range));
    takeKey("lineJoins", key.toString());
    m_records.lineJoins.push_back(std::move(record));
  }

 private:
  static std::optional<SkinRange> rangeIn(std::string const& skin, Range const& range) {
    if (!range) return std::nullopt;
    for (auto const bound : {range->first, range->second}) {
      if (bound && !std::isfinite(*bound)) refuseDraft(skin, tr("a finite number"), shortestForm(*bound));
    }
    return SkinRange{range->first, range->second};
  }

  void takeKey(std::string const& list, std::string const& key) {
    if (!m_keys.emplace(list, key).second)
      refuseDraft(list, tr("an identifier that is unique in its list"), quote(key));
  }

  StepRecords m_records;
  std::set<std::pair<std::string, std::string>> m_keys;  ///< of each list
};

/// A unit that is being made. Whatever is refused leaves it as it was.
class UnitDraft {
 public:
  explicit UnitDraft(UnitRecords records) : m_records(std::move(records)) {}

  [[nodiscard]] UnitRecords const& records() const { return m_records; }

  void addTool(std::string id, std::string const& kind,
               std::vector<std::pair<std::string, py::array>> const& series,
               std::optional<py::array> const& tangentialForce) {
    auto const type = toolKindOf(kind);
    auto const place = tr("tool {}", quote(id));
    if (!type) refuseDraft(place, tr("one of {}", toolKindNames()), quote(kind));
    if (m_toolIds.contains(id)) refuseDraft(place, tr("an identifier that is unique in the unit"), quote(id));
    ToolDraft tool{id, *type, {}, {}};
    for (auto const& [quantity, numbers] : series)
      tool.series.append(
          quantity, std::make_shared<StepValues<double>>(valuesIn(place + ", " + quote(quantity), numbers)));
    if (tangentialForce) tool.tangentialForce = valuesIn(place, *tangentialForce);
    m_records.tools.push_back(std::move(tool));
    m_toolIds.insert(std::move(id));
  }

  void defineJoin(std::string const& id) { m_records.joinsDefinedInUnit.push_back(identifierIn("join", id)); }

  void group(std::string const& name, std::string const& group, std::vector<std::string> const& tools) {
    auto const names = groupedFamilyNames();
    if (std::ranges::find(names, name) == names.end())
      refuseName("family", {names.begin(), names.end()}, name);
    auto const family = familyNamed(name)->dataType;
    auto& groupings = m_records.toolGroupings;
    auto found = std::ranges::find(groupings, family, [](auto const& grouping) { return grouping.first; });
    if (found == groupings.end()) found = groupings.emplace(groupings.end(), family, ToolGroups());
    found->second.emplace_back(group, tools);
  }

  /// A copy of the step; null is a step without data.
  void addStep(StepDraft const* step) {
    m_records.steps.push_back(step == nullptr ? std::nullopt : std::optional(step->records()));
  }

  void show(std::optional<std::pair<std::uint32_t, std::uint32_t>> const& steps) {
    m_records.visibleSteps.reset();
    if (steps) m_records.visibleSteps = StepBounds{steps->first, steps->second};
  }

  void check() const {
    if (!m_records.visibleSteps) return;
    for (auto const step : {m_records.visibleSteps->first, m_records.visibleSteps->last}) {
      if (step < m_records.steps.size()) continue;
      refuseDraft(tr("unit {}", quote(m_records.name)),
                  tr("the index of one of {} steps", m_records.steps.size()), std::to_string(step));
    }
  }

 private:
  UnitRecords m_records;
  std::set<std::string> m_toolIds;
};

/// Results that are being made.
class ResultsDraft {
 public:
  std::shared_ptr<UnitDraft> addUnit(std::string const& id, std::string const& name) {
    auto const place = tr("unit {}", quote(name));
    UnitRecords records{identifierIn(place, id), name};
    for (auto const& unit : m_units) {
      if (unit->records().id == records.id)
        refuseDraft(place, tr("an identifier that is unique in the file"), records.id.toString());
    }
    return m_units.emplace_back(std::make_shared<UnitDraft>(std::move(records)));
  }

  [[nodiscard]] std::shared_ptr<PythonResults> genResults(std::string const& name) const {
    auto const units = genUnits();
    return withoutPython(name, [&] {
      auto file = buildResults(name, units);
      auto limits = ResultLimits{genDefaultLimits(file)};
      return std::make_shared<PythonResults>(std::move(file), std::move(limits));
    });
  }

  void write(std::string const& path) const {
    auto const units = genUnits();
    withoutPython(path, [&] { writeFile(path, writeResults(units)); });
  }

 private:
  /// The units as they are now, which Python may change while they are used. Shares the numbers.
  [[nodiscard]] std::vector<UnitRecords> genUnits() const {
    std::vector<UnitRecords> units;
    for (auto const& unit : m_units) {
      unit->check();
      units.push_back(unit->records());
    }
    return units;
  }

  std::vector<std::shared_ptr<UnitDraft>> m_units;
};

}  // namespace

void declareDrafts(py::module_& module) {
  py::class_<StepDraft>(module, "StepDraft")
      .def(py::init<>())
      .def("add_suction_zone", &StepDraft::addSuctionZone, py::arg("guid"), py::arg("name"),
           py::arg("active"))
      .def("add_joining_tong", &StepDraft::addJoiningTong, py::arg("id"), py::arg("name"), py::arg("state"))
      .def("add_join", &StepDraft::addJoin, py::arg("guid"), py::arg("id"), py::arg("name"), py::arg("state"))
      .def("add_line_join", &StepDraft::addLineJoin, py::arg("guid"), py::arg("id"), py::arg("name"),
           py::arg("state"), py::arg("simulationUnitJoin"), py::arg("skins"));
  py::class_<UnitDraft, std::shared_ptr<UnitDraft>>(module, "UnitDraft")
      .def("add_tool", &UnitDraft::addTool, py::arg("id"), py::arg("kind"), py::arg("series"),
           py::arg("tangential_force"))
      .def("define_join", &UnitDraft::defineJoin, py::arg("id"))
      .def("group", &UnitDraft::group, py::arg("family"), py::arg("name"), py::arg("tools"))
      .def("add_step", &UnitDraft::addStep, py::arg("step"))
      .def("show", &UnitDraft::show, py::arg("steps"));
  py::class_<ResultsDraft>(module, "ResultsDraft")
      .def(py::init<>())
      .def("add_unit", &ResultsDraft::addUnit, py::arg("id"), py::arg("name"))
      .def("results", &ResultsDraft::genResults, py::arg("name"))
      .def("write", &ResultsDraft::write, py::arg("path"));
}

}  // namespace Kestrel::ResultTables
