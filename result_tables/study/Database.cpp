#include "result_tables/study/Database.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/PostgresDatabase.h"
#include "result_tables/study/SqliteDatabase.h"

namespace Kestrel::ResultTables {

namespace {

/// Ends a transaction that was not committed.
class OpenTransaction {
 public:
  OpenTransaction(Database& database, bool isWriting) : m_database(&database) { database.begin(isWriting); }
  OpenTransaction(OpenTransaction const&) = delete;
  OpenTransaction& operator=(OpenTransaction const&) = delete;
  ~OpenTransaction() {
    if (m_database != nullptr) m_database->rollback();
  }

  void commit() {
    m_database->commit();
    m_database = nullptr;
  }

 private:
  Database* m_database;
};

}  // namespace

void failForDamage(std::string const& name, std::string const& what) {
  throw Error(tr("{}: the study is damaged ({}); take a copy that is not, or add the runs to a new one", name,
                 toPrintable(what)));
}

void refuseNewerVersion(std::string const& name, std::int64_t version) {
  if (version <= s_studyVersion) return;
  throw Error(tr("{}: expected a study of version {} or older, found version {}; a newer program can read it",
                 name, s_studyVersion, version));
}

void inTransaction(Database& database, bool isWriting, std::function<void()> const& work) {
  constexpr int mostTimes = 10;
  for (int time = 1;; ++time) {
    try {
      OpenTransaction transaction(database, isWriting);
      work();
      transaction.commit();
      return;
    } catch (TransactionConflict const&) {
      if (time == mostTimes) throw;
    }
  }
}

bool isServerAddress(std::string_view name) {
  return name.starts_with("postgresql://") || name.starts_with("postgres://");
}

bool isDatabaseFile(std::string const& name) {
  constexpr std::string_view beginning("SQLite format 3\0", 16);
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(name, ignored)) return false;
  std::array<char, beginning.size()> found{};
  std::ifstream file(name, std::ios::binary);
  file.read(found.data(), found.size());
  if (file.bad()) {
    throw Error(tr("{}: cannot be read or written ({}); what it held stands; see to its disk and try again",
                   toPrintable(name), std::generic_category().message(EIO)));
  }
  return std::string_view(found.data(), static_cast<std::size_t>(file.gcount())) == beginning;
}

std::unique_ptr<Database> openStudyDatabase(std::string const& name, DatabaseAccess access) {
  auto database = isServerAddress(name) ? openPostgresDatabase(name) : openSqliteDatabase(name, access);
  int const version = database->version();
  if (version == 0 && access == DatabaseAccess::read)
    throw Error(tr("{}: expected a study, found nothing in it", database->name()));
  if (version < s_studyVersion) {
    // Somebody else may do the same at this moment.
    inTransaction(*database, true, [&database] {
      if (int const found = database->version(); found < s_studyVersion) database->upgrade(found);
    });
  }
  return database;
}

}  // namespace Kestrel::ResultTables
