#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "views/bytes/bytes_zoom.h"
#include "views/form/editor_registry.h"
#include "views/form/field_editor.h"
#include "views/form/keystroke_filter.h"
#include "views/lookup/control_tip.h"

/// What the editor of a field that refers to records of another table asks of the program.
struct LookUpHost {
  /// The name of the record with this key; empty when there is none.
  std::function<String(const String& key)> nameOf;
  /// The user chooses a record over this window: its key; none when he cancels.
  std::function<std::optional<String>(HWND owner)> choose;
};

/// The editor of a field of text or numbers: one line. It takes only the characters that the field can
/// hold, shows line breaks as commas, and opens the whole text in a dialog at the second tap.
class TextFieldEditor final : public FieldEditor {
 public:
  TextFieldEditor() = default;
  ~TextFieldEditor() override;
  TextFieldEditor(const TextFieldEditor&) = delete;
  TextFieldEditor& operator=(const TextFieldEditor&) = delete;

  // ---- Before create

  void setFieldName(const String& name) { fieldName_ = name; }
  void setNumeric(bool numeric) { rules_.numeric = numeric; }
  void setMinusAllowed(bool allowed) { rules_.minusAllowed = allowed; }
  void setMaximumLength(std::uint32_t length) { rules_.maximumLength = length; }
  /// A field of bytes, whose text is pairs of digits.
  void setBinary(bool binary) { binary_ = binary; }
  /// For the dialog in which bytes are shown, also in a field of another type.
  void setBytesHost(BytesZoomHost host) { bytesHost_ = std::move(host); }
  /// For a field that refers to other records.
  void setLookUpHost(LookUpHost host) { lookUpHost_ = std::move(host); }
  void setReadOnlyField(bool readOnly) { readOnly_ = readOnly; }

  bool create(const ControlCreation& creation) override;

  // ---- The value

  /// Keeps the text and shows it with commas for its line breaks. Of a text that a line can't show as it is
  /// the beginning is shown, or what can be (views/shared/shown_text.h), and can't be typed into.
  void setValue(const String& value);
  /// What was loaded or confirmed in the zoom dialog last, with its line breaks.
  const String& value() const { return value_; }
  /// What the window shows; the value where the window does not show all of it.
  String text() const override;
  /// Those that were loaded from a file, as long as nothing was typed over them.
  const Bytes* bytes() const override;

  void load(const FieldSnapshot& field, bool isNewRecord) override;
  /// A key that was taken counts once; a confirmed zoom and a content that is not what was loaded do as long
  /// as nothing else is loaded: the Delete key and the clipboard send no character, and what could not be
  /// stored is tried again.
  bool takeChange() override;
  bool hasChange() const override;
  void loadInPlace(const FieldSnapshot& field) override;
  bool isChanged() const { return changed_; }
  /// Line breaks, which are shown as commas, are written as such when their record is written.
  bool isEdited() const override;

  // ---- The window

  /// As long as no value was given nothing is shown in it.
  void show(bool visible) override;
  void position(const ControlPlace& place, UINT flags) override;
  /// As last given to create or position.
  const ControlPlace& place() const { return place_; }
  /// Positions count characters from 0; -1 for `end` is the end of the text.
  void setSelection(int start, int end);
  void selectAll() override { setSelection(0, -1); }

  // ---- What the subclass procedure reports

  /// Judges a character from the keyboard, and tells the user of one that a number can't have. True when
  /// the control shall get it.
  bool takeCharacter(wchar_t character);
  /// After the user has typed or pasted. Of a text that has become more than a line draws the beginning is
  /// shown, as setValue does it.
  void cutShownText();
  /// The editor has lost the focus: its text is written back and its characters are counted anew.
  void recountText();
  /// Shows the whole text, or bytes, in a dialog, to be edited unless the field is read-only. Nothing happens
  /// while no value was set. The editor may be gone afterwards.
  void openZoom();

  /// Lets the user choose the record to which the field refers. Nothing happens for a field that refers to
  /// none and for one that can't be changed. The editor may be gone afterwards.
  void openLookUp();
  bool isLookUp() const { return lookUpHost_.choose != nullptr; }
  /// The tooltip is to be shown: the name of the record to which the text refers.
  void showTip(NMTTDISPINFOW& question);

  bool tabPressed() const { return keystrokes_.tabPressed; }
  bool zoomOpened() const { return zoomOpened_; }

 private:
  bool isEditable() const;
  void showBeginning(const String& value, std::uint64_t wholeLength);
  void fillWindow() const;
  void openTextZoom();
  void openBytesZoom();

  static constexpr std::uint32_t kDefaultMaximumLength = 30000;

  ControlPlace place_;
  KeystrokeRules rules_{.maximumLength = kDefaultMaximumLength};
  KeystrokeState keystrokes_;
  bool changed_ = false;
  bool zoomOpened_ = false;
  bool readOnly_ = false;
  bool binary_ = false;
  bool holdsForeignBytes_ = false;  // bytes in a field of another type
  bool hasValue_ = false;
  bool wasShown_ = false;
  bool wasGiven_ = false;  // something to show, and be it nothing
  bool showsAll_ = true;   // but for the commas
  bool isLocked_ = false;  // nothing is known of the field's value
  LookUpHost lookUpHost_;
  ControlTip tip_;
  BytesZoomHost bytesHost_;
  std::optional<Bytes> ownBytes_;  // that were loaded from a file
  std::uint64_t byteCount_ = 0;    // of the value that was given to show
  String fieldName_;
  String value_;
  std::uint64_t wholeLength_ = 0;  // of the field's value, of which value_ is the beginning; 0 if it is all
  String loaded_;                  // the value that was given to show
  String loadedText_;              // what the window was given to show of it
};

using TextEditorRegistry = EditorRegistry<TextFieldEditor>;
extern TextEditorRegistry theTextEditors;

/// To a text editor of the form: opens its zoom dialog.
inline constexpr UINT kZoomMessage = WM_USER + 202;
/// To a text editor of the form: opens the list of the records to which it may refer.
inline constexpr UINT kLookUpMessage = WM_USER + 203;
/// To a text editor of the form: sends the editor that had the focus last EM_SETREADONLY with this wParam.
inline constexpr UINT kSetReadOnlyMessage = WM_USER + 204;
