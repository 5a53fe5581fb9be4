#include <filesystem>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

// The statements as the application spells them.

namespace automationtest {
namespace {

using testing::ElementsAre;

class Statements : public AutomationTest {
 protected:
  /// Runs a statement as the source of a recordset on the store without a database.
  HRESULT runOnStore(const std::wstring& statement) {
    const ComPtr<IAdoceConnection> connection = newConnection();
    EXPECT_EQ(openAt(connection.get(), L""), S_OK);
    const ComPtr<IAdoceRecordset> recordset = newRecordset();
    const HRESULT result = openOn(recordset.get(), connection.get(), statement, kDynamic);
    EXPECT_EQ(stateOf(recordset.get()), 0);
    return result;
  }
  HRESULT createTable(IAdoceConnection* connection, const std::wstring& name, const std::wstring& columns) {
    return execute(connection, L"CREATE TABLE '" + name + L"' (" + columns + L")");
  }
  std::vector<std::wstring> fieldNames(IAdoceRecordset* recordset) {
    std::vector<std::wstring> names;
    for (long index = 0; const ComPtr<IAdoceField> field = fieldOf(recordset, index); ++index) {
      names.push_back(nameOf(field.get()));
    }
    return names;
  }
  std::vector<std::wstring> tables(IAdoceConnection* connection) {
    return columnTexts(recordsOfTable(connection, L"MSysTables").get(), 0);
  }
};

TEST_F(Statements, CreateDatabaseMakesAnEmptyOne) {
  const std::wstring path = pathOf(L"new.cdb");
  ASSERT_EQ(runOnStore(L"CREATE DATABASE '" + path + L"'"), S_OK);
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_THAT(tables(connectTo(path).get()),
              ElementsAre(L"MSysFields", L"MSysTables", L"MSysIndexes", L"MSysProcs"));
}

TEST_F(Statements, CreateDatabaseTakesBlanksAndApostrophes) {
  const std::wstring path = pathOf(L"Tom's new books.cdb");
  ASSERT_EQ(runOnStore(L"CREATE DATABASE '" + path + L"'"), S_OK);
  EXPECT_TRUE(std::filesystem::exists(path));
  ASSERT_EQ(runOnStore(L"DROP DATABASE '" + path + L"'"), S_OK);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Statements, CreateDatabaseNeverTouchesAFileThatIsThere) {
  const std::wstring path = pathOf(L"text.cdb");
  writeFile(path, "not a database");
  EXPECT_EQ(runOnStore(L"CREATE DATABASE '" + path + L"'"), objectModelError(3731));
  EXPECT_EQ(contentOf(path), "not a database");
  EXPECT_LT(runOnStore(L"CREATE DATABASE '" + folder_.path().wstring() + L"'"), 0);
  EXPECT_LT(runOnStore(L"CREATE DATABASE '" + pathOf(L"no such folder\\x.cdb") + L"'"), 0);
}

TEST_F(Statements, DropDatabaseDeletesDatabasesOnly) {
  EXPECT_LT(runOnStore(L"DROP DATABASE '" + pathOf(L"missing.cdb") + L"'"), 0);
  const std::wstring path = pathOf(L"text.cdb");
  writeFile(path, "not a database");
  EXPECT_LT(runOnStore(L"DROP DATABASE '" + path + L"'"), 0);
  EXPECT_EQ(contentOf(path), "not a database");
  const std::wstring database = makeDatabase();
  EXPECT_EQ(runOnStore(L"DROP DATABASE '" + database + L"'"), S_OK);
  EXPECT_FALSE(std::filesystem::exists(database));
}

TEST_F(Statements, DropDatabaseSparesOneThatIsOpen) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  const std::wstring path = pathOf(L"test.cdb");
  EXPECT_EQ(execute(connection.get(), L"DROP DATABASE '" + path + L"'"), objectModelError(3730));
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(createTable(connection.get(), L"T", L"A Text"), S_OK);
}

TEST_F(Statements, CreateTableTakesTheColumnsAsTheDesignerSpellsThem) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  ASSERT_EQ(createTable(connection.get(), L"People",
                        L"Id Integer ,'Full name' Varchar (255) ,Born Datetime ,Member Bit ,Weight Float ,"
                        L"Age SmallInt ,Notes Text"),
            S_OK);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [People]");
  EXPECT_THAT(fieldNames(recordset.get()),
              ElementsAre(L"Id", L"Full name", L"Born", L"Member", L"Weight", L"Age", L"Notes"));
  std::vector<long> types;
  for (long index = 0; index < 7; ++index) {
    types.push_back(0);
    EXPECT_EQ(fieldOf(recordset.get(), index)->get_Type(&types.back()), S_OK);
  }
  EXPECT_THAT(types, ElementsAre(3, 202, 7, 11, 5, 2, 203));
  EXPECT_THAT(tables(connection.get()),
              ElementsAre(L"MSysFields", L"MSysTables", L"MSysIndexes", L"MSysProcs", L"People"));
}

TEST_F(Statements, TextsThatLookLikeNumbersStayWhatTheyAreInEveryTypeOfText) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  ASSERT_EQ(createTable(connection.get(), L"T", L"A varchar (20) ,B text ,C memo"), S_OK);
  ASSERT_EQ(execute(connection.get(), L"ALTER TABLE T ADD COLUMN D memo"), S_OK);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [T]");
  ASSERT_EQ(addNew(recordset.get()), S_OK);
  for (long index = 0; index < 4; ++index) ASSERT_EQ(put(recordset.get(), index, variant(L"007")), S_OK);
  ASSERT_EQ(update(recordset.get()), S_OK);
  for (long index = 0; index < 4; ++index) EXPECT_EQ(textOf(recordset.get(), index), L"007") << index;
}

TEST_F(Statements, NamesWithBlanksAndApostrophesWork) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  for (const wchar_t* name : {L"Customer's", L"My table", L"'", L" ", L"O'Neil's own table", L"Order",
                              L"\u0416\u65e5 \U0001F4D7"}) {
    std::wstring doubled = name;
    for (std::size_t at = 0; (at = doubled.find(L'\'', at)) != doubled.npos; at += 2)
      doubled.insert(at, 1, L'\'');
    ASSERT_EQ(createTable(connection.get(), doubled,
                          L"'Customer''s' Text ,'It''s' Integer ,'Full name' Varchar (255) ,Order Bit"),
              S_OK)
        << name;
    const std::wstring select = L"Select * from [" + std::wstring(name) + L"]";
    const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), select);
    EXPECT_EQ(fieldNames(recordset.get()).at(0), L"Customer's");
    EXPECT_EQ(fieldNames(recordset.get()).at(2), L"Full name");
    ASSERT_EQ(addNew(recordset.get()), S_OK);
    ASSERT_EQ(put(recordset.get(), 0, variant(L"x")), S_OK);
    ASSERT_EQ(put(recordset.get(), 3, boolean(1)), S_OK);
    ASSERT_EQ(update(recordset.get()), S_OK);
    EXPECT_EQ(recordCount(recordsOf(connection.get(), select).get()), 1);
    ASSERT_EQ(recordset->Close(), S_OK);
    EXPECT_EQ(execute(connection.get(), L"DROP TABLE '" + std::wstring(name) + L"'"), S_OK) << name;
    EXPECT_EQ(tables(connection.get()).size(), 4u);
  }
}

TEST_F(Statements, CatalogueListsTheDoubledQuoteAsOne) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  ASSERT_EQ(createTable(connection.get(), L"Customer''s", L"A Text"), S_OK);
  EXPECT_EQ(tables(connection.get()).back(), L"Customer's");
  EXPECT_EQ(recordCount(recordsOf(connection.get(), L"Select * from [Customer's]").get()), 0);
}

TEST_F(Statements, CreateTableTwiceIsRefused) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  ASSERT_EQ(createTable(connection.get(), L"orders", L"A Text"), S_OK);
  EXPECT_EQ(createTable(connection.get(), L"ORDERS", L"A Text"), kTableExists);
  EXPECT_LT(createTable(connection.get(), L"T", L"A Text ,A Text"), 0);
  EXPECT_LT(createTable(connection.get(), L"MSysTables", L"A Text"), 0);
}

TEST_F(Statements, DropTableOfAMissingTableIsRefused) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  EXPECT_EQ(execute(connection.get(), L"DROP TABLE 'Nothing'"), kNoTable);
}

TEST_F(Statements, CatalogueAnswersToSelectAndAsATable) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  ASSERT_EQ(createTable(connection.get(), L"mSysTables2", L"A Text"), S_OK);
  for (const wchar_t* name : {L"MSysTables", L"MSysFields", L"MSysIndexes", L"MSysProcs"}) {
    EXPECT_GE(recordCount(recordsOf(connection.get(), name, kKeyset, kOptimistic, kTable).get()), 0);
    EXPECT_GE(recordCount(recordsOf(connection.get(), L"Select * from [" + std::wstring(name) + L"]").get()),
              0);
  }
  const ComPtr<IAdoceRecordset> recordset = recordsOfTable(connection.get(), L"MSysTables");
  EXPECT_THAT(fieldNames(recordset.get()), testing::IsSupersetOf({L"TableName", L"TableID", L"TableFlags"}));
}

class SavedQueries : public Statements {
 protected:
  static constexpr wchar_t kCreate[] = L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)";
  static constexpr wchar_t kSelect[] = L"Select * from QuivaneQueries ORDER BY QueryName";

  void add(const std::wstring& name, const std::wstring& sql) {
    const ComPtr<IAdoceRecordset> recordset = recordsOf(connection_.get(), kSelect);
    recordset->MoveLast();
    ASSERT_EQ(addNew(recordset.get()), S_OK);
    ASSERT_EQ(put(recordset.get(), 0, variant(name)), S_OK);
    ASSERT_EQ(put(recordset.get(), 1, variant(sql)), S_OK);
    ASSERT_EQ(update(recordset.get()), S_OK);
    ASSERT_EQ(recordset->Close(), S_OK);
  }
  std::vector<std::wstring> names() { return columnTexts(recordsOf(connection_.get(), kSelect).get(), 0); }

  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
};

TEST_F(SavedQueries, TableIsMissingUntilMade) {
  EXPECT_EQ(openOn(newRecordset().get(), connection_.get(), kSelect), kNoTable);
  ASSERT_EQ(execute(connection_.get(), kCreate), S_OK);
  EXPECT_THAT(names(), ElementsAre());
  EXPECT_EQ(tables(connection_.get()).back(), L"QuivaneQueries");
}

TEST_F(SavedQueries, ComeInTheOrderOfTheirNames) {
  ASSERT_EQ(connection_->put_ConnectionString(text(L"").get()), S_OK);
  ASSERT_EQ(execute(connection_.get(), kCreate), S_OK);
  add(L"third", L"SELECT 3");
  add(L"first", L"Select * from [My table] WHERE Name = 'it''s'");
  add(L"second", L"SELECT 2");
  add(L"first", L"SELECT 1");
  EXPECT_THAT(names(), ElementsAre(L"first", L"first", L"second", L"third"));

  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection_.get(), kSelect);
  ASSERT_EQ(move(recordset.get(), 2, 1), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 1), L"SELECT 2");
  ASSERT_EQ(put(recordset.get(), 0, variant(L"zero")), S_OK);
  ASSERT_EQ(update(recordset.get()), S_OK);
  ASSERT_EQ(recordset->Close(), S_OK);
  EXPECT_THAT(names(), ElementsAre(L"first", L"first", L"third", L"zero"));

  const ComPtr<IAdoceRecordset> deleting = recordsOf(connection_.get(), kSelect);
  ASSERT_EQ(move(deleting.get(), 1, 1), S_OK);
  ASSERT_EQ(deleting->Delete(1), S_OK);
  ASSERT_EQ(deleting->Close(), S_OK);
  EXPECT_THAT(names(), ElementsAre(L"first", L"third", L"zero"));
}

class Selects : public Statements {
 protected:
  Selects() {
    EXPECT_EQ(createTable(connection_.get(), L"Books", L"Id Integer ,Title Varchar (255) ,Added Datetime"),
              S_OK);
    for (const wchar_t* values :
         {L"1, 'Walden', '2001-03-09'", L"2, \"Tom's\", '2002-01-02 03:04:05'", L"10, 'Emma', NULL"}) {
      EXPECT_EQ(execute(connection_.get(),
                        L"INSERT INTO Books (Id, Title, Added) VALUES (" + std::wstring(values) + L")"),
                S_OK);
    }
  }
  std::vector<std::wstring> titles(const std::wstring& rest) {
    return columnTexts(recordsOf(connection_.get(), L"SELECT Title FROM " + rest).get(), 0);
  }

  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
};

TEST_F(Selects, FilterOrderAndCompare) {
  EXPECT_THAT(titles(L"Books WHERE Id > 1 ORDER BY Title"), ElementsAre(L"Emma", L"Tom's"));
  EXPECT_THAT(titles(L"[Books] WHERE Title LIKE 'w%'"), ElementsAre(L"Walden"));
  EXPECT_THAT(titles(L"Books WHERE Title LIKE 'E__a'"), ElementsAre(L"Emma"));
  EXPECT_THAT(titles(L"Books WHERE Id = '10'"), ElementsAre(L"Emma"));
  EXPECT_THAT(titles(L"Books WHERE Title = 'Tom''s'"), ElementsAre(L"Tom's"));
  EXPECT_THAT(titles(L"Books WHERE Added = '2001/03/09'"), ElementsAre(L"Walden"));
  EXPECT_THAT(titles(L"Books WHERE Added IS NULL;"), ElementsAre(L"Emma"));
  EXPECT_THAT(titles(L"Books INNER JOIN MSysTables ON Books.Id < 2 WHERE TableName = 'Books'"),
              ElementsAre(L"Walden"));
  EXPECT_THAT(titles(L"Books ORDER BY Id DESC, Title ASC"), ElementsAre(L"Emma", L"Tom's", L"Walden"));
}

TEST_F(Selects, WithoutRecordsAreOpenAllTheSame) {
  EXPECT_THAT(titles(L"Books WHERE 1 = 0"), ElementsAre());
}

TEST_F(Selects, StatementsThatReturnNothingLeaveTheRecordsetClosed) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  for (const wchar_t* statement :
       {L"CREATE TABLE 'U' (A Text)", L"CREATE INDEX Ix ON U (A)", L"ALTER TABLE U ADD COLUMN B Text",
        L"INSERT INTO U VALUES ('a', 'b')", L"UPDATE U SET A = 'c'", L"DELETE FROM U", L"DROP TABLE 'U'"}) {
    ASSERT_EQ(openOn(recordset.get(), connection_.get(), statement), S_OK) << statement;
    EXPECT_EQ(stateOf(recordset.get()), 0);
  }
}

}  // namespace
}  // namespace automationtest
