#include "app/recovery/recovery_files.h"

#include <windows.h>

#include <string>

#include "base/program_folder.h"

namespace {

/// Empty where there is none.
std::filesystem::path userFolder() {
  constexpr wchar_t kVariable[] = L"LOCALAPPDATA";
  std::wstring folder(GetEnvironmentVariableW(kVariable, nullptr, 0), L'\0');
  folder.resize(GetEnvironmentVariableW(kVariable, folder.data(), static_cast<DWORD>(folder.size())));
  return folder;
}

}  // namespace

RecoveryFiles recoveryFiles(bool besideProgram) {
  const std::filesystem::path folder = besideProgram ? programFolder() : userFolder();
  if (folder.empty()) return {};
  return {folder / L"Quivane recovered.txt", folder / L"Quivane fault.txt"};
}
