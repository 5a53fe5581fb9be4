#pragma once

#include <windows.h>

#include "records/pages.h"

/// The window that carries the form: a child of the tab control, hidden but on the Form page. Class
/// "Form Wrapper Wnd".
class FormWrapper final : public FormPage {
 public:
  /// Called once, before create.
  static bool registerClass(HINSTANCE instance);

  /// Creates the window, hidden, as large as given. One FormWrapper exists. Null when it fails.
  /// `tabProcedure` is the tab control's own procedure: every message goes there that the form does
  /// not answer itself.
  HWND create(HINSTANCE instance, HWND tabControl, SIZE size, WNDPROC tabProcedure);

  void show() override { ShowWindow(window_, SW_SHOW); }
  void hide() override { ShowWindow(window_, SW_HIDE); }

 private:
  HWND window_ = nullptr;
};
