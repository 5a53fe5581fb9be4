#pragma once

#include <windows.h>

/// The messages of a list box as functions.
namespace listbox {

inline void append(HWND list, const wchar_t* text) {
  SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
}

inline void clear(HWND list) {
  SendMessageW(list, LB_RESETCONTENT, 0, 0);
}

inline void select(HWND list, int index) {
  SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

/// -1 when nothing is selected.
inline int selectedIndex(HWND list) {
  return static_cast<int>(SendMessageW(list, LB_GETCURSEL, 0, 0));
}

}  // namespace listbox
