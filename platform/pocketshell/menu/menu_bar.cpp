#include "platform/pocketshell/menu/menu_bar.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu/menu_button.h"
#include "platform/pocketshell/menu/menu_walk.h"
#include "platform/pocketshell/panel/panel_button.h"
#include "platform/pocketshell/window/shell_window.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr int kImageSize = 16;
/// What a button adds to its image and to its label.
constexpr int kImageMargin = 8;
constexpr int kLabelMargin = 16;
/// That of the desktop menu, where no drop-down button has the letter.
constexpr wchar_t kMenuMnemonic = L'M';

wchar_t upper(wchar_t character) {
  return static_cast<wchar_t>(
      reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(character)))));
}

/// The letter after the label's "&", or else its first.
wchar_t mnemonicOf(const std::wstring& label) {
  const std::size_t mark = label.find(L'&');
  const std::size_t place = mark == std::wstring::npos ? 0 : mark + 1;
  return place < label.size() ? upper(label[place]) : L'\0';
}

}  // namespace

MenuBar::MenuBar(HWND toolbar, HWND parent, MenuBarParts parts)
    : WindowLayer(toolbar), parent_(parent), parts_(std::move(parts)) {}

void MenuBar::addMenuButton() {
  menuButton_ = MenuButton::create(window());
}

void MenuBar::addPanelButton() {
  panelButton_ = PanelButton::create(window());
}

int MenuBar::buttonCount() const {
  return static_cast<int>(parts_.dropDowns.size()) + (menuButton_ ? 1 : 0);
}

HMENU MenuBar::popupOf(int index) const {
  if (!isMenuButton(index)) return parts_.dropDowns[static_cast<std::size_t>(index)].popup;
  const ShellWindow* const shell = ShellWindow::of(parent_);
  return shell && shell->desktopMenu() ? shell->desktopMenu()->popup() : nullptr;
}

int MenuBar::indexOfCommand(int command) const {
  const auto found = std::find_if(parts_.dropDowns.begin(), parts_.dropDowns.end(),
                                  [=](const DropDown& each) { return each.command == command; });
  return found == parts_.dropDowns.end() ? -1
                                         : static_cast<int>(std::distance(parts_.dropDowns.begin(), found));
}

int MenuBar::indexAt(POINT screen) const {
  RECT bar{};
  GetWindowRect(window(), &bar);
  if (!PtInRect(&bar, screen)) return -1;
  for (int i = 0; i < buttonCount(); ++i) {
    const RECT button = buttonOnScreen(i);
    if (PtInRect(&button, screen)) return i;
  }
  return -1;
}

int MenuBar::indexOfMnemonic(wchar_t character) const {
  const wchar_t wanted = upper(character);
  for (int i = 0; i < static_cast<int>(parts_.dropDowns.size()); ++i) {
    if (mnemonicOf(parts_.dropDowns[static_cast<std::size_t>(i)].label) == wanted && isEnabled(i)) return i;
  }
  return wanted == kMenuMnemonic && menuButton_ ? buttonCount() - 1 : -1;
}

bool MenuBar::isEnabled(int index) const {
  if (isMenuButton(index)) return true;
  const auto command = static_cast<WPARAM>(parts_.dropDowns[static_cast<std::size_t>(index)].command);
  return SendMessageW(window(), TB_ISBUTTONENABLED, command, 0) != 0;
}

RECT MenuBar::buttonOnScreen(int index) const {
  RECT button{};
  if (isMenuButton(index)) {
    GetWindowRect(menuButton_, &button);
    return button;
  }
  SendMessageW(window(), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
  MapWindowPoints(window(), nullptr, reinterpret_cast<POINT*>(&button), 2);
  return button;
}

void MenuBar::press(int index, bool pressed) {
  if (isMenuButton(index)) {
    MenuButton::mark(window(), pressed);
    return;
  }
  const auto command = static_cast<WPARAM>(parts_.dropDowns[static_cast<std::size_t>(index)].command);
  SendMessageW(window(), TB_PRESSBUTTON, command, MAKELPARAM(pressed, 0));
  UpdateWindow(window());
}

void MenuBar::highlight(int index) {
  const bool isMenu = isMenuButton(index);
  SendMessageW(window(), TB_SETHOTITEM, static_cast<WPARAM>(isMenu ? -1 : index), 0);
  MenuButton::mark(window(), isMenu);
}

void MenuBar::layOut(UINT flags) {
  RECT client{};
  GetClientRect(parent_, &client);
  const int zoom = presentZoom();
  const int bottom = static_cast<int>(client.bottom);
  const int top = toMonitor(coveringFigure(bottom, zoom) - kMenuBarHeight, zoom);
  SetWindowPos(window(), HWND_TOP, 0, top, static_cast<int>(client.right), bottom - top,
               SWP_NOACTIVATE | flags);
  layOutButtons();
}

void MenuBar::layOutButtons() const {
  MenuButton::layOut(window(), PanelButton::layOut(window()));
}

void MenuBar::applyZoom(UINT flags) {
  const int zoom = presentZoom();
  const int image = toMonitor(kImageSize, zoom);
  SendMessageW(window(), WM_SETFONT, reinterpret_cast<WPARAM>(presentFont()), FALSE);
  SendMessageW(window(), TB_SETBITMAPSIZE, 0, MAKELPARAM(image, image));
  if (parts_.bitmap != 0) {
    UniqueImageList images(HandheldLoadImages(parts_.instance, parts_.bitmap, RGB(192, 192, 192)));
    if (images) {
      SendMessageW(window(), TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.get()));
      parts_.images = std::move(images);
    }
  }
  const int width = toMonitor(kImageSize + kImageMargin, zoom);
  const int height = toMonitor(kMenuBarHeight, zoom);
  SendMessageW(window(), TB_SETPADDING, 0, MAKELPARAM(width - image, height - image));
  SendMessageW(window(), TB_SETBUTTONSIZE, 0, MAKELPARAM(width, height));
  setButtonWidths();
  SendMessageW(window(), TB_AUTOSIZE, 0, 0);
  layOut(flags);
}

void MenuBar::setButtonWidths() {
  const int zoom = presentZoom();
  const HDC dc = GetDC(window());
  if (!dc) return;
  const HGDIOBJ font = SelectObject(dc, presentFont());
  const auto count = static_cast<int>(SendMessageW(window(), TB_BUTTONCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    const bool dropDown = i < static_cast<int>(parts_.dropDowns.size());
    int width = toMonitor(kImageSize + kImageMargin, zoom);
    if (dropDown) {
      const std::wstring& label = parts_.dropDowns[static_cast<std::size_t>(i)].label;
      SIZE size{};
      GetTextExtentPoint32W(dc, label.c_str(), static_cast<int>(label.size()), &size);
      width = static_cast<int>(size.cx) + toMonitor(kLabelMargin, zoom);
    }
    TBBUTTONINFOW info{};
    info.cbSize = sizeof(info);
    info.dwMask = TBIF_SIZE | TBIF_BYINDEX;
    info.cx = static_cast<WORD>(width);
    SendMessageW(window(), TB_SETBUTTONINFOW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&info));
  }
  SelectObject(dc, font);
  ReleaseDC(window(), dc);
}

void MenuBar::drawLabel(const NMTBCUSTOMDRAW& state, const DropDown& dropDown) const {
  const HDC dc = state.nmcd.hdc;
  const UINT item = state.nmcd.uItemState;
  // The button under the mouse stays hot while a popup is open; only that popup's own is marked then.
  const bool marked = (item & (isWalkingMenus() ? CDIS_SELECTED : CDIS_SELECTED | CDIS_HOT)) != 0;
  RECT place = state.nmcd.rc;
  ++place.top;  // the edge of the bar
  FillRect(dc, &place, GetSysColorBrush(marked ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
  const HGDIOBJ font = SelectObject(dc, presentFont());
  SetBkMode(dc, TRANSPARENT);
  const int color = marked ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT;
  SetTextColor(dc, GetSysColor((item & CDIS_DISABLED) != 0 ? COLOR_GRAYTEXT : color));
  DrawTextW(dc, dropDown.label.c_str(), -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  SelectObject(dc, font);
}

void MenuBar::drawImage(const NMTBCUSTOMDRAW& state) const {
  const HDC dc = state.nmcd.hdc;
  const UINT item = state.nmcd.uItemState;
  const bool grey = (item & (CDIS_DISABLED | CDIS_GRAYED | CDIS_INDETERMINATE)) != 0;
  const bool pressed = (item & CDIS_SELECTED) != 0;
  RECT place = state.nmcd.rc;
  ++place.top;  // the edge of the bar
  if (!grey && (pressed || (item & CDIS_HOT) != 0)) {
    DrawEdge(dc, &place, pressed ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
  }
  TBBUTTONINFOW info{};
  info.cbSize = sizeof(info);
  info.dwMask = TBIF_IMAGE;
  if (SendMessageW(window(), TB_GETBUTTONINFOW, state.nmcd.dwItemSpec, reinterpret_cast<LPARAM>(&info)) < 0) {
    return;
  }
  const UniqueIcon icon(ImageList_GetIcon(parts_.images.get(), info.iImage, ILD_TRANSPARENT));
  if (!icon) return;
  const int size = toMonitor(kImageSize, presentZoom());
  const int shift = pressed && !grey ? 1 : 0;
  DrawStateW(dc, nullptr, nullptr, reinterpret_cast<LPARAM>(icon.get()), 0,
             static_cast<int>(place.left + place.right - size) / 2 + shift,
             static_cast<int>(place.top + place.bottom - size) / 2 + shift, size, size,
             DST_ICON | static_cast<UINT>(grey ? DSS_DISABLED : DSS_NORMAL));
}

LRESULT MenuBar::draw(const NMTBCUSTOMDRAW& state) const {
  if (state.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (state.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const int index = indexOfCommand(static_cast<int>(state.nmcd.dwItemSpec));
  if (index >= 0) {
    drawLabel(state, parts_.dropDowns[static_cast<std::size_t>(index)]);
  } else {
    drawImage(state);
  }
  return CDRF_SKIPDEFAULT;
}

LRESULT MenuBar::eraseBackground(HDC dc) {
  RECT client{};
  GetClientRect(window(), &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
  DrawEdge(dc, &client, BDR_RAISEDINNER, BF_TOP);
  return TRUE;
}

LRESULT MenuBar::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_ERASEBKGND) return eraseBackground(reinterpret_cast<HDC>(wParam));
  if (message == TB_ADDBUTTONSW) {
    const LRESULT added = passOn(message, wParam, lParam);
    // All plain buttons would become as wide as the widest label.
    setButtonWidths();
    return added;
  }
  if (message == SHCMBM_GETSUBMENU) {
    const int index = indexOfCommand(static_cast<int>(lParam));
    if (index < 0) return 0;
    return reinterpret_cast<LRESULT>(parts_.dropDowns[static_cast<std::size_t>(index)].popup);
  }
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell
