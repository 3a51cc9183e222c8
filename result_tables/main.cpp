#include <csignal>

#include "result_tables/command/CommandLine.h"

int main(int argc, char** argv) {
  // A pager that is closed early, and a file that may not grow, are told apart by the failed write.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  return static_cast<int>(Kestrel::ResultTables::runCommandLine(argc, argv));
}
