// Any text is either refused as a text of limits with an Error of one line of valid UTF-8, or says limits
// that are written as a text that is read as itself.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/limits/LimitsText.h"
#include "result_tables/results/UnitSelection.h"
#include "support/LimitsTesting.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

using namespace Kestrel::ResultTables;

[[noreturn]] void fail(std::string const& what) {
  std::cerr << what << '\n';
  std::abort();
}

/// What is said of limits that were read, as a text.
std::string rewritten(ResultsFile const& file, std::string const& text) {
  return genLimitsText(genLimits(readLimitsText("input", text), file), file, selectUnits(file, {}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static auto const file = readResults("r.json", s_resultsOfThreeUnits);
  // A text of exactly this size, so that the sanitizer sees what is read beyond it.
  std::string const text(reinterpret_cast<char const*>(data), size);
  std::string written;
  try {
    written = rewritten(file, text);
  } catch (Error const& error) {
    std::string const message = error.what();
    if (!message.starts_with("input: ") || message != toPrintable(message) || message.size() > 1000)
      fail("not a message: " + message);
    return 0;
  }
  if (rewritten(file, written) != written) fail("a text that is not read as itself: " + written);
  return 0;
}
