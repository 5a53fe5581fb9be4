#pragma once

#include <optional>
#include <vector>

#include "base/string.h"
#include "data/values/bytes.h"

/// The content of one field editor, as the Database reads it. What is asked depends on
/// the field's type; an editor answers the rest as suits it.
class FieldValueSource {
 public:
  virtual ~FieldValueSource() = default;

  /// Whether the editor holds something else than the value that it was given to show. Only then is its
  /// content written over that value.
  virtual bool isEdited() const = 0;

  /// The whole text as it stands in the editor: for every field but booleans. An editor of dates gives
  /// the text that it shows.
  virtual String text() const = 0;
  /// For a field of bytes: all of them where the text does not say them, else null. They last until the
  /// editor is changed.
  virtual const Bytes* bytes() const { return nullptr; }
  /// For a boolean field.
  virtual bool isChecked() const = 0;
  /// For a date field: days since 30 December 1899, with the time of day as the fraction (what
  /// dateFromText of data/values/date_value.h makes of a text). Empty when the editor shows no date.
  virtual std::optional<double> date() const = 0;
};

/// An editor for each field of a record, in field order. They live longer than the call that takes them.
using FieldEditors = std::vector<const FieldValueSource*>;
