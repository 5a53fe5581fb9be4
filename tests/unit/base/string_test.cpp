#include "base/string.h"

#include <cstdint>
#include <cwchar>
#include <string>
#include <utility>

#include "gtest/gtest.h"
#include "tests/unit/base/allocation_probe.h"

namespace {

String part(const String& text, bool (String::*cut)(std::size_t, String&) const noexcept, std::size_t count) {
  String result = L"before";
  EXPECT_TRUE((text.*cut)(count, result));
  return result;
}

String middleOf(const String& text, std::size_t start, std::size_t count) {
  String result = L"before";
  EXPECT_TRUE(text.middle(start, count, result));
  return result;
}

String trimmed(const wchar_t* text) {
  String result = text;
  result.trim();
  return result;
}

TEST(StringTest, NewStringYieldsTheEmptyText) {
  const String text;
  ASSERT_NE(text.text(), nullptr);
  EXPECT_STREQ(text.text(), L"");
  EXPECT_EQ(text.length(), 0u);
  EXPECT_TRUE(text.isEmpty());
}

TEST(StringTest, NullTextYieldsTheEmptyText) {
  const wchar_t* const null = nullptr;
  const String constructed = null;
  String assigned = L"old";
  assigned.assign(null);
  String byOperator = L"old";
  byOperator = null;
  for (const String* text : {&constructed, &std::as_const(assigned), &std::as_const(byOperator)}) {
    ASSERT_NE(text->text(), nullptr);
    EXPECT_STREQ(text->text(), L"");
  }
}

TEST(StringTest, ClearedStringYieldsTheEmptyText) {
  String text = L"old";
  text.clear();
  ASSERT_NE(text.text(), nullptr);
  EXPECT_STREQ(text.text(), L"");
  text.clear();
  EXPECT_STREQ(text.text(), L"");
}

TEST(StringTest, AllEmptyStringsShareOneText) {
  const String first;
  const String second = L"";
  String third = L"old";
  third.clear();
  const String fourth = trimmed(L"  ");
  EXPECT_EQ(first.text(), second.text());
  EXPECT_EQ(first.text(), third.text());
  EXPECT_EQ(first.text(), fourth.text());
}

TEST(StringTest, HoldsACopyOfTheText) {
  wchar_t source[] = L"Books";
  const String text = source;
  source[0] = L'L';
  EXPECT_STREQ(text.text(), L"Books");
  EXPECT_EQ(text.length(), 5u);
  EXPECT_FALSE(text.isEmpty());
}

TEST(StringTest, AllocatesTheTextAndItsTerminatorAndNoMore) {
  const AllocationProbe probe;
  const String text = L"Books";
  EXPECT_EQ(probe.largestLength(), 6 * sizeof(wchar_t));
  EXPECT_EQ(probe.liveCount(), 1);
}

TEST(StringTest, AssigningFreesTheOldText) {
  const AllocationProbe probe;
  {
    String text = L"first";
    text.assign(L"a longer second text");
    text = String(L"third");
    EXPECT_EQ(probe.liveCount(), 1);
    text.assign(L"");
    EXPECT_EQ(probe.liveCount(), 0);
    text = L"last";
  }
  EXPECT_EQ(probe.liveCount(), 0);
}

TEST(StringTest, ACopyIsIndependent) {
  String original = L"one";
  const String copy = original;
  String assigned;
  assigned = original;
  original.assign(L"two");
  EXPECT_STREQ(copy.text(), L"one");
  EXPECT_STREQ(assigned.text(), L"one");
}

TEST(StringTest, MovingLeavesTheSourceEmpty) {
  String source = L"text";
  String target = std::move(source);
  EXPECT_STREQ(target.text(), L"text");
  EXPECT_STREQ(source.text(), L"");  // NOLINT(bugprone-use-after-move): that is the promise
  String assigned = L"old";
  assigned = std::move(target);
  EXPECT_STREQ(assigned.text(), L"text");
}

TEST(StringTest, AssigningItsOwnTextLeavesTheValue) {
  String text = L"unchanged";
  text.assign(text.text());
  EXPECT_STREQ(text.text(), L"unchanged");
  text = text.text();
  EXPECT_STREQ(text.text(), L"unchanged");
  const String& alias = text;
  text = alias;
  EXPECT_STREQ(text.text(), L"unchanged");
}

TEST(StringTest, AssigningAPieceOfItsOwnTextKeepsThePiece) {
  String text = L"database";
  text.assign(text.text() + 4);
  EXPECT_STREQ(text.text(), L"base");
}

TEST(StringTest, AssigningWithoutMemoryThrowsAndKeepsTheValue) {
  String text = L"kept";
  const String other = L"other";
  AllocationProbe probe;
  probe.failFromNowOn(true);
  EXPECT_THROW(text.assign(L"new"), std::bad_alloc);
  EXPECT_THROW(text = other, std::bad_alloc);
  probe.failFromNowOn(false);
  EXPECT_STREQ(text.text(), L"kept");
}

TEST(StringTest, TrimOfBlanksOnlyYieldsTheEmptyText) {
  EXPECT_STREQ(trimmed(L"   ").text(), L"");
  EXPECT_STREQ(trimmed(L" ").text(), L"");
}

TEST(StringTest, TrimOfTheEmptyTextYieldsTheEmptyText) {
  EXPECT_STREQ(trimmed(L"").text(), L"");
  EXPECT_STREQ(trimmed(nullptr).text(), L"");
}

TEST(StringTest, TrimKeepsTheBlankBetweenTheWords) {
  EXPECT_STREQ(trimmed(L" two words ").text(), L"two words");
}

TEST(StringTest, TrimOfOneEndLeavesTheOther) {
  EXPECT_STREQ(trimmed(L"   x").text(), L"x");
  EXPECT_STREQ(trimmed(L"x   ").text(), L"x");
  EXPECT_STREQ(trimmed(L"x").text(), L"x");
}

TEST(StringTest, TrimKeepsTabsAndOtherWhiteSpace) {
  EXPECT_STREQ(trimmed(L"\tx\t").text(), L"\tx\t");
  EXPECT_STREQ(trimmed(L" \t x \t ").text(), L"\t x \t");
  EXPECT_STREQ(trimmed(L" \r\nx\u00A0\u3000 ").text(), L"\r\nx\u00A0\u3000");
}

TEST(StringTest, FoldsEveryScriptToUpperCase) {
  String text = L"abc xyz 123 \u00E9\u00FC \u03B1\u03C9 \u0434\u044F";
  text.toUpperCase();
  EXPECT_STREQ(text.text(), L"ABC XYZ 123 \u00C9\u00DC \u0391\u03A9 \u0414\u042F");
}

TEST(StringTest, FoldsEveryScriptToLowerCase) {
  String text = L"ABC XYZ 123 \u00C9\u00DC \u0391\u03A9 \u0414\u042F";
  text.toLowerCase();
  EXPECT_STREQ(text.text(), L"abc xyz 123 \u00E9\u00FC \u03B1\u03C9 \u0434\u044F");
}

TEST(StringTest, FoldingKeepsTheLengthAndWhatHasNoCase) {
  String text = L"\u00DF \u65E5\u672C \xD83D\xDE00 \xD800";
  text.toUpperCase();
  EXPECT_STREQ(text.text(), L"\u00DF \u65E5\u672C \xD83D\xDE00 \xD800");
  text.toLowerCase();
  EXPECT_STREQ(text.text(), L"\u00DF \u65E5\u672C \xD83D\xDE00 \xD800");
}

TEST(StringTest, FoldingTheEmptyTextYieldsTheEmptyText) {
  String text;
  text.toUpperCase();
  text.toLowerCase();
  text.upperCasePrefix(5);
  EXPECT_STREQ(text.text(), L"");
}

TEST(StringTest, FoldsOnlyThePrefixToUpperCase) {
  String text = L"select * from books";
  text.upperCasePrefix(6);
  EXPECT_STREQ(text.text(), L"SELECT * from books");
}

TEST(StringTest, APrefixOfNothingChangesNothing) {
  String text = L"abc";
  text.upperCasePrefix(0);
  EXPECT_STREQ(text.text(), L"abc");
}

TEST(StringTest, APrefixAsLongAsTheTextOrLongerFoldsTheWholeText) {
  String whole = L"\u00E9bc";
  whole.upperCasePrefix(3);
  EXPECT_STREQ(whole.text(), L"\u00C9BC");
  String longer = L"abc";
  longer.upperCasePrefix(4);
  EXPECT_STREQ(longer.text(), L"ABC");
  String endless = L"abc";
  endless.upperCasePrefix(SIZE_MAX);
  EXPECT_STREQ(endless.text(), L"ABC");
}

TEST(StringTest, FoldingNeedsNoMemory) {
  String text = L"abcdef";
  AllocationProbe probe;
  probe.failFromNowOn(true);
  text.upperCasePrefix(3);
  probe.failFromNowOn(false);
  EXPECT_STREQ(text.text(), L"ABCdef");
}

TEST(StringTest, LeftGivesTheFirstCharacters) {
  EXPECT_STREQ(part(L"abcdef", &String::left, 2).text(), L"ab");
  EXPECT_STREQ(part(L"abcdef", &String::left, 0).text(), L"");
  EXPECT_STREQ(part(L"abcdef", &String::left, 6).text(), L"abcdef");
}

TEST(StringTest, LeftOfMoreThanTheLengthGivesTheWholeText) {
  EXPECT_STREQ(part(L"abc", &String::left, 4).text(), L"abc");
  EXPECT_STREQ(part(L"abc", &String::left, SIZE_MAX).text(), L"abc");
  EXPECT_STREQ(part(String(), &String::left, 4).text(), L"");
}

TEST(StringTest, RightGivesTheLastCharacters) {
  EXPECT_STREQ(part(L"abcdef", &String::right, 2).text(), L"ef");
  EXPECT_STREQ(part(L"abcdef", &String::right, 6).text(), L"abcdef");
}

TEST(StringTest, RightOfNothingGivesTheEmptyText) {
  EXPECT_STREQ(part(L"abcdef", &String::right, 0).text(), L"");
}

TEST(StringTest, RightOfMoreThanTheLengthGivesTheWholeText) {
  EXPECT_STREQ(part(L"abc", &String::right, 4).text(), L"abc");
  EXPECT_STREQ(part(L"abc", &String::right, SIZE_MAX).text(), L"abc");
  EXPECT_STREQ(part(String(), &String::right, 4).text(), L"");
}

TEST(StringTest, MiddleGivesExactlyTheRange) {
  EXPECT_STREQ(middleOf(L"abcdef", 0, 6).text(), L"abcdef");
  EXPECT_STREQ(middleOf(L"abcdef", 2, 3).text(), L"cde");
  EXPECT_STREQ(middleOf(L"abcdef", 5, 1).text(), L"f");
  EXPECT_STREQ(middleOf(L"abcdef", 3, 0).text(), L"");
}

TEST(StringTest, MiddleIsCutToTheText) {
  EXPECT_STREQ(middleOf(L"abcdef", 4, 3).text(), L"ef");
  EXPECT_STREQ(middleOf(L"abcdef", 4, SIZE_MAX).text(), L"ef");
  EXPECT_STREQ(middleOf(L"abcdef", 6, 1).text(), L"");
  EXPECT_STREQ(middleOf(L"abcdef", SIZE_MAX, SIZE_MAX).text(), L"");
  EXPECT_STREQ(middleOf(String(), 0, 1).text(), L"");
}

TEST(StringTest, APartMayGoIntoTheStringItself) {
  String text = L"abcdef";
  ASSERT_TRUE(text.middle(1, 4, text));
  EXPECT_STREQ(text.text(), L"bcde");
  ASSERT_TRUE(text.left(2, text));
  EXPECT_STREQ(text.text(), L"bc");
  ASSERT_TRUE(text.right(1, text));
  EXPECT_STREQ(text.text(), L"c");
}

TEST(StringTest, WithoutMemoryThePartsLeaveTheDestination) {
  const String text = L"abcdef";
  String destination = L"kept";
  AllocationProbe probe;
  probe.failFromNowOn(true);
  const bool left = text.left(2, destination);
  const bool right = text.right(2, destination);
  const bool middle = text.middle(1, 2, destination);
  probe.failFromNowOn(false);
  EXPECT_FALSE(left);
  EXPECT_FALSE(right);
  EXPECT_FALSE(middle);
  EXPECT_STREQ(destination.text(), L"kept");
}

TEST(StringTest, FindGivesTheFirstOccurrence) {
  const String text = L"one two one";
  EXPECT_EQ(text.find(L"one"), 0);
  EXPECT_EQ(text.find(L"two"), 4);
  EXPECT_EQ(text.find(L" one"), 7);
  EXPECT_EQ(text.find(String(L"two")), 4);
}

TEST(StringTest, FindOfATextThatDoesNotOccurYieldsMinusOne) {
  EXPECT_EQ(String(L"one two").find(L"three"), -1);
  EXPECT_EQ(String(L"one two").find(L"Two"), -1);
  EXPECT_EQ(String(L"one").find(L"one two"), -1);
  EXPECT_EQ(String().find(L"x"), -1);
  EXPECT_EQ(String(L"one").find(String(L"x")), -1);
}

TEST(StringTest, FindOfTheEmptyTextYieldsZero) {
  EXPECT_EQ(String(L"one").find(L""), 0);
  EXPECT_EQ(String(L"one").find(String()), 0);
  EXPECT_EQ(String(L"one").find(static_cast<const wchar_t*>(nullptr)), 0);
  EXPECT_EQ(String().find(L""), 0);
}

TEST(StringTest, FindLeavesItsArgument) {
  const String sought = L"two";
  EXPECT_EQ(String(L"one two").find(sought), 4);
  EXPECT_STREQ(sought.text(), L"two");
}

TEST(StringTest, HandlesAHundredThousandCharacters) {
  const std::wstring inner = std::wstring(50'000, L'a') + L'x' + std::wstring(49'999, L'b');
  String text = (L"  " + inner + L"  ").c_str();
  EXPECT_EQ(text.length(), 100'004u);
  text.trim();
  EXPECT_EQ(text.text(), inner);
  EXPECT_EQ(text.find(L"xb"), 50'000);
  text.toUpperCase();
  EXPECT_EQ(text.find(L"XB"), 50'000);
  EXPECT_EQ(part(text, &String::right, 49'999).text(), std::wstring(49'999, L'B'));
}

}  // namespace
