#include "platform/pocketshell/menu/menu_keys.h"

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/menu/menu_walk.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_menu.h"

namespace pocketshell {

namespace {

using Action = MenuKeyEffect::Action;

/// The bar whose buttons are walked, null for none.
HWND walkedBar = nullptr;
int walkedIndex = 0;

MenuBar* barOf(HWND window) {
  const ShellWindow* const shell = ShellWindow::of(GetAncestor(window, GA_ROOT));
  return shell ? shell->menuBar() : nullptr;
}

bool isKeyPress(UINT message) {
  return message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
}

bool isKey(UINT message) {
  return message >= WM_KEYFIRST && message <= WM_KEYLAST;
}

bool isButtonPress(UINT message) {
  return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN ||
         message == WM_NCLBUTTONDOWN || message == WM_NCRBUTTONDOWN;
}

void redirectWhileWalked(MSG& message, const MenuBar& bar) {
  if (isButtonPress(message.message)) {
    MenuKeys::leave();
  } else if (isKeyPress(message.message)) {
    message.hwnd = bar.parent();
    message.message = MenuKeys::keyMessage();
  } else if (isKey(message.message)) {
    message.message = WM_NULL;
  }
}

/// With Alt, too, it is the key to the third character of a key, as "@" on "0".
bool isControlAlone() {
  return GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
}

void redirectZoomKey(MSG& message, HWND frame) {
  const auto command = zoomCommandOfKey(message.wParam, presentZoom());
  if (!command) return;
  message.hwnd = frame;
  message.message = WM_SYSCOMMAND;
  message.wParam = *command;
  message.lParam = 0;
}

}  // namespace

MenuKeyEffect menuKeyEffect(WPARAM key, int index, int count, int mnemonic) {
  switch (key) {
    case VK_LEFT:
      return {Action::move, (index + count - 1) % count};
    case VK_RIGHT:
      return {Action::move, (index + 1) % count};
    case VK_UP:
    case VK_DOWN:
    case VK_RETURN:
      return {Action::open, index};
    case VK_ESCAPE:
    case VK_MENU:
    case VK_F10:
      return {Action::leave, index};
    default:
      if (mnemonic >= 0) return {Action::open, mnemonic};
      return {Action::none, index};
  }
}

void MenuKeys::redirect(MSG& message) {
  if (!isKey(message.message) && !isButtonPress(message.message)) return;
  MenuBar* const bar = barOf(message.hwnd);
  if (!bar || !IsWindowEnabled(bar->parent())) return;
  if (bar->window() == walkedBar) {
    redirectWhileWalked(message, *bar);
  } else if (message.message == WM_SYSCHAR &&
             bar->indexOfMnemonic(static_cast<wchar_t>(message.wParam)) >= 0) {
    message.hwnd = bar->parent();
    message.message = WM_SYSCOMMAND;
    message.lParam = static_cast<LPARAM>(message.wParam);
    message.wParam = SC_KEYMENU;
  } else if (message.message == WM_KEYDOWN && isControlAlone()) {
    redirectZoomKey(message, bar->parent());
  }
}

void MenuKeys::enter(MenuBar& bar) {
  if (bar.buttonCount() == 0) return;
  walkedBar = bar.window();
  walkedIndex = 0;
  bar.highlight(walkedIndex);
}

void MenuKeys::leave() {
  MenuBar* const bar = MenuBar::of(walkedBar);
  walkedBar = nullptr;
  if (bar) bar->highlight(-1);
}

UINT MenuKeys::keyMessage() {
  static const UINT number = RegisterWindowMessageW(L"Pocket Shell Menu Key");
  return number;
}

void MenuKeys::keyPressed(WPARAM key) {
  MenuBar* const bar = MenuBar::of(walkedBar);
  if (!bar) return;
  const auto character = static_cast<wchar_t>(MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_CHAR));
  const MenuKeyEffect effect = menuKeyEffect(key, walkedIndex, bar->buttonCount(),
                                             character != 0 ? bar->indexOfMnemonic(character) : -1);
  if (effect.action == Action::move) {
    walkedIndex = effect.index;
    bar->highlight(walkedIndex);
  } else if (effect.action != Action::none) {
    leave();
    if (effect.action == Action::open && bar->isEnabled(effect.index)) walkMenus(*bar, effect.index, true);
  }
}

}  // namespace pocketshell

void HandheldTakeMenuKey(MSG* message) {
  pocketshell::MenuKeys::redirect(*message);
}
