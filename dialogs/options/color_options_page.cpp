#include <windows.h>

#include <commdlg.h>
#include <prsht.h>

#include <cstddef>

#include "base/settings/app_colors.h"
#include "base/settings/options_pages.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/options/color_swatch.h"
#include "dialogs/options/options_ids.h"
#include "dialogs/options/options_page_procedures.h"
#include "dialogs/options/options_page_window.h"
#include "owners/late_function.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_growth.h"
#include "views/shared/boxes_over_window.h"
#include "views/shared/unowned_box.h"

namespace {

/// Of the list, as in the template, in handheld pixels.
constexpr int kListLeft = 6;
constexpr int kListTop = 16;
constexpr int kListWidth = 228;
constexpr int kListHeight = 161;

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_COLORS, .wider = true, .higher = true},
    {.id = IDC_COLOR_PICK, .down = true},
    {.id = IDC_COLOR_RESET, .down = true},
    {.id = IDC_CURRENT_COLOR, .down = true},
};

/// There is one sheet at a time.
DialogGrowth growth(kGrowth);

/// The selected entry of the live colour table, null for none.
std::uint32_t* selectedColor(HWND page) {
  const auto index = static_cast<std::size_t>(optionspage::objectOf<ColorOptionsPage>(page).selectedIndex);
  return index < appColors.size() ? &appColors[index] : nullptr;
}

void refreshSwatch(HWND page) {
  optionspage::objectOf<ColorOptionsPage>(page).selectedIndex =
      listbox::selectedIndex(GetDlgItem(page, IDC_COLORS));
  if (!selectedColor(page)) return;
  const RECT swatch = swatchPlace();
  InvalidateRect(page, &swatch, TRUE);
  UpdateWindow(page);
}

constinit const LateFunction<decltype(ChooseColorW)> chooseColor{L"comdlg32.dll", "ChooseColorW"};

void pickColor(HWND page) {
  std::uint32_t* const color = selectedColor(page);
  if (!color) return;
  CHOOSECOLORW choice{};
  choice.lStructSize = sizeof(choice);
  choice.hwndOwner = page;
  choice.rgbResult = *color;
  choice.lpCustColors = customColors.data();
  choice.Flags = CC_RGBINIT | CC_FULLOPEN;
  const BoxesOverWindow place(GetAncestor(page, GA_ROOT));
  if (!chooseColor(&choice)) return;
  *color = choice.rgbResult;
  refreshSwatch(page);
}

void resetColors(HWND page) {
  const int answer =
      showBox(page, L"Reset all colors to their defaults?", L"Quivane", MB_YESNO | MB_SETFOREGROUND);
  if (answer != IDYES) return;
  resetAppColors();
  refreshSwatch(page);
}

void fillList(HWND list) {
  // The system has cut the list to whole lines of its own font; now it has ours.
  HandheldMoveWindow(list, kListLeft, kListTop, kListWidth, kListHeight, FALSE);
  for (const AppColorDefault& entry : kAppColorDefaults) listbox::append(list, entry.name);
  listbox::select(list, 0);
}

LRESULT opened(HWND page, UINT, WPARAM, LPARAM lParam) {
  optionspage::open(page, lParam);
  optionspage::objectOf<ColorOptionsPage>(page).window = page;
  fillList(GetDlgItem(page, IDC_COLORS));
  HandheldNameControl(GetDlgItem(page, IDC_COLORS), 0, L"Colors");
  growth.begin(page);
  growth.layOut();
  optionspage::objectOf<ColorOptionsPage>(page).selectedIndex = 0;
  PostMessageW(page, kRedrawSwatchMessage, 0, 0);
  return TRUE;
}

LRESULT sized(HWND page, UINT, WPARAM, LPARAM) {
  growth.layOut();
  InvalidateRect(page, nullptr, TRUE);
  return FALSE;
}

LRESULT redrawAsked(HWND page, UINT, WPARAM, LPARAM) {
  refreshSwatch(page);
  return TRUE;
}

LRESULT commanded(HWND page, UINT, WPARAM wParam, LPARAM) {
  if (wParam == MAKEWPARAM(IDC_COLORS, LBN_SELCHANGE)) refreshSwatch(page);
  if (optionspage::isClick(wParam, IDC_COLOR_PICK)) pickColor(page);
  if (optionspage::isClick(wParam, IDC_COLOR_RESET)) resetColors(page);
  return FALSE;
}

LRESULT notified(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  if (reinterpret_cast<const NMHDR*>(lParam)->code == PSN_SETACTIVE) refreshSwatch(page);
  return optionspage::answerSheet(page, message, wParam, lParam);
}

/// Here, so that the swatch is there again after another window has covered it.
LRESULT painted(HWND page, UINT, WPARAM, LPARAM) {
  PAINTSTRUCT paint{};
  const HDC dc = BeginPaint(page, &paint);
  if (const std::uint32_t* const color = selectedColor(page)) drawSwatch(dc, *color);
  EndPaint(page, &paint);
  return TRUE;
}

LRESULT closed(HWND page, UINT, WPARAM, LPARAM) {
  listbox::clear(GetDlgItem(page, IDC_COLORS));
  optionspage::objectOf<ColorOptionsPage>(page).window = nullptr;
  growth = DialogGrowth(kGrowth);
  return FALSE;
}

constexpr MessageRow kMessages[] = {
    {WM_INITDIALOG, opened}, {kRedrawSwatchMessage, redrawAsked},
    {WM_COMMAND, commanded}, {WM_NOTIFY, notified},
    {WM_PAINT, painted},     {WM_SIZE, sized},
    {WM_DESTROY, closed},
};

}  // namespace

INT_PTR CALLBACK colorOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return optionspage::answer(kMessages, page, message, wParam, lParam);
}
