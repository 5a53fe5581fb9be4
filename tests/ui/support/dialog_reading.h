#pragma once

#include <windows.h>

#include <algorithm>
#include <cwctype>
#include <set>
#include <string>
#include <vector>

#include "tests/ui/support/window_reading.h"

/// Reads the dialogs and message boxes of this process.

/// A control's text as the user sees it, without the mark of its access key.
inline std::wstring visibleText(HWND control) {
  std::wstring text = textOf(control);
  std::erase(text, L'&');
  return text;
}

inline std::vector<HWND> childrenOf(HWND dialog) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    children.push_back(child);
  }
  return children;
}

/// The texts of all children, in the order of their creation.
inline std::vector<std::wstring> visibleTexts(HWND dialog) {
  std::vector<std::wstring> texts;
  for (const HWND child : childrenOf(dialog)) texts.push_back(visibleText(child));
  return texts;
}

/// The access keys in the dialog's texts, each as often as it occurs.
inline std::multiset<wchar_t> accessKeys(HWND dialog) {
  std::multiset<wchar_t> keys;
  for (const HWND child : childrenOf(dialog)) {
    const std::wstring text = textOf(child);
    const std::size_t mark = text.find(L'&');
    if (mark != std::wstring::npos) keys.insert(static_cast<wchar_t>(std::towupper(text.at(mark + 1))));
  }
  return keys;
}

/// Identifiers of the controls that the Tab key reaches, in its order: from `first` round, or from the one
/// that the dialog begins with.
inline std::vector<int> tabOrder(HWND dialog, int first = 0) {
  const HWND start = first != 0 ? GetDlgItem(dialog, first) : GetNextDlgTabItem(dialog, nullptr, FALSE);
  std::vector<int> ids;
  HWND each = start;
  do {
    ids.push_back(GetDlgCtrlID(each));
    each = GetNextDlgTabItem(dialog, each, FALSE);
  } while (each != start && ids.size() < 100);
  return ids;
}

/// A box's icon; null when it shows none.
inline HICON iconOfBox(HWND box) {
  for (const HWND child : childrenOf(box)) {
    auto* const icon = reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0));
    if ((styleOf(child) & SS_TYPEMASK) == SS_ICON && icon) return icon;
  }
  return nullptr;
}

inline std::wstring textOfBox(HWND box) {
  constexpr int kMessageTextId = 0xFFFF;
  return textOf(GetDlgItem(box, kMessageTextId));
}

inline SIZE clientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

/// Whether each visible child lies within the client area.
inline bool everythingFits(HWND dialog) {
  const SIZE size = clientSize(dialog);
  return std::ranges::all_of(childrenOf(dialog), [&](HWND child) {
    const ControlPlace place = placeOf(child);
    return !isShown(child) || (place.x >= 0 && place.y >= 0 && place.x + place.width <= size.cx &&
                               place.y + place.height <= size.cy);
  });
}

/// Whether a text in the interface font has room in a control, on as many lines as it has.
inline bool textFits(HWND control, HFONT font) {
  std::wstring text = textOf(control);
  const HDC dc = GetDC(control);
  const HGDIOBJ former = SelectObject(dc, font);
  RECT needed{};
  DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &needed, DT_CALCRECT);
  SelectObject(dc, former);
  ReleaseDC(control, dc);
  const SIZE room = clientSize(control);
  return needed.right <= room.cx && needed.bottom <= room.cy;
}
