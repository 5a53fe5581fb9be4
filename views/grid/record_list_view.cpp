#include "views/grid/record_list_view.h"

#include <windowsx.h>

#include <algorithm>
#include <array>

#include "base/settings/app_colors.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/document.h"
#include "resources/command_ids.h"
#include "views/shared/list_view.h"
#include "views/shared/message_table.h"
#include "views/shared/page_area.h"
#include "views/shared/typed_letters.h"

namespace {

constexpr wchar_t kClassName[] = L"Record List View";
constexpr INT_PTR kControlId = 5;

/// The state that marks the chosen row, and the mask it is set with.
constexpr UINT kChosenState = 0x2002;
constexpr UINT kWholeStateMask = 0xFFFF;

/// A list view takes no more rows than this.
constexpr std::uint32_t kMaxRowCount = 100'000'000;

int rowCount() {
  return static_cast<int>(std::min(recordCount, kMaxRowCount));
}

/// Where an arrow or page key leads from a row; the row itself where it leads nowhere, -1 for other keys.
int rowBehindKey(HWND list, WPARAM key, int row) {
  const int last = listview::itemCount(list) - 1;
  switch (key) {
    case VK_UP:
    case VK_PRIOR:
    case VK_HOME:
      return row > 0 ? row - 1 : row;
    case VK_DOWN:
    case VK_NEXT:
    case VK_END:
      return row < last ? row + 1 : row;
    default:
      return -1;
  }
}

/// As many as fit beside a scroll bar; never fewer than the handheld's.
int roomForColumns() {
  const int width = static_cast<int>(HandheldGetPageArea().cx) - HandheldGetSystemMetrics(SM_CXVSCROLL);
  return std::max(RecordListView::kLeastColumnRoom, width / RecordListView::kColumnWidth);
}

/// Some lists go through their rows when these are deleted, though they hold nothing of them.
void deleteAllRows(HWND list) {
  listview::setItemCount(list, 0);
  listview::deleteAllItems(list);
}

UniqueFont createFont(HWND window, int points) {
  const UniqueWindowDc dc(window);
  LOGFONTW description{};
  description.lfHeight = HandheldToMonitor(GetDeviceCaps(dc.dc(), LOGPIXELSY) * points / 72);
  description.lfWeight = FW_NORMAL;
  description.lfCharSet = DEFAULT_CHARSET;
  description.lfPitchAndFamily = FF_SWISS;
  return UniqueFont(CreateFontIndirectW(&description));
}

}  // namespace

// ---- The windows

bool RecordListView::registerClass(HINSTANCE instance) {
  WNDCLASSW description{};
  description.style = CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = windowProcedure;
  description.hInstance = instance;
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = kClassName;
  return RegisterClassW(&description) != 0;
}

HWND RecordListView::create(HINSTANCE instance, HWND tabControl, const RECT& place) {
  return HandheldCreateWindow(WS_EX_CLIENTEDGE, kClassName, L"", WS_CHILD, place.left, place.top,
                              place.right - place.left, place.bottom - place.top, tabControl,
                              reinterpret_cast<HMENU>(kControlId), instance, this);
}

LRESULT RecordListView::windowCreated(HWND window, UINT, WPARAM, LPARAM lParam) {
  const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
  static_cast<RecordListView*>(creation.lpCreateParams)->createList(GetParent(window));
  return 0;
}

LRESULT CALLBACK RecordListView::windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  static constexpr std::array kMessages = {
      MessageRow{WM_CREATE, windowCreated},
  };
  return answerFromTable(kMessages, window, message, wParam, lParam, DefWindowProcW);
}

bool RecordListView::createList(HWND tabControl) {
  tabControl_ = tabControl;
  constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL |
                           LVS_SHOWSELALWAYS | LVS_OWNERDATA | LVS_NOSORTHEADER;
  static_assert(kStyle == 0x5001900D);
  const RECT place = listRectangle();
  // Made hidden, not hidden at once: what lies below it would be drawn for nothing.
  list_ = HandheldCreateWindow(WS_EX_TRANSPARENT, WC_LISTVIEWW, L"", kStyle & ~DWORD{WS_VISIBLE}, place.left,
                               place.top, place.right - place.left, place.bottom - place.top, tabControl,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(kListId)),
                               GetModuleHandleW(nullptr), nullptr);
  if (!list_) return false;
  widths_.keep();
  HandheldNameControl(list_, 0, L"Records");
  listview::setExtendedStyle(list_, LVS_EX_FULLROWSELECT);
  const bool hasHeader = headerSubclass_.attach(listview::header(list_));
  TypedLetters::watch(list_);
  if (!listSubclass_.attach(list_)) return false;
  tips_.attach(list_);
  return hasHeader;
}

RECT RecordListView::listRectangle() const {
  RECT client{};
  HandheldGetClientRect(tabControl_, &client);
  const int top = pageOffset();
  return {0, top, client.right, top + client.bottom - kBandAndTabsHeight};
}

void RecordListView::layOut() {
  const RECT place = listRectangle();
  HandheldMoveWindow(list_, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
  fitColumnCount();
}

/// How many columns there are and which field the second one shows. No room is left empty as long as there
/// are fields before those that are shown.
void RecordListView::reckonColumns() {
  columnRoom_ = roomForColumns();
  columnCount_ = std::min(fieldCount_, columnRoom_);
  firstSlidingColumn_ = std::clamp(firstSlidingColumn_, 1, std::max(1, fieldCount_ - (columnCount_ - 1)));
}

/// The rows, the chosen one and what is in view stay as they are. What is hidden is filled before it is
/// shown.
void RecordListView::fitColumnCount() {
  const int formerCount = columnCount_;
  const int formerFirst = firstSlidingColumn_;
  if (formerCount == 0 || !listview::isShown(list_)) return;
  reckonColumns();
  if (columnCount_ == formerCount) return;
  const int kept = formerFirst == firstSlidingColumn_ ? std::min(columnCount_, formerCount) : 1;
  for (int column = formerCount - 1; column >= kept; --column) listview::deleteColumn(list_, column);
  insertColumns(kept);
}

LRESULT RecordListView::doubleTapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  SendMessageW(GetAncestor(window, GA_ROOT), WM_COMMAND, ID_RECORD_EDIT, 0);
  return DefSubclassProc(window, message, wParam, lParam);
}

/// The selection is about to move, by one row at least.
LRESULT RecordListView::keyPressedInList(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const int row = listview::nextItem(window, listview::kFirstOfAll, LVNI_FOCUSED);
  const int next = row < 0 ? -1 : rowBehindKey(window, wParam, row);
  if (next >= 0) listview::takeSelectionAway(window, next == row ? row : -1);
  return DefSubclassProc(window, message, wParam, lParam);
}

LRESULT RecordListView::tapped(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const int row = listview::itemAt(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
  if (row >= 0) listview::takeSelectionAway(window, row);
  return DefSubclassProc(window, message, wParam, lParam);
}

LRESULT RecordListView::listMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  using Row = ObjectMessageRow<RecordListView>;
  static constexpr std::array kMessages = {
      Row{WM_LBUTTONDBLCLK, &RecordListView::doubleTapped},
      Row{WM_LBUTTONUP, &RecordListView::tapped},
      Row{WM_KEYDOWN, &RecordListView::keyPressedInList},
      Row{WM_NOTIFY, &RecordListView::headerReported},
      Row{kFailureNoted, &RecordListView::failureNoted},
      Row{kDrawnWhileBusy, &RecordListView::drawnWhileBusy},
  };
  return answerFromTable<RecordListView>(*this, kMessages, window, message, wParam, lParam, DefSubclassProc);
}

void RecordListView::prepare(Document* document) {
  document_ = document;
  if (document) createFonts();
}

void RecordListView::createFonts() {
  smallFont_ = createFont(list_, 8);
  largeFont_ = createFont(list_, 10);
}

void RecordListView::zoomChanged() {
  if (!document_) return;
  createFonts();
  // What is hidden gets its columns anew before it is shown, and leaves the keyboard where it is.
  if (columnCount_ > 0 && listview::isShown(list_)) rebuildColumns();
}

void RecordListView::show() {
  ShowWindow(list_, SW_SHOW);
}

void RecordListView::hide() {
  widths_.keep();
  ShowWindow(list_, SW_HIDE);
}

void RecordListView::applyColors() {
  listview::setColors(list_, appColors[kListViewBackground], appColors[kListViewText]);
}

void RecordListView::refreshColors() {
  applyColors();
  InvalidateRect(list_, nullptr, TRUE);
  UpdateWindow(list_);
}

// ---- Rows and columns

void RecordListView::fill() {
  if (!document_) return;
  // clear has destroyed the header, without which a list has no columns.
  if (list_ && !IsWindow(listview::header(list_))) {
    DestroyWindow(list_);
    createList(tabControl_);
    show();
  }
  deleteAllRows(list_);
  deleteColumns();
  fieldCount_ = static_cast<int>(document_->fieldCount());
  readWidths();
  reckonColumns();
  insertColumns(0);
  forgetReadings();
  applyColors();
  resetItems();
  selectCurrent();
}

void RecordListView::forgetReadings() {
  cachedRow_ = kNoRow;
  failure_ = {};
  noReadingBefore_ = 0;
}

void RecordListView::showAnew(std::uint32_t topRow) {
  if (!document_ || !list_) return;
  forgetReadings();
  document_->moveToCurrentRecord();
  const int row = static_cast<int>(currentRecord) - 1;
  {
    const listview::RedrawingOff off(list_);
    listview::takeSelectionAway(list_, row);
    listview::setItemCountInPlace(list_, rowCount());
    if (row >= 0) chooseRow(row);
  }
  // How far it can be is reckoned by then.
  listview::scrollToRow(list_, static_cast<int>(topRow));
  InvalidateRect(list_, nullptr, TRUE);
}

std::uint32_t RecordListView::topRow() {
  return listview::itemCount(list_) == 0 ? 0 : static_cast<std::uint32_t>(listview::topRow(list_));
}

void RecordListView::clear() {
  widths_.keep();
  deleteAllRows(list_);
  deleteColumns();
  columnCount_ = 0;
  fieldCount_ = 0;
  if (list_) DestroyWindow(listview::header(list_));
}

void RecordListView::insertColumns(int from) {
  const UniqueWindowDc dc(list_);
  const HGDIOBJ former = SelectObject(dc.dc(), smallFont_.get());
  for (int column = from; column < columnCount_; ++column) {
    const int field = fieldOfColumn(column);
    listview::insertColumn(list_, column, titleOf(field).c_str(), HandheldToMonitor(widthOf(field)));
    markColumn(column);
  }
  SelectObject(dc.dc(), former);
}

void RecordListView::readWidths() {
  widths_.keep();
  const bool isQuery = document_->openedFromQuery();
  const String& name = isQuery ? document_->queryName() : document_->tableName();
  widths_ = ColumnWidths(document_->databasePath().text(), isQuery, name.text());
}

/// In handheld pixels.
int RecordListView::widthOf(int field) const {
  return widths_.of(document_->fieldName(static_cast<std::uint32_t>(field)).text()).value_or(kColumnWidth);
}

void RecordListView::deleteColumns() {
  for (int column = columnCount_ - 1; column >= 0; --column) listview::deleteColumn(list_, column);
}

void RecordListView::rebuildColumns() {
  deleteAllRows(list_);
  deleteColumns();
  insertColumns(0);
  cachedRow_ = kNoRow;
  listview::setItemCount(list_, rowCount());
  selectCurrent();
}

void RecordListView::resetItems() {
  deleteAllRows(list_);
  document_->moveToCurrentRecord();
  listview::setItemCount(list_, rowCount());
}

void RecordListView::showPreviousColumn() {
  if (firstSlidingColumn_ < 2) return;
  --firstSlidingColumn_;
  rebuildColumns();
}

void RecordListView::showNextColumn() {
  if (firstSlidingColumn_ >= fieldCount_ - (columnRoom_ - 1)) return;
  ++firstSlidingColumn_;
  rebuildColumns();
}

void RecordListView::fitColumns() {
  for (int column = columnCount_ - 1; column >= 0; --column) listview::fitColumn(list_, column);
}

void RecordListView::recordDeleted() {
  listview::deleteItem(list_, static_cast<int>(currentRecord) - 1);
  cachedRow_ = kNoRow;
  resetItems();
  selectCurrent();
}

// ---- The chosen row

void RecordListView::selectCurrent() {
  const int row = static_cast<int>(currentRecord) - 1;
  // To the list -1 would mean every row.
  if (row < 0) return;
  listview::ensureVisible(list_, row);
  SetFocus(list_);
  listview::takeSelectionAway(list_, row);
  chooseRow(row);
}

void RecordListView::chooseRow(int row) {
  listview::setItemState(list_, row, kChosenState, kWholeStateMask);
  // The arrow keys go on from the row that has the list's own focus, which the mask above takes away.
  listview::setItemState(list_, row, LVIS_FOCUSED, LVIS_FOCUSED);
}

std::uint32_t RecordListView::selectedRow() {
  const int row = listview::nextItem(list_, listview::kFirstOfAll, kChosenState);
  return row < 0 ? 0 : static_cast<std::uint32_t>(row);
}
