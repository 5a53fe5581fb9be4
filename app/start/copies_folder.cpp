#include "app/start/copies_folder.h"

#include <windows.h>

#include <filesystem>
#include <string>

#include "base/program_folder.h"

String copiesFolder(bool besideProgram) {
  constexpr wchar_t kName[] = L"Quivane copies";
  if (besideProgram) return (programFolder() / kName).c_str();
  constexpr wchar_t kVariable[] = L"LOCALAPPDATA";
  std::wstring folder(GetEnvironmentVariableW(kVariable, nullptr, 0), L'\0');
  folder.resize(GetEnvironmentVariableW(kVariable, folder.data(), static_cast<DWORD>(folder.size())));
  return folder.empty() ? String() : String((std::filesystem::path(folder) / kName).c_str());
}
