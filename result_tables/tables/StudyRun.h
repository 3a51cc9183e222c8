#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "result_tables/tables/Summary.h"

namespace Kestrel::ResultTables {

/// A run of a study: the extremes of one results file, with their limits and verdicts.
struct StudyRun {
  std::string name;           ///< unique in the study
  std::string file;           ///< as it was given
  std::string added;          ///< when, in UTC: "2026-11-22T09:30:00Z"
  std::string program;        ///< version of the program that added it
  std::string contentDigest;  ///< SHA-256 of the results file
  std::string limitsDigest;   ///< SHA-256 of the document or the text of limits; empty: the defaults
  std::string selection;      ///< what of the file was added; empty: all of it
  std::map<std::string, std::string> labels = {};
  std::size_t valueCount = 0;
  TableCounts counts = {};
  std::optional<double> worst = {};  ///< the highest utilisation; none where no value has one
};

}  // namespace Kestrel::ResultTables
