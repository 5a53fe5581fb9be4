#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/store/rows/field_type.h"
#include "platform/store/rows/value.h"

namespace store {

/// What a server's text of a value becomes in a row.
enum class ValueForm {
  integer,
  boolean,  ///< 1 or 0
  real,     ///< a text where the server has what is no number
  text,
  bytes,
};

/// A server's type as the engine has it.
struct ServerType {
  FieldType field;
  ValueForm form = ValueForm::text;
};

/// The type by its name in PostgreSQL's catalogue ("int4", "bpchar"), `spelled` as a person writes it
/// ("character(5)"). What the handheld has no type for (numeric, uuid, json, times with a zone, ranges,
/// arrays, enumerations) is a text, as the server writes it, so that nothing is lost.
ServerType serverTypeOf(std::string_view name, std::string_view spelled);

/// Whether the values are no texts to the server, though they are to the components: they have an order of
/// their own (10 behind 9.5).
bool isMeasured(std::string_view name);

/// The type of the components' vocabulary by whose rules values for one of the server's are read from a file:
/// text for all that the server alone can judge.
std::string_view valueTypeOf(const ServerType& type);

/// Appends a value as the server wrote it; nothing is null. Throws std::bad_alloc.
void addServerValue(ValueForm form, std::optional<std::string_view> text, Row* row);

/// The value as a text that the server reads back as the same one; nothing for null.
std::optional<std::string> serverTextOf(const Value& value, ValueForm form);

}  // namespace store
