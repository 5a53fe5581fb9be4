#include "platform/pocketshell/menu_bar.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu_keys.h"
#include "platform/pocketshell/panel_button.h"
#include "platform/pocketshell/present_zoom.h"
#include "platform/pocketshell/shell_window.h"
#include "platform/pocketshell/zoom_figures.h"

namespace pocketshell {

namespace {

constexpr int kImageSize = 16;
constexpr int kButtonHeight = 22;
constexpr int kPadding = 5;

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
    : WindowLayer(toolbar), parent_(parent), parts_(std::move(parts)) {
  MenuKeys::watch();
}

MenuBar::~MenuBar() {
  MenuKeys::unwatch();
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
  for (int i = 0; i < static_cast<int>(parts_.dropDowns.size()); ++i) {
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
  return -1;
}

bool MenuBar::isEnabled(int index) const {
  const auto command = static_cast<WPARAM>(parts_.dropDowns[static_cast<std::size_t>(index)].command);
  return SendMessageW(window(), TB_ISBUTTONENABLED, command, 0) != 0;
}

RECT MenuBar::buttonOnScreen(int index) const {
  RECT button{};
  SendMessageW(window(), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&button));
  MapWindowPoints(window(), nullptr, reinterpret_cast<POINT*>(&button), 2);
  return button;
}

void MenuBar::press(int index, bool pressed) {
  const auto command = static_cast<WPARAM>(parts_.dropDowns[static_cast<std::size_t>(index)].command);
  SendMessageW(window(), TB_PRESSBUTTON, command, MAKELPARAM(pressed, 0));
  UpdateWindow(window());
}

void MenuBar::highlight(int index) {
  SendMessageW(window(), TB_SETHOTITEM, static_cast<WPARAM>(index), 0);
}

void MenuBar::layOut() {
  RECT client{};
  GetClientRect(parent_, &client);
  const int zoom = presentZoom();
  const int bottom = static_cast<int>(client.bottom);
  const int top = toMonitor(fromMonitor(bottom, zoom) - kMenuBarHeight, zoom);
  SetWindowPos(window(), HWND_TOP, 0, top, static_cast<int>(client.right), bottom - top, SWP_NOACTIVATE);
  PanelButton::layOut(window());
}

void MenuBar::applyZoom() {
  const int zoom = presentZoom();
  const int image = toMonitor(kImageSize, zoom);
  SendMessageW(window(), WM_SETFONT, reinterpret_cast<WPARAM>(presentFont()), FALSE);
  SendMessageW(window(), TB_SETBITMAPSIZE, 0, MAKELPARAM(image, image));
  if (parts_.bitmap != 0) {
    OwnedImageList images(HandheldLoadImages(parts_.instance, parts_.bitmap, RGB(192, 192, 192)));
    if (images) {
      SendMessageW(window(), TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.get()));
      parts_.images = std::move(images);
    }
  }
  SendMessageW(window(), TB_SETPADDING, 0, MAKELPARAM(toMonitor(kPadding, zoom), toMonitor(kPadding, zoom)));
  SendMessageW(window(), TB_SETBUTTONSIZE, 0, MAKELPARAM(image, toMonitor(kButtonHeight, zoom)));
  SendMessageW(window(), TB_AUTOSIZE, 0, 0);
  layOut();
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
  if (message == SHCMBM_GETSUBMENU) {
    const int index = indexOfCommand(static_cast<int>(lParam));
    if (index < 0) return 0;
    return reinterpret_cast<LRESULT>(parts_.dropDowns[static_cast<std::size_t>(index)].popup);
  }
  return passOn(message, wParam, lParam);
}

}  // namespace pocketshell
