// The order and filter of records as statements, as texts for the user and as texts that are kept.
#include "records/arrangement/arrangement.h"

#include <vector>

#include "gmock/gmock.h"

using Letters = Arrangement::Letters;
using Kind = Arrangement::Test;

namespace {

const std::vector<std::wstring> kFields = {L"Title", L"Author"};

Arrangement::Condition condition(const wchar_t* field, Kind test, const wchar_t* value = L"",
                                 Letters letters = Letters::ignoreCase) {
  Arrangement::Condition made;
  if (field) made.field = field;
  made.test = test;
  made.value = value;
  made.shown = value;
  made.letters = letters;
  return made;
}

std::wstring sqlOf(const Arrangement::Condition& required) {
  Arrangement arrangement;
  arrangement.require(required);
  return arrangement.toSql(L"Select * from [T]", true, kFields);
}

TEST(ArrangementTest, WithoutAnyTheStatementIsThePlainOne) {
  EXPECT_EQ(Arrangement().toSql(L"Select * from [T]", true, kFields), L"Select * from [T]");
  EXPECT_EQ(Arrangement().toSql(L"SELECT a FROM t;", false, kFields), L"SELECT a FROM t;");
  EXPECT_TRUE(Arrangement().isEmpty());
  EXPECT_EQ(Arrangement().describe(), L"");
}

TEST(ArrangementTest, ASecondColumnComesBelowTheFirst) {
  Arrangement arrangement;
  arrangement.thenBy({L"Author", false, Letters::ignoreCase});
  arrangement.thenBy({L"Pages", true, Letters::asTheyAre});
  EXPECT_EQ(arrangement.toSql(L"Select * from [T]", true, kFields),
            L"Select * from [T] ORDER BY quivane_fold([Author]), [Pages] DESC");
  EXPECT_EQ(arrangement.describe(), L"Ordered by Author, then by Pages (descending)");
  arrangement.thenBy({L"Year", false, Letters::asTheyAre});
  ASSERT_EQ(arrangement.orders().size(), 2u) << "another second one takes its place";
  EXPECT_EQ(arrangement.orders()[1].field, L"Year");
  arrangement.thenBy({L"Author", true, Letters::ignoreCase});
  ASSERT_EQ(arrangement.orders().size(), 2u);
  EXPECT_TRUE(arrangement.orders()[0].isDescending) << "the first one in the other direction";
  arrangement.orderBy({L"Year", false, Letters::asTheyAre});
  ASSERT_EQ(arrangement.orders().size(), 1u);
}

TEST(ArrangementTest, EachConditionIsOneOfSql) {
  EXPECT_EQ(sqlOf(condition(L"Title", Kind::equal, L"'O''Neill'")),
            L"Select * from [T] WHERE quivane_fold([Title]) = quivane_fold('O''Neill')");
  EXPECT_EQ(sqlOf(condition(L"Born", Kind::equal, L"'2001-03-09'", Letters::asTheyAre)),
            L"Select * from [T] WHERE [Born] = '2001-03-09'");
  EXPECT_EQ(sqlOf(condition(L"Title", Kind::containing, L"it's 100%")),
            L"Select * from [T] WHERE quivane_contains('it''s 100%', [Title])");
  EXPECT_EQ(sqlOf(condition(nullptr, Kind::containing, L"x")),
            L"Select * from [T] WHERE quivane_contains('x', [Title], [Author])");
  EXPECT_EQ(sqlOf(condition(L"Title", Kind::empty)),
            L"Select * from [T] WHERE ifnull([Title], '') IN ('', x'')");
  EXPECT_EQ(sqlOf(condition(L"Title", Kind::notEmpty)),
            L"Select * from [T] WHERE ifnull([Title], '') NOT IN ('', x'')");
  EXPECT_EQ(sqlOf(condition(L"Valid", Kind::isTrue)), L"Select * from [T] WHERE ifnull([Valid], 0) <> 0");
  EXPECT_EQ(sqlOf(condition(L"Valid", Kind::isFalse)), L"Select * from [T] WHERE ifnull([Valid], 0) = 0");
}

TEST(ArrangementTest, ConditionsAllHoldAndOneOfAFieldTakesThePlaceOfItsFormer) {
  Arrangement arrangement;
  arrangement.require(condition(L"Title", Kind::containing, L"a"));
  arrangement.require(condition(L"Author", Kind::notEmpty));
  arrangement.require(condition(L"Title", Kind::containing, L"b"));
  arrangement.require(condition(nullptr, Kind::containing, L"c"));
  EXPECT_EQ(
      arrangement.toSql(L"Select * from [T]", true, {L"Title"}),
      L"Select * from [T] WHERE quivane_contains('b', [Title]) AND ifnull([Author], '') NOT IN ('', x'') AND "
      L"quivane_contains('c', [Title])");
  EXPECT_EQ(arrangement.describe(),
            L"Only where Title contains 'b' and Author is not empty and any column contains 'c'");
}

TEST(ArrangementTest, AQueryStandsInParenthesesWithoutWhatEndsIt) {
  Arrangement arrangement;
  arrangement.orderBy({L"a", false, Letters::asTheyAre});
  const auto inParentheses = [&](const wchar_t* sql) {
    const std::wstring text = arrangement.toSql(sql, false, kFields);
    const std::wstring before = L"SELECT * FROM (";
    const std::wstring behind = L"\n) ORDER BY [a]";
    EXPECT_TRUE(text.starts_with(before) && text.ends_with(behind)) << testing::PrintToString(text);
    return text.substr(before.size(), text.size() - before.size() - behind.size());
  };
  EXPECT_EQ(inParentheses(L"SELECT 1; -- a"), L"SELECT 1");
  EXPECT_EQ(inParentheses(L"SELECT ';--' ; /* b */ ;"), L"SELECT ';--'");
  EXPECT_EQ(inParentheses(L"SELECT a FROM t -- all ; \n;; "), L"SELECT a FROM t");
  EXPECT_EQ(inParentheses(L"SELECT a FROM t -- all"), L"SELECT a FROM t");
  EXPECT_EQ(inParentheses(L"SELECT a -- the first\nFROM t; --"), L"SELECT a -- the first\nFROM t");
  EXPECT_EQ(inParentheses(L"SELECT [;--] FROM \"/*\" /* ; "), L"SELECT [;--] FROM \"/*\"");
  EXPECT_EQ(inParentheses(L"SELECT 'it''s; ' || `;` ;/**/"), L"SELECT 'it''s; ' || `;`");
  EXPECT_EQ(inParentheses(L"SELECT a - - b / * c"), L"SELECT a - - b / * c");
  EXPECT_EQ(inParentheses(L"; -- nothing"), L"");
}

TEST(ArrangementTest, NoNameIsTakenForAText) {
  EXPECT_EQ(sqlOf(condition(L"a]b`c", Kind::isTrue)), L"Select * from [T] WHERE ifnull(`a]b``c`, 0) <> 0");
  EXPECT_EQ(sqlOf(condition(L"say \"so\"", Kind::isTrue)),
            L"Select * from [T] WHERE ifnull([say \"so\"], 0) <> 0");
}

TEST(ArrangementTest, ManyFieldsAreLookedAtInParts) {
  std::vector<std::wstring> fields(200, L"f");
  Arrangement arrangement;
  arrangement.require(condition(nullptr, Kind::containing, L"x"));
  arrangement.require(condition(L"f", Kind::isTrue));
  const std::wstring sql = arrangement.toSql(L"Select * from [T]", true, fields);
  EXPECT_EQ(sql.find(L"(quivane_contains('x'"), sql.find(L"WHERE ") + 6) << "they belong together";
  std::size_t count = 0;
  for (std::size_t at = sql.find(L"quivane_contains"); at != sql.npos;
       at = sql.find(L"quivane_contains", at + 1)) {
    ++count;
  }
  EXPECT_EQ(count, 3u);
  EXPECT_EQ(arrangement.toSql(L"Select * from [T]", true, {}),
            L"Select * from [T] WHERE 0 AND ifnull([f], 0) <> 0")
      << "where no field can contain a text none does";
}

TEST(ArrangementTest, EverythingComesBackFromItsText) {
  Arrangement arrangement;
  arrangement.orderBy({L"a/b:c|d\\e\n\x00C4", true, Letters::ignoreCase});
  arrangement.thenBy({L"", false, Letters::asTheyAre});
  Arrangement::Condition equal = condition(L"e", Kind::equal, L"'x:/|\\'", Letters::asTheyAre);
  equal.shown = L"\xD83D\xDE00 \t";
  arrangement.require(equal);
  arrangement.require(condition(L"c", Kind::containing, L"text"));
  arrangement.require(condition(nullptr, Kind::containing, L"any"));
  for (const Kind test : {Kind::empty, Kind::notEmpty, Kind::isTrue, Kind::isFalse}) {
    Arrangement::Condition plain;
    plain.field = std::to_wstring(static_cast<int>(test));
    plain.test = test;
    arrangement.require(plain);
  }
  // What is shown of these is no part of them.
  Arrangement expected = arrangement;
  Arrangement::Condition contains = condition(L"c", Kind::containing, L"text");
  contains.shown.clear();
  expected.require(contains);
  Arrangement::Condition any = condition(nullptr, Kind::containing, L"any");
  any.shown.clear();
  expected.require(any);
  const std::wstring text = arrangement.toText();
  for (const wchar_t unit : text) {
    EXPECT_GE(unit, L' ');
    EXPECT_NE(unit, L'|');
  }
  EXPECT_EQ(Arrangement::ofText(text), expected);
}

TEST(ArrangementTest, WhateverElseStandsThereIsNone) {
  for (const wchar_t* text : {L"", L"0", L"2/+i:a", L"1/", L"1/+", L"1/+i", L"1/+x:a", L"1/+i:a:b", L"1/?i:a",
                              L"1/=i:a:b", L"1/~i:a", L"1/+i:a\\", L"1/+i:a\\12", L"1/+i:a\\00zz",
                              L"1/+i:a/+i:b/+i:c", L"1|", L"garbage", L"1/\\/:|"}) {
    EXPECT_TRUE(Arrangement::ofText(text).isEmpty()) << testing::PrintToString(std::wstring(text));
  }
  EXPECT_FALSE(Arrangement::ofText(L"1/+i:a").isEmpty());
}

}  // namespace
