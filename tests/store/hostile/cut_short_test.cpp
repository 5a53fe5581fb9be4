// Another program cuts the open file short.
#include "tests/store/store_fixture.h"

namespace store {
namespace {

class CutShortTest : public StoreTest {
 protected:
  static constexpr int kCount = 200;

  void SetUp() override {
    StoreTest::SetUp();
    // The texts are too long for the pages that hold the keys, and so are read only when they are asked for.
    prepare(
        "CREATE TABLE t (a Integer, b Text); WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM "
        "s "
        "WHERE i < 200) INSERT INTO t SELECT i, printf('%020000d', i) FROM s");
  }

  /// Reads all records, as far as they can be read, and returns how many could.
  static int readAll(Recordset& rows) {
    int count = 0;
    for (int number = 1; number <= rows.recordCount(); ++number) {
      if (!rows.setPosition(number)) continue;
      const std::string shown = textOf(rows, 1);
      if (shown.starts_with("(failed")) continue;
      EXPECT_EQ(number, std::stoi(shown)) << "a record is read rightly or not at all";
      ++count;
    }
    return count;
  }
};

TEST_F(CutShortTest, AReadingFailsAndTheProgramGoesOn) {
  const std::string whole = bytesOf(path_);
  for (const std::uintmax_t left :
       {whole.size() / 2, std::size_t{3 * 4096 + 100}, std::size_t{100}, std::size_t{0}}) {
    SCOPED_TRACE(left);
    open();
    const auto rows = records("Select * from [t]");
    EXPECT_EQ("1", textOf(*rows, 0));
    std::filesystem::resize_file(path_, left);
    EXPECT_LT(readAll(*rows), kCount);
    std::unique_ptr<Recordset> sorted;
    EXPECT_FALSE(tryOpen("SELECT b FROM t ORDER BY b", &sorted));
    backend_.reset();
    writeBytes(path_, whole);
  }
}

TEST_F(CutShortTest, AChangeIsRefused) {
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->moveLast());
  ASSERT_TRUE(rows->setValue(1, std::string("typed")));
  // Waits until our reading has ended: within it nobody may change the file at all.
  prepare("BEGIN EXCLUSIVE; ROLLBACK");
  std::filesystem::resize_file(path_, 4096);
  EXPECT_EQ(ErrorCode::damaged, rows->update().code());
  EXPECT_EQ("typed", textOf(*rows, 1));
}

}  // namespace
}  // namespace store
