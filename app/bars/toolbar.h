#pragma once

#include <windows.h>

#include <commctrl.h>

#include <span>

#include "platform/pocketshell/handheld_windows.h"

/// The messages of a toolbar, typed. Lengths are in handheld pixels. A null window answers nothing:
/// every result is then 0.
namespace toolbar {

/// What the system's own way of making a toolbar does first.
inline void initialise(HWND bar) {
  SendMessageW(bar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
}

/// The size of every image, in the monitor's pixels; to be set before there are buttons.
inline void setImageSize(HWND bar, int width, int height) {
  SendMessageW(bar, TB_SETBITMAPSIZE, 0, MAKELPARAM(width, height));
}

inline void setButtonSize(HWND bar, int width, int height) {
  SendMessageW(bar, TB_SETBUTTONSIZE, 0, MAKELPARAM(HandheldToMonitor(width), HandheldToMonitor(height)));
}

/// The images stay the caller's.
inline void setImages(HWND bar, HIMAGELIST images) {
  SendMessageW(bar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
}

/// An enabled button of plain style.
inline TBBUTTON plainButton(int image, int command) {
  TBBUTTON button{};
  button.iBitmap = image;
  button.idCommand = command;
  button.fsState = TBSTATE_ENABLED;
  button.fsStyle = TBSTYLE_BUTTON;
  return button;
}

inline bool addButtons(HWND bar, std::span<const TBBUTTON> buttons) {
  return SendMessageW(bar, TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data())) != 0;
}

/// The window that the commands of the buttons go to, whoever the parent is.
inline void setCommandTarget(HWND bar, HWND target) {
  SendMessageW(bar, TB_SETPARENT, reinterpret_cast<WPARAM>(target), 0);
}

/// A command without a button is passed over.
inline void setState(HWND bar, int command, int state) {
  SendMessageW(bar, TB_SETSTATE, static_cast<WPARAM>(command), MAKELPARAM(state, 0));
}

}  // namespace toolbar
