#pragma once

#include <windows.h>

#include <memory>

#include "platform/pocketshell/menu/desktop_menu.h"
#include "platform/pocketshell/window/window_layer.h"

namespace pocketshell {

class MenuBar;

/// The style of a window that fills the handheld's screen, unless it has one of its own.
inline constexpr DWORD kShellWindowStyle =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;

/// What the frame of such a window adds to its client area.
SIZE shellFrameSize();

/// A top-level window as the shell sees it: it may have a menu bar, and when it is the shell's frame it
/// keeps the handheld's work area inside and has a desktop menu.
class ShellWindow : public WindowLayer<ShellWindow> {
 public:
  explicit ShellWindow(HWND window) : WindowLayer(window) {}

  /// The window's menu bar, null when it has none.
  MenuBar* menuBar() const;
  /// `bar` is the window of a MenuBar, or null.
  void setMenuBar(HWND bar) { menuBar_ = bar; }

  bool isFrame() const { return isFrame_; }
  /// Null when it is no frame.
  DesktopMenu* desktopMenu() const { return desktopMenu_.get(); }
  void becomeFrame();
  /// Gives the client area the handheld's work area at the present zoom, and keeps the window within the
  /// work area of its monitor where it fits.
  void fitToZoom();

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  LRESULT positionChanged(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT notified(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT systemCommandGiven(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT commandGiven(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT contextMenuAsked(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT popupOpening(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT popupClosed(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT limitsAsked(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT itemSelected(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT resolutionChanged(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT leftMenu(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT activationChanged(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT destroyed(UINT message, WPARAM wParam, LPARAM lParam);

  HWND menuBar_ = nullptr;
  std::unique_ptr<DesktopMenu> desktopMenu_;
  bool isFrame_ = false;
};

/// The zoom of the monitor on which a frame is, or else of the main monitor.
int automaticZoomOfWindows();

}  // namespace pocketshell
