#include "app/command_line.h"

#include <windows.h>

#include <string>

#include "app/program_state.h"
#include "app/tab_pages.h"
#include "views/unowned_box.h"

namespace {

constexpr wchar_t kQuote = L'"';

/// The program was asked for this file and shows nothing instead: without a word the user would take
/// the empty window for an empty database.
void tellNotOpened(const String& path) {
  const bool exists = GetFileAttributesW(path.text()) != INVALID_FILE_ATTRIBUTES;
  const std::wstring text =
      std::wstring(L"Database ") + path.text() + L" could not be opened.\n" +
      (exists ? L"It is not a database, or another program is using it." : L"There is no such file.");
  showBox(mainWindow, text.c_str(), L"Quivane", MB_ICONEXCLAMATION);
}

/// The path from the root on: the current folder, from which a shorter one starts, changes with each file
/// dialog, and the session is restored in another. The path itself when the system can't tell.
String fullPathOf(const String& path) {
  std::wstring full(MAX_PATH, L'\0');
  DWORD length = GetFullPathNameW(path.text(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length >= full.size()) {
    full.resize(length);
    length = GetFullPathNameW(path.text(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  }
  return length == 0 || length >= full.size() ? path : String(full.c_str());
}

}  // namespace

String normalisedPath(const String& commandLine) {
  String path = commandLine;
  if (path.text()[0] == kQuote) path.right(path.length() - 1, path);
  const std::size_t length = path.length();
  if (length != 0 && path.text()[length - 1] == kQuote) path.left(length - 1, path);
  return path;
}

void openCommandLineDatabase(const String& path) {
  if (theDocument->closeDatabase() == 0) switchPage(kNoPage);
  if (theDocument->openDatabase(fullPathOf(path))) {
    showDatabasePage();
  } else {
    tellNotOpened(path);
  }
}
