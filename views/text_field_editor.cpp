#include "views/text_field_editor.h"

#include <cwchar>
#include <string>

#include "views/field_zoom.h"
#include "views/tab_key.h"
#include "views/text_editor_subclass.h"
#include "views/unowned_box.h"

namespace {

constexpr wchar_t kBackspace = L'\b';

bool sameText(const String& one, const String& other) {
  return std::wcscmp(one.text(), other.text()) == 0;
}

/// The characters that Ctrl and a letter send edit at most through the clipboard; looking at the content
/// tells whether they did.
bool isCommandCharacter(wchar_t character) {
  return character < L' ' && character != kBackspace;
}

/// A single line can't show line breaks.
String shownText(const String& value) {
  const wchar_t* rest = value.text();
  std::wstring shown;
  while (const wchar_t* lineBreak = std::wcsstr(rest, L"\r\n")) {
    shown.append(rest, lineBreak).append(L",");
    rest = lineBreak + 2;
  }
  return shown.append(rest).c_str();
}

void tellOnlyNumbers(HWND editor, const String& fieldName) {
  const std::wstring text = std::wstring(L"Only numbers are allowed\nField '") + fieldName.text() + L"'";
  showUnownedBox(GetAncestor(editor, GA_ROOT), text.c_str(), L"Quivane", MB_ICONINFORMATION);
}

}  // namespace

TextFieldEditor::~TextFieldEditor() {
  detachTextEditor(*this);
}

bool TextFieldEditor::create(const ControlCreation& creation) {
  place_ = creation.place;
  if (!createControl(L"EDIT", L"Edit window", creation)) return false;
  // The control's own limit, 30,000 characters by default, would shorten what is pasted. The filter
  // keeps to the field's.
  SendMessageW(window(), EM_SETLIMITTEXT, 0, 0);
  attachTextEditor(*this);
  moveFocusByTabKey(window());
  return true;
}

void TextFieldEditor::setValue(const String& value) {
  value_ = value;
  hasValue_ = true;
  const String shown = shownText(value_);
  SetWindowTextW(window(), shown.text());
  keystrokes_.textLength = static_cast<std::uint32_t>(shown.length());
}

void TextFieldEditor::load(const FieldSnapshot& field, bool) {
  setValue(field.text);
  loaded_ = field.text;
  changed_ = false;
  hasValue_ = !isUnread(field);
  if (isLocked_ == isUnread(field)) return;
  isLocked_ = isUnread(field);
  SendMessageW(window(), EM_SETREADONLY, isLocked_ || readOnly_, 0);
}

bool TextFieldEditor::takeChange() {
  const bool changed = changed_ || (hasValue_ && !sameText(text(), shownText(value_)));
  changed_ = false;
  return changed && !isLocked_;
}

bool TextFieldEditor::isEdited() const {
  return !isLocked_ && !sameText(text(), loaded_);
}

void TextFieldEditor::position(const ControlPlace& place, UINT flags) {
  FieldEditor::position(place, flags);
  place_ = place;
}

void TextFieldEditor::setSelection(int start, int end) {
  SendMessageW(window(), EM_SETSEL, static_cast<WPARAM>(start), end);
}

bool TextFieldEditor::takeCharacter(wchar_t character) {
  if (isLocked_) return false;
  const KeystrokeVerdict verdict = filterKeystroke(character, rules_, keystrokes_);
  if (verdict == KeystrokeVerdict::accept) {
    if (!isCommandCharacter(character)) changed_ = true;
    return true;
  }
  // The editor may be gone when the message is closed.
  if (verdict == KeystrokeVerdict::rejectWithMessage) tellOnlyNumbers(window(), String(fieldName_));
  return false;
}

void TextFieldEditor::recountText() {
  const String shown = text();
  SetWindowTextW(window(), shown.text());
  keystrokes_.textLength = static_cast<std::uint32_t>(shown.length());
}

void TextFieldEditor::openZoom() {
  zoomOpened_ = true;
  if (!hasValue_) return;
  const HWND control = window();
  FieldZoom zoom(fieldName_, value_, readOnly_);
  if (!zoom.run(GetAncestor(control, GA_ROOT))) return;
  // While the dialog was open, the form may have been taken down.
  if (theTextEditors.find(control) != this || sameText(zoom.text(), value_)) return;
  setValue(zoom.text());
  changed_ = true;
}
