#pragma once

#include <windows.h>

#include <utility>

#include "base/string.h"

/// The dialog that shows the whole text of a field, with its line breaks.
class FieldZoom {
 public:
  FieldZoom(String caption, String text, bool readOnly)
      : caption_(std::move(caption)), text_(std::move(text)), readOnly_(readOnly) {}

  /// Runs the dialog over `owner`. True when the user confirmed it; text() is then what it held.
  bool run(HWND owner);

  const String& text() const { return text_; }

 private:
  static INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void opened(HWND dialog);
  void confirmed(HWND dialog);

  String caption_;
  String text_;
  bool readOnly_;
};
