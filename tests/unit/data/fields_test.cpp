// The current recordset and its fields.
#include <windows.h>

#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;

class FieldsTest : public DataTest {};

TEST_F(FieldsTest, OpeningLoadsTheFields) {
  openTable(L"id integer, title varchar(20), born datetime, price double, sold bit",
            {L"1, 'a', null, 1.5, 1"});
  ASSERT_EQ(database_.fieldCount(), 5u);
  const wchar_t* const names[] = {L"id", L"title", L"born", L"price", L"sold"};
  const FieldType types[] = {FieldType::integer, FieldType::varWChar, FieldType::date, FieldType::real,
                             FieldType::bit};
  for (std::uint32_t field = 0; field < 5; ++field) {
    EXPECT_STREQ(database_.fieldName(field).text(), names[field]);
    EXPECT_EQ(database_.fieldType(field), types[field]) << field;
    EXPECT_EQ(database_.fieldWidth(field), 65535u) << field;
    EXPECT_FALSE(database_.isFieldReadOnly(field)) << field;
  }
  EXPECT_EQ(database_.longestFieldName(), 5u);
  EXPECT_EQ(database_.recordCount(), 1u);
  EXPECT_EQ(recordCount, 1u);
  EXPECT_TRUE(database_.fieldsLoaded());
}

TEST_F(FieldsTest, TheFieldsOfAJoinAreReadOnly) {
  openTable(L"a integer, b integer", {L"1, 2"});
  ASSERT_TRUE(database_.openRecordset(L"Select x.a, y.b from t as x inner join t as y on x.a = y.a"));
  EXPECT_TRUE(database_.isFieldReadOnly(0));
  EXPECT_TRUE(database_.isFieldReadOnly(1));
}

TEST_F(FieldsTest, AnIndexThatIsNoFieldsReadsAsNothing) {
  openTable(L"a integer", {L"7"});
  for (const std::uint32_t field : {1u, 50u, 0xFFFFFFFFu}) {
    EXPECT_STREQ(database_.fieldName(field).text(), L"");
    EXPECT_EQ(database_.fieldType(field), FieldType{});
    EXPECT_EQ(database_.fieldWidth(field), 0u);
    EXPECT_TRUE(database_.isFieldReadOnly(field));
    EXPECT_FALSE(database_.isNumeric(field));
    EXPECT_STREQ(database_.valueText(field).text(), L"");
    EXPECT_FALSE(database_.fieldIsSet(field));
    EXPECT_FALSE(database_.setValueFromEditor(field, FakeEditor::withText(L"1")));
  }
}

TEST_F(FieldsTest, TheIndexOfANameIsItsFirstExactMatch) {
  openTable(L"a integer, Name text, \"full name\" text", {});
  EXPECT_EQ(database_.fieldIndexByName(L"Name"), 1u);
  EXPECT_EQ(database_.fieldIndexByName(L"full name"), 2u);
  EXPECT_EQ(database_.fieldIndexByName(L"name"), 3u) << "the letter case differs";
  EXPECT_EQ(database_.fieldIndexByName(L"missing"), database_.fieldCount());
  EXPECT_EQ(database_.fieldIndexByName(String()), 3u);
}

TEST_F(FieldsTest, ATableOf120Fields) {
  std::wstring columns = L"f0 integer";
  for (int i = 1; i < 120; ++i) columns += L", f" + std::to_wstring(i) + L" integer";
  openTable(columns, {});
  runOn(path_, {L"INSERT INTO t (f0, f119) VALUES (1, 119)"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_EQ(database_.fieldCount(), 120u);
  EXPECT_EQ(database_.longestFieldName(), 4u);
  EXPECT_EQ(database_.fieldIndexByName(L"f119"), 119u);
  EXPECT_STREQ(database_.valueText(119).text(), L"119");
  EXPECT_STREQ(database_.valueText(118).text(), L"");
}

TEST_F(FieldsTest, AStatementThatDoesNotOpenLeavesNoRecordset) {
  openTable(L"a integer", {L"7"});
  EXPECT_FALSE(database_.openRecordset(L"Select * from [missing]"));
  EXPECT_FALSE(database_.moveFirst());
  EXPECT_STREQ(database_.valueText(0).text(), L"");
  EXPECT_FALSE(database_.openRecordset(L""));
  EXPECT_FALSE(database_.openRecordset(L"Select * from [t]; Select * from [t]"));
  EXPECT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_STREQ(database_.valueText(0).text(), L"7");
}

TEST_F(FieldsTest, NothingOpensWithoutAFile) {
  EXPECT_FALSE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_FALSE(database_.checkSql(L"Select 1"));
  EXPECT_FALSE(database_.createTable(L"t", L"a Integer"));
}

TEST_F(FieldsTest, CheckingAStatementLeavesItsRowsOpenAndTheFieldsAsTheyWere) {
  openTable(L"a integer, b integer", {L"1, 2", L"3, 4"});
  EXPECT_TRUE(database_.checkSql(L"Select b from t order by b desc"));
  EXPECT_EQ(database_.fieldCount(), 2u);
  EXPECT_EQ(database_.recordCount(), 2u);
  EXPECT_STREQ(database_.fieldName(0).text(), L"a");
  EXPECT_STREQ(database_.valueText(0).text(), L"4");
}

TEST_F(FieldsTest, AStatementThatDoesNotOpenFailsTheCheck) {
  openTable(L"a integer", {L"1"});
  EXPECT_FALSE(database_.checkSql(L"Selct a from t"));
  EXPECT_FALSE(database_.checkSql(L"Select missing from t"));
}

TEST_F(FieldsTest, ClosingTheRecordsetLeavesTheFileOpen) {
  openTable(L"a integer", {L"1"});
  database_.closeRecordset();
  EXPECT_FALSE(database_.moveFirst());
  EXPECT_TRUE(database_.isOpen());
  EXPECT_TRUE(database_.openRecordset(L"Select * from [t]"));
}

// ---- Debug output

std::vector<std::wstring> debugTexts;

/// The system turns OutputDebugStringW into an exception that carries the text, narrow on some systems.
LONG CALLBACK keepDebugText(EXCEPTION_POINTERS* pointers) {
  constexpr DWORD kNarrowDebugText = 0x40010006;
  constexpr DWORD kWideDebugText = 0x4001000A;
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode == kWideDebugText) {
    debugTexts.emplace_back(reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]));
  } else if (record.ExceptionCode == kNarrowDebugText) {
    const std::string narrow = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    debugTexts.emplace_back(narrow.begin(), narrow.end());
  } else {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  return EXCEPTION_CONTINUE_EXECUTION;
}

TEST_F(FieldsTest, EveryStatementOfARecordsetIsWrittenToTheDebugOutput) {
  openTable(L"a integer", {L"1"});
  debugTexts.clear();
  void* const handler = AddVectoredExceptionHandler(1, &keepDebugText);
  EXPECT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_FALSE(database_.openRecordset(L"Select * from [missing]"));
  EXPECT_TRUE(database_.checkSql(L"Select a from t"));
  NameList names;
  database_.listFieldNames(L"Select 1 from t", names);
  database_.listTables(names);
  database_.listQueries(names);
  RemoveVectoredExceptionHandler(handler);
  EXPECT_THAT(debugTexts,
              ElementsAre(L"Select * from [t]", L"Select * from [missing]", L"Select a from t",
                          L"Select 1 from t", L"Select * from QuivaneQueries ORDER BY QueryName"));
}

// ---- What the real components never say

class FakeFieldsTest : public testing::Test {
 protected:
  void addField(const wchar_t* name, LONG type, LONG attributes) {
    store_.fields.push_back({.name = name, .type = type, .attributes = attributes});
  }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(FakeFieldsTest, TheCurrentRecordsetIsAKeysetOfAStatement) {
  EXPECT_TRUE(database_.openRecordset(L"Select * from [t]"));
  EXPECT_TRUE(database_.checkSql(L"Select 1"));
  EXPECT_THAT(store_.statements, ElementsAre("Open Select * from [t] cursor 1 lock 3 options 1",
                                             "Open Select 1 cursor 1 lock 3 options 1"));
  EXPECT_EQ(store_.cursors.size(), 1u) << "in place of each other";
}

TEST_F(FakeFieldsTest, ListingFieldNamesOpensADynamicCursorOfAStatement) {
  NameList names;
  database_.listFieldNames(L"Select 1", names);
  EXPECT_THAT(store_.statements, ElementsAre("Open Select 1 cursor 2 lock 3 options 1"));
  EXPECT_EQ(store_.openCursorCount(), 0);
}

TEST_F(FakeFieldsTest, AFieldIsReadOnlyWhenItIsNeitherUpdatableNorPerhapsSo) {
  addField(L"a", 3, 4);
  addField(L"b", 3, 8);
  addField(L"c", 3, 4 | 8 | 32);
  addField(L"d", 3, 0);
  addField(L"e", 3, 16 | 32 | 64);
  ASSERT_TRUE(database_.openRecordset(L"x"));
  const bool expected[] = {false, false, false, true, true};
  for (std::uint32_t field = 0; field < 5; ++field) {
    EXPECT_EQ(database_.isFieldReadOnly(field), expected[field]) << field;
  }
}

TEST_F(FakeFieldsTest, FieldsOfType48DontCountForTheLongestName) {
  addField(L"short", 3, 4);
  addField(L"the longest of all", 48, 4);
  ASSERT_TRUE(database_.openRecordset(L"x"));
  EXPECT_EQ(database_.longestFieldName(), 5u);
}

TEST_F(FakeFieldsTest, TheLongestNameIsThatOfTheCurrentRecordset) {
  addField(L"quite long", 3, 4);
  ASSERT_TRUE(database_.openRecordset(L"x"));
  EXPECT_EQ(database_.longestFieldName(), 10u);
  store_.fields[0].name = L"a";
  ASSERT_TRUE(database_.openRecordset(L"x"));
  EXPECT_EQ(database_.longestFieldName(), 1u);
}

TEST_F(FakeFieldsTest, NumericTypes) {
  for (const LONG type : {2L, 3L, 18L, 19L, 4L, 5L, 7L, 11L, 202L}) addField(L"a", type, 4);
  ASSERT_TRUE(database_.openRecordset(L"x"));
  for (std::uint32_t field = 0; field < 9; ++field) {
    EXPECT_EQ(database_.isNumeric(field), field < 4) << field;
    EXPECT_EQ(database_.isSignedInteger(field), field < 2) << field;
  }
}

TEST_F(FakeFieldsTest, CountsThatCantBeHadAre0) {
  store_.recordCountResult = E_FAIL;
  store_.fieldsResult = E_FAIL;
  ASSERT_TRUE(database_.openRecordset(L"x"));
  EXPECT_EQ(database_.recordCount(), 0u);
  EXPECT_EQ(database_.fieldCount(), 0u);
}

}  // namespace
