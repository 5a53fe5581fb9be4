#pragma once

#include <windows.h>

#include <optional>

#include "data/values/field_value_source.h"
#include "data/values/record_snapshot.h"
#include "views/shared/child_control.h"

/// Hears when the user begins to change a field, before it is changed.
class EditWatcher {
 public:
  virtual ~EditWatcher() = default;
  virtual void editBegun() = 0;
};

/// The editor of one field of the form: what the form asks of every kind. Before its control is created it
/// holds what it was loaded with and answers for that; the control then shows it.
class FieldEditor : public FieldValueSource {
 public:
  /// Creates the control, hidden; once.
  virtual bool create(const ControlCreation& creation) = 0;
  /// Null before that.
  HWND window() const { return control_.window(); }
  virtual void show(bool visible) { control_.show(visible); }
  void takeFocus() const {
    // Of a window that is disabled by a dialog the system gives it to nobody; only to be refused costs, too.
    const HWND root = window() ? GetAncestor(window(), GA_ROOT) : nullptr;
    if (!root || IsWindowEnabled(root)) SetFocus(window());
  }
  virtual void position(const ControlPlace& place, UINT flags) { moveControl(place, flags); }

  /// `watcher` outlives the editor.
  void watchEdits(EditWatcher& watcher) { watcher_ = &watcher; }

  /// Shows what the field was read as. From here on the editor is unchanged. Where nothing is known of the
  /// value nothing is shown, and the editor takes nothing from the user until it is loaded again.
  virtual void load(const FieldSnapshot& field, bool isNewRecord) = 0;
  /// Whether the user changed the content since the last loading. An editor that keeps a mark for that
  /// takes it away.
  virtual bool takeChange() = 0;
  /// The same, and the mark stays.
  virtual bool hasChange() const = 0;
  /// Loads another reading; the place in the text stays where it is, as far as the text reaches.
  virtual void loadInPlace(const FieldSnapshot& field) { load(field, false); }
  /// Selects what a search found; nothing but for editors of text.
  virtual void selectAll() {}

  bool isChecked() const override { return false; }
  std::optional<double> date() const override { return std::nullopt; }

 protected:
  /// Each is true when the system did it.
  bool createControl(const wchar_t* className, const wchar_t* text, const ControlCreation& creation) {
    return control_.create(className, text, creation);
  }
  bool moveControl(const ControlPlace& place, UINT flags) const { return control_.position(place, flags); }
  static bool isUnread(const FieldSnapshot& field) { return field.state == FieldSnapshot::State::unreadable; }

  /// To be called at every key and choice that may change the field, also where it can't be changed.
  void beginEdit() const {
    if (watcher_) watcher_->editBegun();
  }

 private:
  ChildControl control_;
  EditWatcher* watcher_ = nullptr;
};
