#include "data/database/statement_text.h"

#include <string>

#include "gtest/gtest.h"

namespace {

TEST(StatementTextTest, JoinsItsParts) {
  StatementText statement;
  ASSERT_TRUE(joinStatement({L"DROP TABLE '", L"a b", L"'"}, statement));
  EXPECT_STREQ(statement.data(), L"DROP TABLE 'a b'");
}

TEST(StatementTextTest, Holds199Characters) {
  const std::wstring longest(199, L'x');
  StatementText statement;
  ASSERT_TRUE(joinStatement({longest.c_str()}, statement));
  EXPECT_EQ(statement.data(), longest);
}

TEST(StatementTextTest, ALongerOneIsRefusedAndChangesNothing) {
  StatementText statement;
  ASSERT_TRUE(joinStatement({L"before"}, statement));
  const std::wstring part(100, L'x');
  EXPECT_FALSE(joinStatement({part.c_str(), part.c_str()}, statement));
  EXPECT_STREQ(statement.data(), L"before");
}

TEST(StatementTextTest, MayBeEmpty) {
  StatementText statement;
  ASSERT_TRUE(joinStatement({}, statement));
  EXPECT_STREQ(statement.data(), L"");
}

}  // namespace
