#pragma once

#include <cstddef>
#include <vector>

#include "base/name_list.h"
#include "base/string.h"
#include "data/values/schema.h"

/// The rules for the names of a new table and its fields, and the text that creates it. The apostrophe
/// is allowed in names; the typographic one is not.
bool hasForbiddenCharacter(const String& name);

/// Whether `names` holds that name in whatever letter case.
bool isNameTaken(const String& name, const NameList& names);

/// The columns as CREATE TABLE lists them: name and SQL type of each field in order, parted by " ,". A
/// name that is no word is in single quotes. Names and types are cut at 64 characters.
String columnDefinition(const std::vector<NewField>& fields);

/// At most `limit` characters of the text, one less where that would cut a pair of surrogates in two.
String cutText(const String& text, std::size_t limit);
