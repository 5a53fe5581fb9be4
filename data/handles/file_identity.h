#pragma once

#include "base/string.h"

/// Whether two paths name one file, which can be spelled in several ways: by letter case, by a folder that
/// stands for another. Files that can't be looked at are compared by their paths alone.
bool isSameFile(const String& one, const String& other);
