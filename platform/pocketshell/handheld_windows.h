#pragma once

#include <windows.h>

#include <commctrl.h>

#include "platform/pocketshell/aygshell.h"

/// The window calls of the handheld. A program thinks in the handheld's pixels: a screen of 240 x 320, of
/// which the caption takes 26 at the top and the menu bar 26 at the bottom. The user may make the program's
/// window larger, never smaller; the screen is then as much larger. These functions, and only
/// they, turn such pixels into the monitor's by the zoom, and give every control the interface font at
/// that zoom. At zoom 100 the figures on the screen are the handheld's own.
///
/// Where a function has the name of one of the system's, it does the same with handheld pixels and keeps
/// that one's contract. When the zoom changes, every window made or moved here is laid out anew by
/// the figures it was last given and gets the new font; then its top-level window is sent
/// HandheldZoomMessage, so that it can replace what it holds in images, columns and bands.

/// A window without WS_CHILD and a parent whose size is CW_USEDEFAULT gets a frame with caption, system menu,
/// minimise and maximise box that the user can size, whatever else `style` says, and the desktop menu
/// (desktop_entries.h). It stands where the user left it on these monitors; at first with a comfortable work
/// area inside. Where the setting "Size" is 1 it has a fixed frame instead, without maximise box, around the
/// handheld's work area, 240 x 294. A list view also reports taps that are held
/// (GN_CONTEXTMENU). Other windows without WS_CHILD are placed on the monitor with the origin unscaled,
/// here and by the two functions that follow.
AYGSHELL_API HWND HandheldCreateWindow(DWORD extendedStyle, const wchar_t* className, const wchar_t* title,
                                       DWORD style, int x, int y, int width, int height, HWND parent,
                                       HMENU menu, HINSTANCE instance, void* parameter);
AYGSHELL_API BOOL HandheldMoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
AYGSHELL_API BOOL HandheldSetWindowPos(HWND window, HWND after, int x, int y, int width, int height,
                                       UINT flags);
/// From the first of these two calls to the second the two functions above draw nothing; then `window` and
/// all in it is drawn at once, each thing once and in its last place.
AYGSHELL_API void HandheldBeginLayout();
AYGSHELL_API void HandheldEndLayout(HWND window);
/// Does both, the second also when the layout is left by an exception.
class HandheldLayout {
 public:
  explicit HandheldLayout(HWND window) : window_(window) { HandheldBeginLayout(); }
  ~HandheldLayout() { HandheldEndLayout(window_); }
  HandheldLayout(const HandheldLayout&) = delete;
  HandheldLayout& operator=(const HandheldLayout&) = delete;

 private:
  HWND window_;
};
/// A menu bar lies over the last 26 of the pixels of its window and takes none of them away. Of a frame whose
/// inside is no whole number of handheld pixels the answer is the next larger, so that nothing stays
/// uncovered.
AYGSHELL_API BOOL HandheldGetClientRect(HWND window, RECT* rectangle);
/// In its parent's client area, or for a top-level window on the monitor with the origin unscaled.
AYGSHELL_API BOOL HandheldGetWindowRect(HWND window, RECT* rectangle);
/// SM_CXSCREEN and SM_CYSCREEN are 240 and 320, or what the present size of the frame makes of them, and
/// lengths the system's in handheld pixels.
AYGSHELL_API int HandheldGetSystemMetrics(int index);
/// What the screen leaves to pages: its width, and its height without the caption and the row of the menu
/// bar. 240 x 269 at the handheld's size and while there is no frame. The frame's own WM_SIZE finds the new
/// figures.
AYGSHELL_API SIZE HandheldGetPageArea();

/// For the messages of controls that carry lengths (columns, bands, images).
AYGSHELL_API int HandheldToMonitor(int handheldPixels);
/// Rounds to the nearest.
AYGSHELL_API int HandheldFromMonitor(int monitorPixels);

/// The font of all controls at the present zoom. It stays the shell's, and valid until the zoom changes
/// next.
AYGSHELL_API HFONT HandheldGetFont();

/// As DialogBoxParamW; the dialog and its controls are made at the zoom. A dialog unit is 6/4 by 13/8
/// handheld pixels, as with Tahoma 8 point, whatever font the resource names. List views of the resource
/// do not report taps that are held.
AYGSHELL_API INT_PTR HandheldDialogBox(HINSTANCE instance, WORD dialogId, HWND parent, DLGPROC procedure,
                                       LPARAM parameter);

/// An image list of 16 x 16 images from a strip in bitmap resource `bitmapId`, at the zoom. The pixels of
/// colour `transparent` are transparent. The resources bitmapId + 1000 x 2, 3 and 4, where they exist,
/// are the same strip drawn 2, 3 and 4 times as large; the next larger one is taken and reduced. With a
/// `height` the images are as many of the monitor's pixels high, if that is more, with the drawing in the
/// middle. Null when it fails; belongs to the caller.
AYGSHELL_API HIMAGELIST HandheldLoadImages(HINSTANCE instance, WORD bitmapId, COLORREF transparent,
                                           int height = 0);
/// An icon of size x size handheld pixels, from the best of the resource's images. Null when it fails;
/// belongs to the caller.
AYGSHELL_API HICON HandheldLoadIcon(HINSTANCE instance, WORD iconId, int size);

/// Gives the buttons of a toolbar their tips in the order of the buttons, as the handheld's
/// TB_SETTOOLTIPS does; null for none. The texts are copied, and name the buttons to assistive technology
/// too. Replaces what was set before, also for buttons that are added later.
AYGSHELL_API BOOL HandheldSetButtonTips(HWND toolbar, UINT count, const wchar_t* const* tips);

/// What assistive technology calls a control that shows no name of its own (`child` 0), or what it has
/// inside: buttons, tabs and columns from 1. Null or an empty name leaves it to the system again. The name is
/// copied and lasts as long as the window. False when there is no such window.
AYGSHELL_API BOOL HandheldNameControl(HWND control, LONG child, const wchar_t* name);

/// For a message box or another dialog of the system, on its WM_INITDIALOG or right after it: its texts then
/// show letters that its font lacks, and the box grows where these need more room; and its controls are drawn
/// in the system's colours alone where the theme would not fit them.
AYGSHELL_API void HandheldEquipBox(HWND box);

/// For a tooltip control that has just been made: it has the font of controls, and shows letters that this
/// lacks.
AYGSHELL_API void HandheldEquipTip(HWND tip);

/// As TrackPopupMenuEx with TPM_RETURNCMD: the command of the item that is chosen, 0 when none is. Items with
/// letters that the font of menus lacks show them. `owner` is a window of this thread.
AYGSHELL_API UINT HandheldChooseFromMenu(HMENU menu, POINT where, HWND owner);

/// For the message loop of a program with a menu bar, before it does anything else with a message. One of the
/// keyboard or the mouse that is meant for the bar of its window is changed into one to the bar's parent, or
/// into WM_NULL: Alt and a button's letter, each key while the buttons are walked, the keys of the zoom. The
/// loops of menus and of dialogs, under which the bar is disabled, need not call it.
AYGSHELL_API void HandheldTakeMenuKey(MSG* message);

/// In per cent, 100 to 400.
AYGSHELL_API int HandheldGetZoom();
/// Lays everything out at the new zoom and remembers it; 0 is the monitor's own, which is also used as
/// long as none was chosen: at most what the monitor's dots per inch call for and fits. False when it is
/// not in range.
AYGSHELL_API BOOL HandheldSetZoom(int percent);
/// A registered message.
AYGSHELL_API UINT HandheldZoomMessage();
