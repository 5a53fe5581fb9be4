#include "platform/pocketshell/panel/panel_window.h"

#include <windowsx.h>

#include <array>
#include <optional>
#include <utility>

#include "owners/handles.h"
#include "platform/pocketshell/module.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/panel/panel_keys.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr wchar_t kClassName[] = L"Pocket Shell Input Panel";
constexpr UINT kLiftMessage = WM_USER;

HWND panelWindow = nullptr;
UniqueHook focusHook;
PanelShift shift;
std::optional<std::size_t> pressedKey;

RECT placeOnMonitor(const PanelKey& key) {
  return toMonitor(keyPlace(key, static_cast<int>(presentScreen().cx)), presentZoom());
}

std::optional<std::size_t> keyAt(LPARAM lParam) {
  const std::vector<PanelKey>& keys = panelKeys();
  // By the edges on the monitor, as they are drawn.
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const RECT place = placeOnMonitor(keys[i]);
    if (PtInRect(&place, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)})) return i;
  }
  return std::nullopt;
}

void type(const PanelKey& key) {
  const HWND target = GetFocus();
  if (!target) return;
  if (key.kind == PanelKey::Kind::character) {
    PostMessageW(target, WM_CHAR, characterOf(key, shift), 1);
  } else if (key.kind == PanelKey::Kind::stroke) {
    PostMessageW(target, WM_KEYDOWN, key.stroke, 1);
    PostMessageW(target, WM_KEYUP, key.stroke, static_cast<LPARAM>(0xC0000001));
  }
}

bool isSunken(const PanelKey& key, std::size_t index) {
  return pressedKey == index || (key.kind == PanelKey::Kind::shift && shift.shift) ||
         (key.kind == PanelKey::Kind::lock && shift.lock);
}

/// A triangle that points where the key moves to.
void drawArrow(HDC dc, const RECT& key, WORD stroke) {
  const LONG x = (key.left + key.right) / 2;
  const LONG y = (key.top + key.bottom) / 2;
  const LONG reach = toMonitor(3, presentZoom());
  const LONG across = stroke == VK_LEFT || stroke == VK_RIGHT ? reach : 0;
  const LONG down = stroke == VK_UP || stroke == VK_DOWN ? reach : 0;
  const LONG sign = stroke == VK_LEFT || stroke == VK_UP ? -1 : 1;
  const std::array<POINT, 3> corners = {POINT{x + sign * across, y + sign * down},
                                        POINT{x - sign * across - down, y - sign * down - across},
                                        POINT{x - sign * across + down, y - sign * down + across}};
  const HGDIOBJ brush = SelectObject(dc, GetSysColorBrush(COLOR_BTNTEXT));
  Polygon(dc, corners.data(), static_cast<int>(corners.size()));
  SelectObject(dc, brush);
}

void drawKey(HDC dc, const PanelKey& key, bool sunken) {
  RECT place = placeOnMonitor(key);
  DrawFrameControl(dc, &place, DFC_BUTTON, DFCS_BUTTONPUSH | (sunken ? DFCS_PUSHED : 0U));
  const std::array<wchar_t, 2> character = {characterOf(key, shift), 0};
  const wchar_t* const label = key.kind == PanelKey::Kind::character ? character.data() : key.label;
  if (sunken) OffsetRect(&place, 1, 1);
  if (!*label) {
    drawArrow(dc, place, key.stroke);
    return;
  }
  DrawTextW(dc, label, -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void drawKeys(HDC dc) {
  const HGDIOBJ font = SelectObject(dc, presentFont());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
  const std::vector<PanelKey>& keys = panelKeys();
  for (std::size_t i = 0; i < keys.size(); ++i) drawKey(dc, keys[i], isSunken(keys[i], i));
  SelectObject(dc, font);
}

LRESULT paint(HWND window, WPARAM, LPARAM) {
  PAINTSTRUCT paintStruct;
  const HDC dc = BeginPaint(window, &paintStruct);
  if (!dc) return 0;
  RECT client{};
  GetClientRect(window, &client);
  const int width = static_cast<int>(client.right);
  const int height = static_cast<int>(client.bottom);
  const UniqueMemoryDc buffer(CreateCompatibleDC(dc));
  const UniqueBitmap bitmap(CreateCompatibleBitmap(dc, width, height));
  const HGDIOBJ before = SelectObject(buffer.get(), bitmap.get());
  FillRect(buffer.get(), &client, GetSysColorBrush(COLOR_BTNFACE));
  drawKeys(buffer.get());
  BitBlt(dc, 0, 0, width, height, buffer.get(), 0, 0, SRCCOPY);
  SelectObject(buffer.get(), before);
  EndPaint(window, &paintStruct);
  return 0;
}

LRESULT pressed(HWND window, WPARAM, LPARAM lParam) {
  pressedKey = keyAt(lParam);
  SetCapture(window);
  InvalidateRect(window, nullptr, FALSE);
  return 0;
}

LRESULT released(HWND window, WPARAM, LPARAM lParam) {
  const auto key = std::exchange(pressedKey, std::nullopt);
  if (GetCapture() == window) ReleaseCapture();
  if (key && key == keyAt(lParam)) {
    type(panelKeys()[*key]);
    shift = shiftAfter(panelKeys()[*key], shift);
  }
  InvalidateRect(window, nullptr, FALSE);
  return 0;
}

LRESULT captureLost(HWND window, WPARAM, LPARAM) {
  pressedKey.reset();
  InvalidateRect(window, nullptr, FALSE);
  return 0;
}

LRESULT refuseActivation(HWND, WPARAM, LPARAM) {
  return MA_NOACTIVATE;
}

LRESULT stayInBackground(HWND, WPARAM, LPARAM) {
  return 1;
}

LRESULT liftAsked(HWND, WPARAM, LPARAM) {
  PanelWindow::lift();
  return 0;
}

/// Some systems raise a window, and not what it owns, whenever the keyboard goes to one of its controls.
LRESULT CALLBACK focusMoves(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_SETFOCUS && panelWindow) {
    const HWND top = GetAncestor(reinterpret_cast<HWND>(wParam), GA_ROOT);
    // When all that comes with the change is done.
    if (top && top == GetWindow(panelWindow, GW_OWNER)) PostMessageW(panelWindow, kLiftMessage, 0, 0);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT destroyed(HWND window, WPARAM, LPARAM) {
  if (panelWindow == window) {
    panelWindow = nullptr;
    focusHook = UniqueHook();
    InputPanel::ownerGone();
  }
  return 0;
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  struct Row {
    UINT message;
    LRESULT (*handler)(HWND, WPARAM, LPARAM);
  };
  static constexpr std::array kRows = {
      Row{WM_PAINT, paint},
      Row{WM_ERASEBKGND, stayInBackground},
      Row{WM_LBUTTONDOWN, pressed},
      Row{WM_LBUTTONUP, released},
      Row{WM_CAPTURECHANGED, captureLost},
      Row{WM_MOUSEACTIVATE, refuseActivation},
      Row{WM_NCDESTROY, destroyed},
      Row{kLiftMessage, liftAsked},
  };
  for (const Row& row : kRows) {
    if (row.message == message) return row.handler(window, wParam, lParam);
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

void create(HWND owner) {
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = thisModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  // The system menu, which nobody sees without a caption, makes it a window like others to a window manager,
  // which otherwise leaves it above every program's.
  panelWindow = CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW, kClassName, L"", WS_POPUP | WS_SYSMENU,
                                0, 0, 0, 0, owner, nullptr, thisModule(), nullptr);
  if (panelWindow)
    focusHook = UniqueHook(SetWindowsHookExW(WH_CBT, focusMoves, nullptr, GetCurrentThreadId()));
}

}  // namespace

void PanelWindow::show(HWND owner, const RECT& place, bool visible) {
  if (panelWindow && GetWindow(panelWindow, GW_OWNER) != owner) hide();
  if (!panelWindow) create(owner);
  if (!panelWindow) return;
  SetWindowPos(panelWindow, nullptr, static_cast<int>(place.left), static_cast<int>(place.top),
               static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
               SWP_NOACTIVATE | SWP_NOZORDER | (visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

void PanelWindow::lift() {
  constexpr UINT kFlags = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
  if (!panelWindow) return;
  SetWindowPos(panelWindow, HWND_BOTTOM, 0, 0, 0, 0, kFlags);
  SetWindowPos(panelWindow, HWND_TOP, 0, 0, 0, 0, kFlags);
}

void PanelWindow::hide() {
  focusHook = UniqueHook();
  if (const HWND window = std::exchange(panelWindow, nullptr)) DestroyWindow(window);
}

void PanelWindow::redraw() {
  if (panelWindow) InvalidateRect(panelWindow, nullptr, FALSE);
}

}  // namespace pocketshell
