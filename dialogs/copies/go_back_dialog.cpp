#include "dialogs/copies/go_back_dialog.h"

#include <commctrl.h>

#include <utility>

#include "dialogs/controls/combo_box.h"
#include "dialogs/copies/go_back_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/copy_text.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/list_view.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_GO_BACK_FILE, .wider = true},
    {.id = IDC_GO_BACK_COPIES, .wider = true, .higher = true},
    {.id = IDOK, .down = true},
    {.id = IDC_GO_BACK_PUT, .down = true},
    {.id = IDC_GO_BACK_TABLE, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

// Of the columns, in handheld pixels; the last one takes what is left.
constexpr int kDateWidth = 140;
constexpr int kSizeWidth = 44;
constexpr int kRecordsWidth = 58;
constexpr int kLeastReasonWidth = 110;
constexpr int kFixedWidth = kDateWidth + kSizeWidth + kRecordsWidth;
constexpr int kListWidth = 230;
constexpr int kScrollBarWidth = 16;

}  // namespace

GoBackDialog::GoBackDialog(const std::vector<String>& databases, bool isLooking, Copies copies)
    : databases_(databases), isLooking_(isLooking), copies_(std::move(copies)), growth_(kGrowth) {}

int GoBackDialog::run(HWND owner) {
  return runTemplate(IDD_GO_BACK, owner);
}

void GoBackDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  const HWND list = control(IDC_GO_BACK_COPIES);
  listview::setExtendedStyle(list, LVS_EX_FULLROWSELECT);
  listview::insertColumn(list, 0, L"Date", HandheldToMonitor(kDateWidth));
  listview::insertColumn(list, 1, L"Size", HandheldToMonitor(kSizeWidth));
  listview::insertColumn(list, 2, L"Records", HandheldToMonitor(kRecordsWidth));
  listview::insertColumn(list, 3, L"Kept before", HandheldToMonitor(kLeastReasonWidth));
  sized();
  const HWND file = control(IDC_GO_BACK_FILE);
  for (const String& path : databases_) combobox::add(file, path);
  combobox::select(file, 0);
  fill();
  SetFocus(list);
}

void GoBackDialog::sized() {
  growth_.layOut();
  const int room = kListWidth + static_cast<int>(screenExcess().cx) - kFixedWidth - kScrollBarWidth;
  const int width = room > kLeastReasonWidth ? room : kLeastReasonWidth;
  listview::setColumnWidth(control(IDC_GO_BACK_COPIES), 3, HandheldToMonitor(width));
}

bool GoBackDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<GoBackDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &GoBackDialog::look},
      {IDCANCEL, BN_CLICKED, &GoBackDialog::cancel},
      {IDC_GO_BACK_PUT, BN_CLICKED, &GoBackDialog::putBack},
      {IDC_GO_BACK_TABLE, BN_CLICKED, &GoBackDialog::putTable},
      {IDC_GO_BACK_FILE, CBN_SELCHANGE, &GoBackDialog::fill},
  };
  return answerCommand<GoBackDialog>(*this, kCommands, id, notification);
}

bool GoBackDialog::notified(NMHDR& notification) {
  if (notification.idFrom != IDC_GO_BACK_COPIES || notification.code != NM_DBLCLK) return false;
  look();
  return true;
}

/// The copies of the chosen file, the newest one chosen.
void GoBackDialog::fill() {
  const HWND list = control(IDC_GO_BACK_COPIES);
  const int file = combobox::selection(control(IDC_GO_BACK_FILE));
  const bool hasFile = file >= 0 && static_cast<std::size_t>(file) < databases_.size();
  listed_ = hasFile ? copies_(databases_[static_cast<std::size_t>(file)]) : std::vector<DatabaseCopy>();
  hasPresent_ = isLooking_ && file == 0;
  listview::deleteAllItems(list);
  int row = 0;
  if (hasPresent_) listview::insertItem(list, row++, L"Now", 0);
  for (const DatabaseCopy& each : listed_) {
    listview::insertItem(list, row, copyTimeText(each.time).c_str(), 0);
    listview::setItemText(list, row, 1, copySizeText(each.bytes).c_str());
    listview::setItemText(list, row, 2, copyRecordsText(each.records).c_str());
    listview::setItemText(list, row, 3, copyReasonText(each.reason));
    ++row;
  }
  if (row > 0) listview::setItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

void GoBackDialog::choose(Choice wanted) {
  const int row = listview::nextItem(control(IDC_GO_BACK_COPIES), listview::kFirstOfAll, LVNI_SELECTED);
  const int file = combobox::selection(control(IDC_GO_BACK_FILE));
  const int first = hasPresent_ ? 1 : 0;
  if (row < 0 || file < 0 || row - first >= static_cast<int>(listed_.size())) {
    tell(L"Please choose a copy!");
    return;
  }
  isPresent = row < first;
  if (isPresent && wanted != Choice::look) {
    tell(L"Please choose a copy!");
    return;
  }
  choice = wanted;
  database = databases_[static_cast<std::size_t>(file)];
  if (!isPresent) copy = listed_[static_cast<std::size_t>(row - first)];
  close(IDOK);
}
