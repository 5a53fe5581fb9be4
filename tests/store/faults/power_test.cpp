// The power is cut while the store writes: what it acknowledged is there afterwards, nothing is there by
// halves, and the file is sound. The disk loses whatever was not flushed.
#include "tests/store/faults/losing_file_system.h"
#include "tests/store/faults/session_fixture.h"

namespace store {
namespace {

class PowerTest : public SessionTest {
 protected:
  static void SetUpTestSuite() { LosingFileSystem::install(); }
  static void TearDownTestSuite() { LosingFileSystem::uninstall(); }
  void TearDown() override { LosingFileSystem::begin(-1); }

  /// How many operations of a whole session change the disk.
  int operationsOf(const char* mode) {
    remake(mode);
    LosingFileSystem::begin(-1);
    EXPECT_TRUE(runAll().all());
    return LosingFileSystem::operations();
  }

  void cutEverywhere(const char* mode) {
    const int operations = operationsOf(mode);
    EXPECT_GT(operations, 30);
    int cuts = 0;
    for (int number = 0; number < operations && !HasFatalFailure(); ++number) {
      for (const unsigned seed : {1u, 2u}) {
        SCOPED_TRACE(std::string(mode) + ", cut at " + std::to_string(number) + ", seed " +
                     std::to_string(seed));
        remake(mode);
        LosingFileSystem::begin(number);
        const Acknowledged done = runAll();
        // The last ones clean up after the last change, and may be spared when a thread comes first.
        if (!LosingFileSystem::restart(seed)) continue;
        ++cuts;
        expectSound(done);
      }
    }
    std::printf("%d cuts in mode %s\n", cuts, mode);
    EXPECT_GT(cuts, operations);
  }
};

TEST_F(PowerTest, EveryAcknowledgedChangeSurvivesACutAnywhere) {
  cutEverywhere("DELETE");
}

TEST_F(PowerTest, SoItDoesWithAWriteAheadLog) {
  cutEverywhere("WAL");
}

// Otherwise the tests above would prove nothing.
TEST_F(PowerTest, ThisDiskLosesWhatNobodyFlushes) {
  int lost = 0;
  for (int number = 0; number < 40; ++number) {
    remake("DELETE");
    LosingFileSystem::begin(number);
    int acknowledged = 0;
    {
      OtherProgram careless(path_);
      careless.run("PRAGMA synchronous = OFF");
      while (acknowledged < 20 && careless.tryRun("INSERT INTO t VALUES (100, 'new')") == SQLITE_OK)
        ++acknowledged;
    }
    if (!LosingFileSystem::restart(1)) break;
    OtherProgram reader(path_);
    const std::string count = reader.ask("SELECT count(*) FROM t WHERE a = 100");
    if (count != std::to_string(acknowledged) && count != std::to_string(acknowledged + 1)) ++lost;
  }
  EXPECT_GT(lost, 5);
}

}  // namespace
}  // namespace store
