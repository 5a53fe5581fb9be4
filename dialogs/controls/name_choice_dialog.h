#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

#include "base/name_list.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// What the dialogs are in which the user chooses one of several names, over the whole screen: by OK, or by
/// two quick taps on the name.
class NameChoiceDialog : private ModalDialog {
 public:
  /// In: the place of the one that is chosen first. Out, when the result is IDOK: of the one that the user
  /// has chosen.
  std::uint32_t chosen = 0;  // NOLINT(misc-non-private-member-variables-in-classes)

  /// IDOK or IDCANCEL.
  int run(HWND owner);

 protected:
  struct Template {
    WORD dialog;
    WORD list;  ///< the list box in it
    std::span<const ControlGrowth> growth;
  };

  /// The names, of which there is one at least, and the rows of `growth` outlive the dialog.
  NameChoiceDialog(const Template& parts, const NameList& names);

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void sized() override { growth_.layOut(); }
  void confirm();
  void cancel() { close(IDCANCEL); }

  Template parts_;
  const NameList& names_;
  DialogGrowth growth_;
};
