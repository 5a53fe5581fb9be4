#include "app/command_bar.h"

#include <algorithm>
#include <string>
#include <utility>

#include "records/view_mode.h"
#include "views/page_area.h"

namespace {

bool isForm(int page) {
  return page == static_cast<int>(ViewMode::form);
}

std::wstring windowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace

MainCommandBar::MainCommandBar(HINSTANCE instance, std::function<BarFacts()> facts)
    : instance_(instance), facts_(std::move(facts)) {}

bool MainCommandBar::create(HWND mainWindow) {
  mainWindow_ = mainWindow;
  return buildMenuBar();
}

void MainCommandBar::setPageWindows(HWND tabControl, HWND formWindow) {
  tabControl_ = tabControl;
  formWindow_ = formWindow;
}

bool MainCommandBar::buildMenuBar() {
  // A command may outlast its window, which was closed under a dialog.
  if (!mainWindow_) return false;
  if (!menuBar_.create(instance_, mainWindow_, facts_())) {
    MessageBoxW(mainWindow_, L"SHCreateMenuBar Failed", L"Error", MB_OK);
    return false;
  }
  showRemembered();
  return true;
}

void MainCommandBar::rebuildMenuBar() {
  buildMenuBar();
}

HWND MainCommandBar::pageParent() const {
  return isForm(barsPage_) ? formWindow_ : tabControl_;
}

void MainCommandBar::showPageBars(int page) {
  destroyPageBars();
  if (pageBands(page).empty()) return;
  barsPage_ = page;
  pageBars_.create(instance_, page, pageParent(), mainWindow_);
  placePageBars();
  showRemembered();
}

void MainCommandBar::destroyPageBars() {
  pageBars_.destroy();
  barsPage_ = -1;
}

void MainCommandBar::placePageBars() {
  // The form's window ends above the tabs, the tab control with them; its border takes two pixels more of
  // the other pages, by which the form's bands are raised to the same height.
  const bool form = isForm(barsPage_);
  pageBars_.place(pageParent(), !form, form && !bandsAtTop());
}

void MainCommandBar::rebuildAll() {
  buildMenuBar();
  if (barsPage_ < 0) return;
  const std::wstring position = windowText(pageBars_.positionBox());
  showPageBars(barsPage_);
  setPositionText(position.c_str());
}

void MainCommandBar::destroy() {
  destroyPageBars();
  menuBar_.destroy();
  mainWindow_ = nullptr;
}

void MainCommandBar::apply(std::span<const CommandState> states) {
  for (const CommandState& state : states) {
    remember(state);
    show(state);
  }
}

void MainCommandBar::remember(const CommandState& state) {
  const auto same = [&](const CommandState& other) {
    return other.command == state.command && other.menu == state.menu && other.onToolbar == state.onToolbar;
  };
  // The latest goes to the end: where two rules name the same item, the later one holds.
  applied_.erase(std::remove_if(applied_.begin(), applied_.end(), same), applied_.end());
  applied_.push_back(state);
}

void MainCommandBar::show(const CommandState& state) {
  if (const HMENU popup = menuBar_.popup(state.menu)) {
    EnableMenuItem(popup, static_cast<UINT>(state.command),
                   MF_BYCOMMAND | (state.enabled ? MF_ENABLED : MF_GRAYED));
  }
  if (state.onToolbar) pageBars_.setEnabled(state.command, state.enabled);
}

void MainCommandBar::showRemembered() {
  for (const CommandState& state : applied_) show(state);
}

void MainCommandBar::setPositionText(const wchar_t* text) {
  if (pageBars_.positionBox()) SetDlgItemTextW(pageBars_.rebar(), PageBars::kPositionId, text);
}

HBRUSH MainCommandBar::backgroundOf(HWND control) const {
  if (!control || control != pageBars_.positionBox()) return nullptr;
  return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
}
