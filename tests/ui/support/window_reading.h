#pragma once

#include <windows.h>

#include <string>

#include "views/form/form_layout.h"

/// Reads windows of this process.

inline std::wstring textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

inline std::wstring classOf(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return name;
}

inline DWORD styleOf(HWND window) {
  return static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
}

/// Visible but for its parents.
inline bool isShown(HWND window) {
  return (styleOf(window) & WS_VISIBLE) != 0;
}

/// In its parent's client area.
inline ControlPlace placeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return {static_cast<int>(place.left), static_cast<int>(place.top),
          static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
}
