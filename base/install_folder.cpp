#include "base/install_folder.h"

#include <windows.h>

#include <utility>

#include "base/settings/registry_text.h"

bool readInstallFolder(String& folder) {
  constexpr const wchar_t* kProduct = L"Morvale Software Quivane for Pocket PC";
  wchar_t path[MAX_PATH];
  wsprintfW(path, L"SOFTWARE\\Apps\\%s", kProduct);
  String found;
  if (!readRegistryText(HKEY_LOCAL_MACHINE, path, L"InstallDir", found) || found.isEmpty()) return false;
  folder = std::move(found);
  return true;
}
