// Opens a document whose classes this program has never heard of: they are registered by being linked.
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <typeinfo>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_PersistenceArchiver/Document.h"

int main(int, char** arguments) try {
  std::ifstream file(arguments[1], std::ios::binary);
  std::string const document{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  auto const root = Kestrel::loadDocument<Kestrel::Object>(document);
  auto const& object = *root;
  std::puts(typeid(object).name());
} catch (std::exception const& error) {
  std::puts(error.what());
  return 1;
}
