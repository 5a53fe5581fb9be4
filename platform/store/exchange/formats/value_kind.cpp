#include "platform/store/exchange/formats/value_kind.h"

#include "platform/store/exchange/formats/affinity.h"
#include "platform/store/rows/field_type.h"

namespace store::exchange {

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
