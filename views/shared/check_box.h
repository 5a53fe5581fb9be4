#pragma once

#include <windows.h>

/// The messages of a check box, typed.
namespace checkbox {

inline bool isChecked(HWND box) {
  return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

inline void check(HWND box, bool checked) {
  SendMessageW(box, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

}  // namespace checkbox
