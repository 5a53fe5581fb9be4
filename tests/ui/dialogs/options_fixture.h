#pragma once

#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <functional>

#include "base/settings/app_colors.h"
#include "base/settings/options.h"
#include "dialogs/options/show_options.h"
#include "tests/ui/support/dialog_fixture.h"
#include "views/dialog/current_dialog.h"

/// The options sheet over a main window of the test.
class OptionsDialogTest : public DialogTest {
 protected:
  static constexpr int kGeneralPage = 0;
  static constexpr int kSecurityPage = 1;
  static constexpr int kViewPage = 2;
  static constexpr int kColorPage = 3;

  /// Runs the sheet. `onSheet` is called when it opens, `onOther` for the dialogs that it opens.
  void show(const Step& onSheet, const Step& onOther = nullptr) {
    DialogScript script([&](HWND dialog) {
      if ((styleOf(dialog) & WS_CHILD) != 0) return;  // a page
      if (textOf(dialog) == L"Options") {
        ++sheetCount_;
        onSheet(dialog);
      } else if (onOther) {
        onOther(dialog);
      }
    });
    showOptions(frame(), options_, [this] {
      ++appliedCount_;
      EXPECT_EQ(raw(L"Options", L"GeneralAppColors").bytes.size(), 60u) << "applied before it was saved";
    });
  }

  static HWND pageOf(HWND sheet, int index) {
    SendMessageW(sheet, PSM_SETCURSEL, static_cast<WPARAM>(index), 0);
    return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
  }
  static HWND tabsOf(HWND sheet) {
    return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETTABCONTROL, 0, 0));
  }
  static void select(HWND page, int index) {
    SendDlgItemMessageW(page, 1062, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(1062, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, 1062)));
  }

  Options& options() { return options_; }
  int sheetCount() const { return sheetCount_; }
  int appliedCount() const { return appliedCount_; }

 private:
  Options options_;
  int sheetCount_ = 0;
  int appliedCount_ = 0;
};
