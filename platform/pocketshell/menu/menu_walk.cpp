#include "platform/pocketshell/menu/menu_walk.h"

#include "owners/handles.h"
#include "platform/pocketshell/menu/menu_bar.h"

namespace pocketshell {

namespace {

constexpr UINT kMenuClosed = 0xFFFF;

/// One walk from popup to popup; at most one is under way on the thread that owns the windows.
struct Walk {
  HWND bar = nullptr;
  int index = 0;
  int next = -1;
  bool byKeyboard = false;
  int depth = 0;           ///< how many popups are open, one in the other
  UINT selectedFlags = 0;  ///< of the item selected in the innermost
  POINT mouse{};           ///< where it was when the popup opened: it has not been moved since
};

Walk* walk = nullptr;

/// The next enabled button in the direction, round the ends.
int neighbour(const MenuBar& bar, int step) {
  const int count = bar.buttonCount();
  int index = walk->index;
  do {
    index = (index + step + count) % count;
  } while (index != walk->index && !bar.isEnabled(index));
  return index;
}

bool leaveFor(int index, bool byKeyboard) {
  walk->next = index;
  walk->byKeyboard = byKeyboard;
  EndMenu();
  return true;
}

bool keyPressed(const MenuBar& bar, WPARAM key) {
  const bool inRoot = walk->depth <= 1;
  const bool onSubmenu =
      (walk->selectedFlags & MF_POPUP) != 0 && (walk->selectedFlags & (MF_GRAYED | MF_DISABLED)) == 0;
  if (key == VK_RIGHT && !onSubmenu) return leaveFor(neighbour(bar, 1), true);
  if (key == VK_LEFT && inRoot) return leaveFor(neighbour(bar, -1), true);
  return false;
}

/// Whether the message is used up and the popup does not get it.
bool filter(const MSG& message) {
  const MenuBar* const bar = MenuBar::of(walk->bar);
  if (!bar || walk->next >= 0) return false;
  if (message.message == WM_KEYDOWN) return keyPressed(*bar, message.wParam);
  const bool sameMouse = message.pt.x == walk->mouse.x && message.pt.y == walk->mouse.y;
  if (message.message == WM_MOUSEMOVE && !sameMouse) {
    const int under = bar->indexAt(message.pt);
    return under >= 0 && under != walk->index && bar->isEnabled(under) && leaveFor(under, false);
  }
  if (message.message == WM_LBUTTONDOWN && bar->indexAt(message.pt) == walk->index) {
    EndMenu();
    return true;
  }
  return false;
}

LRESULT CALLBACK filterProcedure(int code, WPARAM wParam, LPARAM lParam) {
  if (code == MSGF_MENU && walk && filter(*reinterpret_cast<const MSG*>(lParam))) return TRUE;
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

void openPopup(MenuBar& bar) {
  GetCursorPos(&walk->mouse);
  TPMPARAMS kept{};
  kept.cbSize = sizeof(kept);
  kept.rcExclude = bar.buttonOnScreen(walk->index);
  // A popup selects nothing by itself; this is the key that selects the first item.
  if (walk->byKeyboard) PostMessageW(bar.parent(), WM_KEYDOWN, VK_DOWN, 0);
  // The last button is at the window's right edge, and its popup over the window all the same.
  const bool isLast = bar.isMenuButton(walk->index);
  const LONG x = isLast ? kept.rcExclude.right : kept.rcExclude.left;
  TrackPopupMenuEx(bar.popupOf(walk->index),
                   (isLast ? TPM_RIGHTALIGN : TPM_LEFTALIGN) | TPM_BOTTOMALIGN | TPM_VERTICAL,
                   static_cast<int>(x), static_cast<int>(kept.rcExclude.top), bar.parent(), &kept);
}

}  // namespace

void walkMenus(MenuBar& bar, int index, bool byKeyboard) {
  if (walk) return;
  Walk state;
  state.bar = bar.window();
  state.next = index;
  state.byKeyboard = byKeyboard;
  walk = &state;
  {
    const UniqueHook hook(SetWindowsHookExW(WH_MSGFILTER, filterProcedure, nullptr, GetCurrentThreadId()));
    for (MenuBar* open = &bar; open != nullptr && state.next >= 0;) {
      state.index = std::exchange(state.next, -1);
      state.depth = 0;
      state.selectedFlags = 0;
      open->press(state.index, true);
      openPopup(*open);
      open = MenuBar::of(state.bar);
      if (open) open->press(state.index, false);
    }
  }
  walk = nullptr;
  InvalidateRect(state.bar, nullptr, FALSE);
}

void postWalk(const MenuBar& bar, int index) {
  PostMessageW(bar.parent(), walkMessage(), static_cast<WPARAM>(index), 0);
}

UINT walkMessage() {
  static const UINT number = RegisterWindowMessageW(L"Pocket Shell Menu Walk");
  return number;
}

bool isWalkingMenus() {
  return walk != nullptr;
}

void notePopupOpened() {
  if (walk) ++walk->depth;
}

void notePopupClosed() {
  if (!walk) return;
  --walk->depth;
  // What is selected now is the item that had opened it; that is not always told.
  walk->selectedFlags = MF_POPUP;
}

void noteMenuSelection(UINT flags) {
  if (walk) walk->selectedFlags = flags == kMenuClosed ? 0 : flags;
}

}  // namespace pocketshell
