// A server's database as a whole: what is in it, and what can't be done with it.
#include <filesystem>
#include <memory>
#include <string>

#include "tests/server/server_fixture.h"

namespace store {
namespace {

class ServerDatabaseTest : public StoreTest {
 protected:
  std::string onServer(const std::string& sql) { return OtherProgram(path_).ask(sql); }
};

TEST_F(ServerDatabaseTest, TheCatalogueListsTablesViewsAndThoseOfOtherSchemas) {
  runOnServer("CREATE TABLE \"Books\" (id integer PRIMARY KEY, \"Title\" text)", database_);
  runOnServer("CREATE VIEW \"Titles\" AS SELECT \"Title\" FROM \"Books\"", database_);
  runOnServer("CREATE SCHEMA sales", database_);
  runOnServer("CREATE TABLE sales.orders (id integer PRIMARY KEY, note text)", database_);
  runOnServer("INSERT INTO sales.orders VALUES (1, 'first')", database_);
  open();
  EXPECT_EQ("MSysFields MSysTables MSysIndexes MSysProcs Books Titles sales.orders",
            columnOf(*records("MSysTables", SourceKind::table)));
  EXPECT_EQ("3 3 3 3 0 2 0", columnOf(*records("Select * from MSysTables"), 2));
  EXPECT_EQ("id Title Title id note", columnOf("SELECT FieldName FROM MSysFields WHERE TableID > 4"));
  EXPECT_EQ("Books_pkey orders_pkey", columnOf("SELECT IndexName FROM MSysIndexes WHERE TableID > 4"));
  EXPECT_EQ("", columnOf("SELECT * FROM MSysProcs"));
  EXPECT_EQ(ErrorCode::readOnly, tryRun("DELETE FROM MSysTables").code());
  const auto orders = records("Select * from [sales.orders]");
  ASSERT_TRUE(orders->setValue(1, std::string("changed")));
  ASSERT_TRUE(orders->update());
  EXPECT_EQ("changed", onServer("SELECT note FROM sales.orders"));
}

TEST_F(ServerDatabaseTest, DescribeTableTellsKeysTypesAndReferences) {
  runOnServer("CREATE TABLE authors (id integer PRIMARY KEY, name text)", database_);
  runOnServer("CREATE TABLE books (id bigint PRIMARY KEY, author integer NOT NULL REFERENCES authors)",
              database_);
  open();
  TableSchema schema;
  ASSERT_TRUE(backend_->describeTable("BOOKS", &schema));
  ASSERT_EQ(2u, schema.columns.size());
  EXPECT_TRUE(schema.ordinary);
  EXPECT_EQ("bigint", schema.columns[0].declaredType);
  EXPECT_EQ(1, schema.columns[0].keyPosition);
  EXPECT_TRUE(schema.columns[1].notNull);
  EXPECT_EQ("authors", schema.columns[1].reference.table);
  EXPECT_EQ("id", schema.columns[1].reference.column);
  ASSERT_TRUE(backend_->describeTable("none", &schema));
  EXPECT_TRUE(schema.columns.empty());
}

TEST_F(ServerDatabaseTest, SavedQueriesLiveInTheirTable) {
  open();
  constexpr const char* kSelect = "Select * from QuivaneQueries ORDER BY QueryName";
  std::unique_ptr<Recordset> none;
  EXPECT_EQ(ErrorCode::noTable, tryOpen(kSelect, &none).code());
  run("CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)");
  {
    const auto queries = records(kSelect);
    ASSERT_EQ(2u, queries->columns().size()) << "the key that the table has been given is no field";
    EXPECT_EQ("QueryName", queries->columns()[0].name);
    EXPECT_EQ("SQL", queries->columns()[1].name);
    for (const char* name : {"b", "a", "b"}) {
      ASSERT_TRUE(queries->addNew());
      ASSERT_TRUE(queries->setValue(0, std::string(name)));
      ASSERT_TRUE(queries->setValue(1, std::string("Select * from [") + name + "]"));
      ASSERT_TRUE(queries->update());
    }
  }
  const auto queries = records(kSelect);
  ASSERT_TRUE(queries->move(1, MoveOrigin::first));
  ASSERT_TRUE(queries->remove());
  EXPECT_EQ("a b", columnOf(kSelect));
  run("DROP TABLE 'QuivaneQueries'");
  EXPECT_EQ(ErrorCode::noTable, tryOpen(kSelect, &none).code());
}

TEST_F(ServerDatabaseTest, DatabasesOfFilesAreMadeAndDroppedWhileAServersIsOpenButNoLinkIs) {
  open();
  const std::string file = utf8Of(folder_.file("new.cdb"));
  run("CREATE DATABASE '" + file + "'");
  EXPECT_TRUE(std::filesystem::exists(folder_.file("new.cdb")));
  run("DROP DATABASE '" + file + "'");
  EXPECT_FALSE(std::filesystem::exists(folder_.file("new.cdb")));
  const Status dropped = tryRun("DROP DATABASE '" + utf8Of(path_) + "'");
  EXPECT_EQ(ErrorCode::illegalOperation, dropped.code());
  EXPECT_NE(std::string::npos, dropped.message().find("link to a server's database")) << dropped.message();
  EXPECT_EQ(linkTo(database_), testsupport::contentOf(path_));
}

TEST_F(ServerDatabaseTest, WhatIsNotPossibleIsRefusedAndSaysSo) {
  open();
  EXPECT_EQ(ErrorCode::notAvailable, backend_->saveCopy(utf8Of(folder_.file("copy.cdb"))).code());
  EXPECT_FALSE(std::filesystem::exists(folder_.file("copy.cdb")));
  EXPECT_EQ(ErrorCode::errorsInCommand, tryRun("VACUUM").code());
  EXPECT_EQ(ErrorCode::errorsInCommand, tryRun("BEGIN").code());
  EXPECT_EQ(ErrorCode::noTable, tryRun("SELECT 1").code());
  EXPECT_EQ(ErrorCode::noCommand, tryRun(" ; ").code());
  EXPECT_EQ(nullptr, backend_->history());
}

}  // namespace
}  // namespace store
