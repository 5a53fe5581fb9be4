// The real program under thousands of commands, keys, clicks and messages in random order: it neither ends
// by a fault nor hangs, and takes no more of anything the longer it lasts. The choices are the same every
// time, the moments at which they come are not; QUIVANE_SOAK says how many there are (5,000).
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "base/settings_store.h"
#include "resources/command_ids.h"
#include "tests/automation/sqlite_file.h"
#include "tests/ui/remote/possessions.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace {

namespace fs = std::filesystem;

constexpr int kDefaultSteps = 5'000;
constexpr int kMostWarmingSteps = 5'000;  // after which nothing may grow any more but by what these say
constexpr int kMoreWindows = 6;
constexpr int kMoreHandles = 12;
constexpr int kMoreKeys = 6;
constexpr int kMoreGraphics = 20;
constexpr int kStepsForGraphics = 200;   // in which the system's own controls may leave one more
constexpr long kMoreMemory = 16 * 1024;  // KiB
constexpr DWORD kHangs = 20'000;         // milliseconds

constexpr int kFileName = 0x47C;
constexpr wchar_t kMeasuredTable[] = L"Many kinds";

int wantedSteps() {
  const char* const steps = std::getenv("QUIVANE_SOAK");
  return steps != nullptr ? std::max(std::atoi(steps), 1'000) : kDefaultSteps;
}

Possessions mostOf(const Possessions& one, const Possessions& other) {
  return {std::max(one.windows, other.windows), std::max(one.handles, other.handles),
          std::max(one.keys, other.keys), std::max(one.graphics, other.graphics),
          std::max(one.memory, other.memory)};
}

class SoakTest : public UiTest {
 protected:
  void SetUp() override {
    fs::create_directory(folder());
    // Without the help viewer: what it starts outlasts the test.
    for (const wchar_t* name : {L"Quivane Pocket PC.exe", L"adoce31.dll", L"aygshell.dll"}) {
      fs::copy_file(testsupport::binFolder() / name, folder() / name);
    }
    former_ = fs::current_path();
    // A file dialog begins in the current folder.
    fs::current_path(folder());
    makeTables();
    std::ofstream(folder() / "in.csv") << "Name,Number\none,1\ntwo,2\n";
    ASSERT_NO_FATAL_FAILURE(start());
  }
  void TearDown() override {
    program_.reset();
    fs::current_path(former_);
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
    EXPECT_TRUE(registerBinComponents());
  }

  RunningProgram& program() { return *program_; }
  HWND main() const { return main_; }
  int fileDialogs() const { return fileDialogs_; }
  int below(int count) { return std::uniform_int_distribution(0, count - 1)(random_); }

  void start() {
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
    constexpr std::uint32_t kNewRecordsAndDeletions = 2;
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    program_.emplace(folder() / "Quivane Pocket PC.exe", quoted(path()));
    main_ = program_->mainWindow();
    ASSERT_NE(main_, nullptr);
    ASSERT_NE(program_->tablesList(), nullptr);
  }

  void step();
  bool answers() const;
  bool takesAll();
  void closeMenus() const;
  void comeToRest();
  void makeTables() const;
  std::optional<Possessions> measure();
  void tellFault() const;

 private:
  fs::path folder() const { return file("soak"); }
  fs::path path() const { return folder() / "soak.cdb"; }

  HWND front() const;
  std::string frontText() const {
    if (!program_->isRunning()) return "the program has ended";
    if (!answers()) return "it hangs";
    const std::wstring text = remote::text(front()) + L": " + remote::messageBoxText(front());
    return testing::PrintToString(text) + (front() == main() ? ", the main window" : "") +
           (IsWindowEnabled(main()) ? "" : ", which is disabled") + (isMenuOpen() ? ", a menu is open" : "");
  }
  bool isFileDialog(HWND window) const {
    return window != main() && remote::control(window, kFileName) != nullptr;
  }
  fs::path fileFor(const std::wstring& purpose);
  void leaveFileDialog(HWND dialog);
  void nameFile(HWND dialog, const fs::path& file) const;
  void openDatabase();

  std::vector<HWND> controlsOf(HWND window) const;
  HWND usedWindow() const;
  HWND someControl();
  HWND focusInFront() const;
  bool isMenuOpen() const { return !remote::popups(program_->processId()).empty(); }

  void giveCommand();
  void pressKey();
  void type();
  void click();
  void switchPage();
  void sendMessage();
  void leaveDialog();

  fs::path former_;
  std::optional<RunningProgram> program_;
  HWND main_ = nullptr;
  bool isTabWide_ = true;
  int fileCount_ = 0;
  int fileDialogs_ = 0;
  std::mt19937 random_{20260412};
};

// ---- What there is to work on

/// As another program does it now and then.
void SoakTest::makeTables() const {
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

// ---- File dialogs are left at once: who walks about in one can come anywhere on the disk.

/// One that the dialog with this purpose may be given, in the folder of the test.
fs::path SoakTest::fileFor(const std::wstring& purpose) {
  if (purpose == L"Open Database") return path();
  if (purpose == L"New Database" || purpose == L"Save Database As") {
    ++fileCount_;
    return folder() / ("new " + std::to_string(fileCount_) + ".cdb");
  }
  if (purpose == L"Delete Database") return folder() / ("new " + std::to_string(fileCount_) + ".cdb");
  if (purpose == L"Import") return folder() / "in.csv";
  return folder() / "out.csv";
}

void SoakTest::nameFile(HWND dialog, const fs::path& file) const {
  for (const HWND control : controlsOf(remote::control(dialog, kFileName))) {
    SendMessageTimeoutW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()), SMTO_NORMAL, kHangs,
                        nullptr);
  }
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
}

void SoakTest::leaveFileDialog(HWND dialog) {
  // A key that came before may have brought a box or a menu over the dialog. Nobody can leave the dialog
  // under it, and the system's own does not live through that.
  closeMenus();
  if (!takesAll() || front() != dialog || isMenuOpen()) return;
  ++fileDialogs_;
  if (below(2) == 0) {
    nameFile(dialog, fileFor(remote::text(main())));
  } else {
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  }
  // Some names are asked about or refused; what is answered then, the next steps say.
  ASSERT_TRUE(remote::waitUntil([=, this] {
    // Its own menus outlast it.
    closeMenus();
    return !IsWindow(dialog) || !IsWindowEnabled(dialog);
  })) << frontText();
}

void SoakTest::openDatabase() {
  PostMessageW(main(), WM_COMMAND, ID_DATABASE_OPEN, 0);
  HWND dialog = nullptr;
  ASSERT_TRUE(remote::waitUntil([&] { return isFileDialog(dialog = front()); })) << frontText();
  ++fileDialogs_;
  nameFile(dialog, path());
  ASSERT_TRUE(remote::waitUntil([&] { return remote::shownPage(main()) != nullptr; })) << frontText();
  // Its list may be filled still.
  takesAll();
}

// ---- What the random user does

/// The dialog or message box that can be used now, else the main window.
HWND SoakTest::front() const {
  return IsWindowEnabled(main()) != FALSE ? main() : remote::frontWindow(main());
}

/// A file dialog may have come since it was looked whether there is one.
HWND SoakTest::usedWindow() const {
  const HWND window = front();
  return isFileDialog(window) ? main() : window;
}

std::vector<HWND> SoakTest::controlsOf(HWND window) const {
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

HWND SoakTest::someControl() {
  const std::vector<HWND> all = controlsOf(usedWindow());
  return all[static_cast<std::size_t>(below(static_cast<int>(all.size())))];
}

/// The window itself where no control of it has the keyboard.
HWND SoakTest::focusInFront() const {
  const HWND window = usedWindow();
  const HWND focus = remote::focus(main());
  return focus != nullptr && GetAncestor(focus, GA_ROOT) == window ? focus : window;
}

/// Also while a dialog is open, as another program can. The one that ends the program is left to other tests.
void SoakTest::giveCommand() {
  constexpr int kCommands[] = {ID_DATABASE_INFO,
                               ID_DATABASE_OPEN,
                               ID_DATABASE_NEW,
                               ID_DATABASE_DELETE,
                               ID_DATABASE_CLOSE,
                               ID_PASSWORD_CHANGE,
                               ID_OPTIONS,
                               ID_RECORD_FIRST,
                               ID_RECORD_LAST,
                               ID_RECORD_PREVIOUS,
                               ID_RECORD_NEXT,
                               ID_RECORD_NEW,
                               ID_RECORD_NEW,
                               ID_PAGE_NEXT,
                               ID_PAGE_PREVIOUS,
                               ID_FIND,
                               ID_RECORD_DELETE,
                               ID_RECORD_NUMBER,
                               ID_FORM_SCROLL_RANGE,
                               ID_ABOUT,
                               ID_PASTE,
                               ID_COPY,
                               ID_CUT,
                               ID_UNDO,
                               ID_VIEW_LARGE_ICONS,
                               ID_VIEW_SMALL_ICONS,
                               ID_VIEW_LIST,
                               ID_VIEW_REPORT,
                               ID_TABLE_NEW,
                               ID_COLUMN_PREVIOUS,
                               ID_COLUMN_NEXT,
                               ID_TABLE_DELETE,
                               ID_QUERY_NEW,
                               ID_QUERY_DELETE,
                               ID_QUERY_EDIT,
                               ID_COLUMNS_FIT,
                               ID_RECORD_EDIT,
                               ID_ENTER,
                               ID_NEXT_PANE,
                               ID_COLORS_OWN,
                               ID_COLORS_SYSTEM,
                               ID_COLORS_DARK,
                               ID_IMPORT,
                               ID_EXPORT,
                               ID_ROW_COPY,
                               ID_TABLE_PASTE};
  PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(kCommands[below(ARRAYSIZE(kCommands))]), 0);
}

void SoakTest::pressKey() {
  constexpr WORD kKeys[] = {VK_TAB,  VK_RETURN, VK_ESCAPE, VK_SPACE, VK_UP,   VK_DOWN,   VK_LEFT, VK_RIGHT,
                            VK_HOME, VK_END,    VK_PRIOR,  VK_NEXT,  VK_BACK, VK_DELETE, VK_F6,   VK_APPS};
  const WORD key = kKeys[below(ARRAYSIZE(kKeys))];
  // In a menu it may choose the end of the program.
  if (key == VK_RETURN && isMenuOpen()) return;
  remote::pressKey(focusInFront(), key);
}

void SoakTest::type() {
  const HWND focus = focusInFront();
  if (isMenuOpen()) return;
  for (int count = below(6); count >= 0; --count) {
    const auto character = static_cast<WPARAM>(below(4) == 0 ? 0x20 + below(0x2000) : 'a' + below(26));
    PostMessageW(focus, WM_CHAR, character, 1);
  }
}

void SoakTest::click() {
  const HWND window = someControl();
  RECT client{};
  GetClientRect(window, &client);
  const LPARAM point =
      MAKELPARAM(below(std::max<int>(client.right, 1)), below(std::max<int>(client.bottom, 1)));
  const bool isRight = below(8) == 0;
  PostMessageW(window, isRight ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, isRight ? MK_RBUTTON : MK_LBUTTON, point);
  PostMessageW(window, isRight ? WM_RBUTTONUP : WM_LBUTTONUP, 0, point);
}

void SoakTest::switchPage() {
  if (front() != main()) return;
  remote::clickTab(remote::tabControl(main()), below(4));
}

/// Such as the system sends, without an address in them.
void SoakTest::sendMessage() {
  constexpr UINT kMessages[] = {WM_NULL,          WM_SETFOCUS,       WM_KILLFOCUS,       WM_ACTIVATE,
                                WM_TIMER,         WM_SYSCOLORCHANGE, WM_FONTCHANGE,      WM_CANCELMODE,
                                WM_MOUSEMOVE,     WM_CAPTURECHANGED, WM_VSCROLL,         WM_HSCROLL,
                                WM_CONTEXTMENU,   WM_MOUSEWHEEL,     WM_QUERYENDSESSION, WM_THEMECHANGED,
                                WM_SETTINGCHANGE, WM_USER + 201,     WM_USER + 205,      WM_DISPLAYCHANGE,
                                WM_PAINT,         WM_NCPAINT,        WM_TIMECHANGE,      WM_COMPACTING};
  const UINT message = kMessages[below(ARRAYSIZE(kMessages))];
  PostMessageW(below(2) == 0 ? main() : someControl(), message, static_cast<WPARAM>(below(3)), 0);
}

/// Dialogs and menus come as thick as commands do; most of them are left soon.
void SoakTest::leaveDialog() {
  const HWND dialog = usedWindow();
  if (dialog == main()) return closeMenus();
  constexpr int kAnswers[] = {IDCANCEL, IDCANCEL, IDCANCEL, IDNO, IDNO, IDOK, IDOK, IDYES};
  PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(kAnswers[below(ARRAYSIZE(kAnswers))]), 0);
}

void SoakTest::step() {
  struct Row {
    int weight;
    void (SoakTest::*go)();
  };
  constexpr Row kSteps[] = {{14, &SoakTest::giveCommand}, {18, &SoakTest::pressKey},
                            {12, &SoakTest::type},        {16, &SoakTest::click},
                            {8, &SoakTest::switchPage},   {10, &SoakTest::sendMessage},
                            {22, &SoakTest::leaveDialog}};
  const HWND dialog = front();
  if (isFileDialog(dialog)) return leaveFileDialog(dialog);
  int all = 0;
  for (const Row& row : kSteps) all += row.weight;
  int at = below(all);
  for (const Row& row : kSteps) {
    at -= row.weight;
    if (at >= 0) continue;
    // A user's keys and clicks go where he sees them go: to the dialog that has come meanwhile.
    if (row.go != &SoakTest::giveCommand) {
      ASSERT_TRUE(takesAll()) << frontText();
    }
    return (this->*row.go)();
  }
}

// ---- What becomes of the program

bool SoakTest::answers() const {
  DWORD_PTR ignored = 0;
  return SendMessageTimeoutW(main(), WM_NULL, 0, 0, SMTO_NORMAL, kHangs, &ignored) != 0;
}

/// Waits until the program has taken all that was posted until now. What is posted last has an effect that
/// another process can see, and no other.
bool SoakTest::takesAll() {
  const HWND tab = remote::tabControl(main());
  isTabWide_ = !isTabWide_;
  PostMessageW(tab, CCM_SETUNICODEFORMAT, isTabWide_ ? TRUE : FALSE, 0);
  const ULONGLONG begin = GetTickCount64();
  while (program_->isRunning()) {
    DWORD_PTR present = 0;
    if (SendMessageTimeoutW(tab, CCM_GETUNICODEFORMAT, 0, 0, SMTO_NORMAL, kHangs, &present) == 0)
      return !program_->isRunning();
    if ((present != 0) == isTabWide_) return true;
    if (GetTickCount64() - begin > kHangs) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

/// Only its owner closes a menu.
void SoakTest::closeMenus() const {
  GUITHREADINFO state{};
  state.cbSize = sizeof(state);
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(main(), nullptr), &state)) return;
  for (const HWND window : {main(), state.hwndMenuOwner, state.hwndCapture})
    SendMessageTimeoutW(window, WM_CANCELMODE, 0, 0, SMTO_NORMAL, kHangs, nullptr);
}

/// Until no dialog and no menu is open any more, and a database is.
void SoakTest::comeToRest() {
  ASSERT_TRUE(answers() || !program().isRunning()) << "it hangs";
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
std::optional<Possessions> SoakTest::measure() {
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

void SoakTest::tellFault() const {
  wchar_t folder[MAX_PATH] = L"";
  GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH);
  std::ifstream report(fs::path(folder) / "Quivane fault.txt");
  std::printf("%s\n", std::string(std::istreambuf_iterator<char>(report), {}).c_str());
}

TEST_F(SoakTest, NothingEndsHangsOrGrows) {
  const int steps = wantedSteps();
  const int warmingSteps = std::min(kMostWarmingSteps, steps / 2);
  constexpr int kBetweenMeasurings = 500;
  const ULONGLONG begin = GetTickCount64();
  std::optional<Possessions> first;
  int firstFileDialogs = 0;
  int age = 0;
  int compared = 0;
  for (int number = 1; number <= steps; ++number) {
    SCOPED_TRACE(number);
    ASSERT_NO_FATAL_FAILURE(step());
    ++age;
    if (number % 200 == 0) makeTables();
    // So that no more than these wait to be taken.
    if (number % 100 == 0) {
      ASSERT_NO_FATAL_FAILURE(comeToRest());
    }
    // Each of the others is taken while the program is still busy with the one before.
    if (number % 5 != 0) continue;
    if (!program().isRunning()) {
      // A menu that opened late may have been answered with its last entry.
      const DWORD code = program().exitCode().value_or(0);
      if (code != 0) tellFault();
      ASSERT_EQ(code, 0u);
      std::printf("%d steps: the program was left\n", number);
      ASSERT_NO_FATAL_FAILURE(start());
      first.reset();
      age = 0;
      continue;
    }
    ASSERT_TRUE(answers()) << "it hangs";
    if (number % kBetweenMeasurings != 0) continue;
    const std::optional<Possessions> now = measure();
    ASSERT_FALSE(HasFatalFailure());
    if (!now) continue;
    std::printf("%d steps, %llu s: %d windows, %d handles, %d keys, %d graphics objects, %ld KiB\n", number,
                (GetTickCount64() - begin) / 1000, now->windows, now->handles, now->keys, now->graphics,
                now->memory);
    std::fflush(stdout);
    if (age <= warmingSteps || !first) {
      first = mostOf(first.value_or(*now), *now);
      firstFileDialogs = fileDialogs();
      continue;
    }
    ++compared;
    EXPECT_LE(now->windows, first->windows + kMoreWindows);
    EXPECT_LE(now->handles, first->handles + kMoreHandles);
    // The system's file dialogs leave one each.
    EXPECT_LE(now->keys, first->keys + fileDialogs() - firstFileDialogs + kMoreKeys);
    EXPECT_LE(now->graphics, first->graphics + kMoreGraphics + number / kStepsForGraphics);
    EXPECT_LE(now->memory, first->memory + kMoreMemory);
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(compared, 0) << "the program was left too often to be compared with itself";
  ASSERT_NO_FATAL_FAILURE(comeToRest());
  EXPECT_EQ(remote::close(main()), 0u);
}

}  // namespace
