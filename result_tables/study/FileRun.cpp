#include "result_tables/study/FileRun.h"

#include <fmt/chrono.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <utility>

#include "result_tables/base/Digest.h"
#include "result_tables/base/Family.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

namespace {

/// What of a file is added, the same in whatever order it was said.
std::string describeSelection(TableSelection const& selection) {
  std::string text;
  for (auto const& unit : std::set(selection.units.begin(), selection.units.end()))
    text += fmt::format("unit {}\n", unit);
  for (auto const family : std::set(selection.families.begin(), selection.families.end()))
    text += fmt::format("family {}\n", familyName(family));
  if (selection.teaching) text += "teaching\n";
  return text;
}

}  // namespace

FileRun::FileRun(std::string name, std::string const& results, std::map<std::string, std::string> labels,
                 TableSelection const& selection, NamedLimits const& limits)
    : m_selection(selection) {
  m_run.name = std::move(name);
  m_run.file = results;
  checkStorable(m_run.name, m_run.name);
  checkStorable(m_run.file, m_run.file);
  m_run.program = RESULT_TABLES_VERSION;
  m_run.labels = std::move(labels);
  m_run.selection = describeSelection(selection);
  m_text = readInput(results);
  m_limits = limits.contentFor(results);
  m_run.contentDigest = toHexadecimal(sha256Of(m_text.text()));
  if (m_limits.content) m_run.limitsDigest = toHexadecimal(sha256Of(*m_limits.content));
}

RunData FileRun::read() && {
  auto const file = readResults(m_run.file, std::move(m_text), m_selection.units);
  auto const tables = genResultTables(file, m_selection, m_limits.limitsOf(file));
  return genRunData(std::move(m_run), tables);
}

std::string usualRunNameOf(std::string const& results) {
  return std::filesystem::path(results).replace_extension().string();
}

std::string timeOfAdding() {
  auto const now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(now));
}

}  // namespace Kestrel::ResultTables
