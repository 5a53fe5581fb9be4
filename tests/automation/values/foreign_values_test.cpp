#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

// Files that other programs made: a column may hold a value of any kind. It is shown as what it is, and
// what is written back unchanged stays as it is, to the byte.

namespace automationtest {
namespace {

struct ForeignValue {
  const char* type;     ///< of the column
  const char* literal;  ///< as SQL writes the value
  const char* shown;
};

std::ostream& operator<<(std::ostream& out, const ForeignValue& value) {
  return out << value.type << " holding " << value.literal;
}

class ForeignValues : public AutomationTest, public testing::WithParamInterface<ForeignValue> {
 protected:
  void SetUp() override {
    SqliteFile(path_).run("CREATE TABLE T (F " + std::string(GetParam().type) +
                          ", Other TEXT); INSERT INTO T VALUES (" + GetParam().literal + ", 'x')");
    // The column's affinity must have left the value as it was meant.
    before_ = sqliteColumn(path_, "SELECT typeof(F) || quote(F) FROM T");
    ASSERT_EQ(before_, sqliteColumn(path_, "SELECT typeof(v) || quote(v) FROM (SELECT " +
                                               std::string(GetParam().literal) + " AS v)"));
    connection_ = connectTo(path_);
    records_ = recordsOf(connection_.get(), L"Select * from [T]");
  }
  /// Writes the value and something else, so that the record is stored, and looks at the file.
  void expectUnchangedBy(const OwnedVariant& value) {
    ASSERT_EQ(put(records_.get(), 0, value), S_OK);
    ASSERT_EQ(put(records_.get(), 1, variant(L"y")), S_OK);
    ASSERT_EQ(update(records_.get()), S_OK);
    EXPECT_EQ(sqliteColumn(path_, "SELECT typeof(F) || quote(F) FROM T"), before_);
    EXPECT_EQ(sqliteColumn(path_, "SELECT Other FROM T"), std::vector<std::string>{"y"});
  }

  std::wstring path_ = pathOf(L"foreign.cdb");
  std::vector<std::string> before_;
  ComPtr<IAdoceConnection> connection_;
  ComPtr<IAdoceRecordset> records_;
};

TEST_P(ForeignValues, AreShownAndWrittenBackWithoutLoss) {
  EXPECT_EQ(described(valueOf(records_.get(), 0)), GetParam().shown);
  expectUnchangedBy(valueOf(records_.get(), 0));
}

TEST_P(ForeignValues, WrittenBackAsTheTextThatWasShownStay) {
  const OwnedVariant value = valueOf(records_.get(), 0);
  const std::wstring shownText = textOf(*value);
  if (V_VT(&*value) == VT_NULL) {
    EXPECT_EQ(shownText, L"(none)");
  } else {
    expectUnchangedBy(variant(shownText));
  }
}

INSTANTIATE_TEST_SUITE_P(
    InIntegers, ForeignValues,
    testing::Values(ForeignValue{"integer", "2147483648", "DECIMAL 2147483648"},
                    ForeignValue{"integer", "-9223372036854775807 - 1", "DECIMAL -9223372036854775808"},
                    ForeignValue{"integer", "2.5", "R8 2.5"}, ForeignValue{"integer", "'abc'", "BSTR abc"},
                    ForeignValue{"integer", "x'00ff'", "UI1[] 00ff"}, ForeignValue{"integer", "NULL", "NULL"},
                    ForeignValue{"smallint", "40000", "I4 40000"},
                    ForeignValue{"smallint", "'12 apples'", "BSTR 12 apples"},
                    ForeignValue{"unsigned smallint", "-1", "I4 -1"},
                    ForeignValue{"unsigned smallint", "65536", "I4 65536"},
                    ForeignValue{"unsigned int", "-1", "I4 -1"},
                    ForeignValue{"unsigned int", "4294967296", "DECIMAL 4294967296"}));

INSTANTIATE_TEST_SUITE_P(
    InReals, ForeignValues,
    testing::Values(ForeignValue{"float", "'abc'", "BSTR abc"}, ForeignValue{"float", "x''", "UI1[] "},
                    ForeignValue{"decimal(10,2)", "5", "R8 5"},
                    ForeignValue{"decimal(20)", "9007199254740993", "DECIMAL 9007199254740993"},
                    ForeignValue{"float", "0.1 + 0.2", "R8 0.30000000000000004"},
                    ForeignValue{"float", "9e999", "R8 inf"}));

INSTANTIATE_TEST_SUITE_P(
    InDates, ForeignValues,
    testing::Values(ForeignValue{"datetime", "'2001-03-09T14:05:07Z'", "DATE 36959.586886574078"},
                    ForeignValue{"datetime", "'2001-03-09 12:00:00.000'", "DATE 36959.5"},
                    ForeignValue{"datetime", "'2001-03-09'", "DATE 36959"},
                    ForeignValue{"date", "'2001-03-09 12:00'", "DATE 36959.5"},
                    ForeignValue{"datetime", "'9.3.2001'", "BSTR 9.3.2001"},
                    ForeignValue{"datetime", "''", "BSTR "},
                    ForeignValue{"datetime", "1700000000", "I4 1700000000"},
                    ForeignValue{"datetime", "1700000000000", "DECIMAL 1700000000000"},
                    ForeignValue{"datetime", "2451978.0868", "R8 2451978.0868000002"},
                    ForeignValue{"timestamp", "x'01'", "UI1[] 01"}));

INSTANTIATE_TEST_SUITE_P(InBooleans, ForeignValues,
                         testing::Values(ForeignValue{"bit", "5", "BOOL -1"},
                                         ForeignValue{"bit", "-1", "BOOL -1"},
                                         ForeignValue{"bit", "0", "BOOL 0"},
                                         ForeignValue{"boolean", "9223372036854775807", "BOOL -1"},
                                         ForeignValue{"boolean", "0.5", "R8 0.5"},
                                         ForeignValue{"boolean", "'t'", "BSTR t"},
                                         ForeignValue{"boolean", "x'01'", "UI1[] 01"}));

INSTANTIATE_TEST_SUITE_P(
    InTexts, ForeignValues,
    testing::Values(ForeignValue{"text", "x'ff'", "UI1[] ff"}, ForeignValue{"text", "x''", "UI1[] "},
                    ForeignValue{"text", "CAST(x'61ff62' AS TEXT)", "BSTR a\\xfffdb"},
                    ForeignValue{"text", "CAST(x'610062' AS TEXT)", "BSTR a\\x0000b"},
                    ForeignValue{"text", "CAST(x'eda080' AS TEXT)", "BSTR \\xd800"},
                    ForeignValue{"memo", "5", "BSTR 5"}, ForeignValue{"memo", "2.5", "R8 2.5"},
                    ForeignValue{"bigint", "9223372036854775807", "BSTR 9223372036854775807"},
                    ForeignValue{"bigint", "2.5", "R8 2.5"}, ForeignValue{"bigint", "'abc'", "BSTR abc"}));

INSTANTIATE_TEST_SUITE_P(InBinaries, ForeignValues,
                         testing::Values(ForeignValue{"blob", "'abc'", "BSTR abc"},
                                         ForeignValue{"blob", "5", "I4 5"},
                                         ForeignValue{"blob", "2.5", "R8 2.5"},
                                         ForeignValue{"varbinary(9)", "'abc'", "BSTR abc"},
                                         ForeignValue{"varbinary(9)", "x'616263'", "UI1[] 616263"}));

INSTANTIATE_TEST_SUITE_P(
    InUntyped, ForeignValues,
    testing::Values(ForeignValue{"", "5", "I4 5"}, ForeignValue{"", "5000000000", "DECIMAL 5000000000"},
                    ForeignValue{"", "2.5", "R8 2.5"}, ForeignValue{"", "1.0/3.0", "R8 0.33333333333333331"},
                    ForeignValue{"", "'2001-03-09'", "BSTR 2001-03-09"},
                    ForeignValue{"", "x'0102'", "UI1[] 0102"}, ForeignValue{"", "NULL", "NULL"}));

class ForeignTables : public AutomationTest {
 protected:
  ComPtr<IAdoceRecordset> openedOn(const std::string& sql, const std::wstring& source) {
    SqliteFile(path_).run(sql);
    connection_ = connectTo(path_);
    return recordsOf(connection_.get(), source);
  }
  std::string stored(const std::string& sql) { return sqliteColumn(path_, sql).at(0); }

  std::wstring path_ = pathOf(L"foreign.cdb");
  ComPtr<IAdoceConnection> connection_;
};

TEST_F(ForeignTables, NumberInAColumnWithoutTypeStaysANumberWhenATextReplacesIt) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (F); INSERT INTO T VALUES (5), (2.5), ('7'), (8)", L"SELECT * FROM T");
  ASSERT_EQ(put(recordset.get(), 0, variant(L"-6")), S_OK);
  ASSERT_EQ(recordset->MoveNext(), S_OK);
  ASSERT_EQ(put(recordset.get(), 0, variant(L"3.25")), S_OK);
  ASSERT_EQ(recordset->MoveNext(), S_OK);
  ASSERT_EQ(put(recordset.get(), 0, variant(L"9")), S_OK);
  ASSERT_EQ(recordset->MoveNext(), S_OK);
  ASSERT_EQ(put(recordset.get(), 0, variant(L"ten")), S_OK);
  ASSERT_EQ(update(recordset.get()), S_OK);
  EXPECT_EQ(sqliteColumn(path_, "SELECT quote(F) FROM T"),
            (std::vector<std::string>{"-6", "3.25", "'9'", "'ten'"}));
}

TEST_F(ForeignTables, WholeNumbersBeyondTheirTypeAreReplacedByOthersLikeThem) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (I INTEGER, S SMALLINT, U UNSIGNED INT); "
      "INSERT INTO T VALUES (9007199254740993, 40000, -1), (5, 5, 5)",
      L"SELECT * FROM T");
  ASSERT_EQ(put(recordset.get(), 0, variant(L"9007199254740994")), S_OK);
  ASSERT_EQ(put(recordset.get(), 1, variant(40001L)), S_OK);
  ASSERT_EQ(put(recordset.get(), 2, decimal(-2)), S_OK);
  ASSERT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(put(recordset.get(), 0, variant(L"9007199254740994")), objectModelError(3421));
  EXPECT_EQ(put(recordset.get(), 1, variant(40001L)), objectModelError(3421));
  EXPECT_EQ(put(recordset.get(), 2, decimal(-2)), objectModelError(3421));
  EXPECT_EQ(sqliteColumn(path_, "SELECT quote(I) || ' ' || quote(S) || ' ' || quote(U) FROM T"),
            (std::vector<std::string>{"9007199254740994 40001 -2", "5 5 5"}));
}

TEST_F(ForeignTables, WithoutRowIdsAreUpdatable) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (K TEXT PRIMARY KEY, N INT) WITHOUT ROWID; INSERT INTO T VALUES ('b', 2), ('a', 1)",
      L"SELECT * FROM T");
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
  ASSERT_EQ(put(recordset.get(), 1, variant(11L)), S_OK);
  ASSERT_EQ(update(recordset.get()), S_OK);
  EXPECT_EQ(stored("SELECT N FROM T WHERE K = 'a'"), "11");
}

TEST_F(ForeignTables, ViewsAreReadOnly) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (N INT); INSERT INTO T VALUES (1), (2); CREATE VIEW V AS SELECT N * 2 AS D FROM T",
      L"Select * from [V]");
  EXPECT_THAT(columnTexts(recordset.get(), 0), testing::ElementsAre(L"2", L"4"));
  EXPECT_EQ(addNew(recordset.get()), objectModelError(3251));
}

TEST_F(ForeignTables, NamesWithBracketsAreShown) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn(R"(CREATE TABLE "a]b" ("x.y" TEXT, "" TEXT))", L"Select * from [a]b]");
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), 0L).get()), L"x.y");
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), 1L).get()), L"");
}

TEST_F(ForeignTables, LargeBlobGoesThere) {
  const std::string large(20 << 20, 'z');
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (B BLOB); INSERT INTO T VALUES (NULL)", L"SELECT * FROM T");
  ASSERT_EQ(put(recordset.get(), 0, bytes(large)), S_OK);
  ASSERT_EQ(update(recordset.get()), S_OK);
  EXPECT_EQ(stored("SELECT length(B) FROM T"), std::to_string(large.size()));
  const OwnedVariant value = valueOf(recordset.get(), 0);
  ASSERT_EQ(V_VT(&*value), VT_ARRAY | VT_UI1);
  EXPECT_EQ(V_ARRAY(&*value)->rgsabound[0].cElements, large.size());
}

}  // namespace
}  // namespace automationtest
