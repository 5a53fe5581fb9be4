#pragma once

#include <windows.h>

#include <utility>

#include "base/string.h"
#include "views/dialog/modal_dialog.h"

/// The box in which the user chooses a date.
class CalendarPopup final : private ModalDialog {
 public:
  /// `caption` names the box, which has no title bar, to programs that read the screen aloud. Without a
  /// valid `initialDate` the calendar begins with today.
  CalendarPopup(String caption, const SYSTEMTIME& initialDate)
      : initialDate_(initialDate), caption_(std::move(caption)) {}

  enum class Choice { none, date, noDate };
  /// Runs the box over `owner`. Choice::none when the user cancelled it, or the calendar gave no date.
  Choice run(HWND owner);

  /// The date that was chosen, when run said so.
  const SYSTEMTIME& selectedDate() const { return selectedDate_; }

 private:
  void opened() override;
  void ended() override;
  bool command(WORD id, WORD notification) override;
  void confirm();
  void takeNoDate();
  void cancel() { close(IDCANCEL); }
  void createControls();

  bool selected_ = false;
  SYSTEMTIME selectedDate_{};
  SYSTEMTIME initialDate_{};
  String caption_;
  HWND calendar_ = nullptr;  // the dialog's for as long as that is open
};
