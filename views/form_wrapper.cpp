#include "views/form_wrapper.h"

#include <array>

#include "base/app_colors.h"
#include "base/handles.h"
#include "views/message_table.h"

namespace {

constexpr wchar_t kClassName[] = L"Form Wrapper Wnd";
constexpr INT_PTR kControlId = 6;

WNDPROC tabProcedure = DefWindowProcW;

LRESULT paintBackground(HWND window, UINT, WPARAM, LPARAM) {
  PAINTSTRUCT paint;
  if (const HDC dc = BeginPaint(window, &paint)) {
    RECT client{};
    GetClientRect(window, &client);
    const UniqueBrush brush(CreateSolidBrush(appColors[kFormViewBackground]));
    FillRect(dc, &client, brush.get());
    EndPaint(window, &paint);
  }
  return 0;
}

constexpr std::array kMessages = {
    MessageRow{WM_PAINT, paintBackground},
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
  window_ = CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_VSCROLL, 0, 0, size.cx, size.cy, tabControl,
                            reinterpret_cast<HMENU>(kControlId), instance, nullptr);
  if (window_) SetScrollRange(window_, SB_VERT, 0, 0, FALSE);
  return window_;
}
