// Records under which other programs, and statements of our own, change the file.
#include "tests/store/rows/numbers_fixture.h"

namespace store {
namespace {

class SharedRowsTest : public NumbersTest {};

TEST_F(SharedRowsTest, ARowThatAnotherProgramDeletedReadsAsMissing) {
  openNumbers(3);
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 20");
  ASSERT_TRUE(numbers_->moveNext());
  Cell cell;
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->cell(0, &cell).code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->setValue(0, std::int64_t{1}).code());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("30", current());
}

TEST_F(SharedRowsTest, UpdatingARowThatAnotherProgramDeletedFails) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 10");
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->update().code());
  EXPECT_EQ(EditMode::inProgress, numbers_->editMode());
  EXPECT_EQ("1", inFile("SELECT count(*) FROM Numbers"));
}

TEST_F(SharedRowsTest, DeletingARowThatAnotherProgramDeletedCountsAsDone) {
  openNumbers(5);
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 30");
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("20", current());
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 20");
  ASSERT_TRUE(numbers_->remove());  // read before it went
  ASSERT_TRUE(numbers_->moveNext());
  ASSERT_TRUE(numbers_->remove());  // never read
  ASSERT_TRUE(numbers_->moveNext());
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{41}));
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 40");
  ASSERT_TRUE(numbers_->remove());  // changed and not yet written
  EXPECT_EQ(EditMode::none, numbers_->editMode());
  EXPECT_EQ(2, numbers_->recordCount());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("50", current());
  EXPECT_EQ("60", inFile("SELECT sum(N) FROM Numbers"));
}

TEST_F(SharedRowsTest, RowsThatAnotherProgramAddsDoNotAppear) {
  openNumbers(2);
  OtherProgram(path_).run("INSERT INTO Numbers VALUES (30, 'new')");
  EXPECT_EQ(2, numbers_->recordCount());
  EXPECT_EQ("10 20", columnOf(*numbers_));
}

TEST_F(SharedRowsTest, ANewTableOfOursKeepsTheRecordsetAlive) {
  openNumbers(2);
  run("CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)");
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("20", current());
}

TEST_F(SharedRowsTest, ARecordThatAnotherProgramChangedSinceItWasReadIsNotOverwritten) {
  openNumbers(2);
  EXPECT_EQ("10", current());
  OtherProgram(path_).run("UPDATE Numbers SET Name = 'theirs' WHERE N = 10");
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  EXPECT_EQ(ErrorCode::changedElsewhere, numbers_->update().code());
  EXPECT_EQ(ErrorCode::changedElsewhere, numbers_->moveNext().code());
  EXPECT_TRUE(numbers_->cancelUpdate());
  EXPECT_EQ("theirs", textOf(*numbers_, 1));
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  EXPECT_TRUE(numbers_->update());
  EXPECT_EQ("11 theirs", inFile("SELECT N || ' ' || Name FROM Numbers WHERE N = 11"));
}

TEST_F(SharedRowsTest, ARowThatAnotherProgramDeletedMayBeDeletedAgain) {
  openNumbers(2);
  EXPECT_EQ("10", current());
  OtherProgram(path_).run("DELETE FROM Numbers WHERE N = 10");
  EXPECT_TRUE(numbers_->remove());
  EXPECT_EQ(1, numbers_->recordCount());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("20", current());
}

}  // namespace
}  // namespace store
