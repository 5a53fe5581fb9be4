#pragma once

#include <string>

#include "base/string.h"

/// Names of tables, fields and files as they stand in a statement. Whatever is in a name, the store reads it
/// back as that name. All throw std::bad_alloc.

/// In single quotes, an apostrophe doubled: 'O''Brien'. For CREATE and DROP.
std::wstring quotedName(const String& name);

/// In a list of columns: a word stands as it is, everything else in single quotes.
std::wstring columnName(const String& name);

/// In brackets, [Order Details]; in double quotes where the name itself has the bracket that would end it.
/// For SELECT.
std::wstring selectedName(const String& name);
