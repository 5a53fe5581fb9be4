#include <windows.h>

#include <memory>
#include <new>
#include <winternl.h>

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

/// A handle that is closed at the end; INVALID_HANDLE_VALUE when there is none.
class OpenFile {
 public:
  /// Without access to its content, which nobody can refuse. GetLastError() tells why there is none.
  explicit OpenFile(const char* path) {
    const std::unique_ptr<wchar_t[]> systemPath = systemPathOf(path);
    if (systemPath == nullptr) {
      SetLastError(ERROR_NOT_ENOUGH_MEMORY);
      return;
    }
    handle_ = CreateFileW(systemPath.get(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                          nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  }
  ~OpenFile() {
    if (isOpen()) CloseHandle(handle_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE handle() const { return handle_; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

HANDLE handleOf(sqlite3_file* file) {
  HANDLE handle = INVALID_HANDLE_VALUE;
  const int result = file->pMethods->xFileControl(file, SQLITE_FCNTL_WIN32_GET_HANDLE, &handle);
  return result == SQLITE_OK ? handle : INVALID_HANDLE_VALUE;
}

/// The number of a file in its volume, and when it was made, written and changed, to a ten-millionth of a
/// second.
struct FileFacts {
  LONGLONG number = 0;
  LONGLONG made = 0;
  LONGLONG written = 0;
  LONGLONG changed = 0;
  bool operator==(const FileFacts&) const = default;
};

std::optional<FileFacts> factsOf(HANDLE file) {
  IO_STATUS_BLOCK status = {};
  FILE_INTERNAL_INFORMATION internal = {};
  FILE_BASIC_INFORMATION basic = {};
  if (!NT_SUCCESS(
          NtQueryInformationFile(file, &status, &internal, sizeof(internal), FileInternalInformation)) ||
      !NT_SUCCESS(NtQueryInformationFile(file, &status, &basic, sizeof(basic), FileBasicInformation))) {
    return {};
  }
  return FileFacts{internal.IndexNumber.QuadPart, basic.CreationTime.QuadPart, basic.LastWriteTime.QuadPart,
                   basic.ChangeTime.QuadPart};
}

/// Whether both are the same file without doubt. Wine asks another process for a volume's number, which takes
/// longer than all of this, and what became of a file is asked several times for each change of a record. A
/// file on another volume that has the same number and was made, written and changed at the same moments is
/// its copy, sector by sector, and its volume has the same number, too.
bool areSurelySame(HANDLE one, HANDLE other) {
  const std::optional<FileFacts> facts = factsOf(one);
  return facts.has_value() && facts == factsOf(other);
}

}  // namespace

std::optional<FileIdentity> identityOf(sqlite3_file* file, const char* path) {
  const std::optional<FileIdentity> identity = identityOfHandle(handleOf(file));
  const OpenFile found(path);
  // Some servers make a number up for each opening.
  return found.isOpen() && identity == identityOfHandle(found.handle()) ? identity : std::nullopt;
}

FileState stateOf(const FileIdentity& identity, sqlite3_file* file, const char* path) {
  const OpenFile found(path);
  if (!found.isOpen()) {
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? FileState::gone
                                                                          : FileState::unknown;
  }
  if (areSurelySame(found.handle(), handleOf(file))) return FileState::same;
  const std::optional<FileIdentity> at = identityOfHandle(found.handle());
  if (!at.has_value()) return FileState::unknown;
  return *at == identity ? FileState::same : FileState::replaced;
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
