// Merely parsing a JSON document with the libraries of others, or only reading its bytes, as programs of
// their own: what the processor and the memory spend on it is that of the process. Prints how many units the
// document has, or its bytes' sum.

#include <fcntl.h>
#include <rapidjson/document.h>
#include <simdjson.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

std::size_t parseWithSimdjson(char const* path) {
  simdjson::dom::parser parser;
  simdjson::dom::array const units = parser.load(path)["units"];
  return units.size();
}

std::string contentOf(char const* path) {
  std::string content(std::filesystem::file_size(path), '\0');
  std::ifstream(path, std::ios::binary).read(content.data(), static_cast<std::streamsize>(content.size()));
  return content;
}

std::size_t parseWithRapidJson(char const* path) {
  auto const text = contentOf(path);
  rapidjson::Document document;
  document.Parse<rapidjson::kParseFullPrecisionFlag>(text.data(), text.size());
  return document["units"].Size();
}

std::size_t parseWithNlohmannJson(char const* path) {
  return nlohmann::json::parse(contentOf(path)).at("units").size();
}

/// The least that reading takes: blocks that stay in the cache, and each word of them looked at.
std::size_t readBytes(char const* path) {
  int const file = ::open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  std::vector<std::uint64_t> block(32768);
  std::uint64_t sum = 0;
  for (ssize_t count = 0; (count = ::read(file, block.data(), block.size() * sizeof block[0])) > 0;) {
    auto const words = static_cast<std::size_t>(count) / sizeof block[0];
    for (std::size_t i = 0; i < words; ++i) sum += block[i];
  }
  ::close(file);
  return sum;
}

}  // namespace

int main(int argc, char** argv) {
  std::map<std::string, std::function<std::size_t(char const*)>> const jobs{
      {"nlohmann", parseWithNlohmannJson},
      {"rapidjson", parseWithRapidJson},
      {"read", readBytes},
      {"simdjson", parseWithSimdjson}};
  auto const job = argc == 3 ? jobs.find(argv[1]) : jobs.end();
  if (job == jobs.end()) {
    std::cerr << "usage: parse nlohmann|rapidjson|read|simdjson FILE\n";
    return EXIT_FAILURE;
  }
  auto const result = job->second(argv[2]);
  std::cout << result << '\n';
  return result == 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
