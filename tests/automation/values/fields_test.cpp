#include <filesystem>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

constexpr long kUpdatable = 4;
constexpr long kFixed = 16;
constexpr long kNullable = 32 | 64;
constexpr long kLong = 128;

long numberOf(IAdoceField* field, HRESULT (STDMETHODCALLTYPE IAdoceField::*getter)(long*)) {
  long number = -1;
  EXPECT_EQ((field->*getter)(&number), S_OK);
  return number;
}

class Fields : public AutomationTest {
 protected:
  ComPtr<IAdoceRecordset> openedOn(const std::string& sql, const std::wstring& source) {
    SqliteFile(path_).run(sql);
    return recordsOf(connection_.get(), source);
  }
  ComPtr<IAdoceFields> fieldsOf(IAdoceRecordset* recordset) {
    ComPtr<IAdoceFields> fields;
    EXPECT_EQ(recordset->get_Fields(fields.put()), S_OK);
    return fields;
  }
  HRESULT item(IAdoceFields* fields, const OwnedVariant& index, std::wstring* name) {
    ComPtr<IAdoceField> field;
    const HRESULT result = fields->get_Item(*index, field.put());
    EXPECT_EQ(static_cast<bool>(field), result == S_OK);
    if (field) *name = nameOf(field.get());
    return result;
  }

  std::wstring path_ = makeDatabase();
  ComPtr<IAdoceConnection> connection_ = connectTo(path_);
};

TEST_F(Fields, AreFoundByNameAndByEveryKindOfNumber) {
  const ComPtr<IAdoceFields> fields =
      fieldsOf(openedOn("CREATE TABLE T (Id INTEGER, [Full name] TEXT)", L"SELECT * FROM T").get());
  long count = 0;
  ASSERT_EQ(fields->get_Count(&count), S_OK);
  EXPECT_EQ(count, 2);

  std::vector<OwnedVariant> ones;
  ones.push_back(int8(1));
  ones.push_back(uint8(1));
  ones.push_back(int16(1));
  ones.push_back(uint16(1));
  ones.push_back(variant(1L));
  ones.push_back(uint32(1));
  ones.push_back(int64(1));
  ones.push_back(uint64(1));
  ones.push_back(real64(1.0));
  ones.push_back(variant(L"Full name"));
  ones.push_back(variant(L"FULL NAME"));
  for (const OwnedVariant& index : ones) {
    std::wstring name;
    EXPECT_EQ(item(fields.get(), index, &name), S_OK) << described(index);
    EXPECT_EQ(name, L"Full name");
  }
}

TEST_F(Fields, IndexMayBeAReference) {
  const ComPtr<IAdoceFields> fields =
      fieldsOf(openedOn("CREATE TABLE T (Id INTEGER)", L"SELECT * FROM T").get());
  OwnedVariant zero = variant(0L);
  OwnedVariant reference;
  V_VT(reference.get()) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(reference.get()) = zero.get();
  std::wstring name;
  EXPECT_EQ(item(fields.get(), reference, &name), S_OK);
  EXPECT_EQ(name, L"Id");
}

TEST_F(Fields, UnknownOnesAreNotFound) {
  const ComPtr<IAdoceFields> fields =
      fieldsOf(openedOn("CREATE TABLE T (Id INTEGER)", L"SELECT * FROM T").get());
  std::vector<OwnedVariant> unknown;
  unknown.push_back(variant(1L));
  unknown.push_back(variant(-1L));
  unknown.push_back(variant(0x7FFFFFFFL));
  unknown.push_back(int64(0x100000000));
  unknown.push_back(uint64(0xFFFFFFFFFFFFFFFF));
  unknown.push_back(real64(0.5));
  unknown.push_back(variant(L"Nothing"));
  unknown.push_back(variant(L""));
  unknown.push_back(null());
  unknown.push_back(empty());
  unknown.push_back(missing());
  unknown.push_back(bytes("0"));
  unknown.push_back(variant(static_cast<IDispatch*>(nullptr)));
  for (const OwnedVariant& index : unknown) {
    std::wstring name;
    EXPECT_EQ(item(fields.get(), index, &name), objectModelError(3265)) << described(index);
  }
}

TEST_F(Fields, ExactNameComesBeforeOneOfAnotherCase) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (A TEXT)", L"SELECT A AS x, A AS X FROM T");
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), L"X").get()), L"X");
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), L"x").get()), L"x");
}

TEST_F(Fields, AreFetchedAnewAfterEveryClose) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (A TEXT); CREATE TABLE U (B TEXT, C TEXT)", L"SELECT * FROM T");
  const ComPtr<IAdoceFields> old = fieldsOf(recordset.get());
  const ComPtr<IAdoceField> oldField = fieldOf(recordset.get(), 0L);
  ASSERT_EQ(recordset->Close(), S_OK);
  ComPtr<IAdoceFields> none;
  EXPECT_EQ(recordset->get_Fields(none.put()), objectModelError(3704));
  EXPECT_FALSE(none);

  ASSERT_EQ(openOn(recordset.get(), connection_.get(), L"U", kKeyset, kOptimistic, kTable), S_OK);
  long count = 0;
  EXPECT_EQ(fieldsOf(recordset.get())->get_Count(&count), S_OK);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), 0L).get()), L"B");
  // The old ones stay closed.
  EXPECT_EQ(old->get_Count(&count), objectModelError(3704));
  std::wstring name;
  EXPECT_EQ(item(old.get(), variant(0L), &name), objectModelError(3704));
  OwnedVariant value;
  EXPECT_EQ(oldField->get_Value(value.get()), objectModelError(3704));
}

TEST_F(Fields, FieldFollowsTheCurrentRecord) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (A TEXT); INSERT INTO T VALUES ('one'), ('two')", L"SELECT * FROM T");
  const ComPtr<IAdoceField> field = fieldOf(recordset.get(), 0L);
  OwnedVariant value;
  ASSERT_EQ(field->get_Value(value.get()), S_OK);
  EXPECT_EQ(described(value), "BSTR one");
  ASSERT_EQ(recordset->MoveNext(), S_OK);
  OwnedVariant next;
  ASSERT_EQ(field->get_Value(next.get()), S_OK);
  EXPECT_EQ(described(next), "BSTR two");
}

TEST_F(Fields, OffTheRecordsThereIsNoValue) {
  const ComPtr<IAdoceRecordset> recordset = openedOn("CREATE TABLE T (A TEXT)", L"SELECT * FROM T");
  const ComPtr<IAdoceField> field = fieldOf(recordset.get(), 0L);
  OwnedVariant value = variant(17L);
  long size = 17;
  EXPECT_EQ(field->get_Value(value.get()), objectModelError(3021));
  EXPECT_EQ(field->get_ActualSize(&size), objectModelError(3021));
  EXPECT_EQ(field->put_Value(*variant(L"x")), objectModelError(3021));
  EXPECT_EQ(described(value), "I4 17");
  EXPECT_EQ(size, 17);
  EXPECT_EQ(numberOf(field.get(), &IAdoceField::get_Type), 203);
}

struct DeclaredType {
  const wchar_t* declaration;
  long type;
  long definedSize;
  long attributes;
};

class DeclaredTypes : public Fields, public testing::WithParamInterface<DeclaredType> {};

TEST_P(DeclaredTypes, AreReportedAsTheHandheldsCodes) {
  const DeclaredType& expected = GetParam();
  ASSERT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (F " + std::wstring(expected.declaration) + L")"),
            S_OK);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection_.get(), L"Select * from [T]");
  const ComPtr<IAdoceField> field = fieldOf(recordset.get(), 0L);
  EXPECT_EQ(numberOf(field.get(), &IAdoceField::get_Type), expected.type);
  EXPECT_EQ(numberOf(field.get(), &IAdoceField::get_DefinedSize), expected.definedSize);
  EXPECT_EQ(numberOf(field.get(), &IAdoceField::get_Attributes), expected.attributes);

  // Opened for reading only, nothing can be updated.
  const ComPtr<IAdoceRecordset> reading =
      recordsOf(connection_.get(), L"Select * from [T]", kKeyset, kReadOnly);
  EXPECT_EQ(numberOf(fieldOf(reading.get(), 0L).get(), &IAdoceField::get_Attributes),
            expected.attributes & ~kUpdatable);
}

constexpr long kOfFixed = kUpdatable | kFixed | kNullable;
constexpr long kOfVariable = kUpdatable | kNullable;
constexpr long kOfLong = kUpdatable | kNullable | kLong;

INSTANTIATE_TEST_SUITE_P(Handheld, DeclaredTypes,
                         testing::Values(DeclaredType{L"Bit", 11, 2, kOfFixed},
                                         DeclaredType{L"Datetime", 7, 8, kOfFixed},
                                         DeclaredType{L"Float", 5, 8, kOfFixed},
                                         DeclaredType{L"SmallInt", 2, 2, kOfFixed},
                                         DeclaredType{L"Integer", 3, 4, kOfFixed},
                                         DeclaredType{L"Varchar (255)", 202, 255, kOfVariable},
                                         DeclaredType{L"Varchar (20)", 202, 20, kOfVariable},
                                         DeclaredType{L"Text", 203, 1073741823, kOfLong},
                                         DeclaredType{L"unsigned smallint", 18, 2, kOfFixed},
                                         DeclaredType{L"unsigned int", 19, 4, kOfFixed},
                                         DeclaredType{L"varbinary(16)", 204, 16, kOfVariable},
                                         DeclaredType{L"long varbinary", 205, 2147483647, kOfLong},
                                         DeclaredType{L"bigint", 202, 20, kOfVariable}));

TEST_F(Fields, OfSourcesThatCanOnlyBeReadAreNotUpdatable) {
  SqliteFile(path_).run(
      "CREATE TABLE T (A TEXT, B INTEGER); INSERT INTO T VALUES ('x', 1);"
      "CREATE TABLE U (C TEXT); INSERT INTO U VALUES ('x');"
      "CREATE VIEW V AS SELECT A FROM T");
  for (const wchar_t* source : {L"SELECT T.A FROM T INNER JOIN U ON T.A = U.C", L"SELECT count(*) FROM T",
                                L"SELECT DISTINCT A FROM T", L"SELECT A FROM T UNION SELECT C FROM U",
                                L"SELECT * FROM V", L"SELECT * FROM MSysTables"}) {
    const ComPtr<IAdoceRecordset> recordset = recordsOf(connection_.get(), source);
    EXPECT_EQ(numberOf(fieldOf(recordset.get(), 0L).get(), &IAdoceField::get_Attributes) & (4 | 8), 0)
        << source;
    long lock = 0;
    EXPECT_EQ(recordset->get_LockType(&lock), S_OK);
    EXPECT_EQ(lock, kReadOnly);
  }
}

TEST_F(Fields, ThatAreComputedAreNotUpdatable) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (A INTEGER NOT NULL, B AS (A + 1)); INSERT INTO T (A) VALUES (1)",
               L"SELECT A, B, A * 2 AS C FROM T");
  EXPECT_EQ(numberOf(fieldOf(recordset.get(), 0L).get(), &IAdoceField::get_Attributes), kUpdatable | kFixed);
  EXPECT_EQ(numberOf(fieldOf(recordset.get(), 1L).get(), &IAdoceField::get_Attributes) & (4 | 8), 0);
  EXPECT_EQ(numberOf(fieldOf(recordset.get(), 2L).get(), &IAdoceField::get_Attributes) & (4 | 8), 0);
  EXPECT_EQ(put(recordset.get(), 1, variant(5L)), objectModelError(3251));
  EXPECT_EQ(described(valueOf(recordset.get(), 1)), "I4 2");
}

TEST_F(Fields, ActualSizeIsInBytes) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a varchar(9), b text, c varbinary(9), d smallint, e integer, f double, g datetime, h "
      "bit, i text);"
      "INSERT INTO T VALUES ('\xCE\xB1xy', '', x'000102', 1, 1, 1, '2001-03-09', 1, NULL)",
      L"SELECT * FROM T");
  const long expected[] = {6, 0, 3, 2, 4, 8, 8, 2, 0};
  for (long index = 0; index < 9; ++index) {
    EXPECT_EQ(numberOf(fieldOf(recordset.get(), index).get(), &IAdoceField::get_ActualSize), expected[index])
        << index;
  }
}

/// What ReadBeginning gives: the value, its whole length, and whether it was cut.
std::string beginningOf(IAdoceRecordset* recordset, long index, long mostBytes) {
  OwnedVariant value;
  hyper length = -1;
  hyper fingerprint = -1;
  EXPECT_EQ(fieldOf(recordset, index)->ReadBeginning(mostBytes, value.get(), &length, &fingerprint), S_OK);
  return described(value) + " of " + std::to_string(length) + (fingerprint != 0 ? " cut" : "");
}

TEST_F(Fields, OfALongValueTheBeginningCanBeHad) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a text, b varbinary(9), c integer, d text);"
      "INSERT INTO T VALUES ('x\xCE\xB1\xF0\x9F\x98\x80y', x'000102', 70000, NULL)",
      L"SELECT * FROM T");
  for (const long most : {8L, 100L}) {
    EXPECT_EQ(beginningOf(recordset.get(), 0, most), described(valueOf(recordset.get(), 0)) + " of 5");
  }
  // Never inside a character.
  EXPECT_EQ(beginningOf(recordset.get(), 0, 7), "BSTR x\\x03b1\\xd83d\\xde00 of 5 cut");
  for (const long most : {6L, 5L, 4L, 3L})
    EXPECT_EQ(beginningOf(recordset.get(), 0, most), "BSTR x\\x03b1 of 5 cut") << most;
  EXPECT_EQ(beginningOf(recordset.get(), 0, 2), "BSTR x of 5 cut");
  EXPECT_EQ(beginningOf(recordset.get(), 0, 0), "BSTR  of 5 cut");
  EXPECT_EQ(beginningOf(recordset.get(), 0, -1), "BSTR  of 5 cut");
  EXPECT_EQ(beginningOf(recordset.get(), 1, 3), described(valueOf(recordset.get(), 1)) + " of 3");
  EXPECT_THAT(beginningOf(recordset.get(), 1, 2), testing::EndsWith(" of 3 cut"));
  EXPECT_EQ(beginningOf(recordset.get(), 2, 0), "I4 70000 of 0");
  EXPECT_EQ(beginningOf(recordset.get(), 3, 0), "NULL of 0");
}

TEST_F(Fields, TheFingerprintTellsTwoCutValuesApart) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a text, b text, c text);"
      "INSERT INTO T VALUES ('beginning 1', 'beginning 2', 'beginning 1')",
      L"SELECT * FROM T");
  const auto fingerprint = [&](long index) {
    OwnedVariant value;
    hyper length = 0;
    hyper mark = 0;
    EXPECT_EQ(fieldOf(recordset.get(), index)->ReadBeginning(9, value.get(), &length, &mark), S_OK);
    return mark;
  };
  EXPECT_NE(fingerprint(0), fingerprint(1));
  EXPECT_EQ(fingerprint(0), fingerprint(2));
}

TEST_F(Fields, TheBeginningOfAFieldThatCantBeReadIsUntouched) {
  const ComPtr<IAdoceRecordset> recordset = openedOn("CREATE TABLE T (a text)", L"SELECT * FROM T");
  OwnedVariant value;
  hyper length = 17;
  hyper fingerprint = 18;
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadBeginning(9, value.get(), &length, &fingerprint),
            objectModelError(3021));
  EXPECT_EQ(V_VT(value.get()), VT_EMPTY);
  EXPECT_EQ(length, 17);
  EXPECT_EQ(fingerprint, 18);
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadBeginning(9, value.get(), nullptr, &fingerprint), E_POINTER);
}

std::wstring separatedOf(IAdoceRecordset* recordset, long index) {
  UniqueBstr text;
  EXPECT_EQ(fieldOf(recordset, index)->ReadSeparated(text.put()), S_OK) << index;
  return text.get() ? text.get() : L"(null)";
}

TEST_F(Fields, AValueIsGivenWholeAsAFieldOfSeparatedValues) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a float, b text, c text, d text, e bit, f varbinary(9), g datetime, h text, i bigint, "
      "j,"
      " k text, l text);"
      "INSERT INTO T VALUES (0.1234567890123, '007', 'a' || char(9) || 'b' || char(13, 10) || '\"c\"', '', 1,"
      " x'00FF', '2001-03-09 14:05:07', NULL, 9007199254740993, 2.0, 'x, y; z', 'x' || char(9) || 'y')",
      L"SELECT * FROM T");
  const wchar_t* const expected[] = {
      L"0.1234567890123",     L"\"007\"", L"\"a\tb\r\n\"\"c\"\"\"", L"\"\"", L"true",    L"x'00FF'",
      L"2001-03-09 14:05:07", L"",        L"9007199254740993",      L"2.0",  L"x, y; z", L"\"x\ty\""};
  for (long index = 0; index < 12; ++index) EXPECT_EQ(separatedOf(recordset.get(), index), expected[index]);
}

TEST_F(Fields, ATextOfAnyLengthIsGivenWhole) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a text);"
      "INSERT INTO T VALUES (replace(hex(zeroblob(100000)), '00', 'x\xCE\xB1'))",
      L"SELECT * FROM T");
  const std::wstring text = separatedOf(recordset.get(), 0);
  EXPECT_EQ(text.size(), 200000u);
  EXPECT_EQ(text.substr(199998), L"x\u03b1");
}

TEST_F(Fields, WhatIsNotMadeOfCharactersIsNotGivenAsAnotherText) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a text, b text);"
      "INSERT INTO T VALUES (CAST(x'4180' AS TEXT), 'a' || char(0) || 'b')",
      L"SELECT * FROM T");
  for (const long index : {0L, 1L}) {
    UniqueBstr text;
    EXPECT_EQ(fieldOf(recordset.get(), index)->ReadSeparated(text.put()), objectModelError(3421)) << index;
    EXPECT_EQ(text.get(), nullptr);
  }
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadSeparated(nullptr), E_POINTER);
}

TEST_F(Fields, AValueIsGivenAsALiteralOfSql) {
  const ComPtr<IAdoceRecordset> recordset = openedOn(
      "CREATE TABLE T (a float, b text, c text, d text, e bit, f varbinary(9), g datetime, h datetime, i "
      "bigint);"
      "INSERT INTO T VALUES (0.1, 'it''s', NULL, 'a' || char(0), 1, x'00FF', '2001-03-09 14:05:07', 'no day',"
      " -9223372036854775808)",
      L"SELECT * FROM T");
  const wchar_t* const expected[] = {L"0.1",
                                     L"'it''s'",
                                     L"NULL",
                                     L"CAST(X'6100' AS TEXT)",
                                     L"1",
                                     L"X'00FF'",
                                     L"'2001-03-09 14:05:07'",
                                     L"CAST(X'6E6F20646179' AS TEXT)"};
  for (long index = 0; index < 8; ++index) {
    UniqueBstr text;
    EXPECT_EQ(fieldOf(recordset.get(), index)->ReadLiteral(100, text.put()), S_OK) << index;
    EXPECT_STREQ(text.get(), expected[index]);
  }
  UniqueBstr least;
  ASSERT_EQ(fieldOf(recordset.get(), 8L)->ReadLiteral(100, least.put()), S_OK);
  const ComPtr<IAdoceRecordset> same =
      openedOn("SELECT 1", (L"SELECT * FROM T WHERE i = " + std::wstring(least.get())).c_str());
  long count = 0;
  EXPECT_EQ(same->get_RecordCount(&count), S_OK);
  EXPECT_EQ(count, 1);
}

TEST_F(Fields, ALiteralThatIsTooLongIsNotGiven) {
  const ComPtr<IAdoceRecordset> recordset =
      openedOn("CREATE TABLE T (a text); INSERT INTO T VALUES ('12345')", L"SELECT * FROM T");
  UniqueBstr text;
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadLiteral(4, text.put()), objectModelError(3421));
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadLiteral(-1, text.put()), objectModelError(3421));
  EXPECT_EQ(text.get(), nullptr);
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadLiteral(5, text.put()), S_OK);
  EXPECT_EQ(fieldOf(recordset.get(), 0L)->ReadLiteral(5, nullptr), E_POINTER);
}

TEST_F(Fields, AreEnumerated) {
  const ComPtr<IAdoceFields> fields =
      fieldsOf(openedOn("CREATE TABLE T (A TEXT, B TEXT, C TEXT)", L"SELECT * FROM T").get());
  ComPtr<IUnknown> unknown;
  ASSERT_EQ(fields->get__NewEnum(unknown.put()), S_OK);
  ComPtr<IEnumVARIANT> enumerator;
  ASSERT_EQ(unknown->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(enumerator.put())), S_OK);

  const auto next = [](IEnumVARIANT* items) -> std::wstring {
    OwnedVariant item;
    ULONG fetched = 17;
    const HRESULT result = items->Next(1, item.get(), &fetched);
    EXPECT_EQ(fetched, result == S_OK ? 1u : 0u);
    if (result != S_OK) return L"(end)";
    ComPtr<IAdoceField> field;
    EXPECT_EQ(
        V_DISPATCH(item.get())->QueryInterface(__uuidof(IAdoceField), reinterpret_cast<void**>(field.put())),
        S_OK);
    return nameOf(field.get());
  };
  EXPECT_EQ(next(enumerator.get()), L"A");
  ComPtr<IEnumVARIANT> copy;
  ASSERT_EQ(enumerator->Clone(copy.put()), S_OK);
  EXPECT_EQ(next(enumerator.get()), L"B");
  EXPECT_EQ(next(enumerator.get()), L"C");
  EXPECT_EQ(next(enumerator.get()), L"(end)");
  EXPECT_EQ(next(copy.get()), L"B");
  EXPECT_EQ(copy->Skip(1), S_OK);
  EXPECT_EQ(copy->Skip(1), S_FALSE);
  EXPECT_EQ(copy->Reset(), S_OK);
  EXPECT_EQ(next(copy.get()), L"A");

  OwnedVariant all[5];
  ULONG fetched = 0;
  ASSERT_EQ(copy->Reset(), S_OK);
  EXPECT_EQ(copy->Next(5, all[0].get(), &fetched), S_FALSE);
  EXPECT_EQ(fetched, 3u);
}

}  // namespace
}  // namespace automationtest
