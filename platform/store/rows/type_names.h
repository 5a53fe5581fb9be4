#pragma once

#include <string_view>

namespace store {

/// Whether `declaredType` is the name of a type in the handheld's vocabulary or of a synonym, with or without
/// a size behind it, and not only one of which SQLite makes what its letters suggest.
bool isKnownType(std::string_view declaredType);

}  // namespace store
