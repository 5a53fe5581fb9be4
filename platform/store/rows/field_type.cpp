#include "platform/store/rows/field_type.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>

#include "platform/store/rows/type_names.h"

namespace store {
namespace {

constexpr std::int32_t kDefaultSize = 255;
constexpr std::int32_t kInteger64Size = 20;  // the digits of the longest, with a sign
constexpr std::int32_t kLongTextSize = 1073741823;
constexpr std::int32_t kLongBinarySize = 2147483647;

constexpr FieldType fixedType(TypeCode code, std::int32_t size, DateShape shape = DateShape::dateTime) {
  return {.code = code, .definedSize = size, .dateShape = shape, .fixedSize = true};
}

constexpr FieldType kSmallInt = fixedType(TypeCode::smallInt, 2);
constexpr FieldType kInteger = fixedType(TypeCode::integer, 4);
constexpr FieldType kReal = fixedType(TypeCode::real, 8);
constexpr FieldType kDateTime = fixedType(TypeCode::date, 8);
constexpr FieldType kDate = fixedType(TypeCode::date, 8, DateShape::date);
constexpr FieldType kTime = fixedType(TypeCode::date, 8, DateShape::time);
constexpr FieldType kBoolean = fixedType(TypeCode::boolean, 2);
constexpr FieldType kUnsignedSmallInt = fixedType(TypeCode::unsignedSmallInt, 2);
constexpr FieldType kUnsignedInt = fixedType(TypeCode::unsignedInt, 4);
constexpr FieldType kInteger64 = {.code = TypeCode::varWChar, .definedSize = kInteger64Size};
constexpr FieldType kText = {.code = TypeCode::varWChar, .definedSize = kDefaultSize};
constexpr FieldType kLongText = {
    .code = TypeCode::longVarWChar, .definedSize = kLongTextSize, .isLong = true};
constexpr FieldType kBinary = {.code = TypeCode::varBinary, .definedSize = kDefaultSize};
constexpr FieldType kLongBinary = {
    .code = TypeCode::longVarBinary, .definedSize = kLongBinarySize, .isLong = true};

enum class Size { fromType, declared };

/// A type by its name: lower case, one blank between words, without what stands in parentheses.
struct NamedType {
  std::string_view name;
  const FieldType& type;
  Size size = Size::fromType;
};

constexpr NamedType kNamedTypes[] = {
    {"smallint", kSmallInt},
    {"int2", kSmallInt},
    {"int16", kSmallInt},
    {"tinyint", kSmallInt},
    {"smallserial", kSmallInt},

    {"integer", kInteger},
    {"int", kInteger},
    {"int4", kInteger},
    {"int32", kInteger},
    {"mediumint", kInteger},
    {"serial", kInteger},

    {"bigint", kInteger64},
    {"int8", kInteger64},
    {"int64", kInteger64},
    {"uint64", kInteger64},
    {"bigserial", kInteger64},
    {"unsigned big int", kInteger64},
    {"unsigned bigint", kInteger64},
    {"bigint unsigned", kInteger64},

    {"unsigned smallint", kUnsignedSmallInt},
    {"smallint unsigned", kUnsignedSmallInt},
    {"unsigned tinyint", kUnsignedSmallInt},
    {"tinyint unsigned", kUnsignedSmallInt},
    {"uint16", kUnsignedSmallInt},

    {"unsigned int", kUnsignedInt},
    {"int unsigned", kUnsignedInt},
    {"unsigned integer", kUnsignedInt},
    {"integer unsigned", kUnsignedInt},
    {"mediumint unsigned", kUnsignedInt},
    {"unsigned", kUnsignedInt},
    {"uint32", kUnsignedInt},

    {"double", kReal},
    {"double precision", kReal},
    {"float", kReal},
    {"float4", kReal},
    {"float8", kReal},
    {"real", kReal},
    {"decimal", kReal},
    {"dec", kReal},
    {"numeric", kReal},
    {"number", kReal},
    {"fixed", kReal},
    {"money", kReal},
    {"smallmoney", kReal},
    {"currency", kReal},

    {"datetime", kDateTime},
    {"datetime2", kDateTime},
    {"smalldatetime", kDateTime},
    {"timestamp", kDateTime},
    {"timestamptz", kDateTime},
    {"timestamp with time zone", kDateTime},
    {"timestamp without time zone", kDateTime},
    {"date", kDate},
    {"time", kTime},
    {"timetz", kTime},
    {"time with time zone", kTime},
    {"time without time zone", kTime},

    {"bit", kBoolean},
    {"bool", kBoolean},
    {"boolean", kBoolean},

    {"char", kText, Size::declared},
    {"character", kText, Size::declared},
    {"nchar", kText, Size::declared},
    {"bpchar", kText, Size::declared},
    {"native character", kText, Size::declared},
    {"national character", kText, Size::declared},
    {"varchar", kText, Size::declared},
    {"varchar2", kText, Size::declared},
    {"nvarchar", kText, Size::declared},
    {"nvarchar2", kText, Size::declared},
    {"char varying", kText, Size::declared},
    {"character varying", kText, Size::declared},
    {"varying character", kText, Size::declared},
    {"national character varying", kText, Size::declared},

    {"text", kLongText},
    {"ntext", kLongText},
    {"clob", kLongText},
    {"nclob", kLongText},
    {"memo", kLongText},
    {"tinytext", kLongText},
    {"mediumtext", kLongText},
    {"longtext", kLongText},
    {"long text", kLongText},
    {"long varchar", kLongText},
    {"json", kLongText},
    {"xml", kLongText},

    {"varbinary", kBinary, Size::declared},
    {"binary", kBinary, Size::declared},
    {"binary varying", kBinary, Size::declared},
    {"raw", kBinary, Size::declared},

    {"long varbinary", kLongBinary},
    {"long raw", kLongBinary},
    {"image", kLongBinary},
    {"blob", kLongBinary},
    {"tinyblob", kLongBinary},
    {"mediumblob", kLongBinary},
    {"longblob", kLongBinary},
    {"bytea", kLongBinary},
    {"binary large object", kLongBinary},
};

/// For every other name: the type of the first row whose words it contains both, following SQLite's
/// rules of column affinity ("Datatypes In SQLite", 3.1), by which such a column's values were stored;
/// long text when there is none.
struct NamePattern {
  std::string_view part;
  std::string_view otherPart;
  const FieldType& type;
};

constexpr NamePattern kNamePatterns[] = {
    {"int", "big", kInteger64}, {"int", "unsigned", kUnsignedInt},
    {"int", "", kInteger},      {"char", "", kLongText},
    {"clob", "", kLongText},    {"text", "", kLongText},
    {"blob", "", kLongBinary},  {"real", "", kReal},
    {"floa", "", kReal},        {"doub", "", kReal},
};

bool isBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}
bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// A declared type, taken apart.
struct Declaration {
  std::string name;       // as in NamedType
  std::string arguments;  // the text in the first parentheses
};

Declaration readDeclaration(std::string_view text) {
  Declaration declaration;
  int depth = 0;
  int parenthesesCount = 0;
  bool wordEnded = false;
  for (const char character : text) {
    if (character == '(') {
      if (depth++ == 0) ++parenthesesCount;
      wordEnded = true;
    } else if (character == ')' && depth > 0) {
      --depth;
    } else if (depth > 0) {
      if (parenthesesCount == 1) declaration.arguments.push_back(character);
    } else if (isBlank(character)) {
      wordEnded = true;
    } else {
      if (wordEnded && !declaration.name.empty()) declaration.name.push_back(' ');
      wordEnded = false;
      declaration.name.push_back(lowered(character));
    }
  }
  return declaration;
}

/// The number at the front of the arguments, at most what a size can be; 0 when there is none.
std::int32_t declaredSizeOf(std::string_view arguments) {
  while (!arguments.empty() && isBlank(arguments.front())) arguments.remove_prefix(1);
  constexpr std::int64_t kMaxSize = std::numeric_limits<std::int32_t>::max();
  std::int64_t size = 0;
  for (; !arguments.empty() && isDigit(arguments.front()); arguments.remove_prefix(1)) {
    size = size * 10 + (arguments.front() - '0');
    if (size > kMaxSize) size = kMaxSize;
  }
  const bool isNumber = arguments.empty() || arguments.front() == ',' || isBlank(arguments.front());
  return isNumber ? static_cast<std::int32_t>(size) : 0;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// Null for a name that is none of them.
const NamedType* namedType(std::string_view name) {
  const auto* row = std::find_if(std::begin(kNamedTypes), std::end(kNamedTypes),
                                 [name](const NamedType& named) { return named.name == name; });
  return row != std::end(kNamedTypes) ? row : nullptr;
}

}  // namespace

bool isKnownType(std::string_view declaredType) {
  return namedType(readDeclaration(declaredType).name) != nullptr;
}

FieldType fieldTypeOf(std::string_view declaredType) {
  const Declaration declaration = readDeclaration(declaredType);
  if (declaration.name.empty()) {
    FieldType untyped = kLongText;
    untyped.isTyped = false;
    return untyped;
  }
  if (const NamedType* row = namedType(declaration.name)) {
    FieldType type = row->type;
    const std::int32_t size = row->size == Size::declared ? declaredSizeOf(declaration.arguments) : 0;
    if (size > 0) type.definedSize = size;
    return type;
  }
  for (const NamePattern& row : kNamePatterns) {
    if (contains(declaration.name, row.part) && contains(declaration.name, row.otherPart)) return row.type;
  }
  return kLongText;
}

}  // namespace store
