#include "views/form/form_wrapper.h"

#include <array>

#include "base/settings/app_colors.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/form/form_ids.h"
#include "views/shared/color_brushes.h"
#include "views/shared/message_table.h"

namespace {

constexpr wchar_t kClassName[] = L"Form Wrapper Wnd";
constexpr INT_PTR kControlId = 6;

WNDPROC tabProcedure = DefWindowProcW;
FormControlListener* controlListener = nullptr;

/// The window does not clip its children, and one of them that has nothing to paint itself would be
/// painted over.
void keepChildrenClear(HWND window, HDC dc) {
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsWindowVisible(child)) continue;
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    ExcludeClipRect(dc, place.left, place.top, place.right, place.bottom);
  }
}

LRESULT paintBackground(HWND window, UINT, WPARAM, LPARAM) {
  PAINTSTRUCT paint;
  if (const HDC dc = BeginPaint(window, &paint)) {
    RECT client{};
    GetClientRect(window, &client);
    keepChildrenClear(window, dc);
    FillRect(dc, &client, appColorBrush(kFormViewBackground));
    EndPaint(window, &paint);
  }
  return 0;
}

void setColors(WPARAM dc, AppColor background, AppColor text) {
  SetBkColor(reinterpret_cast<HDC>(dc), appColors[background]);
  SetTextColor(reinterpret_cast<HDC>(dc), appColors[text]);
}

LRESULT result(HBRUSH brush) {
  return reinterpret_cast<LRESULT>(brush);
}

LRESULT colorEdit(HWND, UINT, WPARAM dc, LPARAM) {
  setColors(dc, kFormViewEditBoxBackground, kFormViewEditBoxForeground);
  return result(appColorBrush(kFormViewEditBoxBackground));
}

LRESULT colorButton(HWND, UINT, WPARAM dc, LPARAM) {
  setColors(dc, kFormViewCheckBoxBackground, kFormViewCheckBoxForeground);
  return result(static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
}

/// Labels, the texts of dates and check boxes. Editors that are read-only ask for it too, and look like
/// labels.
LRESULT colorStatic(HWND, UINT, WPARAM dc, LPARAM control) {
  const int identifier = GetDlgCtrlID(reinterpret_cast<HWND>(control));
  if (identifier >= kFirstDateEditorId) {
    setColors(dc, kFormViewDateTextBackground, kFormViewDateTextForeground);
    return result(appColorBrush(kFormViewDateTextBackground));
  }
  if (identifier >= kFirstCheckBoxId) {
    setColors(dc, kFormViewCheckBoxBackground, kFormViewCheckBoxForeground);
    return result(appColorBrush(kFormViewCheckBoxBackground));
  }
  // What the text of a label does not cover is the form's own background.
  setColors(dc, kFormViewLabelBackground, kFormViewLabelForeground);
  return result(appColorBrush(kFormViewBackground));
}

LRESULT controlTold(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND control = reinterpret_cast<HWND>(lParam);
  if (control && controlListener) controlListener->controlTold(control, HIWORD(wParam));
  return CallWindowProcW(tabProcedure, window, message, wParam, lParam);
}

constexpr std::array kMessages = {
    MessageRow{WM_PAINT, paintBackground},   MessageRow{WM_CTLCOLOREDIT, colorEdit},
    MessageRow{WM_CTLCOLORBTN, colorButton}, MessageRow{WM_CTLCOLORSTATIC, colorStatic},
    MessageRow{WM_COMMAND, controlTold},
};

/// The form behaves as a part of the tab control: what it does not answer goes to that control's own
/// procedure, not to the system's default.
LRESULT CALLBACK formProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return answerFromTable(kMessages, window, message, wParam, lParam,
                         [](HWND form, UINT number, WPARAM first, LPARAM second) {
                           return CallWindowProcW(tabProcedure, form, number, first, second);
                         });
}

}  // namespace

bool FormWrapper::registerClass(HINSTANCE instance) {
  WNDCLASSW description{};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = formProcedure;
  description.hInstance = instance;
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = kClassName;
  return RegisterClassW(&description) != 0;
}

HWND FormWrapper::create(HINSTANCE instance, HWND tabControl, SIZE size, WNDPROC procedure) {
  tabProcedure = procedure;
  // Made without WS_VSCROLL, which the range takes away: with it the tab control would be drawn once more.
  window_ = HandheldCreateWindow(0, kClassName, L"", WS_CHILD, 0, 0, size.cx, size.cy, tabControl,
                                 reinterpret_cast<HMENU>(kControlId), instance, nullptr);
  if (window_) SetScrollRange(window_, SB_VERT, 0, 0, FALSE);
  return window_;
}

void FormWrapper::listen(FormControlListener* listener) {
  controlListener = listener;
}
