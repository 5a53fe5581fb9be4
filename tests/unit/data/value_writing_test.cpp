// An editor's content on its way into a field.
#include <limits>
#include <optional>
#include <string>

#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ValueWritingTest : public DataTest {
 protected:
  void write(std::uint32_t field, const FakeEditor& editor) {
    EXPECT_TRUE(database_.setValueFromEditor(field, editor)) << field;
  }
  void write(std::uint32_t field, const wchar_t* text) { write(field, FakeEditor::withText(text)); }
  std::wstring text(std::uint32_t field) { return database_.valueText(field).text(); }
  /// What SQLite keeps of the first field: its kind and its text.
  std::wstring kept(const wchar_t* column) {
    database_.update();
    const std::wstring name = column;
    return stored(L"Select typeof(" + name + L") || ' ' || " + name + L" from t");
  }
};

TEST_F(ValueWritingTest, TextsBecomeNumbersOfTheirFieldsType) {
  openTable(L"a smallint, b integer, c \"unsigned smallint\", d \"unsigned integer\", e double",
            {L"0, 0, 0, 0, 0"});
  write(0, L"-32768");
  write(1, L"-2147483648");
  write(2, L"65535");
  write(3, L"4294967295");
  write(4, L"-2.125");
  EXPECT_EQ(kept(L"a"), L"integer -32768");
  EXPECT_EQ(kept(L"b"), L"integer -2147483648");
  EXPECT_EQ(kept(L"c"), L"integer 65535");
  EXPECT_EQ(kept(L"d"), L"integer 4294967295");
  EXPECT_EQ(kept(L"e"), L"real -2.125");
}

TEST_F(ValueWritingTest, NumbersAreReadAsTheSystemReadsThem) {
  openTable(L"a integer, b double", {L"0, 0"});
  write(0, L" 12 ");
  write(1, L" 1e3 ");
  EXPECT_EQ(kept(L"a"), L"integer 12");
  EXPECT_EQ(kept(L"b"), L"real 1000.0");
  write(0, L"2.5");
  EXPECT_EQ(kept(L"a"), L"integer 2") << "halves go to the even number";
}

TEST_F(ValueWritingTest, AFieldThatHoldsAFractionTakesAnother) {
  openTable(L"a integer, b smallint, c \"unsigned integer\", d integer, e integer, f integer",
            {L"1.5, -2.25, 0.5, 1.5, 1.5, 1.5"});
  write(0, L"1.7");
  write(1, L"-2.75");
  write(2, L"1e-3");
  write(3, L"2");
  write(4, L"9007199254740993");
  write(5, L"abc");
  EXPECT_EQ(kept(L"a"), L"real 1.7");
  EXPECT_EQ(kept(L"b"), L"real -2.75");
  EXPECT_EQ(kept(L"c"), L"real 0.001");
  EXPECT_EQ(kept(L"d"), L"integer 2");
  EXPECT_EQ(kept(L"e"), L"integer 9007199254740993");
  EXPECT_EQ(stored(L"Select f from t"), L"(null)");
}

TEST_F(ValueWritingTest, AbcInAnIntegerFieldLeavesItEmpty) {
  openTable(L"a integer", {L"5"});
  write(0, L"abc");
  EXPECT_EQ(text(0), L"");
  database_.update();
  EXPECT_EQ(stored(L"Select a from t"), L"(null)");
}

TEST_F(ValueWritingTest, NumbersThatTheirFieldCantHoldClearIt) {
  openTable(L"a smallint, b integer, c \"unsigned smallint\", d \"unsigned integer\", e double",
            {L"5, 5, 5, 5, 5"});
  write(0, L"32768");
  write(1, L"2147483648");
  write(2, L"-1");
  write(3, L"4294967296");
  write(4, L"1e400");
  database_.update();
  for (const wchar_t* column : {L"a", L"b", L"c", L"d", L"e"}) {
    EXPECT_EQ(stored(L"Select " + std::wstring(column) + L" from t"), L"(null)")
        << testing::PrintToString(std::wstring(column));
  }
}

TEST_F(ValueWritingTest, AnEmptiedNumberClearsItsField) {
  openTable(L"a integer, b double", {L"5, 5"});
  write(0, L"");
  write(1, L"");
  database_.update();
  EXPECT_EQ(stored(L"Select a from t"), L"(null)");
  EXPECT_EQ(stored(L"Select b from t"), L"(null)");
}

TEST_F(ValueWritingTest, TextsAreWrittenAsTheyAre) {
  openTable(L"a varchar(10), b text", {L"'x', 'y'"});
  const wchar_t* const written = L"It's \"1\" \x03A9 \xD83D\xDE00\r\n ";
  write(0, written);
  write(1, L"");
  database_.update();
  EXPECT_EQ(stored(L"Select a from t"), written);
  EXPECT_EQ(stored(L"Select b from t"), L"") << "an emptied text is a text";
}

TEST_F(ValueWritingTest, TypedPairsOfDigitsAreStoredAsBytes) {
  openTable(L"a varbinary(10), b image, c image, d image", {L"x'4100', x'4100', null, x'41'"});
  write(0, L"00 ff 7F");
  write(1, L"0a0B0c");
  write(2, L" 01 ");
  write(3, L"");
  database_.update();
  EXPECT_EQ(stored(L"Select typeof(a) || hex(a) from t"), L"blob00FF7F");
  EXPECT_EQ(stored(L"Select typeof(b) || hex(b) from t"), L"blob0A0B0C");
  EXPECT_EQ(stored(L"Select typeof(c) || hex(c) from t"), L"blob01");
  EXPECT_EQ(stored(L"Select d from t"), L"(null)");
}

TEST_F(ValueWritingTest, WhatIsNoPairsOfDigitsClearsABinaryAndIsTold) {
  openTable(L"a varbinary(10), b image, c image", {L"x'4100', x'4100', x'41'"});
  const FakeEditor half = FakeEditor::withText(L"A");
  const FakeEditor odd = FakeEditor::withText(L"41 0");
  const FakeEditor word = FakeEditor::withText(L"no");
  NameList leftOut;
  EXPECT_TRUE(database_.storeRecord(database_.readRecord(), {&half, &odd, &word}, leftOut));
  EXPECT_THAT(namesOf(leftOut), ElementsAre(L"a", L"b", L"c"));
  EXPECT_EQ(stored(L"Select a from t"), L"(null)");
}

TEST_F(ValueWritingTest, BytesThatComeBackAsTheyWereShownAreNotWritten) {
  openTable(L"a image, b image, c image, n integer", {L"x'4142', zeroblob(1000), x'', 1"});
  for (std::uint32_t field = 0; field < 3; ++field) {
    write(field, FakeEditor::withText(text(field).c_str()).unedited());
  }
  write(3, L"2");
  database_.update();
  EXPECT_EQ(stored(L"Select hex(a) || length(b) || typeof(c) || n from t"), L"41421000blob2");
}

TEST_F(ValueWritingTest, ABooleanIsWrittenByItsCheckBox) {
  openTable(L"a bit, b bit, c bit", {L"0, 1, null"});
  write(0, FakeEditor::withCheck(true));
  write(1, FakeEditor::withCheck(false));
  write(2, FakeEditor::withCheck(true));
  EXPECT_EQ(kept(L"a"), L"integer 1");
  EXPECT_EQ(kept(L"b"), L"integer 0");
  EXPECT_EQ(kept(L"c"), L"integer 1");
  EXPECT_EQ(text(0), L"-1");
  EXPECT_EQ(text(1), L"0");
}

TEST_F(ValueWritingTest, ADateIsWrittenAsTheEditorGivesIt) {
  openTable(L"a datetime, b datetime", {L"'2001-03-09', null"});
  write(0, FakeEditor::withDate(L"3/10/2001", 36960.0));
  write(1, FakeEditor::withDate(L"12/30/1899", 0.0));
  EXPECT_EQ(text(0), L"3/10/2001");
  database_.update();
  EXPECT_EQ(stored(L"Select count(*) from t where a like '2001-03-10%'"), L"1");
  EXPECT_EQ(stored(L"Select count(*) from t where b like '1899-12-30%'"), L"1");
}

TEST_F(ValueWritingTest, AnEditorWithoutADateClearsTheField) {
  openTable(L"a datetime", {L"'2001-03-09'"});
  write(0, FakeEditor::withDate(L"None", std::nullopt));
  database_.update();
  EXPECT_EQ(stored(L"Select a from t"), L"(null)");
}

// ---- What nobody edited stays

TEST_F(ValueWritingTest, ValuesBeyondTheirTextSurviveTheSavingOfTheirNeighbours) {
  openTable(L"a integer, b double, c integer, d double, e image, f datetime, g datetime, h integer, n text",
            {L"9007199254740993, 0.12345678901234567, 'n/a', 'about', x'0102', '2001-03-09 14:05:07.250', "
             L"'1899-12-30', null, 'x'"});
  for (std::uint32_t field = 0; field < 8; ++field) {
    write(field, FakeEditor::withText(text(field).c_str()).unedited());
  }
  write(8, L"changed");
  EXPECT_EQ(kept(L"a"), L"integer 9007199254740993");
  EXPECT_EQ(stored(L"Select b = 0.12345678901234567 from t"), L"1");
  EXPECT_EQ(kept(L"c"), L"text n/a");
  EXPECT_EQ(kept(L"d"), L"text about");
  EXPECT_EQ(stored(L"Select hex(e) from t"), L"0102");
  EXPECT_EQ(kept(L"f"), L"text 2001-03-09 14:05:07.250");
  EXPECT_EQ(kept(L"g"), L"text 1899-12-30 00:00:00");
  EXPECT_EQ(stored(L"Select h from t"), L"(null)");
  EXPECT_EQ(kept(L"n"), L"text changed");
}

TEST_F(ValueWritingTest, AnEditedNumberBeyondItsTypeIsStoredWhole) {
  openTable(L"a integer, b smallint, c integer", {L"9007199254740993, 40000, 5"});
  write(0, L"9007199254740994");
  write(1, L"40001");
  write(2, L"9007199254740994");
  EXPECT_EQ(kept(L"a"), L"integer 9007199254740994");
  EXPECT_EQ(kept(L"b"), L"integer 40001");
  EXPECT_EQ(kept(L"c"), L"(null)") << "a field whose number fits its type takes no other";
}

TEST_F(ValueWritingTest, ATextInADateFieldGoesWhenTheUserClearsIt) {
  openTable(L"a datetime, b datetime", {L"'last spring', 'last spring'"});
  write(0, FakeEditor::withDate(L"last spring", std::nullopt).unedited());
  write(1, FakeEditor::withDate(L"None", std::nullopt));
  EXPECT_EQ(kept(L"a"), L"text last spring");
  EXPECT_EQ(stored(L"Select b from t"), L"(null)");
}

TEST_F(ValueWritingTest, TextsOfSeveralLinesAreWrittenAsTheEditorShowsThem) {
  openTable(L"a text", {L"'one\r\ntwo'"});
  write(0, L"one,two");
  EXPECT_EQ(kept(L"a"), L"text one,two");
}

TEST_F(ValueWritingTest, EveryFieldOfANewRecordIsWritten) {
  openTable(L"a bit, b text, c integer, d datetime, e double", {});
  ASSERT_TRUE(database_.addNew());
  write(0, FakeEditor::withCheck(false));
  write(1, L"");
  write(2, L"");
  write(3, FakeEditor::withDate(L"3/9/2001", 36959.0));
  write(4, L"");
  EXPECT_EQ(kept(L"a"), L"integer 0");
  EXPECT_EQ(kept(L"b"), L"text ");
  EXPECT_EQ(stored(L"Select c from t"), L"(null)");
  EXPECT_EQ(stored(L"Select count(*) from t where d like '2001-03-09%'"), L"1");
  EXPECT_EQ(stored(L"Select e from t"), L"(null)");
}

// ---- Against a store of our own

class FakeValueWritingTest : public testing::Test {
 protected:
  void addField(LONG type, Variant value) {
    store_.addField({.name = L"f", .type = type, .attributes = 4}, std::move(value));
  }
  void open() { ASSERT_TRUE(database_.openRecordset(L"x")); }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(FakeValueWritingTest, ATrueBooleanIs1AndAFalseOne0) {
  addField(11, asBoolean(false));
  addField(11, asBoolean(true));
  open();
  EXPECT_TRUE(database_.setValueFromEditor(0, FakeEditor::withCheck(true)));
  EXPECT_TRUE(database_.setValueFromEditor(1, FakeEditor::withCheck(false)));
  EXPECT_EQ(store_.value(0).type(), VT_BOOL);
  EXPECT_EQ(store_.value(0).get().boolVal, 1);
  EXPECT_EQ(store_.value(1).type(), VT_BOOL);
  EXPECT_EQ(store_.value(1).get().boolVal, 0);
}

TEST_F(FakeValueWritingTest, EachTypeIsPutAsItsOwn) {
  const LONG types[] = {2, 3, 5, 18, 19, 202, 203};
  for (const LONG type : types) addField(type, Variant::fromText(L"old"));
  open();
  constexpr VARTYPE kExpected[] = {VT_I2, VT_I4, VT_R8, VT_UI2, VT_UI4, VT_BSTR, VT_BSTR};
  for (std::uint32_t field = 0; field < std::size(types); ++field) {
    EXPECT_TRUE(database_.setValueFromEditor(field, FakeEditor::withText(L"7")));
    EXPECT_EQ(store_.value(field).type(), kExpected[field]);
    EXPECT_EQ(database_.valueText(field).text(), std::wstring(field == 2 ? L"7.000000" : L"7"));
  }
}

TEST_F(FakeValueWritingTest, WhatCantBeConvertedIsPutAsEmpty) {
  const LONG types[] = {2, 3, 5, 18, 19, 204, 205};
  for (const LONG type : types) addField(type, Variant::fromLong(1));
  open();
  for (std::uint32_t field = 0; field < std::size(types); ++field) {
    EXPECT_TRUE(database_.setValueFromEditor(field, FakeEditor::withText(L"abc")));
    EXPECT_EQ(store_.value(field).type(), VT_EMPTY) << types[field];
  }
}

TEST_F(FakeValueWritingTest, NothingIsPutForAnEditorThatWasNotEdited) {
  for (const LONG type : {2L, 3L, 5L, 7L, 11L, 18L, 19L, 202L, 203L, 204L, 205L})
    addField(type, Variant::fromText(L"7"));
  open();
  for (std::uint32_t field = 0; field < 11; ++field) {
    EXPECT_TRUE(database_.setValueFromEditor(field, FakeEditor::withText(L"8").unedited()));
  }
  EXPECT_THAT(store_.cursors.front()->written, IsEmpty());
}

TEST_F(FakeValueWritingTest, ARefusedPutIsASuccess) {
  addField(3, Variant::fromLong(1));
  open();
  store_.fields[0].result = E_FAIL;
  EXPECT_TRUE(database_.setValueFromEditor(0, FakeEditor::withText(L"2")));
}

TEST_F(FakeValueWritingTest, AWholeNumberBeyondItsTypeStaysOne) {
  Variant big;
  VARIANT* target = big.put();
  ASSERT_EQ(VarDecFromI8(9007199254740993, &target->decVal), S_OK);
  target->vt = VT_DECIMAL;
  addField(3, std::move(big));
  open();
  EXPECT_TRUE(database_.setValueFromEditor(0, FakeEditor::withText(L"9007199254740994")));
  EXPECT_EQ(store_.value(0).type(), VT_DECIMAL);
  EXPECT_EQ(database_.valueText(0).text(), std::wstring(L"9007199254740994"));
  EXPECT_TRUE(database_.setValueFromEditor(0, FakeEditor::withText(L"12")));
  EXPECT_EQ(store_.value(0).type(), VT_I4);
}

}  // namespace
