#include "platform/store/rows/recordset.h"

#include "tests/store/rows/numbers_fixture.h"

namespace store {
namespace {

class RecordsetTest : public NumbersTest {};

TEST_F(RecordsetTest, TheFirstRecordIsCurrentAndTheCountIsRightAfterOpening) {
  openNumbers(3);
  EXPECT_EQ(3, numbers_->recordCount());
  EXPECT_EQ(1, numbers_->position());
  EXPECT_EQ("10", current());
  EXPECT_FALSE(numbers_->isBof());
  EXPECT_FALSE(numbers_->isEof());
}

TEST_F(RecordsetTest, AnEmptySetHasBofAndEofAndNoCurrentRecord) {
  openNumbers(0);
  EXPECT_TRUE(numbers_->isBof());
  EXPECT_TRUE(numbers_->isEof());
  EXPECT_EQ(0, numbers_->recordCount());
  Cell cell;
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->cell(0, &cell).code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->moveFirst().code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->moveNext().code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->remove().code());
}

TEST_F(RecordsetTest, MoveNextFromTheLastRecordReachesEofAndThereFails) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->moveLast());
  EXPECT_EQ("20", current());
  EXPECT_TRUE(numbers_->moveNext());
  EXPECT_TRUE(numbers_->isEof());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->moveNext().code());
  EXPECT_TRUE(numbers_->isEof());
  EXPECT_TRUE(numbers_->movePrevious());
  EXPECT_EQ("20", current());
}

TEST_F(RecordsetTest, MovePreviousFromTheFirstRecordReachesBofAndThereFails) {
  openNumbers(2);
  EXPECT_TRUE(numbers_->movePrevious());
  EXPECT_TRUE(numbers_->isBof());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->movePrevious().code());
  EXPECT_TRUE(numbers_->moveNext());
  EXPECT_EQ("10", current());
}

TEST_F(RecordsetTest, MovePastAnEndLandsOnBofOrEof) {
  openNumbers(5);
  EXPECT_TRUE(numbers_->move(INT64_MAX, MoveOrigin::first));
  EXPECT_TRUE(numbers_->isEof());
  EXPECT_TRUE(numbers_->move(INT64_MIN, MoveOrigin::last));
  EXPECT_TRUE(numbers_->isBof());
  EXPECT_TRUE(numbers_->move(3, MoveOrigin::first));
  EXPECT_EQ("40", current());
  EXPECT_TRUE(numbers_->move(-2, MoveOrigin::current));
  EXPECT_EQ("20", current());
  EXPECT_TRUE(numbers_->move(-1, MoveOrigin::last));
  EXPECT_EQ("40", current());
  EXPECT_TRUE(numbers_->move(0, MoveOrigin::current));
  EXPECT_EQ("40", current());
}

TEST_F(RecordsetTest, PositionsAreCountedFromOne) {
  openNumbers(3);
  EXPECT_TRUE(numbers_->setPosition(3));
  EXPECT_EQ("30", current());
  EXPECT_EQ(ErrorCode::invalidArgument, numbers_->setPosition(0).code());
  EXPECT_EQ(ErrorCode::invalidArgument, numbers_->setPosition(4).code());
  EXPECT_EQ("30", current());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ(-3, numbers_->position());
  ASSERT_TRUE(numbers_->move(-9, MoveOrigin::first));
  EXPECT_EQ(-2, numbers_->position());
}

TEST_F(RecordsetTest, ANewRecordIsStoredAtTheEndAndIsCurrent) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->addNew());
  EXPECT_EQ(EditMode::adding, numbers_->editMode());
  EXPECT_EQ("(null)", current());
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{5}));
  EXPECT_EQ("5", current());
  EXPECT_EQ("(none)", inFile("SELECT N FROM Numbers WHERE N = 5"));
  ASSERT_TRUE(numbers_->update());
  EXPECT_EQ(3, numbers_->recordCount());
  EXPECT_EQ(3, numbers_->position());
  EXPECT_EQ("5", current());
  EXPECT_EQ("(null)", textOf(*numbers_, 1));
  EXPECT_EQ("5", inFile("SELECT N FROM Numbers WHERE N = 5"));
}

TEST_F(RecordsetTest, ANewRecordOfATableInAnotherOrderStillStandsAtTheEnd) {
  openNumbers(3);
  const auto sorted = records("Select * from Numbers order by N desc");
  ASSERT_TRUE(sorted->addNew());
  ASSERT_TRUE(sorted->setValue(0, std::int64_t{99}));
  ASSERT_TRUE(sorted->update());
  ASSERT_TRUE(sorted->moveFirst());
  EXPECT_EQ("30 20 10 99", columnOf(*sorted));
}

TEST_F(RecordsetTest, ANewRecordWithoutAnyValueIsStoredByUpdate) {
  openNumbers(0);
  ASSERT_TRUE(numbers_->addNew());
  ASSERT_TRUE(numbers_->update());
  EXPECT_EQ(1, numbers_->recordCount());
  EXPECT_EQ("1", inFile("SELECT count(*) FROM Numbers"));
}

TEST_F(RecordsetTest, ANewRecordIntoWhichNothingWasWrittenIsDroppedByAMove) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->addNew());
  ASSERT_TRUE(numbers_->moveFirst());
  EXPECT_EQ(2, numbers_->recordCount());
  EXPECT_EQ("2", inFile("SELECT count(*) FROM Numbers"));
}

TEST_F(RecordsetTest, CancelUpdateGivesTheFormerRecordBack) {
  openNumbers(3);
  ASSERT_TRUE(numbers_->moveNext());
  ASSERT_TRUE(numbers_->addNew());
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{5}));
  ASSERT_TRUE(numbers_->cancelUpdate());
  EXPECT_EQ("20", current());
  EXPECT_EQ(EditMode::none, numbers_->editMode());
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{21}));
  EXPECT_EQ(EditMode::inProgress, numbers_->editMode());
  ASSERT_TRUE(numbers_->cancelUpdate());
  EXPECT_EQ("20", current());
  EXPECT_EQ("3", inFile("SELECT count(*) FROM Numbers"));
}

TEST_F(RecordsetTest, AMoveOffADirtyRecordStoresItFirst) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("20", current());
  EXPECT_EQ("11", inFile("SELECT N FROM Numbers WHERE Name = 'row 1'"));
}

TEST_F(RecordsetTest, AMoveStaysOnADirtyRecordThatCannotBeStored) {
  prepare("CREATE TABLE Strict (N Integer CHECK (N < 100))");
  prepare("INSERT INTO Strict VALUES (1), (2)");
  open();
  const auto strict = records("Select * from [Strict]");
  ASSERT_TRUE(strict->setValue(0, std::int64_t{100}));
  EXPECT_EQ(ErrorCode::constraint, strict->moveNext().code());
  EXPECT_EQ(1, strict->position());
  EXPECT_EQ("100", textOf(*strict, 0));
  EXPECT_EQ("1", inFile("SELECT min(N) FROM Strict"));
  ASSERT_TRUE(strict->setValue(0, std::int64_t{99}));
  EXPECT_TRUE(strict->moveNext());
  EXPECT_EQ("99", inFile("SELECT max(N) FROM Strict"));
}

TEST_F(RecordsetTest, AValueChangedBackBeforeTheUpdateIsNoChange) {
  openNumbers(1);
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{10}));
  EXPECT_EQ(EditMode::none, numbers_->editMode());
}

TEST_F(RecordsetTest, ADeletedRecordStaysCurrentAndUnreadableUntilAMove) {
  openNumbers(3);
  ASSERT_TRUE(numbers_->moveNext());
  ASSERT_TRUE(numbers_->remove());
  EXPECT_EQ(2, numbers_->recordCount());
  EXPECT_EQ("2", inFile("SELECT count(*) FROM Numbers"));
  Cell cell;
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->cell(0, &cell).code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->setValue(0, std::int64_t{1}).code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->remove().code());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("30", current());
  EXPECT_EQ(2, numbers_->position());
}

TEST_F(RecordsetTest, MovePreviousFromADeletedRecordReachesTheOneBefore) {
  openNumbers(3);
  ASSERT_TRUE(numbers_->moveNext());
  ASSERT_TRUE(numbers_->remove());
  ASSERT_TRUE(numbers_->movePrevious());
  EXPECT_EQ("10", current());
}

TEST_F(RecordsetTest, DeletingTheLastRecordLeavesEofBehindIt) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->moveLast());
  ASSERT_TRUE(numbers_->remove());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_TRUE(numbers_->isEof());
  ASSERT_TRUE(numbers_->moveFirst());
  ASSERT_TRUE(numbers_->remove());
  EXPECT_EQ(0, numbers_->recordCount());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->moveFirst().code());
}

TEST_F(RecordsetTest, AMoveOffTheOnlyDeletedRecordReachesTheEnd) {
  openNumbers(1);
  ASSERT_TRUE(numbers_->remove());
  EXPECT_FALSE(numbers_->isEof());
  EXPECT_TRUE(numbers_->moveNext());
  EXPECT_TRUE(numbers_->isEof());
  EXPECT_TRUE(numbers_->isBof());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->moveNext().code());
}

TEST_F(RecordsetTest, DeletingAllRecordsOneAfterTheOtherEnds) {
  openNumbers(4);
  int deleted = 0;
  for (; !numbers_->isEof() && deleted < 10; ++deleted) {
    ASSERT_TRUE(numbers_->remove());
    ASSERT_TRUE(numbers_->moveNext());
  }
  EXPECT_EQ(4, deleted);
  EXPECT_EQ("0", inFile("SELECT count(*) FROM Numbers"));
}

TEST_F(RecordsetTest, MovingToTheFirstRecordWhenAllAreDeletedFailsAndLeavesNone) {
  openNumbers(1);
  ASSERT_TRUE(numbers_->remove());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->moveFirst().code());
  EXPECT_TRUE(numbers_->isEof());
  EXPECT_TRUE(numbers_->isBof());
}

TEST_F(RecordsetTest, DeletingDropsWhatWasWrittenIntoTheRecord) {
  openNumbers(2);
  ASSERT_TRUE(numbers_->setValue(0, std::int64_t{11}));
  ASSERT_TRUE(numbers_->remove());
  EXPECT_EQ(EditMode::none, numbers_->editMode());
  ASSERT_TRUE(numbers_->moveNext());
  EXPECT_EQ("20", current());
}

TEST_F(RecordsetTest, AChangedKeyIsFollowed) {
  prepare("CREATE TABLE Keyed (Id INTEGER PRIMARY KEY, Name Text)");
  prepare("INSERT INTO Keyed VALUES (1, 'a'), (2, 'b')");
  open();
  const auto keyed = records("Select * from [Keyed]");
  ASSERT_TRUE(keyed->setValue(0, std::int64_t{7}));
  ASSERT_TRUE(keyed->update());
  EXPECT_EQ("7", textOf(*keyed, 0));
  EXPECT_EQ("a", textOf(*keyed, 1));
  ASSERT_TRUE(keyed->setValue(1, std::string("A")));
  ASSERT_TRUE(keyed->update());
  EXPECT_EQ("A", inFile("SELECT Name FROM Keyed WHERE Id = 7"));
}

TEST_F(RecordsetTest, ATableWithoutRowIdsIsWalkedAndChanged) {
  prepare("CREATE TABLE Pairs (A Text, B Integer, C Text, PRIMARY KEY (A, B)) WITHOUT ROWID");
  prepare("INSERT INTO Pairs VALUES ('x', 1, 'one'), ('x', 2, 'two'), ('y', 1, 'three')");
  open();
  const auto pairs = records("Select * from [Pairs]");
  ASSERT_TRUE(pairs->isUpdatable());
  ASSERT_TRUE(pairs->moveNext());
  ASSERT_TRUE(pairs->setValue(1, std::int64_t{9}));
  ASSERT_TRUE(pairs->setValue(2, std::string("zwei")));
  ASSERT_TRUE(pairs->update());
  EXPECT_EQ("zwei", textOf(*pairs, 2));
  ASSERT_TRUE(pairs->addNew());
  ASSERT_TRUE(pairs->setValue(0, std::string("z")));
  ASSERT_TRUE(pairs->setValue(1, std::int64_t{0}));
  ASSERT_TRUE(pairs->update());
  EXPECT_EQ("z", textOf(*pairs, 0));
  ASSERT_TRUE(pairs->moveFirst());
  ASSERT_TRUE(pairs->remove());
  EXPECT_EQ("3", inFile("SELECT count(*) FROM Pairs"));
  EXPECT_EQ("9", inFile("SELECT B FROM Pairs WHERE A = 'x'"));
  EXPECT_EQ("1", inFile("SELECT B FROM Pairs WHERE A = 'y'"));
  EXPECT_EQ("0", inFile("SELECT B FROM Pairs WHERE A = 'z'"));
}

TEST_F(RecordsetTest, BookmarksNameRecordsThroughDeletions) {
  openNumbers(5);
  ASSERT_TRUE(numbers_->setPosition(4));
  std::string bookmark;
  ASSERT_TRUE(numbers_->bookmark(&bookmark));
  ASSERT_TRUE(numbers_->moveFirst());
  ASSERT_TRUE(numbers_->remove());
  ASSERT_TRUE(numbers_->setBookmark(bookmark));
  EXPECT_EQ("40", current());
  ASSERT_TRUE(numbers_->moveFromBookmark(-1, bookmark));
  EXPECT_EQ("30", current());
  EXPECT_EQ(ErrorCode::invalidArgument, numbers_->setBookmark("no bookmark").code());
  EXPECT_EQ("30", current());
  ASSERT_TRUE(numbers_->setBookmark(bookmark));
  ASSERT_TRUE(numbers_->remove());
  EXPECT_EQ(ErrorCode::invalidArgument, numbers_->setBookmark(bookmark).code());
  EXPECT_EQ(ErrorCode::noCurrentRecord, numbers_->bookmark(&bookmark).code());
}

TEST_F(RecordsetTest, AForwardOnlyRecordsetMovesForwards) {
  openNumbers(3);
  std::unique_ptr<Recordset> forward;
  ASSERT_TRUE(tryOpen("Select * from [Numbers]", &forward, SourceKind::text, CursorType::forwardOnly));
  EXPECT_TRUE(forward->moveNext());
  EXPECT_EQ(ErrorCode::illegalOperation, forward->movePrevious().code());
  EXPECT_EQ(ErrorCode::illegalOperation, forward->moveLast().code());
  EXPECT_EQ("20", textOf(*forward, 0));
  EXPECT_TRUE(forward->moveFirst());
  EXPECT_EQ("10", textOf(*forward, 0));
}

TEST_F(RecordsetTest, AReadOnlyRecordsetRefusesEveryChange) {
  openNumbers(1);
  std::unique_ptr<Recordset> reading;
  ASSERT_TRUE(
      tryOpen("Select * from [Numbers]", &reading, SourceKind::text, CursorType::keyset, LockType::readOnly));
  EXPECT_FALSE(reading->isUpdatable());
  EXPECT_EQ(ErrorCode::readOnly, reading->setValue(0, std::int64_t{1}).code());
  EXPECT_EQ(ErrorCode::readOnly, reading->addNew().code());
  EXPECT_EQ(ErrorCode::readOnly, reading->remove().code());
  EXPECT_TRUE(reading->setValue(0, std::int64_t{10})) << "what the field shows already is no change";
}

TEST_F(RecordsetTest, FieldsAreFoundByNameInAnyLetterCase) {
  openNumbers(1);
  EXPECT_EQ(1u, numbers_->columnIndex("Name"));
  EXPECT_EQ(1u, numbers_->columnIndex("nAME"));
  EXPECT_EQ(std::nullopt, numbers_->columnIndex("Nam"));
  Cell cell;
  EXPECT_EQ(ErrorCode::itemNotFound, numbers_->cell(2, &cell).code());
  EXPECT_EQ(ErrorCode::itemNotFound, numbers_->setValue(2, std::int64_t{1}).code());
}

TEST_F(RecordsetTest, ACloneWalksOnItsOwn) {
  openNumbers(3);
  ASSERT_TRUE(numbers_->moveLast());
  std::unique_ptr<Recordset> copy;
  ASSERT_TRUE(numbers_->clone(&copy));
  EXPECT_EQ("10", textOf(*copy, 0));
  ASSERT_TRUE(copy->moveNext());
  EXPECT_EQ("30", current());
  numbers_.reset();
  EXPECT_EQ("20", textOf(*copy, 0));
}

TEST_F(RecordsetTest, ACloneShowsItsOwnRecordsWhenOneOfTheOtherIsDeleted) {
  prepare("CREATE TABLE Numbers (N Integer PRIMARY KEY)");
  prepare(
      "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 40) INSERT INTO Numbers "
      "SELECT i FROM s");
  open();
  numbers_ = records("Select * from [Numbers]");
  std::unique_ptr<Recordset> copy;
  ASSERT_TRUE(numbers_->clone(&copy));
  ASSERT_TRUE(numbers_->remove());
  // What is read for one of them may be kept for the next records.
  ASSERT_TRUE(copy->moveNext());
  EXPECT_EQ("2", textOf(*copy, 0));
  ASSERT_TRUE(copy->moveNext());
  EXPECT_EQ("3", textOf(*copy, 0));
  ASSERT_TRUE(numbers_->setPosition(5));
  EXPECT_EQ("6", current());
  ASSERT_TRUE(copy->setPosition(7));
  EXPECT_EQ("7", textOf(*copy, 0));
}

TEST_F(RecordsetTest, PositionsInALargeTableFindTheirRows) {
  prepare("CREATE TABLE Big (N Integer)");
  prepare(
      "WITH RECURSIVE s(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM s WHERE i < 200000) INSERT INTO Big "
      "SELECT i FROM s");
  open();
  const auto big = records("Select * from [Big]");
  ASSERT_EQ(200000, big->recordCount());
  for (std::int64_t position = 1; position <= 200000; position += 997) {
    ASSERT_TRUE(big->setPosition(position));
    ASSERT_EQ(std::to_string(position), textOf(*big, 0));
  }
}

}  // namespace
}  // namespace store
