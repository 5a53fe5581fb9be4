#include "platform/pocketshell/look/plain_look.h"

#include <commctrl.h>

#include <array>
#include <uxtheme.h>
#include <vector>

#include "platform/pocketshell/system_colors.h"
#include "platform/pocketshell/window/window_class.h"

namespace pocketshell {

namespace {

/// An empty name would mean the default one on some systems.
constexpr wchar_t kNoTheme[] = L" ";

struct Pair {
  int ground;
  int text;
};

int brightness(int color) {
  const COLORREF value = GetSysColor(color);
  return 30 * GetRValue(value) + 59 * GetGValue(value) + 11 * GetBValue(value);
}

BOOL CALLBACK collect(HWND window, LPARAM list) {
  reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

/// A list of the windows first: what is sent to one may make or destroy others.
std::vector<HWND> descendantsOf(HWND window) {
  std::vector<HWND> all;
  EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&all));
  return all;
}

void takeLook(HWND control, bool plain) {
  SetWindowTheme(control, plain ? kNoTheme : nullptr, plain ? kNoTheme : nullptr);
}

/// Of the colours that a list view looks for when it is made, some systems' keep the ground. A dialog's has
/// the system's; the program's own pages have colours that the user chose.
void takeGround(HWND control, HWND top) {
  if (!isOfClass(top, L"#32770") || !isOfClass(control, WC_LISTVIEWW)) return;
  SendMessageW(control, LVM_SETBKCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOW)));
}

}  // namespace

bool needsPlainLook() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof(contrast);
  if (SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) &&
      (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0) {
    return true;
  }
  constexpr std::array kPairs = {Pair{COLOR_WINDOW, COLOR_WINDOWTEXT}, Pair{COLOR_BTNFACE, COLOR_BTNTEXT}};
  for (const Pair& pair : kPairs) {
    if (brightness(pair.ground) < brightness(pair.text)) return true;
  }
  return false;
}

void followSystemLook(HWND window) {
  if (!needsPlainLook()) return;
  if ((GetWindowLongPtrW(window, GWL_STYLE) & WS_CHILD) != 0) takeLook(window, true);
  // A list of columns is made with their titles.
  for (const HWND control : descendantsOf(window)) takeLook(control, true);
}

void systemLookChanged() {
  const bool plain = needsPlainLook();
  std::vector<HWND> tops;
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&tops));
  for (const HWND top : tops) {
    for (const HWND control : descendantsOf(top)) {
      SendMessageW(control, WM_SYSCOLORCHANGE, 0, 0);
      takeLook(control, plain);
      takeGround(control, top);
    }
  }
}

}  // namespace pocketshell

BOOL HandheldWantsSystemColors() {
  return pocketshell::needsPlainLook() ? TRUE : FALSE;
}
