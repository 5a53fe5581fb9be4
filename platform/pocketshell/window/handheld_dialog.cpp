#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/look/plain_look.h"
#include "platform/pocketshell/naming/dialog_names.h"
#include "platform/pocketshell/panel/input_panel.h"
#include "platform/pocketshell/text/dialog_lists.h"
#include "platform/pocketshell/text/own_letters.h"
#include "platform/pocketshell/window/dialog_template.h"
#include "platform/pocketshell/window/list_focus.h"
#include "platform/pocketshell/window/window_places.h"
#include "platform/pocketshell/zoom/present_zoom.h"

using namespace pocketshell;

namespace {

constexpr int kPointsPerInch = 72;

/// What a dialog needs until it is laid out.
struct Opening {
  const DialogTemplate& description;
  DLGPROC procedure;
  LPARAM parameter;
};

/// The dialog that is being opened. Between DialogBoxIndirectParamW and WM_INITDIALOG no other is: a
/// dialog that opens one itself does so later.
Opening* opening = nullptr;

std::optional<DialogTemplate> loadTemplate(HINSTANCE instance, WORD id) {
  const HRSRC place = FindResourceW(instance, MAKEINTRESOURCEW(id), RT_DIALOG);
  if (!place) return std::nullopt;
  const HGLOBAL loaded = LoadResource(instance, place);
  const auto* const bytes = loaded ? static_cast<const std::byte*>(LockResource(loaded)) : nullptr;
  if (!bytes) return std::nullopt;
  return readDialogTemplate({bytes, SizeofResource(instance, place)});
}

/// Dialog fonts are given in points of the system's resolution, ours in pixels.
int fontPoints() {
  const HDC screen = GetDC(nullptr);
  const int perInch = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 0;
  if (screen) ReleaseDC(nullptr, screen);
  return perInch > 0 ? std::max(1, MulDiv(fontHeight(presentZoom()), kPointsPerInch, perInch)) : 8;
}

void layOutControl(HWND control, const DialogItem& item) {
  const RECT place = handheldPlaceOf(item);
  const Place told = {static_cast<int>(place.left), static_cast<int>(place.top),
                      static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(presentFont()), FALSE);
  drawOwnLetters(control);
  showFocusOf(control);
  rememberPlace(control, told);
  applyPlace(control, nullptr, told, SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The system rounds the font to whole points, and with it all places: here they become exact.
void layOutDialog(HWND dialog, const DialogTemplate& description) {
  RECT outer{};
  RECT client{};
  GetWindowRect(dialog, &outer);
  GetClientRect(dialog, &client);
  const RECT inside =
      toMonitor(handheldPlaceOf({0, 0, 0, description.width, description.height}), presentZoom());
  SetWindowPos(dialog, nullptr, 0, 0,
               static_cast<int>(outer.right - outer.left - client.right + inside.right),
               static_cast<int>(outer.bottom - outer.top - client.bottom + inside.bottom),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  // The controls were made in the order of the template.
  HWND control = GetWindow(dialog, GW_CHILD);
  for (const DialogItem& item : description.items) {
    while (control && static_cast<DWORD>(GetDlgCtrlID(control)) != item.id) {
      control = GetWindow(control, GW_HWNDNEXT);
    }
    if (!control) return;
    layOutControl(control, item);
    control = GetWindow(control, GW_HWNDNEXT);
  }
}

INT_PTR CALLBACK openingProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!opening) return FALSE;
  if (message == WM_MEASUREITEM && DialogLists::measure(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)))
    return TRUE;
  if (message != WM_INITDIALOG) return opening->procedure(dialog, message, wParam, lParam);
  const Opening dialogOpening = *std::exchange(opening, nullptr);
  const DialogLists& lists = DialogLists::attach(dialog);
  layOutDialog(dialog, dialogOpening.description);
  lists.fit();
  followSystemLook(dialog);
  nameByLabels(dialog);
  InputPanel::standOn(dialog);
  SetWindowLongPtrW(dialog, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(dialogOpening.procedure));
  return dialogOpening.procedure(dialog, message, wParam, dialogOpening.parameter);
}

}  // namespace

INT_PTR HandheldDialogBox(HINSTANCE instance, WORD dialogId, HWND parent, DLGPROC procedure,
                          LPARAM parameter) {
  const auto description = loadTemplate(instance, dialogId);
  if (!description) return -1;
  const std::vector<DWORD> atZoom = dialogWithFont(*description, fontPoints(), kFontFace);
  Opening own = {*description, procedure, parameter};
  opening = &own;
  const INT_PTR result = DialogBoxIndirectParamW(instance, reinterpret_cast<LPCDLGTEMPLATEW>(atZoom.data()),
                                                 parent, openingProcedure, parameter);
  // Still set only when the dialog was never made.
  if (opening == &own) opening = nullptr;
  return result;
}
