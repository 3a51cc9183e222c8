#include "result_tables/Sample.h"

#include <string>

// Defined by Sample.S.
extern "C" {
extern char const kestrel_sample_door_line_begin[];
extern char const kestrel_sample_door_line_end[];
}

namespace Kestrel::ResultTables {

ResultsFile readSample() {
  return readResults("built-in door line", {kestrel_sample_door_line_begin, kestrel_sample_door_line_end});
}

}  // namespace Kestrel::ResultTables
