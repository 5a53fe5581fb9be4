#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/store/automation/values/com_values.h"

namespace automation {

/// What the collections have in common: items by number, and For Each.

/// The 0-based number that a VARIANT of any numeric type stands for, by reference too. Empty for other
/// types, negative numbers, fractions and numbers beyond `count`.
std::optional<std::size_t> itemIndexOf(const VARIANT& index, std::size_t count);

/// An IEnumVARIANT over `items`, with one reference for the caller. Throws std::bad_alloc.
IUnknown* newEnumerator(std::vector<ComPtr<IDispatch>> items);

}  // namespace automation
