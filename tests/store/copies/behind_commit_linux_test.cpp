// What goes wrong when a change is done already: behind the emptying of its journal, before it is
// acknowledged.
#include <functional>
#include <utility>

#include "tests/store/copies/copies_fixture.h"
#include "tests/store/faults/wrapped_file_system.h"

namespace store {
namespace {

namespace fs = std::filesystem;

struct FileFacts {
  bool isJournal = false;
};
using Files = WrappedFileSystem<FileFacts>;

std::function<int()> g_behindCommit;
bool g_isBehindCommit = false;

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  Files::begin(file, {(flags & SQLITE_OPEN_MAIN_JOURNAL) != 0});
  return Files::open(name, file, flags, outFlags);
}

int truncateFile(sqlite3_file* file, sqlite3_int64 length) {
  const int result = Files::truncate(file, length);
  g_isBehindCommit = Files::factsOf(file).isJournal && length == 0 && g_behindCommit != nullptr;
  return result;
}

int syncFile(sqlite3_file* file, int flags) {
  if (!std::exchange(g_isBehindCommit, false)) return Files::sync(file, flags);
  return std::exchange(g_behindCommit, nullptr)();
}

class BehindCommitTest : public CopiesTest {
 protected:
  static void SetUpTestSuite() {
    Files::install("behind commit", [](sqlite3_vfs* layer, sqlite3_io_methods* methods) {
      methods->xTruncate = truncateFile;
      methods->xSync = syncFile;
      layer->xOpen = openFile;
    });
  }
  static void TearDownTestSuite() { Files::uninstall(); }

  BehindCommitTest() {
    fs::create_directory(place_);
    path_ = place_ / "data.cdb";
  }
  void TearDown() override {
    g_behindCommit = nullptr;
    CopiesTest::TearDown();
  }

  const fs::path place_ = folder_.file("place");
  const fs::path away_ = folder_.file("away");
};

TEST_F(BehindCommitTest, ARecordIsAcknowledgedThoughTheSystemCanNotTellTheNameOfTheFileJustThen) {
  open();
  const std::unique_ptr<Recordset> rows = records("SELECT * FROM t");
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(0, std::int64_t{4}));
  g_behindCommit = [this] {
    fs::rename(place_, away_);
    fs::create_directory_symlink(place_, place_);
    return SQLITE_OK;
  };
  const Status status = rows->update();
  ASSERT_EQ(nullptr, g_behindCommit);
  EXPECT_EQ(ErrorCode::inputOutput, backend_->checkFile().code()) << "that can't be told";
  EXPECT_TRUE(status) << status.message();
  EXPECT_EQ(4, rows->recordCount());
  fs::remove(place_);
  fs::rename(away_, place_);
  EXPECT_EQ("4", OtherProgram(path_).ask("SELECT count(*) FROM t"));
}

TEST_F(BehindCommitTest, AFileThatLosesItsNameJustThenIsNoFileThatWasChanged) {
  open();
  const std::unique_ptr<Recordset> rows = records("SELECT * FROM t");
  ASSERT_TRUE(rows->addNew());
  ASSERT_TRUE(rows->setValue(0, std::int64_t{4}));
  g_behindCommit = [this] {
    fs::rename(place_, away_);
    return SQLITE_OK;
  };
  EXPECT_EQ(ErrorCode::fileGone, rows->update().code());
  ASSERT_EQ(nullptr, g_behindCommit);
}

TEST_F(BehindCommitTest, WhoeverGoesBackHasTheStateOfBeforeThoughTheLastFlushFails) {
  change("UPDATE t SET b = 'later'; ");
  const std::string present = contentOf(path_);
  ASSERT_EQ(1u, kept().size());
  const fs::path copy = pathOfCopy(0);
  now_ += kHour;
  g_behindCommit = [] { return SQLITE_IOERR_FSYNC; };
  EXPECT_EQ(ErrorCode::inputOutput, putBack(copy).code());
  ASSERT_EQ(nullptr, g_behindCommit);
  ASSERT_EQ(2u, kept().size());
  EXPECT_EQ(present, contentOf(pathOfCopy(0)));
}

}  // namespace
}  // namespace store
