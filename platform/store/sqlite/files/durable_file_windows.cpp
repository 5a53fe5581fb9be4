#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string_view>

#include "platform/store/sqlite/files/durable_file.h"
#include "platform/store/sqlite/files/file_path.h"

namespace store {

namespace {

/// Runs `use` with the path as the system takes it; false when there is no memory for it.
template <typename Use>
bool withPath(const std::string& utf8, Use use) noexcept {
  try {
    return use(pathOf(utf8).c_str());
  } catch (...) {
    return false;
  }
}

struct SearchCloser {
  using pointer = HANDLE;
  void operator()(HANDLE search) const { FindClose(search); }
};

}  // namespace

bool renameFile(const std::string& from, const std::string& to, bool replaces) noexcept {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0);
  return withPath(from, [&](const wchar_t* source) {
    return withPath(to, [&](const wchar_t* target) { return MoveFileExW(source, target, flags) != FALSE; });
  });
}

bool flushFile(const std::string& path) noexcept {
  return withPath(path, [](const wchar_t* name) {
    const HANDLE file =
        CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool isFlushed = FlushFileBuffers(file) != FALSE;
    CloseHandle(file);
    return isFlushed;
  });
}

bool markReadOnly(const std::string& path, bool isReadOnly) noexcept {
  return withPath(path, [&](const wchar_t* name) {
    return SetFileAttributesW(name, isReadOnly ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL) != FALSE;
  });
}

bool removeFile(const std::string& path) noexcept {
  return withPath(path, [](const wchar_t* name) {
    if (DeleteFileW(name)) return true;
    if (GetLastError() == ERROR_FILE_NOT_FOUND) return true;
    SetFileAttributesW(name, FILE_ATTRIBUTE_NORMAL);
    return DeleteFileW(name) != FALSE;
  });
}

std::optional<std::int64_t> freeBytesAt(const std::filesystem::path& folder) noexcept {
  ULARGE_INTEGER available{};
  if (!GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr)) return std::nullopt;
  constexpr ULONGLONG kMost = ULONGLONG{1} << 62;
  return static_cast<std::int64_t>(std::min(available.QuadPart, kMost));
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  WIN32_FIND_DATAW entry{};
  const HANDLE found = FindFirstFileW((pathOf(folder) / L"*").c_str(), &entry);
  if (found == INVALID_HANDLE_VALUE) return names;
  const std::unique_ptr<HANDLE, SearchCloser> search(found);
  do {
    const std::wstring_view name = entry.cFileName;
    if (name == L"." || name == L"..") continue;
    const std::u8string text = std::filesystem::path(name).u8string();
    names.emplace_back(text.begin(), text.end());
  } while (FindNextFileW(search.get(), &entry));
  return names;
}

}  // namespace store
