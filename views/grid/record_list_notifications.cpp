// What the grid answers and does when its list control reports something.
#include <algorithm>
#include <cwchar>
#include <string>

#include "base/showable_text.h"
#include "data/values/field_kinds.h"
#include "records/document.h"
#include "records/parts/look_ups.h"
#include "records/parts/others_changes.h"
#include "views/grid/record_list_view.h"
#include "views/shared/escaped_exception.h"
#include "views/shared/list_view.h"

namespace {

/// How long no row is read after one that could not be, in milliseconds.
constexpr ULONGLONG kPauseAfterFailure = 1000;

constexpr LRESULT kNoRow = -1;

/// Copies as much as fits with a terminator. `capacity` counts characters.
void copyCut(const wchar_t* text, wchar_t* buffer, int capacity) {
  if (!buffer || capacity < 1) return;
  const std::size_t length = std::min(std::wcslen(text), static_cast<std::size_t>(capacity) - 1);
  std::wmemcpy(buffer, text, length);
  buffer[length] = L'\0';
}

/// After the cut, so that a long text costs no more than a short one.
void showOnlyShowable(LVITEMW& item) {
  if (!item.pszText || item.cchTextMax < 1 || isShowable(item.pszText)) return;
  const std::wstring shown = showableText(item.pszText);
  std::wmemcpy(item.pszText, shown.c_str(), shown.size());
}

}  // namespace

LRESULT RecordListView::handleNotification(NMHDR& notification) noexcept {
  if (!document_ || !list_ || notification.hwndFrom != list_) return 0;
  try {
    switch (notification.code) {
      case LVN_GETDISPINFOW:
        giveText(reinterpret_cast<NMLVDISPINFOW&>(notification).item);
        break;
      case LVN_ODCACHEHINT:
        expectRows(reinterpret_cast<const NMLVCACHEHINT&>(notification));
        break;
      case LVN_ODFINDITEMW:
        return findTyped(reinterpret_cast<const NMLVFINDITEMW&>(notification));
      case LVN_KEYDOWN:
        keyPressed(reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey);
        break;
      case LVN_ITEMCHANGED:
        itemChanged(reinterpret_cast<const NMLISTVIEW&>(notification));
        break;
      default:
        break;
    }
  } catch (...) {
    // A cell stays empty this time. What is told in the middle of drawing has the grid drawn again.
    if (notification.code == static_cast<UINT>(LVN_GETDISPINFOW)) {
      noteNoMemory();
    } else {
      tellEscapedException(list_);
    }
  }
  return notification.code == static_cast<UINT>(LVN_ODFINDITEMW) ? kNoRow : 0;
}

/// The row whose first field begins with what was typed, -1 when there is none.
LRESULT RecordListView::findTyped(const NMLVFINDITEMW& search) {
  constexpr UINT kByText = LVFI_STRING | LVFI_PARTIAL;
  if ((search.lvfi.flags & kByText) == 0 || !search.lvfi.psz) return kNoRow;
  const auto first = static_cast<std::uint32_t>(std::max(search.iStart, 0));
  std::optional<std::uint32_t> row;
  const Outcome searched =
      document_->findRow(first, static_cast<std::uint32_t>(fieldOfColumn(0)), search.lvfi.psz, row);
  if (!searched && searched.cause() != Outcome::Cause::stopped) noteFailure(searched);
  return row ? static_cast<LRESULT>(*row) : kNoRow;
}

// ---- Texts

void RecordListView::giveText(LVITEMW& item) {
  if ((item.mask & LVIF_TEXT) == 0 || item.iItem < 0) return;
  if (item.iSubItem < 0 || item.iSubItem >= columnCount_) return;
  const auto row = static_cast<std::uint32_t>(item.iItem);
  const int field = fieldOfColumn(item.iSubItem);
  // The buffer is the list's own and can't be replaced by a longer one.
  copyCut(cellText(row, static_cast<std::uint32_t>(field)).text(), item.pszText, item.cchTextMax);
  showOnlyShowable(item);
}

/// What the record is called to which the cell refers.
std::wstring RecordListView::tipText(int row, int column) {
  const auto field = static_cast<std::uint32_t>(fieldOfColumn(column));
  if (!document_ || document_->isBusy() || !document_->lookUps().isLookUp(field)) return {};
  String key;
  if (!document_->readRow(static_cast<std::uint32_t>(row), field, key)) return {};
  return document_->lookUps().nameOf(field, key).text();
}

/// What the list is about to draw. Those of a server come together then.
void RecordListView::expectRows(const NMLVCACHEHINT& rows) {
  if (rows.iFrom < 0 || rows.iTo < rows.iFrom || document_->isBusy()) return;
  document_->expectRows(static_cast<std::uint32_t>(rows.iFrom),
                        static_cast<std::uint32_t>(rows.iTo - rows.iFrom) + 1);
}

String RecordListView::cellText(std::uint32_t row, std::uint32_t field) {
  if (GetTickCount64() < noReadingBefore_) return kNotReadable;
  if (document_->isBusy()) {
    // Drawn as it is, and once more when the database can be read again.
    if (!isDrawnWhileBusy_) isDrawnWhileBusy_ = PostMessageW(list_, kDrawnWhileBusy, 0, 0) != FALSE;
    return {};
  }
  // A list that redraws a part of a row asks for the later columns alone, so each moves the cursor.
  if (row != cachedRow_ && document_->moveToRow(row)) cachedRow_ = row;
  String text;
  if (const Outcome read = document_->readRow(row, field, text); !read) {
    noteFailure(read);
    return kNotReadable;
  }
  if (fieldKind(document_->fieldType(field)).editor != FieldEditorKind::checkBox) return text;
  return std::wcscmp(text.text(), L"-1") == 0 ? L"True" : L"False";
}

/// A message box can't be shown in the middle of drawing, and another program may be waiting for the text.
void RecordListView::noteFailure(const Outcome& reading) {
  // A single record that is gone says nothing of the others. Behind a lock each of them would wait as long.
  if (reading.cause() != Outcome::Cause::recordGone) {
    noReadingBefore_ = GetTickCount64() + kPauseAfterFailure;
  }
  if (!failure_ || !listview::isShown(list_)) return;
  failure_ = reading;
  PostMessageW(list_, kFailureNoted, 0, 0);
}

void RecordListView::noteNoMemory() noexcept {
  try {
    noteFailure(Outcome::failure(L"There is not enough memory."));
  } catch (...) {
    // Not even for that. The next cell that is drawn tries again.
    return;
  }
}

LRESULT RecordListView::failureNoted(HWND, UINT, WPARAM, LPARAM) {
  tellFailure();
  return 0;
}

LRESULT RecordListView::drawnWhileBusy(HWND window, UINT, WPARAM, LPARAM) {
  isDrawnWhileBusy_ = false;
  InvalidateRect(window, nullptr, TRUE);
  return 0;
}

void RecordListView::tellFailure() {
  if (!document_ || !listview::isShown(list_)) return;
  // What another program has deleted is shown as its other changes are, without a word.
  if (failure_.cause() == Outcome::Cause::recordGone) document_->othersChanges().show();
  if (!failure_) document_->rowsUnreadable(Outcome(failure_));
  // What stood in the way may be over by now.
  noReadingBefore_ = 0;
  cachedRow_ = kNoRow;
  InvalidateRect(list_, nullptr, TRUE);
}

// ---- Keys and the selection

void RecordListView::keyPressed(WORD key) {
  if (!listview::isShown(list_)) return;
  // The list moves its selection after this, and reports a row that is then current already.
  if (key == VK_UP && currentRecord > 1) {
    --currentRecord;
  } else if (key == VK_DOWN && currentRecord < static_cast<std::uint32_t>(listview::itemCount(list_))) {
    ++currentRecord;
  } else if (key != VK_UP && key != VK_DOWN) {
    return;
  }
  document_->rowChosen();
}

/// On another page the current record is that page's.
void RecordListView::itemChanged(const NMLISTVIEW& change) {
  if (!listview::isShown(list_)) return;
  // A row that loses the selection is reported too.
  if ((change.uNewState & LVIS_SELECTED) == 0 || change.iItem < 0) return;
  const std::uint32_t position = static_cast<std::uint32_t>(change.iItem) + 1;
  if (position == currentRecord) return;
  currentRecord = position;
  document_->rowChosen();
}
