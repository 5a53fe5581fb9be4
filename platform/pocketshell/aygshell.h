#pragma once

#include <windows.h>

#include <commctrl.h>

/// The shell of the handheld, as far as programs call it: the menu bar, full-screen dialogs, the input
/// panel, tap and hold. The interfaces are the handheld's public ones with its names and numbers;
/// aygshell.dll supplies them on a desktop. All calls come from the thread that owns the windows named.
/// Rectangles and points are those of the handheld (handheld_windows.h), screen coordinates included,
/// whatever the zoom.

#ifdef AYGSHELL_EXPORTS
#define AYGSHELL_API extern "C" __declspec(dllexport)
#else
#define AYGSHELL_API extern "C" __declspec(dllimport)
#endif

// ---- The menu bar

struct SHMENUBARINFO {
  DWORD cbSize;        ///< size of this structure
  HWND hwndParent;     ///< the top-level window at whose bottom edge the bar lies
  DWORD dwFlags;       ///< 0
  UINT nToolBarId;     ///< RCDATA resource with the drop-down buttons, laid out as below
  HINSTANCE hInstRes;  ///< where the resources are
  int nBmpId;          ///< bitmap resource with a strip of 16 x 16 images, 0 for none
  int cBmpImages;      ///< how many images of it there are
  HWND hwndMB;         ///< out: the bar, a toolbar
};

/// Makes a menu bar 26 pixels high, which lies over the last pixels of the parent's client area. False when
/// a resource is missing or malformed or the windows can't be made; hwndMB is then as it was. The bar
/// belongs to the parent and dies with it, or is destroyed by DestroyWindow; its menus are destroyed with
/// it.
///
/// The resource is a sequence of 16-bit numbers: the menu resource, the number of buttons, and for each
/// button its image (I_IMAGENONE for none), command, state, style, label string, 0, and the index of its
/// popup in the menu. The images of the bitmap are for buttons that are added afterwards (TB_ADDBUTTONSW).
/// Commands of menu items and added buttons are sent to the parent as WM_COMMAND; before a popup opens
/// the parent gets WM_INITMENUPOPUP.
AYGSHELL_API BOOL SHCreateMenuBar(SHMENUBARINFO* info);

/// To a menu bar: the popup of the drop-down button whose command is lParam, null when there is none.
/// It still belongs to the bar.
#define SHCMBM_GETSUBMENU (WM_USER + 401)

// ---- Dialogs

struct SHINITDLGINFO {
  DWORD dwMask;  ///< SHIDIM_FLAGS
  HWND hDlg;
  DWORD dwFlags;
};
#define SHIDIM_FLAGS 0x0001
#define SHIDIF_DONEBUTTON 0x0001         ///< an OK in the dialog's title, identifier IDOK
#define SHIDIF_SIZEDLG 0x0002            ///< as large as the free area above the input panel
#define SHIDIF_SIZEDLGFULLSCREEN 0x0004  ///< as large as the main window's client area
#define SHIDIF_SIPDOWN 0x0008            ///< the input panel goes down

/// To be called in WM_INITDIALOG. Gives the dialog a caption. One that is sized lies with its caption on
/// the main window's, so that both have the same area inside: 240 x 294 for full screen, 240 x 268 above
/// the menu bar, 240 x 188 above the panel, or as much more as the main window has. It follows that one's
/// size and place; its WM_SIZE lays its controls out. The OK stands at the lower right when the template has
/// none, 50 x 20, and is the default button. The page of a property sheet only has the input panel put down.
/// False when the structure is not understood.
AYGSHELL_API BOOL SHInitDialog(SHINITDLGINFO* info);

// ---- The input panel

enum SIPSTATE {
  SIP_UP = 0,
  SIP_DOWN,
  SIP_FORCEDOWN,
  SIP_UNCHANGED,
  SIP_INPUTDIALOG,
};

/// Raises the panel or puts it down, as far as the user's setting lets a program do so; true also when
/// that does not. `window` is the one that is typed in or its dialog: the panel stands on that. When the
/// state changes, all windows of the thread with a caption are sent WM_SETTINGCHANGE.
AYGSHELL_API BOOL SHSipPreference(HWND window, SIPSTATE state);

#define SPI_SETSIPINFO 224  ///< wParam of WM_SETTINGCHANGE when the panel was raised or put down
#define SPI_GETSIPINFO 225

#define SIPF_OFF 0x0000
#define SIPF_ON 0x0001
#define SIPF_DOCKED 0x0002
#define SIPF_LOCKED 0x0004

struct SIPINFO {
  DWORD cbSize;  ///< size of this structure
  DWORD fdwFlags;
  RECT rcVisibleDesktop;  ///< the work area that the panel does not cover
  RECT rcSipRect;         ///< where the panel is, or would be
  DWORD dwImDataSize;
  void* pvImData;
};

/// action SPI_GETSIPINFO fills `info`, SPI_SETSIPINFO raises the panel or puts it down by its
/// fdwFlags. False when cbSize or the action is not known; `info` is then as it was.
AYGSHELL_API BOOL SHSipInfo(UINT action, UINT parameter, void* info, UINT change);

// ---- Tap and hold

/// Notification (WM_NOTIFY) that a control sends its parent when the user taps and holds, or presses
/// the right button or the context menu's keys: every list view made by HandheldCreateWindow does. The
/// item under the pointer is selected before. A tap reaches the list when it is released.
#define GN_CONTEXTMENU 1000

struct NMRGINFO {
  NMHDR hdr;
  POINT ptAction;        ///< where, in the monitor's screen coordinates, as TrackPopupMenuEx takes it
  DWORD_PTR dwItemSpec;  ///< index of the item, (DWORD_PTR)-1 for none
};
