#include "platform/pocketshell/text/own_letters.h"

#include <commctrl.h>

#include "platform/pocketshell/text/check_box_drawing.h"
#include "platform/pocketshell/text/label_drawing.h"
#include "platform/pocketshell/text/list_drawing.h"

namespace pocketshell {

void drawOwnLetters(HWND control) {
  wchar_t name[32];
  if (GetClassNameW(control, name, ARRAYSIZE(name)) == 0) return;
  if (lstrcmpiW(name, WC_LISTVIEWW) == 0) drawLettersOf(control);
  if (lstrcmpiW(name, WC_STATICW) == 0) LabelDrawing::attach(control);
  if (lstrcmpiW(name, WC_BUTTONW) == 0) CheckBoxDrawing::attach(control);
}

}  // namespace pocketshell
