#pragma once

#include <windows.h>

#include "base/string.h"
#include "owners/handles.h"
#include "views/form/form_layout.h"

/// What a control of the form is made with.
struct ControlCreation {
  DWORD style = 0;
  ControlPlace place;
  HWND parent = nullptr;
  int identifier = 0;
};

/// Owns a control of a page. The window goes with its owner, unless its parent has taken it along
/// before. One that could not be created is a null window, to which every call is harmless.
class ChildControl {
 public:
  ChildControl() noexcept = default;
  ~ChildControl() { destroy(); }
  ChildControl(const ChildControl&) = delete;
  ChildControl& operator=(const ChildControl&) = delete;

  /// Creates the control hidden, whatever the style says.
  bool create(const wchar_t* className, const wchar_t* text, const ControlCreation& creation);
  void destroy() noexcept;
  HWND window() const noexcept { return window_.get(); }

  /// `flags` are those of SetWindowPos. False when the system refuses.
  bool position(const ControlPlace& place, UINT flags) const;
  void show(bool visible) const;

 private:
  UniqueWindow window_;
};

/// The whole text of a window of this process.
String windowText(HWND window);
