#include "views/names/name_list_view.h"

#include <commctrl.h>

#include <algorithm>

#include "base/name_search.h"
#include "owners/control_handles.h"
#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/shared/list_view.h"
#include "views/shared/page_area.h"
#include "views/shared/sip_state.h"
#include "views/shared/typed_letters.h"

namespace {

RECT listRectangle(HWND mainWindow) {
  RECT client{};
  HandheldGetClientRect(mainWindow, &client);
  client.top = pageOffset();
  // The bands and the tabs stand above the menu bar and the input panel, where the list would cover them.
  client.bottom -= kMenuBarHeight + kBandAndTabsHeight + sipState.height;
  return client;
}

/// Gives the list an image list that holds one icon.
void setIcon(HWND list, int which, WORD icon, int size) {
  const int pixels = HandheldToMonitor(size);
  UniqueImageList images(ImageList_Create(pixels, pixels, ILC_COLOR32 | ILC_MASK, 1, 0));
  const UniqueIcon image(HandheldLoadIcon(GetModuleHandleW(nullptr), icon, size));
  if (images && image) ImageList_ReplaceIcon(images.get(), -1, image.get());
  // From here on the list view owns the images; the ones that it gives up are destroyed here.
  const UniqueImageList former(listview::setImageList(list, which, images.release()));
}

DWORD styleBits(NameStyle style) {
  switch (style) {
    case NameStyle::report:
      return LVS_REPORT;
    case NameStyle::smallIcons:
      return LVS_SMALLICON;
    case NameStyle::list:
      return LVS_LIST;
    case NameStyle::largeIcons:
      break;
  }
  return LVS_ICON;
}

}  // namespace

NameListView::NameListView(HWND mainWindow, AppColor background, AppColor text, Icons icons,
                           const wchar_t* spokenName, int selectedIndex)
    : mainWindow_(mainWindow),
      selectedIndex_(selectedIndex),
      background_(background),
      text_(text),
      icons_(icons) {
  const RECT place = listRectangle(mainWindow);
  window_ = HandheldCreateWindow(
      0, WC_LISTVIEWW, L"", WS_CHILD | LVS_ICON | LVS_SINGLESEL | LVS_SHOWSELALWAYS, place.left, place.top,
      place.right - place.left, place.bottom - place.top, mainWindow,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(kControlId)), GetModuleHandleW(nullptr), nullptr);
  HandheldNameControl(window_, 0, spokenName);
  // A new child lies behind its siblings, and the tab control covers the same area. Of what is hidden
  // nothing is to be drawn.
  constexpr UINT kOrderAlone = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_DEFERERASE | SWP_NOSENDCHANGING;
  if (!window_) return;
  SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0, kOrderAlone);
  TypedLetters::watch(window_);
}

NameListView::~NameListView() {
  if (window_ && IsWindow(window_)) DestroyWindow(window_);
}

void NameListView::show() {
  applyColors();
  ShowWindow(window_, SW_SHOW);
  // The page that was shown before has taken the focus with it; also a list without items has keys.
  SetFocus(window_);
}

void NameListView::hide() {
  ShowWindow(window_, SW_HIDE);
}

void NameListView::layOut() {
  const RECT place = listRectangle(mainWindow_);
  RECT former{};
  HandheldGetWindowRect(window_, &former);
  HandheldMoveWindow(window_, place.left, place.top, place.right - place.left, place.bottom - place.top,
                     TRUE);
  // The icons stay in the rows that they had otherwise.
  if (former.right - former.left != place.right - place.left) listview::arrange(window_);
}

void NameListView::refreshColors() {
  applyColors();
  InvalidateRect(window_, nullptr, TRUE);
  UpdateWindow(window_);
}

void NameListView::applyColors() {
  listview::setColors(window_, appColors[background_], appColors[text_]);
}

void NameListView::setStyle(NameStyle style) {
  const auto present = static_cast<DWORD>(GetWindowLongW(window_, GWL_STYLE));
  const DWORD wanted = styleBits(style);
  if ((present & LVS_TYPEMASK) == wanted) return;
  SetWindowLongW(window_, GWL_STYLE, static_cast<LONG>((present & ~DWORD{LVS_TYPEMASK}) | wanted));
  // The list keeps the rows and the scrolling that it had, and does not erase what it showed.
  listview::arrange(window_);
  if (count() != 0) listview::ensureVisible(window_, 0);
  if (selectedIndex_ >= 0) listview::ensureVisible(window_, selectedIndex_);
  InvalidateRect(window_, nullptr, TRUE);
}

void NameListView::addItem(int index, const String& name) {
  // Before the item, whose coming may be reported.
  names_.insert(names_.begin() + std::clamp(index, 0, static_cast<int>(names_.size())), name);
  listview::insertItem(window_, index, name.text(), 0);
}

void NameListView::deleteItem(int index) {
  if (index < 0 || index >= static_cast<int>(names_.size())) return;
  listview::deleteItem(window_, index);
  names_.erase(names_.begin() + index);
}

void NameListView::deleteAllItems() {
  listview::deleteAllItems(window_);
  names_.clear();
}

void NameListView::selectNone() {
  constexpr int kAll = -1;
  listview::setItemState(window_, kAll, 0, LVIS_SELECTED);
}

int NameListView::count() const {
  return listview::itemCount(window_);
}

void NameListView::selectItem(int index) {
  SetFocus(window_);
  if (index < 0) return;
  listview::setItemState(window_, index, LVIS_SELECTED, LVIS_SELECTED);
  listview::ensureVisible(window_, index);
}

String NameListView::itemText(int index) const {
  if (index < 0 || index >= count() || index >= static_cast<int>(names_.size())) return {};
  return names_[static_cast<std::size_t>(index)];
}

int NameListView::findItem(const String& name) const {
  const auto count = static_cast<std::uint32_t>(names_.size());
  const std::uint32_t found =
      findName(name, count, [this](std::uint32_t index) -> const String& { return names_[index]; });
  return found < count ? static_cast<int>(found) : -1;
}

NameListView::Unseen::Unseen(NameListView& list) : list_(list), hadFocus_(GetFocus() == list.window_) {
  ShowWindow(list_.window_, SW_HIDE);
}

NameListView::Unseen::~Unseen() {
  ShowWindow(list_.window_, SW_SHOW);
  // A window that is hidden loses the focus.
  if (hadFocus_) SetFocus(list_.window_);
}

void NameListView::refill(const NameList& names) {
  deleteAllItems();
  loadImages();
  listview::setExtendedStyle(window_, 0);
  {
    // Five thousand names would take twenty seconds otherwise.
    const listview::RedrawingOff off(window_);
    for (std::uint32_t i = 0; i < names.size(); ++i) addItem(static_cast<int>(i), names[i]);
  }
  // The vertical scroll bar that came with the items takes from the width that they were placed by.
  listview::arrange(window_);
}

void NameListView::scrollThrough() {
  listview::ensureVisible(window_, count() - 1);
  listview::ensureVisible(window_, 0);
}

void NameListView::loadImages() {
  // The images alone don't move the icons apart.
  constexpr int kIconSpacing = 75;
  listview::setIconSpacing(window_, HandheldToMonitor(kIconSpacing), HandheldToMonitor(kIconSpacing));
  setIcon(window_, LVSIL_NORMAL, icons_.large, 32);
  setIcon(window_, LVSIL_SMALL, icons_.small, 16);
  // Items that are there already stay where the former zoom had them.
  listview::arrange(window_);
}
