#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "base/string.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"
#include "views/shared/shown_text.h"

/// The dialog that shows the whole text of a field, with its line breaks. Of a text that is too long for
/// that, or has what no control can show, the title says so, and it can't be edited.
class FieldZoom final : private ModalDialog {
 public:
  /// `wholeLength` is how many characters the value has of which `text` is the beginning; 0 when it is all.
  FieldZoom(String caption, String text, bool readOnly, std::uint64_t wholeLength = 0)
      : caption_(std::move(caption)),
        text_(std::move(text)),
        wholeLength_(static_cast<std::size_t>(wholeLength)),
        readOnly_(readOnly),
        growth_(kGrowth) {}

  /// Runs the dialog over `owner`. True when the user confirmed it; text() is then what it held.
  bool run(HWND owner);

  const String& text() const { return text_; }

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  std::wstring title(const ShownText& shown) const;
  void cancel() { close(IDCANCEL); }

  static const std::span<const ControlGrowth> kGrowth;

  String caption_;
  String text_;
  std::size_t wholeLength_;
  bool readOnly_;
  DialogGrowth growth_;
  bool hasOwnBreaks_ = false;  // the text has itself what soft line ends are made of
};
