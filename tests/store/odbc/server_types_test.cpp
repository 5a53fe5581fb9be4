#include "platform/store/odbc/catalogue/server_types.h"

#include <gtest/gtest.h>
#include <string>

#include "platform/store/odbc/driver/diagnostics.h"
#include "platform/store/odbc/sources/row_text.h"
#include "platform/store/odbc/sources/rows_ahead.h"

namespace store {
namespace {

Cell cellOf(ValueForm form, const std::optional<std::string>& text, Row* row) {
  row->clear();
  addServerValue(form, text, row);
  return row->at(0);
}

TEST(ServerTypesTest, TheHandheldsTypesAreFoundAndAllOthersAreTexts) {
  EXPECT_EQ(TypeCode::smallInt, serverTypeOf("int2", "smallint").field.code);
  EXPECT_EQ(TypeCode::integer, serverTypeOf("int4", "integer").field.code);
  EXPECT_EQ(TypeCode::varWChar, serverTypeOf("int8", "bigint").field.code);
  EXPECT_EQ(TypeCode::boolean, serverTypeOf("bool", "boolean").field.code);
  EXPECT_EQ(TypeCode::real, serverTypeOf("float4", "real").field.code);
  EXPECT_EQ(TypeCode::date, serverTypeOf("timestamp", "timestamp without time zone").field.code);
  EXPECT_EQ(TypeCode::longVarBinary, serverTypeOf("bytea", "bytea").field.code);
  EXPECT_EQ(20, serverTypeOf("varchar", "character varying(20)").field.definedSize);
  EXPECT_EQ(5, serverTypeOf("bpchar", "character(5)").field.definedSize);
  EXPECT_EQ(TypeCode::longVarWChar, serverTypeOf("varchar", "character varying").field.code);
  for (const char* name :
       {"numeric", "timestamptz", "uuid", "json", "_int4", "interval", "money", "made up"}) {
    EXPECT_EQ(TypeCode::longVarWChar, serverTypeOf(name, name).field.code) << name;
    EXPECT_EQ(ValueForm::text, serverTypeOf(name, name).form) << name;
  }
}

TEST(ServerTypesTest, ValuesComeAndGoWithoutALoss) {
  Row row;
  EXPECT_EQ(CellKind::null, cellOf(ValueForm::integer, std::nullopt, &row).kind);
  EXPECT_EQ(INT64_MIN, cellOf(ValueForm::integer, "-9223372036854775808", &row).integer);
  EXPECT_EQ(1, cellOf(ValueForm::boolean, "true", &row).integer);
  EXPECT_EQ(0, cellOf(ValueForm::boolean, "false", &row).integer);
  EXPECT_EQ(0.1, cellOf(ValueForm::real, "0.1", &row).real);
  EXPECT_EQ("NaN", cellOf(ValueForm::real, "NaN", &row).bytes);
  EXPECT_EQ("-Infinity", cellOf(ValueForm::real, "-Infinity", &row).bytes);
  EXPECT_EQ(std::string_view("\0\xff", 2), cellOf(ValueForm::bytes, "\\x00ff", &row).bytes);
  EXPECT_EQ(CellKind::text, cellOf(ValueForm::bytes, "\\x0", &row).kind)
      << "what is no bytes is shown as it is";

  EXPECT_EQ(std::nullopt, serverTextOf(std::monostate(), ValueForm::text));
  EXPECT_EQ("true", serverTextOf(std::int64_t{-1}, ValueForm::boolean));
  EXPECT_EQ("-1", serverTextOf(std::int64_t{-1}, ValueForm::integer));
  EXPECT_EQ("0.1", serverTextOf(0.1, ValueForm::real));
  EXPECT_EQ("\\x00ff", serverTextOf(Blob{std::string("\0\xff", 2)}, ValueForm::bytes));
  EXPECT_EQ("text", serverTextOf(std::string("text"), ValueForm::integer));
}

TEST(DiagnosticsTest, StatesHaveTheEnginesCodes) {
  EXPECT_EQ(ErrorCode::noTable, codeOfState("42P01"));
  EXPECT_EQ(ErrorCode::badColumn, codeOfState("42703"));
  EXPECT_EQ(ErrorCode::tableExists, codeOfState("42P07"));
  EXPECT_EQ(ErrorCode::errorsInCommand, codeOfState("42601"));
  EXPECT_EQ(ErrorCode::readOnly, codeOfState("42501"));
  EXPECT_EQ(ErrorCode::readOnly, codeOfState("25006"));
  EXPECT_EQ(ErrorCode::constraint, codeOfState("23505"));
  EXPECT_EQ(ErrorCode::conversion, codeOfState("22001"));
  EXPECT_EQ(ErrorCode::stopped, codeOfState("57014"));
  EXPECT_EQ(ErrorCode::inputOutput, codeOfState("08S01"));
  EXPECT_EQ(ErrorCode::inputOutput, codeOfState(""));
  EXPECT_TRUE(endsConnection("57P01"));
  EXPECT_FALSE(endsConnection("57014"));
}

Key keyOf(std::size_t index) {
  return static_cast<std::int64_t>(index);
}

TEST(RowsAheadTest, RowsThatAreAskedForOneAfterTheOtherComeTogether) {
  RowsAhead ahead;
  RowsAhead::FoundRow row;
  std::size_t questions = 0;
  for (std::size_t index = 0; index < 1000; ++index) {
    if (ahead.take(index, keyOf(index), 0, &row)) continue;
    ++questions;
    const RowsAhead::Block block = ahead.blockFor(index, 1000);
    ASSERT_LE(block.first, index);
    ASSERT_GT(block.first + block.count, index);
    ASSERT_LE(block.first + block.count, 1000u);
    std::vector<RowsAhead::FoundRow> rows;
    for (std::size_t number = 0; number < block.count; ++number) {
      rows.push_back({RowsAhead::FoundRow::State::found,
                      {std::to_string(block.first + number)},
                      keyOf(block.first + number)});
    }
    row = ahead.keep(block.first, rows, index, 0);
    ASSERT_EQ(std::to_string(index), row.values.front());
  }
  EXPECT_LT(questions, 10u);
}

TEST(RowsAheadTest, ARowThatWasLeftOutIsAskedForAloneAndTheOthersStay) {
  using State = RowsAhead::FoundRow::State;
  RowsAhead ahead;
  RowsAhead::FoundRow row;
  ahead.keep(
      0, {{State::found, {"0"}, keyOf(0)}, {State::leftOut, {}, keyOf(1)}, {State::found, {"2"}, keyOf(2)}},
      0, 0);
  EXPECT_FALSE(ahead.take(1, keyOf(1), 0, &row));
  EXPECT_EQ(State::leftOut, row.state);
  EXPECT_TRUE(ahead.take(2, keyOf(2), 0, &row));
  EXPECT_EQ("2", row.values.front());
}

TEST(RowsAheadTest, ARowIsTakenByWhoHasItsKeyAtThatPlaceAlone) {
  using State = RowsAhead::FoundRow::State;
  RowsAhead ahead;
  RowsAhead::FoundRow row;
  ahead.keep(0, {{State::found, {"0"}, keyOf(0)}, {State::found, {"1"}, keyOf(1)}}, 0, 0);
  EXPECT_FALSE(ahead.take(1, keyOf(2), 0, &row));
  EXPECT_TRUE(ahead.take(1, keyOf(1), 0, &row));
}

TEST(RowsAheadTest, AWindowFullOfRowsTakesTwoQuestionsInEitherDirection) {
  for (const bool isForwards : {true, false}) {
    RowsAhead ahead;
    RowsAhead::FoundRow row;
    std::size_t questions = 0;
    for (std::size_t number = 0; number < 30; ++number) {
      const std::size_t index = isForwards ? 500 + number : 500 - number;
      if (ahead.take(index, keyOf(index), 0, &row)) continue;
      ++questions;
      const RowsAhead::Block block = ahead.blockFor(index, 1000);
      std::vector<RowsAhead::FoundRow> rows(block.count);
      for (std::size_t place = 0; place < block.count; ++place) rows[place].key = keyOf(block.first + place);
      ahead.keep(block.first, std::move(rows), index, 0);
    }
    EXPECT_EQ(2u, questions);
  }
}

TEST(RowsAheadTest, RowsThatAreExpectedComeWithTheFirstOfThemThatIsAskedFor) {
  RowsAhead ahead;
  RowsAhead::FoundRow row;
  ahead.expect({40, 20});
  EXPECT_FALSE(ahead.take(42, keyOf(42), 0, &row));
  const RowsAhead::Block block = ahead.blockFor(42, 1000);
  EXPECT_EQ(42u, block.first);
  EXPECT_EQ(18u, block.count);
  // Once: who asks again, because they were taken or have grown old, wants one of them.
  ahead.take(500, keyOf(500), 0, &row);
  ahead.take(42, keyOf(42), 0, &row);
  EXPECT_EQ(1u, ahead.blockFor(42, 1000).count);
  ahead.expect({990, 5000});
  ahead.take(990, keyOf(990), 0, &row);
  EXPECT_EQ(10u, ahead.blockFor(990, 1000).count);
  ahead.expect({0, 5000});
  ahead.take(0, keyOf(0), 0, &row);
  EXPECT_EQ(256u, ahead.blockFor(0, 10000).count);
  // A row beside them.
  ahead.expect({40, 20});
  ahead.take(60, keyOf(60), 0, &row);
  EXPECT_EQ(1u, ahead.blockFor(60, 1000).count);
  EXPECT_EQ(60u, ahead.blockFor(60, 1000).first);
}

TEST(RowTextTest, ARowIsPartedIntoItsValues) {
  AnswerRow row;
  ASSERT_TRUE(readRowText("(1,two,)", 3, &row));
  EXPECT_EQ((AnswerRow{"1", "two", std::nullopt}), row);
  ASSERT_TRUE(readRowText(R"s(("","a ""b"" \\ , ) (","\\xff"))s", 3, &row));
  EXPECT_EQ((AnswerRow{"", R"s(a "b" \ , ) ()s", "\\xff"}), row);
  ASSERT_TRUE(readRowText("(,)", 2, &row));
  EXPECT_EQ((AnswerRow{std::nullopt, std::nullopt}), row);
  ASSERT_TRUE(readRowText("(\"line\nend\")", 1, &row));
  EXPECT_EQ((AnswerRow{"line\nend"}), row);
}

TEST(RowTextTest, RowsThatStandBehindOneAnotherAreReadInTurn) {
  const std::string texts = R"s((1,"a ""b""",)(2,"\\,)(",x)())s";
  RowTextReader reader(texts);
  std::string read;
  for (const int count : {3, 3, 1}) {
    ASSERT_FALSE(reader.isAtEnd());
    ASSERT_TRUE(reader.enterRow());
    for (int number = 0; number < count; ++number) {
      std::optional<std::string_view> value;
      ASSERT_TRUE(reader.takeValue(&value));
      read += "[" + std::string(value.value_or("null")) + "]";
    }
    ASSERT_TRUE(reader.leaveRow());
  }
  EXPECT_TRUE(reader.isAtEnd());
  EXPECT_EQ(R"s([1][a "b"][null][2][\,)(][x][null])s", read);
}

TEST(RowTextTest, WhatIsNoRowIsRefusedAndLeavesTheValuesAlone) {
  const AnswerRow former{"as it was"};
  for (const std::string_view text : {"", "(", ")", "1,2", "(1,2", "(1)", "(1,2,3)", "(1,2)x", "(1,\"2)"}) {
    AnswerRow row = former;
    EXPECT_FALSE(readRowText(text, 2, &row)) << text;
    EXPECT_EQ(former, row) << text;
  }
}

TEST(RowsAheadTest, AnyOtherRowIsAskedForAlone) {
  RowsAhead ahead;
  RowsAhead::FoundRow row;
  for (const std::size_t index : {5u, 500u, 7u, 9u, 300u}) {
    EXPECT_FALSE(ahead.take(index, keyOf(index), 0, &row));
    const RowsAhead::Block block = ahead.blockFor(index, 1000);
    EXPECT_EQ(index, block.first);
    EXPECT_EQ(1u, block.count);
  }
}

TEST(RowsAheadTest, ARowIsHandedOutOnceAndNotAfterAChange) {
  using State = RowsAhead::FoundRow::State;
  RowsAhead ahead;
  ahead.keep(0,
             {{State::found, {"0"}, keyOf(0)},
              {State::found, {"1"}, keyOf(1)},
              {State::gone, {}, keyOf(2)},
              {State::found, {"3"}, keyOf(3)}},
             0, 7);
  RowsAhead::FoundRow row;
  EXPECT_TRUE(ahead.take(1, keyOf(1), 7, &row));
  EXPECT_EQ("1", row.values.front());
  EXPECT_FALSE(ahead.take(1, keyOf(1), 7, &row));
  EXPECT_TRUE(ahead.take(2, keyOf(2), 7, &row));
  EXPECT_EQ(State::gone, row.state) << "it is known to be gone";
  EXPECT_FALSE(ahead.take(3, keyOf(3), 8, &row));
}

}  // namespace
}  // namespace store
