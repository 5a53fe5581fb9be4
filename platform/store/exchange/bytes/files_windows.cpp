#include <windows.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <system_error>

#include "platform/store/exchange/bytes/files.h"
#include "platform/store/sqlite/files/file_path.h"

namespace store::exchange {

FileHandle openToRead(const std::string& path) {
  return FileHandle(_wfopen(pathOf(path).c_str(), L"rbN"));
}

FileHandle createToWrite(const std::string& path) {
  const int number = _wopen(pathOf(path).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                            S_IREAD | S_IWRITE);
  if (number < 0) return nullptr;
  FileHandle file(_fdopen(number, "wb"));
  if (file == nullptr) _close(number);
  return file;
}

bool flushToDisk(std::FILE* file) {
  if (std::fflush(file) != 0) return false;
  return _commit(_fileno(file)) == 0 || errno == EBADF || errno == EINVAL;
}

Placing putIntoPlace(const std::string& from, const std::string& to, bool replaces, std::string* reason) {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0);
  if (MoveFileExW(pathOf(from).c_str(), pathOf(to).c_str(), flags)) return Placing::done;
  const DWORD error = GetLastError();
  if (!replaces && (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)) return Placing::taken;
  *reason = std::system_category().message(static_cast<int>(error));
  return Placing::failed;
}

unsigned long processNumber() {
  return GetCurrentProcessId();
}

FileHandle openTemporary() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  std::array<wchar_t, MAX_PATH + 1> name{};
  if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0) return nullptr;
  if (GetTempFileNameW(folder.data(), L"qvn", 0, name.data()) == 0) return nullptr;
  // D: the system deletes the file with its last handle.
  return FileHandle(_wfopen(name.data(), L"w+bDN"));
}

}  // namespace store::exchange
