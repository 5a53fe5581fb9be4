#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Reads and works the windows of another process, a running Quivane, by class names, titles and
/// identifiers. Items, rows, columns and pages are 0-based.
namespace remote {

/// How long every wait takes at most: on a busy machine a program may need long to start.
inline constexpr std::chrono::milliseconds kPatience{30'000};

/// Asks again and again until the answer is yes: true then, false when `patience` ends first.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds patience = kPatience);

/// Memory in the process of a window, for messages that take the address of a structure.
class Memory {
 public:
  /// Holds nothing when the process does not allow it; every read and write then fails.
  Memory(HWND window, std::size_t byteCount);
  ~Memory();
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  explicit operator bool() const { return address_ != nullptr; }
  std::byte* address() const { return static_cast<std::byte*>(address_); }
  bool write(std::size_t offset, const void* data, std::size_t byteCount);
  bool read(std::size_t offset, void* data, std::size_t byteCount) const;

 private:
  HANDLE process_ = nullptr;
  void* address_ = nullptr;
};

DWORD processOf(HWND window);

/// The visible main window, of the process `processId` or with 0 of any. Null when there is none.
HWND mainWindow(DWORD processId = 0);

/// A visible message box of a process, null when there is none.
HWND messageBox(DWORD processId);
/// The text that a message box shows.
std::wstring messageBoxText(HWND box);

/// A dialog or message box of a process with that title, or with null any; only one that is shown and
/// takes input. Null when there is none.
HWND dialog(DWORD processId, const wchar_t* title);
/// The windows of the menus that are open, the innermost first.
std::vector<HWND> popups(DWORD processId);
/// The list that a combo box has dropped down, null when none is.
HWND dropDownList(DWORD processId);

/// The place of a button in the toolbar below a window that has this command: of the command's own
/// button, or with `index` 0 and above of another one beside it. False when there is no such button.
bool toolbarButton(HWND window, int command, int index, HWND& toolbar, RECT& place);

/// The button of the desktop menu in a main window's menu bar; null when there is none.
HWND menuButton(HWND main);

/// The tab control of a main window.
HWND tabControl(HWND main);
/// The window of the page that is shown (a list of names, the form, the grid), null when none is.
HWND shownPage(HWND main);
/// The record grid's list, shown or not; null when there is none.
HWND recordGrid(HWND main);

int selectedTab(HWND tab);
std::wstring tabText(HWND tab, int page);
/// In the tab control's client area; empty when it can't be had.
RECT tabPlace(HWND tab, int page);
/// Clicks a tab with the left button. False when the tab's place can't be had.
bool clickTab(HWND tab, int page);
/// Clicks the tab and waits until another page is shown than before; nothing is to be done for the tab
/// that is chosen already. False when it takes too long.
bool switchToPage(HWND main, int page);

bool isList(HWND window);
/// -1 when there is no such window.
int itemCount(HWND list);
int columnCount(HWND list);
int columnWidth(HWND list, int column);
std::wstring columnTitle(HWND list, int column);
std::wstring itemText(HWND list, int row, int column = 0);
/// All items of one column; a text that says so when there is no such window.
std::vector<std::wstring> itemTexts(HWND list, int column = 0);
/// The selected item, -1 for none.
int selectedItem(HWND list);
/// Selects an item by message, as assistive programs do.
bool selectItem(HWND list, int row);
/// Where an item's label is in the list; none when it can't be had.
std::optional<RECT> itemPlace(HWND list, int row);
/// Waits until a list has answered all that was posted to it, or to windows of its thread, up to now. False
/// when that takes too long.
bool awaitPosted(HWND list);
/// Waits until a program that has just shown its main window takes commands, and has answered what its start
/// has posted to itself: a database that is to be opened again has been. False when that takes too long.
bool awaitStarted(HWND main);
/// Clicks an item with the left button; the click is over then.
bool clickItem(HWND list, int row);
void ensureVisible(HWND list, int row);
int topRow(HWND list);
/// Whether a row is scrolled into view as a whole, in a list that shows rows.
bool isRowInView(HWND list, int row);
/// The window of the same thread that has the focus, null when none has.
HWND focus(HWND window);
/// The window of the same thread that has captured the mouse, null when none has.
HWND capture(HWND window);
/// Presses and releases a key.
void pressKey(HWND window, WORD key);

/// The control with this identifier anywhere below a window, shown or not; null when there is none.
HWND control(HWND window, int id);
/// The same, shown.
HWND shownControl(HWND window, int id);
/// Gives a window so many of the monitor's pixels inside. It has laid itself out when this returns. False
/// when it has another size then.
bool sizeInside(HWND window, SIZE inside);
/// Where a window is in another one.
RECT placeIn(HWND window, HWND parent);
/// The text of a window or control; one that says so when there is no such window.
std::wstring text(HWND window);
/// Where a button is in a toolbar; none when it can't be had.
std::optional<RECT> buttonPlace(HWND toolbar, int index);
/// Clicks the middle of a place in a window with the left button.
void clickAt(HWND window, const RECT& place);
/// Clicks the middle of a control with the left button.
void clickControl(HWND control);
/// Clicks a text control and types into it: first every character that stands in it is deleted.
void typeText(HWND edit, const std::wstring& newText);

/// Asks the main window to close and waits for the end of its process. The exit code; none when it
/// takes too long.
std::optional<DWORD> close(HWND main);

}  // namespace remote
