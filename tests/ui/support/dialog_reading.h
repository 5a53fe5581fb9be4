#pragma once

#include <windows.h>

#include <cwctype>
#include <set>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "tests/ui/support/window_reading.h"

/// Reads the dialogs and message boxes of this process.

inline std::wstring textOf(HWND dialog, int id) {
  return textOf(GetDlgItem(dialog, id));
}

/// The texts in the list of a combo box.
inline std::vector<std::wstring> entries(HWND dialog, int id) {
  const HWND combo = GetDlgItem(dialog, id);
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  std::vector<std::wstring> found;
  for (WPARAM i = 0; static_cast<LRESULT>(i) < count; ++i) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, i, 0)), L'\0');
    SendMessageW(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
    found.push_back(text);
  }
  return found;
}

/// The chosen one of them; empty when none is.
inline std::wstring selectedEntry(HWND dialog, int id) {
  const LRESULT index = SendDlgItemMessageW(dialog, id, CB_GETCURSEL, 0, 0);
  return index == CB_ERR ? L"" : entries(dialog, id)[static_cast<std::size_t>(index)];
}

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

/// A control as a dialog's resource gives it: identifier, class, text.
struct ControlFacts {
  int id = 0;
  std::wstring className;
  std::wstring text;
  bool operator==(const ControlFacts&) const = default;
};
inline void PrintTo(const ControlFacts& facts, std::ostream* out) {
  *out << "{" << facts.id << ", " << testing::PrintToString(facts.className) << ", "
       << testing::PrintToString(facts.text) << "}";
}

/// In the order of the Tab key; the labels stand before what they name.
inline std::vector<ControlFacts> controls(HWND dialog) {
  std::vector<ControlFacts> found;
  for (const HWND child : childrenOf(dialog)) {
    const std::wstring name = classOf(child);
    found.push_back({GetDlgCtrlID(child), name, name == L"ComboBox" ? L"" : textOf(child)});
  }
  return found;
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

/// Identifiers of the visible children that do not lie within the client area.
inline std::vector<int> controlsOutside(HWND dialog) {
  const SIZE size = clientSize(dialog);
  std::vector<int> outside;
  for (const HWND child : childrenOf(dialog)) {
    const ControlPlace place = placeOf(child);
    if (isShown(child) &&
        (place.x < 0 || place.y < 0 || place.x + place.width > size.cx || place.y + place.height > size.cy)) {
      outside.push_back(GetDlgCtrlID(child));
    }
  }
  return outside;
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
