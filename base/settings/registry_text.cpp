#include "base/settings/registry_text.h"

#include <vector>

#include "owners/handles.h"

bool readRegistryText(HKEY root, const wchar_t* path, const wchar_t* name, String& text) {
  UniqueRegistryKey key;
  if (RegOpenKeyExW(root, path, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return false;
  DWORD byteCount = 0;
  if (RegQueryValueExW(key.get(), name, nullptr, nullptr, nullptr, &byteCount) != ERROR_SUCCESS) {
    return false;
  }
  // Values need not end with a zero character, nor on a whole one: the buffer holds one more of each.
  std::vector<wchar_t> units(byteCount / sizeof(wchar_t) + 2);
  const LSTATUS result =
      RegQueryValueExW(key.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(units.data()), &byteCount);
  if (result != ERROR_SUCCESS) return false;
  text.assign(units.data());
  return true;
}
