// Memory that is refused and files that fail, at the first use, the second, the third, … of a run over all
// operations: nothing crashes, failures are told, and what was acknowledged is in a sound file afterwards.
#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/store/allocation_probe.h"
#include "tests/store/faults/failing_file_system.h"
#include "tests/store/faults/whole_session.h"

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

constexpr bool kFilesAreSlow = std::filesystem::path::preferred_separator != '/';

/// The number of the fault that is tried behind the one with this number: all of them with
/// QUIVANE_EVERY_FAULT, else the first ones and then every few, so that the tests stay quick. Each use of a
/// file takes long under Wine, and what fails here is the same on every system.
int nextFault(int number, int share) {
  if (std::getenv("QUIVANE_EVERY_FAULT") != nullptr) return number + 1;
  return number + 1 + number * (kFilesAreSlow ? 8 : 1) / share;
}

class FaultTest : public WholeSessionTest {
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

  void refuseMemoryEverywhere(bool forEver) {
    bool finished = false;
    int refusals = 0;
    for (int number = 0; !finished && number < 1'000'000; number = nextFault(number, 25)) {
      SCOPED_TRACE(number);
      remakeWhole("DELETE");
      g_refused = false;
      g_failsForEver = forEver;
      g_allocationsLeft = number;
      const Whole done = runWhole();
      g_allocationsLeft = -1;
      finished = !g_refused;
      refusals += finished ? 0 : 1;
      expectWhole(done);
      if (HasFailure()) return;
      if (finished) {
        EXPECT_TRUE(done.all());
      }
    }
    std::printf("%d refusals\n", refusals);
    EXPECT_TRUE(finished);
    EXPECT_GT(refusals, kFilesAreSlow ? 25 : 100);
  }
};

TEST_F(FaultTest, WithoutAFaultAllIsAcknowledged) {
  for (const char* mode : {"DELETE", "WAL"}) {
    remakeWhole(mode);
    const Whole done = runWhole();
    EXPECT_TRUE(done.all()) << mode;
    expectWhole(done);
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

TEST_F(FaultTest, AFileThatCanNotBeMadeBesideTheDatabaseIsTold) {
  remake("DELETE");
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->setValue(1, std::string("typed")));
  FailingFileSystem::fail(FailingFileSystem::Operation::open, 0, true);
  const Status refused = rows->update();
  FailingFileSystem::heal();
  EXPECT_EQ(ErrorCode::inputOutput, refused.code());
  EXPECT_EQ("No file can be made beside the database: its folder may be read-only.", refused.message());
  EXPECT_EQ("typed", textOf(*rows, 1));
  EXPECT_TRUE(rows->update()) << "as soon as there is a way";
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

TEST_F(FaultTest, NewRefusedAnywhereInTheSessionLosesNothing) {
  bool finished = false;
  int number = 0;
  int refusals = 0;
  for (; !finished && number < 1'000'000; number = nextFault(number, 25)) {
    SCOPED_TRACE(number);
    remakeWhole("DELETE");
    Whole done;
    {
      const testsupport::AllocationLimit limit(static_cast<std::size_t>(number));
      done = runWhole();
      finished = !limit.wasReached();
    }
    refusals += finished ? 0 : 1;
    expectWhole(done);
    if (HasFailure()) return;
  }
  std::printf("%d refusals\n", refusals);
  EXPECT_TRUE(finished);
  EXPECT_GT(refusals, kFilesAreSlow ? 20 : 100);
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
      for (int number = 0; !finished && number < 20'000; number = nextFault(number, 8)) {
        SCOPED_TRACE(number);
        remakeWhole(mode);
        FailingFileSystem::fail(GetParam().operation, number, forEver);
        const Whole done = runWhole();
        finished = !FailingFileSystem::heal();
        failures += finished ? 0 : 1;
        expectWhole(done);
        if (HasFailure()) return;
        if (finished) {
          EXPECT_TRUE(done.all());
        }
      }
      std::printf("%s%s: %d faults\n", mode, forEver ? " for ever" : "", failures);
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
                                         FileFault{"Open", FailingFileSystem::Operation::open},
                                         FileFault{"Delete", FailingFileSystem::Operation::remove}),
                         [](const testing::TestParamInfo<FileFault>& fault) { return fault.param.name; });

}  // namespace
}  // namespace store
