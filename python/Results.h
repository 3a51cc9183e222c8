#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <utility>

#include "python/Calling.h"
#include "result_tables/limits/NamedLimits.h"
#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// Results with their limits as Python holds them. May be used on any number of threads, which wait while the
/// limits are changed.
class PythonResults {
 public:
  PythonResults(ResultsFile file, ResultLimits limits) : m_results{std::move(file), std::move(limits)} {}

  /// The results, which never change.
  [[nodiscard]] ResultsFile const& file() const { return m_results.file; }

  /// What `work` makes of results and limits, without Python's lock.
  template <typename Work>
  auto read(Work const& work) const {
    return withoutPython(file().givenName, [&] {
      std::shared_lock const lock(m_mutex);
      return work(m_results);
    });
  }

  /// The same of these and others, in this order.
  template <typename Work>
  auto readWith(PythonResults const& other, Work const& work) const {
    return withoutPython(file().givenName, [&] {
      std::shared_lock lock(m_mutex, std::defer_lock);
      std::shared_lock otherLock(other.m_mutex, std::defer_lock);
      if (this == &other)
        lock.lock();
      else
        std::lock(lock, otherLock);
      return work(m_results, other.m_results);
    });
  }

  /// The same for work that changes the limits.
  template <typename Work>
  void change(Work const& work) {
    withoutPython(file().givenName, [&] {
      std::unique_lock const lock(m_mutex);
      work(m_results);
    });
  }

 private:
  LimitedResults m_results;
  mutable std::shared_mutex m_mutex;  ///< of the limits
};

void declareResults(pybind11::module_& module);
void declareStudy(pybind11::module_& module);
void declareDrafts(pybind11::module_& module);

}  // namespace Kestrel::ResultTables
