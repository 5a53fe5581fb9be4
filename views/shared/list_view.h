#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "base/showable_text.h"

/// The messages of a list view, typed. Rows, items and columns are 0-based. A null window answers
/// nothing: every result is then 0.
namespace listview {

inline constexpr int kFirstOfAll = -1;  ///< where a search begins that includes item 0

inline void setColors(HWND list, COLORREF background, COLORREF text) {
  SendMessageW(list, LVM_SETBKCOLOR, 0, static_cast<LPARAM>(background));
  SendMessageW(list, LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(background));
  SendMessageW(list, LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(text));
}

/// The list that was set before, which now belongs to the caller; null when there was none.
inline HIMAGELIST setImageList(HWND list, int which, HIMAGELIST images) {
  return reinterpret_cast<HIMAGELIST>(
      SendMessageW(list, LVM_SETIMAGELIST, static_cast<WPARAM>(which), reinterpret_cast<LPARAM>(images)));
}

/// Keeps a list from reckoning its scroll bars and drawing itself anew after each change, for a scope. A list
/// that is hidden stays so.
class RedrawingOff {
 public:
  explicit RedrawingOff(HWND list)
      : list_(list), isHidden_((GetWindowLongPtrW(list, GWL_STYLE) & WS_VISIBLE) == 0) {
    SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  }
  ~RedrawingOff() {
    SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
    // Where the system itself answers that message it shows the window.
    if (isHidden_) ShowWindow(list_, SW_HIDE);
  }
  RedrawingOff(const RedrawingOff&) = delete;
  RedrawingOff& operator=(const RedrawingOff&) = delete;

 private:
  HWND list_;
  bool isHidden_;
};

/// Puts the icons in rows as the present width has room for.
inline void arrange(HWND list) {
  {
    // At its end the list reckons its scroll bars anew. It would keep those of the former rows, and what
    // stands below them could not be scrolled into view.
    const RedrawingOff off(list);
    SendMessageW(list, LVM_ARRANGE, LVA_DEFAULT, 0);
  }
  // The bar that the former rows may have needed stays otherwise. These rows are as wide as the list.
  const LONG_PTR type = GetWindowLongPtrW(list, GWL_STYLE) & LVS_TYPEMASK;
  if (type == LVS_ICON || type == LVS_SMALLICON) ShowScrollBar(list, SB_HORZ, FALSE);
}

/// From the left edge of an icon to that of the next, and from top to top.
inline void setIconSpacing(HWND list, int width, int height) {
  SendMessageW(list, LVM_SETICONSPACING, 0, MAKELPARAM(width, height));
}

inline void setExtendedStyle(HWND list, DWORD style) {
  SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, static_cast<LPARAM>(style));
}

inline int itemCount(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
}

inline int selectedCount(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0));
}

/// Of a list that holds no data itself.
inline void setItemCount(HWND list, int count) {
  SendMessageW(list, LVM_SETITEMCOUNT, static_cast<WPARAM>(count), 0);
}

/// The same, and the rows in view stay where they are as far as there are so many.
inline void setItemCountInPlace(HWND list, int count) {
  SendMessageW(list, LVM_SETITEMCOUNT, static_cast<WPARAM>(count), LVSICF_NOSCROLL);
}

/// The text is shown as showableText makes it.
inline void insertItem(HWND list, int index, const wchar_t* text, int image) {
  std::wstring shown = showableText(text);
  LVITEMW item{};
  item.mask = LVIF_TEXT | LVIF_IMAGE;
  item.iItem = index;
  item.pszText = shown.data();
  item.iImage = image;
  SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

inline void deleteItem(HWND list, int index) {
  SendMessageW(list, LVM_DELETEITEM, static_cast<WPARAM>(index), 0);
}

inline void deleteAllItems(HWND list) {
  SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
}

/// Copies at most capacity - 1 characters and a terminator; returns the number of characters.
inline int itemText(HWND list, int index, wchar_t* text, int capacity) {
  LVITEMW item{};
  item.pszText = text;
  item.cchTextMax = capacity;
  return static_cast<int>(
      SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)));
}

inline void setItemState(HWND list, int index, UINT state, UINT mask) {
  LVITEMW item{};
  item.state = state;
  item.stateMask = mask;
  SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

/// The first item behind `after` that has the properties `flags`, -1 when there is none.
inline int nextItem(HWND list, int after, UINT flags) {
  return static_cast<int>(
      SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(after), MAKELPARAM(flags, 0)));
}

/// Takes the selection of a list in which at most one row is selected away from any row but `next`, which is
/// to be selected, or -1. Some lists walk over every row to take the former selection away by themselves:
/// half a second for a million. They also walk over all rows to find that none is selected, and know the
/// number of those that are without that.
inline void takeSelectionAway(HWND list, int next) {
  if (selectedCount(list) == 0) return;
  const int former = nextItem(list, kFirstOfAll, LVNI_SELECTED);
  if (former >= 0 && former != next) setItemState(list, former, 0, LVIS_SELECTED);
}

/// Takes the focus away from the row that has it. No list walks over its rows for that.
inline void takeFocusAway(HWND list) {
  const int former = nextItem(list, kFirstOfAll, LVNI_FOCUSED);
  if (former >= 0) setItemState(list, former, 0, LVIS_FOCUSED);
}

/// The first item behind `after` whose text begins so, in any letter case, from the first one again behind
/// the last; -1 when there is none.
inline int findBeginning(HWND list, int after, const wchar_t* beginning) {
  LVFINDINFOW search{};
  search.flags = LVFI_STRING | LVFI_PARTIAL | LVFI_WRAP;
  search.psz = beginning;
  return static_cast<int>(
      SendMessageW(list, LVM_FINDITEMW, static_cast<WPARAM>(after), reinterpret_cast<LPARAM>(&search)));
}

/// The item at a place in the list's client area, in the monitor's pixels; -1 when there is none.
inline int itemAt(HWND list, POINT place) {
  LVHITTESTINFO test{};
  test.pt = place;
  return static_cast<int>(SendMessageW(list, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&test)));
}

/// Scrolls until the whole item is in view.
inline void ensureVisible(HWND list, int index) {
  SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
}

/// Left aligned. `width` in pixels. The title is shown as showableText makes it.
inline void insertColumn(HWND list, int column, const wchar_t* title, int width) {
  std::wstring shown = showableText(title);
  LVCOLUMNW description{};
  description.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
  description.fmt = LVCFMT_LEFT;
  description.cx = width;
  description.pszText = shown.data();
  description.iSubItem = column;
  SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&description));
}

inline void deleteColumn(HWND list, int column) {
  SendMessageW(list, LVM_DELETECOLUMN, static_cast<WPARAM>(column), 0);
}

inline void deleteAllColumns(HWND list) {
  while (SendMessageW(list, LVM_DELETECOLUMN, 0, 0)) {
  }
}

/// Of an item that is there. The text is shown as showableText makes it.
inline void setItemText(HWND list, int index, int column, const wchar_t* text) {
  std::wstring shown = showableText(text);
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = shown.data();
  SendMessageW(list, LVM_SETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

inline void setColumnWidth(HWND list, int column, int width) {
  SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(width, 0));
}

inline int columnWidth(HWND list, int column) {
  return static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

/// Of what the list would draw of a text, as showableText makes it; of a long one of the beginning.
inline int stringWidth(HWND list, const wchar_t* text) {
  constexpr std::size_t kMostDrawnCount = 259;
  const std::wstring shown = showableText(std::wstring(text).substr(0, kMostDrawnCount).c_str());
  return static_cast<int>(
      SendMessageW(list, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(shown.c_str())));
}

inline int topRow(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETTOPINDEX, 0, 0));
}

/// Makes a row the first in view, as far as there are rows below it.
inline void scrollToRow(HWND list, int row) {
  RECT item{};
  item.left = LVIR_BOUNDS;
  SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&item));
  SendMessageW(list, LVM_SCROLL, 0, static_cast<LPARAM>(row - topRow(list)) * (item.bottom - item.top));
}

/// As many as are shown whole.
inline int rowsInView(HWND list) {
  return static_cast<int>(SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0));
}

/// As wide as the widest text in view.
inline void fitColumn(HWND list, int column) {
  SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(LVSCW_AUTOSIZE, 0));
}

/// Even if what it lies in is hidden.
inline bool isShown(HWND list) {
  return (static_cast<DWORD>(GetWindowLongW(list, GWL_STYLE)) & WS_VISIBLE) != 0;
}

inline HWND header(HWND list) {
  return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
}

/// Marks a column as one by which the rows are ordered.
inline void markOrder(HWND list, int column, bool isDescending) {
  HDITEMW item{};
  item.mask = HDI_FORMAT;
  SendMessageW(header(list), HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
  item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
  item.fmt |= isDescending ? HDF_SORTDOWN : HDF_SORTUP;
  SendMessageW(header(list), HDM_SETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
}

}  // namespace listview
