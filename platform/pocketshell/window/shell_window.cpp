#include "platform/pocketshell/window/shell_window.h"

#include <windowsx.h>

#include <algorithm>
#include <array>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/look/plain_look.h"
#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/menu/menu_keys.h"
#include "platform/pocketshell/menu/menu_walk.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/window/covering_dialogs.h"
#include "platform/pocketshell/window/frame_place.h"
#include "platform/pocketshell/window/kept_places.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_change.h"
#include "platform/pocketshell/zoom/zoom_figures.h"
#include "platform/pocketshell/zoom/zoom_menu.h"

namespace pocketshell {

namespace {

constexpr UINT kSystemCommandMask = 0xFFF0;
/// Of the numbers that the system gives out at run time.
constexpr UINT kFirstRegisteredMessage = 0xC000;

SIZE sizeOf(const RECT& rectangle) {
  return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

SIZE sum(SIZE one, SIZE other) {
  return {one.cx + other.cx, one.cy + other.cy};
}

SIZE onMonitor(SIZE inside) {
  const int zoom = presentZoom();
  return {toMonitor(static_cast<int>(inside.cx), zoom), toMonitor(static_cast<int>(inside.cy), zoom)};
}

/// Of the monitor that a rectangle lies on or is next to. An empty work area when it can't be had.
MONITORINFO monitorAt(const RECT& place) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor;
}

RECT rectangleOf(POINT corner, SIZE size) {
  return {corner.x, corner.y, corner.x + size.cx, corner.y + size.cy};
}

/// A class that wants its windows to be drawn anew as a whole when they are sized loses what they show with
/// each step of the edge that is dragged, which leaves them black until they are laid out.
void keepWhatIsShown(HWND window) {
  const ULONG_PTR style = GetClassLongPtrW(window, GCL_STYLE);
  SetClassLongPtrW(window, GCL_STYLE, static_cast<LONG_PTR>(style & ~ULONG_PTR{CS_HREDRAW | CS_VREDRAW}));
}

}  // namespace

DWORD shellWindowStyle() {
  constexpr DWORD kFixed = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  return readKeepsHandheldSize() ? kFixed : kFixed | WS_THICKFRAME | WS_MAXIMIZEBOX;
}

SIZE shellFrameSize() {
  RECT frame{};
  AdjustWindowRectEx(&frame, shellWindowStyle(), FALSE, 0);
  return sizeOf(frame);
}

int automaticZoomOfWindows() {
  HWND frame = nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM found) -> BOOL {
        const ShellWindow* const shell = ShellWindow::of(window);
        if (!shell || !shell->isFrame()) return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&frame));
  return zoomOfMonitor(MonitorFromWindow(frame, MONITOR_DEFAULTTOPRIMARY));
}

MenuBar* ShellWindow::menuBar() const {
  MenuBar* const bar = MenuBar::of(menuBar_);
  return bar && bar->parent() == window() ? bar : nullptr;
}

/// Another monitor may have another resolution, which the system tells of a window that is moved there.
FrameBeginning frameBeginning() {
  FrameBeginning beginning;
  const SIZE frame = shellFrameSize();
  beginning.size = sum(onMonitor(kLeastWorkArea), frame);
  if (readKeepsHandheldSize()) return beginning;
  beginning.kept = readKeptPlace(presentArrangement());
  const POINT corner = beginning.kept ? beginning.kept->corner : POINT{};
  const SIZE kept = beginning.kept ? sum(onMonitor(beginning.kept->inside), frame) : SIZE{1, 1};
  const MONITORINFO monitor = monitorAt(rectangleOf(corner, kept));
  if ((monitor.dwFlags & MONITORINFOF_PRIMARY) == 0 || IsRectEmpty(&monitor.rcWork)) return beginning;
  beginning.free = monitor.rcWork;
  if (beginning.kept) {
    beginning.inside = beginning.kept->inside;
    const RECT place = keptWithin(corner, kept, beginning.free, sum(onMonitor(kLeastWorkArea), frame));
    beginning.corner = {place.left, place.top};
    beginning.size = sizeOf(place);
  } else {
    beginning.inside = comfortableInside(sizeOf(beginning.free), frame, presentZoom());
    beginning.size = sum(onMonitor(beginning.inside), frame);
  }
  return beginning;
}

bool ShellWindow::becomeFrame(const FrameBeginning& beginning) {
  isFrame_ = true;
  canBeSized_ = (GetWindowLongPtrW(window(), GWL_STYLE) & WS_THICKFRAME) != 0;
  desktopMenu_ = std::make_unique<DesktopMenu>(window());
  // It may have been made before, when the window was.
  if (MenuBar* const bar = menuBar()) {
    bar->addMenuButton();
    bar->layOutButtons();
  }
  bool wasMaximised = false;
  if (canBeSized_) {
    keepWhatIsShown(window());
    wasMaximised = standWhereLeft(beginning);
  } else {
    fitToZoom();
  }
  noteInside();
  return wasMaximised;
}

SIZE ShellWindow::border() const {
  RECT outer{};
  RECT client{};
  GetWindowRect(window(), &outer);
  GetClientRect(window(), &client);
  const SIZE present = sizeOf(outer);
  // Minimised, there is no client area to measure the frame by.
  return client.right > 0 ? SIZE{present.cx - client.right, present.cy - client.bottom} : shellFrameSize();
}

/// Where it stands with a corner and an inside, of what its monitor has free.
RECT ShellWindow::fitted(POINT corner, SIZE inside, const RECT& free) const {
  const SIZE frame = border();
  const SIZE wanted = sum(onMonitor(inside), frame);
  if (IsRectEmpty(&free)) return rectangleOf(corner, wanted);
  // Of a size that can't be changed nothing is taken away.
  return keptWithin(corner, wanted, free, canBeSized_ ? sum(onMonitor(kLeastWorkArea), frame) : wanted);
}

void ShellWindow::placeAt(POINT corner, SIZE inside) {
  const RECT wanted = rectangleOf(corner, sum(onMonitor(inside), border()));
  const RECT place = fitted(corner, inside, monitorAt(wanted).rcWork);
  SetWindowPos(window(), nullptr, static_cast<int>(place.left), static_cast<int>(place.top),
               static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

bool ShellWindow::standWhereLeft(const FrameBeginning& beginning) {
  RECT outer{};
  GetWindowRect(window(), &outer);
  const bool wasMaximised = beginning.kept && beginning.kept->maximised;
  const POINT corner = beginning.kept ? beginning.kept->corner : POINT{outer.left, outer.top};
  const RECT place = fitted(corner, beginning.inside, beginning.free);
  RECT within{};
  IntersectRect(&within, &place, &beginning.free);
  if (EqualRect(&place, &outer) && EqualRect(&place, &within)) return wasMaximised;
  if (beginning.kept) {
    placeAt(beginning.kept->corner, beginning.kept->inside);
  } else {
    const RECT least = rectangleOf(corner, sum(onMonitor(kLeastWorkArea), border()));
    placeAt(corner, comfortableInside(sizeOf(monitorAt(least).rcWork), border(), presentZoom()));
  }
  return wasMaximised;
}

/// What the window has inside is the screen from now on.
void ShellWindow::noteInside() {
  RECT client{};
  GetClientRect(window(), &client);
  if (IsIconic(window()) || client.right <= 0) return;
  if (!canBeSized_) {
    setPresentWorkArea(kLeastWorkArea);
    return;
  }
  const SIZE inside = workAreaInside({client.right, client.bottom}, presentZoom());
  setPresentWorkArea(inside);
  isMaximised_ = IsZoomed(window()) != FALSE;
  if (isMaximised_) return;
  RECT outer{};
  GetWindowRect(window(), &outer);
  corner_ = {outer.left, outer.top};
  inside_ = inside;
}

void ShellWindow::keepPlace() const {
  if (canBeSized_) writeKeptPlace(presentArrangement(), {corner_, inside_, isMaximised_});
}

void ShellWindow::fitToZoom() {
  if (isMaximised_) {
    noteInside();
    return;
  }
  RECT outer{};
  GetWindowRect(window(), &outer);
  // What the monitor had no room for at another zoom comes back, unless the user has chosen a new place
  // since.
  if (!EqualRect(&outer, &fitted_)) unfitted_ = {{outer.left, outer.top}, inside_};
  placeAt(unfitted_.corner, unfitted_.inside);
  GetWindowRect(window(), &fitted_);
}

LRESULT ShellWindow::positionChanged(UINT message, WPARAM wParam, LPARAM lParam) {
  constexpr UINT kInPlace = SWP_NOMOVE | SWP_NOSIZE;
  const UINT flags = reinterpret_cast<const WINDOWPOS*>(lParam)->flags & (kInPlace | SWP_FRAMECHANGED);
  const bool isElsewhere = flags != kInPlace;
  if (isFrame_) noteInside();
  MenuBar* const bar = isElsewhere ? menuBar() : nullptr;
  if (bar) bar->layOut();
  InputPanel::follow();
  const LRESULT answered = passOn(message, wParam, lParam);
  if (isFrame_ && isElsewhere) coverAgain(window());
  return answered;
}

LRESULT ShellWindow::notified(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
  MenuBar* const bar = menuBar();
  if (!bar || header.hwndFrom != bar->window()) return passOn(message, wParam, lParam);
  if (header.code == static_cast<UINT>(NM_CUSTOMDRAW)) {
    return bar->draw(*reinterpret_cast<const NMTBCUSTOMDRAW*>(lParam));
  }
  if (header.code != static_cast<UINT>(TBN_DROPDOWN)) return passOn(message, wParam, lParam);
  const int index = bar->indexOfCommand(reinterpret_cast<const NMTOOLBARW*>(lParam)->iItem);
  if (index < 0) return passOn(message, wParam, lParam);
  MenuKeys::leave();
  postWalk(*bar, index);
  return TBDDRET_DEFAULT;
}

/// The bar may be another one than that whose button was pressed.
void ShellWindow::walkAsked(WPARAM index) const {
  MenuBar* const bar = menuBar();
  const bool isThere = bar && index < static_cast<WPARAM>(bar->buttonCount());
  if (isThere && bar->isEnabled(static_cast<int>(index))) walkMenus(*bar, static_cast<int>(index), false);
}

/// Wine's submenus of a system menu send ordinary commands.
LRESULT ShellWindow::commandGiven(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool isFromMenu = lParam == 0 && HIWORD(wParam) == 0;
  if (!isFromMenu) return passOn(message, wParam, lParam);
  const UINT command = LOWORD(wParam);
  if (const auto zoom = zoomOfCommand(command)) {
    HandheldSetZoom(*zoom);
    return 0;
  }
  const bool isEntry = desktopMenu_ && desktopMenu_->has(command);
  return isEntry && !desktopMenu_->isAvailable(command) ? 0 : passOn(message, wParam, lParam);
}

LRESULT ShellWindow::systemCommandGiven(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto zoom = zoomOfCommand(static_cast<UINT>(wParam))) {
    HandheldSetZoom(*zoom);
    return 0;
  }
  const UINT command = static_cast<UINT>(wParam) & kSystemCommandMask;
  if (desktopMenu_ && desktopMenu_->has(command)) return SendMessageW(window(), WM_COMMAND, command, 0);
  MenuBar* const bar = menuBar();
  if (command != SC_KEYMENU || !bar || IsIconic(window())) {
    return passOn(message, wParam, lParam);
  }
  if (lParam == 0) {
    MenuKeys::enter(*bar);
    return 0;
  }
  const int index = bar->indexOfMnemonic(static_cast<wchar_t>(lParam));
  if (index < 0) return passOn(message, wParam, lParam);
  walkMenus(*bar, index, true);
  return 0;
}

LRESULT ShellWindow::popupClosed(UINT message, WPARAM wParam, LPARAM lParam) {
  notePopupClosed();
  return passOn(message, wParam, lParam);
}

/// The system's own limit is the monitor; a zoom that the user chose is kept all the same.
LRESULT ShellWindow::limitsAsked(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT answered = passOn(message, wParam, lParam);
  auto& limits = *reinterpret_cast<MINMAXINFO*>(lParam);
  if (isFrame_) limits.ptMaxTrackSize = {SHRT_MAX, SHRT_MAX};
  if (canBeSized_) {
    const SIZE least = sum(onMonitor(kLeastWorkArea), border());
    limits.ptMinTrackSize = {least.cx, least.cy};
  }
  return answered;
}

/// A window manager shows a menu of its own instead of the system menu: the bar offers what is in that, too.
LRESULT ShellWindow::contextMenuAsked(UINT message, WPARAM wParam, LPARAM lParam) {
  const MenuBar* const bar = menuBar();
  if (!bar || !desktopMenu_ || reinterpret_cast<HWND>(wParam) != bar->window()) {
    return passOn(message, wParam, lParam);
  }
  TrackPopupMenuEx(desktopMenu_->popup(), TPM_RIGHTBUTTON, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam),
                   window(), nullptr);
  return 0;
}

LRESULT ShellWindow::popupOpening(UINT message, WPARAM wParam, LPARAM lParam) {
  notePopupOpened();
  if (desktopMenu_) desktopMenu_->refresh(reinterpret_cast<HMENU>(wParam));
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::itemSelected(UINT message, WPARAM wParam, LPARAM lParam) {
  noteMenuSelection(HIWORD(wParam));
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::resolutionChanged(UINT message, WPARAM wParam, LPARAM lParam) {
  if (isFrame_ && readZoomSetting() == 0) {
    const auto& suggested = *reinterpret_cast<const RECT*>(lParam);
    SetWindowPos(window(), nullptr, static_cast<int>(suggested.left), static_cast<int>(suggested.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    changeZoom(automaticZoomOfWindows());
  }
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::leftMenu(UINT message, WPARAM wParam, LPARAM lParam) {
  MenuKeys::leave();
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::activationChanged(UINT message, WPARAM wParam, LPARAM lParam) {
  if (LOWORD(wParam) == WA_INACTIVE) MenuKeys::leave();
  // When all that comes with the change is done: it may put this window above the panel.
  if (InputPanel::isUp()) PostMessageW(window(), InputPanel::restoreMessage(), 0, 0);
  return passOn(message, wParam, lParam);
}

/// The system tells top-level windows alone.
LRESULT ShellWindow::colorsChanged(UINT message, WPARAM wParam, LPARAM lParam) {
  if (isFrame_) systemLookChanged();
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::settingChanged(UINT message, WPARAM wParam, LPARAM lParam) {
  if (isFrame_ && wParam == SPI_SETHIGHCONTRAST) systemLookChanged();
  return passOn(message, wParam, lParam);
}

/// The window may not be destroyed any more.
LRESULT ShellWindow::sessionEnded(UINT message, WPARAM wParam, LPARAM lParam) {
  if (wParam != FALSE) keepPlace();
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::destroyed(UINT message, WPARAM wParam, LPARAM lParam) {
  InputPanel::leave(window());
  keepPlace();
  if (isFrame_) setPresentWorkArea(kLeastWorkArea);
  return passOn(message, wParam, lParam);
}

LRESULT ShellWindow::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  struct Row {
    UINT message;
    LRESULT (ShellWindow::*handler)(UINT, WPARAM, LPARAM);
  };
  static constexpr std::array kRows = {
      Row{WM_WINDOWPOSCHANGED, &ShellWindow::positionChanged},
      Row{WM_NOTIFY, &ShellWindow::notified},
      Row{WM_SYSCOMMAND, &ShellWindow::systemCommandGiven},
      Row{WM_COMMAND, &ShellWindow::commandGiven},
      Row{WM_CONTEXTMENU, &ShellWindow::contextMenuAsked},
      Row{WM_INITMENUPOPUP, &ShellWindow::popupOpening},
      Row{WM_UNINITMENUPOPUP, &ShellWindow::popupClosed},
      Row{WM_MENUSELECT, &ShellWindow::itemSelected},
      Row{WM_GETMINMAXINFO, &ShellWindow::limitsAsked},
      Row{WM_DPICHANGED, &ShellWindow::resolutionChanged},
      Row{WM_CANCELMODE, &ShellWindow::leftMenu},
      Row{WM_ACTIVATE, &ShellWindow::activationChanged},
      Row{WM_SYSCOLORCHANGE, &ShellWindow::colorsChanged},
      Row{WM_THEMECHANGED, &ShellWindow::colorsChanged},
      Row{WM_SETTINGCHANGE, &ShellWindow::settingChanged},
      Row{WM_ENDSESSION, &ShellWindow::sessionEnded},
      Row{WM_DESTROY, &ShellWindow::destroyed},
  };
  for (const Row& row : kRows) {
    if (row.message == message) return (this->*row.handler)(message, wParam, lParam);
  }
  if (message < kFirstRegisteredMessage) return passOn(message, wParam, lParam);
  if (message == MenuKeys::keyMessage()) {
    MenuKeys::keyPressed(wParam);
    return 0;
  }
  if (message == walkMessage()) {
    walkAsked(wParam);
    return 0;
  }
  if (message == InputPanel::restoreMessage()) {
    InputPanel::restore();
    return 0;
  }
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell
