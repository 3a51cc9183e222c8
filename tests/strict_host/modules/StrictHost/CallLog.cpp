#include "StrictHost/CallLog.h"

namespace Kestrel::StrictHost {

std::vector<std::string>& callLog() {
  static std::vector<std::string> log;
  return log;
}

}  // namespace Kestrel::StrictHost
