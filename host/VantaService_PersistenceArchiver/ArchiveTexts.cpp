#include "VantaService_PersistenceArchiver/ArchiveTexts.h"

#include <cstddef>
#include <iterator>

#include "VantaService_Translator/Translator.h"

namespace Kestrel {

std::string archiveText(char const* text, std::initializer_list<std::string> values) {
  auto const translation = Translator::translate("PersistenceArchiver", text, nullptr, -1);
  std::string filled;
  for (auto at = translation.begin(); at != translation.end(); ++at) {
    auto const next = std::next(at);
    auto const place =
        *at == '%' && next != translation.end() ? static_cast<std::size_t>(*next - '1') : values.size();
    if (place < values.size()) {
      filled += values.begin()[place];
      at = next;
    } else {
      filled += *at;
    }
  }
  return filled;
}

}  // namespace Kestrel
