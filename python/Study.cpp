#include <pybind11/stl.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

#include "python/Results.h"
#include "python/TableFrames.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/FileRun.h"
#include "result_tables/study/RunDifferences.h"
#include "result_tables/study/RunReading.h"
#include "result_tables/study/StoredTables.h"
#include "result_tables/study/TrendQuestion.h"
#include "result_tables/study/WorstQuestion.h"

namespace py = pybind11;

namespace Kestrel::ResultTables {

namespace {

/// A study as Python holds it. May be used on any number of threads, one after the other.
class PythonStudy {
 public:
  /// Makes a new study where there is none, if that is wanted.
  PythonStudy(std::string const& name, bool isMade)
      : m_name(name), m_study(withoutPython(name, [&] {
          return std::make_unique<Study>(name, isMade ? DatabaseAccess::write : DatabaseAccess::read);
        })) {}

  [[nodiscard]] std::string const& name() const { return m_name; }

  /// What `work` makes of the study, without Python's lock.
  template <typename Work>
  auto use(Work const& work) {
    return withoutPython(m_name, [&] {
      std::scoped_lock const lock(m_mutex);
      if (!m_study)
        throw Error(tr("{}: expected a study that is open, found a closed one", toPrintable(m_name)));
      return work(*m_study);
    });
  }

  void close() {
    py::gil_scoped_release const release;
    std::scoped_lock const lock(m_mutex);
    m_study.reset();
  }

 private:
  std::string m_name;
  std::unique_ptr<Study> m_study;  ///< null when closed
  std::mutex m_mutex;
};

std::string_view wordFor(Added added) {
  switch (added) {
    case Added::asNew:
      return "added";
    case Added::asReplacement:
      return "replaced";
    case Added::labelsOnly:
      return "labels";
    case Added::notAgain:
      break;
  }
  return "unchanged";
}

std::string_view addTo(PythonStudy& study, std::string const& results, std::string const& run,
                       std::map<std::string, std::string> const& labels, PythonSelection const& selection,
                       std::string const& limits) {
  return study.use([&](Study& used) {
    auto const name = run.empty() ? usualRunNameOf(results) : run;
    FileRun file(name, results, labels, selection.asTables(), NamedLimits(limits));
    if (used.has(file.run())) {
      if (auto const added = used.addLabels(file.run())) return wordFor(*added);
    }
    auto data = std::move(file).read();
    data.run.added = timeOfAdding();
    return wordFor(used.add(data));
  });
}

void removeFrom(PythonStudy& study, std::vector<std::string> const& runs) {
  study.use([&](Study& used) { used.remove(runs); });
}

py::dict runsOf(PythonStudy& study) {
  return study.use([](Study& used) { return genRunsFrame(used.runs()); }).take();
}

py::dict worstOf(PythonStudy& study, PythonSelection const& selection, std::size_t top) {
  return study
      .use([&](Study& used) { return genWorstFrame(askWorst(used.database(), selection.asTables(), top)); })
      .take();
}

/// The frame and how many runs it leaves out.
py::tuple trendOf(PythonStudy& study, std::string const& unit, std::string const& family,
                  std::string const& item, std::string const& key, std::string const& by) {
  std::size_t leftOut = 0;
  auto frame = study.use([&](Study& used) {
    auto const type = rowNamed("family", s_families, family).dataType;
    auto const answer = askTrend(used.database(), {unit, type, item, key, by});
    leftOut = answer.leftOut;
    return genTrendFrame(answer.trends);
  });
  return py::make_tuple(frame.take(), leftOut);
}

py::dict runValuesOf(PythonStudy& study, std::vector<std::string> const& runs,
                     PythonSelection const& selection) {
  auto frame = study.use([&](Study& used) {
    auto const tables = selection.asTables();
    checkSelection(used, tables);
    std::vector<RunValues> values;
    values.reserve(runs.size());
    for (auto const& run : runs) values.push_back(readRunValues(used, run, tables));
    return genRunValuesFrame(values);
  });
  return frame.take();
}

/// The tables of the selected units of a run.
std::vector<ResultTable> tablesOf(StoredTables const& stored, TableSelection const& selection) {
  auto const units = stored.units();
  for (auto const& wanted : selection.units) {
    if (std::ranges::none_of(units.units, [&](auto const* unit) { return isNamedBy(*unit, wanted); }))
      refuseUnit(units, wanted);
  }
  std::vector<ResultTable> tables;
  for (std::size_t i = 0; i < units.units.size(); ++i) {
    auto const isWanted = [&](std::string const& wanted) { return isNamedBy(*units.units[i], wanted); };
    if (!selection.units.empty() && std::ranges::none_of(selection.units, isWanted)) continue;
    std::ranges::move(stored.genTables(i, selection), std::back_inserter(tables));
  }
  return tables;
}

py::list sectionsOfRun(PythonStudy& study, std::string const& run, PythonSelection const& selection) {
  auto sections = study.use([&](Study& used) {
    StoredTables const stored(used.name(), used.read(run));
    return genSectionFrames(tablesOf(stored, selection.asTables()));
  });
  py::list taken;
  for (auto& section : sections) taken.append(section.take());
  return taken;
}

py::tuple differencesOfRuns(PythonStudy& study, std::string const& before, std::string const& after,
                            PythonSelection const& selection, double absolute, double relative) {
  std::size_t compared = 0;
  auto frame = study.use([&](Study& used) {
    auto const differences =
        genRunDifferences(used, before, after, selection.asTables(), toleranceOf(absolute, relative));
    compared = differences.countCompared();
    return genDifferencesFrame(differences);
  });
  return py::make_tuple(frame.take(), compared);
}

}  // namespace

void declareStudy(py::module_& module) {
  py::class_<PythonStudy>(module, "Study")
      .def(py::init<std::string const&, bool>(), py::arg("name"), py::arg("create"))
      .def_property_readonly("name", [](PythonStudy const& study) { return pythonPath(study.name()); })
      .def("close", &PythonStudy::close)
      .def("add", addTo, py::arg("results"), py::arg("run"), py::arg("labels"), py::arg("selection"),
           py::arg("limits"))
      .def("remove", removeFrom, py::arg("runs"))
      .def("runs", runsOf)
      .def("worst", worstOf, py::arg("selection"), py::arg("top"))
      .def("trend", trendOf, py::arg("unit"), py::arg("family"), py::arg("item"), py::arg("key"),
           py::arg("by"))
      .def("values", runValuesOf, py::arg("runs"), py::arg("selection"))
      .def("sections", sectionsOfRun, py::arg("run"), py::arg("selection"))
      .def("differences", differencesOfRuns, py::arg("before"), py::arg("after"), py::arg("selection"),
           py::arg("abs"), py::arg("rel"));
}

}  // namespace Kestrel::ResultTables
