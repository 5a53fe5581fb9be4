#pragma once

#include <cstdint>
#include <span>

#include "base/string.h"
#include "data/values/schema.h"
#include "data/values/value_beginning.h"

class FieldValueSource;
class Variant;

/// Which editor a field has on the form.
enum class FieldEditorKind : std::uint8_t {
  text,
  digits,        ///< whole numbers
  signedDigits,  ///< with a minus sign too
  bytes,         ///< pairs of hexadecimal digits
  checkBox,
  date,
};

/// All that the program knows of a type of fields. What a type is to the store (how it is kept, sorted and
/// searched) is the store's own.
struct FieldKind {
  FieldType type;
  /// What the user reads when a table is designed, null for a type that is not offered. The labels are the
  /// system's own, with the doubled parenthesis and the ranges that they name.
  const wchar_t* label;
  const wchar_t* sqlType;  ///< how CREATE TABLE spells it; null as the label
  FieldEditorKind editor;
  bool isSearched;  ///< by a search for text
  /// A value of such a field as the user reads it; for a boolean the automation's wording, "-1" for true.
  /// The empty text for a null and for a value that can't be converted; "None" for a date field without a
  /// date. A value that is not of its field's type (in files of other programs) is shown as the text that it
  /// converts to.
  String (*textOf)(const Variant& value);
  /// What an editor's content is as a value of such a field, in which `stored` stands now. VT_EMPTY, which
  /// clears the field, for a content that can't be converted. Null where such fields are not written.
  Variant (*valueOf)(const FieldValueSource& editor, const Variant& stored);
};

/// For a type that is not known a kind that shows "<not recognised>" and is not written.
const FieldKind& fieldKind(FieldType type);

/// A value of such a field as the user reads it; of one that was cut the beginning.
String textOfBeginning(FieldType type, const ValueBeginning& beginning);

/// Those that are offered when a table is designed, in that order, which is also the alphabetical order of
/// the labels.
std::span<const FieldKind> offeredFieldKinds();
