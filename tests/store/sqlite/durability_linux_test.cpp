// What an update acknowledged survives the death of the program. Programs are made and killed by the means of
// Linux.
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

class DurabilityTest : public StoreTest {
 protected:
  std::string inFile(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  /// In the child: adds and changes records for ever, and tells each acknowledged one through `pipe`.
  [[noreturn]] void writeUntilKilled(int pipe) {
    std::unique_ptr<Backend> backend;
    if (!openDatabase(utf8Of(path_), {}, &backend)) _exit(2);
    const std::shared_ptr<Backend> shared = std::move(backend);
    std::unique_ptr<RowSource> rows;
    if (!shared->openRows("Select * from [t]", SourceKind::text, &rows)) _exit(3);
    Recordset recordset(shared, std::move(rows), CursorType::keyset, LockType::optimistic);
    if (!recordset.load()) _exit(4);
    for (std::int64_t n = 1;; ++n) {
      if (!recordset.addNew() || !recordset.setValue(0, n) || !recordset.update()) _exit(5);
      if (!recordset.setValue(1, std::string(3000, 'x')) || !recordset.update()) _exit(6);
      if (write(pipe, &n, sizeof n) != sizeof n) _exit(7);
    }
  }

  /// The last number that the child told before it was killed in the midst of its work.
  std::int64_t killAWriterAfter(std::int64_t count) {
    int ends[2];
    EXPECT_EQ(0, pipe(ends));
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      writeUntilKilled(ends[1]);
    }
    close(ends[1]);
    std::int64_t last = 0;
    std::int64_t told = 0;
    while (read(ends[0], &told, sizeof told) == sizeof told) {
      last = told;
      if (last == count) kill(child, SIGKILL);
    }
    close(ends[0]);
    int state = 0;
    EXPECT_EQ(child, waitpid(child, &state, 0));
    EXPECT_TRUE(WIFSIGNALED(state)) << "exit code " << WEXITSTATUS(state);
    return last;
  }

  void expectAllAcknowledgedThere(std::int64_t last) {
    EXPECT_EQ("ok", inFile("PRAGMA integrity_check"));
    EXPECT_EQ(
        std::to_string(last),
        inFile("SELECT count(DISTINCT a) FROM t WHERE length(b) = 3000 AND a <= " + std::to_string(last)));
  }
};

TEST_F(DurabilityTest, EveryAcknowledgedUpdateSurvivesAKillInEachMode) {
  for (const char* mode : {"DELETE", "WAL"}) {
    for (const std::int64_t count : {1, 7, 20}) {
      SCOPED_TRACE(std::string(mode) + " " + std::to_string(count));
      std::filesystem::remove(path_);
      prepare("PRAGMA journal_mode = " + std::string(mode) + "; CREATE TABLE t (a Integer, b Text)");
      const std::int64_t last = killAWriterAfter(count);
      EXPECT_GE(last, count);
      open();
      EXPECT_GE(records("Select * from [t]")->recordCount(), last);
      backend_.reset();
      expectAllAcknowledgedThere(last);
    }
  }
}

TEST_F(DurabilityTest, TheJournalOfADeadProgramIsRolledBackAtTheOpening) {
  prepare("CREATE TABLE t (a Integer, b Text)");
  prepare(
      "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 300) "
      "INSERT INTO t SELECT i, printf('%0500d', i) FROM s");
  const pid_t child = fork();
  if (child == 0) {
    sqlite3* connection = nullptr;
    if (sqlite3_open(utf8Of(path_).c_str(), &connection) != SQLITE_OK) _exit(2);
    // A cache of a few pages sends changed ones into the file before the end of the transaction.
    sqlite3_exec(connection, "PRAGMA cache_size = 5; BEGIN; UPDATE t SET a = -a, b = upper(b) || 'y'",
                 nullptr, nullptr, nullptr);
    raise(SIGKILL);
    _exit(3);
  }
  int state = 0;
  ASSERT_EQ(child, waitpid(child, &state, 0));
  ASSERT_TRUE(WIFSIGNALED(state));
  const std::filesystem::path journal = utf8Of(path_) + "-journal";
  ASSERT_TRUE(std::filesystem::exists(journal));
  ASSERT_GT(std::filesystem::file_size(journal), 0u);

  open();
  const auto rows = records("Select * from [t]");
  ASSERT_EQ(300, rows->recordCount());
  EXPECT_EQ("1", textOf(*rows, 0));
  ASSERT_TRUE(rows->moveLast());
  EXPECT_EQ("300", textOf(*rows, 0));
  EXPECT_EQ("0", columnOf("SELECT count(*) FROM t WHERE a < 0 OR b LIKE '%y'"));
  backend_.reset();
}

TEST_F(DurabilityTest, ADeadProgramsLockIsNone) {
  prepare("CREATE TABLE t (a Integer, b Text)");
  const std::int64_t last = killAWriterAfter(2);
  open({.lockWait = 0});
  run("INSERT INTO t VALUES (-1, 'after')");
  EXPECT_EQ("-1", columnOf("SELECT a FROM t WHERE b = 'after'"));
  EXPECT_GE(last, 2);
}

TEST_F(DurabilityTest, AFileThatIsDeletedOrRenamedOverTakesNoChange) {
  for (const bool isReplaced : {false, true}) {
    for (const char* mode : {"DELETE", "WAL"}) {
      SCOPED_TRACE(std::string(mode) + (isReplaced ? " replaced" : " deleted"));
      std::filesystem::remove(path_);
      prepare("PRAGMA journal_mode = " + std::string(mode) +
              "; CREATE TABLE t (a Integer, b Text); INSERT INTO t VALUES (1, 'ours')");
      open();
      const auto rows = records("Select * from [t]");
      const std::filesystem::path other = folder_.file("other.cdb");
      OtherProgram(other).run("CREATE TABLE t (a Integer, b Text); INSERT INTO t VALUES (1, 'theirs')");
      if (isReplaced) {
        std::filesystem::rename(other, path_);
      } else {
        std::filesystem::remove(path_);
      }
      ASSERT_TRUE(rows->setValue(1, std::string("typed")));
      EXPECT_EQ(isReplaced ? ErrorCode::fileReplaced : ErrorCode::fileGone, rows->update().code());
      ASSERT_TRUE(rows->cancelUpdate());
      EXPECT_EQ("ours", textOf(*rows, 1));
      backend_.reset();
      EXPECT_EQ(isReplaced, std::filesystem::exists(path_));
      for (const char* suffix : {"", "-journal", "-wal", "-shm"})
        std::filesystem::remove(utf8Of(path_) + suffix);
      std::filesystem::remove(other);
    }
  }
}

// The byte on which whoever writes has a lock ("File Format", the locking protocol of SQLite's unix files).
constexpr off_t kReservedByte = 0x40000001;

TEST_F(DurabilityTest, OpeningAndDroppingLeaveTheLocksOfOtherConnectionsOfTheProgram) {
  prepare("CREATE TABLE t (a Integer, b Text)");
  const auto isLockedForOthers = [&] {
    const pid_t child = fork();
    if (child == 0) {
      const int file = ::open(path_.c_str(), O_RDWR);
      struct flock lock {};
      lock.l_type = F_WRLCK;
      lock.l_whence = SEEK_SET;
      lock.l_start = kReservedByte;
      lock.l_len = 1;
      _exit(fcntl(file, F_GETLK, &lock) == 0 && lock.l_type == F_WRLCK ? 1 : 0);
    }
    int state = 0;
    EXPECT_EQ(child, waitpid(child, &state, 0));
    return WIFEXITED(state) && WEXITSTATUS(state) == 1;
  };
  OtherProgram writer(path_);
  EXPECT_FALSE(isLockedForOthers());
  writer.run("BEGIN IMMEDIATE; INSERT INTO t VALUES (1, 'x')");
  ASSERT_TRUE(isLockedForOthers());
  open();
  EXPECT_TRUE(isLockedForOthers()) << "after opening";
  backend_.reset();
  EXPECT_TRUE(isLockedForOthers()) << "after closing";
  EXPECT_EQ(ErrorCode::locked, dropDatabase(utf8Of(path_)).code());
  EXPECT_TRUE(isLockedForOthers()) << "after a refused dropping";
  writer.run("COMMIT");
  EXPECT_EQ("1", inFile("SELECT a FROM t"));
}

}  // namespace
}  // namespace store
