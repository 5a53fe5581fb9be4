#include "tests/ui/remote/user_menu.h"

#include <cwctype>
#include <memory>
#include <string>

#include "resources/command_ids.h"
#include "tests/ui/remote/running_program.h"

namespace {

wchar_t accessKey(const std::wstring& text) {
  const std::size_t mark = text.find(L'&');
  const std::size_t place = mark == std::wstring::npos ? 0 : mark + 1;
  return place < text.size() ? static_cast<wchar_t>(std::towupper(text[place])) : L'\0';
}

std::wstring itemText(HMENU menu, int index) {
  wchar_t text[64] = L"";
  GetMenuStringW(menu, static_cast<UINT>(index), text, ARRAYSIZE(text), MF_BYPOSITION);
  return text;
}

bool isSeparator(HMENU menu, int index) {
  return (GetMenuState(menu, static_cast<UINT>(index), MF_BYPOSITION) & MF_SEPARATOR) != 0;
}

MenuStep stepTo(HMENU menu, int index) {
  MenuStep step;
  step.letter = accessKey(itemText(menu, index));
  step.index = index;
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const int separator = isSeparator(menu, i) ? 1 : 0;
    step.separatorCount += separator;
    step.itemCount += 1 - separator;
    if (i < index) step.separatorsAbove += separator;
  }
  return step;
}

bool findWay(HMENU menu, UINT command, std::vector<MenuStep>& way) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    way.push_back(stepTo(menu, i));
    const HMENU popup = GetSubMenu(menu, i);
    if (popup ? findWay(popup, command, way) : GetMenuItemID(menu, i) == command) return true;
    way.pop_back();
  }
  return false;
}

struct MenuCloser {
  void operator()(HMENU menu) const { DestroyMenu(menu); }
};
struct LibraryCloser {
  void operator()(HMODULE library) const { FreeLibrary(library); }
};

}  // namespace

std::vector<MenuStep> menuWay(WORD menuBar, UINT command) {
  std::vector<MenuStep> way;
  const std::unique_ptr<std::remove_pointer_t<HMODULE>, LibraryCloser> program(
      LoadLibraryExW(programFile().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  const std::unique_ptr<std::remove_pointer_t<HMENU>, MenuCloser> menu(
      LoadMenuW(program.get(), MAKEINTRESOURCEW(menuBar)));
  if (menu) findWay(menu.get(), command, way);
  return way;
}

std::vector<MenuStep> desktopWay(UINT command) {
  // Another program's menus can't be read.
  const std::unique_ptr<std::remove_pointer_t<HMENU>, MenuCloser> menu(CreatePopupMenu());
  AppendMenuW(menu.get(), MF_STRING, ID_HISTORY_UNDO, L"&Undo");
  AppendMenuW(menu.get(), MF_STRING, ID_HISTORY_REDO, L"Re&do");
  AppendMenuW(menu.get(), MF_STRING, ID_GO_BACK_TO, L"Go back &to...");
  AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
  AppendMenuW(menu.get(), MF_STRING, ID_IMPORT, L"&Import...");
  AppendMenuW(menu.get(), MF_STRING, ID_EXPORT, L"&Export...");
  AppendMenuW(menu.get(), MF_STRING, ID_ROW_COPY, L"Copy &row");
  AppendMenuW(menu.get(), MF_STRING, ID_TABLE_PASTE, L"&Paste...");
  AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
  AppendMenuW(menu.get(), MF_STRING, ID_LOOK_UP, L"&Look-up...");
  AppendMenuW(menu.get(), MF_STRING, ID_GO_TO_LOOKED_UP, L"&Go to its record");
  AppendMenuW(menu.get(), MF_STRING, ID_GO_BACK, L"&Back");
  AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
  AppendMenuW(menu.get(), MF_STRING, ID_FIND_EVERYWHERE, L"&Find in all tables...");
  const HMENU order = CreatePopupMenu();
  AppendMenuW(order, MF_STRING, ID_ORDER_COLUMN, L"&Column...");
  AppendMenuW(order, MF_STRING, ID_FILTER_ALL, L"&Any column containing...");
  AppendMenuW(order, MF_STRING, ID_ARRANGEMENT_CLEAR, L"&Show all records");
  AppendMenuW(order, MF_STRING, ID_ARRANGEMENT_KEEP, L"&Keep as query...");
  AppendMenuW(menu.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(order), L"&Order and filter");
  AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
  const HMENU colors = CreatePopupMenu();
  AppendMenuW(colors, MF_STRING, ID_COLORS_OWN, L"&Quivane's own");
  AppendMenuW(colors, MF_STRING, ID_COLORS_SYSTEM, L"The &system's");
  AppendMenuW(colors, MF_STRING, ID_COLORS_DARK, L"&Dark");
  AppendMenuW(menu.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(colors), L"&Colors");
  AppendMenuW(menu.get(), MF_STRING, 0, L"&Zoom");
  std::vector<MenuStep> way;
  findWay(menu.get(), command, way);
  return way;
}

POINT itemMiddle(HWND popup, const MenuStep& item) {
  // How high an item is can only be asked by the program itself: the popup consists of equal ones, and
  // of separators half as high as the buttons of a menu bar.
  const int separator = GetSystemMetrics(SM_CYMENUSIZE) / 2;
  RECT place{};
  GetClientRect(popup, &place);
  const int items = static_cast<int>(place.bottom) - item.separatorCount * separator;
  const int above = item.index - item.separatorsAbove;
  POINT middle = {place.right / 2,
                  item.separatorsAbove * separator + items * (2 * above + 1) / (2 * item.itemCount)};
  ClientToScreen(popup, &middle);
  return middle;
}
