#pragma once

#include <windows.h>

#include <adoce.h>
#include <string>

#include "base/string.h"
#include "base/variant.h"
#include "data/outcome.h"
#include "data/values/value_beginning.h"
#include "owners/com_handles.h"

/// One field of a recordset, or no field, which reads as a value that can't be fetched. Results that are
/// references hold until the next call of the same handle.
class FieldHandle {
 public:
  FieldHandle() = default;
  ~FieldHandle() = default;
  FieldHandle(const FieldHandle&) = delete;
  FieldHandle& operator=(const FieldHandle&) = delete;

  /// Refers to `field`, which may be null, from here on; the last value is dropped.
  void attach(ComPtr<IAdoceField> field);

  /// The empty text when it can't be read.
  const String& name();
  /// 0 when it can't be read.
  LONG type();
  /// The bits of adoce_constants.h; none when they can't be read.
  LONG attributes();

  /// The table and the field to whose values this field's refer; both are empty where there is none.
  String referencedTable();
  String referencedField();

  /// Fetches the value into `value`, which is untouched when that fails.
  Outcome read(Variant& value);
  /// The same of at most `mostBytes` of a text or of bytes, as they lie in the file.
  Outcome readBeginning(LONG mostBytes, ValueBeginning& beginning);
  /// The whole value as a field of separated values, with tabs between the fields, of which an import makes
  /// the same value. `text` is untouched when that fails.
  Outcome readSeparated(std::wstring& text);
  /// The whole value as a literal of SQL, unless a text or bytes of it take more than `mostBytes` in the
  /// file. `text` is untouched when that fails.
  Outcome readLiteral(LONG mostBytes, std::wstring& text);
  /// The value without a reason: VT_EMPTY when it can't be fetched.
  const Variant& value();
  /// Fetches the value as text (value_conversion.h), empty when it can't be converted, into `text`, which is
  /// untouched when it can't be fetched.
  Outcome readText(String& text);
  /// The same without a reason: empty when it can't be fetched, too.
  const String& valueAsText();
  /// The value as a 32-bit integer; 0 when it can't be fetched or converted.
  LONG valueAsInteger();
  /// The calendar fields of a value that is a date. False, with `date` untouched, for any other.
  bool valueAsDate(SYSTEMTIME& date);

  Outcome setValue(const Variant& value);

 private:
  ComPtr<IAdoceField> field_;
  Variant value_;
  String text_;
};
