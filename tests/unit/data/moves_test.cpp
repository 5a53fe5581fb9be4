// Moving through the current recordset, and the counters.
#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

class MovesTest : public DataTest {
 protected:
  void openFive() {
    openTable(L"a integer", {L"10", L"20", L"30", L"40", L"50"});
    currentRecord = 1;
  }
  std::wstring value() { return database_.valueText(0).text(); }
  /// What the list shows in a row; "?" when it can't be read.
  std::wstring rowText(std::uint32_t row) {
    String text;
    return database_.readForList(row, 0, text) ? text.text() : L"?";
  }
};

TEST_F(MovesTest, TheFirstRecordIsCurrentAtOnceAndTheCounterIsTheCallers) {
  currentRecord = 77;
  openTable(L"a integer", {L"10"});
  EXPECT_EQ(value(), L"10");
  EXPECT_EQ(currentRecord, 77u);
}

TEST_F(MovesTest, FirstAndLastSetTheCounter) {
  openFive();
  EXPECT_TRUE(database_.moveLast());
  EXPECT_EQ(currentRecord, 5u);
  EXPECT_EQ(value(), L"50");
  EXPECT_TRUE(database_.moveFirst());
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"10");
}

TEST_F(MovesTest, NextAndPreviousCount) {
  openFive();
  EXPECT_TRUE(database_.moveNext());
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
  EXPECT_TRUE(database_.movePrevious());
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(value(), L"20");
}

TEST_F(MovesTest, NextStopsBehindTheLastRecord) {
  openFive();
  database_.moveLast();
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(currentRecord, 6u);
  EXPECT_EQ(value(), L"");
  EXPECT_FALSE(database_.moveNext());
  EXPECT_EQ(currentRecord, 6u);
}

TEST_F(MovesTest, PreviousStopsBeforeTheFirstRecord) {
  openFive();
  EXPECT_TRUE(database_.movePrevious());
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_FALSE(database_.movePrevious());
  EXPECT_EQ(currentRecord, 0u);
}

TEST_F(MovesTest, PreviousDoesNotCountBelow0) {
  openFive();
  database_.moveTo(3);
  currentRecord = 0;
  EXPECT_TRUE(database_.movePrevious());
  EXPECT_EQ(currentRecord, 0u);
}

TEST_F(MovesTest, MoveToCountsFromTheFirstRecord) {
  openFive();
  database_.moveLast();
  EXPECT_TRUE(database_.moveTo(2));
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(value(), L"20");
}

TEST_F(MovesTest, AnEmptyRecordsetMovesNowhereButCountsFromTheFirst) {
  openTable(L"a integer", {});
  currentRecord = 9;
  EXPECT_FALSE(database_.moveLast());
  EXPECT_FALSE(database_.moveNext());
  EXPECT_FALSE(database_.movePrevious());
  EXPECT_FALSE(database_.moveTo(1));
  EXPECT_FALSE(database_.moveForList(0));
  EXPECT_EQ(currentRecord, 9u);
  EXPECT_FALSE(database_.moveFirst());
  EXPECT_EQ(currentRecord, 1u);
}

TEST_F(MovesTest, MovesForTheListReadTheirRowsAndLeaveTheCurrentRecord) {
  openFive();
  ASSERT_TRUE(database_.moveTo(2));
  for (const std::uint32_t row : {0u, 1u, 2u, 3u, 4u, 4u, 0u, 3u, 1u}) {
    EXPECT_TRUE(database_.moveForList(row)) << row;
    EXPECT_EQ(rowText(row), std::to_wstring((row + 1) * 10)) << row;
    EXPECT_EQ(value(), L"20") << row;
  }
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(value(), L"30");
}

TEST_F(MovesTest, RowsOfTheListAreReadWhateverMovesOrReplacesTheRecordset) {
  openFive();
  const auto moveElsewhere = [&](int kind) {
    switch (kind) {
      case 0:
        return database_.moveFirst();
      case 1:
        return database_.moveLast();
      case 2:
        return database_.moveNext();
      case 3:
        return database_.movePrevious();
      case 4:
        return database_.moveTo(4);
      case 5:
        return static_cast<bool>(database_.openRecordset(L"Select * from [t]"));
      default:
        return static_cast<bool>(database_.checkSql(L"Select * from [t]"));
    }
  };
  for (int kind = 0; kind <= 6; ++kind) {
    ASSERT_TRUE(database_.moveForList(2)) << kind;
    ASSERT_TRUE(moveElsewhere(kind)) << kind;
    EXPECT_EQ(rowText(2), L"30") << kind;
    EXPECT_EQ(rowText(3), L"40") << kind;
  }
}

TEST_F(MovesTest, RowsOfTheListFollowADeletion) {
  openFive();
  EXPECT_EQ(rowText(1), L"20");
  ASSERT_TRUE(database_.moveTo(1));
  ASSERT_TRUE(database_.deleteCurrent());
  for (const std::uint32_t row : {3u, 0u, 2u})
    EXPECT_EQ(rowText(row), std::to_wstring((row + 2) * 10)) << row;
  EXPECT_EQ(rowText(4), L"");
}

TEST_F(MovesTest, RowsOfTheListFollowWhatIsStored) {
  openFive();
  EXPECT_EQ(rowText(0), L"10");
  ASSERT_TRUE(database_.setValueFromEditor(0, FakeEditor::withText(L"11")));
  EXPECT_EQ(rowText(0), L"10");
  database_.update();
  EXPECT_EQ(rowText(0), L"11");
}

TEST_F(MovesTest, ANewRecordHasARowInTheListOnceItIsStored) {
  openFive();
  EXPECT_EQ(rowText(4), L"50");
  ASSERT_TRUE(database_.addNew());
  ASSERT_TRUE(database_.setValueFromEditor(0, FakeEditor::withText(L"60")));
  for (const std::uint32_t row : {0u, 4u, 3u})
    EXPECT_EQ(rowText(row), std::to_wstring((row + 1) * 10)) << row;
  EXPECT_EQ(rowText(5), L"");
  EXPECT_TRUE(database_.newRecordPending());
  EXPECT_EQ(value(), L"60");
  EXPECT_EQ(stored(L"Select count(*) from t"), L"5");
  // A move stores it as well as an update.
  ASSERT_TRUE(database_.moveFirst());
  EXPECT_EQ(rowText(5), L"60");
  EXPECT_EQ(stored(L"Select count(*) from t"), L"6");
}

TEST_F(MovesTest, WhatWasTypedAndIsRefusedOutlastsTheReadingOfTheList) {
  openTable(L"k integer CHECK (k < 10)", {L"1", L"2"});
  ASSERT_TRUE(database_.setValueFromEditor(0, FakeEditor::withText(L"77")));
  database_.update();
  EXPECT_EQ(rowText(0), L"1");
  EXPECT_EQ(rowText(1), L"2");
  EXPECT_EQ(value(), L"77");
}

TEST_F(MovesTest, ARowThatCantBeReadSaysWhy) {
  openFive();
  runOn(path_, {L"DELETE FROM t WHERE a = 30"});
  String text = L"untouched";
  const Outcome read = database_.readForList(2, 0, text);
  EXPECT_EQ(read.cause(), Outcome::Cause::recordGone);
  EXPECT_FALSE(read.reason().isEmpty());
  EXPECT_STREQ(text.text(), L"untouched");
  EXPECT_EQ(rowText(3), L"40");
}

TEST_F(MovesTest, WithoutRecordsTheListHasNoRows) {
  String text = L"untouched";
  EXPECT_FALSE(database_.readForList(0, 0, text));
  openFive();
  EXPECT_EQ(rowText(0), L"10");
  database_.closeRecordset();
  EXPECT_FALSE(database_.readForList(0, 0, text));
  EXPECT_FALSE(database_.moveForList(0));
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_EQ(rowText(0), L"10");
  database_.close();
  EXPECT_FALSE(database_.moveForList(0));
  EXPECT_STREQ(text.text(), L"untouched");
}

// ---- Where the cursors stand

class CursorTest : public testing::Test {
 protected:
  CursorTest() {
    store_.rows.resize(10);
    EXPECT_TRUE(database_.openRecordset(L"x"));
  }
  const FakeCursor& current() const { return *store_.cursors.at(0); }
  /// The list's own.
  const FakeCursor& rows() const { return *store_.cursors.at(1); }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(CursorTest, TheListMovesByTheDistanceFromItsLastRow) {
  EXPECT_TRUE(database_.moveForList(0));
  EXPECT_EQ(rows().position, 1);
  for (const std::uint32_t row : {5u, 6u, 2u}) {
    EXPECT_TRUE(database_.moveForList(row));
    EXPECT_EQ(rows().position, static_cast<LONG>(row) + 1);
    EXPECT_FALSE(rows().wasMovedFromFirst);
  }
  EXPECT_EQ(store_.cursors.size(), 2u);
  EXPECT_EQ(current().position, 1);
}

TEST_F(CursorTest, TheListMovesFromTheFirstRecordWhenItStaysOnItsRow) {
  for (int time = 0; time < 2; ++time) {
    EXPECT_TRUE(database_.moveForList(7));
    EXPECT_EQ(rows().position, 8);
    EXPECT_TRUE(rows().wasMovedFromFirst);
  }
}

TEST_F(CursorTest, AMoveForTheListThatFailsKeepsTheListPosition) {
  EXPECT_TRUE(database_.moveForList(3));
  store_.moveResult = E_FAIL;
  EXPECT_FALSE(database_.moveForList(5));
  store_.moveResult = S_OK;
  // The failed move has left the cursor where nobody knows.
  ASSERT_NE(rows().position, 4);
  EXPECT_TRUE(database_.moveForList(3));
  EXPECT_EQ(rows().position, 4);
  EXPECT_TRUE(database_.moveForList(4));
  EXPECT_EQ(rows().position, 5);
  EXPECT_FALSE(rows().wasMovedFromFirst);
}

TEST_F(CursorTest, MoveToCountsFromTheFirstRecord) {
  for (const std::uint32_t position : {4u, 2u}) {
    EXPECT_TRUE(database_.moveTo(position));
    EXPECT_EQ(current().position, static_cast<LONG>(position));
    EXPECT_TRUE(current().wasMovedFromFirst);
  }
}

TEST_F(CursorTest, RefusedMovesLeaveTheCounterAlone) {
  currentRecord = 4;
  store_.moveResult = E_FAIL;
  EXPECT_FALSE(database_.moveFirst());
  EXPECT_FALSE(database_.moveLast());
  EXPECT_FALSE(database_.moveNext());
  EXPECT_FALSE(database_.movePrevious());
  EXPECT_FALSE(database_.moveTo(2));
  EXPECT_EQ(currentRecord, 4u);
}

}  // namespace
