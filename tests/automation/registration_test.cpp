#include <windows.h>

#include <objbase.h>

#include <filesystem>
#include <optional>
#include <thread>
#include <unknwn.h>

#include "tests/automation/support/automation_test.h"

// What DllRegisterServer leaves in the registry, and the doors of the DLL.

namespace automationtest {
namespace {

constexpr wchar_t kConnectionClass[] = L"{5B0F3A52-7C0E-4A43-9B1D-6D0B7A3C1E20}";
constexpr wchar_t kRecordsetClass[] = L"{5B0F3A52-7C0E-4A43-9B1D-6D0B7A3C1E21}";

std::optional<std::wstring> userClassValue(const std::wstring& key, const wchar_t* name = nullptr) {
  wchar_t value[1024] = {};
  DWORD length = sizeof value;
  const std::wstring path = L"Software\\Classes\\" + key;
  if (RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name, RRF_RT_REG_SZ, nullptr, value, &length) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  return value;
}

bool keyExists(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

const std::vector<std::wstring> kKeys = {
    std::wstring(L"CLSID\\") + kConnectionClass,
    std::wstring(L"CLSID\\") + kRecordsetClass,
    L"ADOCE.Connection.3.1",
    L"ADOCE.Recordset.3.1",
    L"ADOCE.Connection",
    L"ADOCE.Recordset",
};

/// Leaves the DLL under test registered, whatever a test did.
class Registration : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(callServer(serverPath(), "DllRegisterServer"), S_OK); }
  testsupport::TempFolder folder_;
};

TEST_F(Registration, WritesTheClassesForTheUser) {
  for (const auto& [classId, programId, plainId] :
       {std::tuple(kConnectionClass, L"ADOCE.Connection.3.1", L"ADOCE.Connection"),
        std::tuple(kRecordsetClass, L"ADOCE.Recordset.3.1", L"ADOCE.Recordset")}) {
    const std::wstring classKey = std::wstring(L"CLSID\\") + classId;
    EXPECT_EQ(userClassValue(classKey + L"\\InprocServer32"), serverPath());
    EXPECT_EQ(userClassValue(classKey + L"\\InprocServer32", L"ThreadingModel"), L"Both");
    EXPECT_EQ(userClassValue(classKey + L"\\ProgID"), programId);
    EXPECT_EQ(userClassValue(classKey + L"\\VersionIndependentProgID"), plainId);
    EXPECT_EQ(userClassValue(std::wstring(programId) + L"\\CLSID"), classId);
    EXPECT_EQ(userClassValue(std::wstring(plainId) + L"\\CLSID"), classId);
    EXPECT_EQ(userClassValue(std::wstring(plainId) + L"\\CurVer"), programId);
  }
}

TEST_F(Registration, MakesTheProgramIdentifiersKnown) {
  CLSID found = {};
  for (const wchar_t* name : {L"ADOCE.Connection.3.1", L"ADOCE.Connection"}) {
    ASSERT_EQ(CLSIDFromProgID(name, &found), S_OK);
    EXPECT_EQ(found, CLSID_AdoceConnection);
  }
  for (const wchar_t* name : {L"ADOCE.Recordset.3.1", L"ADOCE.Recordset"}) {
    ASSERT_EQ(CLSIDFromProgID(name, &found), S_OK);
    EXPECT_EQ(found, CLSID_AdoceRecordset);
  }
}

TEST_F(Registration, TwiceIsOnce) {
  EXPECT_EQ(callServer(serverPath(), "DllRegisterServer"), S_OK);
  EXPECT_EQ(callServer(serverPath(), "DllUnregisterServer"), S_OK);
  EXPECT_EQ(callServer(serverPath(), "DllUnregisterServer"), S_OK);
  for (const std::wstring& key : kKeys) EXPECT_FALSE(keyExists(HKEY_CLASSES_ROOT, key)) << key;
}

TEST_F(Registration, IsTakenBackWithoutTrace) {
  for (const std::wstring& key : kKeys) {
    EXPECT_TRUE(keyExists(HKEY_CURRENT_USER, L"Software\\Classes\\" + key)) << key;
  }
  ASSERT_EQ(callServer(serverPath(), "DllUnregisterServer"), S_OK);
  for (const std::wstring& key : kKeys) {
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, L"Software\\Classes\\" + key)) << key;
    EXPECT_FALSE(keyExists(HKEY_CLASSES_ROOT, key)) << key;
  }
  CLSID found = {};
  EXPECT_LT(CLSIDFromProgID(L"ADOCE.Connection.3.1", &found), 0);
  EXPECT_LT(CLSIDFromProgID(L"ADOCE.Recordset.3.1", &found), 0);
}

TEST_F(Registration, FollowsTheProgramIntoAnotherFolder) {
  const std::filesystem::path elsewhere = folder_.path() / L"other folder \u03b1";
  std::filesystem::create_directory(elsewhere);
  const std::filesystem::path moved = elsewhere / L"adoce31.dll";
  std::filesystem::copy_file(serverPath(), moved);

  ASSERT_EQ(callServer(moved.wstring(), "DllRegisterServer"), S_OK);
  ComPtr<IUnknown> object;
  ASSERT_EQ(CoCreateInstance(CLSID_AdoceConnection, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                             reinterpret_cast<void**>(object.put())),
            S_OK);
  EXPECT_NE(GetModuleHandleW(moved.c_str()), nullptr);

  // With the last object gone the DLL can be unloaded, and then the folder be removed.
  object = {};
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(moved.c_str()), nullptr);
  EXPECT_EQ(callServer(moved.wstring(), "DllUnregisterServer"), S_OK);
}

TEST_F(Registration, OfAnEarlierFolderIsReplaced) {
  const std::filesystem::path moved = folder_.path() / L"adoce31.dll";
  std::filesystem::copy_file(serverPath(), moved);
  ASSERT_EQ(callServer(moved.wstring(), "DllRegisterServer"), S_OK);
  std::filesystem::remove(moved);

  ASSERT_EQ(callServer(serverPath(), "DllRegisterServer"), S_OK);
  EXPECT_TRUE(newConnection());
}

TEST_F(Registration, ServesBothKindsOfApartments) {
  EXPECT_TRUE(newConnection());  // this thread's is the multi-threaded one
  bool made = false;
  std::thread([&made] {
    ASSERT_GE(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), 0);
    made = static_cast<bool>(newRecordset());
    CoUninitialize();
  }).join();
  EXPECT_TRUE(made);
}

TEST_F(Registration, CoversNothingElse) {
  ComPtr<IUnknown> object;
  EXPECT_EQ(CoCreateInstance(CLSID_AdoceConnection, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IAdoceRecordset),
                             reinterpret_cast<void**>(object.put())),
            E_NOINTERFACE);
  EXPECT_FALSE(object);
}

class Doors : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(module_, nullptr); }
  void TearDown() override { FreeLibrary(module_); }

  template <class Function>
  Function door(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  HRESULT factoryOf(REFCLSID classId, IClassFactory** factory) const {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    return door<GetClassObject>("DllGetClassObject")(classId, IID_IClassFactory,
                                                     reinterpret_cast<void**>(factory));
  }
  HRESULT canUnload() const { return door<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")(); }

  HMODULE module_ = LoadLibraryW(serverPath().c_str());
};

TEST_F(Doors, UnknownClassHasNoFactory) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(factoryOf(IID_IUnknown, factory.put()), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_FALSE(factory);
}

TEST_F(Doors, FactoryRefusesAggregation) {
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(factoryOf(CLSID_AdoceConnection, factory.put()), S_OK);
  const ComPtr<IAdoceConnection> outer = newConnection();
  void* object = this;
  EXPECT_EQ(factory->CreateInstance(outer.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
}

TEST_F(Doors, UnloadingWaitsForObjectsAndLocks) {
  ASSERT_EQ(canUnload(), S_OK);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(factoryOf(CLSID_AdoceConnection, factory.put()), S_OK);
  EXPECT_EQ(canUnload(), S_FALSE);

  ASSERT_EQ(factory->LockServer(TRUE), S_OK);
  ComPtr<IDispatch> object;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.put())), S_OK);
  ASSERT_EQ(factory->LockServer(FALSE), S_OK);
  factory = {};
  EXPECT_EQ(canUnload(), S_FALSE);

  ComPtr<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()), S_OK);
  object = {};
  EXPECT_EQ(canUnload(), S_OK);
  info = {};
  EXPECT_EQ(canUnload(), S_OK);
}

}  // namespace
}  // namespace automationtest
