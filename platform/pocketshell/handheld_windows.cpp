#include "platform/pocketshell/handheld_windows.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/pocketshell/look/plain_look.h"
#include "platform/pocketshell/menu/menu_bar.h"
#include "platform/pocketshell/shell_settings.h"
#include "platform/pocketshell/text/own_letters.h"
#include "platform/pocketshell/window/list_focus.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/window/tap_and_hold.h"
#include "platform/pocketshell/window/window_class.h"
#include "platform/pocketshell/window/window_places.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/present_zoom.h"

using namespace pocketshell;

namespace {

/// Between HandheldBeginLayout and HandheldEndLayout.
bool isLayingOut = false;

void equip(HWND window) {
  SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(presentFont()), FALSE);
  if (isOfClass(window, WC_LISTVIEWW)) TapAndHold::attach(window);
  drawOwnLetters(window);
  followSystemLook(window);
  showFocusOf(window);
}

/// Made hidden, so that the user doesn't see it before its client area has the right size.
HWND createFrame(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style, HMENU menu,
                 HINSTANCE instance, void* parameter) {
  const ShellSettingsReading reading;
  const DWORD visible = style & WS_VISIBLE;
  constexpr DWORD kResizing = WS_THICKFRAME | WS_MAXIMIZEBOX;
  const DWORD hidden = (style & ~visible & ~kResizing) | shellWindowStyle();
  const FrameBeginning beginning = frameBeginning();
  const HWND window =
      CreateWindowExW(extendedStyle, className, title, hidden, static_cast<int>(beginning.corner.x),
                      static_cast<int>(beginning.corner.y), static_cast<int>(beginning.size.cx),
                      static_cast<int>(beginning.size.cy), nullptr, menu, instance, parameter);
  if (!window) return nullptr;
  ShellWindow& shell = ShellWindow::attach(window);
  const bool wasMaximised = shell.becomeFrame(beginning);
  equip(window);
  if (visible) ShowWindow(window, wasMaximised ? SW_SHOWMAXIMIZED : SW_SHOW);
  return window;
}

HWND createChild(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style,
                 const Place& place, HWND parent, HMENU menu, HINSTANCE instance, void* parameter) {
  const RECT edges = toMonitor(place.rectangle(), presentZoom());
  const HWND window =
      CreateWindowExW(extendedStyle, className, title, style, static_cast<int>(edges.left),
                      static_cast<int>(edges.top), static_cast<int>(edges.right - edges.left),
                      static_cast<int>(edges.bottom - edges.top), parent, menu, instance, parameter);
  if (!window) return nullptr;
  // Its own WM_CREATE may have moved it meanwhile.
  if (!placeOf(window)) rememberPlace(window, place);
  equip(window);
  return window;
}

/// What the system counts or answers with yes and no; all else are lengths.
bool isLength(int index) {
  constexpr std::array kOthers = {
      SM_MOUSEPRESENT,      SM_DEBUG,       SM_SWAPBUTTON,     SM_PENWINDOWS,        SM_DBCSENABLED,
      SM_CMOUSEBUTTONS,     SM_SECURE,      SM_ARRANGE,        SM_NETWORK,           SM_CLEANBOOT,
      SM_SHOWSOUNDS,        SM_SLOWMACHINE, SM_MIDEASTENABLED, SM_MOUSEWHEELPRESENT, SM_CMONITORS,
      SM_SAMEDISPLAYFORMAT, SM_IMMENABLED};
  return index < SM_TABLETPC && std::find(kOthers.begin(), kOthers.end(), index) == kOthers.end();
}

int defaultToZero(int figure) {
  return figure == CW_USEDEFAULT ? 0 : figure;
}

/// A length of a top-level window in the monitor's pixels; the present one stays when it is meant.
int lengthOnMonitor(int handheld, LONG present) {
  const int zoom = presentZoom();
  const int length = static_cast<int>(present);
  return fromMonitor(length, zoom) == handheld ? length : toMonitor(handheld, zoom);
}

/// What a window with a known place has inside is that place without its borders: taken back from the
/// monitor's rounded edges it could be one more or one less.
int innerLength(int told, LONG outer, LONG inner) {
  return told - fromMonitor(static_cast<int>(outer - inner), presentZoom());
}

}  // namespace

HWND HandheldCreateWindow(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style,
                          int x, int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                          void* parameter) {
  const bool child = (style & WS_CHILD) != 0;
  if (!child && !parent && width == CW_USEDEFAULT) {
    return createFrame(extendedStyle, className, title, style, menu, instance, parameter);
  }
  if (child) {
    return createChild(extendedStyle, className, title, style,
                       {defaultToZero(x), defaultToZero(y), defaultToZero(width), defaultToZero(height)},
                       parent, menu, instance, parameter);
  }
  const int zoom = presentZoom();
  const HWND window = CreateWindowExW(
      extendedStyle, className, title, style, x, y, width == CW_USEDEFAULT ? width : toMonitor(width, zoom),
      height == CW_USEDEFAULT ? height : toMonitor(height, zoom), parent, menu, instance, parameter);
  if (window) equip(window);
  return window;
}

BOOL HandheldMoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) {
  return HandheldSetWindowPos(window, nullptr, x, y, width, height,
                              SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0U : SWP_NOREDRAW));
}

BOOL HandheldSetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
  if (isLayingOut) flags |= SWP_NOREDRAW;
  if (!IsWindow(window)) return SetWindowPos(window, after, x, y, width, height, flags);
  if (!isChild(window)) {
    RECT present{};
    GetWindowRect(window, &present);
    return SetWindowPos(window, after, x, y, lengthOnMonitor(width, present.right - present.left),
                        lengthOnMonitor(height, present.bottom - present.top), flags);
  }
  Place place = presentPlace(window);
  if ((flags & SWP_NOMOVE) == 0) {
    place.x = x;
    place.y = y;
  }
  if ((flags & SWP_NOSIZE) == 0) {
    place.width = width;
    place.height = height;
  }
  // The size on the monitor depends on the position, so a move alone may change it by a pixel.
  if ((flags & SWP_NOMOVE) == 0 || (flags & SWP_NOSIZE) == 0) {
    rememberPlace(window, place);
    flags &= ~static_cast<UINT>(SWP_NOMOVE | SWP_NOSIZE);
  }
  return applyPlace(window, after, place, flags) ? TRUE : FALSE;
}

void HandheldBeginLayout() {
  isLayingOut = true;
}

void HandheldEndLayout(HWND window) {
  isLayingOut = false;
  RedrawWindow(window, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

BOOL HandheldGetClientRect(HWND window, RECT* rectangle) {
  RECT client{};
  RECT outer{};
  if (!GetClientRect(window, &client) || !GetWindowRect(window, &outer)) return FALSE;
  const int zoom = presentZoom();
  RECT handheld = fromMonitor(client, zoom);
  const SIZE size = {outer.right - outer.left, outer.bottom - outer.top};
  if (const auto told = placeOf(window)) {
    const RECT edges = toMonitor(told->rectangle(), zoom);
    if (edges.right - edges.left == size.cx) handheld.right = innerLength(told->width, size.cx, client.right);
    if (edges.bottom - edges.top == size.cy) {
      handheld.bottom = innerLength(told->height, size.cy, client.bottom);
    }
  }
  const ShellWindow* const shell = ShellWindow::of(window);
  if (shell && shell->isFrame()) {
    const SIZE inside = workAreaInside({client.right, client.bottom}, zoom);
    handheld = {0, 0, inside.cx, inside.cy};
  }
  *rectangle = handheld;
  return TRUE;
}

BOOL HandheldGetWindowRect(HWND window, RECT* rectangle) {
  RECT monitor{};
  if (!GetWindowRect(window, &monitor)) return FALSE;
  const int zoom = presentZoom();
  if (isChild(window)) {
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&monitor), 2);
    *rectangle = fromMonitor(monitor, zoom);
    return TRUE;
  }
  *rectangle = {monitor.left, monitor.top,
                monitor.left + fromMonitor(static_cast<int>(monitor.right - monitor.left), zoom),
                monitor.top + fromMonitor(static_cast<int>(monitor.bottom - monitor.top), zoom)};
  return TRUE;
}

int HandheldGetSystemMetrics(int index) {
  if (index == SM_CXSCREEN) return static_cast<int>(presentScreen().cx);
  if (index == SM_CYSCREEN) return static_cast<int>(presentScreen().cy);
  const int answer = GetSystemMetrics(index);
  return isLength(index) ? fromMonitor(answer, presentZoom()) : answer;
}

SIZE HandheldGetPageArea() {
  const SIZE inside = presentWorkArea();
  return {inside.cx, inside.cy - kBelowPagesHeight};
}

int HandheldToMonitor(int handheldPixels) {
  return toMonitor(handheldPixels, presentZoom());
}

int HandheldFromMonitor(int monitorPixels) {
  return fromMonitor(monitorPixels, presentZoom());
}

HFONT HandheldGetFont() {
  return presentFont();
}
