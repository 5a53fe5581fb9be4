#include "platform/store/exchange/column_guess.h"

#include <gtest/gtest.h>

namespace store::exchange {
namespace {

std::string typeOf(std::initializer_list<const char*> texts, FieldForm form = FieldForm::bare) {
  ColumnGuess guess;
  for (const char* text : texts) guess.look({text, form});
  return std::string(guess.declaredType());
}

TEST(ColumnGuess, NumbersAreNumbersOnlyIfAllComeOutTheSame) {
  EXPECT_EQ(typeOf({"1", "-2", "0"}), "Integer");
  EXPECT_EQ(typeOf({"1", "2147483648"}), "Bigint");
  EXPECT_EQ(typeOf({"1", "-2147483648"}), "Integer");
  EXPECT_EQ(typeOf({"1", "2.5"}), "Float");
  EXPECT_EQ(typeOf({"2.5", "1"}), "Float");
  for (const char* text :
       {"007", "1e5", "+3", "1,5", "12345678901234567890", "1.50", "-0", "1 000", "0x1F", " 1"}) {
    EXPECT_EQ(typeOf({"1", text, "2"}), "Text") << text;
    EXPECT_EQ(typeOf({text}), "Text") << text;
  }
}

TEST(ColumnGuess, ALargeIntegerIsNoDouble) {
  EXPECT_EQ(typeOf({"9007199254740993", "1.5"}), "Text");
  EXPECT_EQ(typeOf({"1.5", "9007199254740993"}), "Text");
}

TEST(ColumnGuess, WhatWasQuotedIsText) {
  EXPECT_EQ(typeOf({"1", "2"}, FieldForm::quoted), "Text");
  EXPECT_EQ(typeOf({"2001-03-09"}, FieldForm::quoted), "Text");
  ColumnGuess guess;
  guess.look({"1", FieldForm::bare});
  guess.look({"", FieldForm::quoted});
  EXPECT_EQ(guess.declaredType(), "Text");
}

TEST(ColumnGuess, DatesAreInTheirOneForm) {
  EXPECT_EQ(typeOf({"2001-03-09", "1999-12-31"}), "Date");
  EXPECT_EQ(typeOf({"2001-03-09", "2001-03-09 14:05"}), "Datetime");
  EXPECT_EQ(typeOf({"2001-03-09T14:05:07Z"}), "Datetime");
  for (const char* text : {"03/09/2001", "9.3.2001", "2001-3-9", "2001-02-30", "14:05", "20010309"}) {
    EXPECT_NE(typeOf({"2001-03-09", text}), "Date") << text;
    EXPECT_EQ(typeOf({"2001-03-09", text}), "Text") << text;
  }
}

TEST(ColumnGuess, TruthValuesAreWords) {
  EXPECT_EQ(typeOf({"true", "False", "TRUE"}), "Bit");
  for (const char* text : {"yes", "no", "1", "t", "x"}) EXPECT_EQ(typeOf({"true", text}), "Text") << text;
}

TEST(ColumnGuess, EmptyFieldsDecideNothing) {
  EXPECT_EQ(typeOf({"", "5", ""}), "Integer");
  EXPECT_EQ(typeOf({"", ""}), "Text");
  EXPECT_EQ(typeOf({}), "Text");
}

TEST(ColumnGuess, NumbersOfJsonCountByTheirValue) {
  EXPECT_EQ(typeOf({"1.50", "1e5"}, FieldForm::number), "Float");
  EXPECT_EQ(typeOf({"1", "2"}, FieldForm::number), "Integer");
  EXPECT_EQ(typeOf({"12345678901234567890"}, FieldForm::number), "Text");
  EXPECT_EQ(typeOf({"0.12345678901234567890123"}, FieldForm::number), "Text");
  EXPECT_EQ(typeOf({"true", "false"}, FieldForm::word), "Bit");
  EXPECT_EQ(typeOf({"2001-03-09"}, FieldForm::string), "Date");
  EXPECT_EQ(typeOf({"5"}, FieldForm::string), "Text");
}

}  // namespace
}  // namespace store::exchange
