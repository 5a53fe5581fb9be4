#include <filesystem>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

class Connection : public AutomationTest {
 protected:
  /// A database with a table T of three records.
  std::wstring makeFilledDatabase() {
    std::wstring path = makeDatabase();
    SqliteFile(path).run("CREATE TABLE T (Name TEXT); INSERT INTO T VALUES ('a'), ('b'), ('c')");
    return path;
  }
};

std::wstring propertyOf(IAdoceConnection* connection,
                        HRESULT (STDMETHODCALLTYPE IAdoceConnection::*getter)(BSTR*)) {
  UniqueBstr value;
  EXPECT_EQ((connection->*getter)(value.put()), S_OK);
  return value.get();
}

TEST_F(Connection, BeginsClosed) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  EXPECT_EQ(stateOf(connection.get()), 0);
  EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_ConnectionString), L"");
  EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_Provider), L"CEDB");
  EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_Version), L"3.1");
}

TEST_F(Connection, TakesItsProviderInAnyLetterCaseOrNone) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  for (const wchar_t* name : {L"CEDB", L"cedb", L"CeDb", L""}) {
    EXPECT_EQ(connection->put_Provider(text(name).get()), S_OK) << name;
  }
  EXPECT_EQ(connection->put_Provider(nullptr), S_OK);
  EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_Provider), L"CEDB");
}

TEST_F(Connection, RefusesAnotherProvider) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  EXPECT_EQ(connection->put_Provider(text(L"CEDB2").get()), objectModelError(3706));
  EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_Provider), L"CEDB");

  const std::wstring path = makeDatabase();
  EXPECT_EQ(openAt(connection.get(), L"Provider=Other;Data Source=" + path), objectModelError(3706));
  EXPECT_EQ(stateOf(connection.get()), 0);
}

TEST_F(Connection, OpensByTheConnectionStringInEveryForm) {
  const std::wstring path = makeFilledDatabase();
  const ComPtr<IAdoceConnection> connection = newConnection();
  for (const std::wstring& form : {
           path,
           L"Data Source=" + path,
           L"data source = " + path + L" ;",
           L"Provider=CEDB;Data Source=" + path,
           L"DATA SOURCE=\"" + path + L"\";PROVIDER=cedb",
           L"Data Source='" + path + L"'",
           L"User ID=;Data Source=" + path + L";Password=",
       }) {
    ASSERT_EQ(openAt(connection.get(), form), S_OK) << form;
    EXPECT_EQ(recordCount(recordsOfTable(connection.get(), L"T").get()), 3);
    ASSERT_EQ(connection->Close(), S_OK);
    // The same as the argument of Open, the property being another.
    ASSERT_EQ(connection->put_ConnectionString(text(L"nowhere.cdb").get()), S_OK);
    ASSERT_EQ(connection->Open(text(form).get(), nullptr, nullptr, -1), S_OK);
    EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_ConnectionString), form);
    ASSERT_EQ(connection->Close(), S_OK);
  }
}

TEST_F(Connection, PathMayHoldSemicolonAndEqualsSign) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase(L"a=b;c.cdb");
  EXPECT_EQ(stateOf(connection.get()), 1);
}

TEST_F(Connection, EmptyTextReachesTheStoreWithoutADatabase) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  ASSERT_EQ(openAt(connection.get(), L""), S_OK);
  EXPECT_EQ(stateOf(connection.get()), 1);
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_LT(openOn(recordset.get(), connection.get(), L"MSysTables", kKeyset, kOptimistic, kTable), 0);
  EXPECT_LT(execute(connection.get(), L"CREATE TABLE 'T' (A Text)"), 0);
  EXPECT_EQ(connection->Close(), S_OK);
}

TEST_F(Connection, NullConnectionStringIsTheEmptyOne) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  ASSERT_EQ(connection->put_ConnectionString(text(L"x").get()), S_OK);
  ASSERT_EQ(connection->put_ConnectionString(nullptr), S_OK);
  EXPECT_EQ(propertyOf(connection.get(), &IAdoceConnection::get_ConnectionString), L"");
  EXPECT_EQ(connection->Open(nullptr, nullptr, nullptr, -1), S_OK);
}

TEST_F(Connection, OpenWhileOpenIsRefused) {
  const ComPtr<IAdoceConnection> connection = openNewDatabase();
  EXPECT_EQ(connection->Open(nullptr, nullptr, nullptr, -1), objectModelError(3705));
  EXPECT_EQ(connection->put_Provider(text(L"CEDB").get()), objectModelError(3705));
  EXPECT_EQ(stateOf(connection.get()), 1);
}

TEST_F(Connection, CloseWhileClosedIsRefused) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  EXPECT_EQ(connection->Close(), objectModelError(3704));
}

TEST_F(Connection, LivesAgainAfterClose) {
  const std::wstring path = makeFilledDatabase();
  const ComPtr<IAdoceConnection> connection = newConnection();
  for (int round = 0; round < 5; ++round) {
    ASSERT_EQ(openAt(connection.get(), path), S_OK);
    EXPECT_EQ(recordCount(recordsOf(connection.get(), L"Select * from [T]").get()), 3);
    ASSERT_EQ(connection->Close(), S_OK);
    EXPECT_EQ(stateOf(connection.get()), 0);
  }
}

TEST_F(Connection, LivesAgainAfterAFailedOpen) {
  const std::wstring path = makeFilledDatabase();
  const ComPtr<IAdoceConnection> connection = newConnection();
  EXPECT_LT(openAt(connection.get(), pathOf(L"missing.cdb")), 0);
  EXPECT_EQ(stateOf(connection.get()), 0);
  EXPECT_EQ(openAt(connection.get(), path), S_OK);
}

TEST_F(Connection, ConnectionStringSetWhileOpenTakesEffectAtTheNextOpen) {
  const std::wstring other = makeDatabase(L"other.cdb");
  const ComPtr<IAdoceConnection> connection = connectTo(makeFilledDatabase());
  ASSERT_EQ(connection->put_ConnectionString(text(L"").get()), S_OK);
  EXPECT_EQ(recordCount(recordsOf(connection.get(), L"Select * from [T]").get()), 3);
  ASSERT_EQ(connection->put_ConnectionString(text(other).get()), S_OK);
  EXPECT_EQ(recordCount(recordsOf(connection.get(), L"Select * from [T]").get()), 3);

  ASSERT_EQ(connection->Close(), S_OK);
  ASSERT_EQ(connection->Open(nullptr, nullptr, nullptr, -1), S_OK);
  EXPECT_EQ(openOn(newRecordset().get(), connection.get(), L"Select * from [T]"), kNoTable);
}

TEST_F(Connection, CloseClosesItsRecordsetsAndAllThatHangsOnThem) {
  const std::wstring path = makeFilledDatabase();
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const ComPtr<IAdoceRecordset> first = recordsOf(connection.get(), L"Select * from [T]");
  const ComPtr<IAdoceRecordset> second = recordsOf(connection.get(), L"SELECT count(*) FROM T");
  ComPtr<IAdoceRecordset> copy;
  ASSERT_EQ(first->Clone(copy.put()), S_OK);
  ComPtr<IAdoceFields> fields;
  ASSERT_EQ(first->get_Fields(fields.put()), S_OK);
  const ComPtr<IAdoceField> field = fieldOf(first.get(), 0L);

  ASSERT_EQ(connection->Close(), S_OK);
  long number = 17;
  for (const ComPtr<IAdoceRecordset>& recordset : {first, second, copy}) {
    EXPECT_EQ(stateOf(recordset.get()), 0);
    EXPECT_EQ(recordset->MoveNext(), objectModelError(3704));
    EXPECT_EQ(recordset->Close(), objectModelError(3704));
  }
  EXPECT_EQ(fields->get_Count(&number), objectModelError(3704));
  OwnedVariant value;
  EXPECT_EQ(field->get_Value(value.get()), objectModelError(3704));
  EXPECT_EQ(field->put_Value(*variant(L"x")), objectModelError(3704));
  EXPECT_EQ(field->get_Type(&number), objectModelError(3704));
  UniqueBstr name;
  EXPECT_EQ(field->get_Name(name.put()), objectModelError(3704));
  EXPECT_EQ(number, 17);
  EXPECT_EQ(described(value), "EMPTY");

  // Nothing holds the file, although all these objects still live.
  EXPECT_TRUE(std::filesystem::remove(path));
}

TEST_F(Connection, RecordsetOfAClosedConnectionOpensOnAnother) {
  const std::wstring path = makeFilledDatabase();
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const ComPtr<IAdoceRecordset> recordset = recordsOfTable(connection.get(), L"T");
  ASSERT_EQ(connection->Close(), S_OK);
  const ComPtr<IAdoceConnection> other = connectTo(path);
  ASSERT_EQ(openOn(recordset.get(), other.get(), L"T", kKeyset, kOptimistic, kTable), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
}

TEST_F(Connection, RecordsetKeepsItsConnectionAlive) {
  const std::wstring path = makeFilledDatabase();
  ComPtr<IAdoceRecordset> recordset = recordsOf(connectTo(path).get(), L"Select * from [T]");
  EXPECT_EQ(recordset->MoveLast(), S_OK);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");

  OwnedVariant active;
  ASSERT_EQ(recordset->get_ActiveConnection(active.get()), S_OK);
  ComPtr<IAdoceConnection> connection;
  ASSERT_EQ(V_DISPATCH(active.get())
                ->QueryInterface(__uuidof(IAdoceConnection), reinterpret_cast<void**>(connection.put())),
            S_OK);
  EXPECT_EQ(stateOf(connection.get()), 1);
}

TEST_F(Connection, FieldOutlivesItsRecordset) {
  const std::wstring path = makeFilledDatabase();
  ComPtr<IAdoceField> field;
  {
    const ComPtr<IAdoceConnection> connection = connectTo(path);
    field = fieldOf(recordsOf(connection.get(), L"Select * from [T]").get(), 0L);
  }
  OwnedVariant value;
  EXPECT_EQ(field->get_Value(value.get()), S_OK);
  EXPECT_EQ(described(value), "BSTR a");
  field = {};
  EXPECT_TRUE(std::filesystem::remove(path));
}

TEST_F(Connection, RelativePathStartsFromTheCurrentFolder) {
  makeFilledDatabase();
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  const ComPtr<IAdoceConnection> connection = connectTo(L"test.cdb");
  std::filesystem::current_path(before);
  EXPECT_EQ(recordCount(recordsOfTable(connection.get(), L"T").get()), 3);
}

TEST_F(Connection, PathMayHoldEveryScript) {
  const ComPtr<IAdoceConnection> connection =
      openNewDatabase(L"\u03a3\u0434\u65e5\u672c \U0001F4D7 it's.cdb");
  EXPECT_EQ(execute(connection.get(), L"CREATE TABLE 'T' (A Text)"), S_OK);
}

TEST_F(Connection, PathMayBeLongerThan260Characters) {
  // The prefix lets this test's own calls reach that far.
  const std::wstring prefix = LR"(\\?\)";
  std::vector<std::wstring> levels = {folder_.path().wstring()};
  for (int level = 0; level < 4; ++level) {
    levels.push_back(levels.back() + L"\\" + std::wstring(80, L'd'));
    ASSERT_TRUE(CreateDirectoryW((prefix + levels.back()).c_str(), nullptr));
  }
  const std::wstring path = levels.back() + L"\\test.cdb";
  ASSERT_TRUE(CopyFileW(makeFilledDatabase().c_str(), (prefix + path).c_str(), TRUE));

  const ComPtr<IAdoceConnection> connection = connectTo(path);
  EXPECT_EQ(execute(connection.get(), L"DELETE FROM T"), S_OK);
  EXPECT_EQ(recordCount(recordsOfTable(connection.get(), L"T").get()), 0);
  EXPECT_EQ(connection->Close(), S_OK);

  EXPECT_TRUE(DeleteFileW((prefix + path).c_str()));
  for (std::size_t level = levels.size() - 1; level > 0; --level) {
    EXPECT_TRUE(RemoveDirectoryW((prefix + levels[level]).c_str()));
  }
}

TEST_F(Connection, CountsWhatOthersHaveChanged) {
  const std::wstring path = makeFilledDatabase();
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const auto count = [&] {
    hyper counted = -1;
    EXPECT_EQ(connection->CountOthersChanges(&counted), S_OK);
    return counted;
  };
  const hyper first = count();
  EXPECT_EQ(execute(connection.get(), L"INSERT INTO T VALUES ('own')"), S_OK);
  EXPECT_EQ(count(), first);
  SqliteFile(path).run("INSERT INTO T VALUES ('other')");
  const hyper second = count();
  EXPECT_NE(second, first);
  EXPECT_EQ(count(), second);
  EXPECT_EQ(connection->CountOthersChanges(nullptr), E_POINTER);
  EXPECT_EQ(connection->Close(), S_OK);
  hyper counted = -1;
  EXPECT_EQ(connection->CountOthersChanges(&counted), objectModelError(3709));
  EXPECT_EQ(counted, -1);
}

TEST_F(Connection, HasNoServerToTellOfForAFile) {
  const ComPtr<IAdoceConnection> connection = connectTo(makeFilledDatabase());
  UniqueBstr text(SysAllocString(L"before"));
  EXPECT_EQ(connection->DescribeServer(text.put()), S_OK);
  EXPECT_EQ(SysStringLen(text.get()), 0u);
  EXPECT_EQ(connection->DescribeServer(nullptr), E_POINTER);
  EXPECT_EQ(connection->Close(), S_OK);
  EXPECT_EQ(connection->DescribeServer(text.put()), objectModelError(3709));
}

TEST_F(Connection, OpensAReadOnlyFileForReading) {
  const std::wstring path = makeFilledDatabase();
  const std::string before = contentOf(path);
  ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));

  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [T]");
  EXPECT_EQ(textOf(recordset.get(), 0), L"a");
  long attributes = 0;
  ASSERT_EQ(fieldOf(recordset.get(), 0L)->get_Attributes(&attributes), S_OK);
  EXPECT_EQ(attributes & (4 | 8), 0);
  EXPECT_EQ(put(recordset.get(), 0, variant(L"z")), objectModelError(3251));
  EXPECT_EQ(addNew(recordset.get()), objectModelError(3251));
  EXPECT_EQ(recordset->Delete(1), objectModelError(3251));
  EXPECT_LT(execute(connection.get(), L"DELETE FROM T"), 0);
  EXPECT_LT(execute(connection.get(), L"CREATE TABLE 'U' (A Text)"), 0);
  ASSERT_EQ(connection->Close(), S_OK);
  EXPECT_EQ(contentOf(path), before);
  EXPECT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL));
}

class Execute : public Connection {
 protected:
  ComPtr<IAdoceConnection> connection_ = connectTo(makeFilledDatabase());
};

TEST_F(Execute, TellsTheNumberOfChangedRecords) {
  for (const auto& [statement, expected] :
       {std::pair(L"UPDATE T SET Name = 'x' WHERE Name <> 'a'", "I4 2"),
        std::pair(L"INSERT INTO T VALUES ('d')", "I4 1"), std::pair(L"DELETE FROM T", "I4 4"),
        std::pair(L"DELETE FROM T", "I4 0"), std::pair(L"CREATE TABLE 'U' (A Text)", "I4 0")}) {
    OwnedVariant affected;
    ComPtr<IAdoceRecordset> recordset;
    ASSERT_EQ(connection_->Execute(text(statement).get(), affected.get(), kText, recordset.put()), S_OK);
    EXPECT_EQ(described(affected), expected) << statement;
    EXPECT_EQ(stateOf(recordset.get()), 0);
  }
}

TEST_F(Execute, WritesTheNumberThroughAReference) {
  long number = 17;
  VARIANT reference;
  V_VT(&reference) = VT_BYREF | VT_I4;
  V_I4REF(&reference) = &number;
  ComPtr<IAdoceRecordset> recordset;
  ASSERT_EQ(connection_->Execute(text(L"DELETE FROM T").get(), &reference, kText, recordset.put()), S_OK);
  EXPECT_EQ(number, 3);
}

TEST_F(Execute, NeedsNoPlaceForNumberAndRecordset) {
  EXPECT_EQ(connection_->Execute(text(L"DELETE FROM T").get(), nullptr, kText, nullptr), S_OK);
  EXPECT_EQ(recordCount(recordsOfTable(connection_.get(), L"T").get()), 0);
}

TEST_F(Execute, ReturnsTheRecordsOfASelect) {
  ComPtr<IAdoceRecordset> recordset;
  ASSERT_EQ(connection_->Execute(text(L"SELECT Name FROM T ORDER BY Name DESC").get(), nullptr, kText,
                                 recordset.put()),
            S_OK);
  ASSERT_EQ(stateOf(recordset.get()), 1);
  EXPECT_EQ(recordCount(recordset.get()), 3);
  EXPECT_EQ(textOf(recordset.get(), 0), L"c");
  EXPECT_EQ(recordset->MoveNext(), S_OK);
  EXPECT_EQ(put(recordset.get(), 0, variant(L"z")), objectModelError(3251));
}

TEST_F(Execute, TakesTablesAndUnknownTexts) {
  for (const auto& [source, options] :
       {std::pair(L"T", kTable), std::pair(L"T", kUnknown), std::pair(L"SELECT * FROM T", kUnknown),
        std::pair(L"SELECT * FROM T", -1L)}) {
    ComPtr<IAdoceRecordset> recordset;
    ASSERT_EQ(connection_->Execute(text(source).get(), nullptr, options, recordset.put()), S_OK)
        << source << " with " << options;
    EXPECT_EQ(recordCount(recordset.get()), 3);
  }
  OwnedVariant affected;
  ASSERT_EQ(connection_->Execute(text(L"DELETE FROM T").get(), affected.get(), kUnknown, nullptr), S_OK);
  EXPECT_EQ(described(affected), "I4 3");
}

TEST_F(Execute, FailureLeavesItsPlacesUntouched) {
  OwnedVariant affected = variant(17L);
  ComPtr<IAdoceRecordset> recordset;
  EXPECT_EQ(connection_->Execute(text(L"DELETE FROM Nowhere").get(), affected.get(), kText, recordset.put()),
            kNoTable);
  EXPECT_EQ(described(affected), "I4 17");
  EXPECT_FALSE(recordset);
}

TEST_F(Execute, KnowsNoProceduresAndNoOtherOptions) {
  EXPECT_EQ(connection_->Execute(text(L"T").get(), nullptr, 4, nullptr), objectModelError(3251));
  EXPECT_EQ(connection_->Execute(text(L"T").get(), nullptr, 3, nullptr), objectModelError(3001));
  EXPECT_EQ(connection_->Execute(text(L"T").get(), nullptr, 1024, nullptr), objectModelError(3001));
}

TEST_F(Execute, NeedsAnOpenConnection) {
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), objectModelError(3709));
}

TEST_F(Execute, ChangesStayAfterTheConnectionIsGone) {
  ASSERT_EQ(execute(connection_.get(), L"INSERT INTO T VALUES ('d')"), S_OK);
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(sqliteColumn(pathOf(L"test.cdb"), "SELECT count(*) FROM T"), std::vector<std::string>{"4"});
}

}  // namespace
}  // namespace automationtest
