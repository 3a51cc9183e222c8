#pragma once

#include <exception>
#include <string>
#include <vector>

#include "result_tables/limits/LimitsDocument.h"
#include "result_tables/limits/ResultLimits.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// The document or the text of limits that is named for results files, read once for all of them. Any thread.
class NamedLimits {
 public:
  /// Reads it unless `document` is empty. What is wrong with it is an `Error` of each results file.
  explicit NamedLimits(std::string const& document);

  /// For several results files: an `Error` when it is the document of one of them. A text of limits is for
  /// all.
  void checkFor(std::vector<std::string> const& results) const;

  /// What results are compared with. Where nothing is named it is what stands beside the results, if
  /// anything.
  [[nodiscard]] LimitsContent contentFor(std::string const& results) const;
  [[nodiscard]] ResultLimits of(std::string const& results, ResultsFile const& file) const {
    return contentFor(results).limitsOf(file);
  }

 private:
  std::string m_document;
  std::string m_content;
  std::exception_ptr m_failure;  ///< why there is no content; null where it could be read
};

/// The same for one results file.
[[nodiscard]] ResultLimits limitsFor(std::string const& results, std::string const& document,
                                     ResultsFile const& file);

}  // namespace Kestrel::ResultTables
