#pragma once

#include <windows.h>

#include <cstdint>

#include "base/string.h"

/// Where `name` is first among the `count` names that `nameAt` gives by their index; `count` when it is not
/// there. A file may spell a name otherwise than who refers to it, and on a server names may differ by
/// nothing else than the case of their letters: so a name in other cases is taken only where the very same
/// one is missing.
template <typename NameAt>
std::uint32_t findName(const String& name, std::uint32_t count, NameAt nameAt) {
  for (const BOOL ignoresCase : {FALSE, TRUE}) {
    for (std::uint32_t i = 0; i < count; ++i) {
      if (CompareStringOrdinal(nameAt(i).text(), -1, name.text(), -1, ignoresCase) == CSTR_EQUAL) return i;
    }
  }
  return count;
}
