#include "platform/store/exchange/formats/value_kind.h"

#include <string>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/field_type.h"
#include "platform/store/sql/sql_tokens.h"

namespace store::exchange {

namespace {

enum class Affinity { integer, text, none, real, numeric };

/// Source: "Datatypes In SQLite", section 3.1.
Affinity affinityOf(std::string_view declaredType) {
  const std::string type = lowerCase(declaredType);
  const auto has = [&type](std::string_view part) { return type.find(part) != std::string::npos; };
  if (has("int")) return Affinity::integer;
  if (has("char") || has("clob") || has("text")) return Affinity::text;
  if (has("blob") || type.empty()) return Affinity::none;
  if (has("real") || has("floa") || has("doub")) return Affinity::real;
  return Affinity::numeric;
}

}  // namespace

ValueKind kindOf(std::string_view declaredType) {
  const FieldType type = fieldTypeOf(declaredType);
  const Affinity affinity = affinityOf(declaredType);
  if (!type.isTyped) return ValueKind::any;
  switch (type.code) {
    case TypeCode::smallInt:
    case TypeCode::integer:
    case TypeCode::unsignedSmallInt:
    case TypeCode::unsignedInt:
      return ValueKind::integer;
    case TypeCode::real:
      return affinity == Affinity::real ? ValueKind::real : ValueKind::numeric;
    case TypeCode::date:
      return ValueKind::date;
    case TypeCode::boolean:
      return ValueKind::boolean;
    case TypeCode::varBinary:
    case TypeCode::longVarBinary:
      return ValueKind::bytes;
    case TypeCode::varWChar:
    case TypeCode::longVarWChar:
      break;
  }
  if (affinity == Affinity::integer) return ValueKind::integer;
  return affinity == Affinity::text || affinity == Affinity::none ? ValueKind::text : ValueKind::numericText;
}

}  // namespace store::exchange
