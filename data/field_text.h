#pragma once

#include "base/string.h"
#include "base/variant.h"
#include "data/schema.h"

/// A value of a field of that type as the user reads it; for a boolean the automation's wording, "-1" for
/// true. The empty text for a null and for a value that can't be converted; "None" for a date field
/// without a date; "<not recognised>" for a field of a type that is not known. A value that is not of its
/// field's type (in files of other programs) is shown as the text that it converts to.
String fieldText(FieldType type, const Variant& value);
