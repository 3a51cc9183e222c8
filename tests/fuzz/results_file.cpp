// Any text is either read as a results file or refused with an Error of one line of valid UTF-8, and it makes
// no difference whether it is read fast, by several threads or by the shapes of the format alone.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/results/ResultsFile.h"
#include "support/ResultsDescription.h"

namespace {

using namespace Kestrel::ResultTables;

/// Content or message.
std::string outcomeOf(std::string const& text, ReadingWays ways) {
  try {
    return Description(readResults("input", text, {}, ways)).text();
  } catch (Error const& error) {
    std::string message = error.what();
    if (!message.starts_with("input: ") || message != toPrintable(message) || message.size() > 1000) {
      std::cerr << "not a message: " << message << '\n';
      std::abort();
    }
    return message;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  // A text of exactly this size, so that the sanitizer sees what is read beyond it.
  std::string const text(reinterpret_cast<char const*>(data), size);
  auto const outcome = outcomeOf(text, {.atOnce = false, .threads = 0});
  for (std::size_t const threads : {std::size_t{0}, std::size_t{2}}) {
    if (auto const other = outcomeOf(text, {.atOnce = true, .threads = threads}); other != outcome) {
      std::cerr << "by the shapes: " << outcome << "\nfast, " << threads << " threads: " << other << '\n';
      std::abort();
    }
  }
  return 0;
}
