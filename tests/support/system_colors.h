#pragma once

#include <windows.h>

#include <vector>

/// Colours of the system for the time of a test. All windows are told of them.
class SystemColors {
 public:
  struct Color {
    int number;  ///< COLOR_WINDOW and the like
    COLORREF color;
  };

  explicit SystemColors(const std::vector<Color>& colors) : former_(colors) {
    for (Color& each : former_) each.color = GetSysColor(each.number);
    set(colors);
  }
  /// Texts on grounds, of windows and of buttons.
  SystemColors(COLORREF text, COLORREF ground)
      : SystemColors({{COLOR_WINDOW, ground},
                      {COLOR_WINDOWTEXT, text},
                      {COLOR_BTNFACE, ground},
                      {COLOR_BTNTEXT, text}}) {}
  ~SystemColors() { set(former_); }
  SystemColors(const SystemColors&) = delete;
  SystemColors& operator=(const SystemColors&) = delete;

 private:
  static void set(const std::vector<Color>& colors) {
    std::vector<INT> numbers;
    std::vector<COLORREF> values;
    for (const Color& each : colors) {
      numbers.push_back(each.number);
      values.push_back(each.color);
    }
    SetSysColors(static_cast<int>(numbers.size()), numbers.data(), values.data());
  }

  std::vector<Color> former_;
};
