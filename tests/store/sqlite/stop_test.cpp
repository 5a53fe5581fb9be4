// Statements that never end, or not for a long time: who watches can stop them, nothing has changed then, and
// the database can be used on.
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

constexpr const char* kEndless =
    "WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s) SELECT count(*) FROM s, t";

class StopTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    prepare(
        "CREATE TABLE t (a Integer, b Text);"
        "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 20000) "
        "INSERT INTO t SELECT i, printf('%050d', i) FROM s");
    open();
  }

  /// Answers true from the `count`th question on.
  void stopAtQuestion(int count) {
    asked_ = 0;
    backend_->askWhileBusy([this, count](Busy busy) {
      EXPECT_EQ(Busy::working, busy);
      return ++asked_ >= count;
    });
  }

  void expectUsable() {
    backend_->askWhileBusy(nullptr);
    EXPECT_EQ("20000", columnOf("SELECT count(*) FROM t"));
    run("UPDATE t SET b = 'changed' WHERE a = 1");
    EXPECT_EQ("changed", columnOf("SELECT b FROM t WHERE a = 1"));
    EXPECT_EQ("ok", OtherProgram(path_).ask("PRAGMA integrity_check"));
  }

  std::atomic<int> asked_{0};
};

TEST_F(StopTest, AnEndlessSelectIsStopped) {
  stopAtQuestion(3);
  std::unique_ptr<Recordset> rows;
  const Status status = tryOpen(kEndless, &rows);
  EXPECT_EQ(ErrorCode::stopped, status.code());
  EXPECT_EQ("The statement was stopped.", status.message());
  EXPECT_EQ(nullptr, rows);
  EXPECT_EQ(3, asked_);
  expectUsable();
}

TEST_F(StopTest, TheTakingOfKeysIsStopped) {
  stopAtQuestion(2);
  std::unique_ptr<Recordset> rows;
  EXPECT_EQ(ErrorCode::stopped, tryOpen("Select * from [t]", &rows).code());
  expectUsable();
}

TEST_F(StopTest, AChangeThatIsStoppedHasChangedNothing) {
  for (const char* sql : {"UPDATE t SET b = upper(b) || 'x'", "DELETE FROM t WHERE a > 0",
                          "INSERT INTO t SELECT x.a, y.b FROM t x, t y",
                          "CREATE TABLE u AS SELECT x.a FROM t x, t y", "CREATE INDEX i ON t (b, a)"}) {
    SCOPED_TRACE(sql);
    stopAtQuestion(4);
    EXPECT_EQ(ErrorCode::stopped, tryRun(sql).code());
    backend_->askWhileBusy(nullptr);
    EXPECT_EQ("0", columnOf("SELECT count(*) FROM t WHERE b LIKE '%x'"));
    EXPECT_EQ("t", columnOf("SELECT name FROM sqlite_schema"));
  }
  expectUsable();
}

TEST_F(StopTest, ACopyOfTheFileIsStoppedAndLeavesNothing) {
  run("INSERT INTO t SELECT a, b || b FROM t");
  const std::filesystem::path copy = folder_.file("copy.cdb");
  stopAtQuestion(2);
  EXPECT_EQ(ErrorCode::stopped, backend_->saveCopy(utf8Of(copy)).code());
  EXPECT_EQ(2, asked_);
  for (const char* name : {"copy.cdb", "copy.cdb-journal"}) EXPECT_FALSE(exists(folder_.file(name))) << name;
  EXPECT_EQ("20000", OtherProgram(path_).ask("SELECT count(*) FROM t WHERE length(b) = 50"));
  OtherProgram(path_).run("DELETE FROM t WHERE length(b) > 50");
  expectUsable();
}

TEST_F(StopTest, ACopyIsOfOneMomentWhateverIsWrittenMeanwhile) {
  OtherProgram(path_).run("PRAGMA journal_mode=WAL; INSERT INTO t SELECT a, b || b FROM t");
  OtherProgram other(path_);
  int writings = 0;
  backend_->askWhileBusy([&](Busy) {
    other.run("UPDATE t SET a = a + 100000");
    ++writings;
    return false;
  });
  const std::filesystem::path copy = folder_.file("copy.cdb");
  const Status copied = backend_->saveCopy(utf8Of(copy));
  backend_->askWhileBusy(nullptr);
  ASSERT_TRUE(copied) << copied.message();
  EXPECT_GT(writings, 1) << "it was copied in one step";
  OtherProgram reader(copy);
  EXPECT_EQ("ok", reader.ask("PRAGMA integrity_check"));
  EXPECT_EQ("40000 1 20000", reader.ask("SELECT count(*) || ' ' || min(a) || ' ' || max(a) FROM t"));
}

TEST_F(StopTest, AnUpdateOfARecordAsksNobodyOnceItIsBeingStored) {
  const auto rows = records("Select * from [t]");
  backend_->askWhileBusy([](Busy) { return true; });
  // Each of them is short, and together they come to the point at which somebody is asked: at any step, but
  // not at one after which the change is in the file.
  int refused = 0;
  for (int n = 0; n < 500 && !HasFailure(); ++n) {
    Status status = rows->setValue(1, std::to_string(n));
    if (status) status = rows->update();
    if (status) continue;
    ++refused;
    EXPECT_EQ(ErrorCode::stopped, status.code());
    EXPECT_NE(std::to_string(n), OtherProgram(path_).ask("SELECT b FROM t WHERE a = 1"));
    ASSERT_TRUE(rows->cancelUpdate());
  }
  EXPECT_GT(refused, 0);
  expectUsable();
}

TEST_F(StopTest, AnotherThreadStopsWhatRuns) {
  std::atomic<bool> isDone = false;
  std::thread stopper([&] {
    while (!isDone) {
      backend_->stop();
      std::this_thread::yield();
    }
  });
  std::unique_ptr<Recordset> rows;
  EXPECT_EQ(ErrorCode::stopped, tryOpen(kEndless, &rows).code());
  isDone = true;
  stopper.join();
  expectUsable();
}

TEST_F(StopTest, StoppingWhatDoesNotRunStopsNothing) {
  backend_->stop();
  expectUsable();
}

TEST_F(StopTest, TheQuestionIsAskedOnTheThreadThatCalled) {
  std::thread::id asker;
  backend_->askWhileBusy([&](Busy) {
    asker = std::this_thread::get_id();
    return true;
  });
  EXPECT_FALSE(tryRun("DELETE FROM t WHERE a > 0"));
  EXPECT_EQ(std::this_thread::get_id(), asker);
  expectUsable();
}

TEST_F(StopTest, TheTemporaryFilesOfASelectAreBoundedAndNobodyElses) {
  open({.mostTemporaryBytes = 1 << 20});
  std::unique_ptr<Recordset> rows;
  const Status status = tryOpen("SELECT x.b, y.b FROM t x, t y", &rows);
  EXPECT_EQ(ErrorCode::tooLarge, status.code());
  EXPECT_EQ("The statement was stopped: its result takes more than 1 MB of temporary files.",
            status.message());
  EXPECT_EQ(nullptr, rows);
  EXPECT_EQ("20000", columnOf("SELECT count(*) FROM t")) << "a small result has room";
  EXPECT_EQ(20000, records("SELECT x.b FROM t x, (SELECT 1)")->recordCount());

  open({.mostTemporaryBytes = 0});
  run("CREATE INDEX i ON t (b)");
  run("VACUUM");
  expectUsable();
}

}  // namespace
}  // namespace store
