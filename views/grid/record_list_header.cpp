// The header of the grid: widths, the order and filter that it shows, and its menu.
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "platform/pocketshell/aygshell.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/document.h"
#include "records/parts/arranger.h"
#include "views/grid/record_list_view.h"
#include "views/shared/list_view.h"
#include "views/shared/message_table.h"

namespace {

/// As long as the shell's own.
constexpr UINT kHoldTime = 700;
constexpr UINT_PTR kHoldTimer = 1;

bool isFarFrom(POINT one, POINT other) {
  return std::abs(one.x - other.x) > GetSystemMetrics(SM_CXDRAG) ||
         std::abs(one.y - other.y) > GetSystemMetrics(SM_CYDRAG);
}

/// -1 beside the columns; `isOnEdge` for where a width is dragged.
int columnAt(HWND header, POINT place, bool& isOnEdge) {
  HDHITTESTINFO test{};
  test.pt = place;
  const auto column = static_cast<int>(SendMessageW(header, HDM_HITTEST, 0, reinterpret_cast<LPARAM>(&test)));
  isOnEdge = (test.flags & (HHT_ONDIVIDER | HHT_ONDIVOPEN)) != 0;
  return column;
}

}  // namespace

// ---- Widths

LRESULT RecordListView::headerReported(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto& report = *reinterpret_cast<const NMHEADERW*>(lParam);
  if (report.hdr.hwndFrom != listview::header(window) || !document_) {
    return DefSubclassProc(window, message, wParam, lParam);
  }
  const UINT code = report.hdr.code;
  // The list by itself may read every row that there is.
  if (code == static_cast<UINT>(HDN_DIVIDERDBLCLICKW) || code == static_cast<UINT>(HDN_DIVIDERDBLCLICKA)) {
    fitColumnToView(report.iItem);
    return 0;
  }
  const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
  const bool isChange =
      code == static_cast<UINT>(HDN_ITEMCHANGEDW) || code == static_cast<UINT>(HDN_ITEMCHANGEDA);
  if (isChange && report.pitem && (report.pitem->mask & HDI_WIDTH) != 0) noteWidth(report.iItem);
  return result;
}

/// As wide as its title and its texts in view need, but not wider than the list.
void RecordListView::fitColumnToView(int column) {
  if (column < 0 || column >= columnCount_) return;
  constexpr int kMargin = 14;
  const auto titleField = static_cast<std::uint32_t>(fieldOfColumn(column));
  int width = listview::stringWidth(list_, document_->fieldName(titleField).text());
  const int first = listview::topRow(list_);
  const int end = std::min(first + listview::rowsInView(list_) + 1, listview::itemCount(list_));
  for (int row = first; row < end; ++row) {
    const String text = cellText(static_cast<std::uint32_t>(row), titleField);
    width = std::max(width, listview::stringWidth(list_, text.text()));
  }
  RECT client{};
  GetClientRect(list_, &client);
  listview::setColumnWidth(list_, column,
                           std::min(width + HandheldToMonitor(kMargin), static_cast<int>(client.right)));
}

/// The user drags the edge, or has it fitted.
void RecordListView::noteWidth(int column) {
  if (column < 0 || column >= columnCount_) return;
  const int width = listview::columnWidth(list_, column);
  widths_.set(document_->fieldName(static_cast<std::uint32_t>(fieldOfColumn(column))).text(),
              HandheldFromMonitor(width));
}

// ---- Order and filter

/// A star says that not all records are shown, which the system has no mark for.
std::wstring RecordListView::titleOf(int field) const {
  std::wstring title = document_->fieldName(static_cast<std::uint32_t>(field)).text();
  if (document_->arranger().present().conditionOf(title)) title += L" *";
  return title;
}

void RecordListView::markColumn(int column) {
  const String& name = document_->fieldName(static_cast<std::uint32_t>(fieldOfColumn(column)));
  const Arrangement::Order* const order = document_->arranger().present().orderOf(name.text());
  if (!order) return;
  listview::markOrder(list_, column, order->isDescending);
}

POINT RecordListView::columnMenuPlace() const {
  RECT place{};
  GetWindowRect(listview::header(list_), &place);
  return {place.left, place.bottom};
}

// ---- The menu of a column

LRESULT RecordListView::headerMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  using Row = ObjectMessageRow<RecordListView>;
  static constexpr std::array kMessages = {
      Row{WM_LBUTTONDOWN, &RecordListView::headerPressed},
      Row{WM_MOUSEMOVE, &RecordListView::headerMoved},
      Row{WM_LBUTTONUP, &RecordListView::headerReleased},
      Row{WM_CAPTURECHANGED, &RecordListView::headerReleased},
      Row{WM_TIMER, &RecordListView::headerHeld},
      Row{WM_RBUTTONDOWN, &RecordListView::headerRightPressed},
      Row{WM_RBUTTONUP, &RecordListView::headerRightReleased},
  };
  return answerFromTable<RecordListView>(*this, kMessages, window, message, wParam, lParam, DefSubclassProc);
}

/// A column's title does nothing when it is tapped: nobody misses the press.
LRESULT RecordListView::headerPressed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  bool isOnEdge = false;
  headerPlace_ = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  if (columnAt(window, headerPlace_, isOnEdge) < 0 || isOnEdge) {
    return DefSubclassProc(window, message, wParam, lParam);
  }
  isHeaderPressed_ = true;
  SetCapture(window);
  SetTimer(window, kHoldTimer, kHoldTime, nullptr);
  return 0;
}

LRESULT RecordListView::headerMoved(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!isHeaderPressed_) return DefSubclassProc(window, message, wParam, lParam);
  if (isFarFrom(headerPlace_, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)})) endHeaderPress(window);
  return 0;
}

LRESULT RecordListView::headerReleased(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!isHeaderPressed_) return DefSubclassProc(window, message, wParam, lParam);
  endHeaderPress(window);
  return 0;
}

void RecordListView::endHeaderPress(HWND window) {
  isHeaderPressed_ = false;
  KillTimer(window, kHoldTimer);
  if (GetCapture() == window) ReleaseCapture();
}

LRESULT RecordListView::headerHeld(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (wParam != kHoldTimer) return DefSubclassProc(window, message, wParam, lParam);
  const bool isHeld = isHeaderPressed_;
  endHeaderPress(window);
  if (isHeld) askForColumnMenu(window, headerPlace_);
  return 0;
}

LRESULT RecordListView::headerRightPressed(HWND, UINT, WPARAM, LPARAM) {
  return 0;
}

LRESULT RecordListView::headerRightReleased(HWND window, UINT, WPARAM, LPARAM lParam) {
  askForColumnMenu(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
  return 0;
}

/// What is chosen may make the columns anew, and the header with them: nothing is done after that.
void RecordListView::askForColumnMenu(HWND header, POINT place) {
  bool isOnEdge = false;
  const int column = columnAt(header, place, isOnEdge);
  if (column < 0 || column >= columnCount_) return;
  NMRGINFO report{};
  report.hdr.hwndFrom = list_;
  report.hdr.idFrom = kListId;
  report.hdr.code = kColumnMenu;
  report.ptAction = place;
  ClientToScreen(header, &report.ptAction);
  report.dwItemSpec = static_cast<DWORD_PTR>(fieldOfColumn(column));
  SendMessageW(tabControl_, WM_NOTIFY, kListId, reinterpret_cast<LPARAM>(&report));
}
