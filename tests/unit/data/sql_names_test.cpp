// Names in statements: how they are written, and that the store reads them back.
#include "data/database/sql_names.h"

#include <random>
#include <string>

#include "gmock/gmock.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using SqlNamesTest = DataTest;

TEST_F(SqlNamesTest, AnApostropheInQuotesIsDoubled) {
  EXPECT_EQ(quotedName(L"First One"), L"'First One'");
  EXPECT_EQ(quotedName(L"O'Brien's"), L"'O''Brien''s'");
  EXPECT_EQ(quotedName(L"'"), L"''''");
  EXPECT_EQ(quotedName(L""), L"''");
}

TEST_F(SqlNamesTest, AWordInAColumnListIsBare) {
  EXPECT_EQ(columnName(L"Id"), L"Id");
  EXPECT_EQ(columnName(L"no_1"), L"no_1");
  EXPECT_EQ(columnName(L"\x00c4pfel\xD83D\xDE00"), L"\x00c4pfel\xD83D\xDE00");
  EXPECT_EQ(columnName(L"Full name"), L"'Full name'");
  EXPECT_EQ(columnName(L"Customer's"), L"'Customer''s'");
  for (const wchar_t* sign : {L"a,b", L"a;b", L"(a", L"a)", L"--a", L"/*a", L"50%", L"#1", L"a=b"}) {
    EXPECT_EQ(columnName(sign), std::wstring(L"'") + sign + L"'");
  }
}

TEST_F(SqlNamesTest, ASelectHasBracketsUnlessTheNameHasTheirEnd) {
  EXPECT_EQ(selectedName(L"Order Details"), L"[Order Details]");
  EXPECT_EQ(selectedName(L"a[b"), L"[a[b]");
  EXPECT_EQ(selectedName(L"a]b"), L"\"a]b\"");
  EXPECT_EQ(selectedName(L"a]\"b"), L"\"a]\"\"b\"");
}

/// Of parts that mean something to SQL, and always with something that makes it a name of its own.
std::wstring strangeName(std::mt19937& random, int number) {
  static const wchar_t* const kParts[] = {L"'", L"''", L"\"", L"]",  L"[",  L"`",    L" (",     L") ",
                                          L",", L";",  L"--", L"/*", L"*/", L"Text", L"select", L"\x4e2d"};
  std::wstring name = std::to_wstring(number);
  const std::size_t count = 1 + random() % 5;
  for (std::size_t i = 0; i < count; ++i) name += kParts[random() % std::size(kParts)];
  return name + L"z";
}

TEST_F(SqlNamesTest, TablesAndFieldsOfAnyNameAreMadeReadAndDropped) {
  openWith({});
  std::mt19937 random(11);
  for (int round = 0; round < 100; ++round) {
    const std::wstring table = strangeName(random, 1);
    const std::wstring first = strangeName(random, 2);
    const std::wstring second = strangeName(random, 3);
    SCOPED_TRACE(testing::PrintToString(table + L" | " + first + L" | " + second));
    const std::wstring columns =
        columnName(first.c_str()) + L" Integer ," + columnName(second.c_str()) + L" Text";
    ASSERT_TRUE(database_.createTable(table.c_str(), columns.c_str()));
    NameList tables;
    database_.listTables(tables);
    ASSERT_EQ(tables.size(), 1u);
    EXPECT_EQ(tables[0].text(), table);
    ASSERT_TRUE(database_.openRecordset((L"Select * from " + selectedName(table.c_str())).c_str()));
    ASSERT_EQ(database_.fieldCount(), 2u);
    EXPECT_EQ(database_.fieldName(0).text(), first);
    EXPECT_EQ(database_.fieldName(1).text(), second);
    EXPECT_FALSE(database_.isFieldReadOnly(0));
    database_.closeRecordset();
    ASSERT_TRUE(database_.dropTable(table.c_str()));
  }
}

}  // namespace
