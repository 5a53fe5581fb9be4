#include "platform/pocketshell/text/control_text.h"

namespace pocketshell {

void fillArea(HDC dc, const RECT& area, COLORREF color) {
  const COLORREF former = SetBkColor(dc, color);
  ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
  SetBkColor(dc, former);
}

std::wstring windowText(HWND window) {
  const int length = GetWindowTextLengthW(window);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  const int copied = GetWindowTextW(window, text.data(), length + 1);
  text.resize(static_cast<std::size_t>(copied));
  return text;
}

std::wstring withoutAccessMarks(const std::wstring& text) {
  std::wstring plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'&' && ++i == text.size()) break;
    plain += text[i];
  }
  return plain;
}

}  // namespace pocketshell
