#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/late_object.h"
#include "tests/automation/support/sqlite_file.h"

// The objects as a script uses them: by the names of their members.

namespace automationtest {
namespace {

class LateBinding : public AutomationTest {
 protected:
  LateBinding() {
    SqliteFile(path_).run(
        "CREATE TABLE [My table] (Id INTEGER, [Full name] TEXT); INSERT INTO [My table] VALUES (1, 'a'), (2, "
        "'b')");
    connection_.call(L"Open", arguments(variant(path_)));
  }
  ~LateBinding() override {
    const LateFailure failure = failureOf([&] { connection_.call(L"Close"); });
    EXPECT_TRUE(failure.result == S_OK || failure.result == objectModelError(3704));
  }

  LateObject openRecords(const wchar_t* source = L"Select * from [My table]") {
    LateObject recordset = LateObject::create(L"ADOCE.Recordset.3.1");
    recordset.call(L"Open",
                   arguments(variant(source), variant(connection_.object()), int16(1), int16(3), int16(1)));
    return recordset;
  }

  std::wstring path_ = makeDatabase();
  LateObject connection_ = LateObject::create(L"ADOCE.Connection.3.1");
};

TEST_F(LateBinding, MembersAreFoundInAnyLetterCase) {
  EXPECT_EQ(described(connection_.get(L"Version")), "BSTR 3.1");
  EXPECT_EQ(described(connection_.get(L"VERSION")), "BSTR 3.1");
  EXPECT_EQ(described(connection_.get(L"state")), "I4 1");
  EXPECT_EQ(failureOf([&] { connection_.get(L"Nothing"); }).result, DISP_E_UNKNOWNNAME);
}

TEST_F(LateBinding, WalksTheRecords) {
  const LateObject recordset = openRecords();
  EXPECT_EQ(described(recordset.get(L"RecordCount")), "I4 2");
  std::string seen;
  while (described(recordset.get(L"EOF")) == "BOOL 0") {
    const LateObject fields = LateObject::of(recordset.get(L"Fields"));
    const LateObject field = LateObject::of(fields.get(L"Item", arguments(variant(L"Full name"))));
    seen += described(field.get(L"Value")) + ";";
    recordset.call(L"MoveNext");
  }
  EXPECT_EQ(seen, "BSTR a;BSTR b;");
}

TEST_F(LateBinding, EveryMemberThatTheApplicationUsesAnswersToItsName) {
  const LateObject connection = LateObject::create(L"ADOCE.Connection.3.1");
  connection.put(L"Provider", variant(L"CEDB"));
  connection.put(L"ConnectionString", variant(path_));
  connection.call(L"Open", arguments(variant(L""), variant(L""), variant(L""), variant(-1L)));
  connection.call(L"Execute",
                  arguments(variant(L"CREATE TABLE 'new' (N Integer ,S Text)"), empty(), variant(1L)));

  const LateObject recordset = LateObject::create(L"ADOCE.Recordset.3.1");
  recordset.call(L"Open", arguments(variant(L"Select * from [new]"), variant(connection.object()),
                                    variant(2L), variant(3L), variant(1L)));
  for (long n = 1; n <= 4; ++n) {
    recordset.call(L"AddNew", arguments(empty(), empty()));
    recordset.putItem(variant(n), arguments(variant(0L)));
    recordset.call(L"Update", arguments(empty(), empty()));
  }
  EXPECT_EQ(described(recordset.get(L"RecordCount")), "I4 4");
  const auto current = [&] {
    return described(LateObject::of(recordset.item(arguments(variant(0L)))).get(L"Value"));
  };
  recordset.call(L"MoveFirst");
  EXPECT_EQ(current(), "I4 1");
  recordset.call(L"MoveLast");
  EXPECT_EQ(current(), "I4 4");
  recordset.call(L"MovePrevious");
  EXPECT_EQ(current(), "I4 3");
  recordset.call(L"MoveNext");
  EXPECT_EQ(current(), "I4 4");
  recordset.call(L"Move", arguments(variant(1L), variant(1L)));
  EXPECT_EQ(current(), "I4 2");
  recordset.call(L"Move", arguments(variant(-1L), variant(0L)));
  EXPECT_EQ(current(), "I4 1");
  recordset.call(L"Delete", arguments(variant(1L)));
  EXPECT_EQ(described(recordset.get(L"RecordCount")), "I4 3");

  recordset.call(L"MoveFirst");
  const LateObject fields = LateObject::of(recordset.get(L"Fields"));
  EXPECT_EQ(described(fields.get(L"Count")), "I4 2");
  const LateObject field = LateObject::of(fields.get(L"Item", arguments(variant(0L))));
  EXPECT_EQ(described(field.get(L"Name")), "BSTR N");
  EXPECT_EQ(described(field.get(L"Type")), "I4 3");
  EXPECT_EQ(V_I4(field.get(L"Attributes").get()) & 4, 4);
  field.put(L"Value", variant(22L));
  recordset.call(L"Update");
  EXPECT_EQ(described(field.get(L"Value")), "I4 22");
  recordset.call(L"Close");
  connection.call(L"Close");
  EXPECT_EQ(sqliteColumn(path_, "SELECT N FROM new"), (std::vector<std::string>{"22", "3", "4"}));
}

TEST_F(LateBinding, DefaultMembersAreLeftOut) {
  const LateObject recordset = openRecords();
  const LateObject fields = LateObject::of(recordset.item());
  EXPECT_EQ(described(fields.get(L"Count")), "I4 2");
  EXPECT_EQ(described(LateObject::of(fields.item(arguments(int16(0)))).item()), "I4 1");
  EXPECT_EQ(described(LateObject::of(recordset.item(arguments(variant(L"full NAME")))).item()), "BSTR a");
  EXPECT_EQ(described(LateObject::of(recordset.get(L"Fields", arguments(int16(1)))).item()), "BSTR a");
}

TEST_F(LateBinding, FieldsAreWrittenThroughEveryDefaultMember) {
  const LateObject recordset = openRecords();
  recordset.putItem(variant(L"one"), arguments(variant(L"Full name")));
  recordset.call(L"Update");
  recordset.call(L"MoveNext");
  LateObject::of(recordset.get(L"Fields")).putItem(variant(L"two"), arguments(int16(1)));
  recordset.put(L"Fields", variant(22L), arguments(int16(0)));
  recordset.call(L"Update");
  EXPECT_EQ(sqliteColumn(path_, "SELECT Id || [Full name] FROM [My table]"),
            (std::vector<std::string>{"1one", "22two"}));
}

TEST_F(LateBinding, FieldTakesAnotherFieldsValue) {
  const LateObject first = openRecords();
  const LateObject second = openRecords();
  second.call(L"MoveLast");
  first.putItem(second.item(arguments(variant(L"Full name"))), arguments(variant(L"Full name")));
  first.call(L"Update");
  EXPECT_EQ(sqliteColumn(path_, "SELECT [Full name] FROM [My table]"), (std::vector<std::string>{"b", "b"}));
}

TEST_F(LateBinding, ArgumentsCanBeLeftOut) {
  const LateObject recordset = LateObject::create(L"ADOCE.Recordset.3.1");
  recordset.put(L"Source", variant(L"My table"));
  recordset.putReference(L"ActiveConnection", variant(connection_.object()));
  recordset.put(L"CursorType", int16(1));
  recordset.put(L"LockType", int16(3));
  recordset.call(L"Open");
  EXPECT_EQ(described(recordset.get(L"RecordCount")), "I4 2");
  EXPECT_EQ(described(recordset.get(L"CursorType")), "I4 1");
  EXPECT_EQ(described(recordset.get(L"LockType")), "I4 3");
  recordset.call(L"AddNew");
  recordset.putItem(variant(3L), arguments(int16(0)));
  recordset.call(L"Update");
  recordset.call(L"Move", arguments(int16(-1)));
  EXPECT_EQ(described(LateObject::of(recordset.item(arguments(int16(0)))).item()), "I4 2");
  recordset.call(L"Delete");
  EXPECT_EQ(described(recordset.get(L"RecordCount")), "I4 2");
  recordset.call(L"MoveFirst");
  EXPECT_EQ(V_VT(recordset.call(L"GetRows").get()), VT_ARRAY | VT_VARIANT);
}

TEST_F(LateBinding, WithoutArgumentsARecordsetIsForwardOnlyAndReadOnly) {
  const LateObject recordset = LateObject::create(L"ADOCE.Recordset.3.1");
  recordset.call(L"Open", arguments(variant(L"My table"), variant(connection_.object())));
  EXPECT_EQ(described(recordset.get(L"CursorType")), "I4 0");
  EXPECT_EQ(described(recordset.get(L"LockType")), "I4 1");
}

TEST_F(LateBinding, ConnectionStringServesAsConnection) {
  const LateObject recordset = LateObject::create(L"ADOCE.Recordset.3.1");
  recordset.put(L"ActiveConnection", variant(L"data source=" + path_));
  recordset.call(L"Open", arguments(variant(L"My table")));
  EXPECT_EQ(described(recordset.get(L"RecordCount")), "I4 2");
  recordset.call(L"Close");
}

TEST_F(LateBinding, ExecuteReturnsRecordsAndTheirNumber) {
  OwnedVariant affected;
  OwnedVariant reference;
  V_VT(reference.get()) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(reference.get()) = affected.get();
  connection_.call(L"Execute", arguments(variant(L"UPDATE [My table] SET Id = 5"), std::move(reference)));
  EXPECT_EQ(described(affected), "I4 2");
  const LateObject recordset = LateObject::of(
      connection_.call(L"Execute", arguments(variant(L"SELECT count(*) AS n FROM [My table]"))));
  EXPECT_EQ(described(LateObject::of(recordset.item(arguments(variant(L"n")))).item()), "I4 2");
}

TEST_F(LateBinding, ExecuteTakesEveryFormOfArgumentsAndRunsOnce) {
  const auto count = [&] {
    const OwnedVariant rows =
        connection_.call(L"Execute", arguments(variant(L"SELECT count(*) AS n FROM [My table]")));
    return described(LateObject::of(LateObject::of(rows).item(arguments(variant(L"n")))).item());
  };
  const auto insert = [] { return variant(L"INSERT INTO [My table] (Id) VALUES (77)"); };
  const auto missingArgument = [] {
    OwnedVariant left;
    V_VT(left.get()) = VT_ERROR;
    V_ERROR(left.get()) = DISP_E_PARAMNOTFOUND;
    return left;
  };
  OwnedVariant null;
  V_VT(null.get()) = VT_NULL;
  int expected = 2;
  const auto expectOneMore = [&](const char* form, LateObject::Arguments given) {
    EXPECT_EQ(failureOf([&] { connection_.call(L"Execute", std::move(given)); }).result, S_OK) << form;
    EXPECT_EQ(count(), "I4 " + std::to_string(++expected)) << form;
  };
  expectOneMore("sql", arguments(insert()));
  expectOneMore("sql, , 1", arguments(insert(), missingArgument(), variant(1L)));
  expectOneMore("sql, ", arguments(insert(), missingArgument()));
  expectOneMore("sql, , ", arguments(insert(), missingArgument(), missingArgument()));
  expectOneMore("sql, Empty, 1", arguments(insert(), OwnedVariant(), variant(1L)));
  expectOneMore("sql, Null, 1", arguments(insert(), std::move(null), variant(1L)));
  expectOneMore("sql, 5, 1", arguments(insert(), variant(5L), variant(1L)));
  expectOneMore("sql, text", arguments(insert(), variant(L"x")));

  LONG number = 0;
  OwnedVariant reference;
  V_VT(reference.get()) = VT_BYREF | VT_I4;
  V_I4REF(reference.get()) = &number;
  expectOneMore("sql, number, 1", arguments(insert(), std::move(reference), variant(1L)));
  EXPECT_EQ(number, 1);
  OwnedVariant text = variant(L"an old text");
  OwnedVariant toText;
  V_VT(toText.get()) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(toText.get()) = text.get();
  expectOneMore("sql, variable, 1", arguments(insert(), std::move(toText), variant(1L)));
  EXPECT_EQ(described(text), "I4 1");

  const LateFailure failure = failureOf([&] {
    connection_.call(L"Execute",
                     arguments(variant(L"SELECT * FROM Nowhere"), missingArgument(), variant(1L)));
  });
  EXPECT_EQ(failure.result, kNoTable);
  EXPECT_THAT(failure.description, testing::HasSubstr(L"Nowhere"));
}

TEST_F(LateBinding, ExecuteTakesArgumentsByName) {
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"Execute"), const_cast<LPOLESTR>(L"commandText"),
                      const_cast<LPOLESTR>(L"recordsAffected"), const_cast<LPOLESTR>(L"options")};
  DISPID ids[4] = {};
  ASSERT_EQ(connection_.object()->GetIDsOfNames(IID_NULL, names, 4, LOCALE_USER_DEFAULT, ids), S_OK);
  OwnedVariant affected = variant(5L);
  OwnedVariant sql = variant(L"UPDATE [My table] SET Id = 5");
  OwnedVariant kind = variant(1L);
  VARIANT values[] = {*kind, *affected, *sql};
  DISPID named[] = {ids[3], ids[2]};
  DISPPARAMS parameters = {values, named, 3, 2};
  OwnedVariant result;
  EXPECT_EQ(connection_.object()->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                         result.get(), nullptr, nullptr),
            S_OK);
  EXPECT_EQ(V_VT(result.get()), VT_DISPATCH);
  EXPECT_EQ(described(affected), "I4 5");
}

TEST_F(LateBinding, FailureCarriesResultDescriptionAndSource) {
  const LateFailure statement =
      failureOf([&] { connection_.call(L"Execute", arguments(variant(L"SELECT * FROM Nowhere"))); });
  EXPECT_EQ(statement.result, kNoTable);
  EXPECT_THAT(statement.description, testing::HasSubstr(L"Nowhere"));
  EXPECT_EQ(statement.source, L"ADOCE.Connection.3.1");

  const LateObject recordset = openRecords();
  const LateFailure field = failureOf([&] { recordset.putItem(variant(L"abc"), arguments(int16(0))); });
  EXPECT_EQ(field.result, objectModelError(3421));
  EXPECT_NE(field.description, L"");
  EXPECT_EQ(failureOf([&] { recordset.item(arguments(variant(L"Nothing"))); }).result,
            objectModelError(3265));
  EXPECT_EQ(failureOf([&] { recordset.putItem(variant(1L), arguments(variant(L"Nothing"))); }).result,
            objectModelError(3265));

  const LateObject errors = LateObject::of(connection_.get(L"Errors"));
  EXPECT_EQ(described(errors.get(L"Count")), "I4 1");
  const LateObject error = LateObject::of(errors.item(arguments(int16(0))));
  EXPECT_EQ(described(error.get(L"Number")), "I4 " + std::to_string(objectModelError(3265)));
  EXPECT_EQ(described(error.item()), described(error.get(L"Description")));
  errors.call(L"Clear");
  EXPECT_EQ(described(errors.get(L"Count")), "I4 0");
}

TEST_F(LateBinding, EveryObjectTellsItsType) {
  const LateObject recordset = openRecords();
  const LateObject fields = LateObject::of(recordset.get(L"Fields"));
  const LateObject field = LateObject::of(fields.item(arguments(int16(0))));
  failureOf([&] { fields.item(arguments(int16(9))); });
  const LateObject errors = LateObject::of(connection_.get(L"Errors"));
  const LateObject error = LateObject::of(errors.item(arguments(int16(0))));
  const std::pair<const LateObject*, const wchar_t*> expected[] = {
      {&connection_, L"IAdoceConnection"}, {&recordset, L"IAdoceRecordset"},
      {&fields, L"IAdoceFields"},          {&field, L"IAdoceField"},
      {&errors, L"IAdoceErrors"},          {&error, L"IAdoceError"}};
  for (const auto& [object, name] : expected) {
    UINT count = 0;
    EXPECT_EQ(object->object()->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(object->object()->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
    UniqueBstr found;
    EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, found.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(std::wstring(found.get()), name);
  }
}

TEST_F(LateBinding, ScriptsCanEnumerateFields) {
  const LateObject fields = LateObject::of(openRecords().get(L"Fields"));
  DISPPARAMS none = {};
  OwnedVariant unknown;
  ASSERT_EQ(
      fields.object()->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                              DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, unknown.get(), nullptr, nullptr),
      S_OK);
  EXPECT_EQ(V_VT(unknown.get()), VT_UNKNOWN);
  ComPtr<IEnumVARIANT> items;
  EXPECT_EQ(V_UNKNOWN(unknown.get())->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(items.put())),
            S_OK);
}

}  // namespace
}  // namespace automationtest
