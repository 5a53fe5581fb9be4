#include "views/record_list_view.h"

#include <algorithm>
#include <array>

#include "base/app_colors.h"
#include "records/document.h"
#include "views/list_view.h"
#include "views/message_table.h"
#include "views/page_area.h"

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

UniqueFont createFont(HWND window, int points) {
  const UniqueWindowDc dc(window);
  LOGFONTW description{};
  description.lfHeight = GetDeviceCaps(dc.dc(), LOGPIXELSY) * points / 72;
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
  return CreateWindowExW(WS_EX_CLIENTEDGE, kClassName, L"", WS_CHILD, place.left, place.top,
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
  RECT client{};
  GetClientRect(tabControl, &client);
  constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL |
                           LVS_SHOWSELALWAYS | LVS_OWNERDATA | LVS_NOSORTHEADER;
  static_assert(kStyle == 0x5001900D);
  list_ = CreateWindowExW(WS_EX_TRANSPARENT, WC_LISTVIEWW, L"", kStyle, 0, pageOffset(), client.right,
                          client.bottom - kBandAndTabsHeight, tabControl,
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(kListId)), GetModuleHandleW(nullptr),
                          nullptr);
  if (!list_) return false;
  hide();
  listview::setExtendedStyle(list_, LVS_EX_FULLROWSELECT);
  return true;
}

void RecordListView::prepare(Document* document) {
  document_ = document;
  if (!document) return;
  smallFont_ = createFont(list_, 8);
  largeFont_ = createFont(list_, 10);
}

void RecordListView::show() {
  ShowWindow(list_, SW_SHOW);
}

void RecordListView::hide() {
  ShowWindow(list_, SW_HIDE);
}

void RecordListView::applyColors() {
  listview::setColors(list_, appColors[kListViewBackground], appColors[kListViewText]);
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
  listview::deleteAllItems(list_);
  deleteColumns();
  fieldCount_ = static_cast<int>(document_->fieldCount());
  columnCount_ = std::min(fieldCount_, kMaxColumnCount);
  insertColumns();
  cachedRow_ = kNoRow;
  applyColors();
  resetItems();
  selectCurrent();
}

void RecordListView::clear() {
  listview::deleteAllItems(list_);
  deleteColumns();
  columnCount_ = 0;
  fieldCount_ = 0;
  if (list_) DestroyWindow(listview::header(list_));
}

void RecordListView::insertColumns() {
  const UniqueWindowDc dc(list_);
  const HGDIOBJ former = SelectObject(dc.dc(), smallFont_.get());
  for (int column = 0; column < columnCount_; ++column) {
    const int field = column == 0 ? 0 : firstSlidingColumn_ + column - 1;
    if (field >= fieldCount_) break;
    listview::insertColumn(list_, column, document_->fieldName(static_cast<std::uint32_t>(field)).text(),
                           kColumnWidth);
  }
  SelectObject(dc.dc(), former);
}

void RecordListView::deleteColumns() {
  for (int column = columnCount_ - 1; column >= 0; --column) listview::deleteColumn(list_, column);
}

void RecordListView::rebuildColumns() {
  listview::deleteAllItems(list_);
  deleteColumns();
  insertColumns();
  cachedRow_ = kNoRow;
  listview::setItemCount(list_, rowCount());
  selectCurrent();
}

void RecordListView::resetItems() {
  listview::deleteAllItems(list_);
  document_->moveToCurrentRecord();
  listview::setItemCount(list_, rowCount());
}

void RecordListView::showPreviousColumn() {
  if (firstSlidingColumn_ < 2) return;
  --firstSlidingColumn_;
  rebuildColumns();
}

void RecordListView::showNextColumn() {
  if (firstSlidingColumn_ >= fieldCount_ - 2) return;
  ++firstSlidingColumn_;
  rebuildColumns();
}

void RecordListView::fitColumns() {
  for (int column = columnCount_ - 1; column >= 0; --column) listview::fitColumn(list_, column);
}

// ---- The chosen row

void RecordListView::selectCurrent() {
  const int row = static_cast<int>(currentRecord) - 1;
  // To the list -1 would mean every row.
  if (row < 0) return;
  listview::ensureVisible(list_, row);
  SetFocus(list_);
  listview::setItemState(list_, row, kChosenState, kWholeStateMask);
  // The arrow keys go on from the row that has the list's own focus, which the mask above takes away.
  listview::setItemState(list_, row, LVIS_FOCUSED, LVIS_FOCUSED);
}

std::uint32_t RecordListView::selectedRow() {
  const int row = listview::nextItem(list_, listview::kFirstOfAll, kChosenState);
  return row < 0 ? 0 : static_cast<std::uint32_t>(row);
}
