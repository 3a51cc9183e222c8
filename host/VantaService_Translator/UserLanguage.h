#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Kestrel::UserLanguage {

/// Looks an environment variable up; null where it is not set.
using Environment = std::function<char const*(char const* name)>;

/// The folders of the message catalogues that the user reads, best first, as gettext derives them.
///
/// The locale is the first of `LC_ALL`, `LC_MESSAGES` and `LANG` that is set and not empty. A locale that is
/// missing, `C` or `POSIX`, with or without a character set (`C.UTF-8`), gives no folder at all. Otherwise
/// the languages are those of the colon-separated list `LANGUAGE`, or the locale where that is missing or
/// empty; `C` or `POSIX` ends the list. Each language counts for its shorter forms too, without its
/// character set: `de_AT.UTF-8@euro` is `de_AT@euro`, `de@euro`, `de_AT`, `de`. No folder is named twice,
/// and none leads out of the directory of the catalogues.
[[nodiscard]] std::vector<std::string> catalogueFolders(Environment const& environment);

}  // namespace Kestrel::UserLanguage
