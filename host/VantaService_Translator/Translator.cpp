#include "VantaService_Translator/Translator.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

#include "VantaService_Translator/MessageCatalogue.h"
#include "VantaService_Translator/UserLanguage.h"

namespace Kestrel {

namespace {

/// Where the catalogues are, seen from this library: as installed, and as built.
std::vector<std::filesystem::path> catalogueDirectories() {
  if (auto const* directory = std::getenv("KESTREL_LOCALEDIR"); directory && *directory != '\0') {
    return {directory};
  }
  static char const anchor = 0;
  Dl_info library{};
  if (::dladdr(&anchor, &library) == 0 || !library.dli_fname) return {};
  std::error_code error;
  auto const folder = std::filesystem::canonical(library.dli_fname, error).parent_path();
  if (error) return {};
  return {folder / KESTREL_INSTALLED_LOCALEDIR, folder / KESTREL_BUILT_LOCALEDIR};
}

std::vector<MessageCatalogue> readCatalogues() {
  std::vector<MessageCatalogue> catalogues;
  auto const directories = catalogueDirectories();
  for (auto const& language : UserLanguage::catalogueFolders(&std::getenv)) {
    for (auto const& directory : directories) {
      auto catalogue = MessageCatalogue::read(directory / language / "LC_MESSAGES" / "kestrel.mo");
      if (!catalogue) continue;
      catalogues.push_back(std::move(*catalogue));
      break;
    }
  }
  return catalogues;
}

/// Best language first.
std::vector<MessageCatalogue> const& catalogues() {
  static auto const all = readCatalogues();
  return all;
}

// Read when this library is loaded, before another thread can translate: a first reader that waits for the
// loader, and a library that translates while the loader loads it, would wait for each other.
[[maybe_unused]] auto const& s_catalogues = catalogues();

}  // namespace

std::string Translator::translate(char const* context, char const* text, char const* comment, int count) {
  auto const& all = catalogues();
  if (all.empty()) return text;
  auto const contextWithComment = comment ? std::string(context) + '|' + comment : std::string();
  for (auto const& catalogue : all) {
    if (comment)
      if (auto const* translation = catalogue.find(contextWithComment.c_str(), text, count))
        return translation;
    if (auto const* translation = catalogue.find(context, text, count)) return translation;
  }
  return text;
}

}  // namespace Kestrel
