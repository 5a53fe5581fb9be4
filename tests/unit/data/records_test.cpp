// New, changed and deleted records; looking for text.
#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

class RecordsTest : public DataTest {
 protected:
  void openThree() {
    openTable(L"a integer, b text", {L"1, 'x'", L"2, 'y'", L"3, 'z'"});
    currentRecord = 1;
  }
  void set(std::uint32_t field, const wchar_t* text) {
    EXPECT_TRUE(database_.setValueFromEditor(field, FakeEditor::withText(text)));
  }
  std::wstring count() { return stored(L"Select count(*) from t"); }
};

TEST_F(RecordsTest, ANewRecordIsCountedAndCurrentBehindTheLast) {
  openThree();
  EXPECT_TRUE(database_.addNew());
  EXPECT_EQ(currentRecord, 4u);
  EXPECT_EQ(database_.recordCount(), 4u);
  EXPECT_EQ(recordCount, 4u);
  EXPECT_TRUE(database_.newRecordPending());
  EXPECT_STREQ(database_.valueText(0).text(), L"");
  EXPECT_EQ(count(), L"3") << "stored before its time";
}

TEST_F(RecordsTest, ANewRecordIsStoredByUpdate) {
  openThree();
  ASSERT_TRUE(database_.addNew());
  set(0, L"4");
  set(1, L"new");
  EXPECT_TRUE(database_.update());
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_EQ(count(), L"4");
  EXPECT_EQ(stored(L"Select b from t where a = 4"), L"new");
  EXPECT_TRUE(database_.moveTo(4));
  EXPECT_STREQ(database_.valueText(1).text(), L"new");
}

TEST_F(RecordsTest, ANewRecordOnAnEmptyRecordsetLeavesTheCounterAndCounts1) {
  openTable(L"a integer", {});
  currentRecord = 0;
  EXPECT_TRUE(database_.addNew());
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(database_.recordCount(), 1u);
  EXPECT_TRUE(database_.newRecordPending());
  EXPECT_TRUE(database_.deleteCurrent());
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(count(), L"0");
}

TEST_F(RecordsTest, DeletingAPendingRecordOnlyAbandonsIt) {
  openThree();
  ASSERT_TRUE(database_.addNew());
  set(0, L"4");
  EXPECT_TRUE(database_.deleteCurrent());
  EXPECT_EQ(database_.recordCount(), 3u);
  EXPECT_EQ(recordCount, 3u);
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_TRUE(database_.moveFirst());
  EXPECT_TRUE(database_.moveLast());
  EXPECT_EQ(count(), L"3") << "the move stored it";
  EXPECT_STREQ(database_.valueText(0).text(), L"3");
}

TEST_F(RecordsTest, DeletingARecordCountsBothDown) {
  openThree();
  ASSERT_TRUE(database_.moveTo(2));
  EXPECT_TRUE(database_.deleteCurrent());
  EXPECT_EQ(database_.recordCount(), 2u);
  EXPECT_EQ(recordCount, 2u);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(count(), L"2");
  EXPECT_EQ(stored(L"Select count(*) from t where a = 2"), L"0");
  EXPECT_STREQ(database_.valueText(0).text(), L"") << "unreadable until a move";
  EXPECT_FALSE(database_.deleteCurrent()) << "deleted twice";
  EXPECT_EQ(database_.recordCount(), 2u);
}

TEST_F(RecordsTest, DeletingWithTheCounterAt0LeavesItThere) {
  openThree();
  currentRecord = 0;
  EXPECT_TRUE(database_.deleteCurrent());
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(database_.recordCount(), 2u);
}

TEST_F(RecordsTest, AChangedRecordIsStoredByUpdate) {
  openThree();
  set(1, L"changed");
  EXPECT_EQ(stored(L"Select b from t where a = 1"), L"x");
  EXPECT_TRUE(database_.update());
  EXPECT_EQ(stored(L"Select b from t where a = 1"), L"changed");
}

TEST_F(RecordsTest, WhatTheStoreRefusesStaysWrittenAndPending) {
  openTable(L"a integer not null unique", {L"1", L"2"});
  ASSERT_TRUE(database_.addNew());
  set(0, L"2");
  EXPECT_TRUE(database_.update());
  EXPECT_TRUE(database_.newRecordPending());
  EXPECT_FALSE(database_.moveFirst());
  EXPECT_STREQ(database_.valueText(0).text(), L"2");
  set(0, L"3");
  EXPECT_TRUE(database_.update());
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_TRUE(database_.moveFirst());
  EXPECT_EQ(count(), L"3");
}

TEST_F(RecordsTest, AnotherRecordsetHasNoPendingRecord) {
  openThree();
  ASSERT_TRUE(database_.addNew());
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_EQ(database_.recordCount(), 3u);
}

TEST_F(RecordsTest, ThePendingFlagCanBeSet) {
  openThree();
  database_.setNewRecordPending(true);
  EXPECT_TRUE(database_.newRecordPending());
  database_.setNewRecordPending(false);
  EXPECT_FALSE(database_.newRecordPending());
}

TEST_F(RecordsTest, AFieldIsSetWhenItsIntegerIsNot0) {
  openTable(L"a integer, b bit, c bit, d text, e text, f integer, g double",
            {L"0, 1, 0, '12', 'abc', null, 0.4"});
  const bool expected[] = {false, true, false, true, false, false, false};
  for (std::uint32_t field = 0; field < 7; ++field) {
    EXPECT_EQ(database_.fieldIsSet(field), expected[field]) << field;
  }
}

// ---- Matching

class MatchTest : public DataTest {
 protected:
  /// Fields: 0 number, 1 text, 2 boolean, 3 date, 4 text, 5 double.
  void openRecord() {
    openTable(L"a integer, b text, c bit, d datetime, e text, f double",
              {L"1234, 'Straight Line', 1, '2001-03-09', 'a line too', 2.5"});
  }
  /// The field found, or -1.
  int match(bool allFields, bool matchCase, std::uint32_t firstField, const wchar_t* text) {
    std::uint32_t found = 99;
    if (!database_.matchRecord(allFields, matchCase, firstField, text, found)) {
      EXPECT_EQ(found, 99u) << "the out-parameter was touched";
      return -1;
    }
    return static_cast<int>(found);
  }
};

TEST_F(MatchTest, FindsTheFirstFieldThatHoldsTheTextAnywhere) {
  openRecord();
  EXPECT_EQ(match(true, true, 0, L"Line"), 1);
  EXPECT_EQ(match(true, true, 0, L"23"), 0);
  EXPECT_EQ(match(true, true, 0, L"2.500000"), 5);
  EXPECT_EQ(match(true, true, 0, L"nowhere"), -1);
}

TEST_F(MatchTest, StartsAtTheFirstField) {
  openRecord();
  EXPECT_EQ(match(true, false, 2, L"LINE"), 4);
  EXPECT_EQ(match(true, false, 5, L"LINE"), -1);
  EXPECT_EQ(match(true, false, 6, L"LINE"), -1);
  EXPECT_EQ(match(true, false, 0xFFFFFFFF, L"LINE"), -1);
}

TEST_F(MatchTest, VisitsOneFieldUnlessAllAreAsked) {
  openRecord();
  EXPECT_EQ(match(false, false, 0, L"line"), -1);
  EXPECT_EQ(match(false, false, 1, L"line"), 1);
  EXPECT_EQ(match(false, false, 6, L"line"), -1);
  EXPECT_EQ(match(false, false, 0xFFFFFFFF, L"line"), -1);
}

TEST_F(MatchTest, TellsLetterCasesApartOnlyWhenAsked) {
  openRecord();
  EXPECT_EQ(match(true, true, 0, L"line"), 4);
  EXPECT_EQ(match(true, true, 0, L"LINE"), -1);
  EXPECT_EQ(match(true, false, 0, L"LINE"), 1);
}

TEST_F(MatchTest, FoldsLettersOfOtherScripts) {
  openTable(L"a text", {L"'\x0416\x03A9'"});
  EXPECT_EQ(match(true, false, 0, L"\x0436\x03C9"), 0);
  EXPECT_EQ(match(true, true, 0, L"\x0436\x03C9"), -1);
}

TEST_F(MatchTest, PassesOverBooleansAndDates) {
  openTable(L"c bit, d datetime", {L"1, '2001-03-09'"});
  EXPECT_EQ(match(true, false, 0, L"1"), -1);
  EXPECT_EQ(match(false, false, 0, L"-1"), -1);
  EXPECT_EQ(match(false, false, 1, L"2001"), -1);
}

TEST_F(MatchTest, TheEmptyTextIsFoundInTheFirstFieldThatIsVisited) {
  openTable(L"c bit, a integer", {L"1, null"});
  EXPECT_EQ(match(true, false, 0, L""), 1);
}

// ---- Against a store of our own

class FakeRecordsTest : public testing::Test {
 protected:
  void open(std::size_t count) {
    store_.rows.resize(count);
    EXPECT_TRUE(database_.openRecordset(L"x"));
    currentRecord = 1;
  }
  const FakeCursor& cursor() const { return *store_.cursors.front(); }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(FakeRecordsTest, ANewRecordBeginsBehindTheLast) {
  open(2);
  EXPECT_TRUE(database_.addNew());
  EXPECT_TRUE(cursor().isAdding);
  EXPECT_EQ(cursor().position, 3);
  EXPECT_EQ(store_.rows.size(), 2u);
  EXPECT_EQ(currentRecord, 3u);
}

TEST_F(FakeRecordsTest, ANewRecordFailsWhenTheLastOfSomeCantBeReached) {
  open(2);
  store_.moveResult = E_FAIL;
  EXPECT_FALSE(database_.addNew());
  EXPECT_FALSE(cursor().isAdding);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(database_.recordCount(), 2u);
  EXPECT_FALSE(database_.newRecordPending());
}

TEST_F(FakeRecordsTest, ANewRecordAmongNoneIsAddedAlthoughTheMoveFails) {
  open(0);
  store_.moveResult = E_FAIL;
  EXPECT_TRUE(database_.addNew());
  EXPECT_TRUE(cursor().isAdding);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(database_.recordCount(), 1u);
}

TEST_F(FakeRecordsTest, DeletingAPendingRecordDeletesNothing) {
  open(2);
  ASSERT_TRUE(database_.addNew());
  EXPECT_TRUE(database_.deleteCurrent());
  EXPECT_FALSE(cursor().isAdding) << "a move would store it";
  EXPECT_EQ(store_.rows.size(), 2u);
  EXPECT_EQ(currentRecord, 3u);
}

TEST_F(FakeRecordsTest, UpdateSucceedsWhateverTheStoreSays) {
  open(2);
  ASSERT_TRUE(database_.addNew());
  store_.updateResult = E_FAIL;
  EXPECT_TRUE(database_.update());
  EXPECT_EQ(store_.rows.size(), 2u);
  EXPECT_TRUE(cursor().isAdding) << "it stays begun";
  store_.updateResult = S_OK;
  EXPECT_TRUE(database_.update());
  EXPECT_EQ(store_.rows.size(), 3u);
}

}  // namespace
