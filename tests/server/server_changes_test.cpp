// What other programs change in a server's database, as far as it is seen without reading rows.
#include <chrono>
#include <functional>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/catalogue/change_look.h"
#include "platform/store/odbc/driver/answer.h"
#include "tests/server/server_fixture.h"

namespace store {
namespace {

constexpr std::chrono::seconds kPatience{30};

bool waitUntil(const std::function<bool()>& isSo) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (!isSo()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
  }
  return true;
}

class ServerChangesTest : public StoreTest {
 protected:
  void SetUp() override {
    runOnServer("CREATE TABLE t (k integer PRIMARY KEY)", database_);
    open();
  }
  static std::int64_t countOf(Backend& backend) {
    std::int64_t count = -1;
    const Status status = backend.countOthersChanges(&count);
    EXPECT_TRUE(status) << status.message();
    return count;
  }
  void loseConversations() const {
    runOnServer("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = '" + database_ + "'",
                "postgres");
  }
};

TEST_F(ServerChangesTest, WhatAnotherProgramChangesIsSeen) {
  std::int64_t last = countOf(*backend_);
  for (const char* change :
       {"INSERT INTO t SELECT generate_series(1, 3)", "UPDATE t SET k = k + 10 WHERE k = 3",
        "DELETE FROM t WHERE k = 1", "CREATE TABLE another (k integer)"}) {
    runOnServer(change, database_);
    EXPECT_TRUE(waitUntil([&] { return countOf(*backend_) != last; })) << change;
    last = countOf(*backend_);
  }
}

TEST_F(ServerChangesTest, WithoutAConversationNoneIsBegunForIt) {
  const std::int64_t before = countOf(*backend_);
  loseConversations();
  std::int64_t count = 77;
  ASSERT_TRUE(waitUntil([&] { return !backend_->countOthersChanges(&count); }));
  EXPECT_TRUE(count == 77 || count == before);
  count = 77;
  EXPECT_FALSE(backend_->countOthersChanges(&count));
  EXPECT_EQ(77, count);
  // Who needs the server next is told of the loss, and then it goes on.
  const Status told = tryRun("INSERT INTO t VALUES (9)");
  EXPECT_EQ(ErrorCode::inputOutput, told.code());
  EXPECT_EQ(0u, told.message().find("The connection to the server was lost")) << told.message();
  run("INSERT INTO t VALUES (9)");
  EXPECT_EQ("9", columnOf("t"));
}

/// Looks that are not kept apart.
class ChangeLookTest : public ServerChangesTest {
 protected:
  ChangeLookTest() {
    FileDsn dsn;
    EXPECT_TRUE(readFileDsn(linkTo(database_), &dsn));
    connection_ = std::make_unique<OdbcConnection>(connectionTextOf(dsn), std::vector<std::string>());
    EXPECT_TRUE(connection_->ensureOpen());
    look_ = std::make_unique<ChangeLook>(*connection_, std::chrono::milliseconds(0));
  }
  std::int64_t count() {
    std::int64_t counted = -1;
    const Status status = look_->count(&counted);
    EXPECT_TRUE(status) << status.message();
    return counted;
  }
  void change(const std::string& sql) {
    OdbcStatement statement(*connection_);
    const Status status = statement.run(sql);
    ASSERT_TRUE(status) << status.message();
    connection_->noteChangedRows(statement.affected());
  }
  /// Looks until the server has counted so many rows of t, as another program sees it.
  bool lookUntilCounted(std::int64_t rows) {
    OtherProgram other(path_);
    return waitUntil([&] {
      count();
      return other.ask(
                 "SELECT n_tup_ins + n_tup_upd + n_tup_del FROM pg_stat_user_tables WHERE relname = 't'") ==
             std::to_string(rows);
    });
  }

  std::unique_ptr<OdbcConnection> connection_;
  std::unique_ptr<ChangeLook> look_;
};

TEST_F(ChangeLookTest, OwnChangesMakeNoDifferenceHoweverLateTheyAreCounted) {
  const std::int64_t first = count();
  change("INSERT INTO t SELECT generate_series(1, 5)");
  change("UPDATE t SET k = k + 10 WHERE k > 3");
  ASSERT_TRUE(lookUntilCounted(7));
  EXPECT_EQ(first, count());
  runOnServer("INSERT INTO t VALUES (99)", database_);
  ASSERT_TRUE(lookUntilCounted(8));
  EXPECT_NE(first, count()) << "another's does all the same";
}

TEST_F(ChangeLookTest, AnOwnDefinitionMakesNoDifference) {
  const std::int64_t first = count();
  change("CREATE TABLE mine (k integer)");
  connection_->noteDefinition();
  EXPECT_EQ(first, count());
  EXPECT_EQ(first, count());
}

TEST_F(ChangeLookTest, ChangesOfBothAreSeenWhicheverIsCountedFirst) {
  const std::int64_t first = count();
  change("INSERT INTO t VALUES (1)");
  runOnServer("INSERT INTO t VALUES (2)", database_);
  ASSERT_TRUE(lookUntilCounted(2));
  EXPECT_NE(first, count());
}

}  // namespace
}  // namespace store
