// Runs of 80,000 values each that are added to a study: 20,000 bolts with four values, as the files of one
// model have them. Reading and evaluating the files is not part of it. The peer of a study in a file is
// SQLite itself with the same table, statement and settings, which stores the values and nothing else. A
// server is the one that the environment names (tests/support/with-postgresql.sh); it works in processes of
// its own, so that its time is that of the clock, `wall`.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "result_tables/study/PostgresDatabase.h"
#include "result_tables/study/Study.h"

namespace Kestrel::ResultTables {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t s_elements = 20'000;
constexpr std::size_t s_columns = 4;
constexpr std::size_t s_values = s_elements * s_columns;
/// A schema of its own, so that nothing else on the server is touched.
constexpr char const* s_server = "postgresql:///postgres?options=-csearch_path%3Dkestrel_benchmark";

RunData genRun(std::size_t number) {
  RunData data;
  data.run.name = "run " + std::to_string(number);
  data.run.file = data.run.name + ".json";
  data.run.added = "2026-11-22T09:30:00Z";
  data.run.contentDigest = std::string(56, '0') + std::to_string(10'000'000 + number);
  auto& section = data.sections.emplace_back();
  section.unit = "OP20";
  section.unitId = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01";
  section.family = MaxValueGroupContainer::DataType::Bolts;
  section.name = "Forces";
  section.elementCount = s_elements;
  for (auto const* const key :
       {"ClampNormalForce", "ClampClosingForce", "ClampSupportingForce", "ClampTangentialForce"})
    section.columns.push_back({key, "N", ColumnLimit{30.0, "N"}, {}, 0.9});
  std::mt19937_64 random(number);
  std::normal_distribution<double> force(0.0, 10.0);
  for (std::uint32_t i = 0; i < s_elements; ++i) {
    data.elements.push_back({0, "", "Bolt " + std::to_string(i), 0});
    for (std::uint32_t k = 0; k < s_columns; ++k)
      data.values.push_back({i, k, force(random), random() % 100, std::nullopt, 100, 0, true, false});
  }
  data.run.valueCount = data.values.size();
  return data;
}

std::size_t runCount(benchmark::State const& state) { return static_cast<std::size_t>(state.range(0)); }

/// A file in a folder of its own.
class TemporaryFile {
 public:
  TemporaryFile() : m_folder((std::filesystem::temp_directory_path() / "study-XXXXXX").string()) {
    if (::mkdtemp(m_folder.data()) == nullptr) throw std::runtime_error("no folder for a study");
  }
  TemporaryFile(TemporaryFile const&) = delete;
  TemporaryFile& operator=(TemporaryFile const&) = delete;
  ~TemporaryFile() { std::filesystem::remove_all(m_folder); }

  [[nodiscard]] std::string path() const { return m_folder + "/study.db"; }
  [[nodiscard]] double size() const { return static_cast<double>(std::filesystem::file_size(path())); }

 private:
  std::string m_folder;
};

/// Adds what `add` adds, and says what of the clock that has taken.
template <typename Add>
void addRuns(benchmark::State& state, Add const& add) {
  Milliseconds taken{};
  for (std::size_t i = 0; i < runCount(state); ++i) {
    state.PauseTiming();
    auto const data = genRun(i);
    state.ResumeTiming();
    auto const begin = Clock::now();
    add(data);
    taken += Clock::now() - begin;
  }
  state.counters["wall"] = taken.count();
}

void countBytes(benchmark::State& state, double bytes) {
  state.counters["bytes_per_value"] = bytes / static_cast<double>(runCount(state) * s_values);
}

void addingToFile(benchmark::State& state) {
  for ([[maybe_unused]] auto const iteration : state) {
    TemporaryFile const file;
    {
      Study study(file.path(), DatabaseAccess::write);
      addRuns(state, [&study](RunData const& data) { study.add(data); });
    }
    countBytes(state, file.size());
  }
}

double bytesOnServer() {
  double bytes = 0.0;
  openPostgresDatabase(s_server)->query(
      "SELECT sum(pg_total_relation_size(c.oid))::double precision FROM pg_class c JOIN pg_namespace n "
      "ON n.oid = c.relnamespace WHERE n.nspname = 'kestrel_benchmark' AND c.relkind = 'r'",
      {}, [&bytes](DatabaseRow const& row) { bytes = row.real(0); });
  return bytes;
}

void clearServer() {
  auto const database = openPostgresDatabase(s_server);
  database->execute("DROP SCHEMA IF EXISTS kestrel_benchmark CASCADE");
  database->execute("CREATE SCHEMA kestrel_benchmark");
}

void addingToServer(benchmark::State& state) {
  if (std::getenv("PGHOST") == nullptr) {
    state.SkipWithError("no server is named by the environment");
    return;
  }
  for ([[maybe_unused]] auto const iteration : state) {
    state.PauseTiming();
    clearServer();
    state.ResumeTiming();
    Study study(s_server, DatabaseAccess::write);
    addRuns(state, [&study](RunData const& data) { study.add(data); });
    countBytes(state, bytesOnServer());
  }
}

void check(int code) {
  if (code != SQLITE_OK && code != SQLITE_DONE) throw std::runtime_error(sqlite3_errstr(code));
}

void insertingIntoSqlite(benchmark::State& state) {
  for ([[maybe_unused]] auto const iteration : state) {
    TemporaryFile const file;
    sqlite3* connection = nullptr;
    check(sqlite3_open(file.path().c_str(), &connection));
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> const closing(connection, sqlite3_close_v2);
    auto const run = [connection](char const* sql) {
      check(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr));
    };
    run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
        "CREATE TABLE study_values (run_id INTEGER NOT NULL, element_no INTEGER NOT NULL, column_no INTEGER "
        "NOT NULL, value NOT NULL, "
        "step INTEGER, time, count INTEGER NOT NULL, nans INTEGER NOT NULL, valid INTEGER NOT NULL, exceeded "
        "INTEGER NOT NULL, "
        "PRIMARY KEY (run_id, element_no, column_no)) WITHOUT ROWID");
    sqlite3_stmt* insert = nullptr;
    check(sqlite3_prepare_v2(connection, "INSERT INTO study_values VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", -1,
                             &insert, nullptr));
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> const finalizing(insert, sqlite3_finalize);
    sqlite3_int64 number = 0;
    addRuns(state, [&](RunData const& data) {
      run("BEGIN IMMEDIATE");
      ++number;
      for (auto const& value : data.values) {
        sqlite3_bind_int64(insert, 1, number);
        sqlite3_bind_int64(insert, 2, value.element);
        sqlite3_bind_int64(insert, 3, value.column);
        sqlite3_bind_double(insert, 4, value.value);
        sqlite3_bind_int64(insert, 5, static_cast<sqlite3_int64>(value.step.value()));
        sqlite3_bind_int64(insert, 7, static_cast<sqlite3_int64>(value.count));
        sqlite3_bind_int64(insert, 8, static_cast<sqlite3_int64>(value.nans));
        sqlite3_bind_int64(insert, 9, value.isValid ? 1 : 0);
        sqlite3_bind_int64(insert, 10, value.isExceeded ? 1 : 0);
        check(sqlite3_step(insert));
        check(sqlite3_reset(insert));
      }
      run("COMMIT");
    });
  }
}

BENCHMARK(addingToFile)->ArgName("runs")->Arg(10)->Arg(30)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(insertingIntoSqlite)->ArgName("runs")->Arg(10)->Arg(30)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(addingToServer)->ArgName("runs")->Arg(10)->Arg(30)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Kestrel::ResultTables

BENCHMARK_MAIN();
