#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

using testing::ElementsAre;

constexpr long kEditNone = 0;
constexpr long kEditInProgress = 1;
constexpr long kEditAdding = 2;

class Changes : public AutomationTest {
 protected:
  Changes() {
    SqliteFile(path_).run(
        "CREATE TABLE T (Name TEXT NOT NULL UNIQUE, N INTEGER DEFAULT 7);"
        "INSERT INTO T VALUES ('a', 1), ('b', 2), ('c', 3)");
    records_ = recordsOf(connection_.get(), L"Select * from [T]");
  }

  long editMode() {
    long mode = -1;
    EXPECT_EQ(records_->get_EditMode(&mode), S_OK);
    return mode;
  }
  /// What is in the file, "name=number" by row.
  std::vector<std::string> stored() {
    return sqliteColumn(path_, "SELECT Name || '=' || coalesce(N, 'null') FROM T ORDER BY rowid");
  }

  std::wstring path_ = makeDatabase();
  ComPtr<IAdoceConnection> connection_ = connectTo(path_);
  ComPtr<IAdoceRecordset> records_;
};

TEST_F(Changes, AreStoredByUpdate) {
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  EXPECT_EQ(editMode(), kEditInProgress);
  EXPECT_EQ(described(valueOf(records_.get(), 1)), "I4 5");
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
  ASSERT_EQ(update(records_.get()), S_OK);
  EXPECT_EQ(editMode(), kEditNone);
  EXPECT_THAT(stored(), ElementsAre("a=5", "b=2", "c=3"));
}

TEST_F(Changes, UpdateWithoutAChangeSucceeds) {
  EXPECT_EQ(update(records_.get()), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
}

TEST_F(Changes, AreStoredByAMove) {
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  ASSERT_EQ(records_->MoveNext(), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=5", "b=2", "c=3"));
}

TEST_F(Changes, AreDroppedByCancelUpdateAndByClose) {
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  ASSERT_EQ(records_->CancelUpdate(), S_OK);
  EXPECT_EQ(editMode(), kEditNone);
  EXPECT_EQ(described(valueOf(records_.get(), 1)), "I4 1");
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  ASSERT_EQ(records_->Close(), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
}

TEST_F(Changes, WrittenBackUnchangedLeaveTheRecordClean) {
  for (long index = 0; index < 2; ++index) {
    ASSERT_EQ(put(records_.get(), index, valueOf(records_.get(), index)), S_OK);
  }
  EXPECT_EQ(editMode(), kEditNone);
}

TEST_F(Changes, NewRecordIsWrittenByUpdateAndStandsAtTheEnd) {
  ASSERT_EQ(addNew(records_.get()), S_OK);
  EXPECT_EQ(editMode(), kEditAdding);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "NULL");
  ASSERT_EQ(put(records_.get(), 0, variant(L"A")), S_OK);
  ASSERT_EQ(put(records_.get(), 1, variant(9L)), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
  ASSERT_EQ(update(records_.get()), S_OK);
  EXPECT_EQ(editMode(), kEditNone);
  EXPECT_EQ(recordCount(records_.get()), 4);
  EXPECT_EQ(position(records_.get()), 4);
  EXPECT_EQ(textOf(records_.get(), 0), L"A");
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3", "A=9"));
}

TEST_F(Changes, NewRecordStandsAtTheEndWhateverTheOrder) {
  const ComPtr<IAdoceRecordset> ordered = recordsOf(connection_.get(), L"SELECT * FROM T ORDER BY Name");
  ASSERT_EQ(addNew(ordered.get()), S_OK);
  ASSERT_EQ(put(ordered.get(), 0, variant(L"aa")), S_OK);
  ASSERT_EQ(update(ordered.get()), S_OK);
  EXPECT_THAT(columnTexts(ordered.get(), 0), ElementsAre(L"a", L"b", L"c", L"aa"));
}

TEST_F(Changes, FieldsOfANewRecordThatAreNotWrittenGetTheirDefaults) {
  ASSERT_EQ(addNew(records_.get()), S_OK);
  ASSERT_EQ(put(records_.get(), 0, variant(L"d")), S_OK);
  // What shows as null and is written back as null was not written.
  ASSERT_EQ(put(records_.get(), 1, null()), S_OK);
  ASSERT_EQ(update(records_.get()), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3", "d=7"));
  EXPECT_EQ(described(valueOf(records_.get(), 1)), "I4 7");
}

TEST_F(Changes, NewRecordGivesWayToTheFormerOne) {
  ASSERT_EQ(records_->MoveNext(), S_OK);
  ASSERT_EQ(addNew(records_.get()), S_OK);
  ASSERT_EQ(put(records_.get(), 0, variant(L"d")), S_OK);
  ASSERT_EQ(records_->CancelUpdate(), S_OK);
  EXPECT_EQ(recordCount(records_.get()), 3);
  EXPECT_EQ(textOf(records_.get(), 0), L"b");
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
}

TEST_F(Changes, NewRecordIsWrittenByAMove) {
  ASSERT_EQ(addNew(records_.get()), S_OK);
  ASSERT_EQ(put(records_.get(), 0, variant(L"d")), S_OK);
  ASSERT_EQ(records_->MoveFirst(), S_OK);
  EXPECT_EQ(recordCount(records_.get()), 4);
  EXPECT_EQ(textOf(records_.get(), 0), L"a");
}

TEST_F(Changes, FirstRecordOfAnEmptyTable) {
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T"), S_OK);
  const ComPtr<IAdoceRecordset> empty = recordsOf(connection_.get(), L"Select * from [T]");
  ASSERT_EQ(addNew(empty.get()), S_OK);
  ASSERT_EQ(put(empty.get(), 0, variant(L"first")), S_OK);
  ASSERT_EQ(update(empty.get()), S_OK);
  EXPECT_EQ(recordCount(empty.get()), 1);
  EXPECT_FALSE(isBof(empty.get()));
  EXPECT_EQ(textOf(empty.get(), 0), L"first");
}

TEST_F(Changes, FailedUpdateKeepsTheRecordDirty) {
  ASSERT_EQ(put(records_.get(), 0, variant(L"b")), S_OK);
  EXPECT_EQ(update(records_.get()), objectModelError(3719));
  EXPECT_EQ(editMode(), kEditInProgress);
  EXPECT_EQ(textOf(records_.get(), 0), L"b");
  EXPECT_EQ(records_->MoveNext(), objectModelError(3719));
  EXPECT_EQ(position(records_.get()), 1);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
  ASSERT_EQ(put(records_.get(), 0, variant(L"z")), S_OK);
  EXPECT_EQ(update(records_.get()), S_OK);
  EXPECT_THAT(stored(), ElementsAre("z=1", "b=2", "c=3"));
}

TEST_F(Changes, DeletedRecordStaysCurrentAndUnreadableUntilAMove) {
  ASSERT_EQ(records_->MoveNext(), S_OK);
  ASSERT_EQ(records_->Delete(1), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "c=3"));
  EXPECT_EQ(recordCount(records_.get()), 2);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "ERROR 800a0bcd");
  EXPECT_EQ(records_->Delete(1), objectModelError(3021));
  ASSERT_EQ(records_->MoveNext(), S_OK);
  EXPECT_EQ(textOf(records_.get(), 0), L"c");
  EXPECT_EQ(position(records_.get()), 2);
}

TEST_F(Changes, DeletingTheOnlyRecordLeavesNone) {
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T WHERE Name > 'a'"), S_OK);
  const ComPtr<IAdoceRecordset> one = recordsOf(connection_.get(), L"Select * from [T]");
  ASSERT_EQ(one->Delete(1), S_OK);
  EXPECT_EQ(recordCount(one.get()), 0);
  EXPECT_EQ(one->MoveFirst(), objectModelError(3021));
  EXPECT_EQ(stored().size(), 0u);
}

TEST_F(Changes, DeleteTakesTheCurrentRecordOnly) {
  EXPECT_EQ(records_->Delete(2), objectModelError(3251));
  EXPECT_EQ(records_->Delete(3), objectModelError(3251));
  EXPECT_EQ(records_->Delete(0), objectModelError(3001));
  EXPECT_EQ(records_->Delete(17), objectModelError(3001));
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3"));
}

TEST_F(Changes, AddNewTakesNamesAndValues) {
  std::vector<OwnedVariant> names;
  names.push_back(variant(L"N"));
  names.push_back(variant(0L));
  std::vector<OwnedVariant> values;
  values.push_back(variant(4L));
  values.push_back(variant(L"d"));
  ASSERT_EQ(records_->AddNew(*list(std::move(names)), *list(std::move(values))), S_OK);
  EXPECT_EQ(editMode(), kEditNone);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3", "d=4"));
  ASSERT_EQ(records_->AddNew(*variant(L"Name"), *variant(L"e")), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3", "d=4", "e=7"));
}

TEST_F(Changes, AddNewWithValuesThatFailAddsNothing) {
  EXPECT_EQ(records_->AddNew(*variant(L"Name"), *variant(L"b")), objectModelError(3719));
  EXPECT_EQ(records_->AddNew(*variant(L"N"), *variant(L"abc")), objectModelError(3421));
  EXPECT_EQ(records_->AddNew(*variant(L"Nothing"), *variant(L"b")), objectModelError(3265));
  EXPECT_EQ(records_->AddNew(*missing(), *variant(L"b")), objectModelError(3001));
  std::vector<OwnedVariant> names;
  names.push_back(variant(L"Name"));
  names.push_back(variant(L"N"));
  EXPECT_EQ(records_->AddNew(*list(std::move(names)), *variant(L"b")), objectModelError(3001));
  EXPECT_EQ(editMode(), kEditNone);
  EXPECT_EQ(recordCount(records_.get()), 3);
  EXPECT_EQ(textOf(records_.get(), 0), L"a");
}

TEST_F(Changes, UpdateTakesNamesAndValues) {
  ASSERT_EQ(records_->Update(*variant(1L), *variant(6L)), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=6", "b=2", "c=3"));
}

TEST_F(Changes, LeftOutArgumentsMeanNone) {
  ASSERT_EQ(records_->AddNew(*missing(), *missing()), S_OK);
  ASSERT_EQ(put(records_.get(), 0, variant(L"d")), S_OK);
  ASSERT_EQ(records_->Update(*missing(), *missing()), S_OK);
  EXPECT_THAT(stored(), ElementsAre("a=1", "b=2", "c=3", "d=7"));
}

TEST_F(Changes, AreRefusedWhereRecordsAreReadOnly) {
  const ComPtr<IAdoceRecordset> reading =
      recordsOf(connection_.get(), L"Select * from [T]", kKeyset, kReadOnly);
  EXPECT_EQ(put(reading.get(), 0, variant(L"x")), objectModelError(3251));
  EXPECT_EQ(addNew(reading.get()), objectModelError(3251));
  EXPECT_EQ(reading->Delete(1), objectModelError(3251));
  EXPECT_EQ(textOf(reading.get(), 0), L"a");
}

TEST_F(Changes, OfARecordThatAnotherDeletedFail) {
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  SqliteFile(path_).run("DELETE FROM T WHERE Name = 'a'");
  EXPECT_EQ(update(records_.get()), objectModelError(3021));
  EXPECT_THAT(stored(), ElementsAre("b=2", "c=3"));
}

TEST_F(Changes, DeletingARecordThatAnotherDeletedCountsAsDone) {
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  SqliteFile(path_).run("DELETE FROM T WHERE Name IN ('a', 'b')");
  EXPECT_EQ(records_->Delete(1), S_OK);
  EXPECT_EQ(editMode(), kEditNone);
  ASSERT_EQ(records_->MoveNext(), S_OK);
  EXPECT_EQ(records_->Delete(1), S_OK);
  ASSERT_EQ(records_->MoveNext(), S_OK);
  EXPECT_EQ(textOf(records_.get(), 0), L"c");
  long count = 0;
  EXPECT_EQ(records_->get_RecordCount(&count), S_OK);
  EXPECT_EQ(count, 1);
  EXPECT_THAT(stored(), ElementsAre("c=3"));
}

TEST_F(Changes, OfARecordThatAnotherChangedFail) {
  constexpr auto kConcurrencyViolation = static_cast<HRESULT>(0x80040E38);
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  SqliteFile(path_).run("UPDATE T SET Name = 'x' WHERE Name = 'a'");
  EXPECT_EQ(update(records_.get()), kConcurrencyViolation);
  EXPECT_EQ(records_->Delete(1), kConcurrencyViolation);
  EXPECT_EQ(records_->MoveNext(), kConcurrencyViolation);
  EXPECT_THAT(stored(), ElementsAre("x=1", "b=2", "c=3"));
  ASSERT_EQ(records_->CancelUpdate(), S_OK);
  EXPECT_EQ(textOf(records_.get(), 0), L"x");
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  EXPECT_EQ(update(records_.get()), S_OK);
  EXPECT_THAT(stored(), ElementsAre("x=5", "b=2", "c=3"));
}

TEST_F(Changes, AreSeenByASecondConnectionAtOnce) {
  const ComPtr<IAdoceConnection> other = connectTo(path_);
  const ComPtr<IAdoceRecordset> watching = recordsOf(other.get(), L"Select * from [T]");
  EXPECT_EQ(textOf(watching.get(), 1), L"1");
  ASSERT_EQ(put(records_.get(), 1, variant(5L)), S_OK);
  ASSERT_EQ(update(records_.get()), S_OK);
  ASSERT_EQ(watching->MoveFirst(), S_OK);
  EXPECT_EQ(textOf(watching.get(), 1), L"5");
}

}  // namespace
}  // namespace automationtest
