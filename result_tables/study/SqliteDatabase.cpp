#include "result_tables/study/SqliteDatabase.h"

#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

// Defined by schema/Schema.S.
extern "C" {
extern char const kestrel_study_sqlite_1[];
extern char const kestrel_study_sqlite_2[];
}

namespace Kestrel::ResultTables {

namespace {

/// Marks the files of studies: "KsSt".
constexpr std::int64_t s_applicationId = 0x4B735374;
constexpr std::array<char const*, s_studyVersion> s_sqliteSteps = {kestrel_study_sqlite_1,
                                                                   kestrel_study_sqlite_2};
/// NaN, which SQLite would turn into NULL.
constexpr std::string_view s_nan = "NaN";

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, CloseConnection>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// Lets a statement be run again.
struct StatementReset {
  sqlite3_stmt* statement;
  explicit StatementReset(sqlite3_stmt* of) : statement(of) {}
  StatementReset(StatementReset const&) = delete;
  StatementReset& operator=(StatementReset const&) = delete;
  ~StatementReset() {
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
  }
};

/// Waits for others, a random time each so that none of many always comes too late.
struct BusyWait {
  Milliseconds longest;
  Clock::time_point since = {};
  std::minstd_rand random{std::random_device()()};

  static int wait(void* self, int times) {
    auto& busy = *static_cast<BusyWait*>(self);
    if (times == 0) busy.since = Clock::now();
    if (Clock::now() - busy.since >= busy.longest) return 0;
    std::this_thread::sleep_for(Milliseconds(1 + busy.random() % 10));
    return 1;
  }
};

[[noreturn]] void failBecause(std::string const& name, int code, std::string_view said) {
  // SQLite quotes what is in the file.
  auto const reason = toPrintable(said);
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      throw Error(
          tr("{}: cannot be written, as others have been writing it all the time; try again when they "
             "have finished",
             name));
    case SQLITE_NOTADB:
      throw Error(tr("{}: expected a study, found a file of another kind", name));
    case SQLITE_CORRUPT:
      failForDamage(name, std::string(said));
    case SQLITE_FULL:
      throw Error(
          tr("{}: cannot be written ({}); what it held stands; make room and try again", name, reason));
    case SQLITE_IOERR:
      throw Error(tr("{}: cannot be read or written ({}); what it held stands; see to its disk and try again",
                     name, reason));
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
      throw Error(
          tr("{}: cannot be written ({}); see that the file and its folder may be written, and try again",
             name, reason));
    default:
      throw Error(tr("{}: cannot be used as a study ({})", name, reason));
  }
}

/// The file in which SQLite keeps what is not in another yet.
std::string logOf(std::string const& file) { return file + "-wal"; }

class SqliteRow : public DatabaseRow {
 public:
  SqliteRow(std::string const& name, sqlite3_stmt* statement) : m_name(&name), m_statement(statement) {}

  [[nodiscard]] bool isNull(int column) const override {
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
  }
  [[nodiscard]] std::int64_t integer(int column) const override {
    expect(sqlite3_column_type(m_statement, column) == SQLITE_INTEGER);
    return sqlite3_column_int64(m_statement, column);
  }
  [[nodiscard]] double real(int column) const override {
    if (sqlite3_column_type(m_statement, column) == SQLITE_FLOAT)
      return sqlite3_column_double(m_statement, column);
    expect(text(column) == s_nan);
    return std::numeric_limits<double>::quiet_NaN();
  }
  [[nodiscard]] std::string text(int column) const override {
    expect(sqlite3_column_type(m_statement, column) == SQLITE_TEXT);
    auto const* const begin = reinterpret_cast<char const*>(sqlite3_column_text(m_statement, column));
    if (begin == nullptr) throw std::bad_alloc();
    return toValidUtf8({begin, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))});
  }

 private:
  void expect(bool isAsItShouldBe) const {
    if (!isAsItShouldBe) failBecause(*m_name, SQLITE_CORRUPT, tr("a value of another kind"));
  }

  std::string const* m_name;
  sqlite3_stmt* m_statement;
};

class SqliteDatabase : public Database, private RowWriter {
 public:
  /// In memory, empty.
  SqliteDatabase();
  SqliteDatabase(std::string const& file, DatabaseAccess access, Milliseconds wait);

  [[nodiscard]] std::string const& name() const override { return m_name; }
  void execute(Sql sql, Parameters parameters) override { query(sql, parameters, nullptr); }
  void query(Sql sql, Parameters parameters, std::function<void(DatabaseRow const&)> const& visit) override;
  void append(BulkTable const& table, std::function<void(RowWriter&)> const& write) override;
  void begin(bool isWriting) override;
  void commit() override { execute(Sql("COMMIT"), {}); }
  void rollback() noexcept override;
  [[nodiscard]] int version() override;
  void upgrade(int fromVersion) override;

 private:
  void open(std::string const& path, int flags);
  void configure();
  /// Whether the file can be read, which SQLite first tries when it is asked for something.
  [[nodiscard]] bool isReadable();
  /// Whether others have left work that is not in the file yet.
  [[nodiscard]] bool hasLog() const;
  void openUnwritable();
  void useWriteAheadLog();

  void run(char const* script) { check(sqlite3_exec(m_connection.get(), script, nullptr, nullptr, nullptr)); }
  void check(int code) const {
    if (code != SQLITE_OK) failBecause(m_name, code, sqlite3_errmsg(m_connection.get()));
  }
  sqlite3_stmt* prepared(Sql sql);
  [[nodiscard]] Statement prepare(char const* sql) const;
  void bind(sqlite3_stmt* statement, Parameters parameters) const;
  [[nodiscard]] std::int64_t number(Sql sql);
  [[nodiscard]] std::vector<std::string> definitions();
  [[nodiscard]] int checkedVersion();

  void null() override { check(sqlite3_bind_null(m_insert, ++m_column)); }
  void integer(std::int64_t value) override { check(sqlite3_bind_int64(m_insert, ++m_column, value)); }
  void real(double value) override { bindReal(m_insert, ++m_column, value); }
  void text(std::string_view value) override { bindText(m_insert, ++m_column, value); }
  void endRow() override;
  void bindReal(sqlite3_stmt* statement, int index, double value) const;
  void bindText(sqlite3_stmt* statement, int index, std::string_view value) const;

  std::string m_file;
  std::string m_name;
  BusyWait m_busy;
  Connection m_connection;
  std::unordered_map<char const*, Statement> m_statements;  ///< go before the connection
  sqlite3_stmt* m_insert = nullptr;                         ///< while rows are appended
  int m_column = 0;
};

SqliteDatabase::SqliteDatabase() : m_busy{} { open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY); }

SqliteDatabase::SqliteDatabase(std::string const& file, DatabaseAccess access, Milliseconds wait)
    : m_file(file), m_name(toPrintable(file)), m_busy{wait} {
  std::error_code ignored;
  auto const status = std::filesystem::status(file, ignored);
  bool const isThere = std::filesystem::exists(status);
  if (isThere && !std::filesystem::is_regular_file(status))
    throw Error(tr("{}: expected a file, found something else", m_name));
  if (!isThere && access == DatabaseAccess::read) throw Error(tr("{}: there is no such study", m_name));
  bool const hasContent = isThere && std::filesystem::file_size(file, ignored) > 0;
  if (isThere && ::access(file.c_str(), R_OK) != 0)
    throw Error(tr("{}: cannot be read; see that you may read it", m_name));
  if (hasContent && !isDatabaseFile(file)) failBecause(m_name, SQLITE_NOTADB, "");
  // A file that is only read is opened for writing where that is possible: whoever was ended in the middle of
  // writing may have left work behind.
  open(file, SQLITE_OPEN_READWRITE | (access == DatabaseAccess::write ? SQLITE_OPEN_CREATE : 0));
  if (isReadable())
    run("PRAGMA synchronous=FULL");
  else if (access == DatabaseAccess::read)
    openUnwritable();
  if (access == DatabaseAccess::write) useWriteAheadLog();
}

void SqliteDatabase::open(std::string const& path, int flags) {
  m_statements.clear();
  sqlite3* connection = nullptr;
  // A name that begins like an address is still that of a file.
  bool const isFile = (flags & (SQLITE_OPEN_URI | SQLITE_OPEN_MEMORY)) == 0;
  auto const name = isFile && !path.starts_with('/') ? "./" + path : path;
  int const code = sqlite3_open_v2(name.c_str(), &connection,
                                   flags | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
  m_connection.reset(connection);
  if (connection == nullptr) throw std::bad_alloc();
  check(code);
  configure();
}

void SqliteDatabase::configure() {
  auto* const connection = m_connection.get();
  check(sqlite3_busy_handler(connection, BusyWait::wait, &m_busy));
  // Files come from anywhere: what they define is neither trusted nor run, and their pages are checked.
  check(sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr));
  check(sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr));
  check(sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr));
  check(sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr));
  // What others have left in the log of a file that may be no study is not for this program to bring in.
  check(sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, hasLog() ? 1 : 0, nullptr));
  run("PRAGMA cell_size_check=ON; PRAGMA mmap_size=0");
}

bool SqliteDatabase::isReadable() {
  int const code =
      sqlite3_exec(m_connection.get(), "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
  if (code == SQLITE_OK) return true;
  int const kind = code & 0xFF;
  if (kind != SQLITE_CANTOPEN && kind != SQLITE_READONLY) check(code);
  return false;
}

bool SqliteDatabase::hasLog() const {
  std::error_code error;
  return std::filesystem::file_size(logOf(m_file), error) > 0 && !error;
}

void SqliteDatabase::openUnwritable() {
  if (hasLog()) {
    throw Error(
        tr("{}: cannot be read where it cannot be written, as somebody has not finished with it; copy it "
           "together with {} to where it can",
           m_name, toPrintable(logOf(m_file))));
  }
  std::string address = "file:";
  for (char const c : std::filesystem::absolute(m_file).string()) {
    if (c == '%' || c == '?' || c == '#')
      address += fmt::format("%{:02x}", static_cast<unsigned>(c));
    else
      address += c;
  }
  open(address + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

void SqliteDatabase::useWriteAheadLog() {
  // The file of somebody else stays as it is.
  static_cast<void>(version());
  int code = SQLITE_BUSY;
  // SQLite does not wait for others here.
  for (int times = 0; code == SQLITE_BUSY;) {
    code = sqlite3_exec(m_connection.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr) & 0xFF;
    if (code == SQLITE_BUSY && BusyWait::wait(&m_busy, times++) == 0) break;
  }
  check(code);
}

Statement SqliteDatabase::prepare(char const* sql) const {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(m_connection.get(), sql, -1, &statement, nullptr));
  return Statement(statement);
}

sqlite3_stmt* SqliteDatabase::prepared(Sql sql) {
  auto& statement = m_statements[sql.text()];
  if (!statement) statement = prepare(sql.text());
  return statement.get();
}

void SqliteDatabase::bindReal(sqlite3_stmt* statement, int index, double value) const {
  if (std::isnan(value))
    bindText(statement, index, s_nan);
  else
    check(sqlite3_bind_double(statement, index, value));
}

void SqliteDatabase::bindText(sqlite3_stmt* statement, int index, std::string_view value) const {
  check(sqlite3_bind_text64(statement, index, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void SqliteDatabase::bind(sqlite3_stmt* statement, Parameters parameters) const {
  int number = 0;
  for (auto const& parameter : parameters) {
    auto const name = fmt::format("${}", ++number);
    int const index = sqlite3_bind_parameter_index(statement, name.c_str());
    if (auto const* const integer = std::get_if<std::int64_t>(&parameter))
      check(sqlite3_bind_int64(statement, index, *integer));
    else if (auto const* const real = std::get_if<double>(&parameter))
      bindReal(statement, index, *real);
    else if (auto const* const text = std::get_if<std::string_view>(&parameter))
      bindText(statement, index, *text);
  }
}

void SqliteDatabase::query(Sql sql, Parameters parameters,
                           std::function<void(DatabaseRow const&)> const& visit) {
  auto* const statement = prepared(sql);
  StatementReset const reset(statement);
  bind(statement, parameters);
  int code = sqlite3_step(statement);
  for (; code == SQLITE_ROW; code = sqlite3_step(statement)) {
    if (visit) visit(SqliteRow(m_name, statement));
  }
  if (code != SQLITE_DONE) check(code);
}

void SqliteDatabase::append(BulkTable const& table, std::function<void(RowWriter&)> const& write) {
  m_insert = prepared(table.insert);
  StatementReset const reset(m_insert);
  m_column = 0;
  write(*this);
}

void SqliteDatabase::endRow() {
  int const code = sqlite3_step(m_insert);
  if (code != SQLITE_DONE) check(code);
  check(sqlite3_reset(m_insert));
  m_column = 0;
}

void SqliteDatabase::begin(bool isWriting) {
  if (isWriting)
    execute(Sql("BEGIN IMMEDIATE"), {});
  else
    execute(Sql("BEGIN"), {});
}

void SqliteDatabase::rollback() noexcept {
  // Where this cannot be done either, the end of the connection does it.
  if (sqlite3_get_autocommit(m_connection.get()) == 0)
    sqlite3_exec(m_connection.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

std::int64_t SqliteDatabase::number(Sql sql) {
  std::int64_t number = 0;
  query(sql, {}, [&number](DatabaseRow const& row) { number = row.integer(0); });
  return number;
}

std::vector<std::string> SqliteDatabase::definitions() {
  std::vector<std::string> definitions;
  // The tables of SQLite itself are no more than its notes.
  query(Sql("SELECT type || ' ' || name || ' ' || coalesce(sql, '') FROM sqlite_schema "
            "WHERE name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY 1"),
        {}, [&definitions](DatabaseRow const& row) { definitions.push_back(row.text(0)); });
  return definitions;
}

int SqliteDatabase::version() {
  int version = 0;
  // Others may make the tables between one question and the next.
  if (sqlite3_get_autocommit(m_connection.get()) != 0)
    inTransaction(*this, false, [&] { version = checkedVersion(); });
  else
    version = checkedVersion();
  check(sqlite3_db_config(m_connection.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr));
  return version;
}

int SqliteDatabase::checkedVersion() {
  auto const found = definitions();
  auto const application = number(Sql("PRAGMA application_id"));
  if (found.empty() && application == 0) return 0;
  if (application != s_applicationId)
    throw Error(tr("{}: expected a study, found a database of another kind", m_name));
  auto const version = number(Sql("PRAGMA user_version"));
  refuseNewerVersion(m_name, version);
  // A file that defines anything else was not made by this program.
  SqliteDatabase fresh;
  for (int i = 0; i < version; ++i) fresh.run(s_sqliteSteps[static_cast<std::size_t>(i)]);
  if (version < 1 || found != fresh.definitions())
    throw Error(tr("{}: expected the tables of a study and nothing else, found other ones", m_name));
  return static_cast<int>(version);
}

void SqliteDatabase::upgrade(int fromVersion) {
  for (auto i = static_cast<std::size_t>(fromVersion); i < s_sqliteSteps.size(); ++i) run(s_sqliteSteps[i]);
}

}  // namespace

std::unique_ptr<Database> openSqliteDatabase(std::string const& file, DatabaseAccess access,
                                             Milliseconds wait) {
  return std::make_unique<SqliteDatabase>(file, access, wait);
}

}  // namespace Kestrel::ResultTables
