#include "tests/automation/support/automation_test.h"

#include <windows.h>

#include <objbase.h>

#include "tests/automation/support/second_process.h"

namespace automationtest {

namespace {

/// Every test finds COM started, as the application starts it, and the classes registered.
class RegisteredServer : public testing::Environment {
 public:
  void SetUp() override {
    if (isLockHolder()) return;
    ASSERT_GE(CoInitializeEx(nullptr, COINIT_MULTITHREADED), 0);
    ASSERT_EQ(callServer(serverPath(), "DllRegisterServer"), S_OK);
  }
  void TearDown() override {
    if (isLockHolder()) return;
    EXPECT_EQ(callServer(serverPath(), "DllUnregisterServer"), S_OK);
    CoUninitialize();
  }
};

const testing::Environment* const registered = testing::AddGlobalTestEnvironment(new RegisteredServer);

template <class Interface>
ComPtr<Interface> newObject(const wchar_t* programId) {
  CLSID classId;
  ComPtr<Interface> object;
  EXPECT_EQ(CLSIDFromProgID(programId, &classId), S_OK);
  EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                             reinterpret_cast<void**>(object.put())),
            S_OK);
  return object;
}

}  // namespace

std::wstring serverPath() {
  return (testsupport::binFolder() / "adoce31.dll").make_preferred().wstring();
}

HRESULT callServer(const std::wstring& path, const char* function) {
  const HMODULE module = LoadLibraryW(path.c_str());
  if (module == nullptr) return HRESULT_FROM_WIN32(GetLastError());
  const auto door =
      reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(module, function)));
  const HRESULT result = door == nullptr ? E_NOTIMPL : door();
  FreeLibrary(module);
  return result;
}

ComPtr<IAdoceConnection> newConnection() {
  auto connection = newObject<IAdoceConnection>(L"ADOCE.Connection.3.1");
  EXPECT_EQ(connection->put_Provider(text(L"CEDB").get()), S_OK);
  return connection;
}

ComPtr<IAdoceRecordset> newRecordset() {
  return newObject<IAdoceRecordset>(L"ADOCE.Recordset.3.1");
}

HRESULT openAt(IAdoceConnection* connection, const std::wstring& connectionString) {
  const HRESULT result = connection->put_ConnectionString(text(connectionString).get());
  return result < 0 ? result : connection->Open(nullptr, nullptr, nullptr, -1);
}

ComPtr<IAdoceConnection> connectTo(const std::wstring& path) {
  ComPtr<IAdoceConnection> connection = newConnection();
  EXPECT_EQ(openAt(connection.get(), path), S_OK);
  return connection;
}

HRESULT openOn(IAdoceRecordset* recordset, IAdoceConnection* connection, const std::wstring& source,
               long cursorType, long lockType, long options) {
  return recordset->Open(*variant(source), *variant(connection), cursorType, lockType, options);
}

ComPtr<IAdoceRecordset> recordsOf(IAdoceConnection* connection, const std::wstring& source, long cursorType,
                                  long lockType, long options) {
  ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(openOn(recordset.get(), connection, source, cursorType, lockType, options), S_OK) << source;
  EXPECT_EQ(stateOf(recordset.get()), 1);
  return recordset;
}

ComPtr<IAdoceRecordset> recordsOfTable(IAdoceConnection* connection, const std::wstring& name) {
  return recordsOf(connection, name, kKeyset, kOptimistic, kTable);
}

HRESULT execute(IAdoceConnection* connection, const std::wstring& statement) {
  OwnedVariant affected;
  ComPtr<IAdoceRecordset> recordset;
  return connection->Execute(text(statement).get(), affected.get(), kText, recordset.put());
}

long recordCount(IAdoceRecordset* recordset) {
  long count = -1;
  EXPECT_EQ(recordset->get_RecordCount(&count), S_OK);
  return count;
}

long position(IAdoceRecordset* recordset) {
  long place = 0;
  EXPECT_EQ(recordset->get_AbsolutePosition(&place), S_OK);
  return place;
}

bool isBof(IAdoceRecordset* recordset) {
  VARIANT_BOOL bof = 17;
  EXPECT_EQ(recordset->get_BOF(&bof), S_OK);
  EXPECT_TRUE(bof == VARIANT_TRUE || bof == VARIANT_FALSE);
  return bof == VARIANT_TRUE;
}

bool isEof(IAdoceRecordset* recordset) {
  VARIANT_BOOL eof = 17;
  EXPECT_EQ(recordset->get_EOF(&eof), S_OK);
  EXPECT_TRUE(eof == VARIANT_TRUE || eof == VARIANT_FALSE);
  return eof == VARIANT_TRUE;
}

long stateOf(IAdoceRecordset* recordset) {
  long state = -1;
  EXPECT_EQ(recordset->get_State(&state), S_OK);
  return state;
}

long stateOf(IAdoceConnection* connection) {
  long state = -1;
  EXPECT_EQ(connection->get_State(&state), S_OK);
  return state;
}

namespace {

ComPtr<IAdoceField> fieldBy(IAdoceRecordset* recordset, const VARIANT& index) {
  ComPtr<IAdoceFields> fields;
  ComPtr<IAdoceField> field;
  if (recordset->get_Fields(fields.put()) == S_OK) fields->get_Item(index, field.put());
  return field;
}

}  // namespace

ComPtr<IAdoceField> fieldOf(IAdoceRecordset* recordset, long index) {
  return fieldBy(recordset, *variant(index));
}

ComPtr<IAdoceField> fieldOf(IAdoceRecordset* recordset, const wchar_t* name) {
  return fieldBy(recordset, *variant(name));
}

std::wstring nameOf(IAdoceField* field) {
  UniqueBstr name;
  EXPECT_EQ(field->get_Name(name.put()), S_OK);
  return name.get() == nullptr ? L"(null)" : std::wstring(name.get(), SysStringLen(name.get()));
}

OwnedVariant valueOf(IAdoceRecordset* recordset, long index) {
  OwnedVariant value;
  const ComPtr<IAdoceField> field = fieldOf(recordset, index);
  const HRESULT result = field ? field->get_Value(value.get()) : E_POINTER;
  if (result != S_OK) {
    V_VT(value.get()) = VT_ERROR;
    V_ERROR(value.get()) = result;
  }
  return value;
}

std::wstring textOf(IAdoceRecordset* recordset, long index) {
  return textOf(*valueOf(recordset, index));
}

HRESULT put(IAdoceRecordset* recordset, long index, const OwnedVariant& value) {
  const ComPtr<IAdoceField> field = fieldOf(recordset, index);
  return field ? field->put_Value(*value) : E_POINTER;
}

HRESULT update(IAdoceRecordset* recordset) {
  return recordset->Update(*empty(), *empty());
}

HRESULT addNew(IAdoceRecordset* recordset) {
  return recordset->AddNew(*empty(), *empty());
}

HRESULT move(IAdoceRecordset* recordset, long count, long start) {
  return recordset->Move(count, *variant(start));
}

std::vector<std::wstring> columnTexts(IAdoceRecordset* recordset, long index) {
  std::vector<std::wstring> texts;
  if (recordCount(recordset) == 0) return texts;
  EXPECT_EQ(recordset->MoveFirst(), S_OK);
  while (!isEof(recordset)) {
    texts.push_back(textOf(recordset, index));
    if (recordset->MoveNext() != S_OK) {
      ADD_FAILURE() << "a move failed";
      break;
    }
  }
  return texts;
}

std::wstring AutomationTest::makeDatabase(const std::wstring& name) {
  const ComPtr<IAdoceConnection> connection = newConnection();
  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  EXPECT_EQ(openAt(connection.get(), L""), S_OK);
  EXPECT_EQ(openOn(recordset.get(), connection.get(), L"CREATE DATABASE '" + pathOf(name) + L"'", kDynamic),
            S_OK);
  EXPECT_EQ(connection->Close(), S_OK);
  return pathOf(name);
}

ComPtr<IAdoceConnection> AutomationTest::openNewDatabase(const std::wstring& name) {
  return connectTo(makeDatabase(name));
}

}  // namespace automationtest
