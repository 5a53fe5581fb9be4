#pragma once

#include "owners/window_layer.h"
#include "platform/pocketshell/naming/named_accessible.h"

namespace pocketshell {

/// Tells assistive technology the names of a control and of what it has inside. Nothing is made before
/// somebody asks.
class ControlNames : public WindowLayer<ControlNames> {
 public:
  explicit ControlNames(HWND control) : WindowLayer(control) {}

  /// Takes the name away where it is empty.
  void setName(LONG child, std::wstring name);

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  bool handToSystem();
  void takeFromSystem();
  LRESULT describe(WPARAM wParam, LPARAM lParam);

  AccessibleNames names_;
  bool systemHasThem_ = false;
};

}  // namespace pocketshell
