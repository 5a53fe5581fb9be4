#include "tests/ui/remote/user.h"

#include <commctrl.h>

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "gmock/gmock.h"
#include "resources/command_ids.h"
#include "resources/resource_ids.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/remote/user_input.h"
#include "tests/ui/remote/user_menu.h"

namespace {

constexpr int kRebar = 1000;
constexpr int kFileName = 0x47C;
constexpr int kSheetTab = 0x3020;
constexpr int kMostSteps = 60;

/// Which windows have what the user needs, for the report of a failure.
std::string described(const char* what, HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return std::string("; ") + what + " " + std::string(name, name + wcslen(name)) + " " +
         std::to_string(window ? GetDlgCtrlID(window) : 0);
}

[[noreturn]] void fail(const std::string& what) {
  const HWND front = GetForegroundWindow();
  const std::wstring told = front ? remote::messageBoxText(front) : std::wstring();
  throw std::runtime_error("the user waits in vain: " + what + described("in front:", front) + " " +
                           testing::PrintToString(told) +
                           described("focus:", front ? remote::focus(front) : nullptr));
}

void await(const std::function<bool()>& condition, const std::string& what) {
  if (!remote::waitUntil(condition)) fail(what);
}

/// Does a step again and again until it has led where it should.
void repeat(const std::function<bool()>& isThere, const std::function<void()>& step,
            const std::string& what) {
  for (int i = 0; !isThere(); ++i) {
    if (i == kMostSteps) fail(what);
    step();
  }
}

bool isClass(HWND window, const wchar_t* name) {
  wchar_t actual[64] = L"";
  GetClassNameW(window, actual, ARRAYSIZE(actual));
  return _wcsicmp(actual, name) == 0;
}

bool hasFocus(HWND control) {
  const HWND focus = remote::focus(control);
  return focus == control || IsChild(control, focus);
}

/// What is sent is answered when the program has done what it was doing.
bool hasAnswered(HWND window) {
  constexpr UINT kPatience = 2000;
  DWORD_PTR result = 0;
  return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kPatience, &result) != 0;
}

bool isRadio(HWND control) {
  return isClass(control, L"Button") &&
         (GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
}

/// Whether Enter means something else to the control than the dialog's OK.
bool enterIsTaken(HWND control) {
  const auto code = static_cast<UINT>(SendMessageW(control, WM_GETDLGCODE, 0, 0));
  const bool pushButton = (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
  return (code & DLGC_WANTALLKEYS) != 0 || (pushButton && GetDlgCtrlID(control) != IDOK);
}

/// Presses a key and waits until the focus has moved by it.
void moveFocus(HWND root, WORD key, WORD held = 0) {
  const HWND before = remote::focus(root);
  userinput::press(key, held);
  await([=] { return remote::focus(root) != before; }, "the focus moves");
}

WORD menuBarOf(HWND main) {
  constexpr WORD kOfPages[] = {IDR_TABLES_MENU_BAR, IDR_FORM_MENU_BAR, IDR_LIST_MENU_BAR,
                               IDR_QUERIES_MENU_BAR};
  if (!remote::control(main, kRebar)) return IDR_CLOSED_MENU_BAR;
  return kOfPages[remote::selectedTab(remote::tabControl(main))];
}

void clickButton(HWND main, int command, int index) {
  HWND toolbar = nullptr;
  RECT place{};
  await([&] { return remote::toolbarButton(main, command, index, toolbar, place); }, "the button is there");
  userinput::click(toolbar, place);
}

/// Of the items of a list box, all equally high.
RECT entryPlace(HWND list, int index) {
  const int height = static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
  const int above = index - static_cast<int>(SendMessageW(list, LB_GETTOPINDEX, 0, 0));
  RECT client{};
  GetClientRect(list, &client);
  return {0, above * height, client.right, (above + 1) * height};
}

void pressDown(int count) {
  for (int i = 0; i < count; ++i) userinput::press(VK_DOWN);
}

}  // namespace

User::User(Hand hand, const RunningProgram& program)
    : program_(program), hand_(hand), main_(program.mainWindow()) {
  if (!main_) fail("the main window");
}

void User::waitForInput(HWND window) const {
  const auto takesInput = [=] {
    return GetForegroundWindow() == window && IsWindowEnabled(window) && hasFocus(window);
  };
  await(
      [&] {
        if (!takesInput()) return false;
        // What the program is doing may give the keyboard to somebody else at its end, under the next key.
        const HWND focus = remote::focus(window);
        return hasAnswered(window) && takesInput() && remote::focus(window) == focus;
      },
      "a window takes input");
}

/// Until the window is gone or another one stands before it.
void User::waitForEnd(HWND dialog) const {
  await([=] { return !IsWindow(dialog) || GetForegroundWindow() != dialog; }, "a dialog ends");
}

void User::reach(HWND root, HWND control) const {
  if (!control) fail("the control is there");
  if (hasMouse()) {
    if (!hasFocus(control)) userinput::click(control);
    await([=] { return hasFocus(control); }, "the control has the focus");
  } else {
    repeat([=] { return hasFocus(control); }, [=] { moveFocus(root, VK_TAB); },
           "the Tab key reaches control " + std::to_string(GetDlgCtrlID(control)));
  }
}

void User::replaceText(HWND edit, const std::wstring& text) const {
  userinput::press(VK_HOME, VK_CONTROL);
  userinput::press(VK_END, VK_SHIFT);
  userinput::press(VK_DELETE);
  userinput::type(text);
  await([&] { return remote::text(edit) == text; }, "the text is typed");
}

// ---- The main window

void User::choose(int command) {
  waitForInput(main_);
  const std::vector<MenuStep> way = menuWay(menuBarOf(main_), static_cast<UINT>(command));
  if (way.empty()) fail("the menu has the command");
  if (hasMouse()) {
    clickButton(main_, ID_FILE_MENU, way.front().index);
  } else {
    userinput::press(static_cast<WORD>(way.front().letter), VK_MENU);
  }
  walkMenu(way, 1);
}

void User::chooseDesktop(int command) {
  waitForInput(main_);
  const std::vector<MenuStep> way = desktopWay(static_cast<UINT>(command));
  if (way.empty()) fail("the desktop menu has the command");
  if (hasMouse()) {
    HWND button = nullptr;
    await([&] { return (button = remote::menuButton(main_)) != nullptr; }, "the menu's button is there");
    userinput::click(button);
  } else {
    userinput::press('M', VK_MENU);
  }
  walkMenu(way, 0);
}

/// From the first of these steps on, whose popup is about to open.
void User::walkMenu(const std::vector<MenuStep>& way, std::size_t first) const {
  const DWORD process = program_.processId();
  for (std::size_t depth = first; depth < way.size(); ++depth) {
    await([=] { return remote::popups(process).size() == depth - first + 1; }, "a menu opens");
    if (hasMouse()) {
      userinput::click(itemMiddle(remote::popups(process).front(), way[depth]));
    } else {
      userinput::press(static_cast<WORD>(way[depth].letter));
    }
  }
  await([=] { return remote::popups(process).empty(); }, "the menu closes");
}

void User::useButton(int command, WORD key, WORD held) {
  waitForInput(main_);
  if (hasMouse()) {
    clickButton(main_, command, -1);
  } else {
    userinput::press(key, held);
  }
}

void User::showPage(int page) {
  waitForInput(main_);
  const HWND tab = remote::tabControl(main_);
  if (hasMouse()) {
    userinput::click(tab, remote::tabPlace(tab, page));
  } else {
    repeat([=] { return remote::selectedTab(tab) == page; },
           [=] {
             const int before = remote::selectedTab(tab);
             userinput::press(VK_TAB, VK_CONTROL);
             await([=] { return remote::selectedTab(tab) != before; }, "Ctrl+Tab shows another page");
           },
           "Ctrl+Tab shows the page");
  }
  await([=, this] { return remote::selectedTab(tab) == page && remote::shownPage(main_) != nullptr; },
        "the page is shown");
}

void User::pickItem(int index) {
  waitForInput(main_);
  const HWND list = remote::shownPage(main_);
  if (!list || !remote::isList(list)) fail("a list is shown");
  if (hasMouse()) {
    userinput::click(list, remote::itemPlace(list, index).value_or(RECT{}));
  } else {
    // Icons stand beside each other, rows one below the other.
    const bool rows = (GetWindowLongW(list, GWL_STYLE) & LVS_TYPEMASK) == LVS_REPORT;
    userinput::press(VK_HOME);
    for (int i = 0; i < index; ++i) userinput::press(rows ? VK_DOWN : VK_RIGHT);
  }
  await([=] { return remote::selectedItem(list) == index; }, "the item is selected");
}

void User::goTo(int id) {
  waitForInput(main_);
  reach(main_, remote::control(main_, id));
}

void User::fillEditor(int id, const std::wstring& text) {
  goTo(id);
  replaceText(remote::control(main_, id), text);
}

void User::pressEditor(int id) {
  waitForInput(main_);
  press(main_, id);
}

void User::exit() {
  choose(ID_EXIT);
}

// ---- Dialogs and message boxes

HWND User::dialog(const wchar_t* title) const {
  HWND found = nullptr;
  await([&] { return (found = remote::dialog(program_.processId(), title)) != nullptr; },
        "a dialog opens: " + std::string(title, title + std::wcslen(title)));
  waitForInput(found);
  return found;
}

void User::answer(const wchar_t* caption, const std::wstring& text, int button) {
  const HWND box = dialog(caption);
  EXPECT_EQ(remote::messageBoxText(box), text);
  if (hasMouse()) {
    userinput::click(GetDlgItem(box, button));
  } else if (button == IDOK) {
    userinput::press(VK_RETURN);
  } else {
    userinput::press(button == IDYES ? 'Y' : 'N');
  }
  waitForEnd(box);
}

void User::fill(HWND dialog, int id, const std::wstring& text) {
  waitForInput(dialog);
  const HWND control = remote::shownControl(dialog, id);
  reach(dialog, control);
  replaceText(remote::focus(control), text);
}

void User::press(HWND dialog, int id) {
  waitForInput(dialog);
  const HWND control = remote::shownControl(dialog, id);
  if (!control) fail("the control is there");
  if (hasMouse()) {
    userinput::click(control);
  } else {
    reach(dialog, control);
    userinput::press(VK_SPACE);
  }
}

void User::pick(HWND dialog, int id, int index) {
  waitForInput(dialog);
  const HWND control = remote::shownControl(dialog, id);
  const bool isCombo = isClass(control, WC_COMBOBOXW);
  const bool isRows = isClass(control, WC_LISTVIEWW);
  if (!hasMouse()) {
    reach(dialog, control);
    userinput::press(VK_HOME);
    pressDown(index);
  } else if (isRows) {
    userinput::click(control, remote::itemPlace(control, index).value_or(RECT{}));
  } else if (isCombo) {
    userinput::click(control);
    HWND list = nullptr;
    await([&] { return (list = remote::dropDownList(program_.processId())) != nullptr; },
          "a list drops down");
    userinput::click(list, entryPlace(list, index));
  } else {
    userinput::click(control, entryPlace(control, index));
  }
  await(
      [=] {
        // The entry is chosen when the button goes down, and what that leads to when it goes up.
        if (remote::capture(control) != nullptr) return false;
        if (isRows) return remote::selectedItem(control) == index;
        return SendMessageW(control, isCombo ? CB_GETCURSEL : LB_GETCURSEL, 0, 0) == index;
      },
      "the entry is chosen");
}

void User::pickRadio(HWND dialog, int id) {
  waitForInput(dialog);
  const HWND control = remote::shownControl(dialog, id);
  if (hasMouse()) {
    userinput::click(control);
  } else {
    repeat([=] { return isRadio(remote::focus(dialog)); }, [=] { moveFocus(dialog, VK_TAB); },
           "the Tab key reaches the radio buttons");
    repeat([=] { return remote::focus(dialog) == control; }, [=] { moveFocus(dialog, VK_DOWN); },
           "an arrow key reaches the radio button");
  }
  await([=] { return SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED; },
        "the radio button is chosen");
}

void User::showSheetPage(HWND sheet, int page) {
  waitForInput(sheet);
  const HWND tab = remote::control(sheet, kSheetTab);
  if (hasMouse()) {
    userinput::click(tab, remote::tabPlace(tab, page));
  } else {
    reach(sheet, tab);
    repeat([=] { return remote::selectedTab(tab) == page; },
           [=] {
             const int before = remote::selectedTab(tab);
             userinput::press(VK_RIGHT);
             await([=] { return remote::selectedTab(tab) != before; }, "an arrow key shows another page");
           },
           "an arrow key shows the page");
  }
  await([=] { return remote::selectedTab(tab) == page; }, "the page of the sheet is shown");
}

void User::accept(HWND dialog) {
  waitForInput(dialog);
  if (hasMouse()) {
    userinput::click(GetDlgItem(dialog, IDOK));
  } else if (enterIsTaken(remote::focus(dialog))) {
    press(dialog, IDOK);
  } else {
    userinput::press(VK_RETURN);
  }
  waitForEnd(dialog);
}

void User::leave(HWND dialog) {
  waitForInput(dialog);
  const HWND cancel = GetDlgItem(dialog, IDCANCEL);
  if (!hasMouse()) {
    userinput::press(VK_ESCAPE);
  } else if (cancel && IsWindowVisible(cancel)) {
    userinput::click(cancel);
  } else {
    RECT frame{};
    GetWindowRect(dialog, &frame);
    const int edge = GetSystemMetrics(SM_CXFIXEDFRAME);
    const int half = GetSystemMetrics(SM_CYCAPTION) / 2;
    userinput::click({frame.right - edge - half, frame.top + edge + half});
  }
  waitForEnd(dialog);
}

void User::chooseFile(const std::filesystem::path& path) {
  HWND question = nullptr;
  await(
      [&] {
        question = remote::dialog(program_.processId(), nullptr);
        return question != nullptr && remote::control(question, kFileName) != nullptr;
      },
      "the file dialog opens");
  fill(question, kFileName, path.wstring());
  accept(question);
}
