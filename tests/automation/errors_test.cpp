#include "tests/automation/support/automation_test.h"

// Each failure leaves its description in the connection's Errors and in the thread's IErrorInfo.

namespace automationtest {
namespace {

struct ErrorInfo {
  std::wstring description;
  std::wstring source;
  GUID interfaceId = {};
};

ErrorInfo takeErrorInfo() {
  ComPtr<IErrorInfo> info;
  ErrorInfo taken;
  if (GetErrorInfo(0, info.put()) != S_OK) return taken;
  UniqueBstr description;
  UniqueBstr source;
  EXPECT_EQ(info->GetDescription(description.put()), S_OK);
  EXPECT_EQ(info->GetSource(source.put()), S_OK);
  EXPECT_EQ(info->GetGUID(&taken.interfaceId), S_OK);
  taken.description = description.get();
  taken.source = source.get();
  return taken;
}

class Errors : public AutomationTest {
 protected:
  ComPtr<IAdoceErrors> errors() {
    ComPtr<IAdoceErrors> collection;
    EXPECT_EQ(connection_->get_Errors(collection.put()), S_OK);
    return collection;
  }
  long errorCount() {
    long count = -1;
    EXPECT_EQ(errors()->get_Count(&count), S_OK);
    return count;
  }
  ComPtr<IAdoceError> error(long index) {
    ComPtr<IAdoceError> found;
    EXPECT_EQ(errors()->get_Item(*variant(index), found.put()), S_OK);
    return found;
  }
  long numberOf(IAdoceError* error) {
    long number = 0;
    EXPECT_EQ(error->get_Number(&number), S_OK);
    return number;
  }

  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
};

TEST_F(Errors, AreNoneAtFirst) {
  EXPECT_EQ(errorCount(), 0);
  ComPtr<IAdoceError> found;
  EXPECT_EQ(errors()->get_Item(*variant(0L), found.put()), objectModelError(3265));
  EXPECT_FALSE(found);
}

TEST_F(Errors, TellOfAFailedStatement) {
  ASSERT_EQ(execute(connection_.get(), L"SELECT * FROM Nowhere"), kNoTable);
  const ErrorInfo info = takeErrorInfo();
  EXPECT_THAT(info.description, testing::HasSubstr(L"Nowhere"));
  EXPECT_EQ(info.source, L"ADOCE.Connection.3.1");
  EXPECT_EQ(info.interfaceId, __uuidof(IAdoceConnection));

  ASSERT_EQ(errorCount(), 1);
  const ComPtr<IAdoceError> found = error(0);
  UniqueBstr description;
  UniqueBstr source;
  long native = 17;
  EXPECT_EQ(found->get_Description(description.put()), S_OK);
  EXPECT_EQ(found->get_Source(source.put()), S_OK);
  EXPECT_EQ(found->get_NativeError(&native), S_OK);
  EXPECT_EQ(numberOf(found.get()), kNoTable);
  EXPECT_EQ(std::wstring(description.get()), info.description);
  EXPECT_EQ(std::wstring(source.get()), info.source);
  EXPECT_EQ(native, 0);
}

TEST_F(Errors, HoldTheLastFailureOnly) {
  EXPECT_EQ(execute(connection_.get(), L"SELECT * FROM Nowhere"), kNoTable);
  EXPECT_EQ(execute(connection_.get(), L"Nonsense"), kErrorsInCommand);
  ASSERT_EQ(errorCount(), 1);
  EXPECT_EQ(numberOf(error(0).get()), kErrorsInCommand);
  ASSERT_EQ(errors()->Clear(), S_OK);
  EXPECT_EQ(errorCount(), 0);
}

TEST_F(Errors, StayAfterASuccess) {
  EXPECT_EQ(execute(connection_.get(), L"Nonsense"), kErrorsInCommand);
  EXPECT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (A Text)"), S_OK);
  EXPECT_EQ(errorCount(), 1);
}

TEST_F(Errors, TellOfRecordsetsAndFields) {
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(openOn(recordset.get(), connection_.get(), L"SELECT * FROM Nowhere"), kNoTable);
  EXPECT_EQ(numberOf(error(0).get()), kNoTable);
  ErrorInfo info = takeErrorInfo();
  EXPECT_EQ(info.source, L"ADOCE.Recordset.3.1");
  EXPECT_EQ(info.interfaceId, __uuidof(IAdoceRecordset));

  ASSERT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (A Integer)"), S_OK);
  ASSERT_EQ(openOn(recordset.get(), connection_.get(), L"T", kKeyset, kOptimistic, kTable), S_OK);
  EXPECT_EQ(recordset->MoveNext(), objectModelError(3021));
  EXPECT_EQ(numberOf(error(0).get()), objectModelError(3021));
  EXPECT_NE(takeErrorInfo().description, L"");

  ASSERT_EQ(addNew(recordset.get()), S_OK);
  EXPECT_EQ(put(recordset.get(), 0, variant(L"abc")), objectModelError(3421));
  EXPECT_EQ(numberOf(error(0).get()), objectModelError(3421));
  info = takeErrorInfo();
  EXPECT_NE(info.description, L"");
  EXPECT_EQ(info.interfaceId, __uuidof(IAdoceField));
}

TEST_F(Errors, TellOfARecordsetWithoutConnection) {
  EXPECT_EQ(newRecordset()->MoveNext(), objectModelError(3704));
  const ErrorInfo info = takeErrorInfo();
  EXPECT_NE(info.description, L"");
  EXPECT_EQ(info.source, L"ADOCE.Recordset.3.1");
}

TEST_F(Errors, EachObjectSaysThatItDescribesItsFailures) {
  ComPtr<ISupportErrorInfo> support;
  ASSERT_EQ(connection_.get()->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(support.put())),
            S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(IAdoceConnection)), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(__uuidof(IAdoceRecordset)), S_FALSE);
}

TEST_F(Errors, CollectionOutlivesItsConnection) {
  EXPECT_EQ(execute(connection_.get(), L"Nonsense"), kErrorsInCommand);
  const ComPtr<IAdoceErrors> collection = errors();
  connection_ = {};
  long count = 0;
  EXPECT_EQ(collection->get_Count(&count), S_OK);
  EXPECT_EQ(count, 1);
}

TEST_F(Errors, MissingPlacesForResultsAreFailures) {
  EXPECT_EQ(connection_->get_State(nullptr), E_POINTER);
  EXPECT_EQ(connection_->get_Errors(nullptr), E_POINTER);
  EXPECT_EQ(connection_->get_Provider(nullptr), E_POINTER);
  EXPECT_EQ(newRecordset()->get_State(nullptr), E_POINTER);
  EXPECT_EQ(errors()->get_Count(nullptr), E_POINTER);
}

}  // namespace
}  // namespace automationtest
