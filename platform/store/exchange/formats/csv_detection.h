#pragma once

#include "platform/store/exchange/bytes/encoding.h"

namespace store::exchange {

/// Finds the separator of a file of separated values: of comma, semicolon, tab and bar the one that parts the
/// most of its first records into equally many fields, and more than one. A comma when none does. The one
/// that a first line names ("sep=;") goes before. Leaves `source` anywhere.
Status detectSeparator(ByteSource& source, Encoding encoding, char* separator);

/// Whether `source` begins as JSON does: with an object or an array of objects. Leaves it anywhere.
Status detectJson(ByteSource& source, Encoding encoding, bool* isJson);

}  // namespace store::exchange
