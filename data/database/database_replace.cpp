// A new database file in the place of one that exists.
#include <windows.h>

#include <array>
#include <string>

#include "base/name_list.h"
#include "data/database/database.h"
#include "owners/handles.h"

namespace {

bool exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// A name in the same folder that no file has; short, so that it fits where the path itself does.
std::wstring freeNameBeside(const std::wstring& path) {
  const std::size_t folder = path.find_last_of(L"\\/");
  const std::wstring start = folder == std::wstring::npos ? std::wstring() : path.substr(0, folder + 1);
  std::wstring name;
  int number = 0;
  do {
    name = start + L"~" + std::to_wstring(number++);
  } while (exists(name));
  return name;
}

/// What the system says about its last failure.
String systemReason() {
  std::array<wchar_t, 512> text{};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, GetLastError(), 0,
                 text.data(), static_cast<DWORD>(text.size()), nullptr);
  return text.data();
}

/// Whether a file has content: a journal that was done with is empty, or its beginning is.
bool beginsWithContent(const std::wstring& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  char first = 0;
  DWORD count = 0;
  return file && ReadFile(file.get(), &first, 1, &count, nullptr) && count == 1 && first != 0;
}

/// What a program that is in the midst of using a file has beside it. It would be taken for the new file's.
bool hasUnfinishedWork(const std::wstring& path) {
  return beginsWithContent(path + L"-journal") || beginsWithContent(path + L"-wal");
}

}  // namespace

Outcome Database::replaceDatabase(const String& path) {
  const std::wstring wanted = path.text();
  if (!exists(wanted)) return createDatabase(path);
  // Opened and closed, a database has no unfinished work of programs that have ended.
  NameList tables;
  if (open(path)) listTables(tables);
  close();
  if (hasUnfinishedWork(wanted)) {
    return Outcome::failure(L"Another program is using the file.");
  }
  const std::wstring beside = freeNameBeside(wanted);
  if (Outcome created = createDatabase(beside.c_str()); !created) return created;
  if (MoveFileExW(beside.c_str(), wanted.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    return {};
  Outcome failure = Outcome::failure(systemReason());
  DeleteFileW(beside.c_str());
  return failure;
}
