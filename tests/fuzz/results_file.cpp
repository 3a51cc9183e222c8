// Any text is either read as a results file or refused with an Error of one line of valid UTF-8.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/results/ResultsFile.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace Kestrel::ResultTables;
  // A text of exactly this size, so that the sanitizer sees what is read beyond it.
  std::string const text(reinterpret_cast<char const*>(data), size);
  try {
    static_cast<void>(readResults("input", text));
  } catch (Error const& error) {
    std::string const message = error.what();
    if (!message.starts_with("input: ") || message != toPrintable(message) || message.size() > 1000) {
      std::cerr << "not a message: " << message << '\n';
      std::abort();
    }
  }
  return 0;
}
