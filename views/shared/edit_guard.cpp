#include "views/shared/edit_guard.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "base/showable_text.h"
#include "owners/handles.h"
#include "views/shared/clipboard_text.h"
#include "views/shared/escaped_exception.h"
#include "views/shared/message_table.h"
#include "views/shared/shown_text.h"
#include "views/shared/unowned_box.h"
#include "views/shared/word_breaks.h"

namespace {

constexpr wchar_t kBackspace = L'\b';

/// Of the class, in whose place guardedEdit stands.
WNDPROC ownProcedure = nullptr;

LRESULT callOwn(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcW(ownProcedure, edit, message, wParam, lParam);
}

LPARAM textArgument(const std::wstring& text) {
  return reinterpret_cast<LPARAM>(text.c_str());
}

/// What an edit control holds, and what of it is selected.
struct Content {
  explicit Content(HWND edit) {
    text.resize(static_cast<std::size_t>(callOwn(edit, WM_GETTEXTLENGTH, 0, 0)) + 1);
    text.resize(static_cast<std::size_t>(
        callOwn(edit, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    DWORD first = 0;
    DWORD last = 0;
    callOwn(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&last));
    start = std::min<std::size_t>(first, text.size());
    end = std::min<std::size_t>(last, text.size());
  }

  std::wstring with(std::wstring_view inserted) const {
    return text.substr(0, start).append(inserted).append(text, end);
  }

  std::wstring text;
  std::size_t start = 0;
  std::size_t end = 0;
};

bool isReadOnly(HWND edit) {
  return (GetWindowLongW(edit, GWL_STYLE) & ES_READONLY) != 0;
}

/// What is to be inserted in place of `inserted`, so that the whole can be shown.
std::wstring insertable(const Content& content, const std::wstring& inserted) {
  const std::wstring whole = content.with(inserted);
  if (isShowable(whole)) return inserted;
  std::wstring shown = showableText(whole).substr(content.start, inserted.size());
  // A mark behind the place may need what stood there before it: the text would be altered around it.
  return isShowable(content.with(shown)) ? shown : std::wstring();
}

/// Before the selection is deleted: takes into it the marks behind it that would lose their letter. False
/// when the rest could not be shown even so.
bool selectWithMarks(HWND edit, Content content) {
  if (!isShowable(content.with({}))) content.end = endOfMarks(content.text, content.end);
  if (!isShowable(content.with({}))) return false;
  callOwn(edit, EM_SETSEL, content.start, static_cast<LPARAM>(content.end));
  return true;
}

bool isBroken(HWND edit) {
  const LONG style = GetWindowLongW(edit, GWL_STYLE);
  return (style & ES_MULTILINE) != 0 && (style & ES_AUTOHSCROLL) == 0;
}

/// To be called before `text` gets into the control: it is laid out anew at once.
void breakLinesFor(HWND edit, std::wstring_view text) {
  if (!isBroken(edit) || !needsWordBreaks(text)) return;
  callOwn(edit, EM_SETWORDBREAKPROC, 0, reinterpret_cast<LPARAM>(&breakWords));
}

LRESULT textSet(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const text = reinterpret_cast<const wchar_t*>(lParam);
  if (!text) return callOwn(edit, message, wParam, lParam);
  breakLinesFor(edit, text);
  const LRESULT result = isShowable(text) ? callOwn(edit, message, wParam, lParam)
                                          : callOwn(edit, message, wParam, textArgument(showableText(text)));
  // The system's own way knows more places in texts of plain letters.
  if (result && isBroken(edit) && !needsWordBreaks(text)) callOwn(edit, EM_SETWORDBREAKPROC, 0, 0);
  return result;
}

LRESULT created(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  CREATESTRUCTW creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
  if (!creation.lpszName) return callOwn(edit, message, wParam, lParam);
  const std::wstring name = showableText(creation.lpszName);
  const bool isSetLater = isBroken(edit) && needsWordBreaks(name);
  creation.lpszName = isSetLater ? L"" : name.c_str();
  const LRESULT result = callOwn(edit, message, wParam, reinterpret_cast<LPARAM>(&creation));
  if (isSetLater && result >= 0) textSet(edit, WM_SETTEXT, 0, textArgument(name));
  return result;
}

LRESULT replaced(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const text = reinterpret_cast<const wchar_t*>(lParam);
  if (!text) return callOwn(edit, message, wParam, lParam);
  breakLinesFor(edit, text);
  const Content content(edit);
  if (*text == L'\0' && !selectWithMarks(edit, content)) return 0;
  return callOwn(edit, message, wParam, textArgument(insertable(content, text)));
}

LRESULT pasted(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  if (isReadOnly(edit)) return callOwn(edit, message, wParam, lParam);
  const std::wstring text = clipboardText(edit);
  const Content content(edit);
  if (content.text.size() - (content.end - content.start) + text.size() > kMostShownCount) {
    const std::wstring reason =
        L"The text is too long. At most " + std::to_wstring(kMostShownCount) + L" characters can be edited.";
    showBox(GetAncestor(edit, GA_ROOT), reason.c_str(), L"Quivane", MB_ICONEXCLAMATION);
    return 0;
  }
  const std::wstring shown = insertable(content, text);
  breakLinesFor(edit, shown);
  if (shown == text) return callOwn(edit, message, wParam, lParam);
  return callOwn(edit, EM_REPLACESEL, TRUE, textArgument(shown));
}

LRESULT selectionDeleted(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  const Content content(edit);
  const bool deletes = content.start != content.end && !isReadOnly(edit);
  if (deletes && !selectWithMarks(edit, content)) return 0;
  return callOwn(edit, message, wParam, lParam);
}

LRESULT typed(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  if (isReadOnly(edit)) return callOwn(edit, message, wParam, lParam);
  const auto character = static_cast<wchar_t>(wParam);
  const bool isCommand = character < L' ' && character != kBackspace;
  if (isCommand) return callOwn(edit, message, wParam, lParam);
  breakLinesFor(edit, {&character, 1});
  Content content(edit);
  if (character != kBackspace) {
    if (isShowable(content.with({&character, 1}))) return callOwn(edit, message, wParam, lParam);
    MessageBeep(MB_OK);
    return 0;
  }
  if (content.start != content.end) return selectionDeleted(edit, message, wParam, lParam);
  if (content.start == 0) return callOwn(edit, message, wParam, lParam);
  --content.start;
  if (isShowable(content.with({}))) return callOwn(edit, message, wParam, lParam);
  // The letter goes with the marks that are behind the caret.
  if (selectWithMarks(edit, content)) callOwn(edit, EM_REPLACESEL, TRUE, textArgument({}));
  return 0;
}

LRESULT keyPressed(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  const bool isPlainDelete =
      wParam == VK_DELETE && GetKeyState(VK_SHIFT) >= 0 && GetKeyState(VK_CONTROL) >= 0 && !isReadOnly(edit);
  if (!isPlainDelete) return callOwn(edit, message, wParam, lParam);
  Content content(edit);
  if (content.start != content.end) return selectionDeleted(edit, message, wParam, lParam);
  if (content.end == content.text.size()) return callOwn(edit, message, wParam, lParam);
  ++content.end;
  if (isShowable(content.with({}))) return callOwn(edit, message, wParam, lParam);
  if (selectWithMarks(edit, content)) callOwn(edit, EM_REPLACESEL, TRUE, textArgument({}));
  return 0;
}

/// The control keeps the layout that it makes while it paints. What was made for a context that is none,
/// which any program can send, would end this one as soon as the text is measured.
LRESULT painted(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  if (wParam == 0 || GetObjectType(reinterpret_cast<HGDIOBJ>(wParam)) != 0)
    return callOwn(edit, message, wParam, lParam);
  return message == WM_PAINT ? callOwn(edit, message, 0, lParam) : 0;
}

constexpr std::array kMessages = {
    MessageRow{WM_CREATE, created},       MessageRow{WM_SETTEXT, textSet},
    MessageRow{EM_REPLACESEL, replaced},  MessageRow{WM_PASTE, pasted},
    MessageRow{WM_CUT, selectionDeleted}, MessageRow{WM_CLEAR, selectionDeleted},
    MessageRow{WM_CHAR, typed},           MessageRow{WM_KEYDOWN, keyPressed},
    MessageRow{WM_PAINT, painted},        MessageRow{WM_PRINTCLIENT, painted},
};

LRESULT CALLBACK guardedEdit(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const row = std::find_if(kMessages.begin(), kMessages.end(),
                                       [&](const MessageRow& each) { return each.message == message; });
  if (row == kMessages.end()) return callOwn(edit, message, wParam, lParam);
  try {
    return row->handler(edit, message, wParam, lParam);
  } catch (...) {
    // A text that there was no memory to look at does not reach the control.
    tellEscapedException(edit);
    return message == WM_CREATE ? -1 : 0;
  }
}

}  // namespace

void guardEditControls() {
  if (ownProcedure) return;
  const UniqueWindow any(CreateWindowExW(0, L"EDIT", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                         GetModuleHandleW(nullptr), nullptr));
  if (!any) return;
  ownProcedure = reinterpret_cast<WNDPROC>(GetClassLongPtrW(any.get(), GCLP_WNDPROC));
  SetClassLongPtrW(any.get(), GCLP_WNDPROC, reinterpret_cast<LONG_PTR>(guardedEdit));
}
