// The real program under thousands of commands, keys, clicks and messages in random order: it neither ends
// by a fault nor hangs, and takes no more of anything the longer it lasts. The choices are the same every
// time, the moments at which they come are not; QUIVANE_SOAK says how many there are (5,000).
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "resources/command_ids.h"
#include "tests/ui/program/states/soaked_program.h"
#include "tests/ui/remote/remote_dialog.h"

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

int wantedSteps() {
  const char* const steps = std::getenv("QUIVANE_SOAK");
  return steps != nullptr ? std::max(std::atoi(steps), 1'000) : kDefaultSteps;
}

Possessions mostOf(const Possessions& one, const Possessions& other) {
  return {std::max(one.windows, other.windows), std::max(one.handles, other.handles),
          std::max(one.keys, other.keys), std::max(one.graphics, other.graphics),
          std::max(one.memory, other.memory)};
}

class SoakTest : public SoakedProgram {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(SoakedProgram::SetUp());
    std::ofstream(folder() / "in.csv") << "Name,Number\none,1\ntwo,2\n";
  }

  void step();

 private:
  int below(int count) { return std::uniform_int_distribution(0, count - 1)(random_); }
  fs::path fileFor(const std::wstring& purpose);
  void leaveFileDialog(HWND dialog);

  HWND usedWindow() const;
  HWND someControl();
  HWND focusInFront() const;

  void giveCommand();
  void pressKey();
  void type();
  void click();
  void switchPage();
  void sendMessage();
  void leaveDialog();

  int fileCount_ = 0;
  std::mt19937 random_{20260412};
};

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

void SoakTest::leaveFileDialog(HWND dialog) {
  // A key that came before may have brought a box or a menu over the dialog. Nobody can leave the dialog
  // under it, and the system's own does not live through that.
  closeMenus();
  if (!takesAll() || front() != dialog || isMenuOpen()) return;
  if (below(2) == 0) {
    nameFile(dialog, fileFor(remote::text(main())));
  } else {
    cancelFile(dialog);
  }
  // Some names are asked about or refused; what is answered then, the next steps say.
  ASSERT_TRUE(remote::waitUntil([=, this] {
    // Its own menus outlast it.
    closeMenus();
    return !IsWindow(dialog) || !IsWindowEnabled(dialog);
  })) << frontText();
}

// ---- What the random user does

/// A file dialog may have come since it was looked whether there is one.
HWND SoakTest::usedWindow() const {
  const HWND window = front();
  return isFileDialog(window) ? main() : window;
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
                               ID_TABLE_PASTE,
                               ID_HISTORY_UNDO,
                               ID_HISTORY_UNDO,
                               ID_HISTORY_REDO,
                               ID_LOOK_UP,
                               ID_GO_TO_LOOKED_UP,
                               ID_GO_BACK,
                               ID_GO_BACK_TO,
                               ID_ORDER_COLUMN,
                               ID_FILTER_ALL,
                               ID_ARRANGEMENT_CLEAR,
                               ID_ARRANGEMENT_KEEP,
                               ID_FIND_EVERYWHERE};
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
