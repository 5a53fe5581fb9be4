#include "dialogs/exchange/import_result.h"

#include <utility>

#include "base/showable_text.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/exchange/import_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_IMPORT_RESULT_TEXT, .wider = true},
    {.id = IDC_IMPORT_REJECTS, .wider = true, .higher = true},
    {.id = IDC_IMPORT_SAVE, .down = true},
};

}  // namespace

ImportResultDialog::ImportResultDialog(std::wstring text, std::vector<RejectedRecord> records,
                                       std::int64_t all, ImportResultHost host)
    : text_(std::move(text)),
      records_(std::move(records)),
      all_(all),
      host_(std::move(host)),
      growth_(kGrowth) {}

void ImportResultDialog::run(HWND owner) {
  runTemplate(IDD_IMPORT_RESULT, owner);
}

void ImportResultDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  SetDlgItemTextW(window(), IDC_IMPORT_RESULT_TEXT, showableText(text_).c_str());
  const HWND list = control(IDC_IMPORT_REJECTS);
  makeRoomForReasons();
  for (const RejectedRecord& record : records_) {
    const std::wstring line = L"line " + std::to_wstring(record.line) + L": " + record.reason.text();
    listbox::append(list, showableText(line).c_str());
  }
  const std::int64_t more = all_ - static_cast<std::int64_t>(records_.size());
  if (more > 0) listbox::append(list, (L"... and " + std::to_wstring(more) + L" more").c_str());
  listbox::select(list, 0);
  SetFocus(list);
}

/// To scroll to the end of a long one.
void ImportResultDialog::makeRoomForReasons() const {
  constexpr int kWidth = 800;
  const auto width = static_cast<WPARAM>(HandheldToMonitor(kWidth));
  SendMessageW(control(IDC_IMPORT_REJECTS), LB_SETHORIZONTALEXTENT, width, 0);
}

bool ImportResultDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<ImportResultDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &ImportResultDialog::finish},
      {IDCANCEL, BN_CLICKED, &ImportResultDialog::finish},
      {IDC_IMPORT_SAVE, BN_CLICKED, &ImportResultDialog::saveList},
  };
  return answerCommand<ImportResultDialog>(*this, kCommands, id, notification);
}

void ImportResultDialog::saveList() {
  const std::optional<String> path = host_.chooseFile();
  if (!path) return;
  const Outcome saved = host_.saveList(*path);
  const std::wstring text = saved ? std::wstring(L"The list was saved in\n") + path->text()
                                  : std::wstring(L"The list could not be saved.\n") + saved.reason().text();
  tell(text.c_str());
}
