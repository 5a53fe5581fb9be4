#pragma once

#include <windows.h>

#include <optional>

#include "data/field_value_source.h"
#include "views/child_control.h"

/// The editor of one field of the form: what the form asks of every kind.
class FieldEditor : public FieldValueSource {
 public:
  HWND window() const { return control_.window(); }
  void show(bool visible) { control_.show(visible); }
  void takeFocus() { SetFocus(window()); }
  virtual void position(const ControlPlace& place, UINT flags) { control_.position(place, flags); }

  /// Shows the value of a record that was made current, given as its text. From here on the editor is
  /// unchanged.
  virtual void load(const String& valueText, bool isNewRecord) = 0;
  /// Whether the user changed the content since the last loading. An editor that keeps a mark for that
  /// takes it away.
  virtual bool takeChange() = 0;
  /// Selects what a search found; nothing but for editors of text.
  virtual void selectAll() {}

  bool isChecked() const override { return false; }
  std::optional<double> date() const override { return std::nullopt; }

 protected:
  ChildControl control_;
};
