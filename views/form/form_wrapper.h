#pragma once

#include <windows.h>

/// Hears what the form's controls tell.
class FormControlListener {
 public:
  virtual ~FormControlListener() = default;
  /// `code` is that of WM_COMMAND.
  virtual void controlTold(HWND control, WORD code) = 0;
};

/// The window that carries the form: a child of the tab control, hidden but on the Form page. Class
/// "Form Wrapper Wnd".
class FormWrapper {
 public:
  /// Called once, before create.
  static bool registerClass(HINSTANCE instance);

  /// Creates the window, hidden, as large as given. One FormWrapper exists. Null when it fails.
  /// `tabProcedure` is the tab control's own procedure: every message goes there that the form does
  /// not answer itself.
  HWND create(HINSTANCE instance, HWND tabControl, SIZE size, WNDPROC tabProcedure);

  /// The one that hears it from now on; none when null. It outlives that.
  static void listen(FormControlListener* listener);

  /// Null before create and when it failed.
  HWND window() const { return window_; }

 private:
  HWND window_ = nullptr;
};
