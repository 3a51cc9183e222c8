#include "result_tables/results/Sample.h"

#include <algorithm>
#include <iterator>
#include <string>

// Defined by Sample.S.
extern "C" {
extern char const kestrel_sample_panel_begin[];
extern char const kestrel_sample_panel_end[];
extern char const kestrel_sample_door_line_begin[];
extern char const kestrel_sample_door_line_end[];
}

namespace Kestrel::ResultTables {

ResultsFile readSample() {
  std::string const name = "built-in sample";
  auto sample = readResults(name, {kestrel_sample_panel_begin, kestrel_sample_panel_end});
  auto doorLine = readResults(name, {kestrel_sample_door_line_begin, kestrel_sample_door_line_end});
  std::move(doorLine.units.begin(), doorLine.units.end(), std::back_inserter(sample.units));
  return sample;
}

}  // namespace Kestrel::ResultTables
