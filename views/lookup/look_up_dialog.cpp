#include "views/lookup/look_up_dialog.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "base/showable_text.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/count_text.h"
#include "views/dialog/dialog_place.h"
#include "views/lookup/look_up_ids.h"
#include "views/shared/child_control.h"
#include "views/shared/list_view.h"
#include "views/shared/shown_text.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_LOOK_UP_TEXT, .wider = true},
    {.id = IDC_LOOK_UP_RECORDS, .wider = true, .higher = true},
    {.id = IDC_LOOK_UP_NOTE, .wider = true, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

/// So long the keys of the user wait at most.
constexpr std::uint32_t kSliceMilliseconds = 20;
/// And so long the windows to be painted. Each time costs the timer's wait besides.
constexpr ULONGLONG kRoundMilliseconds = 100;
constexpr UINT_PTR kSearchTimer = 1;
/// Who wants more than these types more.
constexpr std::size_t kMostFound = 500;
constexpr int kKeyWidth = 60;

/// The editor of the field would store commas in the place of line breaks.
bool fitsLine(const String& key) {
  const ShownText shown = textForLine(key.text());
  return !shown.isExact || shown.text == key.text();
}

}  // namespace

LookUpDialog::LookUpDialog(std::wstring caption, std::unique_ptr<LookUpRecords> records)
    : caption_(std::move(caption)), records_(std::move(records)), growth_(kGrowth) {}

std::optional<String> LookUpDialog::run(HWND owner) {
  const bool isConfirmed = runTemplate(IDD_LOOK_UP, owner) == IDOK;
  return isConfirmed ? std::exchange(chosen_, std::nullopt) : std::nullopt;
}

void LookUpDialog::opened() {
  growth_.begin(window());
  SetWindowTextW(window(), showableText(caption_).c_str());
  const HWND list = control(IDC_LOOK_UP_RECORDS);
  listview::setExtendedStyle(list, LVS_EX_FULLROWSELECT);
  for (int column = 0; column < 2; ++column) {
    listview::insertColumn(list, column, column == 0 ? L"Key" : L"Name", HandheldToMonitor(kKeyWidth));
  }
  fillScreen(window());
  SetWindowSubclass(control(IDC_LOOK_UP_TEXT), editProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
  setColumnWidths();
  showCount();
  SetFocus(control(IDC_LOOK_UP_TEXT));
}

void LookUpDialog::ended() {
  KillTimer(window(), kSearchTimer);
  RemoveWindowSubclass(control(IDC_LOOK_UP_TEXT), editProcedure, 0);
}

void LookUpDialog::sized() {
  growth_.layOut();
  setColumnWidths();
}

/// Beside the list's own scroll bar, whether it is there already or not: the list narrows and widens.
void LookUpDialog::setColumnWidths() const {
  const HWND list = control(IDC_LOOK_UP_RECORDS);
  RECT room{};
  GetClientRect(list, &room);
  const bool hasScrollBar = (GetWindowLongW(list, GWL_STYLE) & WS_VSCROLL) != 0;
  const int width = static_cast<int>(room.right) - (hasScrollBar ? 0 : GetSystemMetrics(SM_CXVSCROLL));
  const int key = HandheldToMonitor(kKeyWidth);
  listview::setColumnWidth(list, 1, std::max(width - key, key));
}

bool LookUpDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<LookUpDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &LookUpDialog::confirm},
      {IDCANCEL, BN_CLICKED, &LookUpDialog::cancel},
      {IDC_LOOK_UP_TEXT, EN_CHANGE, &LookUpDialog::textChanged},
  };
  return answerCommand<LookUpDialog>(*this, kCommands, id, notification);
}

bool LookUpDialog::notified(NMHDR& notification) {
  if (notification.idFrom != IDC_LOOK_UP_RECORDS) return false;
  switch (notification.code) {
    case LVN_GETDISPINFOW:
      giveText(reinterpret_cast<NMLVDISPINFOW&>(notification).item);
      return true;
    case NM_DBLCLK:
      confirm();
      return true;
    default:
      return false;
  }
}

/// The arrows move in the list while the user types.
LRESULT CALLBACK LookUpDialog::editProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR, DWORD_PTR dialog) noexcept {
  const bool isMove = wParam == VK_UP || wParam == VK_DOWN || wParam == VK_PRIOR || wParam == VK_NEXT;
  if (message != WM_KEYDOWN || !isMove) return DefSubclassProc(window, message, wParam, lParam);
  reinterpret_cast<const LookUpDialog*>(dialog)->moveSelection(wParam);
  return 0;
}

void LookUpDialog::moveSelection(WPARAM key) const {
  const HWND list = control(IDC_LOOK_UP_RECORDS);
  if (shownCount() == 0) return;
  if (selectedItem() < 0) {
    listview::setItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  } else {
    SendMessageW(list, WM_KEYDOWN, key, 1);
  }
}

// ---- The list

/// -1 when none is.
int LookUpDialog::selectedItem() const {
  return listview::nextItem(control(IDC_LOOK_UP_RECORDS), -1, LVNI_SELECTED);
}

std::uint32_t LookUpDialog::shownCount() const {
  return isNarrowed_ ? static_cast<std::uint32_t>(found_.size()) : records_->count();
}

std::optional<std::uint32_t> LookUpDialog::rowOf(int item) const {
  if (item < 0 || static_cast<std::uint32_t>(item) >= shownCount()) return std::nullopt;
  const auto place = static_cast<std::uint32_t>(item);
  return isNarrowed_ ? found_[place] : place;
}

void LookUpDialog::giveText(LVITEMW& item) {
  const std::optional<std::uint32_t> row = rowOf(item.iItem);
  if (!row || (item.mask & LVIF_TEXT) == 0 || !item.pszText || item.cchTextMax < 1) return;
  if (lastRow_ != row) {
    LookUpRecord read;
    if (!records_->read(*row, read)) read = {L"<not readable>", L""};
    last_ = std::move(read);
    lastRow_ = row;
  }
  const std::wstring text = showableText((item.iSubItem == 0 ? last_.key : last_.name).text());
  const std::size_t count = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
  std::copy_n(text.begin(), count, item.pszText);
  item.pszText[count] = L'\0';
}

void LookUpDialog::showCount() {
  const HWND list = control(IDC_LOOK_UP_RECORDS);
  SendMessageW(list, LVM_SETITEMCOUNT, shownCount(), LVSICF_NOSCROLL);
  std::wstring note = countOfRecords(shownCount());
  if (!failure_) {
    note = showableText(failure_.reason().text());
  } else if (isSearching_) {
    note += L", searching...";
  } else if (isNarrowed_ && found_.size() == kMostFound) {
    note = L"The first " + note;
  }
  SetWindowTextW(control(IDC_LOOK_UP_NOTE), note.c_str());
}

// ---- Narrowing

void LookUpDialog::textChanged() {
  const String text = windowText(control(IDC_LOOK_UP_TEXT));
  found_.clear();
  isNarrowed_ = !text.isEmpty();
  isSearching_ = isNarrowed_;
  failure_ = {};
  lastRow_.reset();
  listview::takeSelectionAway(control(IDC_LOOK_UP_RECORDS), -1);
  listview::takeFocusAway(control(IDC_LOOK_UP_RECORDS));
  if (isNarrowed_) {
    records_->beginSearch(text);
    SetTimer(window(), kSearchTimer, 0, nullptr);
    goOn();
  } else {
    KillTimer(window(), kSearchTimer);
    showCount();
  }
}

void LookUpDialog::timerFired() {
  if (isSearching_) goOn();
}

void LookUpDialog::goOn() {
  const ULONGLONG end = GetTickCount64() + kRoundMilliseconds;
  do {
    failure_ = records_->searchOn(kSliceMilliseconds, kMostFound, found_, isSearching_);
  } while (isSearching_ && GetTickCount64() < end && HIWORD(GetQueueStatus(QS_INPUT)) == 0);
  lastRow_.reset();
  if (!isSearching_) KillTimer(window(), kSearchTimer);
  showCount();
}

/// Without a choice the only record, or the first of those that were found.
void LookUpDialog::confirm() {
  const int selected = selectedItem();
  const bool meansFirst = selected < 0 && (isNarrowed_ || shownCount() == 1);
  const std::optional<std::uint32_t> row = rowOf(meansFirst ? 0 : selected);
  if (!row) return;
  LookUpRecord record;
  if (const Outcome read = records_->read(*row, record); !read) {
    tell((std::wstring(L"The record could not be read.\n") + read.reason().text()).c_str());
    return;
  }
  String key;
  Outcome given = records_->readKey(*row, key);
  if (given && !fitsLine(key)) given = Outcome::failure(L"Its key has line breaks.");
  if (!given) {
    tell((std::wstring(L"The record can't be chosen.\n") + given.reason().text()).c_str());
    return;
  }
  chosen_ = std::move(key);
  close(IDOK);
}
