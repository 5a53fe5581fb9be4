// What other programs change in the open file: that it is noticed, and where the records stand then.
#include <vector>

#include "gmock/gmock.h"
#include "tests/support/exclusive_lock.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;

class OthersTest : public DataTest {
 protected:
  void openFive() {
    openTable(L"a integer, b text",
              {L"10, 'ten'", L"20, 'twenty'", L"30, 'thirty'", L"40, 'forty'", L"50, 'fifty'"});
    currentRecord = 1;
  }
  void elsewhere(const wchar_t* statement) { runOn(path_, {statement}); }
  std::wstring value() { return database_.valueText(0).text(); }
  /// Where records at these positions stand after the records were opened anew.
  std::vector<std::uint32_t> placesOf(std::vector<std::uint32_t> positions) {
    const Outcome reopened = database_.reopenInPlace(positions, read_);
    EXPECT_TRUE(reopened) << testing::PrintToString(std::wstring(reopened.reason().text()));
    return positions;
  }

  RecordSnapshot read_;
};

TEST_F(OthersTest, AChangeIsNoticedOnceAndOurOwnIsNone) {
  EXPECT_FALSE(database_.othersHaveChanged()) << "without a file";
  openFive();
  EXPECT_FALSE(database_.othersHaveChanged());
  elsewhere(L"UPDATE t SET b = 'else' WHERE a = 20");
  EXPECT_TRUE(database_.othersHaveChanged());
  EXPECT_FALSE(database_.othersHaveChanged());
  EXPECT_TRUE(database_.deleteCurrent());
  EXPECT_FALSE(database_.othersHaveChanged());
}

TEST_F(OthersTest, WhatWasChangedBeforeTheFileWasOpenedIsNone) {
  openFive();
  elsewhere(L"DELETE FROM t");
  ASSERT_TRUE(database_.open(path_.c_str()));
  EXPECT_FALSE(database_.othersHaveChanged());
}

TEST_F(OthersTest, WhatAnotherProgramShutsOutIsNoticedLater) {
  openFive();
  elsewhere(L"UPDATE t SET b = 'else'");
  auto lock = lockExclusively(path_);
  ASSERT_TRUE(lock->isHeld());
  EXPECT_FALSE(database_.othersHaveChanged()) << "it can't be told";
  lock.reset();
  EXPECT_TRUE(database_.othersHaveChanged());
}

TEST_F(OthersTest, WhatWasAddedIsThereAndTheRecordStandsWhereItStood) {
  openFive();
  ASSERT_TRUE(database_.moveTo(3));
  elsewhere(L"INSERT INTO t VALUES (60, 'sixty')");
  EXPECT_THAT(placesOf({3, 5, 1}), ElementsAre(3, 5, 1));
  EXPECT_EQ(database_.recordCount(), 6u);
  EXPECT_EQ(recordCount, 6u);
  EXPECT_EQ(value(), L"30") << "it is current";
  EXPECT_EQ(read_.position(), 3u);
  EXPECT_STREQ(read_.fields().at(1).text.text(), L"thirty");
}

TEST_F(OthersTest, RecordsAreFoundAgainByTheirKeysInAnotherOrder) {
  openFive();
  ASSERT_TRUE(database_.openRecordset(L"Select * from t order by b"));  // fifty forty ten thirty twenty
  elsewhere(L"UPDATE t SET b = 'a ' || b WHERE a = 20");
  elsewhere(L"DELETE FROM t WHERE a = 40");
  elsewhere(L"INSERT INTO t VALUES (1, 'aa')");  // "a twenty" aa fifty ten thirty
  EXPECT_THAT(placesOf({5, 4, 1}), ElementsAre(1, 5, 3));
  EXPECT_EQ(value(), L"20");
}

TEST_F(OthersTest, ByKeysOfSeveralColumnsToo) {
  openWith({L"CREATE TABLE k (a text, b integer, c text, PRIMARY KEY (b, a)) WITHOUT ROWID",
            L"INSERT INTO k VALUES ('x', 2, 'first'), ('y', 2, 'second'), ('x', 3, 'third')"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from k"));
  elsewhere(L"INSERT INTO k VALUES ('w', 1, 'before'), ('xx', 2, 'between')");
  EXPECT_THAT(placesOf({2, 3, 1}), ElementsAre(4, 5, 2));
  EXPECT_STREQ(read_.fields().at(2).text.text(), L"second");
}

TEST_F(OthersTest, InThePlaceOfOneThatIsGoneComesTheNext) {
  openFive();
  elsewhere(L"DELETE FROM t WHERE a IN (10, 30, 40)");
  EXPECT_THAT(placesOf({3, 1}), ElementsAre(2, 1));
  EXPECT_EQ(value(), L"50");
}

TEST_F(OthersTest, AndBehindTheLastOneThatIsLeftThat) {
  openFive();
  elsewhere(L"DELETE FROM t WHERE a > 20");
  EXPECT_THAT(placesOf({5, 4}), ElementsAre(2, 2));
  EXPECT_EQ(value(), L"20");
}

TEST_F(OthersTest, WithoutAnyThatIsLeftTheNearestPlaceIsTaken) {
  openFive();
  elsewhere(L"DELETE FROM t");
  elsewhere(L"INSERT INTO t (rowid, a) VALUES (101, 1), (102, 2)");
  EXPECT_THAT(placesOf({4, 1}), ElementsAre(2, 1));
  EXPECT_EQ(value(), L"2");
}

TEST_F(OthersTest, WithoutRecordsThereIsNoPlace) {
  openFive();
  elsewhere(L"DELETE FROM t");
  EXPECT_THAT(placesOf({3, 1}), ElementsAre(0, 0));
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_TRUE(read_.isEmpty());
  elsewhere(L"INSERT INTO t VALUES (7, 'seven')");
  EXPECT_THAT(placesOf({0}), ElementsAre(1));
  EXPECT_EQ(value(), L"7");
}

TEST_F(OthersTest, OfWhatIsNoSingleTableTheNumberCounts) {
  openFive();
  ASSERT_TRUE(database_.openRecordset(L"Select b, count(*) from t group by b order by 1"));
  elsewhere(L"INSERT INTO t VALUES (1, 'aa')");
  EXPECT_THAT(placesOf({2}), ElementsAre(2));
  EXPECT_EQ(value(), L"fifty");
}

TEST_F(OthersTest, UnderOtherFieldsEverythingStaysAsItIs) {
  openFive();
  ASSERT_TRUE(database_.moveTo(2));
  elsewhere(L"ALTER TABLE t ADD COLUMN c");
  std::vector<std::uint32_t> positions = {2};
  const Outcome reopened = database_.reopenInPlace(positions, read_);
  EXPECT_EQ(reopened.cause(), Outcome::Cause::structureChanged);
  EXPECT_TRUE(read_.isEmpty());
  EXPECT_EQ(database_.fieldCount(), 2u);
  EXPECT_EQ(currentRecord, 2u);
  elsewhere(L"DROP TABLE t");
  EXPECT_FALSE(database_.reopenInPlace(positions, read_));
  EXPECT_THAT(positions, ElementsAre(2));
}

TEST_F(OthersTest, AsLongAsARecordIsNewNothingIsOpened) {
  openFive();
  ASSERT_TRUE(database_.addNew());
  elsewhere(L"DELETE FROM t");
  std::vector<std::uint32_t> positions = {6};
  EXPECT_FALSE(database_.reopenInPlace(positions, read_));
  EXPECT_TRUE(database_.newRecordPending());
  EXPECT_EQ(database_.recordCount(), 6u);
}

TEST_F(OthersTest, ReadingsOfTheSameValuesAreTheSame) {
  openFive();
  const RecordSnapshot before = database_.readRecord();
  EXPECT_TRUE(Database::isSameReading(before, database_.readRecord()));
  elsewhere(L"UPDATE t SET b = 'TEN' WHERE a = 10");
  ASSERT_TRUE(database_.moveTo(1));
  EXPECT_FALSE(Database::isSameReading(before, database_.readRecord()));
  EXPECT_FALSE(Database::isSameReading({}, {})) << "nothing was read";
}

}  // namespace
