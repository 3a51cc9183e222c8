#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "result_tables/base/Error.h"

namespace Kestrel::ResultTables {

/// A statement that stands in the program: nothing that was read can become part of one. Its parameters are
/// $1, $2 and so on, each of which is bound.
class Sql {
 public:
  template <std::size_t size>
  // NOLINTNEXTLINE(google-explicit-constructor): statements are written where they are used
  consteval Sql(char const (&text)[size]) : m_text(text) {}

  [[nodiscard]] char const* text() const { return m_text; }

 private:
  char const* m_text;
};

/// What is bound to a parameter; the first is NULL. Texts are UTF-8 without NUL.
using Parameter = std::variant<std::monostate, std::int64_t, double, std::string_view>;
using Parameters = std::initializer_list<Parameter>;

/// What a column of a table holds. A truth value is the integer 0 or 1 to all but statements, which must say
/// `CAST(… AS integer)` where they compare it with one.
enum class ColumnType { truth, smallInteger, integer, bigInteger, real, text };

/// A row of an answer, valid while its callback runs. A value of another type than the asked one is an
/// `Error`: the database is damaged.
class DatabaseRow {
 public:
  virtual ~DatabaseRow() = default;
  [[nodiscard]] virtual bool isNull(int column) const = 0;
  [[nodiscard]] virtual std::int64_t integer(int column) const = 0;
  /// Bit for bit what was stored; of NaN it is the quiet one.
  [[nodiscard]] virtual double real(int column) const = 0;
  [[nodiscard]] virtual std::string text(int column) const = 0;
};

/// The version of the tables that this program knows. Each has a step in schema/ that makes it of the one
/// before; a released step never changes.
inline constexpr int s_studyVersion = 2;

/// How long a writer waits until the others have finished.
inline constexpr std::chrono::seconds s_longestWait{60};

/// Takes the values of new rows, column by column.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  virtual void null() = 0;
  virtual void integer(std::int64_t value) = 0;
  virtual void real(double value) = 0;
  virtual void text(std::string_view value) = 0;
  virtual void endRow() = 0;
};

/// A table that gets many rows at a time.
struct BulkTable {
  Sql insert;  ///< of one row, where rows are inserted one by one
  Sql copy;    ///< that begins a stream of rows, where there is such a thing
  std::span<ColumnType const> columns;
};

/// Another writer has done what this transaction cannot stand beside: begun anew it will find that done.
struct TransactionConflict : Error {
  using Error::Error;
};

/// A connection to a database of one kind. Whatever it cannot do is an `Error` of one line that names the
/// database, never with a password. For one thread at a time.
class Database {
 public:
  virtual ~Database() = default;

  /// What messages call it.
  [[nodiscard]] virtual std::string const& name() const = 0;

  virtual void execute(Sql sql, Parameters parameters = {}) = 0;
  /// Calls `visit` with each row of the answer; may be nested.
  virtual void query(Sql sql, Parameters parameters,
                     std::function<void(DatabaseRow const&)> const& visit) = 0;
  /// Appends the rows that `write` writes. REQUIRES: within a transaction.
  virtual void append(BulkTable const& table, std::function<void(RowWriter&)> const& write) = 0;

  /// Begins a transaction that may write, or one that reads one state throughout.
  virtual void begin(bool isWriting) = 0;
  virtual void commit() = 0;
  virtual void rollback() noexcept = 0;

  /// The version of the study's tables; 0 where there is nothing at all. An `Error` where there is anything
  /// else than a study, or one of a newer version.
  [[nodiscard]] virtual int version() = 0;
  /// Makes of tables of an older version, or of none, those of `s_studyVersion`. REQUIRES: within a
  /// transaction that writes.
  virtual void upgrade(int fromVersion) = 0;
};

/// Throws the `Error` for a study that holds what none can, of which messages call it `name`.
[[noreturn]] void failForDamage(std::string const& name, std::string const& what);

/// Throws the `Error` for a study of a version that this program does not know yet; none for others.
void refuseNewerVersion(std::string const& name, std::int64_t version);

/// Does `work` in a transaction, whole or not at all; again where another writer was in its way.
void inTransaction(Database& database, bool isWriting, std::function<void()> const& work);

/// Whether a name is that of a database server.
[[nodiscard]] bool isServerAddress(std::string_view name);

/// Whether the file of that name begins as the file of a database does; an `Error` where its disk fails.
[[nodiscard]] bool isDatabaseFile(std::string const& name);

enum class DatabaseAccess { read, write };

/// Opens the study of that name: a file or a server's address. One of an older version is brought up to this
/// one. Where there is none it is made, or where it is only to be read, an `Error`.
[[nodiscard]] std::unique_ptr<Database> openStudyDatabase(std::string const& name, DatabaseAccess access);

}  // namespace Kestrel::ResultTables
