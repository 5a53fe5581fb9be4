// What is calculated of a column: by its own statement for a server the same as for a file with the same
// data.
#include <map>

#include "platform/store/rows/utf.h"
#include "platform/store/sqlite/database_file.h"
#include "records/arrangement/column_figures.h"
#include "tests/server/server_fixture.h"

namespace store {
namespace {

std::string narrow(const std::wstring& text) {
  std::u16string units;
  for (const wchar_t unit : text) units.push_back(static_cast<char16_t>(unit));
  return toUtf8(units);
}

std::wstring wide(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  units.resize(decodeUtf8(text, units.data()));
  return {units.begin(), units.end()};
}

/// As the program shows them: no null, and numbers of doubles with six decimals.
std::wstring shownOf(const Cell& cell) {
  switch (cell.kind) {
    case CellKind::null:
      return {};
    case CellKind::integer:
      return std::to_wstring(cell.integer);
    case CellKind::real:
      return std::to_wstring(cell.real);
    default:
      return wide(cell.bytes);
  }
}

class ServerFiguresTest : public StoreTest {
 protected:
  ServerFiguresTest() {
    const std::string path = utf8Of(folder_.file("same.cdb"));
    EXPECT_TRUE(createDatabase(path));
    EXPECT_TRUE(openPath(path, {}, &file_));
    open();
    run(kTable);
    EXPECT_TRUE(runOn(*file_, kTable));
  }

  static Status runOn(Backend& backend, const std::string& sql) {
    std::int64_t affected = 0;
    std::unique_ptr<RowSource> rows;
    return backend.run(sql, &affected, &rows);
  }
  /// Into both.
  void add(const std::string& values) {
    run("INSERT INTO T VALUES (" + values + ")");
    const Status status = runOn(*file_, "INSERT INTO T VALUES (" + values + ")");
    ASSERT_TRUE(status) << status.message();
  }
  static std::vector<std::wstring> rowOf(Backend& backend, const std::wstring& sql) {
    std::vector<std::wstring> values;
    std::unique_ptr<RowSource> rows;
    std::int64_t affected = 0;
    // As the program opens it.
    Status status = backend.run(narrow(sql), &affected, &rows);
    EXPECT_TRUE(status) << narrow(sql) << ": " << status.message();
    if (!status || rows == nullptr) return values;
    const std::size_t count = rows->columns().size();
    KeySet keys;
    std::size_t rowCount = 0;
    EXPECT_TRUE(rows->readKeys(&keys, &rowCount));
    EXPECT_EQ(1u, rowCount);
    Row row;
    status = rows->fetch(keys, 0, &row);
    EXPECT_TRUE(status) << status.message();
    for (std::size_t index = 0; status && index < count; ++index) values.push_back(shownOf(row.at(index)));
    return values;
  }
  std::string onServer(const std::wstring& field, ColumnKind kind, ServerValues values,
                       const std::wstring& sql = L"Select * from [T]") {
    std::vector<std::wstring> row = rowOf(*backend_, serverFiguresSql(sql, field, kind, values));
    writeFiguresAsFilesDo(kind, values, row);
    return narrow(figuresText(kind, row));
  }
  std::string inFile(const std::wstring& field, ColumnKind kind,
                     const std::wstring& sql = L"Select * from [T]") {
    return narrow(figuresText(kind, rowOf(*file_, figuresSql(sql, field, kind))));
  }
  void expectSame(const std::wstring& sql = L"Select * from [T]") {
    using Kind = ColumnKind;
    using Values = ServerValues;
    EXPECT_EQ(inFile(L"Whole", Kind::values, sql), onServer(L"Whole", Kind::values, Values::whole, sql));
    EXPECT_EQ(inFile(L"Small", Kind::values, sql), onServer(L"Small", Kind::values, Values::whole, sql));
    EXPECT_EQ(inFile(L"Price", Kind::values, sql), onServer(L"Price", Kind::values, Values::real, sql));
    EXPECT_EQ(inFile(L"Title", Kind::values, sql), onServer(L"Title", Kind::values, Values::text, sql));
    EXPECT_EQ(inFile(L"c", Kind::values, sql), onServer(L"c", Kind::values, Values::text, sql));
    EXPECT_EQ(inFile(L"Born", Kind::dates, sql), onServer(L"Born", Kind::dates, Values::whole, sql));
    EXPECT_EQ(inFile(L"Alive", Kind::truth, sql), onServer(L"Alive", Kind::truth, Values::whole, sql));
    EXPECT_EQ(inFile(L"Raw", Kind::values, sql), onServer(L"Raw", Kind::values, Values::bytes, sql));
  }

  static constexpr const char* kTable =
      "CREATE TABLE 'T' (Whole bigint, Small smallint, Price double, Title varchar(20), c text, Born date, "
      "Alive "
      "boolean, Raw long varbinary)";
  std::unique_ptr<Backend> file_;
};

TEST_F(ServerFiguresTest, EachKindOfColumnComesToTheSame) {
  add("7, 1, 0.1, 'b', 'one', '2001-03-09', 1, x'00ff'");
  add("-3, 2, 0.2, 'A', '', '1999-12-31', 0, NULL");
  add("NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL");
  add("11, 2, 2.5, 'c', NULL, '2020-02-29', 1, x'01'");
  add("0, 2, -12.25, '', 'Zebra', '2020-02-28', 0, NULL");
  expectSame();
  EXPECT_EQ("Records: 5\nNot empty: 4\nSum: 15\nMean: 3.75\nLeast: -3\nGreatest: 11",
            onServer(L"Whole", ColumnKind::values, ServerValues::whole));
  EXPECT_EQ("Records: 5\nNot empty: 4\nSum: -9.45\nMean: -2.3625\nLeast: -12.250000\nGreatest: 2.500000",
            onServer(L"Price", ColumnKind::values, ServerValues::real));
  EXPECT_EQ("Records: 5\nNot empty: 3\nLeast: \nGreatest: c",
            onServer(L"Title", ColumnKind::values, ServerValues::text));
  EXPECT_EQ("Records: 5\nTrue: 2\nFalse: 3", onServer(L"Alive", ColumnKind::truth, ServerValues::whole));
}

TEST_F(ServerFiguresTest, OnlyTheRecordsOfTheStatementAreCalculated) {
  add("7, 1, 0.1, 'b', 'one', '2001-03-09', 1, x'00ff'");
  add("-3, 2, 0.2, 'A', '', '1999-12-31', 0, NULL");
  expectSame(L"Select * from [T] WHERE [Whole] > 0 ORDER BY [Title];");
  expectSame(
      L"SELECT * FROM (Select * from [T]\n) WHERE quivane_contains('a', [Title]) ORDER BY quivane_fold([c])");
  expectSame(L"Select * from [T] WHERE [Whole] > 100");
}

TEST_F(ServerFiguresTest, ATableWithoutRecordsComesToTheSame) {
  expectSame();
}

TEST_F(ServerFiguresTest, SumsBeyondSixtyFourBitsAreExact) {
  for (int row = 0; row < 3; ++row) add("9223372036854775807, 32767, 1e300, 'x', 'x', NULL, 1, NULL");
  expectSame();
  EXPECT_NE(std::string::npos,
            onServer(L"Whole", ColumnKind::values, ServerValues::whole).find("Sum: 27670116110564327421\n"));
}

TEST_F(ServerFiguresTest, ManyTenthsAddUpToTheSame) {
  for (int row = 0; row < 200; ++row) add("1, 1, 0.1, 'x', 'x', NULL, 0, NULL");
  expectSame();
  EXPECT_NE(std::string::npos,
            onServer(L"Price", ColumnKind::values, ServerValues::real).find("Sum: 20.0\nMean: 0.1\n"));
}

TEST_F(ServerFiguresTest, WhatIsNoNumberIsCountedApart) {
  runOnServer("CREATE TABLE odd (k integer PRIMARY KEY, v double precision)", database_);
  runOnServer("INSERT INTO odd VALUES (1, 'NaN'), (2, '-Infinity'), (3, 1.5), (4, NULL)", database_);
  EXPECT_EQ(
      "Records: 4\nNot empty: 3\nNot numbers: 2\nSum: 1.5\nMean: 1.5\nLeast: 1.500000\nGreatest: 1.500000",
      onServer(L"v", ColumnKind::values, ServerValues::real, L"Select * from [odd]"));
}

// Both are texts to the components.
TEST_F(ServerFiguresTest, NumbersOfSixtyFourBitsAndDecimalsAreNumbers) {
  runOnServer("CREATE TABLE odd (k integer PRIMARY KEY, b bigint, n numeric)", database_);
  runOnServer(
      "INSERT INTO odd VALUES (1, 9, 9.50), (2, 10, 10), (3, -9223372036854775808, 12345678901234567890.25), "
      "(4, NULL, NULL)",
      database_);
  const std::wstring sql = L"Select * from [odd]";
  EXPECT_EQ(
      "Records: 4\nNot empty: 3\nSum: -9223372036854775789\nMean: -3.07445734561826e+18\n"
      "Least: -9223372036854775808\nGreatest: 10",
      onServer(L"b", ColumnKind::values, ServerValues::text, sql));
  EXPECT_EQ(
      "Records: 4\nNot empty: 3\nSum: 12345678901234567909.75\nMean: 4.11522630041152e+18\nLeast: 9.50\n"
      "Greatest: 12345678901234567890.25",
      onServer(L"n", ColumnKind::values, ServerValues::text, sql));
  runOnServer("INSERT INTO odd VALUES (5, 1, 'NaN')", database_);
  EXPECT_EQ("Records: 2\nNot empty: 2\nNot numbers: 1\nSum: 10\nMean: 10.0\nLeast: 10\nGreatest: 10",
            onServer(L"n", ColumnKind::values, ServerValues::text, sql + L" WHERE k IN (2, 5)"));
}

TEST_F(ServerFiguresTest, OtherTypesThatOnlyTheServerHasAreTexts) {
  runOnServer("CREATE TABLE odd (k integer PRIMARY KEY, u uuid)", database_);
  runOnServer("INSERT INTO odd VALUES (1, NULL), (2, 'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11')", database_);
  EXPECT_EQ(
      "Records: 2\nNot empty: 1\nLeast: a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11\nGreatest: "
      "a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11",
      onServer(L"u", ColumnKind::values, ServerValues::text, L"Select * from [odd]"));
}

}  // namespace
}  // namespace store
