#include "dialogs/table/table_design.h"

#include <string>

#include "gtest/gtest.h"

namespace {

NameList listOf(std::initializer_list<const wchar_t*> names) {
  NameList list;
  for (const wchar_t* name : names) list.append(name);
  return list;
}

TEST(TableDesignTest, ThePlainApostropheIsAllowedAndTheTypographicOneIsNot) {
  EXPECT_FALSE(hasForbiddenCharacter(L"Customer's"));
  EXPECT_TRUE(hasForbiddenCharacter(L"Customer\u2019s"));
}

TEST(TableDesignTest, NineCharactersAreForbiddenWhereverTheyStand) {
  for (const wchar_t forbidden : {L'`', L'.', L'!', L'\u2019', L'[', L']', L'"', L'*', L'?'}) {
    for (const std::wstring& name :
         {std::wstring(1, forbidden), std::wstring(L"a") + forbidden, forbidden + std::wstring(L"a")}) {
      EXPECT_TRUE(hasForbiddenCharacter(name.c_str())) << static_cast<int>(forbidden);
    }
  }
}

TEST(TableDesignTest, AllOtherCharactersAreAllowed) {
  EXPECT_FALSE(hasForbiddenCharacter(L""));
  EXPECT_FALSE(hasForbiddenCharacter(L" "));
  EXPECT_FALSE(hasForbiddenCharacter(L"100 %s,;:-_()/\\{}<>|&+=~^@#$ \u2018 \u4e2d \U0001F600 \u05d0"));
}

TEST(TableDesignTest, ANameIsTakenInWhateverCase) {
  const NameList names = listOf({L"Customers", L"ORDERS", L"\u00c4pfel"});
  EXPECT_TRUE(isNameTaken(L"orders", names));
  EXPECT_TRUE(isNameTaken(L"ORDERS", names));
  EXPECT_TRUE(isNameTaken(L"\u00e4PFEL", names));
  EXPECT_FALSE(isNameTaken(L"order", names));
  EXPECT_FALSE(isNameTaken(L"orders ", names));
  EXPECT_FALSE(isNameTaken(L"orders", NameList()));
}

TEST(TableDesignTest, ADefinitionListsNamesAndTypesInOrder) {
  EXPECT_STREQ(
      columnDefinition({{L"Id", L"Integer"}, {L"Full name", L"Varchar (255)"}, {L"Born", L"Datetime"}})
          .text(),
      L"Id Integer ,'Full name' Varchar (255) ,Born Datetime");
}

TEST(TableDesignTest, ANameThatIsAWordIsBareAndAnyOtherIsQuoted) {
  EXPECT_STREQ(columnDefinition({{L"Full name", L"Text"}}).text(), L"'Full name' Text");
  EXPECT_STREQ(columnDefinition({{L" ", L"Text"}}).text(), L"' ' Text");
  EXPECT_STREQ(columnDefinition({{L"Id", L"Bit"}}).text(), L"Id Bit");
  EXPECT_STREQ(columnDefinition({{L"Customer's", L"Bit"}}).text(), L"'Customer''s' Bit");
  EXPECT_STREQ(columnDefinition({{L"100%s", L"Bit"}}).text(), L"'100%s' Bit");
}

TEST(TableDesignTest, FieldsOfOneNameAreAllListed) {
  EXPECT_STREQ(columnDefinition({{L"a", L"Bit"}, {L"a", L"Text"}}).text(), L"a Bit ,a Text");
}

TEST(TableDesignTest, NoFieldsGiveTheEmptyText) {
  EXPECT_STREQ(columnDefinition({}).text(), L"");
}

TEST(TableDesignTest, NamesAndTypesAreCutAt64Characters) {
  const std::wstring name64(64, L'n');
  const std::wstring type64(64, L't');
  EXPECT_EQ(columnDefinition({{name64.c_str(), type64.c_str()}}).text(), name64 + L" " + type64);
  EXPECT_EQ(columnDefinition({{(name64 + L"x").c_str(), (type64 + L"x").c_str()}}).text(),
            name64 + L" " + type64);
  const std::wstring longWithBlank = std::wstring(64, L'n') + L" x";
  EXPECT_EQ(columnDefinition({{longWithBlank.c_str(), L"Bit"}}).text(), name64 + L" Bit")
      << "the blank is cut off";
}

TEST(TableDesignTest, ACutLeavesNoHalfOfAPair) {
  EXPECT_STREQ(cutText(L"ab\U0001F600", 4).text(), L"ab\U0001F600");
  EXPECT_STREQ(cutText(L"ab\U0001F600", 3).text(), L"ab");
  EXPECT_STREQ(cutText(L"ab\U0001F600", 2).text(), L"ab");
  EXPECT_STREQ(cutText(L"\U0001F600", 1).text(), L"");
  EXPECT_STREQ(cutText(L"abc", 0).text(), L"");
}

}  // namespace
