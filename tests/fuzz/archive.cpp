// Any bytes are either refused with one line that names an offset, or a document: what was read can be
// brought in step with units, and written to a document that is read as itself. The same goes for bytes whose
// frame (magic, versions, length, checksum) has been made right, so that the search gets behind it.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "VantaService_ExceptionHandling/KeException.h"
#include "VantaService_Parameterization/ArchiveListing.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/DamagedDocument.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

using namespace Kestrel;

[[noreturn]] void fail(std::string const& what) {
  std::cerr << what << '\n';
  std::abort();
}

void useLimits(std::shared_ptr<TablePropertiesData> const& data) {
  std::vector<SimulationUnitId> units;
  for (std::size_t i = 0; i < data->getChildCount(); ++i)
    if (auto const limit = std::dynamic_pointer_cast<TablePropertyLimit>(data->getChild(i)))
      units.push_back(limit->getSimUnitID());
  try {
    data->updateLimits(units);
  } catch (KeException const&) {
    // A document can say that a limit is the child of another limit.
  }
}

void tryDocument(std::string const& document) {
  static_cast<void>(genArchiveListing(document));
  std::shared_ptr<TablePropertiesData> data;
  try {
    data = loadDocument<TablePropertiesData>(document);
  } catch (ArchiveException const& error) {
    std::string const message = error.what();
    if (!message.starts_with("byte ") || message.find('\n') != std::string::npos || message.size() > 1000)
      fail("not a message: " + message);
    return;
  }
  auto const written = genDocument(data);
  auto const again = loadDocument<TablePropertiesData>(written);
  if (genDocument(again) != written) fail("a document that is not read as itself");
  useLimits(data);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string document(reinterpret_cast<char const*>(data), size);
  tryDocument(document);
  std::string const empty = genDocument(std::make_shared<TablePropertiesData>());
  constexpr std::size_t versionEnd = 12;
  std::copy_n(empty.begin(), std::min(size, versionEnd), document.begin());
  tryDocument(genResealedDocument(document));
  return 0;
}
