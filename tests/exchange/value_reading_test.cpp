#include "platform/store/exchange/formats/value_reading.h"

#include <gtest/gtest.h>

namespace store::exchange {
namespace {

/// The value as text with its kind in front, or "!" when it is refused.
std::string valueOf(std::string_view text, ValueKind kind, FieldForm form = FieldForm::bare) {
  std::string scratch;
  Cell cell;
  if (readValue({text, form}, kind, &scratch, &cell) != nullptr) return "!";
  switch (cell.kind) {
    case CellKind::integer:
      return "i" + std::to_string(cell.integer);
    case CellKind::real:
      return "r" + std::to_string(cell.real);
    case CellKind::text:
      return "t" + std::string(cell.bytes);
    case CellKind::blob:
      return "b" + std::string(cell.bytes);
    default:
      return "null";
  }
}

TEST(ValueReading, AMissingFieldIsNullForAllKinds) {
  for (const ValueKind kind : {ValueKind::any, ValueKind::text, ValueKind::integer, ValueKind::date}) {
    EXPECT_EQ(valueOf("", kind, FieldForm::missing), "null");
  }
}

TEST(ValueReading, AnEmptyFieldIsNullButForTexts) {
  for (const ValueKind kind : {ValueKind::integer, ValueKind::real, ValueKind::numeric, ValueKind::date,
                               ValueKind::boolean, ValueKind::bytes}) {
    EXPECT_EQ(valueOf("", kind), "null");
    EXPECT_EQ(valueOf("", kind, FieldForm::quoted), "null");
  }
  EXPECT_EQ(valueOf("", ValueKind::text), "t");
  EXPECT_EQ(valueOf("", ValueKind::text, FieldForm::quoted), "t");
}

TEST(ValueReading, TextsStayAsTheyAre) {
  for (const char* text : {"007", " a ", "1e5", "x'00'", "true"}) {
    EXPECT_EQ(valueOf(text, ValueKind::text), std::string("t") + text);
  }
}

TEST(ValueReading, NumbersFitOrAreRefused) {
  EXPECT_EQ(valueOf("007", ValueKind::integer), "i7");
  EXPECT_EQ(valueOf(" 5 ", ValueKind::integer), "i5");
  EXPECT_EQ(valueOf("5", ValueKind::integer, FieldForm::quoted), "i5");
  EXPECT_EQ(valueOf("1.5", ValueKind::integer), "!");
  EXPECT_EQ(valueOf("99999999999999999999", ValueKind::integer), "!");
  EXPECT_EQ(valueOf("abc", ValueKind::integer), "!");
  EXPECT_EQ(valueOf("1e2", ValueKind::real), "r100.000000");
  EXPECT_EQ(valueOf("5", ValueKind::real), "r5.000000");
  EXPECT_EQ(valueOf("9007199254740993", ValueKind::real), "!");
  EXPECT_EQ(valueOf("9007199254740993", ValueKind::numeric), "i9007199254740993");
  EXPECT_EQ(valueOf("1,5", ValueKind::real), "!");
}

TEST(ValueReading, TruthValuesAreWordsOrNumbers) {
  EXPECT_EQ(valueOf("TRUE", ValueKind::boolean), "i1");
  EXPECT_EQ(valueOf("no", ValueKind::boolean), "i0");
  for (const char* text : {"t", "T"}) EXPECT_EQ(valueOf(text, ValueKind::boolean), "i1");
  for (const char* text : {"f", "F"}) EXPECT_EQ(valueOf(text, ValueKind::boolean), "i0");
  EXPECT_EQ(valueOf("t", ValueKind::any), "tt") << "only where truth is wanted";
  EXPECT_EQ(valueOf("tr", ValueKind::boolean), "!");
  EXPECT_EQ(valueOf("-1", ValueKind::boolean), "i-1");
  EXPECT_EQ(valueOf("perhaps", ValueKind::boolean), "!");
}

TEST(ValueReading, DatesHaveTheYearInFront) {
  EXPECT_EQ(valueOf("2001-03-09T14:05Z", ValueKind::date), "t2001-03-09T14:05Z");
  EXPECT_EQ(valueOf("14:05", ValueKind::date), "t14:05");
  EXPECT_EQ(valueOf("2001/03/09 14:05", ValueKind::date), "t2001-03-09 14:05");
  EXPECT_EQ(valueOf("03/09/2001", ValueKind::date), "!");
  EXPECT_EQ(valueOf("2001-02-30", ValueKind::date), "!");
}

TEST(ValueReading, BytesArePairsOfDigits) {
  EXPECT_EQ(valueOf("x'4142'", ValueKind::bytes), "bAB");
  EXPECT_EQ(valueOf("4142", ValueKind::bytes), "bAB");
  EXPECT_EQ(valueOf("\\x4142", ValueKind::bytes), "bAB");
  EXPECT_EQ(valueOf("\\x", ValueKind::bytes), "b");
  EXPECT_EQ(valueOf("\\x414", ValueKind::bytes), "!");
  EXPECT_EQ(valueOf("x''", ValueKind::bytes), "b");
  EXPECT_EQ(valueOf("414", ValueKind::bytes), "!");
  EXPECT_EQ(valueOf("zz", ValueKind::bytes), "!");
  EXPECT_EQ(valueOf("4142", ValueKind::text, FieldForm::bytes), "bAB");
  EXPECT_EQ(valueOf("4142", ValueKind::integer, FieldForm::bytes), "!");
}

TEST(ValueReading, WithoutATypeAValueIsWhatItLooksLikeUnlessItIsQuoted) {
  EXPECT_EQ(valueOf("5", ValueKind::any), "i5");
  EXPECT_EQ(valueOf("5", ValueKind::any, FieldForm::quoted), "t5");
  EXPECT_EQ(valueOf("5.0", ValueKind::any), "r5.000000");
  EXPECT_EQ(valueOf("007", ValueKind::any), "t007");
  EXPECT_EQ(valueOf("x'41'", ValueKind::any), "bA");
  EXPECT_EQ(valueOf("x'41'", ValueKind::any, FieldForm::quoted), "tx'41'");
  EXPECT_EQ(valueOf("true", ValueKind::any), "ttrue");
  EXPECT_EQ(valueOf("true", ValueKind::any, FieldForm::word), "i1");
  EXPECT_EQ(valueOf("1e5", ValueKind::any, FieldForm::number), "r100000.000000");
}

// SQLite makes a number of a text in a column whose type it does not know; that must not spoil it.
TEST(ValueReading, ATextThatTheColumnWouldChangeIsRefused) {
  EXPECT_EQ(valueOf("007", ValueKind::numericText), "!");
  EXPECT_EQ(valueOf("1e5", ValueKind::numericText), "!");
  EXPECT_EQ(valueOf("7", ValueKind::numericText), "i7");
  EXPECT_EQ(valueOf("seven", ValueKind::numericText), "tseven");
}

TEST(ValueReading, KindsFollowFromDeclaredTypes) {
  EXPECT_EQ(kindOf(""), ValueKind::any);
  EXPECT_EQ(kindOf("Varchar (255)"), ValueKind::text);
  EXPECT_EQ(kindOf("Text"), ValueKind::text);
  EXPECT_EQ(kindOf("string"), ValueKind::numericText);
  EXPECT_EQ(kindOf("memo"), ValueKind::numericText);
  EXPECT_EQ(kindOf("bigint"), ValueKind::integer);
  EXPECT_EQ(kindOf("SmallInt"), ValueKind::integer);
  EXPECT_EQ(kindOf("Float"), ValueKind::real);
  EXPECT_EQ(kindOf("decimal(10,2)"), ValueKind::numeric);
  EXPECT_EQ(kindOf("Bit"), ValueKind::boolean);
  EXPECT_EQ(kindOf("Datetime"), ValueKind::date);
  EXPECT_EQ(kindOf("long varbinary"), ValueKind::bytes);
}

}  // namespace
}  // namespace store::exchange
