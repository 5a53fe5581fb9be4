#pragma once

#include "views/form/field_editor.h"

/// The editor of a boolean field: a check box that carries the field's name.
class CheckFieldEditor final : public FieldEditor {
 public:
  /// Before create.
  void setCaption(const String& caption) { caption_ = caption; }
  bool create(const ControlCreation& creation) override;

  void setChecked(bool checked);
  bool isChecked() const override;
  /// Whether the check box stands otherwise than it was set last.
  bool isChanged() const { return checked_ != isChecked(); }

  /// Checked by "-1" alone, the text of a true boolean.
  void load(const FieldSnapshot& field, bool isNewRecord) override;
  bool takeChange() override { return isEdited(); }
  bool hasChange() const override { return isEdited(); }
  bool isEdited() const override { return !isLocked_ && isChanged(); }
  /// The field's name, as it stands beside the box.
  String text() const override { return caption_; }

 private:
  void lockBox() const;

  String caption_;
  bool checked_ = false;
  bool isLocked_ = false;  // nothing is known of the field's value
};
