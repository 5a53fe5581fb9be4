#include "platform/store/rows/text_search.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "tests/store/rows/text_search_fixture.h"

namespace store {
namespace {

using TextSearchTest = TextSearchFixture;

TEST_F(TextSearchTest, BytesAreFoundByTheirPairsOfDigits) {
  prepare("CREATE TABLE T (A Image)");
  prepare("INSERT INTO T VALUES (x'4142'), (x'00FF7F'), (zeroblob(300)), (x'ABCD')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{1, 2}), search(*rows, u"ff 7f"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{2, 3}), search(*rows, u"300 bytes"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{3, 4}), search(*rows, u"B C"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{3, 4}), search(*rows, u"AB")) << "not the characters that the first bytes are";
}

TEST_F(TextSearchTest, PassesOverRecordsWithoutTheText) {
  prepare("CREATE TABLE T (A Varchar (20), B Integer)");
  prepare("INSERT INTO T VALUES ('one', 1), ('two', 2), ('three', 33), ('four', NULL), (NULL, 5)");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{2, 3}), search(*rows, u"THREE"));
  EXPECT_EQ((Found{0, 3}), search(*rows, u"THREE"));
  EXPECT_EQ("three", textOf(*rows, 0));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{2, 3}), search(*rows, u"33"));
  EXPECT_EQ((Found{2, 5}), search(*rows, u"5"));
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{5, -3}), search(*rows, u"nowhere"));
  EXPECT_EQ((Found{0, -3}), search(*rows, u"nowhere"));
}

TEST_F(TextSearchTest, PassesOverNoMoreThanItMay) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b'), ('c'), ('d')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{2, 3}), search(*rows, u"d", {0}, false, 2));
  EXPECT_EQ((Found{0, 3}), search(*rows, u"d", {0}, false, 0));
  EXPECT_EQ((Found{0, 3}), search(*rows, u"d", {0}, false, -1));
  EXPECT_EQ((Found{1, 4}), search(*rows, u"d", {0}, false, 5));
}

TEST_F(TextSearchTest, TheEmptyTextPassesOverNothing) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), (NULL)");
  open();
  EXPECT_EQ((Found{0, 1}), search(*records("Select * from [T]"), u""));
}

TEST_F(TextSearchTest, DatesAndTruthValuesAreNotLookedAt) {
  prepare("CREATE TABLE T (D Datetime, B Bit, A Varchar (20))");
  prepare("INSERT INTO T VALUES ('2001-03-09', 1, 'x'), ('two', 'two', 'y'), ('', '', 'two')");
  open();
  EXPECT_EQ((Found{2, 3}), search(*records("Select * from [T]"), u"two"));
  EXPECT_EQ((Found{3, -3}), search(*records("Select * from [T]"), u"2001"));
  // Alone they leave nothing to look at.
  EXPECT_EQ((Found{3, -3}), search(*records("Select * from [T]"), u"two", {0, 1}));
}

TEST_F(TextSearchTest, OneFieldAloneIsLookedAt) {
  prepare("CREATE TABLE T (A Varchar (20), B Varchar (20))");
  prepare("INSERT INTO T VALUES ('x', 'a'), ('a', 'x')");
  open();
  EXPECT_EQ((Found{1, 2}), search(*records("Select * from [T]"), u"a", {0}));
  EXPECT_EQ((Found{0, 1}), search(*records("Select * from [T]"), u"a", {1}));
}

TEST_F(TextSearchTest, NothingIsPassedOverOffTheRecordsAndFromADirtyOne) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  ASSERT_TRUE(rows->setValue(0, std::string("c")));
  EXPECT_EQ((Found{0, 1}), search(*rows, u"z"));
  ASSERT_TRUE(rows->cancelUpdate());
  ASSERT_TRUE(rows->addNew());
  EXPECT_EQ((Found{0, -1}), search(*rows, u"z"));
  ASSERT_TRUE(rows->cancelUpdate());
  ASSERT_TRUE(rows->remove());
  EXPECT_EQ((Found{0, -1}), search(*rows, u"z"));
  ASSERT_TRUE(rows->moveFirst());
  ASSERT_TRUE(rows->movePrevious());
  EXPECT_EQ((Found{0, -2}), search(*rows, u"z"));
}

TEST_F(TextSearchTest, RecordsAddedByOthersAreNotSeenAndDeletedOnesArePassedOver) {
  prepare("CREATE TABLE T (N Integer PRIMARY KEY, A Varchar (20))");
  prepare("INSERT INTO T VALUES (10, 'a'), (20, 'b'), (30, 'x'), (40, 'x')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  prepare("INSERT INTO T VALUES (15, 'x'), (25, 'x'); DELETE FROM T WHERE N = 30");
  EXPECT_EQ((Found{3, 4}), search(*rows, u"x"));
  EXPECT_EQ("40", textOf(*rows, 0));
}

TEST_F(TextSearchTest, WhatOthersChangedIsSeen) {
  prepare("CREATE TABLE T (A Varchar (20))");
  prepare("INSERT INTO T VALUES ('a'), ('b'), ('c')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  EXPECT_EQ((Found{3, -3}), search(*rows, u"x"));
  prepare("UPDATE T SET A = 'x' WHERE A = 'b'");
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{1, 2}), search(*rows, u"x"));
}

TEST_F(TextSearchTest, RecordsOfOursStandWhereTheyWereAdded) {
  prepare("CREATE TABLE T (N Integer PRIMARY KEY, A Varchar (20))");
  prepare("INSERT INTO T VALUES (10, 'a'), (20, 'x')");
  open();
  const std::unique_ptr<Recordset> rows = records("Select * from [T]");
  for (const std::int64_t key : {5, 15, 3}) {
    ASSERT_TRUE(rows->addNew());
    ASSERT_TRUE(rows->setValue(0, key));
    ASSERT_TRUE(rows->setValue(1, key == 15 ? std::string("x") : std::string("a")));
    ASSERT_TRUE(rows->update());
  }
  ASSERT_TRUE(rows->moveFirst());
  EXPECT_EQ((Found{1, 2}), search(*rows, u"x"));
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ((Found{1, 4}), search(*rows, u"x"));
  ASSERT_TRUE(rows->moveNext());
  EXPECT_EQ((Found{1, -3}), search(*rows, u"x"));
}

TEST_F(TextSearchTest, MoreFieldsThanAFunctionTakes) {
  std::string sql = "CREATE TABLE T (c0 Varchar (9)";
  for (int column = 1; column < 400; ++column) sql += ", c" + std::to_string(column) + " Varchar (9)";
  prepare(sql + ")");
  prepare("INSERT INTO T (c0) VALUES ('a'), ('b'), ('c')");
  prepare("UPDATE T SET c399 = 'x' WHERE c0 = 'c'");
  prepare("UPDATE T SET c100 = 'y' WHERE c0 = 'b'");
  open();
  EXPECT_EQ((Found{2, 3}), search(*records("Select * from [T]"), u"x"));
  EXPECT_EQ((Found{1, 2}), search(*records("Select * from [T]"), u"y"));
}

TEST_F(TextSearchTest, TheFunctionBehindItIsNotForStatements) {
  prepare("CREATE TABLE T (A Varchar (20))");
  open();
  EXPECT_FALSE(tryRun("INSERT INTO T VALUES (quivane_wanted(1, 0, 'a'))"));
  EXPECT_FALSE(tryRun("INSERT INTO T VALUES (quivane_wanted())"));
}

}  // namespace
}  // namespace store
