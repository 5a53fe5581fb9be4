#pragma once

#include <cstdint>

#include "base/variant.h"

/// A value of which no more than the beginning was fetched: texts and bytes may be longer than anybody reads.
struct ValueBeginning {
  Variant value;                  ///< the whole value, or the beginning of a text or of bytes
  std::uint64_t length = 0;       ///< of the whole: the characters of a text, or bytes; 0 of any other value
  std::uint64_t fingerprint = 0;  ///< of the whole where it was cut, else 0

  bool isCut() const { return fingerprint != 0; }
};

/// Whether both are of the same value, to the last bit. Of two that were cut at the same place the
/// fingerprints say so.
bool isSameBeginning(const ValueBeginning& one, const ValueBeginning& other);

/// Whether both are the same value of the same type, to the last bit.
bool isSameValue(const Variant& one, const Variant& other);
