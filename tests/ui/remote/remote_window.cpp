#include "tests/ui/remote/remote_window.h"

#include <commctrl.h>

#include <thread>

namespace remote {
namespace {

constexpr int kTabControlId = 61205;
constexpr int kNamesListId = 61206;
constexpr int kRecordGridId = 2010;
constexpr int kMessageBoxTextId = 0xFFFF;
constexpr std::size_t kMaxTextCount = 4096;

std::wstring className(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return name;
}

struct Search {
  const std::function<bool(HWND)>& wanted;
  HWND found = nullptr;
};

BOOL CALLBACK searchStep(HWND window, LPARAM address) {
  Search& search = *reinterpret_cast<Search*>(address);
  if (!search.wanted(window)) return TRUE;
  search.found = window;
  return FALSE;
}

/// The first window below `parent`, front to back, that `wanted` says yes to.
HWND findBelow(HWND parent, const std::function<bool(HWND)>& wanted) {
  Search search{wanted};
  EnumChildWindows(parent, searchStep, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND findTopLevel(const std::function<bool(HWND)>& wanted) {
  Search search{wanted};
  EnumWindows(searchStep, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

/// A structure in the other process, sent with a message and read back.
template <typename Structure>
std::optional<LRESULT> sendStructure(HWND window, UINT message, WPARAM wParam, Structure& structure) {
  Memory memory(window, sizeof(Structure));
  if (!memory.write(0, &structure, sizeof(Structure))) return std::nullopt;
  const LRESULT result = SendMessageW(window, message, wParam, reinterpret_cast<LPARAM>(memory.address()));
  if (!memory.read(0, &structure, sizeof(Structure))) return std::nullopt;
  return result;
}

/// Reads a text that the window writes to where `pointTo` makes the structure point.
template <typename Structure, typename PointTo>
std::wstring readText(HWND window, UINT message, WPARAM wParam, Structure structure, PointTo pointTo) {
  Memory memory(window, sizeof(Structure) + kMaxTextCount * sizeof(wchar_t));
  if (!memory) return {};
  pointTo(structure, reinterpret_cast<wchar_t*>(memory.address() + sizeof(Structure)));
  std::wstring text(kMaxTextCount, L'\0');
  if (!memory.write(0, &structure, sizeof(Structure)) ||
      !memory.write(sizeof(Structure), text.data(), text.size() * sizeof(wchar_t))) {
    return {};
  }
  SendMessageW(window, message, wParam, reinterpret_cast<LPARAM>(memory.address()));
  if (!memory.read(sizeof(Structure), text.data(), text.size() * sizeof(wchar_t))) return {};
  text.resize(text.find(L'\0') == std::wstring::npos ? text.size() : text.find(L'\0'));
  return text;
}

bool isPage(HWND window) {
  const int id = GetDlgCtrlID(window);
  return id == kNamesListId || id == kRecordGridId || className(window) == L"Form Wrapper Wnd";
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds patience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

Memory::Memory(HWND window, std::size_t byteCount)
    : process_(
          OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processOf(window))) {
  if (process_)
    address_ = VirtualAllocEx(process_, nullptr, byteCount, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
}

Memory::~Memory() {
  if (address_) VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
  if (process_) CloseHandle(process_);
}

bool Memory::write(std::size_t offset, const void* data, std::size_t byteCount) {
  return address_ != nullptr &&
         WriteProcessMemory(process_, address() + offset, data, byteCount, nullptr) != FALSE;
}

bool Memory::read(std::size_t offset, void* data, std::size_t byteCount) const {
  return address_ != nullptr &&
         ReadProcessMemory(process_, address() + offset, data, byteCount, nullptr) != FALSE;
}

DWORD processOf(HWND window) {
  DWORD id = 0;
  GetWindowThreadProcessId(window, &id);
  return id;
}

HWND mainWindow(DWORD processId) {
  return findTopLevel([processId](HWND window) {
    return IsWindowVisible(window) != FALSE && className(window) == L"Quivane" &&
           (processId == 0 || processOf(window) == processId);
  });
}

HWND messageBox(DWORD processId) {
  return findTopLevel([processId](HWND window) {
    return IsWindowVisible(window) != FALSE && className(window) == L"#32770" &&
           processOf(window) == processId;
  });
}

std::wstring messageBoxText(HWND box) {
  std::wstring text(kMaxTextCount, L'\0');
  const UINT length = GetDlgItemTextW(box, kMessageBoxTextId, text.data(), static_cast<int>(text.size()));
  text.resize(length);
  return text;
}

HWND dialog(DWORD processId, const wchar_t* title) {
  return findTopLevel([=](HWND window) {
    return IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE &&
           className(window) == L"#32770" && processOf(window) == processId &&
           (title == nullptr || text(window) == title);
  });
}

std::vector<HWND> popups(DWORD processId) {
  std::vector<HWND> open;
  findTopLevel([&](HWND window) {
    if (IsWindowVisible(window) != FALSE && className(window) == L"#32768" && processOf(window) == processId)
      open.push_back(window);
    return false;
  });
  return open;
}

HWND dropDownList(DWORD processId) {
  return findTopLevel([processId](HWND window) {
    return IsWindowVisible(window) != FALSE && className(window) == L"ComboLBox" &&
           processOf(window) == processId;
  });
}

bool toolbarButton(HWND window, int command, int index, HWND& toolbar, RECT& place) {
  const auto indexIn = [command](HWND child) {
    return static_cast<int>(SendMessageW(child, TB_COMMANDTOINDEX, static_cast<WPARAM>(command), 0));
  };
  const HWND found = findBelow(window, [&](HWND child) {
    return className(child) == TOOLBARCLASSNAMEW && IsWindowVisible(child) != FALSE && indexIn(child) >= 0;
  });
  if (!found) return false;
  const int wanted = index < 0 ? indexIn(found) : index;
  if (sendStructure(found, TB_GETITEMRECT, static_cast<WPARAM>(wanted), place).value_or(FALSE) == FALSE)
    return false;
  toolbar = found;
  return true;
}

HWND menuButton(HWND main) {
  return findBelow(main, [](HWND window) { return className(window) == L"Pocket Shell Menu Button"; });
}

HWND tabControl(HWND main) {
  return GetDlgItem(main, kTabControlId);
}

HWND shownPage(HWND main) {
  return findBelow(main, [](HWND window) { return IsWindowVisible(window) != FALSE && isPage(window); });
}

HWND recordGrid(HWND main) {
  return GetDlgItem(tabControl(main), kRecordGridId);
}

int selectedTab(HWND tab) {
  return static_cast<int>(SendMessageW(tab, TCM_GETCURSEL, 0, 0));
}

std::wstring tabText(HWND tab, int page) {
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.cchTextMax = static_cast<int>(kMaxTextCount);
  return readText(tab, TCM_GETITEMW, static_cast<WPARAM>(page), item,
                  [](TCITEMW& wanted, wchar_t* text) { wanted.pszText = text; });
}

RECT tabPlace(HWND tab, int page) {
  RECT place{};
  const auto known = sendStructure(tab, TCM_GETITEMRECT, static_cast<WPARAM>(page), place);
  return known.value_or(FALSE) == FALSE ? RECT{} : place;
}

bool clickTab(HWND tab, int page) {
  const RECT place = tabPlace(tab, page);
  if (IsRectEmpty(&place)) return false;
  clickAt(tab, place);
  return true;
}

bool switchToPage(HWND main, int page) {
  const HWND tab = tabControl(main);
  const HWND former = shownPage(main);
  if (former && selectedTab(tab) == page) return true;
  if (!clickTab(tab, page)) return false;
  return waitUntil([=] {
    const HWND shown = shownPage(main);
    return selectedTab(tab) == page && shown != nullptr && shown != former;
  });
}

bool isList(HWND window) {
  return className(window) == WC_LISTVIEWW;
}

int itemCount(HWND list) {
  if (!IsWindow(list)) return -1;
  return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

int columnCount(HWND list) {
  const HWND header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  return header ? static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) : 0;
}

int columnWidth(HWND list, int column) {
  return static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

std::wstring columnTitle(HWND list, int column) {
  LVCOLUMNW description{};
  description.mask = LVCF_TEXT;
  description.cchTextMax = static_cast<int>(kMaxTextCount);
  return readText(list, LVM_GETCOLUMNW, static_cast<WPARAM>(column), description,
                  [](LVCOLUMNW& wanted, wchar_t* text) { wanted.pszText = text; });
}

std::wstring itemText(HWND list, int row, int column) {
  LVITEMW item{};
  item.iSubItem = column;
  item.cchTextMax = static_cast<int>(kMaxTextCount);
  return readText(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), item,
                  [](LVITEMW& wanted, wchar_t* text) { wanted.pszText = text; });
}

std::vector<std::wstring> itemTexts(HWND list, int column) {
  const int count = itemCount(list);
  if (count < 0) return {L"(no list)"};
  std::vector<std::wstring> texts(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = itemText(list, static_cast<int>(i), column);
  return texts;
}

int selectedItem(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

bool selectItem(HWND list, int row) {
  LVITEMW item{};
  item.state = LVIS_SELECTED | LVIS_FOCUSED;
  item.stateMask = item.state;
  return sendStructure(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), item).value_or(FALSE) != FALSE;
}

std::optional<RECT> itemPlace(HWND list, int row) {
  RECT place{};
  place.left = LVIR_LABEL;
  if (sendStructure(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), place).value_or(FALSE) == FALSE)
    return std::nullopt;
  return place;
}

bool awaitPosted(HWND list) {
  // Of no other use here, and nothing but this message changes it.
  const LRESULT former = SendMessageW(list, LVM_GETHOVERTIME, 0, 0);
  const LRESULT mark = former == 1 ? 2 : 1;
  PostMessageW(list, LVM_SETHOVERTIME, 0, mark);
  const bool isReached = waitUntil([=] { return SendMessageW(list, LVM_GETHOVERTIME, 0, 0) == mark; });
  SendMessageW(list, LVM_SETHOVERTIME, 0, former);
  return isReached;
}

bool awaitStarted(HWND main) {
  HWND grid = nullptr;
  if (!waitUntil([&] { return (grid = recordGrid(main)) != nullptr; })) return false;
  // Answered by its loop of messages alone, and there the start posts before.
  SendMessageW(main, WM_NULL, 0, 0);
  return awaitPosted(grid);
}

bool clickItem(HWND list, int row) {
  const std::optional<RECT> place = itemPlace(list, row);
  if (!place) return false;
  // Sent, not posted: a list answers the press only when it knows of the release, and meanwhile takes
  // whatever else is in the queue.
  const LPARAM point = MAKELPARAM((place->left + place->right) / 2, (place->top + place->bottom) / 2);
  SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, point);
  SendMessageW(list, WM_LBUTTONUP, 0, point);
  // The list hands the release on to itself; what is sent before it has come would be in the midst of the
  // click.
  return awaitPosted(list);
}

void ensureVisible(HWND list, int row) {
  SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

int topRow(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETTOPINDEX, 0, 0));
}

bool isRowInView(HWND list, int row) {
  const int top = topRow(list);
  return row >= top && row < top + static_cast<int>(SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0));
}

namespace {

/// All null where there is none.
GUITHREADINFO inputState(HWND window) {
  GUITHREADINFO state{};
  state.cbSize = sizeof(state);
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &state)) return {};
  return state;
}

}  // namespace

HWND focus(HWND window) {
  return inputState(window).hwndFocus;
}

HWND capture(HWND window) {
  return inputState(window).hwndCapture;
}

void pressKey(HWND window, WORD key) {
  const LPARAM scanCode = static_cast<LPARAM>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC)) << 16;
  constexpr LPARAM kReleased = 0xC0000001;
  PostMessageW(window, WM_KEYDOWN, key, scanCode | 1);
  PostMessageW(window, WM_KEYUP, key, scanCode | kReleased);
}

HWND control(HWND window, int id) {
  return findBelow(window, [id](HWND child) { return GetDlgCtrlID(child) == id; });
}

HWND shownControl(HWND window, int id) {
  return findBelow(window,
                   [id](HWND child) { return IsWindowVisible(child) != FALSE && GetDlgCtrlID(child) == id; });
}

bool sizeInside(HWND window, SIZE inside) {
  RECT outer{};
  RECT client{};
  GetWindowRect(window, &outer);
  GetClientRect(window, &client);
  SetWindowPos(window, nullptr, 0, 0, static_cast<int>(outer.right - outer.left - client.right + inside.cx),
               static_cast<int>(outer.bottom - outer.top - client.bottom + inside.cy),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  return GetClientRect(window, &client) && client.right == inside.cx && client.bottom == inside.cy;
}

RECT placeIn(HWND window, HWND parent) {
  RECT rectangle{};
  GetWindowRect(window, &rectangle);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&rectangle), 2);
  return rectangle;
}

std::wstring text(HWND window) {
  if (!IsWindow(window)) return L"(no window)";
  std::wstring content(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  content.resize(static_cast<std::size_t>(SendMessageW(
      window, WM_GETTEXT, static_cast<WPARAM>(content.size()), reinterpret_cast<LPARAM>(content.data()))));
  return content;
}

std::optional<RECT> buttonPlace(HWND toolbar, int index) {
  RECT place{};
  if (sendStructure(toolbar, TB_GETITEMRECT, static_cast<WPARAM>(index), place).value_or(FALSE) == FALSE)
    return std::nullopt;
  return place;
}

void clickAt(HWND window, const RECT& place) {
  const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, point);
  PostMessageW(window, WM_LBUTTONUP, 0, point);
}

void clickControl(HWND control) {
  RECT client{};
  GetClientRect(control, &client);
  clickAt(control, client);
}

void typeText(HWND edit, const std::wstring& newText) {
  // A second click on the same editor would open its zoom.
  if (focus(edit) != edit) {
    clickControl(edit);
    waitUntil([edit] { return focus(edit) == edit; });
  }
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SendMessageW(edit, WM_CHAR, L'\b', 1);
  for (const wchar_t character : newText) SendMessageW(edit, WM_CHAR, character, 1);
}

std::optional<DWORD> close(HWND main) {
  const HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processOf(main));
  if (!process) return std::nullopt;
  PostMessageW(main, WM_CLOSE, 0, 0);
  std::optional<DWORD> exitCode;
  DWORD code = 0;
  if (WaitForSingleObject(process, static_cast<DWORD>(kPatience.count())) == WAIT_OBJECT_0 &&
      GetExitCodeProcess(process, &code)) {
    exitCode = code;
  }
  CloseHandle(process);
  return exitCode;
}

}  // namespace remote
