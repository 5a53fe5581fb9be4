#pragma once

#include "owners/handles.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// "About Quivane for Pocket PC": the program's icon, name and version, full screen. The icon is the
/// program's resource.
class AboutDialog final : private ModalDialog {
 public:
  /// IDOK or IDCANCEL.
  int run(HWND owner);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void zoomChanged() override { showIcon(); }
  void confirm() { leave(IDOK); }
  void cancel() { leave(IDCANCEL); }
  void leave(int result);
  void showIcon();

  UniqueIcon icon_;
  InputPanelHold panel_;
};
