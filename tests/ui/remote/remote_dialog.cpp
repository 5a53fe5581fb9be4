#include "tests/ui/remote/remote_dialog.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "tests/ui/remote/remote_window.h"

namespace remote {
namespace {

constexpr const wchar_t* kDialogClass = L"#32770";
constexpr const wchar_t* kMenuClass = L"#32768";
constexpr const wchar_t* kPanelClass = L"Pocket Shell Input Panel";
constexpr const wchar_t* kPanelButtonClass = L"Pocket Shell Panel Button";

BOOL CALLBACK collect(HWND window, LPARAM address) {
  reinterpret_cast<std::vector<HWND>*>(address)->push_back(window);
  return TRUE;
}

/// The visible top-level windows of a window's process, front to back.
std::vector<HWND> shownWindows(HWND main) {
  std::vector<HWND> all;
  EnumWindows(collect, reinterpret_cast<LPARAM>(&all));
  std::erase_if(all, [=](HWND window) {
    return IsWindowVisible(window) == FALSE || processOf(window) != processOf(main);
  });
  return all;
}

std::vector<HWND> below(HWND window) {
  std::vector<HWND> all;
  EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&all));
  return all;
}

bool isOfClass(HWND window, const wchar_t* wanted) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return lstrcmpiW(name, wanted) == 0;
}

std::size_t openMenuCount(HWND main) {
  std::vector<HWND> shown = shownWindows(main);
  return std::erase_if(shown, [](HWND window) { return isOfClass(window, kMenuClass); });
}

bool waitForMenus(HWND main, std::size_t count) {
  return waitUntil([=] { return openMenuCount(main) == count; });
}

bool isPainted(HWND window) {
  if (IsWindowVisible(window) != FALSE && GetUpdateRect(window, nullptr, FALSE) != FALSE) return false;
  for (const HWND child : below(window)) {
    if (IsWindowVisible(child) != FALSE && GetUpdateRect(child, nullptr, FALSE) != FALSE) return false;
  }
  return true;
}

}  // namespace

HWND frontWindow(HWND main) {
  for (const HWND window : shownWindows(main)) {
    if (isOfClass(window, kDialogClass) && IsWindowEnabled(window) != FALSE) return window;
  }
  return main;
}

bool waitForDialog(HWND main, const std::wstring& title) {
  return waitUntil([&] {
    const HWND front = frontWindow(main);
    return front != main && text(front) == title;
  });
}

bool waitForMain(HWND main) {
  return waitUntil([=] { return frontWindow(main) == main && IsWindowEnabled(main) != FALSE; });
}

bool openMenu(HWND main, int command) {
  for (const HWND window : below(main)) {
    if (!isOfClass(window, TOOLBARCLASSNAMEW)) continue;
    const auto index =
        static_cast<int>(SendMessageW(window, TB_COMMANDTOINDEX, static_cast<WPARAM>(command), 0));
    if (index < 0) continue;
    const std::optional<RECT> place = buttonPlace(window, index);
    if (!place) return false;
    clickAt(window, *place);
    return waitForMenus(main, 1);
  }
  return false;
}

bool openSubmenu(HWND main, wchar_t accessKey) {
  const std::size_t before = openMenuCount(main);
  PostMessageW(main, WM_CHAR, accessKey, 1);
  return waitForMenus(main, before + 1);
}

bool openContextMenu(HWND main, HWND window, int item) {
  RECT place{};
  GetClientRect(window, &place);
  if (item >= 0) {
    const std::optional<RECT> ofItem = itemPlace(window, item);
    if (!ofItem) return false;
    place = *ofItem;
  }
  const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  PostMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON, point);
  PostMessageW(window, WM_RBUTTONUP, 0, point);
  return waitForMenus(main, 1);
}

bool closeMenus(HWND main) {
  SendMessageW(main, WM_CANCELMODE, 0, 0);
  return waitForMenus(main, 0);
}

bool turnSheet(HWND sheet, int page) {
  for (const HWND tab : below(sheet)) {
    if (!isOfClass(tab, WC_TABCONTROLW)) continue;
    return clickTab(tab, page) && waitUntil([=] { return selectedTab(tab) == page; });
  }
  return false;
}

bool raisePanel(HWND main) {
  const auto isRaised = [=] {
    return std::ranges::any_of(shownWindows(main),
                               [](HWND window) { return isOfClass(window, kPanelClass); });
  };
  for (const HWND window : below(main)) {
    if (!isRaised() && isOfClass(window, kPanelButtonClass)) clickControl(window);
  }
  return waitUntil(isRaised);
}

std::optional<RECT> shownArea(HWND main) {
  std::vector<HWND> shown;
  const bool painted = waitUntil([&] {
    shown = shownWindows(main);
    for (const HWND window : shown) {
      if (!isPainted(window)) return false;
    }
    return true;
  });
  if (!painted) return std::nullopt;
  RECT area{};
  for (const HWND window : shown) {
    RECT place{};
    GetWindowRect(window, &place);
    UnionRect(&area, &area, &place);
  }
  return area;
}

}  // namespace remote
