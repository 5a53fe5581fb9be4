#include "views/form/text_field_editor.h"

#include <cwchar>
#include <string>
#include <utility>

#include "data/values/binary_text.h"
#include "views/form/field_zoom.h"
#include "views/form/tab_key.h"
#include "views/form/text_editor_subclass.h"
#include "views/shared/edit_guard.h"
#include "views/shared/shown_text.h"
#include "views/shared/unowned_box.h"

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
  guardEditControls();
  if (!createControl(L"EDIT", L"Edit window", creation)) return false;
  // The control's own limit, 30,000 characters by default, would shorten what is pasted. The filter
  // keeps to the field's.
  SendMessageW(window(), EM_SETLIMITTEXT, 0, 0);
  attachTextEditor(*this);
  moveFocusByTabKey(window());
  if (wasGiven_) fillWindow();
  if (isLookUp()) tip_.create(window());
  return true;
}

void TextFieldEditor::show(bool visible) {
  // The text that the control was made with would be taken for the record's, which may need seconds to come.
  if (visible && !std::exchange(wasShown_, true) && !wasGiven_ && window()) SetWindowTextW(window(), L"");
  FieldEditor::show(visible);
}

String TextFieldEditor::text() const {
  if (!showsAll_) return value_;
  return window() ? windowText(window()) : loadedText_;
}

const Bytes* TextFieldEditor::bytes() const {
  const bool isTyped = showsAll_ && window() && !sameText(windowText(window()), loadedText_);
  return ownBytes_ && !isTyped ? &*ownBytes_ : nullptr;
}

void TextFieldEditor::setValue(const String& value) {
  ownBytes_.reset();
  showBeginning(value, 0);
}

void TextFieldEditor::showBeginning(const String& value, std::uint64_t wholeLength) {
  value_ = value;
  wholeLength_ = wholeLength;
  hasValue_ = true;
  wasGiven_ = true;
  ShownText shown = textForLine(value_.text());
  loadedText_ = shown.text.c_str();
  showsAll_ = shown.isExact && wholeLength_ == 0 && isEditable();
  fillWindow();
  keystrokes_.textLength = static_cast<std::uint32_t>(shown.text.size());
}

void TextFieldEditor::fillWindow() const {
  if (!window()) return;
  const bool isReadOnly = readOnly_ || isLocked_ || !showsAll_;
  const bool wasReadOnly = (GetWindowLongW(window(), GWL_STYLE) & ES_READONLY) != 0;
  if (isReadOnly != wasReadOnly) SendMessageW(window(), EM_SETREADONLY, isReadOnly, 0);
  if (!sameText(windowText(window()), loadedText_)) {
    SetWindowTextW(window(), loadedText_.text());
    return;
  }
  // What is there stays, without being drawn anew, and is as if it had just come.
  SendMessageW(window(), EM_SETSEL, 0, 0);
  SendMessageW(window(), EM_SCROLLCARET, 0, 0);
  SendMessageW(window(), EM_SETMODIFY, FALSE, 0);
  SendMessageW(window(), EM_EMPTYUNDOBUFFER, 0, 0);
}

void TextFieldEditor::load(const FieldSnapshot& field, bool) {
  isLocked_ = isUnread(field);
  const bool isOfBytes = isBytes(field.read.value);
  holdsForeignBytes_ = isOfBytes && !binary_;
  byteCount_ = isOfBytes ? field.read.length : 0;
  ownBytes_.reset();
  // The text that stands for bytes says itself how many they are.
  showBeginning(field.text, field.read.isCut() && !isOfBytes ? field.read.length : 0);
  loaded_ = field.text;
  changed_ = false;
  hasValue_ = !isLocked_;
}

/// Of bytes that are too many to be shown the text says only how many they are, and what is typed into a
/// field of another type would be stored as that.
bool TextFieldEditor::isEditable() const {
  if (holdsForeignBytes_) return false;
  return !binary_ || value_.isEmpty() || bytesFromText(value_.text()).type() != VT_EMPTY;
}

bool TextFieldEditor::takeChange() {
  const bool changed = hasChange();
  changed_ = false;
  return changed;
}

bool TextFieldEditor::hasChange() const {
  // A text that did not come from the line but from the zoom, or was cut there, is not what was loaded.
  const bool isTyped = showsAll_ && !sameText(text(), loadedText_);
  const bool changed = changed_ || (hasValue_ && (isTyped || ownBytes_ || !sameText(value_, loaded_)));
  return changed && !isLocked_;
}

void TextFieldEditor::loadInPlace(const FieldSnapshot& field) {
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(window(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  load(field, false);
  setSelection(static_cast<int>(start), static_cast<int>(end));
}

bool TextFieldEditor::isEdited() const {
  return !isLocked_ && (bytes() != nullptr || !sameText(text(), loaded_));
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
  if (!isCommandCharacter(character)) beginEdit();
  if (!showsAll_) return isCommandCharacter(character);
  const KeystrokeVerdict verdict = filterKeystroke(character, rules_, keystrokes_);
  if (verdict == KeystrokeVerdict::accept) {
    changed_ = true;
    return true;
  }
  // The editor may be gone when the message is closed.
  if (verdict == KeystrokeVerdict::rejectWithMessage) tellOnlyNumbers(window(), String(fieldName_));
  return false;
}

void TextFieldEditor::cutShownText() {
  const auto count = static_cast<std::size_t>(GetWindowTextLengthW(window()));
  if (!showsAll_ || count <= kMostLineRunCount) return;
  const String typed = windowText(window());
  if (!textForLine(typed.text()).isCut()) return;
  setValue(typed);
  changed_ = true;
}

void TextFieldEditor::recountText() {
  const String shown = windowText(window());
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(window(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  SetWindowTextW(window(), shown.text());
  // Who comes back, from a message box say, goes on where he was.
  setSelection(static_cast<int>(start), static_cast<int>(end));
  keystrokes_.textLength = static_cast<std::uint32_t>(shown.length());
}

void TextFieldEditor::openZoom() {
  zoomOpened_ = true;
  if (!hasValue_) return;
  if ((binary_ || holdsForeignBytes_) && bytesHost_.read) {
    openBytesZoom();
  } else {
    openTextZoom();
  }
}

void TextFieldEditor::openTextZoom() {
  const HWND control = window();
  FieldZoom zoom(fieldName_, value_, readOnly_ || !isEditable(), wholeLength_);
  if (!zoom.run(GetAncestor(control, GA_ROOT))) return;
  // While the dialog was open, the form may have been taken down.
  if (theTextEditors.find(control) != this || sameText(zoom.text(), value_)) return;
  beginEdit();
  setValue(zoom.text());
  changed_ = true;
}

void TextFieldEditor::openBytesZoom() {
  const HWND control = window();
  BytesZoom zoom(fieldName_,
                 {.text = value_,
                  .count = byteCount_,
                  .own = bytes(),
                  .readOnly = readOnly_ || holdsForeignBytes_,
                  .canBeTyped = isEditable()},
                 bytesHost_);
  const BytesZoom::Change change = zoom.run(GetAncestor(control, GA_ROOT));
  // While the dialog was open, the form may have been taken down.
  if (change == BytesZoom::Change::none || theTextEditors.find(control) != this) return;
  beginEdit();
  if (change == BytesZoom::Change::text) {
    if (!bytes() && sameText(zoom.text(), value_)) return;
    setValue(zoom.text());
  } else {
    Bytes loaded = zoom.takeBytes();
    setValue(textOfBytes(loaded));
    ownBytes_ = std::move(loaded);
  }
  changed_ = true;
}

void TextFieldEditor::openLookUp() {
  if (!isLookUp() || readOnly_ || isLocked_ || holdsForeignBytes_) return;
  const HWND control = window();
  const std::optional<String> key = lookUpHost_.choose(GetAncestor(control, GA_ROOT));
  // While the dialog was open, the form may have been taken down.
  if (!key || theTextEditors.find(control) != this || sameText(*key, text())) return;
  beginEdit();
  setValue(*key);
  changed_ = true;
}

void TextFieldEditor::showTip(NMTTDISPINFOW& question) {
  tip_.answer(question, isLookUp() ? lookUpHost_.nameOf(text()).text() : L"");
}
