// The three handles over the data-access components, against components that obey the test.
#include <cmath>
#include <cwchar>
#include <limits>
#include <thread>
#include <utility>

#include "data/handles/component_loading.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "owners/live_resources.h"
#include "tests/unit/data/fake_store.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Variant asText(const wchar_t* text) {
  return Variant::fromText(text);
}

Variant asDouble(double value) {
  Variant variant;
  VARIANT* target = variant.put();
  target->vt = VT_R8;
  target->dblVal = value;
  return variant;
}

Variant asDecimal(LONG64 value) {
  Variant variant;
  VARIANT* target = variant.put();
  EXPECT_EQ(VarDecFromI8(value, &target->decVal), S_OK);
  target->vt = VT_DECIMAL;
  return variant;
}

class HandlesTest : public testing::Test {
 protected:
  void addField(const wchar_t* name, LONG type, Variant value) {
    store_.addField({.name = name, .type = type, .attributes = 4}, std::move(value));
  }

  FakeStore store_;
};

// ---- Connection

TEST_F(HandlesTest, ANewConnectionHasItsProviderSetAtOnce) {
  const FakeStoreRegistration registration(store_);
  const ConnectionHandle connection;
  EXPECT_EQ(store_.provider, "CEDB");
  EXPECT_FALSE(store_.isConnected);
}

TEST_F(HandlesTest, WhatAnotherThreadHasLoadedMakesTheFirstObjectOfEachKind) {
  {
    const FakeStoreRegistration registration(store_);
    std::thread(loadAdoceClasses).join();
  }
  const ConnectionHandle connection;
  EXPECT_EQ(store_.provider, "CEDB") << "although the class is registered no more";
  RecordsetHandle recordset(&connection);
  EXPECT_TRUE(recordset.open(L"a", nullptr, CursorType::keyset, SourceKind::text));
  EXPECT_THAT(store_.statements, ElementsAre("Open a cursor 1 lock 3 options 1"));
  store_.provider.clear();
  const ConnectionHandle next;
  EXPECT_EQ(store_.provider, "") << "the next one is looked for anew";
}

TEST_F(HandlesTest, NothingIsExportedInAFormatThatCanNotBeTold) {
  ConnectionHandle connection(makeFakeConnection(store_));
  ExportCounts counts;
  ASSERT_TRUE(connection.exportRows({L"t", true, L"t"}, L"a.csv", nullptr, counts));
  EXPECT_EQ(counts.records, 3);
  EXPECT_EQ(counts.changed, 1);
  EXPECT_STREQ(counts.format.text(), L"csv");
  EXPECT_THAT(store_.statements, ElementsAre("Export to a.csv"));
  store_.exportFormatResult = E_OUTOFMEMORY;
  store_.statements.clear();
  ExportCounts others;
  EXPECT_FALSE(connection.exportRows({L"t", true, L"t"}, L"b.csv", nullptr, others));
  EXPECT_THAT(store_.statements, IsEmpty()) << "a file would stand there that was not told of";
  EXPECT_TRUE(others.format.isEmpty());
}

TEST_F(HandlesTest, OpeningAConnectionClosesItFirst) {
  ConnectionHandle connection(makeFakeConnection(store_));
  for (const auto& [text, place] : {std::pair(L"a.cdb", "a.cdb"), std::pair(L"b.cdb", "b.cdb")}) {
    EXPECT_TRUE(connection.setConnectionString(text));
    EXPECT_EQ(connection.open(), 0);
    EXPECT_EQ(store_.connectedTo, place);
    EXPECT_EQ(store_.connectOptions, -1);
  }
}

TEST_F(HandlesTest, AConnectionThatDoesNotOpenReportsMinus13) {
  ConnectionHandle connection(makeFakeConnection(store_));
  store_.openResult = E_FAIL;
  EXPECT_EQ(connection.open(), -13);
}

TEST_F(HandlesTest, APositiveResultIsASuccess) {
  ConnectionHandle connection(makeFakeConnection(store_));
  store_.openResult = S_FALSE;
  EXPECT_EQ(connection.open(), 0);
  RecordsetHandle recordset(makeFakeRecordset(store_));
  EXPECT_TRUE(recordset.open(L"t", &connection, CursorType::keyset, SourceKind::text));
}

TEST_F(HandlesTest, ExecutePassesOptions1AndTheAffectedRecordsOn) {
  ConnectionHandle connection(makeFakeConnection(store_));
  LONG affected = 0;
  EXPECT_TRUE(connection.execute(L"DROP TABLE 't'", &affected));
  EXPECT_EQ(affected, 7);
  EXPECT_THAT(store_.statements, ElementsAre("Execute DROP TABLE 't' options 1"));
}

TEST_F(HandlesTest, ARecordsetFromExecuteIsReleasedAtOnceUnlessAHandleTakesIt) {
  ConnectionHandle connection(makeFakeConnection(store_));
  EXPECT_TRUE(connection.execute(L"x"));
  EXPECT_THAT(store_.cursors, IsEmpty());
  {
    RecordsetHandle taken{ComPtr<IAdoceRecordset>()};
    EXPECT_TRUE(connection.execute(L"x", nullptr, &taken));
    EXPECT_EQ(store_.openCursorCount(), 1);
    EXPECT_TRUE(taken.moveFirst());
  }
  EXPECT_THAT(store_.cursors, IsEmpty());
}

TEST_F(HandlesTest, AFailedExecuteLeavesItsOutParametersUntouched) {
  ConnectionHandle connection(makeFakeConnection(store_));
  RecordsetHandle recordset(makeFakeRecordset(store_));
  store_.openResult = E_FAIL;
  LONG affected = 3;
  EXPECT_FALSE(connection.execute(L"x", &affected, &recordset));
  EXPECT_EQ(affected, 3);
  EXPECT_TRUE(recordset.moveFirst());
}

// ---- Recordset

TEST_F(HandlesTest, OpeningARecordsetThatIsOpenClosesTheOldOneFirst) {
  ConnectionHandle connection(makeFakeConnection(store_));
  RecordsetHandle recordset(makeFakeRecordset(store_));
  EXPECT_TRUE(recordset.open(L"a", &connection, CursorType::keyset, SourceKind::text));
  EXPECT_TRUE(recordset.open(L"b", &connection, CursorType::dynamic, SourceKind::table));
  EXPECT_THAT(store_.statements,
              ElementsAre("Open a cursor 1 lock 3 options 1", "Open b cursor 2 lock 3 options 2"));
  EXPECT_EQ(store_.openCursorCount(), 1);
}

TEST_F(HandlesTest, ARecordsetUsesItsOwnConnectionWhereNoneIsGiven) {
  const FakeStoreRegistration registration(store_);
  const ConnectionHandle connection;
  RecordsetHandle withOwn(&connection);
  RecordsetHandle withNone;
  EXPECT_TRUE(withOwn.open(L"a", nullptr, CursorType::keyset, SourceKind::text));
  EXPECT_TRUE(withNone.open(L"b", nullptr, CursorType::keyset, SourceKind::text));
  EXPECT_THAT(store_.statements, ElementsAre("Open a cursor 1 lock 3 options 1",
                                             "Open b cursor 1 lock 3 options 1 without connection"));
}

TEST_F(HandlesTest, ARecordsetClosesWhenItsHandleEnds) {
  ComPtr<IAdoceRecordset> kept = makeFakeRecordset(store_);
  ASSERT_EQ(store_.openCursorCount(), 1);
  { const RecordsetHandle recordset(ComPtr<IAdoceRecordset>::share(kept.get())); }
  EXPECT_EQ(store_.openCursorCount(), 0) << "although somebody else has it, too";
  kept.reset();
  EXPECT_THAT(store_.cursors, IsEmpty());
}

TEST_F(HandlesTest, MovesPassTheirCountAndOrigin) {
  store_.rows.resize(10);
  RecordsetHandle recordset(makeFakeRecordset(store_));
  const FakeCursor& cursor = *store_.cursors.front();
  EXPECT_TRUE(recordset.moveLast());
  EXPECT_EQ(cursor.position, 10);
  EXPECT_TRUE(recordset.moveNext());
  EXPECT_EQ(cursor.position, 11);
  EXPECT_TRUE(recordset.moveFirst());
  EXPECT_EQ(cursor.position, 1);
  EXPECT_TRUE(recordset.movePrevious());
  EXPECT_EQ(cursor.position, 0);
  EXPECT_TRUE(recordset.move(4, MoveOrigin::first));
  EXPECT_EQ(cursor.position, 5);
  EXPECT_TRUE(recordset.move(-2, MoveOrigin::current));
  EXPECT_EQ(cursor.position, 3);
}

TEST_F(HandlesTest, ChangesPassNoFieldsAndDeleteTheCurrentRecordOnly) {
  addField(L"a", 202, asText(L"first"));
  RecordsetHandle recordset(makeFakeRecordset(store_));
  EXPECT_TRUE(recordset.addNew());
  EXPECT_EQ(store_.rows.size(), 1u);
  EXPECT_TRUE(recordset.field(0).setValue(asText(L"second")));
  EXPECT_TRUE(recordset.update());
  ASSERT_EQ(store_.rows.size(), 2u);
  EXPECT_TRUE(recordset.moveFirst());
  EXPECT_TRUE(recordset.deleteCurrent());
  ASSERT_EQ(store_.rows.size(), 1u);
  EXPECT_EQ(store_.storedText(0, 0), L"second");
}

TEST_F(HandlesTest, CountsThatCantBeHadAreMinus1) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  store_.rows.resize(5);
  store_.fields.resize(2);
  EXPECT_EQ(recordset.recordCount(), 5);
  EXPECT_EQ(recordset.fieldCount(), 2);
  recordset.close();
  store_.recordCountResult = E_FAIL;
  store_.fieldsResult = E_FAIL;
  EXPECT_EQ(recordset.recordCount(), -1);
  EXPECT_EQ(recordset.fieldCount(), -1);
}

TEST_F(HandlesTest, TheFieldsAreFetchedOnceUntilEveryClose) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  addField(L"a", 3, Variant::fromLong(1));
  EXPECT_EQ(store_.fieldsFetched, 0);
  EXPECT_EQ(recordset.fieldCount(), 1);
  EXPECT_STREQ(recordset.field(0).name().text(), L"a");
  EXPECT_EQ(store_.fieldsFetched, 1);
  recordset.close();
  EXPECT_EQ(recordset.fieldCount(), 1);
  EXPECT_EQ(store_.fieldsFetched, 2);
  EXPECT_TRUE(recordset.open(L"b", nullptr, CursorType::keyset, SourceKind::text));
  EXPECT_EQ(recordset.fieldCount(), 1);
  EXPECT_EQ(store_.fieldsFetched, 3);
}

TEST_F(HandlesTest, AFieldIndexBeyondTheCountGivesAnEmptyValue) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  addField(L"a", 3, Variant::fromLong(9));
  EXPECT_STREQ(recordset.field(0).valueAsText().text(), L"9");
  for (const LONG index : {1L, -1L}) {
    FieldHandle& field = recordset.field(index);
    EXPECT_EQ(field.value().type(), VT_EMPTY);
    EXPECT_STREQ(field.valueAsText().text(), L"");
    EXPECT_STREQ(field.name().text(), L"");
    EXPECT_EQ(field.valueAsInteger(), 0);
    EXPECT_EQ(field.type(), 0);
    EXPECT_EQ(field.attributes(), 0);
    EXPECT_FALSE(field.setValue(Variant::fromLong(1)));
  }
}

TEST_F(HandlesTest, TheFieldHandleIsOneAndForgetsItsFieldAtClose) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  addField(L"a", 3, Variant::fromLong(1));
  addField(L"b", 3, Variant::fromLong(2));
  FieldHandle& first = recordset.field(0);
  recordset.field(1);
  EXPECT_STREQ(first.name().text(), L"b");
  recordset.close();
  EXPECT_STREQ(first.name().text(), L"");
}

// ---- Field

TEST_F(HandlesTest, AFieldThatFailsReadsAsEmptyNeverAsAnError) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  addField(L"a", 3, Variant::fromLong(1));
  FieldHandle& field = recordset.field(0);
  EXPECT_EQ(field.valueAsInteger(), 1);
  store_.fields[0].result = E_FAIL;
  EXPECT_EQ(field.value().type(), VT_EMPTY) << "the last value was kept";
  EXPECT_STREQ(field.valueAsText().text(), L"");
  EXPECT_STREQ(field.name().text(), L"");
  EXPECT_EQ(field.valueAsInteger(), 0);
  EXPECT_EQ(field.type(), 0);
  EXPECT_EQ(field.attributes(), 0);
  EXPECT_FALSE(field.setValue(Variant::fromLong(1)));
}

TEST_F(HandlesTest, ValuesConvertToTextAsTheSystemDoes) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  Variant null;
  null.put()->vt = VT_NULL;
  addField(L"text", 202, asText(L"a \x03A9 b"));
  addField(L"long", 3, Variant::fromLong(-5));
  addField(L"true", 11, asBoolean(true));
  addField(L"false", 11, asBoolean(false));
  addField(L"null", 3, std::move(null));
  addField(L"empty", 3, Variant());
  addField(L"big", 3, asDecimal(9007199254740993));
  const wchar_t* const expected[] = {L"a \x03A9 b", L"-5", L"-1", L"0", L"", L"", L"9007199254740993"};
  for (LONG i = 0; i < 7; ++i) EXPECT_STREQ(recordset.field(i).valueAsText().text(), expected[i]) << i;
}

TEST_F(HandlesTest, AZeroCharacterWithinATextDoesNotEndIt) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  Variant text;
  VARIANT* target = text.put();
  target->bstrVal = SysAllocStringLen(L"a\0b", 3);
  target->vt = VT_BSTR;
  addField(L"a", 203, std::move(text));
  EXPECT_STREQ(recordset.field(0).valueAsText().text(),
               L"a\x2400"
               L"b");
}

TEST_F(HandlesTest, ValuesConvertToIntegersAndFailuresCountAs0) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  addField(L"text", 202, asText(L"12"));
  addField(L"half", 5, asDouble(2.5));
  addField(L"true", 11, asBoolean(true));
  addField(L"word", 202, asText(L"abc"));
  addField(L"big", 3, asDecimal(9007199254740993));
  const LONG expected[] = {12, 2, -1, 0, 0};
  for (LONG i = 0; i < 5; ++i) EXPECT_EQ(recordset.field(i).valueAsInteger(), expected[i]) << i;
}

TEST_F(HandlesTest, NumbersThatAreNotFiniteAreKeptFromConversions) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  addField(L"infinite", 5, asDouble(std::numeric_limits<double>::infinity()));
  addField(L"nan", 5, asDouble(nan));
  addField(L"date", 7, Variant::fromDate(nan));
  EXPECT_STREQ(recordset.field(0).valueAsText().text(), L"inf");
  EXPECT_STREQ(recordset.field(1).valueAsText().text(), L"nan");
  EXPECT_STREQ(recordset.field(2).valueAsText().text(), L"");
  for (LONG i = 0; i < 3; ++i) EXPECT_EQ(recordset.field(i).valueAsInteger(), 0) << i;
  SYSTEMTIME date = {};
  EXPECT_FALSE(recordset.field(2).valueAsDate(date));
}

TEST_F(HandlesTest, ADateGivesItsCalendarFields) {
  RecordsetHandle recordset(makeFakeRecordset(store_));
  addField(L"date", 7, Variant::fromDate(36959.5));
  addField(L"number", 5, asDouble(36959.5));
  SYSTEMTIME date = {};
  ASSERT_TRUE(recordset.field(0).valueAsDate(date));
  EXPECT_EQ(date.wYear, 2001);
  EXPECT_EQ(date.wMonth, 3);
  EXPECT_EQ(date.wDay, 9);
  EXPECT_EQ(date.wHour, 12);
  date.wYear = 1;
  EXPECT_FALSE(recordset.field(1).valueAsDate(date));
  EXPECT_EQ(date.wYear, 1);
}

// ---- Without components

TEST_F(HandlesTest, EveryCallThroughANullInterfaceFails) {
  ConnectionHandle connection{ComPtr<IAdoceConnection>()};
  EXPECT_FALSE(connection.setConnectionString(L"a"));
  EXPECT_EQ(connection.open(), -13);
  for (const Outcome& refused :
       {connection.open(L"a"), connection.execute(L"x"), connection.saveCopy(L"a")}) {
    EXPECT_FALSE(refused);
    EXPECT_NE(std::wcsstr(refused.reason().text(), L"adoce31.dll"), nullptr);
  }
  connection.close();
  RecordsetHandle recordset{ComPtr<IAdoceRecordset>()};
  EXPECT_FALSE(recordset.open(L"x", &connection, CursorType::keyset, SourceKind::text));
  EXPECT_FALSE(recordset.moveFirst());
  EXPECT_FALSE(recordset.moveLast());
  EXPECT_FALSE(recordset.moveNext());
  EXPECT_FALSE(recordset.movePrevious());
  EXPECT_FALSE(recordset.move(1, MoveOrigin::first));
  EXPECT_FALSE(recordset.addNew());
  EXPECT_FALSE(recordset.update());
  EXPECT_FALSE(recordset.cancelUpdate());
  EXPECT_FALSE(recordset.deleteCurrent());
  EXPECT_EQ(recordset.recordCount(), -1);
  EXPECT_EQ(recordset.fieldCount(), -1);
  EXPECT_STREQ(recordset.field(0).valueAsText().text(), L"");
  recordset.close();
}

TEST_F(HandlesTest, HandlesReleaseAllThatTheyHeld) {
  const long before = LiveResources::countOfAll();
  {
    const FakeStoreRegistration registration(store_);
    ConnectionHandle connection;
    RecordsetHandle recordset(&connection);
    addField(L"a", 3, asText(L"b"));
    EXPECT_TRUE(connection.execute(L"x", nullptr, &recordset));
    recordset.field(0).valueAsText();
    store_.fields.clear();
    store_.rows.clear();
  }
  EXPECT_EQ(LiveResources::countOfAll(), before);
  EXPECT_THAT(store_.cursors, IsEmpty());
}

}  // namespace
