#include "app/bars/page_bars.h"

#include <array>
#include <string>
#include <vector>

#include "app/bars/position_box.h"
#include "app/bars/rebar.h"
#include "app/bars/toolbar.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/shared/page_area.h"

namespace {

constexpr SIZE kPositionSize = {82, 24};
constexpr int kBandHeight = 24;
constexpr int kFormToolbarWidth = 100;
/// As large as the system makes a toolbar by itself, before its rebar sizes it.
constexpr SIZE kNewToolbar = {100, 30};
constexpr int kImageSize = 16;
constexpr SIZE kButtonSize = {23, 22};
/// What the system leaves free above the buttons, and within them above and below their images, together. It
/// is so many of the monitor's pixels at every zoom.
constexpr int kAboveAndInButtons = 8;
constexpr COLORREF kTransparent = RGB(192, 192, 192);

/// Of the system's class, so the same for each rebar.
WNDPROC rebarOldProc = nullptr;

/// The system's rebar draws borders of its own, wider than the handheld's, and grows by them over the
/// page or the tabs. Ours has the handheld's height and no border.
///
/// A rebar keeps those messages of its children that it does not know; the main window answers the one
/// for the colours.
///
/// In the place of the rebar's own procedure, not as a subclass of the common controls: under Wine those ask
/// the server for a property of the window with each message, and a rebar has more than a hundred before it
/// is seen.
LRESULT CALLBACK rebarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_WINDOWPOSCHANGING:
      reinterpret_cast<WINDOWPOS*>(lParam)->cy = HandheldToMonitor(PageBars::kRebarHeight);
      break;
    case WM_NCCALCSIZE:
    case WM_NCPAINT:
      return 0;
    case WM_CTLCOLORSTATIC:
      return SendMessageW(GetAncestor(window, GA_ROOT), message, wParam, lParam);
    default:
      break;
  }
  return CallWindowProcW(rebarOldProc, window, message, wParam, lParam);
}

/// In the monitor's pixels: what a band has besides what the system leaves free, so that the drawings stand
/// in its middle at every zoom.
int bandImageHeight() {
  return rebar::childHeight(kBandHeight) - kAboveAndInButtons;
}

/// Of the window in a band, at least.
int bandWidth(const BandLayout& layout, bool onForm) {
  if (layout.buttons.empty()) return static_cast<int>(kPositionSize.cx);
  return onForm ? kFormToolbarWidth : static_cast<int>(kNewToolbar.cx);
}

}  // namespace

RebarPlace rebarPlace(SIZE client, bool atTop, bool lower, bool raise) {
  const auto width = static_cast<int>(client.cx);
  const auto bottom = static_cast<int>(client.cy);
  const int lift = raise ? 2 : 0;
  if (atTop) return {0 - lift, width, bottom - kMenuBarHeight};
  return {bottom - (lower ? kBandAndTabsHeight : kMenuBarHeight) - lift, width, kBandHeight};
}

void PageBars::create(HINSTANCE instance, int page, HWND parent, HWND mainWindow) {
  destroy();
  page_ = page;
  const std::span<const BandLayout> bands = pageBands(page);
  if (bands.empty() || !createRebar(instance, parent)) return;
  const bool onForm = page == 1;
  if (createBand(instance, bands[0], mainWindow, onForm, first_) &&
      createBand(instance, bands[1], mainWindow, onForm, second_)) {
    rebar::showBand(rebar(), 0);
    rebar::showBand(rebar(), 1);
    fillRow();
  }
  // Seen before, it would draw itself with each band that comes.
  ShowWindow(rebar(), SW_SHOWNA);
}

bool PageBars::createRebar(HINSTANCE instance, HWND parent) {
  constexpr DWORD kStyle = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_BORDER | RBS_VARHEIGHT |
                           RBS_BANDBORDERS | CCS_NODIVIDER | CCS_NOPARENTALIGN;
  RECT client{};
  HandheldGetClientRect(parent, &client);
  rebar_.reset(HandheldCreateWindow(0, REBARCLASSNAMEW, L"", kStyle, 0, 0, client.right, kBandHeight, parent,
                                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(kRebarId)), instance,
                                    nullptr));
  if (!rebar_) return false;
  rebarOldProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(rebar(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(rebarProcedure)));
  SetWindowPos(rebar(), nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return true;
}

bool PageBars::createBand(HINSTANCE instance, const BandLayout& layout, HWND mainWindow, bool onForm,
                          BandWindow& band) {
  const bool isPosition = layout.buttons.empty();
  if (isPosition) {
    band.window = makePositionBox(instance, rebar(), layout.controlId, kPositionSize);
    if (!band.window) return false;
    HandheldNameControl(band.window.get(), 0, L"Record");
  } else if (!createToolbar(instance, layout, mainWindow, band)) {
    return false;
  }
  const int width = bandWidth(layout, onForm);
  return rebar::appendBand(rebar(), {layout.id, band.window.get(), width, kBandHeight, width, isPosition});
}

bool PageBars::createToolbar(HINSTANCE instance, const BandLayout& layout, HWND mainWindow,
                             BandWindow& band) const {
  constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | CCS_NORESIZE | CCS_NODIVIDER | TBSTYLE_TOOLTIPS;
  band.window.reset(
      HandheldCreateWindow(0, TOOLBARCLASSNAMEW, L"", kStyle, 0, 0, kNewToolbar.cx, kNewToolbar.cy, rebar(),
                           reinterpret_cast<HMENU>(UINT_PTR{layout.controlId}), instance, nullptr));
  const HWND bar = band.window.get();
  if (!bar) return false;
  HandheldNameControl(bar, 0, L"Commands");
  const int imageHeight = bandImageHeight();
  band.images.reset(HandheldLoadImages(instance, layout.bitmap, kTransparent, imageHeight));
  toolbar::initialise(bar);
  toolbar::setCommandTarget(bar, mainWindow);
  toolbar::setImageSize(bar, HandheldToMonitor(kImageSize), imageHeight);
  toolbar::setButtonSize(bar, kButtonSize.cx, kButtonSize.cy);
  toolbar::setImages(bar, band.images.get());

  std::vector<TBBUTTON> buttons;
  std::vector<const wchar_t*> tips;
  for (const BarButton& button : layout.buttons) {
    buttons.push_back(toolbar::plainButton(static_cast<int>(buttons.size()), button.command));
    tips.push_back(button.tip);
  }
  HandheldSetButtonTips(bar, static_cast<UINT>(tips.size()), tips.data());
  return toolbar::addButtons(bar, buttons);
}

/// The system gives what is left of a row to its first band; on the handheld it is the last one's, whose
/// buttons need it.
void PageBars::fillRow() const {
  if (!second_.window) return;
  const int firstWidth = bandWidth(pageBands(page_)[0], page_ == 1);
  const RECT first = rebar::bandRectangle(rebar(), 0);
  const RECT last = rebar::bandRectangle(rebar(), 1);
  const RECT borders = rebar::bandBorders(rebar(), 0);
  const LONG needed = HandheldToMonitor(firstWidth) + borders.left + borders.right;
  const LONG left = last.right - needed - (last.left - first.right);
  if (left != last.right - last.left) rebar::setBandWidth(rebar(), 1, left);
}

void PageBars::destroyBand(BandWindow& band) const {
  if (!band.window) return;
  band.window.reset();
  band.images.reset();
  rebar::deleteBand(rebar(), 0);
}

void PageBars::setPositionTip(const wchar_t* text) {
  constexpr int kWidth = 200;
  const HWND box = positionBox();
  tip_.reset();
  if (!box || text[0] == L'\0') return;
  tip_.reset(CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                             CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, box, nullptr,
                             GetModuleHandleW(nullptr), nullptr));
  if (!tip_) return;
  HandheldEquipTip(tip_.get());
  SendMessageW(tip_.get(), WM_SETFONT, static_cast<WPARAM>(SendMessageW(box, WM_GETFONT, 0, 0)), FALSE);
  // With a width the lines of the text are lines.
  SendMessageW(tip_.get(), TTM_SETMAXTIPWIDTH, 0, HandheldToMonitor(kWidth));
  std::wstring shown = text;
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = rebar();
  tool.uId = reinterpret_cast<UINT_PTR>(box);
  tool.lpszText = shown.data();
  SendMessageW(tip_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void PageBars::destroy() {
  tip_.reset();
  destroyBand(first_);
  destroyBand(second_);
  rebar_.reset();
  page_ = -1;
}

void PageBars::place(HWND parent, bool lower, bool raise) {
  if (!rebar_) return;
  RECT client{};
  HandheldGetClientRect(parent, &client);
  const RebarPlace wanted = rebarPlace({client.right, client.bottom}, bandsAtTop(), lower, raise);
  HandheldMoveWindow(rebar(), 0, wanted.y, wanted.width, wanted.height, TRUE);
  fillRow();
  // While the bands take their places they count as painted, though they were not.
  RedrawWindow(rebar(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

HWND PageBars::positionBox() const {
  const std::span<const BandLayout> bands = pageBands(page_);
  if (bands.empty()) return nullptr;
  return bands[0].buttons.empty() ? firstBand() : bands[1].buttons.empty() ? secondBand() : nullptr;
}

void PageBars::showCommands(const CommandFacts& facts) const {
  const std::span<const BandLayout> bands = pageBands(page_);
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const HWND bar = i == 0 ? firstBand() : secondBand();
    for (const BarButton& button : bands[i].buttons) {
      const bool isEnabled = isAvailable(button.command, PopupMenu::none, facts);
      toolbar::setState(bar, button.command, isEnabled ? TBSTATE_ENABLED : TBSTATE_INDETERMINATE);
    }
  }
}
