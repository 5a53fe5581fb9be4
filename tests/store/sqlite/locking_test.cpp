// The database between several programs, and between several connections of one.
#include <atomic>
#include <chrono>
#include <thread>

#include "platform/store/sqlite/connection/connection_guard.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

using Clock = std::chrono::steady_clock;

// A reading gives way after a quarter of a second; the rest is for slow machines.
constexpr std::chrono::seconds kPatience{20};

class LockingTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    prepare("CREATE TABLE t (a Integer, b Text); INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three')");
  }

  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  /// Runs `sql` of another program that does not wait, again and again until it succeeds.
  static bool writesInTime(OtherProgram& other, const std::string& sql) {
    const Clock::time_point end = Clock::now() + kPatience;
    do {
      const int result = other.tryRun(sql);
      if (result == SQLITE_OK) return true;
      if (result != SQLITE_BUSY) return false;
      std::this_thread::yield();
    } while (Clock::now() < end);
    return false;
  }

  std::unique_ptr<OtherProgram> impatientProgram() {
    auto other = std::make_unique<OtherProgram>(path_);
    sqlite3_busy_timeout(other->handle(), 0);
    return other;
  }
};

TEST_F(LockingTest, OthersWriteWhileARecordsetIsOpenAndIdle) {
  open();
  const auto rows = records("Select * from [t]");
  EXPECT_EQ("1", textOf(*rows, 0));
  const auto other = impatientProgram();
  EXPECT_TRUE(writesInTime(*other, "UPDATE t SET b = 'changed' WHERE a = 2"));
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ("changed", textOf(*rows, 1)) << "a new reading sees it";
}

TEST_F(LockingTest, AReadingHoldsOneStateUntilItGivesWay) {
  open();
  const auto rows = records("Select * from [t]");
  const auto other = impatientProgram();
  int reads = 0;
  const Clock::time_point end = Clock::now() + kPatience;
  bool written = false;
  while (!written && Clock::now() < end) {
    // Steadily: never idle for as long as the reading needs to end by itself.
    for (int n = 0; n < 50; ++n, ++reads) {
      ASSERT_TRUE(rows->setPosition(1 + reads % 3));
      ASSERT_EQ(std::to_string(1 + reads % 3), textOf(*rows, 0));
    }
    written = other->tryRun("UPDATE t SET b = 'changed'") == SQLITE_OK;
  }
  EXPECT_TRUE(written) << "after " << reads << " reads";
  EXPECT_EQ("changed", textOf(*rows, 1).empty() ? "" : columnOf("SELECT b FROM t WHERE a = 1"));
}

TEST_F(LockingTest, AWriterThatWaitsIsLetInByASteadyReader) {
  open();
  const auto rows = records("Select * from [t]");
  std::atomic<bool> done{false};
  std::atomic<int> result{SQLITE_ERROR};
  std::thread writer([&] {
    OtherProgram other(path_);
    sqlite3_busy_timeout(other.handle(), 20'000);
    result = other.tryRun("UPDATE t SET b = 'changed'");
    done = true;
  });
  while (!done) {
    EXPECT_TRUE(rows->moveFirst());
    EXPECT_EQ("1", textOf(*rows, 0));
  }
  writer.join();
  EXPECT_EQ(SQLITE_OK, result);
}

TEST_F(LockingTest, AnUpdateWaitsForAnotherWriterAndThenFailsWithNothingLost) {
  open({.lockWait = 200});
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("mine")));
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE; UPDATE t SET b = 'theirs' WHERE a = 2");
  const Clock::time_point start = Clock::now();
  EXPECT_EQ(ErrorCode::locked, rows->update().code());
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(150));
  EXPECT_EQ(ErrorCode::locked, tryRun("DELETE FROM t").code());
  EXPECT_EQ(ErrorCode::locked, tryRun("CREATE TABLE u (a)").code());
  EXPECT_EQ(EditMode::inProgress, rows->editMode());
  EXPECT_EQ("mine", textOf(*rows, 1));
  EXPECT_EQ(ErrorCode::locked, rows->moveNext().code());
  EXPECT_EQ(1, rows->position());

  EXPECT_TRUE(rows->cancelUpdate());
  EXPECT_EQ("one", textOf(*rows, 1)) << "reading goes on beside a writer that has not yet finished";
  EXPECT_EQ(ErrorCode::locked, rows->remove().code());
  EXPECT_EQ(3, rows->recordCount());
  EXPECT_EQ("one", textOf(*rows, 1));
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(0, std::int64_t{9}));
  EXPECT_EQ(ErrorCode::locked, rows->update().code());
  EXPECT_EQ(EditMode::adding, rows->editMode());
  EXPECT_EQ("9", textOf(*rows, 0));
  other.run("COMMIT");
  EXPECT_TRUE(rows->update());
  EXPECT_EQ(4, rows->recordCount());
  EXPECT_EQ("one theirs three (null)", columnOf("SELECT b FROM t"));
}

TEST_F(LockingTest, AllWaitsOfOneUseTogetherTakeTheLockWait) {
  constexpr std::chrono::milliseconds kMost{800};
  OtherProgram ours(path_);
  ConnectionGuard guard(ours.handle(), kMost, [] {});
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE");
  const auto waits = [&] {
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(SQLITE_BUSY, ours.tryRun("BEGIN IMMEDIATE"));
    return Clock::now() - start;
  };
  {
    ConnectionGuard::Use use(guard);
    EXPECT_GE(waits(), kMost);
    EXPECT_LT(waits(), kMost / 2) << "the second wait goes on with the first";
  }
  {
    ConnectionGuard::Use use(guard);
    const LockWait::Never never(guard.lockWait());
    EXPECT_LT(waits(), kMost / 2);
  }
  ConnectionGuard::Use use(guard);
  EXPECT_GE(waits(), kMost) << "the next use waits by itself";
}

TEST_F(LockingTest, WhoIsAskedWhileAnotherProgramIsWaitedForCanGiveUp) {
  open({.lockWait = 60'000});
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("mine")));
  int asked = 0;
  const BusyQuestion question = [&](Busy busy) {
    EXPECT_EQ(Busy::waiting, busy);
    return ++asked >= 3;
  };
  backend_->askWhileBusy(question);
  {
    OtherProgram other(path_);
    other.run("BEGIN EXCLUSIVE");
    EXPECT_EQ(ErrorCode::locked, rows->update().code());
    EXPECT_EQ(3, asked);
    EXPECT_EQ(ErrorCode::locked, rows->update().code()) << "and again at once";
    EXPECT_EQ(4, asked);
    asked = 0;
    std::unique_ptr<Backend> second;
    const OpenOptions options{.lockWait = 60'000, .question = question};
    EXPECT_EQ(ErrorCode::locked, openDatabase(utf8Of(path_), options, &second).code());
    EXPECT_EQ(3, asked) << "at the opening";
  }
  asked = 0;
  EXPECT_TRUE(rows->update());
  EXPECT_EQ(0, asked);
  EXPECT_EQ("mine", inFile("SELECT b FROM t WHERE a = 1"));
}

TEST_F(LockingTest, AChangeThatCannotBeCommittedIsUndone) {
  open({.lockWait = 200});
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("mine")));
  OtherProgram other(path_);
  other.run("BEGIN");
  ASSERT_EQ("3", other.ask("SELECT count(*) FROM t")) << "the other program goes on reading";
  EXPECT_EQ(ErrorCode::locked, rows->update().code());
  EXPECT_EQ("mine", textOf(*rows, 1));
  EXPECT_EQ(ErrorCode::locked, tryRun("CREATE TABLE u (a Integer)").code());
  other.run("COMMIT");
  EXPECT_EQ("one", inFile("SELECT b FROM t WHERE a = 1"));
  EXPECT_EQ("t", inFile("SELECT group_concat(name) FROM sqlite_schema"));
  EXPECT_TRUE(rows->update());
  EXPECT_EQ("mine", inFile("SELECT b FROM t WHERE a = 1"));
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ("two", textOf(*rows, 1)) << "a definition that failed changed nothing";
}

TEST_F(LockingTest, AnUpdateGoesOnWhenTheOtherWriterHasFinished) {
  open({.lockWait = 20'000});
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("mine")));
  OtherProgram other(path_);
  other.run("BEGIN IMMEDIATE; UPDATE t SET b = 'theirs' WHERE a = 2");
  std::atomic<bool> finished{false};
  std::thread finisher([&] {
    // The update below is by now under way or soon will be; either order must succeed.
    std::this_thread::yield();
    finished = other.tryRun("COMMIT") == SQLITE_OK;
  });
  EXPECT_TRUE(rows->update());
  finisher.join();
  EXPECT_TRUE(finished);
  EXPECT_EQ("mine,theirs,three", inFile("SELECT group_concat(b) FROM t"));
}

TEST_F(LockingTest, AReadingOfAFileThatIsLockedWholeFailsAndLaterSucceeds) {
  open({.lockWait = 200});
  const auto rows = records("Select * from [t]");
  const auto other = impatientProgram();
  ASSERT_TRUE(writesInTime(*other, "BEGIN EXCLUSIVE"));
  Cell cell;
  EXPECT_EQ(ErrorCode::locked, rows->cell(0, &cell).code());
  std::unique_ptr<Recordset> second;
  EXPECT_EQ(ErrorCode::locked, tryOpen("Select * from [t]", &second).code());
  EXPECT_EQ(ErrorCode::locked, tryOpen("MSysTables", &second, SourceKind::table).code());
  EXPECT_EQ(ErrorCode::locked, tryOpen("SELECT count(*) FROM t", &second).code());
  other->run("COMMIT");
  EXPECT_EQ("1", textOf(*rows, 0));
  EXPECT_EQ("3", columnOf("SELECT count(*) FROM t"));
}

TEST_F(LockingTest, ManyConnectionsOfOneProgramSeeEachOthersChanges) {
  std::vector<std::shared_ptr<Backend>> backends;
  std::vector<std::unique_ptr<Recordset>> sets;
  for (int n = 0; n < 8; ++n) {
    open();
    backends.push_back(backend_);
    sets.push_back(records("Select * from [t]"));
    ASSERT_NE(nullptr, sets.back());
  }
  for (std::size_t n = 0; n < sets.size(); ++n) {
    ASSERT_TRUE(sets[n]->setValue(1, "by " + std::to_string(n)));
    const Status status = sets[n]->update();
    ASSERT_TRUE(status) << status.message();
    for (const auto& set : sets) {
      ASSERT_TRUE(set->moveFirst());
      ASSERT_EQ("by " + std::to_string(n), textOf(*set, 1));
    }
  }
}

TEST_F(LockingTest, ThreadsWithConnectionsOfTheirOwnLoseNoRecord) {
  constexpr int kThreadCount = 4;
  constexpr int kRecordCount = 15;
  std::atomic<int> stored{0};
  std::vector<std::thread> threads;
  threads.reserve(kThreadCount);
  for (int number = 0; number < kThreadCount; ++number) {
    threads.emplace_back([&, number] {
      std::unique_ptr<Backend> backend;
      if (!openDatabase(utf8Of(path_), {.lockWait = 20'000}, &backend)) return;
      const std::shared_ptr<Backend> shared = std::move(backend);
      std::unique_ptr<RowSource> rows;
      if (!shared->openRows("t", SourceKind::table, &rows)) return;
      Recordset recordset(shared, std::move(rows), CursorType::keyset, LockType::optimistic);
      if (!recordset.load()) return;
      for (int n = 0; n < kRecordCount; ++n) {
        if (!recordset.addNew() || !recordset.setValue(0, std::int64_t{1000 + number}) || !recordset.update())
          return;
        ++stored;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(kThreadCount * kRecordCount, stored);
  EXPECT_EQ(std::to_string(kThreadCount * kRecordCount), inFile("SELECT count(*) FROM t WHERE a >= 1000"));
}

TEST_F(LockingTest, ClosingWhileAReadingIsUnderWayLeavesNoLock) {
  for (int round = 0; round < 40; ++round) {
    open();
    auto rows = records("Select * from [t]");
    ASSERT_EQ("1", textOf(*rows, 0));
    if (round % 2 == 0) {
      backend_.reset();
      EXPECT_EQ("1", textOf(*rows, 0));
      rows.reset();
    } else {
      rows.reset();
      backend_.reset();
    }
    const auto other = impatientProgram();
    ASSERT_EQ(SQLITE_OK, other->tryRun("BEGIN EXCLUSIVE; COMMIT")) << round;
  }
}

TEST_F(LockingTest, ARecordsetThatOutlivesItsBackendStillWrites) {
  open();
  const auto rows = records("Select * from [t]");
  std::unique_ptr<Recordset> copy;
  ASSERT_TRUE(rows->clone(&copy));
  backend_.reset();
  ASSERT_TRUE(rows->setValue(1, std::string("late")));
  ASSERT_TRUE(rows->update());
  EXPECT_EQ("late", textOf(*copy, 1));
  EXPECT_EQ("late", inFile("SELECT b FROM t WHERE a = 1"));
}

TEST_F(LockingTest, ClosingDoesNotWaitForAnotherProgram) {
  open({.lockWait = 60'000});
  const auto other = impatientProgram();
  ASSERT_TRUE(writesInTime(*other, "BEGIN EXCLUSIVE"));
  const Clock::time_point start = Clock::now();
  backend_.reset();
  EXPECT_LT(Clock::now() - start, kPatience);
}

TEST_F(LockingTest, TheModeThatAnotherProgramChoosesMeanwhileStays) {
  open();
  EXPECT_EQ("3", columnOf("SELECT count(*) FROM t"));
  {
    OtherProgram other(path_);
    ASSERT_EQ("wal", other.ask("PRAGMA journal_mode = WAL"));
  }
  EXPECT_EQ("3", columnOf("SELECT count(*) FROM t"));
  run("INSERT INTO t VALUES (4, 'four')");
  backend_.reset();
  EXPECT_EQ("wal", inFile("PRAGMA journal_mode"));
  EXPECT_EQ("4", inFile("SELECT count(*) FROM t"));
}

TEST_F(LockingTest, OthersCommitAfterOursAndOursAfterTheirs) {
  open();
  const auto rows = records("Select * from [t]");
  OtherProgram other(path_);
  for (int n = 0; n < 10; ++n) {
    ASSERT_TRUE(rows->setValue(1, "mine " + std::to_string(n)));
    ASSERT_TRUE(rows->update());
    // Where an open file can't be deleted, a journal of ours that stayed open would let this fail.
    const Clock::time_point start = Clock::now();
    ASSERT_EQ(SQLITE_OK, other.tryRun("UPDATE t SET b = 'theirs' WHERE a = 2")) << n;
    ASSERT_LT(Clock::now() - start, std::chrono::seconds(5));
    ASSERT_EQ("mine " + std::to_string(n), other.ask("SELECT b FROM t WHERE a = 1"));
  }
}

TEST_F(LockingTest, AWriterThatWaitsForUsCommitsAndOneThatWeWaitForToo) {
  open({.lockWait = 20'000});
  const auto rows = records("Select * from [t]");
  OtherProgram other(path_);
  sqlite3_busy_timeout(other.handle(), 20'000);
  for (int n = 0; n < 10; ++n) {
    // The journal of this change is still open when the other program begins its own.
    ASSERT_TRUE(rows->setValue(1, "first " + std::to_string(n)));
    ASSERT_TRUE(rows->update());
    other.run("BEGIN IMMEDIATE; UPDATE t SET b = 'theirs' WHERE a = 2");
    ASSERT_EQ("first " + std::to_string(n), textOf(*rows, 1)) << "read beside the other writer";
    ASSERT_TRUE(rows->setValue(1, "second " + std::to_string(n)));
    std::atomic<int> result{SQLITE_ERROR};
    std::thread finisher([&] { result = other.tryRun("COMMIT"); });
    const Status status = rows->update();
    finisher.join();
    ASSERT_TRUE(status) << status.message();
    ASSERT_EQ(SQLITE_OK, result) << n;
  }
}

TEST_F(LockingTest, SteadyWritersOfTwoProgramsLoseNothing) {
  constexpr int kCount = 40;
  open({.lockWait = 60'000});
  const auto rows = records("Select * from [t]");
  std::atomic<int> failure{SQLITE_OK};
  std::thread writer([&] {
    OtherProgram other(path_);
    sqlite3_busy_timeout(other.handle(), 60'000);
    for (int n = 0; n < kCount && failure == SQLITE_OK; ++n)
      failure = other.tryRun("INSERT INTO t VALUES (1000, 'theirs')");
  });
  for (int n = 0; n < kCount; ++n) {
    EXPECT_TRUE(rows->setValue(1, "mine " + std::to_string(n)));
    const Status status = rows->update();
    EXPECT_TRUE(status) << status.message();
  }
  writer.join();
  EXPECT_EQ(SQLITE_OK, failure);
  EXPECT_EQ(std::to_string(kCount), inFile("SELECT count(*) FROM t WHERE a = 1000"));
  EXPECT_EQ("mine " + std::to_string(kCount - 1), inFile("SELECT b FROM t WHERE a = 1"));
}

TEST_F(LockingTest, BetweenTwoChangesTheJournalIsEmptyAndClosedAndAtTheEndItIsGone) {
  const std::filesystem::path journal = utf8Of(path_) + "-journal";
  const auto isEmpty = [&] {
    return !std::filesystem::exists(journal) || std::filesystem::file_size(journal) == 0;
  };
  open();
  run("INSERT INTO t VALUES (4, 'four')");
  EXPECT_TRUE(isEmpty());
  // Windows deletes no open file, so another program's way of committing tells whether it is closed.
  EXPECT_TRUE(std::filesystem::remove(journal));
  EXPECT_FALSE(tryRun("INSERT INTO t VALUES (5)"));
  EXPECT_TRUE(isEmpty());
  run("INSERT INTO t VALUES (6, 'six')");
  EXPECT_TRUE(std::filesystem::exists(journal)) << "made anew";
  EXPECT_TRUE(isEmpty());
  backend_.reset();
  EXPECT_FALSE(std::filesystem::exists(journal)) << "after the closing";
}

TEST_F(LockingTest, AChangeOfAReadingThatAWriteAheadFileHasOvertakenGoesOnFromTheNewState) {
  prepare("PRAGMA journal_mode = WAL");
  open({.lockWait = 0});
  const auto rows = records("Select * from [t]");
  OtherProgram other(path_);
  for (int n = 0; n < 20; ++n) {
    ASSERT_TRUE(rows->setPosition(1));
    ASSERT_EQ("one", textOf(*rows, 1).substr(0, 3));
    const bool isSameRow = n % 2 == 0;
    other.run("UPDATE t SET b = b || '+' WHERE rowid = " + std::string(isSameRow ? "1" : "2"));
    ASSERT_TRUE(rows->setValue(0, std::int64_t{100 + n}));
    EXPECT_EQ(isSameRow ? ErrorCode::changedElsewhere : ErrorCode::ok, rows->update().code()) << n;
    ASSERT_TRUE(rows->cancelUpdate());
  }
}

TEST_F(LockingTest, ReadersAndWritersOfAWriteAheadFileDoNotWaitForEachOther) {
  prepare("PRAGMA journal_mode = WAL");
  open({.lockWait = 0});
  const auto rows = records("Select * from [t]");
  EXPECT_EQ("one", textOf(*rows, 1));
  const auto other = impatientProgram();
  EXPECT_EQ(SQLITE_OK, other->tryRun("UPDATE t SET b = 'changed' WHERE a = 2")) << "beside our reading";
  other->run("BEGIN");
  EXPECT_EQ("3", other->ask("SELECT count(*) FROM t"));
  ASSERT_TRUE(rows->setValue(1, std::string("mine")));
  EXPECT_TRUE(rows->update()) << "beside their reading";
  other->run("COMMIT");
  EXPECT_EQ("mine", other->ask("SELECT b FROM t WHERE a = 1"));
}

TEST_F(LockingTest, AMultitudeOfRecordsetsOpensAndCloses) {
  open();
  for (int n = 0; n < 300; ++n)
    ASSERT_EQ("1", textOf(*records(n % 2 == 0 ? "t" : "SELECT DISTINCT a FROM t", SourceKind::unknown), 0));
}

}  // namespace
}  // namespace store
