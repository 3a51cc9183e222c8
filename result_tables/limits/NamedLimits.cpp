#include "result_tables/limits/NamedLimits.h"

#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Translate.h"
#include "result_tables/limits/LimitsText.h"

namespace Kestrel::ResultTables {

NamedLimits::NamedLimits(std::string const& document) : m_document(document) {
  try {
    if (!document.empty()) m_content = readFile(document);
  } catch (Error const&) {
    m_failure = std::current_exception();
  }
}

void NamedLimits::checkFor(std::vector<std::string> const& results) const {
  if (m_document.empty() || m_failure || results.size() < 2 || isLimitsText(m_content)) return;
  throw Error(
      tr("--limits: expected one results file, as each has its own limits, found {}", results.size()));
}

LimitsContent NamedLimits::contentFor(std::string const& results) const {
  if (m_failure) std::rethrow_exception(m_failure);
  if (!m_document.empty()) return {m_document, m_content};
  if (results == s_standardStream) return {};
  return readLimitsContent(limitsDocumentOf(results));
}

ResultLimits limitsFor(std::string const& results, std::string const& document, ResultsFile const& file) {
  return NamedLimits(document).of(results, file);
}

}  // namespace Kestrel::ResultTables
