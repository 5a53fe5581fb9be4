#include <functional>
#include <memory>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

// A VARIANT of each type goes into a field and comes out of it as the same.

namespace automationtest {
namespace {

struct RoundTrip {
  const char* type;
  std::function<OwnedVariant()> given;
  const char* shown;   ///< what the field shows before and after the update
  const char* stored;  ///< SQLite's quote of what the file has
};

std::ostream& operator<<(std::ostream& out, const RoundTrip& trip) {
  return out << trip.type << " given " << described(trip.given());
}

class RoundTrips : public AutomationTest, public testing::WithParamInterface<RoundTrip> {};

TEST_P(RoundTrips, GiveBackTheValue) {
  const RoundTrip& trip = GetParam();
  const std::wstring path = pathOf(L"test.cdb");
  SqliteFile(path).run("CREATE TABLE T (F " + std::string(trip.type) +
                       ", Other TEXT); INSERT INTO T (Other) VALUES ('x')");
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [T]");

  const OwnedVariant given = trip.given();
  ASSERT_EQ(put(recordset.get(), 0, given), S_OK);
  EXPECT_EQ(described(valueOf(recordset.get(), 0)), trip.shown) << "before the update";
  ASSERT_EQ(update(recordset.get()), S_OK);
  EXPECT_EQ(described(valueOf(recordset.get(), 0)), trip.shown);
  EXPECT_EQ(sqliteColumn(path, "SELECT quote(F) FROM T"), std::vector<std::string>{trip.stored});

  // Written back as it came, it changes nothing.
  ASSERT_EQ(put(recordset.get(), 0, valueOf(recordset.get(), 0)), S_OK);
  long mode = 17;
  EXPECT_EQ(recordset->get_EditMode(&mode), S_OK);
  EXPECT_EQ(mode, 0);

  // And another connection sees the same.
  const ComPtr<IAdoceConnection> other = connectTo(path);
  EXPECT_EQ(described(valueOf(recordsOfTable(other.get(), L"T").get(), 0)), trip.shown);
}

const std::wstring kLongText(32000, L'\u03b1');
const char* longTextShown() {
  static const std::string shown = described(variant(kLongText));
  return shown.c_str();
}
const char* longTextStored() {
  static const std::string stored = [] {
    std::string text = "'";
    for (int unit = 0; unit < 32000; ++unit) text += "\xCE\xB1";
    return text + "'";
  }();
  return stored.c_str();
}

INSTANTIATE_TEST_SUITE_P(
    SmallInt, RoundTrips,
    testing::Values(RoundTrip{"SmallInt", [] { return int16(-32768); }, "I2 -32768", "-32768"},
                    RoundTrip{"SmallInt", [] { return int16(0); }, "I2 0", "0"},
                    RoundTrip{"SmallInt", [] { return int16(32767); }, "I2 32767", "32767"},
                    RoundTrip{"SmallInt", [] { return null(); }, "NULL", "NULL"},
                    RoundTrip{"SmallInt", [] { return empty(); }, "NULL", "NULL"}));

INSTANTIATE_TEST_SUITE_P(Integer, RoundTrips,
                         testing::Values(RoundTrip{"Integer", [] { return variant(-2147483647L - 1); },
                                                   "I4 -2147483648", "-2147483648"},
                                         RoundTrip{"Integer", [] { return variant(2147483647L); },
                                                   "I4 2147483647", "2147483647"},
                                         RoundTrip{"Integer", [] { return null(); }, "NULL", "NULL"},
                                         RoundTrip{"Integer", [] { return empty(); }, "NULL", "NULL"}));

INSTANTIATE_TEST_SUITE_P(
    Unsigned, RoundTrips,
    testing::Values(RoundTrip{"unsigned smallint", [] { return uint16(65535); }, "UI2 65535", "65535"},
                    RoundTrip{"unsigned smallint", [] { return uint16(0); }, "UI2 0", "0"},
                    RoundTrip{"unsigned smallint", [] { return null(); }, "NULL", "NULL"},
                    RoundTrip{"unsigned int", [] { return uint32(4294967295); }, "UI4 4294967295",
                              "4294967295"},
                    RoundTrip{"unsigned int", [] { return empty(); }, "NULL", "NULL"}));

INSTANTIATE_TEST_SUITE_P(Float, RoundTrips,
                         testing::Values(RoundTrip{"Float", [] { return real64(0.1); },
                                                   "R8 0.10000000000000001", "0.1"},
                                         RoundTrip{"Float", [] { return real64(5); }, "R8 5", "5.0"},
                                         RoundTrip{"Float", [] { return real64(-1e300); },
                                                   "R8 -1.0000000000000001e+300", "-1.0e+300"},
                                         RoundTrip{"double", [] { return real64(0); }, "R8 0", "0.0"},
                                         RoundTrip{"Float", [] { return null(); }, "NULL", "NULL"},
                                         RoundTrip{"Float", [] { return empty(); }, "NULL", "NULL"}));

INSTANTIATE_TEST_SUITE_P(
    Date, RoundTrips,
    testing::Values(
        RoundTrip{"Datetime", [] { return date(36959.0); }, "DATE 36959", "'2001-03-09 00:00:00'"},
        RoundTrip{"Datetime", [] { return date(36959.5); }, "DATE 36959.5", "'2001-03-09 12:00:00'"},
        RoundTrip{"Datetime", [] { return date(0); }, "DATE 0", "'1899-12-30 00:00:00'"},
        RoundTrip{"Datetime", [] { return date(-1.25); }, "DATE -1.25", "'1899-12-29 06:00:00'"},
        RoundTrip{"Datetime", [] { return date(2958465); }, "DATE 2958465", "'9999-12-31 00:00:00'"},
        RoundTrip{"date", [] { return date(36959.0); }, "DATE 36959", "'2001-03-09'"},
        RoundTrip{"date", [] { return date(36959.5); }, "DATE 36959.5", "'2001-03-09 12:00:00'"},
        RoundTrip{"time", [] { return date(0.75); }, "DATE 0.75", "'18:00:00'"},
        RoundTrip{"Datetime", [] { return null(); }, "NULL", "NULL"},
        RoundTrip{"Datetime", [] { return empty(); }, "NULL", "NULL"}));

// A true that is not the automation's own is stored as 1 and read as the automation's.
INSTANTIATE_TEST_SUITE_P(Boolean, RoundTrips,
                         testing::Values(RoundTrip{"Bit", [] { return boolean(1); }, "BOOL -1", "1"},
                                         RoundTrip{"Bit", [] { return boolean(VARIANT_TRUE); }, "BOOL -1",
                                                   "1"},
                                         RoundTrip{"Bit", [] { return boolean(0); }, "BOOL 0", "0"},
                                         RoundTrip{"boolean", [] { return boolean(2); }, "BOOL -1", "1"},
                                         RoundTrip{"Bit", [] { return null(); }, "NULL", "NULL"},
                                         RoundTrip{"Bit", [] { return empty(); }, "NULL", "NULL"}));

INSTANTIATE_TEST_SUITE_P(
    Text, RoundTrips,
    testing::Values(RoundTrip{"Varchar (255)", [] { return variant(L"abc"); }, "BSTR abc", "'abc'"},
                    RoundTrip{"Varchar (255)", [] { return variant(L""); }, "BSTR ", "''"},
                    RoundTrip{"Varchar (255)", [] { return null(); }, "NULL", "NULL"},
                    RoundTrip{"Varchar (255)", [] { return empty(); }, "NULL", "NULL"},
                    RoundTrip{"Text", [] { return variant(L"it's\r\ntwo lines"); },
                              "BSTR it's\\x000d\\x000atwo lines", "'it''s\r\ntwo lines'"},
                    RoundTrip{"Text", [] { return variant(L"007"); }, "BSTR 007", "'007'"},
                    RoundTrip{"Text", [] { return variant(L""); }, "BSTR ", "''"},
                    RoundTrip{"Text", [] { return null(); }, "NULL", "NULL"},
                    RoundTrip{"Text", [] { return variant(L"\u03b1\u0416\u65e5\U0001F4D7"); },
                              "BSTR \\x03b1\\x0416\\x65e5\\xd83d\\xdcd7",
                              "'\xCE\xB1\xD0\x96\xE6\x97\xA5\xF0\x9F\x93\x97'"},
                    RoundTrip{"Text", [] { return variant(kLongText); }, longTextShown(), longTextStored()}));

INSTANTIATE_TEST_SUITE_P(
    Binary, RoundTrips,
    testing::Values(RoundTrip{"varbinary(16)", [] { return bytes(std::string_view("\0\x01\xFF", 3)); },
                              "UI1[] 0001ff", "X'0001FF'"},
                    RoundTrip{"varbinary(16)", [] { return bytes(""); }, "UI1[] ", "X''"},
                    RoundTrip{"varbinary(16)", [] { return null(); }, "NULL", "NULL"},
                    RoundTrip{"long varbinary", [] { return bytes("abc"); }, "UI1[] 616263", "X'616263'"},
                    RoundTrip{"long varbinary", [] { return empty(); }, "NULL", "NULL"}));

INSTANTIATE_TEST_SUITE_P(Integer64, RoundTrips,
                         testing::Values(RoundTrip{"bigint", [] { return variant(L"9223372036854775807"); },
                                                   "BSTR 9223372036854775807", "9223372036854775807"},
                                         RoundTrip{"bigint", [] { return variant(L"-9223372036854775808"); },
                                                   "BSTR -9223372036854775808", "-9223372036854775808"},
                                         RoundTrip{"bigint", [] { return variant(5L); }, "BSTR 5", "5"},
                                         RoundTrip{"bigint", [] { return int64(9007199254740993); },
                                                   "BSTR 9007199254740993", "9007199254740993"},
                                         RoundTrip{"bigint", [] { return null(); }, "NULL", "NULL"}));

class UnusualTexts : public AutomationTest {
 protected:
  UnusualTexts() {
    EXPECT_EQ(execute(connection_.get(), L"CREATE TABLE 'T' (F Text)"), S_OK);
    records_ = recordsOf(connection_.get(), L"Select * from [T]");
    EXPECT_EQ(addNew(records_.get()), S_OK);
  }

  ComPtr<IAdoceConnection> connection_ = openNewDatabase();
  ComPtr<IAdoceRecordset> records_;
};

TEST_F(UnusualTexts, ZeroCharactersStay) {
  ASSERT_EQ(put(records_.get(), 0, variant(std::wstring_view(L"a\0b\0", 4))), S_OK);
  ASSERT_EQ(update(records_.get()), S_OK);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "BSTR a\\x0000b\\x0000");
}

TEST_F(UnusualTexts, UnpairedSurrogatesStay) {
  const wchar_t units[] = {0xDC00, L'a', 0xD800, 0xD800, 0xDC00};
  ASSERT_EQ(put(records_.get(), 0, variant(std::wstring_view(units, 5))), S_OK);
  ASSERT_EQ(update(records_.get()), S_OK);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "BSTR \\xdc00a\\xd800\\xd800\\xdc00");
}

TEST_F(UnusualTexts, NullStringIsTheEmptyText) {
  OwnedVariant nullString;
  V_VT(nullString.get()) = VT_BSTR;
  V_BSTR(nullString.get()) = nullptr;
  ASSERT_EQ(put(records_.get(), 0, nullString), S_OK);
  ASSERT_EQ(update(records_.get()), S_OK);
  EXPECT_EQ(described(valueOf(records_.get(), 0)), "BSTR ");
}

TEST_F(UnusualTexts, NamesOfTablesAndFieldsTakeEveryScript) {
  ASSERT_EQ(
      execute(connection_.get(), L"CREATE TABLE '\u0391\U0001F4D7' (\u0416 Text ,'\u65e5 \u672c' Integer)"),
      S_OK);
  const ComPtr<IAdoceRecordset> recordset = recordsOf(connection_.get(), L"Select * from [\u0391\U0001F4D7]");
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), 0L).get()), L"\u0416");
  EXPECT_EQ(nameOf(fieldOf(recordset.get(), L"\u65e5 \u672c").get()), L"\u65e5 \u672c");
}

}  // namespace
}  // namespace automationtest
