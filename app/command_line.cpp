#include "app/command_line.h"

#include <windows.h>

#include <string>

#include "app/program_state.h"
#include "app/tab_pages.h"

namespace {

constexpr wchar_t kQuote = L'"';

/// The program was asked for this file and shows nothing instead: without a word the user would take
/// the empty window for an empty database.
void tellNotOpened(const String& path) {
  const bool exists = GetFileAttributesW(path.text()) != INVALID_FILE_ATTRIBUTES;
  const std::wstring text =
      std::wstring(L"Database ") + path.text() + L" could not be opened.\n" +
      (exists ? L"It is not a database, or another program is using it." : L"There is no such file.");
  MessageBoxW(mainWindow, text.c_str(), L"Quivane", MB_ICONEXCLAMATION);
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
  if (theDocument->openDatabase(path)) {
    showDatabasePage();
  } else {
    tellNotOpened(path);
  }
}
