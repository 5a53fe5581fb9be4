// Drives a running Quivane from outside. Every verb waits until what it names has happened, ten
// seconds at most; if it does not happen, one line on stderr says so and the exit code is 1.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/remote/remote_window.h"

namespace {

constexpr int kUsageError = 2;

/// What stands behind a verb: `number` is -1 where the first argument is none.
struct Arguments {
  std::vector<std::wstring> texts;
  int number = -1;
};

/// A whole number from 0; -1 for anything else.
int parseNumber(const std::wstring& text) {
  wchar_t* end = nullptr;
  const long number = std::wcstol(text.c_str(), &end, 10);
  return text.empty() || *end != L'\0' || number < 0 || number > 1'000'000 ? -1 : static_cast<int>(number);
}

int fail(const char* what) {
  std::fprintf(stderr, "drive: %s\n", what);
  return 1;
}

void printText(const std::wstring& text, FILE* where = stdout) {
  std::string utf8(text.size() * 3, '\0');
  utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(),
                                                           static_cast<int>(text.size()), utf8.data(),
                                                           static_cast<int>(utf8.size()), nullptr, nullptr)));
  std::fwrite(utf8.data(), 1, utf8.size(), where);
}

int failInFront(HWND main) {
  std::fputs("drive: in front is \"", stderr);
  printText(remote::text(remote::frontWindow(main)), stderr);
  std::fputs("\"\n", stderr);
  return 1;
}

HWND waitForMainWindow() {
  HWND main = nullptr;
  remote::waitUntil([&] { return (main = remote::mainWindow()) != nullptr; });
  return main;
}

/// The control of the window in front, once it is there and can be used; null when that takes too long.
HWND waitForControl(HWND main, int id) {
  HWND control = nullptr;
  remote::waitUntil([&] {
    // Its own first: what a list inside a dialog has may bear the number of a button.
    const HWND front = remote::frontWindow(main);
    control = GetDlgItem(front, id);
    if (!control) control = remote::control(front, id);
    return control != nullptr && IsWindowEnabled(control) != FALSE;
  });
  return control;
}

int waitWindow(HWND, const Arguments&) {
  return 0;
}

int switchPage(HWND main, const Arguments& arguments) {
  return remote::switchToPage(main, arguments.number) ? 0 : fail("the page is not shown");
}

int selectTable(HWND main, const Arguments& arguments) {
  const int item = arguments.number;
  HWND list = nullptr;
  const bool found = remote::waitUntil([&] {
    list = remote::shownPage(main);
    return list != nullptr && remote::isList(list) && remote::itemCount(list) > item;
  });
  if (!found) return fail("there is no such item");
  return remote::selectItem(list, item) && remote::selectedItem(list) == item
             ? 0
             : fail("the item can't be selected");
}

int runCommand(HWND main, const Arguments& arguments) {
  SendMessageW(main, WM_COMMAND, static_cast<WPARAM>(arguments.number), 0);
  return 0;
}

int openDialog(HWND main, const Arguments& arguments) {
  PostMessageW(main, WM_COMMAND, static_cast<WPARAM>(arguments.number), 0);
  return remote::waitForDialog(main, arguments.texts[1]) ? 0 : failInFront(main);
}

int waitDialog(HWND main, const Arguments& arguments) {
  return remote::waitForDialog(main, arguments.texts[0]) ? 0 : failInFront(main);
}

int waitMain(HWND main, const Arguments&) {
  return remote::waitForMain(main) ? 0 : failInFront(main);
}

std::wstring withoutLeadingBlanks(const std::wstring& text) {
  return text.substr(std::min(text.find_first_not_of(L' '), text.size()));
}

int waitText(HWND main, const Arguments& arguments) {
  const bool shown = remote::waitUntil([&] {
    HWND control = remote::control(remote::frontWindow(main), arguments.number);
    if (!control) control = remote::control(main, arguments.number);
    return control != nullptr && withoutLeadingBlanks(remote::text(control)) == arguments.texts[1];
  });
  return shown ? 0 : fail("the control does not show the text");
}

int click(HWND main, const Arguments& arguments) {
  const HWND control = waitForControl(main, arguments.number);
  if (!control) return fail("there is no such control in front");
  remote::clickControl(control);
  return 0;
}

int type(HWND main, const Arguments& arguments) {
  const HWND control = waitForControl(main, arguments.number);
  if (!control) return fail("there is no such control in front");
  wchar_t name[16] = L"";
  GetClassNameW(control, name, ARRAYSIZE(name));
  if (lstrcmpiW(name, L"Edit") == 0) {
    remote::typeText(control, arguments.texts[1]);
  } else {
    SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(arguments.texts[1].c_str()));
  }
  return remote::text(control) == arguments.texts[1] ? 0 : fail("the control does not take the text");
}

int leaveDialog(HWND main, const Arguments&) {
  PostMessageW(remote::frontWindow(main), WM_CLOSE, 0, 0);
  return remote::waitForMain(main) ? 0 : failInFront(main);
}

int openMenu(HWND main, const Arguments& arguments) {
  return remote::openMenu(main, arguments.number) ? 0 : fail("no menu opens");
}

int openSubmenu(HWND main, const Arguments& arguments) {
  return remote::openSubmenu(main, arguments.texts[0][0]) ? 0 : fail("no submenu opens");
}

int openContextMenu(HWND main, const Arguments& arguments) {
  const HWND page = remote::shownPage(main);
  return page && remote::openContextMenu(main, page, arguments.number) ? 0 : fail("no menu opens");
}

int openDesktopMenu(HWND main, const Arguments&) {
  const HWND button = remote::menuButton(main);
  if (!button) return fail("there is no such button");
  remote::clickControl(button);
  return remote::waitUntil([=] { return !remote::popups(remote::processOf(main)).empty(); })
             ? 0
             : fail("no menu opens");
}

int openMenuOfCommand(HWND main, const Arguments& arguments) {
  PostMessageW(main, WM_COMMAND, static_cast<WPARAM>(arguments.number), 0);
  return remote::waitUntil([=] { return !remote::popups(remote::processOf(main)).empty(); })
             ? 0
             : fail("no menu opens");
}

/// What opens another menu in its place.
int chooseNextMenu(HWND main, const Arguments& arguments) {
  const DWORD process = remote::processOf(main);
  const std::vector<HWND> before = remote::popups(process);
  PostMessageW(main, WM_CHAR, arguments.texts[0][0], 1);
  const bool opened = remote::waitUntil([&] {
    const std::vector<HWND> now = remote::popups(process);
    return !now.empty() && now != before;
  });
  return opened ? 0 : fail("no other menu opens");
}

/// What ends the menus and does something.
int chooseMenuItem(HWND main, const Arguments& arguments) {
  PostMessageW(main, WM_CHAR, arguments.texts[0][0], 1);
  const DWORD process = remote::processOf(main);
  return remote::waitUntil([=] { return remote::popups(process).empty(); }) ? 0 : fail("the menu stays open");
}

int closeMenus(HWND main, const Arguments&) {
  return remote::closeMenus(main) ? 0 : fail("a menu stays open");
}

int turnSheet(HWND main, const Arguments& arguments) {
  return remote::turnSheet(remote::frontWindow(main), arguments.number) ? 0 : fail("the page is not shown");
}

int raisePanel(HWND main, const Arguments&) {
  return remote::raisePanel(main) ? 0 : fail("the panel stays down");
}

int sizeWindow(HWND main, const Arguments& arguments) {
  const int height = parseNumber(arguments.texts[1]);
  if (height < 0) return fail("the height is no number");
  return remote::sizeInside(main, {arguments.number, height}) ? 0 : fail("the window does not take the size");
}

int moveWindow(HWND main, const Arguments& arguments) {
  const int top = parseNumber(arguments.texts[1]);
  if (top < 0) return fail("the upper edge is no number");
  SetWindowPos(main, nullptr, arguments.number, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  RECT place{};
  return GetWindowRect(main, &place) && place.left == arguments.number && place.top == top
             ? 0
             : fail("the window does not go there");
}

/// As a system does that has another resolution on the monitor where the window is now.
int changeResolution(HWND main, const Arguments& arguments) {
  remote::Memory memory(main, sizeof(RECT));
  RECT suggested{};
  if (!GetWindowRect(main, &suggested) || !memory.write(0, &suggested, sizeof suggested)) {
    return fail("the place can't be suggested");
  }
  SendMessageW(main, WM_DPICHANGED, MAKEWPARAM(arguments.number, arguments.number),
               reinterpret_cast<LPARAM>(memory.address()));
  return 0;
}

int typeAtKeyboard(HWND main, const Arguments& arguments) {
  const HWND focus = remote::focus(main);
  if (!focus) return fail("nothing has the keyboard");
  for (const wchar_t letter : arguments.texts[0]) SendMessageW(focus, WM_CHAR, letter, 1);
  return 0;
}

int printPlace(HWND main, const Arguments&) {
  RECT place{};
  if (!GetWindowRect(main, &place)) return fail("the window has no place");
  std::printf("%ld %ld %ld %ld%s\n", place.left, place.top, place.right - place.left,
              place.bottom - place.top, IsZoomed(main) ? " maximised" : "");
  return 0;
}

int maximiseWindow(HWND main, const Arguments&) {
  SendMessageW(main, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  return IsZoomed(main) ? 0 : fail("the window is not maximised");
}

int printArea(HWND main, const Arguments&) {
  const std::optional<RECT> area = remote::shownArea(main);
  if (!area) return fail("the window is not painted");
  std::printf("%ld %ld %ld %ld\n", area->left, area->top, area->right - area->left, area->bottom - area->top);
  return 0;
}

/// The tooltip that is shown of the program; null when none is.
HWND shownTip(HWND main) {
  HWND tip = nullptr;
  while ((tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
    if (remote::processOf(tip) == remote::processOf(main) && IsWindowVisible(tip) != FALSE) return tip;
  }
  return nullptr;
}

/// From a little beside the place, as a pointer that rests would not be noticed.
int hoverAt(HWND main, HWND window, POINT place) {
  ClientToScreen(window, &place);
  for (const int beside : {2, 0}) {
    SetCursorPos(static_cast<int>(place.x) + beside, static_cast<int>(place.y));
    SendMessageW(window, WM_NULL, 0, 0);
  }
  return remote::waitUntil([=] { return shownTip(main) != nullptr; }) ? 0 : fail("no tooltip is shown");
}

int hoverOverControl(HWND main, const Arguments& arguments) {
  const HWND control = waitForControl(main, arguments.number);
  RECT inside{};
  if (!control || !GetClientRect(control, &inside)) return fail("there is no such control in front");
  return hoverAt(main, control, {inside.right / 2, inside.bottom / 2});
}

int hoverOverRow(HWND main, const Arguments& arguments) {
  constexpr LONG kFromLeft = 20;
  const HWND grid = remote::recordGrid(main);
  const std::optional<RECT> row = grid ? remote::itemPlace(grid, arguments.number) : std::nullopt;
  if (!row) return fail("there is no such row");
  return hoverAt(main, grid, {row->left + kFromLeft, (row->top + row->bottom) / 2});
}

int restPointer(HWND main, const Arguments&) {
  SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
  return remote::waitUntil([=] { return shownTip(main) == nullptr; }) ? 0 : fail("the tooltip stays");
}

int waitNames(HWND main, const Arguments&) {
  const bool found = remote::waitUntil([&] {
    const HWND list = remote::shownPage(main);
    return list != nullptr && remote::isList(list) && remote::itemCount(list) > 0;
  });
  return found ? 0 : fail("no names are shown");
}

int printTexts(HWND main, const Arguments&) {
  HWND list = nullptr;
  const bool found = remote::waitUntil([&] {
    list = remote::shownPage(main);
    return list != nullptr && remote::isList(list);
  });
  if (!found) return fail("no list is shown");
  const int columns = remote::columnCount(list);
  const int first = columns == 0 ? 0 : remote::topRow(list);
  for (int row = first; row < remote::itemCount(list); ++row) {
    if (columns != 0 && !remote::isRowInView(list, row)) break;
    for (int column = 0; column < std::max(columns, 1); ++column) {
      if (column != 0) std::fputc('\t', stdout);
      printText(remote::itemText(list, row, column));
    }
    std::fputc('\n', stdout);
  }
  return 0;
}

int askForHelp(HWND main, const Arguments&) {
  // A pressed F1 becomes this message only where it comes from a keyboard.
  HELPINFO help{};
  help.cbSize = sizeof(help);
  help.iContextType = HELPINFO_WINDOW;
  help.hItemHandle = main;
  SendMessageW(main, WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
  return 0;
}

int closeProgram(HWND main, const Arguments&) {
  const std::optional<DWORD> exitCode = remote::close(main);
  if (!exitCode) return fail("the program does not end");
  std::printf("%lu\n", *exitCode);
  return 0;
}

struct VerbRow {
  const wchar_t* name;
  const wchar_t* parameters;  // N a number from 0, T a text
  const char* help;
  int (*run)(HWND main, const Arguments& arguments);
};

/// "In front" is the dialog or message box that can be used, else the main window.
constexpr std::array kVerbs = {
    VerbRow{L"wait-window", L"", "waits for the main window", waitWindow},
    VerbRow{L"wait-names", L"", "waits for a list of names with a name in it", waitNames},
    VerbRow{L"tab", L"N", "clicks the tab of page N (0 Tables, 1 Form, 2 List, 3 Queries)", switchPage},
    VerbRow{L"select-table", L"N", "selects item N of the list of names that is shown", selectTable},
    VerbRow{L"command", L"N", "runs command N to its end", runCommand},
    VerbRow{L"open", L"NT", "gives command N and waits for the dialog titled T", openDialog},
    VerbRow{L"wait-dialog", L"T", "waits for the dialog titled T", waitDialog},
    VerbRow{L"wait-main", L"", "waits until no dialog is open", waitMain},
    VerbRow{L"wait-text", L"NT", "waits until control N, in front or behind it, shows T behind blanks",
            waitText},
    VerbRow{L"click", L"N", "clicks control N in front", click},
    VerbRow{L"type", L"NT", "replaces what stands in control N in front by T", type},
    VerbRow{L"leave-dialog", L"", "closes the dialog in front, behind which is the main window", leaveDialog},
    VerbRow{L"menu", L"N", "opens the menu bar's menu with command N", openMenu},
    VerbRow{L"submenu", L"T", "opens the submenu with access key T", openSubmenu},
    VerbRow{L"context", L"N", "opens the context menu of item N of the list that is shown", openContextMenu},
    VerbRow{L"desktop-menu", L"", "opens the desktop menu", openDesktopMenu},
    VerbRow{L"open-menu", L"N", "gives command N and waits for the menu that it opens", openMenuOfCommand},
    VerbRow{L"next-menu", L"T", "chooses the item with access key T, which opens another menu",
            chooseNextMenu},
    VerbRow{L"menu-item", L"T", "chooses the item with access key T, which ends the menus", chooseMenuItem},
    VerbRow{L"close-menus", L"", "leaves all menus", closeMenus},
    VerbRow{L"sheet-page", L"N", "shows page N of the sheet in front", turnSheet},
    VerbRow{L"raise-panel", L"", "raises the input panel by its button", raisePanel},
    VerbRow{L"hover", L"N", "moves the pointer onto control N in front and waits for its tooltip",
            hoverOverControl},
    VerbRow{L"hover-row", L"N", "the same with the first cell of row N of the grid", hoverOverRow},
    VerbRow{L"rest", L"",
            "moves the pointer into the corner of the screen and waits until no tooltip is shown",
            restPointer},
    VerbRow{L"size", L"NT", "gives the main window N x T of the monitor's pixels inside", sizeWindow},
    VerbRow{L"move", L"NT", "moves the main window's upper left corner to N, T", moveWindow},
    VerbRow{L"resolution", L"N", "tells the main window of a monitor with N dots per inch", changeResolution},
    VerbRow{L"keys", L"T", "types T where the keyboard is", typeAtKeyboard},
    VerbRow{L"maximise", L"", "maximises the main window", maximiseWindow},
    VerbRow{L"place", L"", "prints where the main window is: x y width height, and whether it is maximised",
            printPlace},
    VerbRow{L"area", L"", "prints the rectangle around all that is shown: x y width height", printArea},
    VerbRow{L"texts", L"", "prints the texts of the list that is shown, a grid's as far as in view",
            printTexts},
    VerbRow{L"help", L"", "asks for the manual as F1 does", askForHelp},
    VerbRow{L"close", L"", "closes the program, waits for its end and prints its exit code", closeProgram},
};

int usage() {
  std::fputs("usage: drive VERB [ARGUMENT...] (N a number, T a text)\n", stderr);
  for (const VerbRow& verb : kVerbs) {
    std::fprintf(stderr, "  %-13ls %-3ls %s\n", verb.name, verb.parameters, verb.help);
  }
  return kUsageError;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return usage();
  const std::wstring name = argv[1];
  const auto* const verb =
      std::find_if(kVerbs.begin(), kVerbs.end(), [&](const VerbRow& row) { return name == row.name; });
  if (verb == kVerbs.end()) return usage();
  Arguments arguments;
  arguments.texts.assign(argv + 2, argv + argc);
  const std::wstring parameters = verb->parameters;
  if (arguments.texts.size() != parameters.size()) return usage();
  if (parameters.starts_with(L'N')) {
    arguments.number = parseNumber(arguments.texts[0]);
    if (arguments.number < 0) return usage();
  }
  // Of the monitor's pixels, as the program that is driven, whatever resolution the monitor has.
  if (!SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE)) {
    return fail("the system doesn't tell of the monitor's pixels");
  }
  const HWND main = waitForMainWindow();
  return main ? verb->run(main, arguments) : fail("there is no main window");
}
