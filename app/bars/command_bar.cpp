#include "app/bars/command_bar.h"

#include <string>
#include <utility>

#include "records/view_mode.h"
#include "views/shared/page_area.h"
#include "views/shared/unowned_box.h"

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
    showBox(mainWindow_, L"SHCreateMenuBar Failed", L"Error", MB_OK);
    return false;
  }
  menuBar_.showCommands(commandFacts_);
  return true;
}

void MainCommandBar::refreshMenuBar() {
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
  pageBars_.showCommands(commandFacts_);
  if (!positionTip_.empty()) pageBars_.setPositionTip(positionTip_.c_str());
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
  menuBar_.destroy();
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

void MainCommandBar::showCommands(const CommandFacts& facts) {
  commandFacts_ = facts;
  menuBar_.showCommands(facts);
  pageBars_.showCommands(facts);
}

void MainCommandBar::setPositionText(const wchar_t* text) {
  if (const HWND box = pageBars_.positionBox()) SetWindowTextW(box, text);
}

void MainCommandBar::setPositionTip(const wchar_t* text) {
  if (positionTip_ == text) return;
  positionTip_ = text;
  pageBars_.setPositionTip(text);
}

HBRUSH MainCommandBar::backgroundOf(HDC dc, HWND control) const {
  if (!control || control != pageBars_.positionBox()) return nullptr;
  // The system's text may be white too.
  SetBkColor(dc, RGB(255, 255, 255));
  SetTextColor(dc, RGB(0, 0, 0));
  return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
}
