#include "views/form/date_editor_subclass.h"

#include <array>

#include "owners/handles.h"
#include "owners/window_layer.h"
#include "views/form/form_ids.h"
#include "views/shared/message_table.h"

DateEditorRegistry theDateEditors;

namespace {

class DateEditorLayer final : public WindowLayer<DateEditorLayer> {
 public:
  explicit DateEditorLayer(HWND editor) : WindowLayer(editor) {}
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
};

LRESULT passOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return DateEditorLayer::passOn(window, message, wParam, lParam);
}

LRESULT tapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (DateFieldEditor* const editor = theDateEditors.find(window)) editor->openCalendar();
  return passOn(window, message, wParam, lParam);
}

/// The keyboard's tap.
LRESULT characterTyped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return wParam == L' ' ? tapped(window, message, wParam, lParam) : passOn(window, message, wParam, lParam);
}

LRESULT focusChanged(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  InvalidateRect(window, nullptr, TRUE);
  return passOn(window, message, wParam, lParam);
}

/// A text does not show by itself that it has the focus.
LRESULT painted(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = passOn(window, message, wParam, lParam);
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

LRESULT DateEditorLayer::answer(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return answerFromTable(kMessages, window(), message, wParam, lParam, ::passOn);
}

}  // namespace

void attachDateEditor(DateFieldEditor& editor) {
  if (!DateEditorRegistry::hasRoomFor(GetDlgCtrlID(editor.window()) - kFirstDateEditorId)) return;
  if (theDateEditors.add(editor.window(), editor)) {
    DateEditorLayer::attach(editor.window());
  }
}

void detachDateEditor(const DateFieldEditor& editor) {
  theDateEditors.remove(editor);
}
