#include "platform/pocketshell/text/box_letters.h"

#include <commctrl.h>

#include <algorithm>

#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/look/plain_look.h"
#include "platform/pocketshell/text/control_text.h"
#include "platform/pocketshell/text/label_drawing.h"
#include "platform/pocketshell/text/text_lines.h"

namespace pocketshell {

namespace {

bool isText(HWND control) {
  wchar_t name[16] = L"";
  GetClassNameW(control, name, ARRAYSIZE(name));
  return lstrcmpiW(name, WC_STATICW) == 0 &&
         (GetWindowLongPtrW(control, GWL_STYLE) & SS_TYPEMASK) != SS_ICON &&
         GetWindowTextLengthW(control) != 0;
}

RECT placeIn(HWND box, HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, box, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

/// By how much a text is higher than its control; 0 for one that the control draws itself.
int missingHeight(HWND text) {
  const UniqueWindowDc dc(text);
  const ControlFont font(dc.dc(), text);
  const std::wstring words = windowText(text);
  if (!needsOtherFonts(dc.dc(), words)) return 0;
  RECT client{};
  GetClientRect(text, &client);
  const int needed = textLinesHeight(dc.dc(), words, static_cast<int>(client.right));
  return std::max(0, needed - static_cast<int>(client.bottom));
}

void moveBy(HWND control, const RECT& place, int down, int higher) {
  SetWindowPos(control, nullptr, static_cast<int>(place.left), static_cast<int>(place.top) + down,
               static_cast<int>(place.right - place.left),
               static_cast<int>(place.bottom - place.top) + higher, SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The text gets so much more, all below it goes down, and the box grows.
void makeRoom(HWND box, HWND text, int height) {
  const RECT above = placeIn(box, text);
  for (HWND control = GetWindow(box, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
    const RECT place = placeIn(box, control);
    if (control == text) {
      moveBy(control, place, 0, height);
    } else if (place.top >= above.bottom) {
      moveBy(control, place, height, 0);
    }
  }
  RECT outer{};
  GetWindowRect(box, &outer);
  SetWindowPos(box, nullptr, 0, 0, static_cast<int>(outer.right - outer.left),
               static_cast<int>(outer.bottom - outer.top) + height,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void showLettersOfBox(HWND box) {
  for (HWND control = GetWindow(box, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
    if (!isText(control)) continue;
    LabelDrawing::attach(control);
    if (const int height = missingHeight(control)) makeRoom(box, control, height);
  }
}

}  // namespace pocketshell

void HandheldEquipBox(HWND box) {
  pocketshell::followSystemLook(box);
  pocketshell::showLettersOfBox(box);
}
