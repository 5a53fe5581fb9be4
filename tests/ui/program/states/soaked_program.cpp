#include "tests/ui/program/states/soaked_program.h"

#include <commctrl.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>

#include "base/settings/settings_store.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/remote/remote_dialog.h"

namespace fs = std::filesystem;

namespace {

constexpr DWORD kHangs = 20'000;  // milliseconds
constexpr int kFileName = 0x47C;
constexpr wchar_t kMeasuredTable[] = L"Many kinds";

}  // namespace

void SoakedProgram::SetUp() {
  fs::create_directory(folder());
  // Without the help viewer: what it starts outlasts the test.
  for (const wchar_t* name : {L"Quivane Pocket PC.exe", L"adoce31.dll", L"aygshell.dll"}) {
    fs::copy_file(testsupport::binFolder() / name, folder() / name);
  }
  former_ = fs::current_path();
  // A file dialog begins in the current folder.
  fs::current_path(folder());
  makeTables();
  ASSERT_NO_FATAL_FAILURE(start());
}

void SoakedProgram::TearDown() {
  program_.reset();
  fs::current_path(former_);
  RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  EXPECT_TRUE(registerBinComponents());
}

void SoakedProgram::start() {
  RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  constexpr std::uint32_t kNewRecordsAndDeletions = 2;
  SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
  program_.emplace(folder() / "Quivane Pocket PC.exe", quoted(path()));
  main_ = program_->mainWindow();
  ASSERT_NE(main_, nullptr);
  ASSERT_NE(program_->tablesList(), nullptr);
}

// ---- What there is to work on

/// As another program does it now and then.
void SoakedProgram::makeTables() const {
  automationtest::SqliteFile(path().wstring())
      .run(
          "CREATE TABLE IF NOT EXISTS [Many kinds] (Name Text, Number Integer, Small Smallint, Real Double,"
          " Day Datetime, Flag Bit, Bytes Blob, More Text, Again Text, Last Text);"
          "CREATE TABLE IF NOT EXISTS Short (Name Text);"
          "CREATE TABLE IF NOT EXISTS Empty (Name Text);"
          "CREATE TABLE IF NOT EXISTS QuivaneQueries (QueryName Text, SQL Text);"
          "INSERT INTO QuivaneQueries SELECT 'joined', 'SELECT a.Name, b.Name FROM Short a, Short b'"
          " WHERE (SELECT count(*) FROM QuivaneQueries) < 3;"
          "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 40)"
          " INSERT INTO [Many kinds] SELECT 'name ' || i, i, i, i * 1.5, '2001-03-09', i % 2, x'0102',"
          " printf('%.*c', i * 30, 'm'), NULL, 'last' FROM s WHERE (SELECT count(*) FROM [Many kinds]) < 20;"
          "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 40)"
          " INSERT INTO Short SELECT 'n' || i FROM s WHERE (SELECT count(*) FROM Short) < 20");
}

void SoakedProgram::nameFile(HWND dialog, const fs::path& file) {
  for (const HWND control : controlsOf(remote::control(dialog, kFileName))) {
    SendMessageTimeoutW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()), SMTO_NORMAL, kHangs,
                        nullptr);
  }
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  ++fileDialogs_;
}

void SoakedProgram::cancelFile(HWND dialog) {
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  ++fileDialogs_;
}

void SoakedProgram::openDatabase() {
  PostMessageW(main(), WM_COMMAND, ID_DATABASE_OPEN, 0);
  HWND dialog = nullptr;
  ASSERT_TRUE(remote::waitUntil([&] { return isFileDialog(dialog = front()); })) << frontText();
  nameFile(dialog, path());
  ASSERT_TRUE(remote::waitUntil([&] { return remote::shownPage(main()) != nullptr; })) << frontText();
  // Its list may be filled still.
  takesAll();
}

// ---- What is in front

/// The dialog or message box that can be used now, else the main window.
HWND SoakedProgram::front() const {
  return IsWindowEnabled(main()) != FALSE ? main() : remote::frontWindow(main());
}

bool SoakedProgram::isMenuOpen() const {
  return !remote::popups(program_->processId()).empty();
}

bool SoakedProgram::isFileDialog(HWND window) const {
  return window != main() && remote::control(window, kFileName) != nullptr;
}

std::string SoakedProgram::frontText() const {
  if (!program_->isRunning()) return "the program has ended";
  if (!answers()) return "it hangs";
  const std::wstring text = remote::text(front()) + L": " + remote::messageBoxText(front());
  return testing::PrintToString(text) + (front() == main() ? ", the main window" : "") +
         (IsWindowEnabled(main()) ? "" : ", which is disabled") + (isMenuOpen() ? ", a menu is open" : "");
}

std::vector<HWND> SoakedProgram::controlsOf(HWND window) const {
  std::vector<HWND> all;
  EnumChildWindows(
      window,
      [](HWND child, LPARAM list) -> BOOL {
        if (IsWindowVisible(child)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&all));
  all.push_back(window);
  return all;
}

// ---- What becomes of it

/// A message that comes to no window any more fails at once, when the program that had it is about to end.
bool SoakedProgram::send(HWND window, UINT message, DWORD_PTR* result) const {
  SetLastError(ERROR_SUCCESS);
  if (SendMessageTimeoutW(window, message, 0, 0, SMTO_NORMAL, kHangs, result) != 0) return true;
  return GetLastError() != ERROR_TIMEOUT && remote::waitUntil([&] { return !program_->isRunning(); });
}

bool SoakedProgram::answers() const {
  DWORD_PTR ignored = 0;
  return send(main(), WM_NULL, &ignored);
}

/// Waits until the program has taken all that was posted until now. What is posted last has an effect that
/// another process can see, and no other.
bool SoakedProgram::takesAll() {
  const HWND tab = remote::tabControl(main());
  isTabWide_ = !isTabWide_;
  PostMessageW(tab, CCM_SETUNICODEFORMAT, isTabWide_ ? TRUE : FALSE, 0);
  const ULONGLONG begin = GetTickCount64();
  while (program_->isRunning()) {
    DWORD_PTR present = 0;
    if (!send(tab, CCM_GETUNICODEFORMAT, &present)) return false;
    if ((present != 0) == isTabWide_) return true;
    if (GetTickCount64() - begin > kHangs) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

/// Only its owner closes a menu.
void SoakedProgram::closeMenus() const {
  GUITHREADINFO state{};
  state.cbSize = sizeof(state);
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(main(), nullptr), &state)) return;
  for (const HWND window : {main(), state.hwndMenuOwner, state.hwndCapture})
    SendMessageTimeoutW(window, WM_CANCELMODE, 0, 0, SMTO_NORMAL, kHangs, nullptr);
}

/// Until no dialog and no menu is open any more, and a database is.
void SoakedProgram::comeToRest() {
  ASSERT_TRUE(answers()) << "it hangs";
  ASSERT_TRUE(remote::waitUntil(
      [&] {
        if (!program().isRunning()) return true;
        closeMenus();
        if (!takesAll()) return false;
        // Also one that is left over when its file dialog was ended under it, which gave the window back.
        const HWND dialog = remote::frontWindow(main());
        // The title names the purpose of a file dialog until that has ended.
        if (dialog == main() && IsWindowEnabled(main()))
          return !isMenuOpen() && remote::text(main()) == L"Quivane";
        // Discards what can't be stored.
        for (const int answer : {IDYES, IDCANCEL, IDNO, IDOK}) {
          if (isFileDialog(dialog) && answer != IDCANCEL) continue;
          if (IsWindowEnabled(dialog)) PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        }
        return false;
      },
      std::chrono::seconds(60)))
      << "a dialog does not go: " << frontText();
  if (program().isRunning() && remote::shownPage(main()) == nullptr) openDatabase();
}

/// With the same table shown on every page. None when the program has ended meanwhile.
std::optional<Possessions> SoakedProgram::measure() {
  comeToRest();
  makeTables();
  // A table that another program made is listed when its file is opened.
  PostMessageW(main(), WM_COMMAND, ID_DATABASE_CLOSE, 0);
  takesAll();
  comeToRest();
  if (HasFatalFailure()) return std::nullopt;
  const HWND tables = remote::shownPage(main());
  const std::vector<std::wstring> names = remote::itemTexts(tables);
  const auto found = std::find(names.begin(), names.end(), kMeasuredTable);
  if (found != names.end()) remote::selectItem(tables, static_cast<int>(found - names.begin()));
  // One that is selected already is chosen so.
  remote::pressKey(tables, VK_SPACE);
  takesAll();
  for (const int page : {OpenedDatabase::kFormPage, OpenedDatabase::kListPage, OpenedDatabase::kQueriesPage,
                         OpenedDatabase::kTablesPage}) {
    remote::clickTab(remote::tabControl(main()), page);
    takesAll();
    comeToRest();
    if (HasFatalFailure()) return std::nullopt;
  }
  if (!program().isRunning()) return std::nullopt;
  return possessionsOf(program().processId(), program().processHandle());
}

void SoakedProgram::tellFault() const {
  wchar_t folder[MAX_PATH] = L"";
  GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH);
  std::ifstream report(fs::path(folder) / "Quivane fault.txt");
  std::printf("%s\n", std::string(std::istreambuf_iterator<char>(report), {}).c_str());
}
