#include "result_tables/study/PostgresDatabase.h"

#include <array>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/LibPq.h"

// Defined by schema/Schema.S.
extern "C" {
extern char const kestrel_study_postgresql_1[];
extern char const kestrel_study_postgresql_2[];
}

namespace Kestrel::ResultTables {

namespace {

constexpr std::array<char const*, s_studyVersion> s_postgresSteps = {kestrel_study_postgresql_1,
                                                                     kestrel_study_postgresql_2};

/// The server's numbers of types, which never change.
enum TypeNumber : Oid {
  typeBool = 16,
  typeInt8 = 20,
  typeInt2 = 21,
  typeInt4 = 23,
  typeText = 25,
  typeFloat8 = 701
};

struct FinishConnection {
  void operator()(PGconn* connection) const { libPq().finish(connection); }
};
using PgConnection = std::unique_ptr<PGconn, FinishConnection>;

struct ClearResult {
  void operator()(PGresult* result) const { libPq().clear(result); }
};
using PgResult = std::unique_ptr<PGresult, ClearResult>;

struct FreeOptions {
  void operator()(PQconninfoOption* options) const { libPq().conninfoFree(options); }
};

/// The first line of what the server or its client says.
std::string reasonOf(char const* message) {
  std::string_view text = message == nullptr ? "" : message;
  return toPrintable(text.substr(0, text.find('\n')));
}

/// An unsigned number of network byte order.
template <typename Number>
Number fromNetwork(char const* bytes) {
  Number number = 0;
  for (std::size_t i = 0; i < sizeof(Number); ++i)
    number = static_cast<Number>(number << 8U) | static_cast<unsigned char>(bytes[i]);
  return number;
}

template <typename Number>
void appendToNetwork(std::string& out, Number number) {
  for (std::size_t i = sizeof(Number); i-- > 0;) out += static_cast<char>(number >> (8 * i));
}

class PostgresRow : public DatabaseRow {
 public:
  PostgresRow(std::string const& name, PGresult const* result, int row)
      : m_name(&name), m_result(result), m_row(row) {}

  [[nodiscard]] bool isNull(int column) const override {
    return libPq().getisnull(m_result, m_row, column) != 0;
  }
  [[nodiscard]] std::int64_t integer(int column) const override {
    auto const* const bytes = bytesOf(column);
    switch (libPq().ftype(m_result, column)) {
      case typeBool:
        return *bytes;
      case typeInt2:
        return static_cast<std::int16_t>(fromNetwork<std::uint16_t>(bytes));
      case typeInt4:
        return static_cast<std::int32_t>(fromNetwork<std::uint32_t>(bytes));
      case typeInt8:
        return static_cast<std::int64_t>(fromNetwork<std::uint64_t>(bytes));
      default:
        fail();
    }
  }
  [[nodiscard]] double real(int column) const override {
    if (libPq().ftype(m_result, column) != typeFloat8) fail();
    return std::bit_cast<double>(fromNetwork<std::uint64_t>(bytesOf(column)));
  }
  [[nodiscard]] std::string text(int column) const override {
    if (libPq().ftype(m_result, column) != typeText) fail();
    return toValidUtf8(
        {bytesOf(column), static_cast<std::size_t>(libPq().getlength(m_result, m_row, column))});
  }

 private:
  [[nodiscard]] char const* bytesOf(int column) const {
    if (isNull(column)) fail();
    return libPq().getvalue(m_result, m_row, column);
  }
  [[noreturn]] void fail() const {
    throw Error(tr("{}: expected the tables of a study, found a value of another kind in them", *m_name));
  }

  std::string const* m_name;
  PGresult const* m_result;
  int m_row;
};

class PostgresDatabase : public Database {
 public:
  explicit PostgresDatabase(std::string const& address);

  [[nodiscard]] std::string const& name() const override { return m_name; }
  void execute(Sql sql, Parameters parameters) override { static_cast<void>(ask(sql, parameters)); }
  void query(Sql sql, Parameters parameters, std::function<void(DatabaseRow const&)> const& visit) override;
  void append(BulkTable const& table, std::function<void(RowWriter&)> const& write) override;
  void begin(bool isWriting) override;
  void commit() override { execute(Sql("COMMIT"), {}); }
  void rollback() noexcept override;
  [[nodiscard]] int version() override;
  void upgrade(int fromVersion) override;

  /// Sends some of the rows that are appended.
  void send(std::string_view rows);

 private:
  PgResult ask(Sql sql, Parameters parameters);
  void run(char const* script);
  void check(PGresult const* result, ExecStatusType expected) const;
  [[noreturn]] void failBecause(PGresult const* result) const;
  /// What the server says when a stream of rows has ended: an error, or nothing.
  PgResult takeErrorOfCopy();

  std::string m_name;
  PgConnection m_connection;
};

/// Puts rows into the server's binary form.
class CopyWriter : public RowWriter {
 public:
  CopyWriter(PostgresDatabase& database, std::span<ColumnType const> columns)
      : m_database(&database), m_columns(columns) {
    m_rows.reserve(s_atOnce + s_longestRow);
    // Signature, flags, and the length of an extension that there is not.
    m_rows.append("PGCOPY\n\377\r\n\0", 11);
    m_rows.append(8, '\0');
  }

  void null() override {
    beginColumn();
    appendToNetwork(m_rows, ~std::uint32_t{0});
  }
  void integer(std::int64_t value) override {
    switch (beginColumn()) {
      case ColumnType::truth:
        return appendNumber<std::int8_t>(value);
      case ColumnType::smallInteger:
        return appendNumber<std::int16_t>(value);
      case ColumnType::integer:
        return appendNumber<std::int32_t>(value);
      default:
        return appendNumber<std::int64_t>(value);
    }
  }
  void real(double value) override {
    beginColumn();
    appendToNetwork(m_rows, std::uint32_t{sizeof value});
    appendToNetwork(m_rows, std::bit_cast<std::uint64_t>(value));
  }
  void text(std::string_view value) override {
    beginColumn();
    appendToNetwork(m_rows, static_cast<std::uint32_t>(value.size()));
    m_rows += value;
  }
  void endRow() override {
    m_column = 0;
    if (m_rows.size() >= s_atOnce) flush();
  }

  void end() {
    appendToNetwork(m_rows, std::uint16_t{0xFFFF});
    flush();
  }

 private:
  static constexpr std::size_t s_atOnce = 1U << 18U;
  static constexpr std::size_t s_longestRow = 1U << 12U;

  ColumnType beginColumn() {
    if (m_column == 0) appendToNetwork(m_rows, static_cast<std::uint16_t>(m_columns.size()));
    return m_columns[m_column++];
  }

  template <typename Number>
  void appendNumber(std::int64_t value) {
    if (!std::in_range<Number>(value)) {
      throw Error(tr("{}: expected numbers up to {}, found {}", m_database->name(),
                     std::numeric_limits<Number>::max(), value));
    }
    appendToNetwork(m_rows, std::uint32_t{sizeof(Number)});
    appendToNetwork(m_rows, static_cast<std::make_unsigned_t<Number>>(value));
  }

  void flush() {
    m_database->send(m_rows);
    m_rows.clear();
  }

  PostgresDatabase* m_database;
  std::span<ColumnType const> m_columns;
  std::size_t m_column = 0;
  std::string m_rows;
};

/// What messages call the server. An `Error` for an address that is none, or that has a password: others on
/// the machine could read it, and the shell would keep it.
std::string nameOfServer(std::string const& address) {
  char* reason = nullptr;
  std::unique_ptr<PQconninfoOption, FreeOptions> const options(
      libPq().conninfoParse(address.c_str(), &reason));
  if (!options) {
    libPq().freemem(reason);
    throw Error(
        tr("DATABASE: expected postgresql://USER@HOST:PORT/DATABASE, found an address that cannot be read"));
  }
  for (auto const* option = options.get(); option->keyword != nullptr; ++option) {
    bool const isSecret = std::string_view(option->dispchar) == "*";
    if (isSecret && option->val != nullptr && *option->val != '\0') {
      throw Error(
          tr("DATABASE: expected an address without a password, found one with it; PGPASSWORD or the file "
             "~/.pgpass can have it"));
    }
  }
  return toPrintable(address);
}

PostgresDatabase::PostgresDatabase(std::string const& address) : m_name(nameOfServer(address)) {
  // Where a name comes twice, the last one counts.
  std::array<char const*, 5> const names = {"connect_timeout", "dbname", "client_encoding",
                                            "application_name", nullptr};
  std::array<char const*, 5> const values = {"30", address.c_str(), "UTF8", "result-tables", nullptr};
  m_connection.reset(libPq().connectdbParams(names.data(), values.data(), 1));
  if (!m_connection) throw std::bad_alloc();
  if (libPq().status(m_connection.get()) != CONNECTION_OK) {
    throw Error(
        tr("{}: cannot be connected to ({})", m_name, reasonOf(libPq().errorMessage(m_connection.get()))));
  }
  libPq().setNoticeProcessor(
      m_connection.get(), [](void*, char const*) {}, nullptr);
  static_assert(s_longestWait == std::chrono::seconds(60), "as below");
  run("SET lock_timeout = '60s'");
}

void PostgresDatabase::failBecause(PGresult const* result) const {
  auto* const connection = m_connection.get();
  auto const* const state = result == nullptr ? nullptr : libPq().resultErrorField(result, PG_DIAG_SQLSTATE);
  std::string_view const code = state == nullptr ? "" : state;
  // What the server says has a code.
  if (libPq().status(connection) != CONNECTION_OK || code.empty() || code.starts_with("57P")) {
    throw Error(
        tr("{}: the server has ended the connection; what was stored before stands; try again when it "
           "runs",
           m_name));
  }
  auto const reason = reasonOf(libPq().resultErrorField(result, PG_DIAG_MESSAGE_PRIMARY));
  for (std::string_view const conflict : {"40001", "40P01", "23505", "23503", "42P07"}) {
    if (code == conflict) throw TransactionConflict(tr("{}: cannot be used as a study ({})", m_name, reason));
  }
  if (code == "55P03") {
    throw Error(
        tr("{}: cannot be written, as others have been writing it all the time; try again when they have "
           "finished",
           m_name));
  }
  if (code == "42703" || code == "42P01")
    throw Error(tr("{}: expected the tables of a study and nothing else, found other ones", m_name));
  throw Error(tr("{}: cannot be used as a study ({})", m_name, reason));
}

void PostgresDatabase::check(PGresult const* result, ExecStatusType expected) const {
  auto const status = libPq().resultStatus(result);
  if (status != expected) failBecause(status == PGRES_FATAL_ERROR ? result : nullptr);
}

PgResult PostgresDatabase::ask(Sql sql, Parameters parameters) {
  std::vector<std::string> texts(parameters.size());
  std::vector<char const*> values(parameters.size(), nullptr);
  std::size_t index = 0;
  for (auto const& parameter : parameters) {
    auto& text = texts[index];
    if (auto const* const integer = std::get_if<std::int64_t>(&parameter))
      text = fmt::format("{}", *integer);
    else if (auto const* const real = std::get_if<double>(&parameter))
      text = shortestForm(*real);
    else if (auto const* const given = std::get_if<std::string_view>(&parameter))
      text = *given;
    if (!std::holds_alternative<std::monostate>(parameter)) values[index] = text.c_str();
    ++index;
  }
  constexpr int binary = 1;
  PgResult result(libPq().execParams(m_connection.get(), sql.text(), static_cast<int>(values.size()), nullptr,
                                     values.data(), nullptr, nullptr, binary));
  auto const status = libPq().resultStatus(result.get());
  if (status != PGRES_TUPLES_OK) check(result.get(), PGRES_COMMAND_OK);
  return result;
}

void PostgresDatabase::query(Sql sql, Parameters parameters,
                             std::function<void(DatabaseRow const&)> const& visit) {
  auto const result = ask(sql, parameters);
  int const count = libPq().ntuples(result.get());
  for (int i = 0; i < count; ++i) visit(PostgresRow(m_name, result.get(), i));
}

void PostgresDatabase::run(char const* script) {
  PgResult const result(libPq().exec(m_connection.get(), script));
  if (libPq().resultStatus(result.get()) != PGRES_TUPLES_OK) check(result.get(), PGRES_COMMAND_OK);
}

void PostgresDatabase::send(std::string_view rows) {
  if (libPq().putCopyData(m_connection.get(), rows.data(), static_cast<int>(rows.size())) != 1)
    failBecause(takeErrorOfCopy().get());
}

PgResult PostgresDatabase::takeErrorOfCopy() {
  PgResult error;
  while (PgResult result{libPq().getResult(m_connection.get())}) {
    auto const status = libPq().resultStatus(result.get());
    if (status == PGRES_COPY_IN) break;
    if (status == PGRES_FATAL_ERROR) error = std::move(result);
  }
  return error;
}

void PostgresDatabase::append(BulkTable const& table, std::function<void(RowWriter&)> const& write) {
  PgResult const begun(libPq().exec(m_connection.get(), table.copy.text()));
  check(begun.get(), PGRES_COPY_IN);
  try {
    CopyWriter writer(*this, table.columns);
    write(writer);
    writer.end();
  } catch (...) {
    // Where this cannot be done either, the end of the connection does it.
    if (libPq().putCopyEnd(m_connection.get(), "given up") == 1) takeErrorOfCopy();
    throw;
  }
  bool const isSent = libPq().putCopyEnd(m_connection.get(), nullptr) == 1;
  auto const error = takeErrorOfCopy();
  if (!isSent || error) failBecause(error.get());
}

void PostgresDatabase::begin(bool isWriting) {
  if (isWriting)
    execute(Sql("BEGIN ISOLATION LEVEL READ COMMITTED"), {});
  else
    execute(Sql("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"), {});
}

void PostgresDatabase::rollback() noexcept {
  // Where this cannot be done either, the end of the connection does it.
  if (libPq().transactionStatus(m_connection.get()) != PQTRANS_IDLE)
    PgResult(libPq().exec(m_connection.get(), "ROLLBACK"));
}

int PostgresDatabase::version() {
  bool isThere = false;
  query(Sql("SELECT (to_regclass('study') IS NOT NULL)::integer"), {},
        [&isThere](DatabaseRow const& row) { isThere = row.integer(0) != 0; });
  if (!isThere) return 0;
  std::int64_t version = 0;
  query(Sql("SELECT max(version) FROM study"), {}, [&version](DatabaseRow const& row) {
    if (!row.isNull(0)) version = row.integer(0);
  });
  if (version < 1) throw Error(tr("{}: expected a study, found a database of another kind", m_name));
  refuseNewerVersion(m_name, version);
  return static_cast<int>(version);
}

void PostgresDatabase::upgrade(int fromVersion) {
  for (auto i = static_cast<std::size_t>(fromVersion); i < s_postgresSteps.size(); ++i)
    run(s_postgresSteps[i]);
}

}  // namespace

std::unique_ptr<Database> openPostgresDatabase(std::string const& address) {
  return std::make_unique<PostgresDatabase>(address);
}

}  // namespace Kestrel::ResultTables
