#include "platform/store/automation/module/registration.h"

#include <objbase.h>

#include <olectl.h>
#include <string>
#include <vector>

#include "owners/handles.h"
#include "platform/store/automation/module/class_table.h"
#include "platform/store/automation/module/module.h"

namespace automation {

namespace {

constexpr wchar_t kUserClasses[] = L"Software\\Classes";
constexpr wchar_t kClassIds[] = L"CLSID";

/// One value to write; an empty name stands for the key's default value.
struct RegistryValue {
  std::wstring key;
  std::wstring name;
  std::wstring text;
};

std::wstring textOf(const CLSID& classId) {
  wchar_t text[40] = {};
  StringFromGUID2(classId, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring classKeyOf(const ClassEntry& entry) {
  return std::wstring(kClassIds) + L"\\" + textOf(entry.classId);
}

std::wstring serverKeyOf(const ClassEntry& entry) {
  return classKeyOf(entry) + L"\\InprocServer32";
}

std::vector<RegistryValue> valuesOf(const ClassEntry& entry, const std::wstring& path) {
  const std::wstring classKey = classKeyOf(entry);
  const std::wstring serverKey = serverKeyOf(entry);
  const std::wstring programId = entry.programId;
  const std::wstring plainProgramId = entry.plainProgramId;
  const std::wstring classId = textOf(entry.classId);
  return {
      {classKey, L"", entry.description},
      {serverKey, L"", path},
      {serverKey, L"ThreadingModel", entry.threadingModel},
      {classKey + L"\\ProgID", L"", programId},
      {classKey + L"\\VersionIndependentProgID", L"", plainProgramId},
      {programId, L"", entry.description},
      {programId + L"\\CLSID", L"", classId},
      {plainProgramId, L"", entry.description},
      {plainProgramId + L"\\CLSID", L"", classId},
      {plainProgramId + L"\\CurVer", L"", programId},
  };
}

bool write(HKEY root, const RegistryValue& value) {
  UniqueRegistryKey key;
  if (RegCreateKeyExW(root, value.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.put(), nullptr) !=
      ERROR_SUCCESS) {
    return false;
  }
  const auto length = static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key.get(), value.name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(value.text.c_str()), length) == ERROR_SUCCESS;
}

bool writeAll(HKEY root, const std::wstring& path) {
  for (const ClassEntry& entry : classTable()) {
    for (const RegistryValue& value : valuesOf(entry, path)) {
      if (!write(root, value)) return false;
    }
  }
  return true;
}

bool remove(HKEY root, const std::wstring& key) {
  const LSTATUS result = RegDeleteTreeW(root, key.c_str());
  return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND || result == ERROR_PATH_NOT_FOUND;
}

bool removeAll(HKEY root) {
  bool removed = true;
  for (const ClassEntry& entry : classTable()) {
    for (const std::wstring& key :
         {classKeyOf(entry), std::wstring(entry.programId), std::wstring(entry.plainProgramId)}) {
      removed = remove(root, key) && removed;
    }
  }
  return removed;
}

/// Removes the key that holds all classes if nothing is in it any more.
void removeIfEmpty(HKEY root, const wchar_t* name) {
  UniqueRegistryKey key;
  DWORD keys = 0;
  DWORD values = 0;
  if (RegOpenKeyExW(root, name, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return;
  if (RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                       nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
      keys == 0 && values == 0) {
    RegDeleteKeyW(root, name);
  }
}

HKEY openUserClasses(UniqueRegistryKey& owner) {
  RegCreateKeyExW(HKEY_CURRENT_USER, kUserClasses, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, owner.put(),
                  nullptr);
  return owner.get();
}

bool isServerAt(const ClassEntry& entry, const std::wstring& path) {
  std::wstring found(path.size() + 1, L'\0');
  auto length = static_cast<DWORD>(found.size() * sizeof(wchar_t));
  if (RegGetValueW(HKEY_CLASSES_ROOT, serverKeyOf(entry).c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
                   found.data(), &length) != ERROR_SUCCESS) {
    return false;
  }
  found.resize(length / sizeof(wchar_t) - 1);
  return CompareStringOrdinal(found.c_str(), -1, path.c_str(), -1, TRUE) == CSTR_EQUAL;
}

/// Whether programs that ask for the classes by name find them, and find them in this DLL: some systems
/// don't look among the user's classes, and may still have an earlier folder of the program for all.
bool areSeen(const std::wstring& path) {
  for (const ClassEntry& entry : classTable()) {
    CLSID found;
    if (FAILED(CLSIDFromProgID(entry.programId, &found)) || found != entry.classId) return false;
    if (!isServerAt(entry, path)) return false;
  }
  return true;
}

bool removeEverywhere() {
  UniqueRegistryKey owner;
  const HKEY userClasses = openUserClasses(owner);
  const bool removedOwn = userClasses != nullptr && removeAll(userClasses);
  if (userClasses != nullptr) removeIfEmpty(userClasses, kClassIds);
  return removeAll(HKEY_CLASSES_ROOT) && removedOwn;
}

}  // namespace

HRESULT registerClasses() {
  try {
    const std::wstring path = modulePath();
    if (path.empty()) return SELFREG_E_CLASS;
    UniqueRegistryKey owner;
    const HKEY userClasses = openUserClasses(owner);
    if (userClasses != nullptr) writeAll(userClasses, path);
    if (!areSeen(path)) writeAll(HKEY_CLASSES_ROOT, path);
    if (areSeen(path)) return S_OK;
    removeEverywhere();
    return SELFREG_E_CLASS;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT unregisterClasses() {
  try {
    return removeEverywhere() ? S_OK : SELFREG_E_CLASS;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace automation
