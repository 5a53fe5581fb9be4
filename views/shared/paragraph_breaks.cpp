#include "views/shared/paragraph_breaks.h"

#include <commctrl.h>

#include <string>

#include "views/shared/child_control.h"
#include "views/shared/clipboard_text.h"
#include "views/shared/escaped_exception.h"
#include "views/shared/shown_text.h"

namespace {

constexpr UINT_PTR kSubclassId = 1;

bool isReadOnly(HWND edit) {
  return (GetWindowLongW(edit, GWL_STYLE) & ES_READONLY) != 0;
}

/// How many characters stand between the hard or soft line ends around the caret.
std::size_t paragraphCount(const std::wstring& text, std::size_t caret) {
  constexpr std::wstring_view kLineBreak = L"\r\n";
  const std::size_t found = caret == 0 ? text.npos : text.rfind(kLineBreak, caret - 1);
  const std::size_t start = found == text.npos ? 0 : found + kLineBreak.size();
  const std::size_t end = text.find(kLineBreak, caret);
  return (end == text.npos ? text.size() : end) - start;
}

/// After the user has typed: ends the line softly where its paragraph has become long.
void breakAtCaret(HWND edit) {
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const std::wstring text = windowText(edit).text();
  if (start != end || paragraphCount(text, end) <= kLongParagraphCount) return;
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(std::wstring(kSoftBreak).c_str()));
}

/// True when the paste was done here: its text has long paragraphs.
bool pasteBroken(HWND edit) {
  if (isReadOnly(edit)) return false;
  const std::wstring text = clipboardText(edit);
  if (text.size() > kMostShownCount) return false;
  const std::wstring broken = withSoftBreaks(text);
  if (broken == text) return false;
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(broken.c_str()));
  return true;
}

LRESULT CALLBACK procedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  try {
    if (message == WM_PASTE && pasteBroken(edit)) return 0;
    const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
    if (message == WM_CHAR && wParam > L' ' && !isReadOnly(edit)) breakAtCaret(edit);
    if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, procedure, kSubclassId);
    return result;
  } catch (...) {
    tellEscapedException(edit);
    return 0;
  }
}

}  // namespace

void breakLongParagraphs(HWND edit) {
  SetWindowSubclass(edit, procedure, kSubclassId, 0);
}
