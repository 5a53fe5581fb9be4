#include "app/start/command_line.h"

#include <windows.h>

#include <string>
#include <utility>

#include "app/window/exchange_commands.h"
#include "app/window/program_state.h"
#include "app/window/tab_pages.h"
#include "views/shared/unowned_box.h"

namespace {

constexpr wchar_t kQuote = L'"';

/// Waits until start-up is over.
String commandLinePath;

/// Waits until the message that is being answered has been.
String waitingPath;

/// The program was asked for this file and shows nothing instead: without a word the user would take
/// the empty window for an empty database.
void tellNotOpened(const String& path, const String& reason) {
  const std::wstring text =
      std::wstring(L"Database ") + path.text() + L" could not be opened.\n" + reason.text();
  showBox(mainWindow, text.c_str(), L"Quivane", MB_ICONEXCLAMATION);
}

/// In place of the database that is open, unless what was typed into that can't be stored.
void openNamedDatabase(const String& path) {
  if (!theDocument->canLeaveRecord()) return;
  theDocument->closeDatabase();
  const Outcome opened = theDocument->openDatabase(fullPath(path));
  if (opened) {
    showDatabasePage();
  } else {
    showNoDatabase();
    tellNotOpened(path, opened.reason());
  }
}

}  // namespace

String fullPath(const String& path) {
  std::wstring full(MAX_PATH, L'\0');
  DWORD length = GetFullPathNameW(path.text(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (length >= full.size()) {
    full.resize(length);
    length = GetFullPathNameW(path.text(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  }
  return length == 0 || length >= full.size() ? path : String(full.c_str());
}

String normalisedPath(const String& commandLine) {
  String path = commandLine;
  if (path.text()[0] == kQuote) path.right(path.length() - 1, path);
  const std::size_t length = path.length();
  if (length != 0 && path.text()[length - 1] == kQuote) path.left(length - 1, path);
  return path;
}

void keepCommandLinePath(const String& path) {
  commandLinePath = path;
}

void openKeptDatabaseLater() {
  if (!commandLinePath.isEmpty()) openDatabaseLater(std::exchange(commandLinePath, String()));
}

void openDatabaseLater(const String& path) {
  waitingPath = path;
}

void openWaitingDatabase() {
  if (waitingPath.isEmpty()) return;
  const String path = std::exchange(waitingPath, String());
  if (isImportable(path)) {
    importFile(fullPath(path));
  } else {
    openNamedDatabase(path);
  }
}
