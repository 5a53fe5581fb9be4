#pragma once

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

/// Where the program keeps the former states of databases.
inline std::filesystem::path keptCopiesPath() {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetEnvironmentVariableW(L"LOCALAPPDATA", folder.data(), static_cast<DWORD>(folder.size())));
  return std::filesystem::path(folder) / L"Quivane copies";
}

/// Those of all databases under a folder, the oldest first where they are of one database.
inline std::vector<std::filesystem::path> keptCopies(const std::filesystem::path& folder = keptCopiesPath()) {
  std::vector<std::filesystem::path> found;
  if (!std::filesystem::exists(folder)) return found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == L".cdb") found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

inline void forgetKeptCopies() {
  if (!std::filesystem::exists(keptCopiesPath())) return;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(keptCopiesPath())) {
    SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  std::error_code ignored;
  std::filesystem::remove_all(keptCopiesPath(), ignored);
}
