#include "result_tables/study/Database.h"

#include <gmock/gmock.h>

#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;

class RecordingDatabase : public Database {
 public:
  std::vector<std::string> calls;

  [[nodiscard]] std::string const& name() const override { return m_name; }
  void execute(Sql sql, Parameters) override { calls.emplace_back(sql.text()); }
  void query(Sql, Parameters, std::function<void(DatabaseRow const&)> const&) override {}
  void append(BulkTable const&, std::function<void(RowWriter&)> const&) override {}
  void begin(bool isWriting) override { calls.emplace_back(isWriting ? "begin writing" : "begin reading"); }
  void commit() override { calls.emplace_back("commit"); }
  void rollback() noexcept override { calls.emplace_back("rollback"); }
  [[nodiscard]] int version() override { return s_studyVersion; }
  void upgrade(int) override {}

 private:
  std::string m_name = "recorded";
};

TEST(Transaction, IsCommittedWhereTheWorkIsDone) {
  RecordingDatabase database;
  inTransaction(database, true, [&] { database.execute("work", {}); });
  inTransaction(database, false, [] {});
  EXPECT_THAT(database.calls, ElementsAre("begin writing", "work", "commit", "begin reading", "commit"));
}

TEST(Transaction, IsTakenBackWhereTheWorkFails) {
  RecordingDatabase database;
  EXPECT_THAT([&] { inTransaction(database, true, [] { throw Error("no"); }); }, ThrowsMessage<Error>("no"));
  EXPECT_THAT(database.calls, ElementsAre("begin writing", "rollback"));
}

TEST(Transaction, IsBegunAnewWhereAnotherWasInItsWayButNotForEver) {
  RecordingDatabase database;
  int times = 0;
  inTransaction(database, true, [&times] {
    if (++times < 3) throw TransactionConflict("conflict");
  });
  EXPECT_THAT(database.calls, ElementsAre("begin writing", "rollback", "begin writing", "rollback",
                                          "begin writing", "commit"));
  times = 0;
  EXPECT_THAT(
      [&] {
        inTransaction(database, true, [&times] {
          ++times;
          throw TransactionConflict("conflict");
        });
      },
      ThrowsMessage<Error>("conflict"));
  EXPECT_EQ(times, 10);
}

TEST(DatabaseNames, TellServersFromFiles) {
  EXPECT_TRUE(isServerAddress("postgresql://"));
  EXPECT_TRUE(isServerAddress("postgres://u@h/d"));
  EXPECT_FALSE(isServerAddress("postgresql.db"));
  EXPECT_FALSE(isServerAddress("file:postgresql://"));
}

TEST(DatabaseNames, TellDatabasesFromOtherFilesByTheirFirstBytes) {
  TemporaryFolder const folder;
  EXPECT_TRUE(isDatabaseFile(folder.write("a", std::string("SQLite format 3\0and more", 24))));
  EXPECT_FALSE(isDatabaseFile(folder.write("b", "SQLite format 3")));
  EXPECT_FALSE(isDatabaseFile(folder.write("c", R"({"format": "simulation-results"})")));
  EXPECT_FALSE(isDatabaseFile(folder.path() / "none"));
  EXPECT_FALSE(isDatabaseFile(folder.path()));
}

}  // namespace
}  // namespace Kestrel::ResultTables
