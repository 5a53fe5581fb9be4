// Tables: create, drop, list; field names of a statement.
#include <string>

#include "data/values/field_kinds.h"
#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TablesTest : public DataTest {
 protected:
  std::vector<std::wstring> tables() {
    NameList names;
    EXPECT_TRUE(database_.listTables(names));
    return namesOf(names);
  }
};

TEST_F(TablesTest, ANewFileListsNoTables) {
  openWith({});
  EXPECT_THAT(tables(), IsEmpty());
}

TEST_F(TablesTest, ACatalogueOfSystemTablesAndSavedQueriesListsTheSavedQueries) {
  openWith({});
  ASSERT_TRUE(database_.addQuery({L"q", L"Select 1"}));
  EXPECT_THAT(tables(), ElementsAre(L"QuivaneQueries"));
}

TEST_F(TablesTest, TablesAreListedInTheOrderOfTheirMaking) {
  openWith({});
  EXPECT_TRUE(database_.createTable(L"zebra", L"a Integer"));
  EXPECT_TRUE(database_.createTable(L"apple", L"a Integer"));
  EXPECT_THAT(tables(), ElementsAre(L"zebra", L"apple"));
}

TEST_F(TablesTest, ListingReplacesWhatTheListHeld) {
  openWith({L"CREATE TABLE t (a integer)"});
  NameList names;
  names.append(L"old");
  names.append(L"older");
  EXPECT_TRUE(database_.listTables(names));
  EXPECT_THAT(namesOf(names), ElementsAre(L"t"));
}

TEST_F(TablesTest, ACatalogueThatDoesNotOpenLeavesTheListAsItWas) {
  NameList names;
  names.append(L"old");
  Outcome read;
  EXPECT_TRUE(database_.listTables(names, &read)) << "no file is open";
  EXPECT_FALSE(read);
  EXPECT_THAT(namesOf(names), ElementsAre(L"old"));
}

TEST_F(TablesTest, CreatesAndDropsTablesWithBlanksAndApostrophesInTheirNames) {
  openWith({});
  for (const wchar_t* name : {L"Full names", L"Customer's", L"'", L"x' y' z"}) {
    EXPECT_TRUE(database_.createTable(name, L"a Integer ,'Full name' Varchar (255)"))
        << testing::PrintToString(std::wstring(name));
    EXPECT_THAT(tables(), ElementsAre(name));
    const std::wstring select = L"Select * from [" + std::wstring(name) + L"]";
    EXPECT_TRUE(database_.openRecordset(select.c_str())) << testing::PrintToString(select);
    EXPECT_STREQ(database_.fieldName(1).text(), L"Full name");
    database_.closeRecordset();
    EXPECT_TRUE(database_.dropTable(name)) << testing::PrintToString(std::wstring(name));
    EXPECT_THAT(tables(), IsEmpty());
  }
}

TEST_F(TablesTest, ATableThatExistsIsNotCreatedAndOneThatDoesNotIsNotDropped) {
  openWith({L"CREATE TABLE t (a integer)"});
  EXPECT_FALSE(database_.createTable(L"t", L"a Integer"));
  EXPECT_FALSE(database_.createTable(L"u", L"no such ( list"));
  EXPECT_FALSE(database_.dropTable(L"u"));
  EXPECT_THAT(tables(), ElementsAre(L"t"));
}

TEST_F(TablesTest, EveryDesignedTypeMakesAFieldOfItsCode) {
  openWith({});
  const FieldType expected[] = {FieldType::bit,         FieldType::date,    FieldType::real,
                                FieldType::smallInt,    FieldType::integer, FieldType::varWChar,
                                FieldType::longVarWChar};
  ASSERT_EQ(offeredFieldKinds().size(), std::size(expected));
  for (std::size_t row = 0; row < std::size(expected); ++row) {
    EXPECT_EQ(offeredFieldKinds()[row].type, expected[row]) << row;
    const std::wstring name = L"t" + std::to_wstring(row);
    const std::wstring columns = std::wstring(L"a ") + offeredFieldKinds()[row].sqlType;
    ASSERT_TRUE(database_.createTable(name.c_str(), columns.c_str())) << row;
    ASSERT_TRUE(database_.openRecordset((L"Select * from [" + name + L"]").c_str())) << row;
    EXPECT_EQ(database_.fieldType(0), expected[row]) << row;
  }
}

TEST_F(TablesTest, FieldNamesOfAStatementAreListedWithoutTouchingTheCurrentRecordset) {
  openTable(L"a integer, b integer", {L"1, 2", L"3, 4"});
  ASSERT_TRUE(database_.moveTo(2));
  NameList names;
  database_.listFieldNames(L"Select b, a as 'other name' from t", names);
  EXPECT_THAT(namesOf(names), ElementsAre(L"b", L"other name"));
  EXPECT_STREQ(database_.valueText(0).text(), L"3");
}

TEST_F(TablesTest, AStatementThatDoesNotOpenLeavesTheFieldNamesAsTheyWere) {
  openWith({});
  NameList names;
  names.append(L"old");
  database_.listFieldNames(L"Select * from missing", names);
  EXPECT_THAT(namesOf(names), ElementsAre(L"old"));
}

// ---- Against a catalogue of our own

class CatalogueTest : public testing::Test {
 protected:
  /// A catalogue with a field of names, and a record for each.
  void list(const wchar_t* field, std::initializer_list<const wchar_t*> names) {
    store_.fields.clear();
    store_.rows.clear();
    store_.fields.push_back({.name = L"TableID", .type = 202});
    store_.fields.push_back({.name = field, .type = 202});
    for (const wchar_t* name : names) {
      FakeRow row;
      row.push_back(Variant::fromText(L"1"));
      row.push_back(Variant::fromText(name));
      store_.rows.push_back(std::move(row));
    }
  }
  std::vector<std::wstring> tables() {
    NameList names;
    names.append(L"old");
    EXPECT_TRUE(database_.listTables(names));
    return namesOf(names);
  }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(CatalogueTest, IsOpenedAsATable) {
  tables();
  EXPECT_THAT(store_.statements, ElementsAre("Open MSysTables cursor 1 lock 3 options 2"));
  EXPECT_EQ(store_.openCursorCount(), 0);
}

TEST_F(CatalogueTest, NamesThatDifferFromASystemTableInLetterCaseAreUserTables) {
  list(L"TableName", {L"msysTables", L"MSysTables", L"MSYSFIELDS", L"MSysFields", L"MSysIndex",
                      L"MSysIndexes", L"MSysProcs", L"MSysProcs "});
  EXPECT_THAT(tables(), ElementsAre(L"msysTables", L"MSYSFIELDS", L"MSysIndex", L"MSysProcs "));
}

TEST_F(CatalogueTest, RecordsWithoutAFieldOfNamesAreSkipped) {
  for (const wchar_t* field : {L"tablename", L"Name"}) {
    list(field, {L"t", L"u", L"v"});
    EXPECT_THAT(tables(), IsEmpty()) << field;
  }
}

TEST_F(CatalogueTest, CreatingAndDroppingATableExecuteTheirStatements) {
  EXPECT_TRUE(database_.createTable(L"my t", L"Id Integer ,'Full name' Varchar (255)"));
  EXPECT_TRUE(database_.dropTable(L"my t"));
  EXPECT_THAT(store_.statements,
              ElementsAre("Execute CREATE TABLE 'my t' (Id Integer ,'Full name' Varchar (255)) options 1",
                          "Execute DROP TABLE 'my t' options 1"));
  EXPECT_EQ(store_.cursors.size(), 1u) << "a recordset of a statement was kept";
}

TEST_F(CatalogueTest, NamesThatWouldOverflowAStatementAreRefusedAndNothingSent) {
  const std::wstring longest(199 - 14 - 3 - 1 - 9, L'x');
  EXPECT_TRUE(database_.createTable(longest.c_str(), L"a Integer"));
  store_.statements.clear();
  EXPECT_FALSE(database_.createTable((longest + L"x").c_str(), L"a Integer"));
  EXPECT_FALSE(database_.createTable(longest.c_str(), L"aa Integer"));
  EXPECT_FALSE(database_.createTable(L"t", std::wstring(1'000'000, L'x').c_str()));
  EXPECT_FALSE(database_.dropTable(std::wstring(199, L'x').c_str()));
  EXPECT_THAT(store_.statements, IsEmpty());
}

// ---- A list that can't be read to its end

class UnreadableListsTest : public testing::Test {
 protected:
  void SetUp() override {
    store_.fields.push_back({.name = L"TableName", .type = 203});
    for (const wchar_t* name : {L"t", L"u"}) {
      FakeRow row;
      row.push_back(Variant::fromText(name));
      store_.rows.push_back(std::move(row));
    }
    ASSERT_TRUE(database_.open(L"a.cdb"));
    names_.append(L"old");
  }
  /// The lists, which are as they were, and whether they could be read.
  bool areRead() {
    Outcome tables;
    Outcome queries;
    EXPECT_TRUE(database_.listTables(names_, &tables));
    EXPECT_TRUE(database_.listQueries(names_, &queries));
    EXPECT_EQ(static_cast<bool>(tables), static_cast<bool>(queries));
    return static_cast<bool>(tables);
  }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
  NameList names_;
};

TEST_F(UnreadableListsTest, ANameThatCantBeFetchedIsNoEmptyName) {
  store_.fields[0].result = E_FAIL;
  Outcome read;
  EXPECT_TRUE(database_.listQueries(names_, &read));
  EXPECT_FALSE(read);
  EXPECT_THAT(namesOf(names_), ElementsAre(L"old"));
}

TEST_F(UnreadableListsTest, AListThatEndsTooEarlyIsNotTakenForAll) {
  store_.moveResult = E_FAIL;
  EXPECT_FALSE(areRead());
  EXPECT_THAT(namesOf(names_), ElementsAre(L"old"));
}

TEST_F(UnreadableListsTest, AWholeListIsRead) {
  EXPECT_TRUE(areRead());
  EXPECT_THAT(namesOf(names_), ElementsAre(L"t", L"u"));
}

}  // namespace
