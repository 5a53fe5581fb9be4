#include <windows.h>

#include <memory>
#include <new>

#include "platform/store/sqlite/files/file_identity.h"

namespace store {

namespace {

std::optional<FileIdentity> identityOfHandle(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION information = {};
  if (!GetFileInformationByHandle(file, &information)) return {};
  return FileIdentity{information.dwVolumeSerialNumber,
                      std::uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow};
}

// Nothing here throws: SQLite, which calls it, could not be left that way.
std::unique_ptr<wchar_t[]> systemPathOf(const char* utf8) {
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
  std::unique_ptr<wchar_t[]> path(length > 0 ? new (std::nothrow) wchar_t[static_cast<std::size_t>(length)]
                                             : nullptr);
  if (path != nullptr) MultiByteToWideChar(CP_UTF8, 0, utf8, -1, path.get(), length);
  return path;
}

/// Whatever can be found out about the file at `path` without access to its content, which nobody can refuse.
/// GetLastError() tells why it is empty.
std::optional<FileIdentity> identityAt(const char* path) {
  const std::unique_ptr<wchar_t[]> systemPath = systemPathOf(path);
  if (systemPath == nullptr) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return {};
  }
  const HANDLE file = CreateFileW(systemPath.get(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  const std::optional<FileIdentity> identity = identityOfHandle(file);
  CloseHandle(file);
  return identity;
}

}  // namespace

std::optional<FileIdentity> identityOf(sqlite3_file* file, const char* path) {
  HANDLE handle = nullptr;
  if (file->pMethods->xFileControl(file, SQLITE_FCNTL_WIN32_GET_HANDLE, &handle) != SQLITE_OK) return {};
  const std::optional<FileIdentity> identity = identityOfHandle(handle);
  // Some servers make a number up for each opening.
  return identity == identityAt(path) ? identity : std::nullopt;
}

FileState stateOf(const FileIdentity& identity, const char* path) {
  const std::optional<FileIdentity> found = identityAt(path);
  if (found.has_value()) return *found == identity ? FileState::same : FileState::replaced;
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? FileState::gone
                                                                        : FileState::unknown;
}

bool makeEmptyFile(const char* path) {
  const std::unique_ptr<wchar_t[]> systemPath = systemPathOf(path);
  if (systemPath == nullptr) return false;
  const HANDLE file =
      CreateFileW(systemPath.get(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  return true;
}

}  // namespace store
