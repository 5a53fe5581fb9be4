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

/// Of a list in which several entries can be chosen.
inline void mark(HWND list, int index, bool marked) {
  SendMessageW(list, LB_SETSEL, marked ? TRUE : FALSE, index);
}

inline bool isMarked(HWND list, int index) {
  return SendMessageW(list, LB_GETSEL, static_cast<WPARAM>(index), 0) > 0;
}

}  // namespace listbox
