#include "views/form/field_zoom.h"

#include "base/showable_text.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/form/popup_ids.h"
#include "views/shared/child_control.h"
#include "views/shared/paragraph_breaks.h"

const std::span<const ControlGrowth> FieldZoom::kGrowth = [] {
  static constexpr ControlGrowth kControls[] = {
      {.id = IDC_ZOOM_TEXT, .wider = true, .higher = true},
      {.id = IDOK, .right = true, .down = true},
      {.id = IDCANCEL, .right = true, .down = true},
  };
  return std::span<const ControlGrowth>(kControls);
}();

bool FieldZoom::run(HWND owner) {
  return runTemplate(IDD_FIELD_ZOOM, owner) == IDOK;
}

void FieldZoom::opened() {
  growWithScreen(window());
  growth_.begin(window());
  growth_.layOut();
  centreDialog(window(), kPopupRaise);
  const HWND edit = control(IDC_ZOOM_TEXT);
  SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
  ShownText shown = textForLines(text_.text());
  if (wholeLength_ > shown.wholeCount) {
    shown.wholeCount = wholeLength_;
    shown.isExact = false;
  }
  readOnly_ = readOnly_ || !shown.isExact;
  hasOwnBreaks_ = !shown.hasSoftBreaks && shown.text.find(kSoftBreak) != std::wstring::npos;
  SetWindowTextW(edit, shown.text.c_str());
  if (readOnly_) SendMessageW(edit, EM_SETREADONLY, TRUE, 0);
  if (!hasOwnBreaks_) breakLongParagraphs(edit);
  SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
  SetWindowTextW(window(), title(shown).c_str());
  HandheldNameControl(edit, 0, title(shown).c_str());
  // With all of it selected, as a dialog does by itself, the next key would replace the whole text.
  SetFocus(edit);
  SendMessageW(edit, EM_SETSEL, 0, 0);
}

bool FieldZoom::command(WORD id, WORD notification) {
  static constexpr DialogCommand<FieldZoom> kCommands[] = {
      {IDOK, BN_CLICKED, &FieldZoom::confirm},
      {IDCANCEL, BN_CLICKED, &FieldZoom::cancel},
  };
  return answerCommand<FieldZoom>(*this, kCommands, id, notification);
}

void FieldZoom::confirm() {
  if (!readOnly_) {
    text_ = windowText(control(IDC_ZOOM_TEXT));
    if (!hasOwnBreaks_) text_ = withoutSoftBreaks(text_.text()).c_str();
  }
  close(IDOK);
}

std::wstring FieldZoom::title(const ShownText& shown) const {
  std::wstring title = showableText(caption_.text());
  if (shown.isCut()) {
    title += L": the first " + std::to_wstring(shown.shownCount) + L" of " +
             std::to_wstring(shown.wholeCount) + L" characters";
  } else if (!shown.isExact) {
    title += L": some characters can't be shown";
  }
  return title;
}
