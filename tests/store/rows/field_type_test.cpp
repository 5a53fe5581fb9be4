#include "platform/store/rows/field_type.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/store/rows/type_names.h"

namespace store {
namespace {

constexpr std::int32_t kLongTextSize = 1073741823;
constexpr std::int32_t kMaxSize = 2147483647;

void expectTypes(std::initializer_list<std::string_view> names, int code, std::int32_t definedSize) {
  for (const std::string_view name : names) {
    const FieldType type = fieldTypeOf(name);
    EXPECT_EQ(static_cast<int>(type.code), code) << name;
    EXPECT_EQ(type.definedSize, definedSize) << name;
    EXPECT_EQ(type.fixedSize, code < 202) << name;
    EXPECT_EQ(type.isLong, code == 203 || code == 205) << name;
    EXPECT_TRUE(type.isTyped) << name;
  }
}

void expectShape(std::initializer_list<std::string_view> names, DateShape shape) {
  for (const std::string_view name : names) EXPECT_EQ(fieldTypeOf(name).dateShape, shape) << name;
}

TEST(FieldTypeTest, HandheldNames) {
  expectTypes({"smallint"}, 2, 2);
  expectTypes({"integer", "int"}, 3, 4);
  expectTypes({"double", "float", "real"}, 5, 8);
  expectTypes({"datetime", "date", "time", "timestamp"}, 7, 8);
  expectTypes({"bit", "boolean"}, 11, 2);
  expectTypes({"varchar(40)"}, 202, 40);
  expectTypes({"text", "memo"}, 203, kLongTextSize);
  expectTypes({"varbinary(16)"}, 204, 16);
  expectTypes({"long varbinary", "image", "blob"}, 205, kMaxSize);
}

TEST(FieldTypeTest, NamesOfTheTableDesigner) {
  expectTypes({"Bit"}, 11, 2);
  expectTypes({"Datetime"}, 7, 8);
  expectTypes({"Float"}, 5, 8);
  expectTypes({"SmallInt"}, 2, 2);
  expectTypes({"Integer"}, 3, 4);
  expectTypes({"Varchar (255)"}, 202, 255);
  expectTypes({"Text"}, 203, kLongTextSize);
}

TEST(FieldTypeTest, SignedIntegers) {
  expectTypes({"int2", "int16", "tinyint", "tinyint(1)", "smallint(6)", "smallserial"}, 2, 2);
  expectTypes({"int4", "int32", "mediumint", "int(11)", "integer(8)", "serial"}, 3, 4);
}

TEST(FieldTypeTest, UnsignedIntegers) {
  expectTypes({"unsigned smallint", "smallint unsigned", "smallint(5) unsigned", "tinyint unsigned",
               "tinyint(3) unsigned", "unsigned tinyint", "uint16"},
              18, 2);
  expectTypes({"unsigned int", "int unsigned", "int(10) unsigned", "unsigned integer", "integer unsigned",
               "mediumint unsigned", "unsigned", "uint32"},
              19, 4);
}

TEST(FieldTypeTest, Integers64AreTextOf20Characters) {
  expectTypes({"bigint", "int8", "int64", "uint64", "bigint(20)", "unsigned big int", "bigint unsigned",
               "bigint(20) unsigned", "unsigned bigint", "bigserial"},
              202, 20);
}

TEST(FieldTypeTest, RealNumbers) {
  expectTypes(
      {"double precision", "float4", "float8", "float(24)", "decimal", "decimal(10,2)", "dec(5)", "numeric",
       "numeric(10, 5)", "number", "number(38,0)", "fixed", "money", "smallmoney", "currency"},
      5, 8);
}

TEST(FieldTypeTest, DatesByWhatTheyShow) {
  expectTypes({"timestamp with time zone", "timestamp(6) with time zone", "timestamp without time zone",
               "timestamptz", "datetime2(7)", "smalldatetime", "timetz", "time with time zone",
               "time(3) without time zone"},
              7, 8);
  expectShape({"datetime", "datetime2", "smalldatetime", "timestamp", "timestamptz",
               "timestamp with time zone", "timestamp without time zone"},
              DateShape::dateTime);
  expectShape({"date", "DATE"}, DateShape::date);
  expectShape({"time", "time(3)", "timetz", "time with time zone", "time without time zone"},
              DateShape::time);
}

TEST(FieldTypeTest, Booleans) {
  expectTypes({"bit(1)", "bool"}, 11, 2);
}

TEST(FieldTypeTest, SizedTexts) {
  expectTypes({"char(12)", "character(12)", "nchar(12)", "bpchar(12)", "native character(12)",
               "national character(12)", "varchar(12)", "varchar2(12)", "varchar2(12 char)", "nvarchar(12)",
               "nvarchar2(12)", "char varying(12)", "character varying(12)", "varying character(12)",
               "national character varying(12)"},
              202, 12);
}

TEST(FieldTypeTest, LongTexts) {
  expectTypes({"ntext", "clob", "nclob", "tinytext", "mediumtext", "longtext", "long text", "long varchar",
               "json", "xml", "text(4000)", "clob(1000)", "long varchar(32000)"},
              203, kLongTextSize);
}

TEST(FieldTypeTest, Binaries) {
  expectTypes({"binary(8)", "binary varying(8)", "raw(8)", "varbinary(8)"}, 204, 8);
  expectTypes({"varbinary", "binary", "raw"}, 204, 255);
  expectTypes({"long raw", "tinyblob", "mediumblob", "longblob", "bytea", "binary large object", "blob(100)"},
              205, kMaxSize);
}

TEST(FieldTypeTest, LetterCaseAndBlanksDoNotMatter) {
  expectTypes({"VARCHAR(7)", "VarChar ( 7 )", "  varchar\t(\n7)  ", "varchar(7 )"}, 202, 7);
  expectTypes({"Unsigned   Big\tINT", " UNSIGNED BIG INT "}, 202, 20);
  expectTypes({"Long  VarBinary", "LONG\r\nVARBINARY"}, 205, kMaxSize);
}

TEST(FieldTypeTest, TextWithoutAUsableSizeHas255Characters) {
  expectTypes({"varchar", "char", "nvarchar", "varchar()", "varchar(0)", "varchar(abc)", "varchar(max)",
               "varchar(-5)", "varchar(12abc)", "varchar(", "varchar( )", "varchar(,9)"},
              202, 255);
}

TEST(FieldTypeTest, LargeSizesAreKept) {
  expectTypes({"varchar(32000)"}, 202, 32000);
  expectTypes({"varchar(100000)"}, 202, 100000);
  expectTypes({"varchar(2147483647)"}, 202, kMaxSize);
}

TEST(FieldTypeTest, SillySizesAreClamped) {
  expectTypes(
      {"varchar(2147483648)", "varchar(99999999999)", "varchar(999999999999999999999999999999999999999999)"},
      202, kMaxSize);
  expectTypes({"varbinary(18446744073709551617)"}, 204, kMaxSize);
}

TEST(FieldTypeTest, OnlyTheFirstParenthesesGiveTheSize) {
  expectTypes({"varchar(9)(12)", "varchar(9,12)"}, 202, 9);
}

TEST(FieldTypeTest, NoDeclaredTypeIsUntypedLongText) {
  for (const std::string_view name : {"", " ", "\t\n", "()", "(12)"}) {
    const FieldType type = fieldTypeOf(name);
    EXPECT_EQ(type.code, TypeCode::longVarWChar) << name;
    EXPECT_EQ(type.definedSize, kLongTextSize) << name;
    EXPECT_TRUE(type.isLong) << name;
    EXPECT_FALSE(type.fixedSize) << name;
    EXPECT_FALSE(type.isTyped) << name;
  }
}

TEST(FieldTypeTest, UnknownNamesFollowColumnAffinity) {
  expectTypes({"autoint", "int signed", "floating point", "point", "charint"}, 3, 4);
  expectTypes({"hugebigint", "bigint signed"}, 202, 20);
  expectTypes({"int unsigned zerofill"}, 19, 4);
  expectTypes({"mychar(3)", "\"varchar\"(20)", "richtext", "clobber", "citext"}, 203, kLongTextSize);
  expectTypes({"myblob", "blobby(4)"}, 205, kMaxSize);
  expectTypes({"unreal", "floater", "doubled", "double unsigned"}, 5, 8);
  expectTypes({"uuid", "enum", "geometry", "year", "\xC3\x9Cnter"}, 203, kLongTextSize);
}

TEST(FieldTypeTest, HostileDeclarationsAreHarmless) {
  expectTypes({")))(((", ")x", "x)", "x((((1", std::string_view("a\0b", 3)}, 203, kLongTextSize);
  EXPECT_EQ(fieldTypeOf(std::string(1 << 20, '(')).isTyped, false);
  EXPECT_EQ(fieldTypeOf("varchar(" + std::string(1 << 20, '9') + ")").definedSize, kMaxSize);
  EXPECT_EQ(fieldTypeOf(std::string(1 << 20, 'x')).code, TypeCode::longVarWChar);
}

TEST(FieldTypeTest, OnlyNamesAreKnown) {
  for (const char* name :
       {"integer", "INT", " Varchar ( 40 ) ", "long  varbinary", "double precision", "bytea"}) {
    EXPECT_TRUE(isKnownType(name)) << name;
  }
  for (const char* name :
       {"", "klingon", "string", "pointer", "integer primary key", "text, b text", "(5)"}) {
    EXPECT_FALSE(isKnownType(name)) << name;
  }
}

}  // namespace
}  // namespace store
