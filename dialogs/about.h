#pragma once

#include "base/handles.h"
#include "dialogs/table_dialog.h"

/// "About Quivane for Pocket PC": the program's icon, name and version, full screen. The icon is the
/// program's resource.
class AboutDialog final : private TableDialog<AboutDialog> {
 public:
  /// IDOK or IDCANCEL, -1 when it can't be made.
  INT_PTR run(HWND owner);

 private:
  friend TableDialog<AboutDialog>;
  static std::span<const CommandRow> commandRows();
  static std::span<const MessageRow> messageRows();

  void opened();
  void confirm() { leave(IDOK); }
  void cancel() { leave(IDCANCEL); }
  void leave(INT_PTR result);
  void showIcon();

  UniqueIcon icon_;
  bool panelWasUp_ = false;
};
