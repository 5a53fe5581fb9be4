#include "app/recovery/typed_text.h"

#include <windows.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <optional>
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

void doubtFieldWithFocus(const FieldEditors& editors, HWND focus) {
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
std::wstring typedIntoForm(HWND focus) {
  std::wstring typed;
  if (!theDocument || !theDocument->isRecordShown() || theDocument->viewMode() != ViewMode::form) {
    fieldsInDoubt.clear();
    return typed;
  }
  const FieldEditors editors = theFormView.editors();
  doubtFieldWithFocus(editors, focus);
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

// ---- Dialogs

bool isClass(HWND window, const wchar_t* wanted) {
  wchar_t name[32] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return CompareStringOrdinal(name, -1, wanted, -1, TRUE) == CSTR_EQUAL;
}

struct Dialog {
  HWND window;
  std::vector<HWND> edits;
};

using Windows = std::vector<HWND>;

/// No exception may pass through the system, which calls this.
BOOL CALLBACK addWindow(HWND window, LPARAM windows) noexcept {
  auto& found = *reinterpret_cast<std::optional<Windows>*>(windows);
  try {
    found->push_back(window);
    return TRUE;
  } catch (const std::bad_alloc&) {
    found.reset();
    return FALSE;
  }
}

/// Those of a class, of what `enumerate` goes through. Throws std::bad_alloc.
template <typename Enumerate>
Windows windowsOfClass(const wchar_t* wanted, Enumerate enumerate) {
  std::optional<Windows> found(std::in_place);
  enumerate(addWindow, reinterpret_cast<LPARAM>(&found));
  if (!found) throw std::bad_alloc();
  std::erase_if(*found, [wanted](HWND window) { return !isClass(window, wanted); });
  return *std::move(found);
}

/// The dialogs of the thread and the edit controls in them. They are asked for anew when another window has
/// got the keyboard, as each new dialog does, and each edit control that is made within one: under Wine the
/// children of each window are a question to another process.
class Dialogs {
 public:
  const std::vector<Dialog>& present(HWND focus) {
    if (currentDialog != lookedAt_ || focus != focus_) {
      lookedAt_ = nullptr;  // for the case that it fails
      dialogs_ = openNow();
      lookedAt_ = currentDialog;
      focus_ = focus;
    }
    return dialogs_;
  }

 private:
  static std::vector<Dialog> openNow() {
    const auto ofThread = [](WNDENUMPROC add, LPARAM windows) {
      EnumThreadWindows(GetCurrentThreadId(), add, windows);
    };
    std::vector<Dialog> all;
    for (const HWND dialog : windowsOfClass(L"#32770", ofThread)) {
      const auto within = [dialog](WNDENUMPROC add, LPARAM windows) {
        EnumChildWindows(dialog, add, windows);
      };
      all.push_back({dialog, windowsOfClass(L"Edit", within)});
    }
    return all;
  }

  std::vector<Dialog> dialogs_;
  HWND lookedAt_ = nullptr;
  HWND focus_ = nullptr;
};

Dialogs dialogs;

/// Edit controls know themselves whether the user has typed into them.
bool isTypedInto(HWND edit) {
  return IsWindow(edit) && (GetWindowLongW(edit, GWL_STYLE) & (ES_PASSWORD | ES_READONLY)) == 0 &&
         SendMessageW(edit, EM_GETMODIFY, 0, 0) != 0;
}

void addTypedIntoDialogs(std::wstring& text, HWND focus) {
  for (const Dialog& dialog : dialogs.present(focus)) {
    if (!IsWindowVisible(dialog.window)) continue;
    std::wstring typed;
    for (const HWND edit : dialog.edits) {
      if (isTypedInto(edit)) typed += withoutSoftBreaks(windowText(edit).text()) + kLineEnd;
    }
    if (!typed.empty()) addItem(text, windowText(dialog.window).text(), typed);
  }
}

}  // namespace

std::wstring typedText() {
  const HWND focus = GetFocus();
  std::wstring text = typedIntoForm(focus);
  if (!text.empty()) text = placeOfRecord() + kLineEnd + kLineEnd + text;
  if (currentDialog) addTypedIntoDialogs(text, focus);
  return text;
}

void keepTypedText() noexcept {
  try {
    FaultWatch::keepTyped(typedText());
  } catch (const std::exception&) {
    // What was kept before is better than nothing.
  }
}

bool mayChangeTypedText(UINT message) noexcept {
  constexpr UINT kWithoutEffect[] = {WM_PAINT, WM_TIMER, WM_MOUSEMOVE, WM_NCMOUSEMOVE};
  return std::find(std::begin(kWithoutEffect), std::end(kWithoutEffect), message) == std::end(kWithoutEffect);
}
