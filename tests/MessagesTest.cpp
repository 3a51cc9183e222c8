#include <gtest/gtest.h>

#include "support/Shell.h"

// What the program says that it could not do, in the languages that it has. The English texts are tested with
// what fails.

namespace Kestrel::ResultTables {
namespace {

class Messages : public testing::Test {
 protected:
  Messages() {
    m_folder.write("bad.json", R"({"format": "simulation-results", "version": 2})");
    m_folder.write("cut.json", "{");
    m_folder.write("latin1.csv",
                   "time,Gr\xF6\xDF"
                   "e\n0,1\n");
    m_folder.write("map.json", "{}");
  }

  /// The program's message in `language` on a command that must fail.
  [[nodiscard]] std::string message(std::string const& language, std::string const& command) const {
    auto const result = runShell(m_folder.path(), "LANG=" + language + ".UTF-8 $P " + command);
    EXPECT_EQ(result.exitCode, 2) << command;
    EXPECT_EQ(result.out, "") << command;
    return result.err;
  }

  TemporaryFolder m_folder;
};

TEST_F(Messages, AreGermanForGermans) {
  EXPECT_EQ(message("de_DE", "show none.json"),
            "result-tables: none.json: kann nicht gelesen werden: Datei oder Verzeichnis nicht gefunden\n");
  EXPECT_EQ(message("de_DE", "show bad.json"),
            "result-tables: bad.json: /version: erwartet: Version 1; gefunden: Version 2\n");
  EXPECT_EQ(
      message("de_DE", "show cut.json"),
      "result-tables: cut.json: Zeile 1, Spalte 2: erwartet: der Name eines Members in Anführungszeichen; "
      "gefunden: das Ende der Datei\n");
  EXPECT_EQ(message("de_DE", "import csv latin1.csv --map map.json"),
            "result-tables: latin1.csv: Zeile 1, Byte 8: erwartet: Text in UTF-8; gefunden: Byte 0xF6\n");
  EXPECT_EQ(
      message("de_DE", "show - </dev/null"),
      "result-tables: Standardeingabe: Zeile 1, Spalte 1: erwartet: ein JSON-Dokument; gefunden: das Ende "
      "der Datei\n");
}

TEST_F(Messages, AreJapaneseForJapanese) {
  EXPECT_EQ(message("ja_JP", "show none.json"),
            "result-tables: none.json: 読み込めません: ファイルまたはディレクトリがありません\n");
  EXPECT_EQ(message("ja_JP", "show bad.json"),
            "result-tables: bad.json: /version: 期待: バージョン 1、実際: バージョン 2\n");
  EXPECT_EQ(message("ja_JP", "import csv latin1.csv --map map.json"),
            "result-tables: latin1.csv: 1 行 8 バイト目: 期待: UTF-8 のテキスト、実際: バイト 0xF6\n");
}

TEST_F(Messages, AreEnglishForEverybodyElse) {
  EXPECT_EQ(message("en_GB", "show - </dev/null"),
            "result-tables: standard input: line 1, column 1: expected a JSON document, found the end of the "
            "file\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables
