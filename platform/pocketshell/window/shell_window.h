#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "owners/window_layer.h"
#include "platform/pocketshell/menu/desktop_menu.h"
#include "platform/pocketshell/window/frame_place.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

namespace pocketshell {

class MenuBar;

/// The style of a window that stands for the handheld's screen, unless it has one of its own: the user may
/// size it unless the settings keep it at the handheld's size.
DWORD shellWindowStyle();

/// What the frame of such a window adds to its client area.
SIZE shellFrameSize();

/// Where and how large a frame is to be made, so that it seldom has to be moved before it is shown.
struct FrameBeginning {
  POINT corner{CW_USEDEFAULT, CW_USEDEFAULT};
  SIZE size{};
  SIZE inside = kLeastWorkArea;    ///< that it gets with this size, in handheld pixels
  std::optional<FramePlace> kept;  ///< where the user has left it
  RECT free{};                     ///< of the main monitor
};
FrameBeginning frameBeginning();

/// A top-level window as the shell sees it: it may have a menu bar, and when it is the shell's frame its
/// inside is the screen that programs are told of (zoom/present_screen.h), and it has a desktop menu. One
/// that the user may size stands where he left it.
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
  /// It was made as `beginning` says. True when it is to be shown maximised, as the user left it.
  bool becomeFrame(const FrameBeginning& beginning);
  /// Gives the inside its handheld pixels at the present zoom, and keeps the window within the work area of
  /// its monitor where it fits. A maximised window keeps its size, and has more or less inside.
  void fitToZoom();

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  SIZE border() const;
  RECT fitted(POINT corner, SIZE inside, const RECT& free) const;
  void placeAt(POINT corner, SIZE inside);
  bool standWhereLeft(const FrameBeginning& beginning);
  void noteInside();
  void keepPlace() const;

  LRESULT positionChanged(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT notified(UINT message, WPARAM wParam, LPARAM lParam);
  void walkAsked(WPARAM index) const;
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
  LRESULT colorsChanged(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT settingChanged(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT sessionEnded(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT destroyed(UINT message, WPARAM wParam, LPARAM lParam);

  HWND menuBar_ = nullptr;
  std::unique_ptr<DesktopMenu> desktopMenu_;
  bool isFrame_ = false;
  bool canBeSized_ = false;
  // As they are while the window is neither maximised nor minimised.
  POINT corner_{};
  SIZE inside_ = kLeastWorkArea;
  bool isMaximised_ = false;  // or will be when it is minimised no longer

  struct Unfitted {
    POINT corner;
    SIZE inside;
  };
  Unfitted unfitted_{};  // before the zoom changed
  RECT fitted_{};        // where it has been since
};

/// The zoom of the monitor on which a frame is, or else of the main monitor.
int automaticZoomOfWindows();

}  // namespace pocketshell
