#pragma once

#include <windows.h>

#include <string>

/// What the classes that draw for controls ask these.
namespace pocketshell {

/// The control's font is selected into the context for a scope.
class ControlFont {
 public:
  ControlFont(HDC dc, HWND control) : dc_(dc) {
    const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    former_ = font ? SelectObject(dc, font) : nullptr;
  }
  ~ControlFont() {
    if (former_) SelectObject(dc_, former_);
  }
  ControlFont(const ControlFont&) = delete;
  ControlFont& operator=(const ControlFont&) = delete;

 private:
  HDC dc_;
  HGDIOBJ former_ = nullptr;
};

/// Colours and a transparent background for texts, for a scope.
class TextColor {
 public:
  TextColor(HDC dc, COLORREF color)
      : dc_(dc), color_(SetTextColor(dc, color)), mode_(SetBkMode(dc, TRANSPARENT)) {}
  ~TextColor() {
    SetTextColor(dc_, color_);
    SetBkMode(dc_, mode_);
  }
  TextColor(const TextColor&) = delete;
  TextColor& operator=(const TextColor&) = delete;

 private:
  HDC dc_;
  COLORREF color_;
  int mode_;
};

/// Fills without a brush that could be missing.
void fillArea(HDC dc, const RECT& area, COLORREF color);

std::wstring windowText(HWND window);

/// A label's or button's text without the marks of access keys.
std::wstring withoutAccessMarks(const std::wstring& text);

}  // namespace pocketshell
