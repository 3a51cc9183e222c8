// Runs a fuzz target's property on the files that are named, without a fuzzer. A file that cannot be read is
// a failure, as is being given none.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "result_tables/base/File.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

int main(int argumentCount, char** arguments) try {
  if (argumentCount < 2) {
    std::cerr << "no input\n";
    return EXIT_FAILURE;
  }
  for (int i = 1; i < argumentCount; ++i) {
    auto const input = Kestrel::ResultTables::readFile(arguments[i]);
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(input.data()), input.size());
  }
  return EXIT_SUCCESS;
} catch (std::exception const& error) {
  std::cerr << error.what() << '\n';
  return EXIT_FAILURE;
}
