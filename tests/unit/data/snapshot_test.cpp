// A reading of a record as a value: whole or not at all, and what changes and deletions are measured against.
#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/support/exclusive_lock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Cause = Outcome::Cause;
using State = FieldSnapshot::State;

class SnapshotTest : public DataTest {
 protected:
  void openThree() {
    openTable(L"a integer, b text", {L"1, 'x'", L"2, 'y'", L"3, 'z'"});
    currentRecord = 1;
  }
  /// Another program's change.
  void elsewhere(const wchar_t* statement) { runOn(path_, {statement}); }
  /// Writes `text` into field b of the record that was seen.
  Outcome change(const RecordSnapshot& seen, const wchar_t* text) {
    const FakeEditor number = FakeEditor::withText(L"").unedited();
    const FakeEditor content = FakeEditor::withText(text);
    NameList leftOut;
    return database_.storeRecord(seen, {&number, &content}, leftOut);
  }
  std::wstring everything() { return stored(L"Select group_concat(a || b, ' ') from t"); }
};

TEST_F(SnapshotTest, HoldsForEachFieldWhatItSaysAndWhetherItSaysAnything) {
  openTable(L"a integer, b text, c integer, d datetime, e text, f bit", {L"7, 'x', null, null, '', 1"});
  currentRecord = 1;
  const RecordSnapshot read = database_.readRecord();
  ASSERT_TRUE(read.isReadable());
  EXPECT_EQ(read.position(), 1u);
  EXPECT_FALSE(read.isNew());
  std::vector<std::wstring> texts;
  std::vector<State> states;
  for (const FieldSnapshot& field : read.fields()) {
    texts.emplace_back(field.text.text());
    states.push_back(field.state);
  }
  EXPECT_THAT(texts, ElementsAre(L"7", L"x", L"", L"None", L"", L"-1"));
  EXPECT_THAT(states,
              ElementsAre(State::value, State::value, State::null, State::null, State::value, State::value));
}

TEST_F(SnapshotTest, OfNothingIsEmptyAndWritesNothing) {
  openThree();
  const RecordSnapshot none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_FALSE(none.isReadable());
  EXPECT_FALSE(change(none, L"changed"));
  EXPECT_FALSE(database_.deleteRecord(none));
  EXPECT_EQ(everything(), L"1x 2y 3z");
}

TEST_F(SnapshotTest, OfANewRecordSaysSo) {
  openThree();
  ASSERT_TRUE(database_.addNew());
  const RecordSnapshot read = database_.readRecord();
  EXPECT_TRUE(read.isReadable());
  EXPECT_TRUE(read.isNew());
  EXPECT_EQ(read.position(), 4u);
  EXPECT_EQ(read.fields()[0].state, State::null);
}

TEST_F(SnapshotTest, OfARecordThatIsGoneHasNoFields) {
  openThree();
  elsewhere(L"DELETE FROM t WHERE a = 2");
  ASSERT_TRUE(database_.moveNext());
  const RecordSnapshot read = database_.readRecord();
  EXPECT_FALSE(read.isReadable());
  EXPECT_FALSE(read.isEmpty());
  EXPECT_EQ(read.outcome().cause(), Cause::recordGone);
  EXPECT_STRNE(read.outcome().reason().text(), L"");
  EXPECT_THAT(read.fields(), IsEmpty());
}

TEST_F(SnapshotTest, AChangeGoesIntoTheRecordThatWasSeenWhereverTheCursorStands) {
  openThree();
  const RecordSnapshot first = database_.readRecord();
  ASSERT_TRUE(database_.moveTo(3));
  EXPECT_TRUE(change(first, L"changed"));
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(everything(), L"1changed 2y 3z");
}

TEST_F(SnapshotTest, AChangeOfWhatIsNoLongerThereIsRefused) {
  openThree();
  const RecordSnapshot first = database_.readRecord();
  elsewhere(L"UPDATE t SET a = 10 WHERE a = 1");
  // Read again meanwhile, as a search does.
  ASSERT_TRUE(database_.moveTo(1));
  EXPECT_STREQ(database_.valueText(0).text(), L"10");
  const Outcome outcome = change(first, L"changed");
  EXPECT_EQ(outcome.cause(), Cause::changedElsewhere);
  EXPECT_THAT(std::wstring(outcome.reason().text()), HasSubstr(L"Another program has changed the record"));
  EXPECT_EQ(everything(), L"10x 2y 3z");
  EXPECT_TRUE(change(database_.readRecord(), L"changed"));
  EXPECT_EQ(everything(), L"10changed 2y 3z");
}

TEST_F(SnapshotTest, ADeletionOfWhatIsNoLongerThereIsRefused) {
  openThree();
  const RecordSnapshot first = database_.readRecord();
  elsewhere(L"UPDATE t SET b = 'other' WHERE a = 1");
  EXPECT_EQ(database_.deleteRecord(first).cause(), Cause::changedElsewhere);
  EXPECT_EQ(everything(), L"1other 2y 3z");
}

TEST_F(SnapshotTest, ARecordThatIsGoneAlreadyCountsAsDeleted) {
  openThree();
  const RecordSnapshot first = database_.readRecord();
  elsewhere(L"DELETE FROM t WHERE a = 1");
  EXPECT_TRUE(database_.deleteRecord(first));
  EXPECT_EQ(database_.recordCount(), 2u);
  ASSERT_TRUE(database_.moveFirst());
  EXPECT_STREQ(database_.valueText(0).text(), L"2");
}

TEST_F(SnapshotTest, AChangeThatNoTextShowsIsAChangeToo) {
  openTable(L"a double, b text", {L"0.123456789, 'x'"});
  currentRecord = 1;
  const RecordSnapshot seen = database_.readRecord();
  elsewhere(L"UPDATE t SET a = 0.1234567891");
  ASSERT_TRUE(database_.moveTo(1));
  EXPECT_STREQ(database_.readRecord().fields()[0].text.text(), seen.fields()[0].text.text());
  EXPECT_EQ(change(seen, L"changed").cause(), Cause::changedElsewhere);
}

TEST_F(SnapshotTest, ValuesThatCantBeWrittenDontCount) {
  openTable(L"a integer, b text", {L"1, 'x'"});
  ASSERT_TRUE(database_.openRecordset(L"Select a, b, random() from t"));
  currentRecord = 1;
  EXPECT_TRUE(change(database_.readRecord(), L"changed"));
  EXPECT_EQ(everything(), L"1changed");
}

TEST_F(SnapshotTest, EveryKindOfValueIsTheSameAsItself) {
  openTable(L"a smallint, b integer, c \"unsigned integer\", d double, e datetime, f bit, g text, h image",
            {L"1, 9007199254740993, 4294967295, 0.5, '2001-03-09', 1, 'x', x'00ff'"});
  currentRecord = 1;
  const RecordSnapshot one = database_.readRecord();
  ASSERT_TRUE(database_.moveTo(1));
  const RecordSnapshot other = database_.readRecord();
  ASSERT_EQ(one.fields().size(), 8u);
  for (std::size_t i = 0; i < 8; ++i) {
    for (std::size_t k = 0; k < 8; ++k) {
      EXPECT_EQ(isSameBeginning(one.fields()[i].read, other.fields()[k].read), i == k) << i << k;
    }
  }
}

TEST_F(SnapshotTest, OfAVeryLongTextTheBeginningIsReadAndTheRestIsGuarded) {
  openTable(L"a integer, b text", {L"1, printf('%.*c', 3000000, 'x')"});
  currentRecord = 1;
  const RecordSnapshot seen = database_.readRecord();
  ASSERT_TRUE(seen.isReadable());
  EXPECT_EQ(seen.fields()[1].text.length(), kMostReadBytes);
  EXPECT_TRUE(seen.fields()[1].read.isCut());
  EXPECT_EQ(seen.fields()[1].read.length, 3'000'000u);
  String listed;
  EXPECT_TRUE(database_.readForList(0, 1, listed));
  EXPECT_LT(listed.length(), 100'000);
  EXPECT_GT(listed.length(), 260);

  const FakeEditor number = FakeEditor::withText(L"2");
  const FakeEditor untouched = FakeEditor::withText(L"").unedited();
  NameList leftOut;
  EXPECT_TRUE(database_.storeRecord(seen, {&number, &untouched}, leftOut));
  EXPECT_EQ(stored(L"Select a || ' ' || length(b) from t"), L"2 3000000");

  const RecordSnapshot again = database_.readRecord();
  elsewhere(L"Update t set b = substr(b, 1, 2999999) || 'y'");
  EXPECT_EQ(database_.storeRecord(again, {&number, &untouched}, leftOut).cause(), Cause::changedElsewhere);
}

TEST_F(SnapshotTest, OfManyBytesTheTextSaysHowManyThereAreInAll) {
  openTable(L"a image", {L"zeroblob(3000000)"});
  currentRecord = 1;
  const RecordSnapshot seen = database_.readRecord();
  ASSERT_TRUE(seen.isReadable());
  EXPECT_THAT(seen.fields()[0].text.text(), testing::EndsWith(L"(3000000 bytes)"));
  String listed;
  EXPECT_TRUE(database_.readForList(0, 0, listed));
  EXPECT_THAT(listed.text(), testing::EndsWith(L"(3000000 bytes)"));
}

// ---- Another structure

TEST_F(SnapshotTest, AfterAnotherProgramsVacuumTheRecordIsChangedAllTheSame) {
  openThree();
  const RecordSnapshot second = (database_.moveTo(2), database_.readRecord());
  elsewhere(L"CREATE INDEX i ON t (b)");
  elsewhere(L"VACUUM");
  EXPECT_EQ((database_.moveTo(2), database_.readRecord()).outcome().cause(), Cause::structureChanged);
  EXPECT_TRUE(change(second, L"changed"));
  EXPECT_EQ(everything(), L"1x 2changed 3z");
}

TEST_F(SnapshotTest, AfterAnotherProgramsIndexTheRecordIsFoundByItsKey) {
  openThree();
  const RecordSnapshot second = (database_.moveTo(2), database_.readRecord());
  elsewhere(L"DELETE FROM t WHERE a = 1");
  elsewhere(L"CREATE INDEX i ON t (b)");
  EXPECT_TRUE(change(second, L"changed"));
  EXPECT_EQ(everything(), L"2changed 3z");
  EXPECT_EQ(currentRecord, 1u);
  const RecordSnapshot third = (database_.moveTo(2), database_.readRecord());
  elsewhere(L"INSERT INTO t (rowid, a, b) VALUES (1, 1, 'x')");
  elsewhere(L"DROP INDEX i");
  EXPECT_TRUE(database_.deleteRecord(third));
  EXPECT_EQ(everything(), L"1x 2changed");
}

TEST_F(SnapshotTest, OfRecordsThatShowTheSameNoneIsTakenForAnother) {
  openTable(L"city text, month text", {L"'Oslo', 'Jan'", L"'Rome', 'Feb'", L"'Rome', 'Mar'"});
  ASSERT_TRUE(database_.openRecordset(L"Select city from t"));
  currentRecord = 1;
  const RecordSnapshot second = (database_.moveTo(2), database_.readRecord());
  elsewhere(L"DELETE FROM t WHERE city = 'Oslo'");
  elsewhere(L"CREATE INDEX i ON t (city)");
  const FakeEditor city = FakeEditor::withText(L"Roma");
  NameList leftOut;
  // A program may have given its key to the other one.
  for (int i = 0; i < 2; ++i) {
    const Outcome refused = database_.storeRecord(second, {&city}, leftOut);
    EXPECT_EQ(refused.cause(), Cause::changedElsewhere);
    EXPECT_THAT(std::wstring(refused.reason().text()), HasSubstr(L"another record holds the same"));
    EXPECT_EQ(database_.deleteRecord(second).cause(), Cause::changedElsewhere);
  }
  EXPECT_EQ(stored(L"Select group_concat(city || month, ' ') from t"), L"RomeFeb RomeMar");
  const RecordSnapshot again = (database_.moveTo(1), database_.readRecord());
  EXPECT_TRUE(database_.storeRecord(again, {&city}, leftOut)) << "what is read now is told apart by its key";
  EXPECT_EQ(stored(L"Select group_concat(city || month, ' ') from t"), L"RomaFeb RomeMar");
}

TEST_F(SnapshotTest, ARecordThatIsGoneFromARebuiltFileIsNoOther) {
  openTable(L"city text, month text", {L"'Oslo', 'Jan'", L"'Rome', 'Feb'", L"'Rome', 'Mar'"});
  ASSERT_TRUE(database_.openRecordset(L"Select city from t"));
  currentRecord = 1;
  const RecordSnapshot third = (database_.moveTo(3), database_.readRecord());
  elsewhere(L"DELETE FROM t WHERE month = 'Jan'");
  elsewhere(L"VACUUM");
  const FakeEditor city = FakeEditor::withText(L"Roma");
  NameList leftOut;
  EXPECT_EQ(database_.storeRecord(third, {&city}, leftOut).cause(), Cause::changedElsewhere);
  EXPECT_LE(currentRecord, database_.recordCount());
  EXPECT_EQ(database_.deleteRecord(third).cause(), Cause::changedElsewhere) << "it may be there";
  EXPECT_EQ(stored(L"Select group_concat(city || month, ' ') from t"), L"RomeFeb RomeMar");
  elsewhere(L"DELETE FROM t");
  EXPECT_FALSE(database_.storeRecord(third, {&city}, leftOut));
}

TEST_F(SnapshotTest, ANewRecordSurvivesAnotherProgramsIndex) {
  openThree();
  ASSERT_TRUE(database_.addNew());
  const RecordSnapshot begun = database_.readRecord();
  elsewhere(L"CREATE INDEX i ON t (b)");
  const FakeEditor number = FakeEditor::withText(L"4");
  const FakeEditor content = FakeEditor::withText(L"new");
  NameList leftOut;
  EXPECT_TRUE(database_.storeRecord(begun, {&number, &content}, leftOut));
  EXPECT_EQ(everything(), L"1x 2y 3z 4new");
  EXPECT_EQ(currentRecord, 4u);
  EXPECT_FALSE(database_.newRecordPending());
}

TEST_F(SnapshotTest, OtherFieldsAreNotTakenForTheFormerOnes) {
  openThree();
  const RecordSnapshot first = database_.readRecord();
  elsewhere(L"ALTER TABLE t RENAME COLUMN b TO c");
  EXPECT_FALSE(database_.reopenSameFields());
  EXPECT_EQ(change(first, L"changed").cause(), Cause::structureChanged);
  EXPECT_EQ(database_.recordCount(), 3u);
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_STREQ(database_.fieldName(1).text(), L"c");
}

TEST_F(SnapshotTest, ATableThatIsGoneIsNotOpenedAnew) {
  openThree();
  elsewhere(L"DROP TABLE t");
  ASSERT_TRUE(database_.moveTo(2));
  EXPECT_EQ(database_.readRecord().outcome().cause(), Cause::structureChanged);
  EXPECT_FALSE(database_.reopenSameFields());
}

// ---- One wait

TEST_F(SnapshotTest, AReadingWaitsOnceForALock) {
  openThree();
  auto lock = lockExclusively(path_);
  ASSERT_TRUE(lock->isHeld());
  const auto begun = std::chrono::steady_clock::now();
  ASSERT_TRUE(database_.moveTo(2));
  const RecordSnapshot read = database_.readRecord();
  const auto waited = std::chrono::steady_clock::now() - begun;
  EXPECT_FALSE(read.isReadable());
  EXPECT_STREQ(read.outcome().reason().text(), L"Another program is using the database.");
  EXPECT_GT(waited, std::chrono::milliseconds(4500));
  EXPECT_LT(waited, std::chrono::milliseconds(9000)) << "each field waited for itself";
  EXPECT_EQ(change(read, L"changed").cause(), Cause::notNow) << "nothing is written over what was not read";
  lock.reset();
  EXPECT_TRUE(database_.readRecord().isReadable());
}

// ---- What a component may answer

class FakeSnapshotTest : public testing::Test {
 protected:
  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(FakeSnapshotTest, OneFieldThatCantBeFetchedLeavesNone) {
  store_.addField({.name = L"a", .type = 202, .attributes = 4}, Variant::fromText(L"x"));
  store_.addField({.name = L"b", .type = 202, .attributes = 4}, Variant::fromText(L"y"));
  ASSERT_TRUE(database_.openRecordset(L"x"));
  store_.fields[1].result = E_FAIL;
  const RecordSnapshot read = database_.readRecord();
  EXPECT_FALSE(read.isReadable());
  EXPECT_THAT(read.fields(), IsEmpty());
}

TEST_F(FakeSnapshotTest, AValueThatNoTextCanSayIsUnreadable) {
  store_.addField({.name = L"a", .type = 202, .attributes = 4}, Variant::fromDispatch(nullptr));
  ASSERT_TRUE(database_.openRecordset(L"x"));
  const RecordSnapshot read = database_.readRecord();
  ASSERT_TRUE(read.isReadable());
  EXPECT_EQ(read.fields()[0].state, State::unreadable);
}

TEST_F(FakeSnapshotTest, ANewRecordThatTheStoreRefusesToBeginWritesIntoNoOther) {
  store_.addField({.name = L"a", .type = 202, .attributes = 4}, Variant::fromText(L"x"));
  store_.rows.emplace_back().push_back(Variant::fromText(L"y"));
  ASSERT_TRUE(database_.openRecordset(L"x"));
  currentRecord = 1;
  store_.addNewResult = E_FAIL;
  EXPECT_FALSE(database_.addNew());
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_EQ(database_.recordCount(), 2u);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(store_.storedText(1, 0), L"y");
}

}  // namespace
