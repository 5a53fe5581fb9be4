#pragma once

#include <windows.h>

/// Dialogs that lie over a frame's client area, caption on caption, and have the same area inside.
namespace pocketshell {

enum class Cover : INT_PTR {
  all = 1,  ///< the whole client area
  free,     ///< as far as menu bar and input panel leave it free
};

/// Lays a dialog over the frame that it is owned by, and again whenever that moves or gets another size.
/// Nothing happens without such a frame.
void coverFrame(HWND dialog, Cover cover);

/// Gives the dialog an OK at the lower right, where it stays; nothing where the template has one.
void addOk(HWND dialog);

/// To be called when a frame has moved or got another size.
void coverAgain(HWND frame);

}  // namespace pocketshell
