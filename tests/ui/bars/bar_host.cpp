#include "tests/ui/bars/bar_host.h"

#include <utility>

#include "platform/pocketshell/handheld_windows.h"

namespace {

constexpr wchar_t kClassName[] = L"Bar Host";

BOOL CALLBACK countWindow(HWND window, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  EnumChildWindows(
      window,
      [](HWND, LPARAM children) {
        ++*reinterpret_cast<int*>(children);
        return TRUE;
      },
      count);
  return TRUE;
}

}  // namespace

BarHost::BarHost() {
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_COOL_CLASSES};
  InitCommonControlsEx(&controls);
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = ownInstance();
  description.lpszClassName = kClassName;
  RegisterClassW(&description);  // fails but for the first
  main_ = HandheldCreateWindow(0, kClassName, L"", WS_POPUP, 0, 0, 240, 294, nullptr, nullptr, ownInstance(),
                               this);
  tab_ = HandheldCreateWindow(0, WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE | WS_BORDER | TCS_BOTTOM, 0, 0,
                              240, 269, main_, nullptr, ownInstance(), nullptr);
  for (const wchar_t* name : {L"Queries", L"List", L"Form", L"Tables"}) {
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(name);
    SendMessageW(tab_, TCM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
  form_ = HandheldCreateWindow(0, WC_STATICW, L"", WS_CHILD, 0, 0, 240, 220, tab_, nullptr, ownInstance(),
                               nullptr);
}

BarHost::~BarHost() {
  DestroyWindow(main_);
}

std::vector<int> BarHost::takeCommands() {
  return std::exchange(commands_, {});
}

LRESULT CALLBACK BarHost::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto& creation = *reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation.lpCreateParams));
  }
  auto* const host = reinterpret_cast<BarHost*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (host && message == WM_COMMAND) {
    host->commands_.push_back(LOWORD(wParam));
    if (host->handler_) host->handler_(LOWORD(wParam));
    return 0;
  }
  if (host && message == WM_CTLCOLORSTATIC && host->color_) {
    return reinterpret_cast<LRESULT>(host->color_(reinterpret_cast<HWND>(lParam)));
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

std::vector<TBBUTTON> toolbarButtons(HWND bar) {
  std::vector<TBBUTTON> buttons(static_cast<std::size_t>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0)));
  for (std::size_t i = 0; i < buttons.size(); ++i)
    SendMessageW(bar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&buttons[i]));
  return buttons;
}

std::vector<int> toolbarCommands(HWND bar) {
  std::vector<int> commands;
  for (const TBBUTTON& button : toolbarButtons(bar)) commands.push_back(button.idCommand);
  return commands;
}

int buttonState(HWND bar, int command) {
  return static_cast<int>(SendMessageW(bar, TB_GETSTATE, static_cast<WPARAM>(command), 0));
}

RECT buttonPlace(HWND bar, int command) {
  RECT place{};
  SendMessageW(bar, TB_GETRECT, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(&place));
  return place;
}

void clickButton(HWND bar, int command) {
  const RECT place = buttonPlace(bar, command);
  const LPARAM point = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, point);
  SendMessageW(bar, WM_LBUTTONUP, 0, point);
}

std::wstring buttonTip(HWND bar, int command) {
  auto* const tooltip = reinterpret_cast<HWND>(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
  NMTTDISPINFOW wanted{};
  wanted.hdr = {tooltip, static_cast<UINT_PTR>(command), TTN_GETDISPINFOW};
  wanted.lpszText = wanted.szText;
  SendMessageW(bar, WM_NOTIFY, wanted.hdr.idFrom, reinterpret_cast<LPARAM>(&wanted));
  return wanted.lpszText;
}

int windowCount() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), countWindow, reinterpret_cast<LPARAM>(&count));
  return count;
}
