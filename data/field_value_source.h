#pragma once

#include <optional>

#include "base/string.h"

/// The content of one field editor, as Database::setValueFromEditor reads it. What is asked depends on
/// the field's type; an editor answers the rest as suits it.
class FieldValueSource {
 public:
  virtual ~FieldValueSource() = default;

  /// The whole text as it stands in the editor: for every field but booleans. An editor of dates gives
  /// the text that it shows.
  virtual String text() const = 0;
  /// For a boolean field.
  virtual bool isChecked() const = 0;
  /// For a date field: days since 30 December 1899, with the time of day as the fraction (what
  /// dateFromText of data/date_value.h makes of a text). Empty when the editor shows no date.
  virtual std::optional<double> date() const = 0;
};
