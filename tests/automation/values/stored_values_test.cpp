#include <cmath>
#include <functional>
#include <limits>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

// What a field makes of VARIANTs that are not of its own type.

namespace automationtest {
namespace {

constexpr char kRefused[] = "refused";

struct Conversion {
  const char* type;
  std::function<OwnedVariant()> given;
  const char* stored;  ///< SQLite's quote of what the file has, or kRefused
};

std::ostream& operator<<(std::ostream& out, const Conversion& conversion) {
  return out << conversion.type << " given " << described(conversion.given());
}

class Conversions : public AutomationTest, public testing::WithParamInterface<Conversion> {};

TEST_P(Conversions, FollowTheAutomationsRules) {
  const Conversion& conversion = GetParam();
  const std::wstring path = pathOf(L"test.cdb");
  SqliteFile(path).run("CREATE TABLE T (F " + std::string(conversion.type) +
                       ", Other TEXT); INSERT INTO T VALUES (NULL, 'x')");
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [T]");
  const OwnedVariant given = conversion.given();
  if (conversion.stored == kRefused) {
    EXPECT_EQ(put(recordset.get(), 0, given), objectModelError(3421));
    long mode = 17;
    EXPECT_EQ(recordset->get_EditMode(&mode), S_OK);
    EXPECT_EQ(mode, 0);
    return;
  }
  ASSERT_EQ(put(recordset.get(), 0, given), S_OK);
  ASSERT_EQ(update(recordset.get()), S_OK);
  EXPECT_EQ(sqliteColumn(path, "SELECT quote(F) FROM T"), std::vector<std::string>{conversion.stored});
}

OwnedVariant nothing() {
  return variant(static_cast<IDispatch*>(nullptr));
}

INSTANTIATE_TEST_SUITE_P(
    IntoInteger, Conversions,
    testing::Values(Conversion{"integer", [] { return int8(-5); }, "-5"},
                    Conversion{"integer", [] { return uint8(200); }, "200"},
                    Conversion{"integer", [] { return int16(-7); }, "-7"},
                    Conversion{"integer", [] { return uint16(60000); }, "60000"},
                    Conversion{"integer", [] { return uint32(7); }, "7"},
                    Conversion{"integer", [] { return int64(-9); }, "-9"},
                    Conversion{"integer", [] { return uint64(9); }, "9"},
                    Conversion{"integer", [] { return real32(2.5f); }, "2"},
                    Conversion{"integer", [] { return real64(3.5); }, "4"},
                    Conversion{"integer", [] { return currency(70000); }, "7"},
                    Conversion{"integer", [] { return decimal(12); }, "12"},
                    Conversion{"integer", [] { return boolean(-1); }, "1"},
                    Conversion{"integer", [] { return boolean(0); }, "0"},
                    Conversion{"integer", [] { return variant(L"12"); }, "12"},
                    Conversion{"integer", [] { return variant(L" -12 "); }, "-12"},
                    Conversion{"integer", [] { return date(36959.0); }, "36959"},
                    Conversion{"smallint", [] { return variant(32767L); }, "32767"},
                    Conversion{"unsigned smallint", [] { return variant(65535L); }, "65535"},
                    Conversion{"unsigned int", [] { return int64(4294967295); }, "4294967295"}));

INSTANTIATE_TEST_SUITE_P(
    IntoIntegerBeyond32Bits, Conversions,
    testing::Values(Conversion{"integer", [] { return int64(2147483648); }, "2147483648"},
                    Conversion{"integer", [] { return int64(std::numeric_limits<std::int64_t>::min()); },
                               "-9223372036854775808"},
                    Conversion{"integer", [] { return uint64(9223372036854775807u); }, "9223372036854775807"},
                    Conversion{"integer", [] { return decimal(9223372036854775807); }, "9223372036854775807"},
                    Conversion{"integer", [] { return decimal(-2147483649); }, "-2147483649"},
                    Conversion{"integer", [] { return uint64(9223372036854775808u); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(
    IntoIntegerRefused, Conversions,
    testing::Values(Conversion{"integer", [] { return variant(L"abc"); }, kRefused},
                    Conversion{"integer", [] { return variant(L""); }, kRefused},
                    Conversion{"integer", [] { return uint64(18446744073709551615u); }, kRefused},
                    Conversion{"integer", [] { return variant(L"2147483648"); }, kRefused},
                    Conversion{"integer", [] { return real64(1e10); }, kRefused},
                    Conversion{"integer", [] { return real64(std::nan("")); }, kRefused},
                    Conversion{"integer", [] { return real64(std::numeric_limits<double>::infinity()); },
                               kRefused},
                    Conversion{"integer", [] { return bytes("1"); }, kRefused},
                    Conversion{"integer", [] { return missing(); }, kRefused},
                    Conversion{"integer", [] { return nothing(); }, kRefused},
                    Conversion{"integer", [] { return list({}); }, kRefused},
                    Conversion{"smallint", [] { return variant(32768L); }, kRefused},
                    Conversion{"smallint", [] { return int64(32768); }, kRefused},
                    Conversion{"smallint", [] { return decimal(-32769); }, kRefused},
                    Conversion{"smallint", [] { return variant(-32769L); }, kRefused},
                    Conversion{"unsigned smallint", [] { return variant(-1L); }, kRefused},
                    Conversion{"unsigned smallint", [] { return variant(65536L); }, kRefused},
                    Conversion{"unsigned int", [] { return variant(-1L); }, kRefused},
                    Conversion{"unsigned int", [] { return int64(4294967296); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(IntoReal, Conversions,
                         testing::Values(Conversion{"float", [] { return variant(5L); }, "5.0"},
                                         Conversion{"float", [] { return real32(0.5f); }, "0.5"},
                                         Conversion{"float", [] { return variant(L"2.5"); }, "2.5"},
                                         Conversion{"float", [] { return variant(L"1e3"); }, "1000.0"},
                                         Conversion{"float", [] { return currency(12500); }, "1.25"},
                                         Conversion{"float", [] { return decimal(-3); }, "-3.0"},
                                         Conversion{"float", [] { return boolean(-1); }, "1.0"},
                                         Conversion{"float", [] { return date(1.5); }, "1.5"},
                                         Conversion{"float", [] { return uint64(18446744073709551615u); },
                                                    "1.8446744073709552e+19"},
                                         Conversion{"float", [] { return variant(L"abc"); }, kRefused},
                                         Conversion{"float", [] { return variant(L""); }, kRefused},
                                         Conversion{"float", [] { return real64(std::nan("")); }, kRefused},
                                         Conversion{"float", [] { return real32(std::nanf("")); }, kRefused},
                                         Conversion{"float", [] { return bytes("1"); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(IntoBoolean, Conversions,
                         testing::Values(Conversion{"bit", [] { return variant(0L); }, "0"},
                                         Conversion{"bit", [] { return variant(-5L); }, "1"},
                                         Conversion{"bit", [] { return real64(0.25); }, "1"},
                                         Conversion{"bit", [] { return variant(L"True"); }, "1"},
                                         Conversion{"bit", [] { return variant(L"false"); }, "0"},
                                         Conversion{"bit", [] { return variant(L"-1"); }, "1"},
                                         Conversion{"bit", [] { return variant(L"0"); }, "0"},
                                         Conversion{"bit", [] { return decimal(3); }, "1"},
                                         Conversion{"bit", [] { return variant(L"abc"); }, kRefused},
                                         Conversion{"bit", [] { return variant(L""); }, kRefused},
                                         Conversion{"bit", [] { return real64(std::nan("")); }, kRefused},
                                         Conversion{"bit", [] { return bytes("1"); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(
    IntoDate, Conversions,
    testing::Values(
        Conversion{"datetime", [] { return variant(L"2001-03-09 14:05:07"); }, "'2001-03-09 14:05:07'"},
        Conversion{"datetime", [] { return variant(L"2001-03-09T14:05"); }, "'2001-03-09T14:05'"},
        Conversion{"datetime", [] { return variant(L"2001-03-09"); }, "'2001-03-09'"},
        Conversion{"datetime", [] { return variant(L"3/9/2001"); }, "'2001-03-09 00:00:00'"},
        Conversion{"date", [] { return variant(L"3/9/2001"); }, "'2001-03-09'"},
        Conversion{"datetime", [] { return variant(L"9 March 2001 2:05:07 PM"); }, "'2001-03-09 14:05:07'"},
        Conversion{"datetime", [] { return real64(36959.5); }, "'2001-03-09 12:00:00'"},
        Conversion{"datetime", [] { return variant(36959L); }, "'2001-03-09 00:00:00'"},
        Conversion{"datetime", [] { return variant(L"no date"); }, kRefused},
        Conversion{"datetime", [] { return variant(L""); }, kRefused},
        Conversion{"datetime", [] { return variant(L"2001-02-30"); }, kRefused},
        Conversion{"datetime", [] { return date(std::nan("")); }, kRefused},
        Conversion{"datetime", [] { return date(2958466.0); }, kRefused},
        Conversion{"datetime", [] { return date(-657435.0); }, kRefused},
        Conversion{"datetime", [] { return date(1e300); }, kRefused},
        Conversion{"datetime", [] { return boolean(-1); }, kRefused},
        Conversion{"datetime", [] { return bytes("1"); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(
    IntoText, Conversions,
    testing::Values(Conversion{"text", [] { return variant(-5L); }, "'-5'"},
                    Conversion{"text", [] { return real64(2.5); }, "'2.5'"},
                    Conversion{"text", [] { return boolean(1); }, "'-1'"},
                    Conversion{"text", [] { return boolean(0); }, "'0'"},
                    Conversion{"text", [] { return uint64(18446744073709551615u); },
                               "'18446744073709551615'"},
                    Conversion{"text", [] { return decimal(7); }, "'7'"},
                    Conversion{"text", [] { return date(1.0); }, "'12/31/1899'"},
                    Conversion{"text", [] { return bytes(std::string_view("a\0b\0", 4)); }, "'ab'"},
                    Conversion{"text", [] { return bytes("abc"); }, kRefused},
                    Conversion{"text", [] { return real64(std::nan("")); }, kRefused},
                    Conversion{"text", [] { return missing(); }, kRefused},
                    Conversion{"text", [] { return nothing(); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(IntoBinary, Conversions,
                         testing::Values(Conversion{"varbinary(9)", [] { return variant(L"a\u03b1"); },
                                                    "X'6100B103'"},
                                         Conversion{"varbinary(9)", [] { return variant(L""); }, "X''"},
                                         Conversion{"varbinary(9)", [] { return variant(5L); }, kRefused},
                                         Conversion{"varbinary(9)", [] { return list({}); }, kRefused}));

INSTANTIATE_TEST_SUITE_P(
    IntoUntyped, Conversions,
    testing::Values(Conversion{"", [] { return variant(5L); }, "5"},
                    Conversion{"", [] { return real64(5); }, "5.0"},
                    Conversion{"", [] { return real32(0.5f); }, "0.5"},
                    Conversion{"", [] { return variant(L"5"); }, "'5'"},
                    Conversion{"", [] { return boolean(-1); }, "1"},
                    Conversion{"", [] { return bytes("a"); }, "X'61'"},
                    Conversion{"", [] { return date(36959.5); }, "'2001-03-09 12:00:00'"},
                    Conversion{"", [] { return decimal(9007199254740993); }, "9007199254740993"},
                    Conversion{"", [] { return currency(12500); }, "1.25"},
                    Conversion{"", [] { return uint64(18446744073709551615u); }, kRefused},
                    Conversion{"", [] { return real64(std::nan("")); }, kRefused},
                    Conversion{"", [] { return missing(); }, kRefused}));

class References : public AutomationTest {
 protected:
  References() {
    EXPECT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (N Integer ,S Text ,B long varbinary)"), S_OK);
    records_ = recordsOf(connection_.get(), L"Select * from [T]");
    EXPECT_EQ(addNew(records_.get()), S_OK);
  }

  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
  ComPtr<IAdoceRecordset> records_;
};

TEST_F(References, AreFollowed) {
  long number = 5;
  BSTR value = text(L"abc").release();
  const UniqueBstr owner(value);
  OwnedVariant content = bytes("xy");
  SAFEARRAY* array = V_ARRAY(content.get());
  VARIANT given;
  V_VT(&given) = VT_BYREF | VT_I4;
  V_I4REF(&given) = &number;
  EXPECT_EQ(fieldOf(records_.get(), 0L)->put_Value(given), S_OK);
  V_VT(&given) = VT_BYREF | VT_BSTR;
  V_BSTRREF(&given) = &value;
  EXPECT_EQ(fieldOf(records_.get(), 1L)->put_Value(given), S_OK);
  V_VT(&given) = VT_BYREF | VT_ARRAY | VT_UI1;
  V_ARRAYREF(&given) = &array;
  EXPECT_EQ(fieldOf(records_.get(), 2L)->put_Value(given), S_OK);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "I4 5");
  EXPECT_EQ(described(valueOf(records_.get(), 1)), "BSTR abc");
  EXPECT_EQ(described(valueOf(records_.get(), 2)), "UI1[] 7879");

  OwnedVariant inner = variant(L"through a variant");
  V_VT(&given) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(&given) = inner.get();
  EXPECT_EQ(fieldOf(records_.get(), 1L)->put_Value(given), S_OK);
  EXPECT_EQ(described(valueOf(records_.get(), 1)), "BSTR through a variant");
}

TEST_F(References, ToNowhereAreRefused) {
  VARIANT given;
  V_VT(&given) = VT_BYREF | VT_I4;
  V_I4REF(&given) = nullptr;
  EXPECT_EQ(fieldOf(records_.get(), 0L)->put_Value(given), objectModelError(3421));
  VARIANT outer;
  V_VT(&outer) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(&outer) = &given;
  EXPECT_EQ(fieldOf(records_.get(), 0L)->put_Value(outer), objectModelError(3421));
}

TEST_F(References, ToNowhereAreNoNumbersConnectionsOrPlaces) {
  VARIANT nowhere;
  V_VT(&nowhere) = VT_BYREF | VT_I4;
  V_I4REF(&nowhere) = nullptr;
  ComPtr<IAdoceErrors> errors;
  ComPtr<IAdoceError> error;
  ASSERT_EQ(connection_->get_Errors(errors.put()), S_OK);
  EXPECT_EQ(errors->get_Item(nowhere, error.put()), objectModelError(3265));
  EXPECT_EQ(connection_->Execute(text(L"DELETE FROM T").get(), &nowhere, kText, nullptr), S_OK);

  const ComPtr<IAdoceRecordset> recordset = newRecordset();
  for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN, VT_BSTR, VT_VARIANT}) {
    V_VT(&nowhere) = static_cast<VARTYPE>(VT_BYREF | type);
    EXPECT_EQ(recordset->put_ActiveConnection(nowhere), objectModelError(3001)) << type;
  }
  VARIANT circle;
  V_VT(&circle) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(&circle) = &circle;
  EXPECT_EQ(recordset->put_ActiveConnection(circle), objectModelError(3001));
  EXPECT_EQ(connection_->Execute(text(L"DELETE FROM T").get(), &circle, kText, nullptr), S_OK);
}

TEST_F(References, ValuesOfNoTypeAreRefusedAsArguments) {
  VARIANT unknown = {};
  V_VT(&unknown) = VT_CLSID;
  OwnedVariant name = variant(L"N");
  EXPECT_EQ(records_->Update(*name, unknown), objectModelError(3001));
  EXPECT_EQ(records_->Update(unknown, *name), objectModelError(3001));
}

TEST_F(References, ObjectsGiveTheirDefaultProperty) {
  ASSERT_EQ(put(records_.get(), 1, variant(L"42")), S_OK);
  const ComPtr<IAdoceField> field = fieldOf(records_.get(), 1L);
  EXPECT_EQ(put(records_.get(), 0, variant(field.get())), S_OK);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "I4 42");
  // A recordset's default property is its fields, which have none without an index.
  EXPECT_EQ(put(records_.get(), 0, variant(records_.get())), objectModelError(3421));
}

TEST_F(References, RefusedValueLeavesTheField) {
  ASSERT_EQ(put(records_.get(), 0, variant(5L)), S_OK);
  EXPECT_EQ(put(records_.get(), 0, variant(L"abc")), objectModelError(3421));
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "I4 5");
}

TEST_F(References, TwoDimensionalBytesAreRefused) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  OwnedVariant square;
  V_ARRAY(square.get()) = SafeArrayCreate(VT_UI1, 2, bounds);
  V_VT(square.get()) = VT_ARRAY | VT_UI1;
  EXPECT_EQ(put(records_.get(), 2, square), objectModelError(3421));
}

}  // namespace
}  // namespace automationtest
