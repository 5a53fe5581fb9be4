#include "platform/store/exchange/names.h"

#include <gtest/gtest.h>

namespace store::exchange {
namespace {

TEST(Names, WhatIsNotAllowedIsReplaced) {
  EXPECT_EQ(validTableName("my.data [2001]!"), "my_data _2001__");
  EXPECT_EQ(validTableName("a\nb"), "a b");
  EXPECT_EQ(validTableName("  .hidden. "), "hidden_");
  EXPECT_EQ(validTableName("'quoted'"), "quoted_");
}

TEST(Names, AValidNameStaysAsItIs) {
  EXPECT_EQ(validTableName("Books 2001"), "Books 2001");
  EXPECT_EQ(validTableName("\xC3\x9C"
                           "bersicht"),
            "\xC3\x9C"
            "bersicht");
}

TEST(Names, TablesHaveThirtyOneCharactersAndFieldsSixtyFour) {
  std::string umlauts;
  for (int count = 0; count < 100; ++count) umlauts += "\xC3\xA4";
  EXPECT_EQ(validTableName(umlauts).size(), 2u * 31);
  EXPECT_EQ(validFieldNames({umlauts})[0].size(), 2u * 64);
}

TEST(Names, NothingLeftGetsAName) {
  EXPECT_EQ(validTableName(""), "Table1");
  EXPECT_EQ(validTableName("???"), "Table1");
  EXPECT_EQ(validFieldNames({"a", "", "\xFF"}), (std::vector<std::string>{"a", "Field2", "Field3"}));
}

TEST(Names, ReservedNamesAreAvoided) {
  EXPECT_EQ(validTableName("msystables"), "Table msystables");
  EXPECT_EQ(validTableName("sqlite_master"), "Table sqlite_master");
}

TEST(Names, EachFieldHasAnotherName) {
  EXPECT_EQ(validFieldNames({"Name", "name", "NAME", "name 2"}),
            (std::vector<std::string>{"Name", "name 2", "NAME 3", "name 2 2"}));
}

}  // namespace
}  // namespace store::exchange
