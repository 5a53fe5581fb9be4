#include "app/start/file_association.h"

#include <windows.h>

#include <string>

#include "base/install_folder.h"
#include "base/string.h"
#include "owners/handles.h"

namespace {

constexpr wchar_t kProgramName[] = L"Quivane Pocket PC.exe";

/// Creates a key where it is missing and sets its default value. False when the key can't be had.
bool setDefaultValue(const wchar_t* keyName, const std::wstring& value) {
  UniqueRegistryKey key;
  if (RegCreateKeyExW(HKEY_CLASSES_ROOT, keyName, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE,
                      nullptr, key.put(), nullptr) != ERROR_SUCCESS) {
    return false;
  }
  RegSetValueExW(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                 static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  return true;
}

}  // namespace

void registerFileAssociation() {
  if (!setDefaultValue(L".cdb", L"Quivane")) return;
  if (!setDefaultValue(L"Quivane", L"Quivane Document")) return;
  String folder;
  if (!readInstallFolder(folder)) return;
  const std::wstring program = std::wstring(folder.text()) + L"\\" + kProgramName;
  setDefaultValue(L"Quivane\\DefaultIcon", program + L",0");
  setDefaultValue(L"Quivane\\Shell\\Open\\Command", L"\"" + program + L"\" \"%1\"");
}
