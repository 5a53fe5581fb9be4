#include "base/settings/registry_text.h"

#include <array>
#include <vector>

#include "owners/handles.h"

bool readRegistryText(HKEY root, const wchar_t* path, const wchar_t* name, String& text) {
  UniqueRegistryKey key;
  if (RegOpenKeyExW(root, path, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return false;
  return readRegistryText(key.get(), name, text);
}

bool readRegistryText(HKEY key, const wchar_t* name, String& text) {
  // Values need not end with a zero character, nor on a whole one: a buffer holds one more of each.
  std::array<wchar_t, 128> few{};
  auto byteCount = static_cast<DWORD>((few.size() - 2) * sizeof(wchar_t));
  // With a buffer that is too small the size is told, as without one. Most are short: then one question is
  // enough.
  const LSTATUS first =
      RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(few.data()), &byteCount);
  if (first == ERROR_SUCCESS) {
    text.assign(few.data());
    return true;
  }
  if (first != ERROR_MORE_DATA) return false;
  std::vector<wchar_t> units(byteCount / sizeof(wchar_t) + 2);
  const LSTATUS result =
      RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(units.data()), &byteCount);
  if (result != ERROR_SUCCESS) return false;
  text.assign(units.data());
  return true;
}
