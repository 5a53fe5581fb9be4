// Files with faults in them: reading fails with a status or shows what is there; it never crashes or hangs.
#include <random>

#include "tests/store/store_fixture.h"

namespace store {
namespace {

class DamagedFilesTest : public StoreTest {
 protected:
  /// A small database with one of everything, on many small pages.
  void makeSmallDatabase() {
    std::filesystem::remove(path_);
    prepare(
        "PRAGMA page_size = 512; CREATE TABLE t (id INTEGER PRIMARY KEY, a Text, b Blob);"
        "CREATE TABLE p (x Text, y Integer, PRIMARY KEY (x, y)) WITHOUT ROWID;"
        "CREATE INDEX i ON t (a); CREATE VIEW v AS SELECT a FROM t");
    prepare(
        "WITH RECURSIVE s(n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM s WHERE n < 25) "
        "INSERT INTO t SELECT n, 'text ' || n, zeroblob(n * 30) FROM s");
    prepare("INSERT INTO p SELECT a, id FROM t");
  }

  /// Opens the file at `path` and does all that a user can; counts what succeeded. The sanitizers watch.
  int useEverything(const std::filesystem::path& path, bool writes) {
    std::unique_ptr<Backend> opened;
    if (!openDatabase(utf8Of(path), {.lockWait = 0}, &opened)) return 0;
    backend_ = std::move(opened);
    int succeeded = 1;
    for (const char* source :
         {"t", "p", "v", "MSysTables", "MSysFields", "MSysIndexes",
          "SELECT * FROM t WHERE a > 'text 2' ORDER BY a DESC", "SELECT count(*), sum(id) FROM t"}) {
      std::unique_ptr<Recordset> recordset;
      if (!tryOpen(source, &recordset, SourceKind::unknown)) continue;
      succeeded += 1 + readRecords(*recordset);
      if (writes && recordset->isUpdatable()) succeeded += changeRecords(*recordset);
    }
    backend_.reset();
    return succeeded;
  }

 private:
  /// From the current record on, as many as there can be in such a small file.
  static int readRecords(Recordset& recordset) {
    int succeeded = 0;
    int records = 0;
    while (!recordset.isEof() && ++records < 200) {
      Cell cell;
      for (std::size_t column = 0; column < recordset.columns().size(); ++column) {
        if (recordset.cell(column, &cell)) succeeded += cell.kind == CellKind::null ? 0 : 1;
      }
      if (!recordset.moveNext()) break;
    }
    return succeeded;
  }

  /// Changes the first record, deletes the last one and adds another.
  static int changeRecords(Recordset& recordset) {
    if (recordset.recordCount() == 0 || !recordset.moveFirst()) return 0;
    int succeeded = 0;
    if (recordset.setValue(0, std::int64_t{100})) succeeded += recordset.update() ? 1 : 0;
    if (recordset.cancelUpdate() && recordset.moveLast()) succeeded += recordset.remove() ? 1 : 0;
    if (recordset.addNew()) succeeded += recordset.update() ? 1 : 0;
    return succeeded;
  }
};

TEST_F(DamagedFilesTest, ASoundFileGivesAll) {
  makeSmallDatabase();
  EXPECT_GT(useEverything(path_, true), 150);
}

TEST_F(DamagedFilesTest, AnyByteCanBeWrong) {
  makeSmallDatabase();
  const std::string sound = bytesOf(path_);
  const std::filesystem::path damaged = folder_.file("damaged.cdb");
  int unharmed = 0;
  int refused = 0;
  int number = 0;
  std::size_t step = 1;
  for (std::size_t offset = 0; offset < sound.size(); offset += step) {
    // The head and the schema closely, all else here and there.
    step = offset < 1024 ? 17 : 293;
    std::string bytes = sound;
    bytes[offset] = static_cast<char>(sound[offset] ^ "\xFF\x01\x80\x10"[++number % 4]);
    writeBytes(damaged, bytes);
    SCOPED_TRACE(offset);
    // Writing is durable and therefore slow.
    const int succeeded = useEverything(damaged, number % 5 == 0);
    ++(succeeded == 0 ? refused : unharmed);
    for (const char* suffix : {"", "-journal", "-wal", "-shm"})
      std::filesystem::remove(utf8Of(damaged) + suffix);
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(unharmed, refused);
}

TEST_F(DamagedFilesTest, WholePagesCanBeRubbish) {
  makeSmallDatabase();
  const std::string sound = bytesOf(path_);
  std::mt19937 random(20260101);
  const std::filesystem::path damaged = folder_.file("damaged.cdb");
  for (std::size_t page = 0; page * 512 < sound.size(); ++page) {
    std::string bytes = sound;
    for (std::size_t offset = page == 0 ? 100 : 0; offset < 512; ++offset) {
      bytes[page * 512 + offset] = static_cast<char>(random());
    }
    writeBytes(damaged, bytes);
    SCOPED_TRACE(page);
    useEverything(damaged, page % 5 == 0);
    std::filesystem::remove(utf8Of(damaged) + "-journal");
    std::filesystem::remove(damaged);
  }
}

TEST_F(DamagedFilesTest, PagesInAnotherOrderLeadNowhere) {
  makeSmallDatabase();
  const std::string sound = bytesOf(path_);
  const std::filesystem::path damaged = folder_.file("damaged.cdb");
  for (std::size_t page = 1; (page + 2) * 512 <= sound.size(); ++page) {
    std::string bytes = sound;
    bytes.replace(page * 512, 512, sound, (page + 1) * 512, 512);
    bytes.replace((page + 1) * 512, 512, sound, page * 512, 512);
    writeBytes(damaged, bytes);
    SCOPED_TRACE(page);
    useEverything(damaged, page % 5 == 0);
    std::filesystem::remove(utf8Of(damaged) + "-journal");
    std::filesystem::remove(damaged);
  }
}

TEST_F(DamagedFilesTest, DamageInTheMiddleIsToldAndTheRestIsRead) {
  prepare("CREATE TABLE t (a Integer, b Text)");
  prepare(
      "WITH RECURSIVE s(n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM s WHERE n < 3000) "
      "INSERT INTO t SELECT n, printf('%0100d', n) FROM s");
  std::string bytes = bytesOf(path_);
  ASSERT_GT(bytes.size(), 200'000u);
  // One leaf, far from the root: what it holds is gone, and no other record with it.
  const std::size_t page = bytes.size() / 4096 / 2;
  for (std::size_t offset = page * 4096; offset < (page + 1) * 4096; ++offset) bytes[offset] = '\x5A';
  writeBytes(path_, bytes);
  open();
  std::unique_ptr<Recordset> all;
  EXPECT_EQ(ErrorCode::damaged, tryOpen("Select * from [t]", &all).code());
  EXPECT_EQ(ErrorCode::damaged, tryOpen("SELECT count(b) FROM t", &all).code());
  EXPECT_EQ("1 2 3", columnOf("SELECT a FROM t WHERE rowid < 4"));
  const auto last = records("SELECT a, b FROM t WHERE rowid = 3000");
  EXPECT_EQ("3000", textOf(*last, 0));
}

TEST_F(DamagedFilesTest, ARecordThatIsDamagedWhileItsNeighboursAreSoundFailsAlone) {
  prepare("PRAGMA page_size = 512; VACUUM; CREATE TABLE t (a Integer, b Text)");
  prepare("INSERT INTO t VALUES (1, 'short'), (2, printf('%05000d', 2)), (3, 'short')");
  std::string bytes = bytesOf(path_);
  // The long text goes on through a chain of pages; one link leads beyond the end of the file.
  const std::size_t link = bytes.size() - std::size_t{5} * 512;
  bytes.replace(link, 4, "\x7F\xFF\xFF\xFF", 4);
  writeBytes(path_, bytes);
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_NE(nullptr, rows);
  ASSERT_EQ(3, rows->recordCount());
  EXPECT_EQ("short", textOf(*rows, 1));
  ASSERT_TRUE(rows->moveNext());
  Cell cell;
  EXPECT_EQ(ErrorCode::damaged, rows->cell(1, &cell).code());
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ("3", textOf(*rows, 0));
  EXPECT_EQ("short", textOf(*rows, 1));
}

}  // namespace
}  // namespace store
