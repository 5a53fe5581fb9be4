#pragma once

#include <windows.h>

#include <utility>

#include "base/string.h"
#include "views/modal_dialog.h"

/// The dialog that shows the whole text of a field, with its line breaks.
class FieldZoom final : private ModalDialog {
 public:
  FieldZoom(String caption, String text, bool readOnly)
      : caption_(std::move(caption)), text_(std::move(text)), readOnly_(readOnly) {}

  /// Runs the dialog over `owner`. True when the user confirmed it; text() is then what it held.
  bool run(HWND owner);

  const String& text() const { return text_; }

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void cancel() { close(IDCANCEL); }

  String caption_;
  String text_;
  bool readOnly_;
};
