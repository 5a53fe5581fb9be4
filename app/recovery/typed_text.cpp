#include "app/recovery/typed_text.h"

#include <windows.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>
#include <vector>

#include "app/recovery/fault_watch.h"
#include "app/window/program_state.h"
#include "data/database/record_counters.h"
#include "data/values/field_kinds.h"
#include "views/dialog/current_dialog.h"
#include "views/form/field_editor.h"
#include "views/shared/child_control.h"
#include "views/shared/shown_text.h"

namespace {

constexpr wchar_t kLineEnd[] = L"\r\n";

void addItem(std::wstring& text, const std::wstring& name, const std::wstring& content) {
  text += name + L":" + kLineEnd + content + kLineEnd + kLineEnd;
}

std::wstring contentOf(std::uint32_t field, const FieldValueSource& editor) {
  if (fieldKind(theDocument->fieldType(field)).editor == FieldEditorKind::checkBox)
    return editor.isChecked() ? L"True" : L"False";
  return editor.text().text();
}

/// The fields of the form that may hold something else than their record: those that did when it was looked
/// last, and the one that has the keyboard, which alone the user can change. To ask all of thousands takes
/// too long.
std::vector<std::uint32_t> fieldsInDoubt;

void doubtFieldWithFocus(const FieldEditors& editors) {
  const HWND focus = GetFocus();
  if (!focus) return;
  for (std::uint32_t field = 0; field < editors.size(); ++field) {
    // The editors of a form are windows.
    if (static_cast<const FieldEditor*>(editors[field])->window() != focus) continue;
    const auto place = std::lower_bound(fieldsInDoubt.begin(), fieldsInDoubt.end(), field);
    if (place == fieldsInDoubt.end() || *place != field) fieldsInDoubt.insert(place, field);
    return;
  }
}

/// What the form's editors hold that is not in the record.
std::wstring typedIntoForm() {
  std::wstring typed;
  if (!theDocument || !theDocument->isRecordShown() || theDocument->viewMode() != ViewMode::form) {
    fieldsInDoubt.clear();
    return typed;
  }
  const FieldEditors editors = theFormView.editors();
  doubtFieldWithFocus(editors);
  std::erase_if(fieldsInDoubt, [&](std::uint32_t field) {
    if (field >= editors.size()) return true;
    const auto& editor = static_cast<const FieldEditor&>(*editors[field]);
    // A text with line breaks is shown as something else than its record holds, also when nobody has typed.
    const bool isTyped = editor.hasChange() && editor.isEdited();
    if (isTyped) addItem(typed, theDocument->fieldName(field).text(), contentOf(field, editor));
    return !isTyped;
  });
  return typed;
}

/// Where the form's record is.
std::wstring placeOfRecord() {
  const std::wstring source =
      theDocument->openedFromQuery() ? theDocument->queryName().text() : theDocument->tableName().text();
  const std::wstring number =
      theDocument->isNewRecordPending() ? L"new record" : std::to_wstring(currentRecord);
  return std::wstring(theDocument->databasePath().text()) + L", " + source + L", " + number;
}

bool isClass(HWND window, const wchar_t* wanted) {
  wchar_t name[32] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return CompareStringOrdinal(name, -1, wanted, -1, TRUE) == CSTR_EQUAL;
}

/// Edit controls know themselves whether the user has typed into them.
BOOL CALLBACK addEdit(HWND control, LPARAM state) {
  if (!isClass(control, L"Edit") || (GetWindowLongW(control, GWL_STYLE) & (ES_PASSWORD | ES_READONLY)) != 0)
    return TRUE;
  if (SendMessageW(control, EM_GETMODIFY, 0, 0) == 0) return TRUE;
  *reinterpret_cast<std::wstring*>(state) += withoutSoftBreaks(windowText(control).text()) + kLineEnd;
  return TRUE;
}

BOOL CALLBACK addDialog(HWND window, LPARAM state) {
  if (!IsWindowVisible(window) || !isClass(window, L"#32770")) return TRUE;
  std::wstring typed;
  EnumChildWindows(window, addEdit, reinterpret_cast<LPARAM>(&typed));
  if (!typed.empty()) addItem(*reinterpret_cast<std::wstring*>(state), windowText(window).text(), typed);
  return TRUE;
}

// ---- When

/// A message was taken since the last look that may have changed what is typed.
bool mayHaveChanged = false;

/// Most messages only move the mouse and paint.
bool mayChange(UINT message) {
  constexpr UINT kWithoutEffect[] = {WM_PAINT, WM_TIMER, WM_MOUSEMOVE, WM_NCMOUSEMOVE};
  return std::find(std::begin(kWithoutEffect), std::end(kWithoutEffect), message) == std::end(kWithoutEffect);
}

void keep() {
  try {
    FaultWatch::keepTyped(typedText());
  } catch (const std::exception&) {
    // What was kept before is better than nothing.
  }
}

/// Before each message what the one before it has done is kept: a key comes as several messages.
LRESULT CALLBACK messageTaken(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HC_ACTION && wParam == PM_REMOVE) {
    if (std::exchange(mayHaveChanged, false)) keep();
    mayHaveChanged = mayChange(reinterpret_cast<const MSG*>(lParam)->message);
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

std::wstring typedText() {
  std::wstring text = typedIntoForm();
  if (!text.empty()) text = placeOfRecord() + kLineEnd + kLineEnd + text;
  if (currentDialog) EnumThreadWindows(GetCurrentThreadId(), addDialog, reinterpret_cast<LPARAM>(&text));
  return text;
}

TypedTextKeeper::TypedTextKeeper()
    : hook_(SetWindowsHookExW(WH_GETMESSAGE, messageTaken, nullptr, GetCurrentThreadId())) {}
