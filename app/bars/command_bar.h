#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "app/bars/bar_facts.h"
#include "app/bars/menu_bar.h"
#include "app/bars/page_bars.h"
#include "records/availability.h"
#include "records/command_bar.h"

/// The menu bar of the main window and the bands of the page that is shown.
class MainCommandBar final : public CommandBar {
 public:
  /// `facts` is asked whenever the menu bar is made. The resources are those of `instance`.
  MainCommandBar(HINSTANCE instance, std::function<BarFacts()> facts);

  /// Makes the menu bar of the main window, in which the commands arrive from then on. False when that
  /// fails; the user was told.
  bool create(HWND mainWindow);
  /// Names the windows that carry the bands, null until then: the form's window for the Form page and
  /// the tab control for all others.
  void setPageWindows(HWND tabControl, HWND formWindow);

  /// Makes the bands of a page and puts them in their place, in place of those that are there. A page
  /// without bands leaves none.
  void showPageBars(int page);
  void destroyPageBars();
  /// Puts the bands where the option and the window that carries them say now.
  void placePageBars();
  /// Makes the menu bar and the bands again, with the text of the position box: for another zoom.
  void rebuildAll();
  /// Destroys bands and menu bar, before the windows that carry them.
  void destroy();

  void showCommands(const CommandFacts& facts) override;
  void refreshMenuBar() override;
  void setPositionText(const wchar_t* text) override;
  void setPositionTip(const wchar_t* text) override;

  /// The answer to WM_CTLCOLORSTATIC from `control`: a white brush for the position box, whose text is black
  /// on white in `dc` then, else null. It is one of the system's own.
  HBRUSH backgroundOf(HDC dc, HWND control) const;

  const MenuBar& menuBar() const { return menuBar_; }
  const PageBars& pageBars() const { return pageBars_; }

 private:
  bool buildMenuBar();
  HWND pageParent() const;

  HINSTANCE instance_;
  std::function<BarFacts()> facts_;
  HWND mainWindow_ = nullptr;
  HWND tabControl_ = nullptr;
  HWND formWindow_ = nullptr;
  int barsPage_ = -1;  // whose bands are shown, -1 for none
  MenuBar menuBar_;
  PageBars pageBars_;
  std::wstring positionTip_;
  CommandFacts commandFacts_;
};
