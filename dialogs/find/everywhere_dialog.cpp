#include "dialogs/find/everywhere_dialog.h"

#include <string>
#include <utility>

#include "dialogs/find/everywhere_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/raised.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/list_view.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_EVERYWHERE_TEXT, .wider = true},
    {.id = IDC_EVERYWHERE_SEARCH, .right = true},
    {.id = IDC_EVERYWHERE_STATE, .wider = true},
    {.id = IDC_EVERYWHERE_PLACES, .wider = true, .higher = true},
    {.id = IDOK, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

constexpr WPARAM kLongestText = 500;

// Of the columns, in handheld pixels; the last one takes what is left.
constexpr int kTableWidth = 60;
constexpr int kFieldWidth = 60;
constexpr int kLeastExcerptWidth = 105;

std::wstring countText(std::size_t count, bool isWhole) {
  std::wstring text = count == 1 ? L"1 place" : std::to_wstring(count) + L" places";
  if (!isWhole) text += count >= EverywhereDialog::kMostPlaces ? L", and there are more" : L", stopped";
  return text;
}

}  // namespace

EverywhereDialog::EverywhereDialog(Search search) : search_(std::move(search)), growth_(kGrowth) {}

int EverywhereDialog::run(HWND owner) {
  return runTemplate(IDD_FIND_EVERYWHERE, owner);
}

void EverywhereDialog::opened() {
  growth_.begin(window());
  fillScreen(window(), 0);
  panel_.raise(window());
  const HWND list = control(IDC_EVERYWHERE_PLACES);
  listview::setExtendedStyle(list, LVS_EX_FULLROWSELECT);
  listview::insertColumn(list, 0, L"Table", HandheldToMonitor(kTableWidth));
  listview::insertColumn(list, 1, L"Field", HandheldToMonitor(kFieldWidth));
  listview::insertColumn(list, 2, L"Text", HandheldToMonitor(kLeastExcerptWidth));
  sized();
  const HWND edit = control(IDC_EVERYWHERE_TEXT);
  SendMessageW(edit, EM_SETLIMITTEXT, kLongestText, 0);
  SetWindowTextW(edit, text.text());
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SetFocus(edit);
}

void EverywhereDialog::sized() {
  growth_.layOut();
  const int excerpt = kLeastExcerptWidth + static_cast<int>(screenExcess().cx);
  listview::setColumnWidth(control(IDC_EVERYWHERE_PLACES), 2, HandheldToMonitor(excerpt));
}

bool EverywhereDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<EverywhereDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &EverywhereDialog::confirm},
      {IDCANCEL, BN_CLICKED, &EverywhereDialog::cancel},
      {IDC_EVERYWHERE_SEARCH, BN_CLICKED, &EverywhereDialog::search},
  };
  return answerCommand<EverywhereDialog>(*this, kCommands, id, notification);
}

void EverywhereDialog::search() {
  if (isSearching_) return;
  std::wstring entered(kLongestText + 1, L'\0');
  entered.resize(
      GetDlgItemTextW(window(), IDC_EVERYWHERE_TEXT, entered.data(), static_cast<int>(entered.size())));
  if (entered.empty()) {
    tell(L"Please enter a text!");
    SetFocus(control(IDC_EVERYWHERE_TEXT));
    return;
  }
  const HWND list = control(IDC_EVERYWHERE_PLACES);
  listview::deleteAllItems(list);
  places_.clear();
  SetDlgItemTextW(window(), IDC_EVERYWHERE_STATE, L"");
  searched_ = entered.c_str();
  bool isWhole = false;
  {
    const Raised searching(isSearching_);
    isWhole = search_(searched_, [this](const FoundPlace& place) { return show(place); });
  }
  if (!window()) return;
  SetDlgItemTextW(window(), IDC_EVERYWHERE_STATE, countText(places_.size(), isWhole).c_str());
  // Enter goes to the place that is chosen now.
  if (places_.empty()) {
    SendMessageW(control(IDC_EVERYWHERE_TEXT), EM_SETSEL, 0, -1);
    SetFocus(control(IDC_EVERYWHERE_TEXT));
    return;
  }
  listview::setItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  SendMessageW(window(), DM_SETDEFID, IDOK, 0);
  SetFocus(list);
}

bool EverywhereDialog::show(const FoundPlace& place) {
  const HWND list = control(IDC_EVERYWHERE_PLACES);
  const int row = static_cast<int>(places_.size());
  places_.push_back(place);
  listview::insertItem(list, row, place.table.text(), 0);
  listview::setItemText(list, row, 1, place.field.text());
  listview::setItemText(list, row, 2, place.excerpt.c_str());
  return places_.size() < kMostPlaces;
}

void EverywhereDialog::confirm() {
  if (isSearching_) return;
  // A text that was entered since is what is meant by Enter there.
  if (GetFocus() == control(IDC_EVERYWHERE_TEXT)) {
    search();
    return;
  }
  const int row = listview::nextItem(control(IDC_EVERYWHERE_PLACES), listview::kFirstOfAll, LVNI_SELECTED);
  if (row < 0 || static_cast<std::size_t>(row) >= places_.size()) return;
  const FoundPlace& place = places_[static_cast<std::size_t>(row)];
  if (place.record == 0) {
    tell((std::wstring(L"Table '") + place.table.text() + L"' could not be searched.\n" + place.excerpt)
             .c_str());
    return;
  }
  chosen = place;
  text = searched_;
  panel_.release(window());
  close(IDOK);
}

void EverywhereDialog::cancel() {
  if (isSearching_) return;
  panel_.release(window());
  close(IDCANCEL);
}
