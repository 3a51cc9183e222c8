#include "VantaService_Translator/UserLanguage.h"

#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <string_view>

namespace Kestrel::UserLanguage {

namespace {

std::string valueOf(Environment const& environment, char const* name) {
  auto const* value = environment(name);
  return value ? value : "";
}

std::string localeName(Environment const& environment) {
  for (auto const* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (auto value = valueOf(environment, name); !value.empty()) return value;
  }
  return {};
}

bool isNoLanguage(std::string_view locale) {
  auto const name = locale.substr(0, locale.find('.'));
  return name == "C" || name == "POSIX";
}

/// language[_territory][.charset][@modifier]; each part but the language with its separator, or empty.
struct LocaleParts {
  explicit LocaleParts(std::string_view locale) {
    auto const cut = [&locale](char separator) {
      auto const part = locale.substr(std::min(locale.find(separator), locale.size()));
      locale.remove_suffix(part.size());
      return std::string(part);
    };
    modifier = cut('@');
    cut('.');
    territory = cut('_');
    language = locale;
  }

  std::string language;
  std::string territory;
  std::string modifier;
};

}  // namespace

std::vector<std::string> catalogueFolders(Environment const& environment) {
  auto const locale = localeName(environment);
  if (locale.empty() || isNoLanguage(locale)) return {};
  auto languages = valueOf(environment, "LANGUAGE");
  if (languages.empty()) languages = locale;

  std::vector<std::string> folders;
  auto const add = [&folders](std::string const& folder) {
    if (std::find(folders.begin(), folders.end(), folder) == folders.end()) folders.push_back(folder);
  };
  std::vector<std::string> names;
  boost::algorithm::split(names, languages, boost::algorithm::is_any_of(":"));
  for (auto const& name : names) {
    if (isNoLanguage(name)) break;
    LocaleParts const parts(name);
    if (parts.language.empty() || name.find('/') != std::string::npos) continue;
    add(parts.language + parts.territory + parts.modifier);
    add(parts.language + parts.modifier);
    add(parts.language + parts.territory);
    add(parts.language);
  }
  return folders;
}

}  // namespace Kestrel::UserLanguage
