#include "platform/store/odbc/catalogue/server_types.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace store {

namespace {

/// How the handheld calls the type with the same values.
struct NamedServerType {
  std::string_view name;
  std::string_view declaredType;
  ValueForm form = ValueForm::text;
};
constexpr std::array<NamedServerType, 11> kTypes{{
    {"int2", "smallint", ValueForm::integer},
    {"int4", "integer", ValueForm::integer},
    {"int8", "bigint", ValueForm::integer},
    {"oid", "unsigned int", ValueForm::integer},
    {"bool", "boolean", ValueForm::boolean},
    {"float4", "real", ValueForm::real},
    {"float8", "double", ValueForm::real},
    {"date", "date"},
    {"timestamp", "datetime"},
    {"time", "time"},
    {"bytea", "long varbinary", ValueForm::bytes},
}};

constexpr std::string_view kBytesPrefix = "\\x";

bool readInteger(std::string_view text, std::int64_t* value) {
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, *value);
  return error == std::errc() && last == end;
}

bool readReal(std::string_view text, double* value) {
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, *value);
  return error == std::errc() && last == end && std::isfinite(*value);
}

int digitOf(char sign) {
  if (sign >= '0' && sign <= '9') return sign - '0';
  if (sign >= 'a' && sign <= 'f') return sign - 'a' + 10;
  return -1;
}

bool readBytes(std::string_view text, std::string* bytes) {
  if (!text.starts_with(kBytesPrefix) || text.size() % 2 != 0) return false;
  for (std::size_t index = kBytesPrefix.size(); index < text.size(); index += 2) {
    const int high = digitOf(text[index]);
    const int low = digitOf(text[index + 1]);
    if (high < 0 || low < 0) return false;
    bytes->push_back(static_cast<char>(high * 16 + low));
  }
  return true;
}

std::string textOfBytes(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text(kBytesPrefix);
  text.reserve(2 + 2 * bytes.size());
  for (const char sign : bytes) {
    const auto byte = static_cast<unsigned char>(sign);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

/// The shortest text that is the same number again.
std::string textOfReal(double value) {
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return {text.data(), error == std::errc() ? end : text.data()};
}

}  // namespace

ServerType serverTypeOf(std::string_view name, std::string_view spelled) {
  for (const NamedServerType& type : kTypes) {
    if (type.name == name) return {fieldTypeOf(type.declaredType), type.form};
  }
  const bool hasSize = (name == "varchar" || name == "bpchar") && spelled.find('(') != std::string_view::npos;
  return {fieldTypeOf(hasSize ? spelled : std::string_view("text")), ValueForm::text};
}

bool isMeasured(std::string_view name) {
  constexpr std::array<std::string_view, 8> kNames{"int8",   "numeric", "money", "interval",
                                                   "timetz", "inet",    "cidr",  "timestamptz"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
}

std::string_view valueTypeOf(const ServerType& type) {
  switch (type.form) {
    case ValueForm::integer:
      return "bigint";
    case ValueForm::boolean:
      return "boolean";
    case ValueForm::real:
      return "double";
    case ValueForm::bytes:
      return "long varbinary";
    case ValueForm::text:
      break;
  }
  return type.field.code == TypeCode::date ? "datetime" : "text";
}

void addServerValue(ValueForm form, std::optional<std::string_view> text, Row* row) {
  if (!text) return row->addNull();
  std::int64_t integer = 0;
  double real = 0;
  std::string bytes;
  switch (form) {
    case ValueForm::integer:
      if (readInteger(*text, &integer)) return row->addInteger(integer);
      break;
    case ValueForm::boolean:
      return row->addInteger(text->starts_with('t') || *text == "1" ? 1 : 0);
    case ValueForm::real:
      if (readReal(*text, &real)) return row->addReal(real);
      break;
    case ValueForm::bytes:
      if (readBytes(*text, &bytes)) return row->addBytes(CellKind::blob, bytes.data(), bytes.size());
      break;
    case ValueForm::text:
      break;
  }
  row->addBytes(CellKind::text, text->data(), text->size());
}

std::optional<std::string> serverTextOf(const Value& value, ValueForm form) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    if (form == ValueForm::boolean) return *integer != 0 ? "true" : "false";
    return std::to_string(*integer);
  }
  if (const auto* real = std::get_if<double>(&value)) return textOfReal(*real);
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* blob = std::get_if<Blob>(&value)) return textOfBytes(blob->bytes);
  return std::nullopt;
}

}  // namespace store
