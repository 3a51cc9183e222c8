#pragma once

#include <string>

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {

/// A workbook taken apart.
class Workbook {
 public:
  explicit Workbook(std::string const& bytes) : m_file(m_folder.write("book.xlsx", bytes)) {}

  /// The text of a part: "xl/workbook.xml". Throws where there is none.
  [[nodiscard]] std::string part(std::string const& name) const {
    return outputOfCommand(
        "python3 -c 'import sys, zipfile; "
        "sys.stdout.write(zipfile.ZipFile(sys.argv[1]).read(sys.argv[2]).decode())' " +
        quotedForShell(m_file.native()) + ' ' + quotedForShell(name));
  }

 private:
  TemporaryFolder m_folder;
  std::filesystem::path m_file;
};

}  // namespace Kestrel::ResultTables
