#include "tests/ui/support/test_database.h"

#include <windows.h>

#include <objbase.h>

#include "base/settings/registry_text.h"
#include "data/database/database.h"
#include "data/handles/connection_handle.h"
#include "gtest/gtest.h"
#include "owners/handles.h"
#include "tests/support/paths.h"

namespace {

bool callComponents(const char* function) {
  const UniqueModule module(LoadLibraryW((testsupport::binFolder() / L"adoce31.dll").c_str()));
  if (!module) return false;
  const FARPROC address = GetProcAddress(module.get(), function);
  using Registration = HRESULT(STDAPICALLTYPE*)();
  return address != nullptr && SUCCEEDED(reinterpret_cast<Registration>(reinterpret_cast<void*>(address))());
}

}  // namespace

bool registerBinComponents() {
  return callComponents("DllRegisterServer");
}

bool unregisterBinComponents() {
  return callComponents("DllUnregisterServer");
}

void makeDatabase(const std::filesystem::path& path, std::initializer_list<const wchar_t*> statements) {
  ASSERT_TRUE(registerBinComponents());
  Database database;
  ASSERT_TRUE(database.createDatabase(path.c_str()));
  runStatements(path, statements);
}

void runStatements(const std::filesystem::path& path, std::initializer_list<const wchar_t*> statements) {
  ConnectionHandle connection;
  ASSERT_TRUE(connection.setConnectionString(path.c_str()));
  ASSERT_EQ(connection.open(), ConnectionHandle::kOpened);
  for (const wchar_t* statement : statements) EXPECT_TRUE(connection.execute(statement)) << statement;
  connection.close();
}

std::wstring classesValue(const std::wstring& key) {
  String value;
  readRegistryText(HKEY_CLASSES_ROOT, key.c_str(), nullptr, value);
  return value.text();
}

std::wstring registeredComponents() {
  CLSID classId;
  wchar_t number[40] = L"";
  if (FAILED(CLSIDFromProgID(L"ADOCE.Connection.3.1", &classId))) return {};
  StringFromGUID2(classId, number, ARRAYSIZE(number));
  return classesValue(std::wstring(L"CLSID\\") + number + L"\\InprocServer32");
}
