#include "views/date_editor_subclass.h"

#include <array>

#include "base/handles.h"
#include "views/message_table.h"

DateEditorRegistry theDateEditors;

namespace {

WNDPROC previous = DefWindowProcW;  // of the STATIC class

LRESULT callPrevious(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcW(previous, window, message, wParam, lParam);
}

LRESULT tapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (DateFieldEditor* const editor = theDateEditors.find(window)) editor->openCalendar();
  return callPrevious(window, message, wParam, lParam);
}

/// The keyboard's tap.
LRESULT characterTyped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return wParam == L' ' ? tapped(window, message, wParam, lParam)
                        : callPrevious(window, message, wParam, lParam);
}

LRESULT focusChanged(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  InvalidateRect(window, nullptr, TRUE);
  return callPrevious(window, message, wParam, lParam);
}

/// A text does not show by itself that it has the focus.
LRESULT painted(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = callPrevious(window, message, wParam, lParam);
  if (GetFocus() != window) return result;
  RECT client{};
  GetClientRect(window, &client);
  const UniqueWindowDc dc(window);
  DrawFocusRect(dc.dc(), &client);
  return result;
}

constexpr std::array kMessages = {
    MessageRow{WM_LBUTTONDOWN, tapped},    MessageRow{WM_CHAR, characterTyped},
    MessageRow{WM_SETFOCUS, focusChanged}, MessageRow{WM_KILLFOCUS, focusChanged},
    MessageRow{WM_PAINT, painted},
};

LRESULT CALLBACK dateEditorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return answerFromTable(kMessages, window, message, wParam, lParam, callPrevious);
}

}  // namespace

void attachDateEditor(DateFieldEditor& editor) {
  if (!theDateEditors.add(editor.window(), editor)) return;
  previous = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(editor.window(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(dateEditorProcedure)));
}

void detachDateEditor(const DateFieldEditor& editor) {
  theDateEditors.remove(editor);
}
