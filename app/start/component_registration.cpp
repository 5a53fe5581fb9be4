#include "app/start/component_registration.h"

#include <windows.h>

#include <objbase.h>

#include <cwchar>
#include <string>

#include "base/program_folder.h"
#include "base/settings/registry_text.h"
#include "base/string.h"
#include "owners/handles.h"
#include "owners/ole_functions.h"

namespace {

constexpr wchar_t kConnectionProgramId[] = L"ADOCE.Connection.3.1";

constexpr const wchar_t* kComponentLibraries[] = {
    L"adoce31.dll", L"adosync.dll", L"fileosp.dll",  L"msdadc.dll",
    L"msdaer.dll",  L"msdaosp.dll", L"Adoxce31.dll",
};

/// The path of the module that serves the Connection class; empty when the class is not registered.
String registeredModule() {
  CLSID classId;
  String path;
  if (FAILED(ole::clsidFromProgId(kConnectionProgramId, &classId))) return path;
  wchar_t number[40];
  if (ole::stringFromGuid(classId, number, ARRAYSIZE(number)) == 0) return path;
  const std::wstring key = std::wstring(L"CLSID\\") + number + L"\\InprocServer32";
  readRegistryText(HKEY_CLASSES_ROOT, key.c_str(), nullptr, path);
  return path;
}

/// The path of adoce31.dll beside this program; empty when there is none.
std::wstring ownModule() {
  const std::wstring path = programFolder() / kComponentLibraries[0];
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? std::wstring() : path;
}

void registerLibrary(const wchar_t* name) {
  const UniqueModule library(LoadLibraryW(name));
  if (!library) return;
  const FARPROC address = GetProcAddress(library.get(), "DllRegisterServer");
  // By way of void*, because the two function types have nothing in common.
  using Register = HRESULT(STDAPICALLTYPE*)();
  if (address) reinterpret_cast<Register>(reinterpret_cast<void*>(address))();
}

}  // namespace

bool areComponentsRegistered() {
  const String module = registeredModule();
  const std::wstring own = ownModule();
  const bool isMoved = !own.empty() && _wcsicmp(own.c_str(), module.text()) != 0;
  return !module.isEmpty() && !isMoved;
}

void registerComponents() {
  for (const wchar_t* name : kComponentLibraries) registerLibrary(name);
}
