#pragma once

#include <string>
#include <vector>

namespace Kestrel::StrictHost {

/// What the library asked the host for, in order, since somebody cleared it. One thread.
std::vector<std::string>& callLog();

}  // namespace Kestrel::StrictHost
