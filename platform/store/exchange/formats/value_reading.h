#pragma once

#include <string>
#include <string_view>

#include "platform/store/exchange/formats/record_reader.h"
#include "platform/store/exchange/formats/value_kind.h"
#include "platform/store/rows/value.h"

namespace store::exchange {

/// Makes the value of a column of that kind from a field of a file. Nothing is rounded, cut or guessed: a
/// text that does not stand for a value of the kind is refused. Returns null when `*cell` holds the value,
/// else the reason, to be put behind the text: "is no whole number". The cell's bytes are those of `field` or
/// of
/// `*scratch`, which holds what had to be made and is to be kept as long.
///
/// Null is a missing field, and an empty one unless the kind takes texts.
const char* readValue(const Field& field, ValueKind kind, std::string* scratch, Cell* cell);

}  // namespace store::exchange
