#pragma once

#include "views/shared/child_control.h"

/// The name of a field beside its editor.
class FieldLabel {
 public:
  /// Hidden at first.
  bool create(const wchar_t* text, const ControlCreation& creation) {
    return control_.create(L"STATIC", text, creation);
  }

  HWND window() const { return control_.window(); }
  void position(const ControlPlace& place, UINT flags) const { control_.position(place, flags); }
  void show(bool visible) const { control_.show(visible); }

 private:
  ChildControl control_;
};
