#include "platform/store/sqlite/database_file.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

class DatabaseFileTest : public StoreTest {
 protected:
  Status tryOpenFile(const std::filesystem::path& path) {
    std::unique_ptr<Backend> backend;
    Status status = openDatabase(utf8Of(path), {.lockWait = 200}, &backend);
    EXPECT_EQ(static_cast<bool>(status), backend != nullptr);
    return status;
  }

  /// Opening `path` fails as cannotOpen with a reason, and leaves the file and the folder as they were.
  void expectRefused(const std::filesystem::path& path) {
    const std::string before = bytesOf(path);
    const Status status = tryOpenFile(path);
    EXPECT_EQ(ErrorCode::cannotOpen, status.code()) << status.message();
    EXPECT_FALSE(status.message().empty());
    EXPECT_EQ(before, bytesOf(path));
    EXPECT_FALSE(std::filesystem::exists(utf8Of(path) + "-journal"));
  }
};

TEST_F(DatabaseFileTest, OpeningNeverMakesAFile) {
  const std::filesystem::path missing = folder_.file("missing.cdb");
  EXPECT_EQ(ErrorCode::cannotOpen, tryOpenFile(missing).code());
  EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(DatabaseFileTest, AFolderIsRefused) {
  EXPECT_EQ(ErrorCode::cannotOpen, tryOpenFile(folder_.path()).code());
}

TEST_F(DatabaseFileTest, AnEmptyFileIsRefusedAndStaysEmpty) {
  const std::filesystem::path empty = folder_.file("empty.cdb");
  writeBytes(empty, "");
  expectRefused(empty);
}

TEST_F(DatabaseFileTest, ATextFileIsRefused) {
  const std::filesystem::path text = folder_.file("text.cdb");
  writeBytes(text, std::string(5000, 'a') + "\r\nDear database,\r\n");
  expectRefused(text);
}

TEST_F(DatabaseFileTest, ADatabaseCutShortAnywhereIsRefused) {
  prepare("CREATE TABLE t (a)");
  prepare(
      "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 2000) INSERT INTO t SELECT "
      "i FROM s");
  const std::string whole = bytesOf(path_);
  ASSERT_GT(whole.size(), 16384u);
  for (const std::size_t length :
       {std::size_t{16}, std::size_t{99}, std::size_t{100}, std::size_t{511}, std::size_t{4096},
        whole.size() / 2, whole.size() - 4096, whole.size() - 1}) {
    SCOPED_TRACE(length);
    const std::filesystem::path cut = folder_.file("cut " + std::to_string(length) + ".cdb");
    writeBytes(cut, whole.substr(0, length));
    expectRefused(cut);
  }
}

TEST_F(DatabaseFileTest, RubbishBehindAGoodHeadIsRefusedOrFailsWhenRead) {
  prepare("CREATE TABLE t (a); INSERT INTO t VALUES (1)");
  std::string damaged = bytesOf(path_);
  std::fill(damaged.begin() + 100, damaged.begin() + 4096, '\x5A');
  const std::filesystem::path path = folder_.file("damaged.cdb");
  writeBytes(path, damaged);
  expectRefused(path);
}

TEST_F(DatabaseFileTest, AReadOnlyFileOpensForReading) {
  prepare("CREATE TABLE t (a Integer); INSERT INTO t VALUES (1)");
  const std::string before = bytesOf(path_);
  std::filesystem::permissions(path_, std::filesystem::perms::owner_read,
                               std::filesystem::perm_options::replace);
  open();
  EXPECT_TRUE(backend_->isReadOnly());
  const auto rows = records("Select * from [t]");
  EXPECT_FALSE(rows->isUpdatable());
  EXPECT_FALSE(rows->columns()[0].updatable);
  EXPECT_EQ("1", textOf(*rows, 0));
  EXPECT_EQ(ErrorCode::readOnly, rows->setValue(0, std::int64_t{2}).code());
  EXPECT_EQ(ErrorCode::readOnly, tryRun("INSERT INTO t VALUES (2)").code());
  EXPECT_EQ(ErrorCode::readOnly, tryRun("CREATE TABLE u (a)").code());
  EXPECT_EQ(before, bytesOf(path_));
}

TEST_F(DatabaseFileTest, ALockedDatabaseIsWaitedForAndThenRefused) {
  prepare("CREATE TABLE t (a)");
  OtherProgram other(path_);
  other.run("BEGIN EXCLUSIVE");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(ErrorCode::locked, tryOpenFile(path_).code());
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
  other.run("COMMIT");
  EXPECT_TRUE(tryOpenFile(path_));
}

TEST_F(DatabaseFileTest, ARecordsetKeepsItsDatabaseOpen) {
  prepare("CREATE TABLE t (a Integer)");
  open();
  run("INSERT INTO t VALUES (1)");
  const auto rows = records("Select * from [t]");
  backend_.reset();
  EXPECT_EQ("1", textOf(*rows, 0)) << "a recordset keeps its database open";
}

TEST_F(DatabaseFileTest, TheFolderHoldsOnlyTheDatabaseAfterClosing) {
  open();
  run("CREATE TABLE t (a Integer)");
  run("INSERT INTO t VALUES (1)");
  backend_.reset();
  int files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_.path())) ++files;
  EXPECT_EQ(1, files);
}

TEST_F(DatabaseFileTest, AWriteAheadFileStaysOne) {
  prepare("PRAGMA journal_mode=WAL; CREATE TABLE t (a Integer)");
  open();
  run("INSERT INTO t VALUES (1)");
  backend_.reset();
  EXPECT_EQ("wal", OtherProgram(path_).ask("PRAGMA journal_mode"));
  EXPECT_EQ("1", OtherProgram(path_).ask("SELECT a FROM t"));
}

TEST_F(DatabaseFileTest, TheModeOfTheFileIsNotChanged) {
  prepare("CREATE TABLE t (a Integer)");
  open();
  run("INSERT INTO t VALUES (1)");
  backend_.reset();
  EXPECT_EQ("delete", OtherProgram(path_).ask("PRAGMA journal_mode"));
}

TEST_F(DatabaseFileTest, CreatingNeverTouchesWhatIsThere) {
  const std::filesystem::path text = folder_.file("letter.txt");
  writeBytes(text, "Dear database");
  EXPECT_EQ(ErrorCode::fileExists, createDatabase(utf8Of(text)).code());
  EXPECT_EQ("Dear database", bytesOf(text));
  EXPECT_EQ(ErrorCode::fileExists, createDatabase(utf8Of(path_)).code());
  EXPECT_EQ(ErrorCode::fileExists, createDatabase(utf8Of(folder_.path())).code());
  EXPECT_EQ(ErrorCode::cannotOpen, createDatabase(utf8Of(folder_.path() / "no folder" / "x.cdb")).code());
}

TEST_F(DatabaseFileTest, OfManyWhoMakeAFileOfOneNameOneDoes) {
  constexpr int kMakerCount = 4;
  for (int round = 0; round < 50; ++round) {
    const std::filesystem::path path = folder_.file("new " + std::to_string(round) + ".cdb");
    std::atomic<int> madeCount = 0;
    // (A std::barrier now and then never wakes its last thread in programs for Windows.)
    std::atomic<int> waitingCount = 0;
    std::vector<std::jthread> makers;
    for (int maker = 0; maker < kMakerCount; ++maker) {
      makers.emplace_back([&] {
        for (++waitingCount; waitingCount < kMakerCount;) std::this_thread::yield();
        const Status status = createDatabase(utf8Of(path));
        if (status) ++madeCount;
        EXPECT_TRUE(status || status.code() == ErrorCode::fileExists) << status.message();
      });
    }
    makers.clear();
    EXPECT_EQ(1, madeCount);
    EXPECT_TRUE(tryOpenFile(path));
  }
}

TEST_F(DatabaseFileTest, ACreatedDatabaseIsWholeAndEmpty) {
  EXPECT_EQ("ok", OtherProgram(path_).ask("PRAGMA integrity_check"));
  EXPECT_EQ("0", OtherProgram(path_).ask("SELECT count(*) FROM sqlite_schema"));
  EXPECT_TRUE(tryOpenFile(path_));
}

TEST_F(DatabaseFileTest, ADatabaseWithAnyNameIsMadeOpenedAndDropped) {
  for (const char* name :
       {"it's.cdb", "two  blanks.cdb", "\xCE\x92\xCE\xB9\xCE\xB2\xCE\xBB\xCE\xAF\xCE\xB1.cdb",
        "\xE6\x9C\xAC.cdb", "\xF0\x9F\x93\x9A.cdb", "100%.cdb", "a#b&c;d.cdb"}) {
    SCOPED_TRACE(name);
    const std::filesystem::path path = folder_.file(name);
    ASSERT_TRUE(createDatabase(utf8Of(path)));
    EXPECT_TRUE(tryOpenFile(path));
    EXPECT_TRUE(dropDatabase(utf8Of(path)));
    EXPECT_FALSE(std::filesystem::exists(path));
  }
}

TEST_F(DatabaseFileTest, DroppingTakesTheJournalAlong) {
  const std::filesystem::path journal = utf8Of(path_) + "-journal";
  writeBytes(journal, "");
  ASSERT_TRUE(dropDatabase(utf8Of(path_)));
  EXPECT_FALSE(std::filesystem::exists(path_));
  EXPECT_FALSE(std::filesystem::exists(journal));
}

TEST_F(DatabaseFileTest, OnlyADatabaseIsDropped) {
  const std::filesystem::path text = folder_.file("letter.txt");
  writeBytes(text, "Dear database");
  EXPECT_EQ(ErrorCode::cannotOpen, dropDatabase(utf8Of(text)).code());
  EXPECT_EQ("Dear database", bytesOf(text));
  EXPECT_EQ(ErrorCode::cannotOpen, dropDatabase(utf8Of(folder_.path())).code());
  EXPECT_EQ(ErrorCode::cannotOpen, dropDatabase(utf8Of(folder_.file("missing.cdb"))).code());
}

TEST_F(DatabaseFileTest, ADatabaseInUseIsNotDropped) {
  prepare("CREATE TABLE t (a); INSERT INTO t VALUES (1)");
  OtherProgram other(path_);
  other.run("BEGIN; SELECT * FROM t");
  EXPECT_EQ(ErrorCode::locked, dropDatabase(utf8Of(path_)).code());
  EXPECT_TRUE(std::filesystem::exists(path_));
}

TEST_F(DatabaseFileTest, AFileThatIsMarkedReadOnlyIsNotDropped) {
  using std::filesystem::perms;
  std::filesystem::permissions(path_, perms::owner_read, std::filesystem::perm_options::replace);
  EXPECT_EQ(ErrorCode::readOnly, dropDatabase(utf8Of(path_)).code());
  EXPECT_TRUE(std::filesystem::exists(path_));
  std::filesystem::permissions(path_, perms::owner_all, std::filesystem::perm_options::replace);
  EXPECT_TRUE(dropDatabase(utf8Of(path_)));
}

TEST_F(DatabaseFileTest, TheOpenDatabaseIsNotDropped) {
  open();
  EXPECT_EQ(ErrorCode::locked, tryRun("DROP DATABASE '" + utf8Of(path_) + "'").code());
  EXPECT_TRUE(std::filesystem::exists(path_));
}

TEST_F(DatabaseFileTest, TheStoreWithoutADatabaseMakesAndDropsDatabases) {
  backend_ = storeWithoutDatabase();
  const std::string path = utf8Of(folder_.file("Bob's new one.cdb"));
  run("CREATE DATABASE '" + path + "'");
  EXPECT_TRUE(std::filesystem::exists(folder_.file("Bob's new one.cdb")));
  EXPECT_EQ(ErrorCode::fileExists, tryRun("CREATE DATABASE '" + path + "'").code());
  EXPECT_EQ(ErrorCode::noTable, tryRun("SELECT * FROM t").code());
  run("DROP DATABASE '" + path + "'");
  EXPECT_FALSE(std::filesystem::exists(folder_.file("Bob's new one.cdb")));
}

TEST_F(DatabaseFileTest, ACreatedFileTellsWhoMadeIt) {
  EXPECT_EQ("1367766638", OtherProgram(path_).ask("PRAGMA application_id"));
}

}  // namespace
}  // namespace store
