#pragma once

#include <windows.h>

#include "views/form/editor_registry.h"
#include "views/form/field_editor.h"

/// The editor of a date field: a text that opens a calendar when it is tapped.
class DateFieldEditor final : public FieldEditor {
 public:
  DateFieldEditor();
  ~DateFieldEditor() override;
  DateFieldEditor(const DateFieldEditor&) = delete;
  DateFieldEditor& operator=(const DateFieldEditor&) = delete;

  void setFieldName(const String& name) { fieldName_ = name; }
  /// Shows "None" at first, unless it was loaded before.
  bool create(const ControlCreation& creation) override;

  /// Shows a date as the field's text gives it, or "None", and remembers it as unchanged.
  void setText(const String& text);
  void showToday();
  const String& shownText() const { return shownText_; }
  /// Whether the window has another text than setText or showToday gave it.
  bool isChanged() const;

  /// Lets the user choose a date, or none, in a calendar. Only the window's text changes. The editor may
  /// be gone afterwards.
  void openCalendar();

  /// In a new record today is shown.
  void load(const FieldSnapshot& field, bool isNewRecord) override;
  bool takeChange() override { return hasChange(); }
  bool hasChange() const override { return !isLocked_ && isChanged(); }
  /// A text that names the moment which was shown before is no other value.
  bool isEdited() const override;
  /// What setText or showToday gave it, as long as the window shows that.
  String text() const override;
  std::optional<double> date() const override;

  void position(const ControlPlace& place, UINT flags) override;
  /// As last given to create, or to position with success.
  const ControlPlace& place() const { return place_; }

 private:
  ControlPlace place_;
  String shownText_;
  String givenText_;       // what the window was given to show of it
  bool isLocked_ = false;  // nothing is known of the field's value
  String fieldName_;
};

using DateEditorRegistry = EditorRegistry<DateFieldEditor>;
extern DateEditorRegistry theDateEditors;
