#include <csignal>

#include "result_tables/CommandLine.h"

int main(int argc, char** argv) {
  // A pager that is closed early is told apart by the failed write.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  return static_cast<int>(Kestrel::ResultTables::runCommandLine(argc, argv));
}
