#include "views/form/text_editor_subclass.h"

#include <commctrl.h>

#include <array>

#include "owners/window_layer.h"
#include "views/form/form_ids.h"
#include "views/shared/message_table.h"

TextEditorRegistry theTextEditors;

namespace {

class TextEditorLayer final : public WindowLayer<TextEditorLayer> {
 public:
  explicit TextEditorLayer(HWND editor) : WindowLayer(editor) {}
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
};

LRESULT passOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return TextEditorLayer::passOn(window, message, wParam, lParam);
}

/// The control that was tapped or focused last, and what happened since.
struct TextSubclassState {
  TextFieldEditor* current = nullptr;
  unsigned killFocusCount = 0;
  unsigned tapCount = 0;
  HWND lastWindow = nullptr;
};

TextSubclassState state;

LRESULT focusGained(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  state.killFocusCount = 0;
  state.current = theTextEditors.find(window);
  ShowCaret(window);
  state.lastWindow = window;
  return passOn(window, message, wParam, lParam);
}

LRESULT focusLost(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  ++state.killFocusCount;
  state.tapCount = 0;
  if (state.killFocusCount < 2 && state.current) state.current->recountText();
  return passOn(window, message, wParam, lParam);
}

/// The control changes what stands in it.
LRESULT changed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = passOn(window, message, wParam, lParam);
  if (TextFieldEditor* const editor = theTextEditors.find(window)) editor->cutShownText();
  return result;
}

LRESULT characterTyped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  TextFieldEditor* const editor = state.current;
  if (editor && !editor->takeCharacter(static_cast<wchar_t>(LOWORD(wParam)))) return 0;
  return changed(window, message, wParam, lParam);
}

/// What two taps do, and the list of what the field may refer to.
LRESULT keyPressed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const UINT asked = wParam == VK_F2 ? kZoomMessage : wParam == VK_F4 ? kLookUpMessage : 0;
  if (asked == 0) return passOn(window, message, wParam, lParam);
  PostMessageW(window, asked, 0, 0);
  return 0;
}

LRESULT lookUpAsked(HWND window, UINT, WPARAM, LPARAM) {
  state.current = theTextEditors.find(window);
  if (state.current) state.current->openLookUp();
  return 0;
}

LRESULT notified(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto& notification = *reinterpret_cast<NMHDR*>(lParam);
  TextFieldEditor* const editor = theTextEditors.find(window);
  if (!editor || notification.code != static_cast<UINT>(TTN_GETDISPINFOW)) {
    return passOn(window, message, wParam, lParam);
  }
  editor->showTip(reinterpret_cast<NMTTDISPINFOW&>(notification));
  return 0;
}

LRESULT tapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // The editor that loses the focus by this tap ends its own count, so it has to lose it before this
  // tap is counted.
  if (GetFocus() != window) SetFocus(window);
  constexpr unsigned kZoomTaps = 2;
  ++state.tapCount;
  ShowCaret(window);
  if (window == state.lastWindow && state.tapCount >= kZoomTaps) {
    PostMessageW(window, kZoomMessage, 0, 0);
    state.tapCount = 0;
  }
  state.lastWindow = window;
  return passOn(window, message, wParam, lParam);
}

LRESULT zoomAsked(HWND window, UINT, WPARAM, LPARAM) {
  state.current = theTextEditors.find(window);
  if (state.current) state.current->openZoom();
  return 0;
}

LRESULT readOnlyAsked(HWND, UINT, WPARAM wParam, LPARAM) {
  if (state.current) SendMessageW(state.current->window(), EM_SETREADONLY, wParam, 0);
  return 0;
}

/// The second of two quick taps arrives as a double click.
constexpr std::array kMessages = {
    MessageRow{WM_SETFOCUS, focusGained},
    MessageRow{WM_KILLFOCUS, focusLost},
    MessageRow{WM_CHAR, characterTyped},
    MessageRow{WM_PASTE, changed},
    MessageRow{WM_KEYDOWN, keyPressed},
    MessageRow{kLookUpMessage, lookUpAsked},
    MessageRow{WM_NOTIFY, notified},
    MessageRow{WM_LBUTTONDOWN, tapped},
    MessageRow{WM_LBUTTONDBLCLK, tapped},
    MessageRow{kZoomMessage, zoomAsked},
    MessageRow{kSetReadOnlyMessage, readOnlyAsked},
};

LRESULT TextEditorLayer::answer(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return answerFromTable(kMessages, window(), message, wParam, lParam, ::passOn);
}

}  // namespace

void attachTextEditor(TextFieldEditor& editor) {
  if (!TextEditorRegistry::hasRoomFor(GetDlgCtrlID(editor.window()) - kFirstTextEditorId)) return;
  if (theTextEditors.add(editor.window(), editor)) {
    TextEditorLayer::attach(editor.window());
  }
}

void detachTextEditor(const TextFieldEditor& editor) {
  theTextEditors.remove(editor);
  if (state.current == &editor) state.current = nullptr;
  if (state.lastWindow == editor.window()) state.lastWindow = nullptr;
}
