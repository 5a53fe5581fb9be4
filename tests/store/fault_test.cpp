// Memory that is refused and files that fail, at the first use, the second, the third, … of a run over all
// operations: nothing crashes, failures are told, and what was acknowledged is in a sound file afterwards.
#include <atomic>
#include <new>

#include "tests/store/allocation_probe.h"
#include "tests/store/failing_file_system.h"
#include "tests/store/store_fixture.h"

namespace store {
namespace {

// Memory

sqlite3_mem_methods g_memory;
// The reading's helper thread allocates too.
std::atomic<long> g_allocationsLeft = -1;  // negative: never fail
std::atomic<bool> g_failsForEver = false;
std::atomic<bool> g_refused = false;

bool refusesMemory() {
  if (g_allocationsLeft < 0) return false;
  if (g_allocationsLeft > 0) {
    --g_allocationsLeft;
    return false;
  }
  g_refused = true;
  if (!g_failsForEver) g_allocationsLeft = -1;
  return true;
}
void* limitedMalloc(int size) {
  return refusesMemory() ? nullptr : g_memory.xMalloc(size);
}
void* limitedRealloc(void* block, int size) {
  return refusesMemory() ? nullptr : g_memory.xRealloc(block, size);
}

class FaultTest : public StoreTest {
 protected:
  static void SetUpTestSuite() {
    sqlite3_shutdown();
    ASSERT_EQ(SQLITE_OK, sqlite3_config(SQLITE_CONFIG_GETMALLOC, &g_memory));
    sqlite3_mem_methods limited = g_memory;
    limited.xMalloc = limitedMalloc;
    limited.xRealloc = limitedRealloc;
    ASSERT_EQ(SQLITE_OK, sqlite3_config(SQLITE_CONFIG_MALLOC, &limited));
    ASSERT_EQ(SQLITE_OK, sqlite3_initialize());
    FailingFileSystem::install();
  }
  static void TearDownTestSuite() {
    FailingFileSystem::uninstall();
    sqlite3_shutdown();
    EXPECT_EQ(SQLITE_OK, sqlite3_config(SQLITE_CONFIG_MALLOC, &g_memory));
    EXPECT_EQ(SQLITE_OK, sqlite3_initialize());
  }
  void TearDown() override {
    g_allocationsLeft = -1;
    FailingFileSystem::heal();
  }

  void remake(const std::string& mode) {
    backend_.reset();
    for (const char* suffix : {"", "-journal", "-wal", "-shm"})
      std::filesystem::remove(utf8Of(path_) + suffix);
    if (mode != madeMode_) {
      prepare("PRAGMA journal_mode = " + mode +
              "; CREATE TABLE t (a Integer, b Text); CREATE TABLE k (x Text PRIMARY KEY, y Integer) WITHOUT "
              "ROWID;"
              "INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three'); INSERT INTO k VALUES ('p', 1), "
              "('q', 2)");
      made_ = bytesOf(path_);
      madeMode_ = mode;
    }
    writeBytes(path_, made_);
  }

  /// What a whole run is to leave behind, as far as it was acknowledged.
  struct Acknowledged {
    bool inserted = false;
    bool updated = false;
    bool removed = false;
    bool keyMoved = false;
    bool byStatement = false;
    bool created = false;
    bool all() const { return inserted && updated && removed && keyMoved && byStatement && created; }
  };

  /// All operations, one after the other; each goes on whatever became of those before it.
  Acknowledged runAll() {
    Acknowledged done;
    std::unique_ptr<Backend> opened;
    if (!openDatabase(utf8Of(path_), {.lockWait = 0}, &opened)) return done;
    backend_ = std::move(opened);
    std::unique_ptr<Recordset> rows;
    if (tryOpen("SELECT a, b FROM t ORDER BY a", &rows)) {
      walk(*rows, {"1", "2", "3"});
      done.updated = rows->moveFirst() && rows->setValue(1, std::string(9000, 'u')) && rows->update();
      static_cast<void>(rows->cancelUpdate());
      done.removed = rows->moveNext() && textOf(*rows, 0) == "2" && rows->remove();
      done.inserted = rows->addNew() && rows->setValue(0, std::int64_t{10}) && rows->update();
      static_cast<void>(rows->cancelUpdate());
      EXPECT_EQ(3 - (done.removed ? 1 : 0) + (done.inserted ? 1 : 0), rows->recordCount());
    }
    std::unique_ptr<Recordset> keyed;
    if (tryOpen("Select * from [k]", &keyed)) {
      done.keyMoved = keyed->moveFirst() && keyed->setValue(0, std::string("moved")) && keyed->update();
      if (done.keyMoved) {
        // The record is followed, or can't be read at all at the moment.
        const std::string shown = textOf(*keyed, 1);
        EXPECT_TRUE(shown == "1" || shown.starts_with("(failed")) << shown;
      }
    }
    std::unique_ptr<Recordset> counted;
    if (tryOpen("SELECT a, count(*) FROM t GROUP BY a ORDER BY a", &counted)) walk(*counted, {});
    std::unique_ptr<Recordset> catalogue;
    if (tryOpen("MSysFields", &catalogue, SourceKind::table)) walk(*catalogue, {});
    std::int64_t affected = -1;
    done.byStatement = static_cast<bool>(tryRun("UPDATE t SET a = 30 WHERE a = 3", &affected));
    if (done.byStatement) {
      EXPECT_EQ(1, affected);
    }
    done.created = static_cast<bool>(tryRun("CREATE TABLE 'made' (Id Integer ,'Full name' Text)"));
    rows.reset();
    keyed.reset();
    counted.reset();
    catalogue.reset();
    backend_.reset();
    return done;
  }

  /// Reads all records. A value is read rightly or not at all.
  void walk(Recordset& rows, const std::vector<std::string>& expected) {
    for (std::size_t index = 0; !rows.isEof(); ++index) {
      const std::string shown = textOf(rows, 0);
      if (!expected.empty()) {
        EXPECT_TRUE(shown == expected[index] || shown.starts_with("(failed")) << shown;
      }
      if (!rows.moveNext()) break;
    }
  }

  /// Each change is in the file whole or not at all, and an acknowledged one is.
  void expectSound(const Acknowledged& done) {
    OtherProgram other(path_);
    ASSERT_EQ("ok", other.ask("PRAGMA integrity_check"));
    const auto expect = [&](bool acknowledged, const std::string& sql) {
      const std::string answer = other.ask(sql);
      EXPECT_TRUE(answer == "1" || (answer == "0" && !acknowledged)) << sql << ": " << answer;
    };
    expect(done.updated, "SELECT count(*) FROM t WHERE a = 1 AND b = printf('%.*c', 9000, 'u')");
    expect(done.updated, "SELECT 1 - count(*) FROM t WHERE b = 'one'");
    expect(done.removed, "SELECT 1 - count(*) FROM t WHERE a = 2");
    expect(done.inserted, "SELECT count(*) FROM t WHERE a = 10");
    expect(done.keyMoved, "SELECT count(*) FROM k WHERE x = 'moved' AND y = 1");
    expect(done.byStatement, "SELECT count(*) FROM t WHERE a = 30");
    expect(done.created, "SELECT count(*) FROM sqlite_schema WHERE name = 'made'");
    EXPECT_EQ("2", other.ask("SELECT count(*) FROM k"));
  }

  void refuseMemoryEverywhere(bool forEver) {
    bool finished = false;
    int refusals = 0;
    // Every allocation of the opening, then every few.
    for (long number = 0; !finished && number < 100'000; number += 1 + number / 25) {
      SCOPED_TRACE(number);
      remake("DELETE");
      g_refused = false;
      g_failsForEver = forEver;
      g_allocationsLeft = number;
      const Acknowledged done = runAll();
      g_allocationsLeft = -1;
      finished = !g_refused;
      refusals += finished ? 0 : 1;
      expectSound(done);
      if (finished) {
        EXPECT_TRUE(done.all());
      }
    }
    EXPECT_TRUE(finished);
    EXPECT_GT(refusals, 100);
  }

  std::string made_;
  std::string madeMode_;
};

TEST_F(FaultTest, WithoutAFaultAllIsAcknowledged) {
  for (const char* mode : {"DELETE", "WAL"}) {
    remake(mode);
    const Acknowledged done = runAll();
    EXPECT_TRUE(done.all()) << mode;
    expectSound(done);
  }
}

TEST_F(FaultTest, AChangeIsAcknowledgedWhenItsEmptiedJournalIsFlushed) {
  remake("DELETE");
  open();
  const auto rows = records("Select * from [t]");
  for (int n = 0; n < 3; ++n) {
    FailingFileSystem::takeJournalLog();
    ASSERT_TRUE(rows->setValue(1, "changed " + std::to_string(n)));
    ASSERT_TRUE(rows->update());
    const std::string log = FailingFileSystem::takeJournalLog();
    EXPECT_TRUE(log.ends_with("truncate sync close ")) << log;
    EXPECT_EQ(std::string::npos, log.find("delete")) << log;
  }
}

// What the program itself allocates, beside what SQLite does.
TEST_F(FaultTest, NewRefusedAnywhereDuringTheOpeningIsTold) {
  remake("DELETE");
  bool finished = false;
  std::size_t number = 0;
  for (; !finished && number < 1000; ++number) {
    SCOPED_TRACE(number);
    std::unique_ptr<Backend> opened;
    const testsupport::AllocationLimit limit(number);
    try {
      finished = static_cast<bool>(openDatabase(utf8Of(path_), {}, &opened));
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(nullptr, opened);
    }
    EXPECT_NE(finished, limit.wasReached());
  }
  EXPECT_TRUE(finished);
  EXPECT_GT(number, 5u);
  EXPECT_EQ("ok", OtherProgram(path_).ask("PRAGMA integrity_check"));
}

TEST_F(FaultTest, MemoryRefusedOnceAnywhereLosesNothing) {
  refuseMemoryEverywhere(false);
}

TEST_F(FaultTest, MemoryRefusedFromAnywhereOnLosesNothing) {
  refuseMemoryEverywhere(true);
}

struct FileFault {
  const char* name;
  FailingFileSystem::Operation operation;
};

class FileFaultTest : public FaultTest, public testing::WithParamInterface<FileFault> {};

TEST_P(FileFaultTest, LosesNothing) {
  for (const char* mode : {"DELETE", "WAL"}) {
    for (const bool forEver : {false, true}) {
      SCOPED_TRACE(std::string(mode) + (forEver ? " for ever" : " once"));
      bool finished = false;
      int failures = 0;
      for (int number = 0; !finished && number < 2000; number += 1 + number / 8) {
        SCOPED_TRACE(number);
        remake(mode);
        FailingFileSystem::fail(GetParam().operation, number, forEver);
        const Acknowledged done = runAll();
        finished = !FailingFileSystem::heal();
        failures += finished ? 0 : 1;
        expectSound(done);
        if (finished) {
          EXPECT_TRUE(done.all());
        }
      }
      EXPECT_TRUE(finished);
      EXPECT_GT(failures, 0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, FileFaultTest,
                         testing::Values(FileFault{"Read", FailingFileSystem::Operation::read},
                                         FileFault{"Write", FailingFileSystem::Operation::write},
                                         FileFault{"FullDisk", FailingFileSystem::Operation::fullDisk},
                                         FileFault{"Sync", FailingFileSystem::Operation::sync},
                                         FileFault{"Lock", FailingFileSystem::Operation::lock},
                                         FileFault{"Truncate", FailingFileSystem::Operation::truncate},
                                         FileFault{"Open", FailingFileSystem::Operation::open}),
                         [](const testing::TestParamInfo<FileFault>& fault) { return fault.param.name; });

}  // namespace
}  // namespace store
