#pragma once

#include <string>
#include <string_view>

/// For a menu, a label or a button that takes an ampersand for the mark of an access key: the text with each
/// of its ampersands standing for itself.
inline std::wstring withPlainAmpersands(std::wstring_view text) {
  std::wstring shown;
  for (const wchar_t unit : text) {
    shown += unit;
    if (unit == L'&') shown += unit;
  }
  return shown;
}
