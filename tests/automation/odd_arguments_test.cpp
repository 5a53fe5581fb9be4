#include <functional>
#include <limits>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/sqlite_file.h"

namespace automationtest {
namespace {

OwnedVariant ofType(int type) {
  OwnedVariant made;
  V_VT(made.get()) = static_cast<VARTYPE>(type);
  V_I8(made.get()) = 0;
  return made;
}

OwnedVariant arrayOf(VARTYPE type, LONG first, ULONG count) {
  OwnedVariant made;
  V_ARRAY(made.get()) = SafeArrayCreateVector(type, first, count);
  V_VT(made.get()) = static_cast<VARTYPE>(VT_ARRAY | type);
  return made;
}

OwnedVariant squareOf(VARTYPE type) {
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  OwnedVariant made;
  V_ARRAY(made.get()) = SafeArrayCreate(type, 2, bounds);
  V_VT(made.get()) = static_cast<VARTYPE>(VT_ARRAY | type);
  return made;
}

/// A VARIANT of every kind that a caller can pass, and of some that nobody should: all of them own what
/// they refer to, or refer to nothing.
std::vector<OwnedVariant> oddValues() {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  std::vector<OwnedVariant> values;
  const auto add = [&](OwnedVariant value) { values.push_back(std::move(value)); };
  add(empty());
  add(null());
  add(missing());
  add(variant(std::numeric_limits<long>::min()));
  add(variant(std::numeric_limits<long>::max()));
  add(int64(std::numeric_limits<std::int64_t>::min()));
  add(uint64(std::numeric_limits<std::uint64_t>::max()));
  for (const double number : {kNoNumber, kInfinity, -kInfinity, 1e308, -0.0, 0.5}) add(real64(number));
  for (const double number : {kNoNumber, kInfinity, -657435.0, 2958466.0, -1.25}) add(date(number));
  add(boolean(1));
  add(currency(std::numeric_limits<std::int64_t>::max()));
  add(decimal(std::numeric_limits<std::int64_t>::min()));
  add(variant(L""));
  add(variant(std::wstring_view(L"F\0T", 3)));
  add(variant(L"\xd800"));
  add(variant(std::wstring(1'000'000, L'x')));
  add(bytes(""));
  add(bytes("\x01\x05"));
  add(arrayOf(VT_UI1, 5, 3));
  add(arrayOf(VT_BSTR, 0, 2));
  add(arrayOf(VT_VARIANT, 0, 0));
  add(arrayOf(VT_VARIANT, -5, 3));
  add(squareOf(VT_UI1));
  add(squareOf(VT_VARIANT));
  // Pointers that lead nowhere, and types that no value has.
  constexpr int kTypes[] = {VT_BSTR,
                            VT_DISPATCH,
                            VT_UNKNOWN,
                            VT_ARRAY | VT_UI1,
                            VT_ARRAY | VT_VARIANT,
                            VT_BYREF,
                            VT_BYREF | VT_I4,
                            VT_BYREF | VT_BSTR,
                            VT_BYREF | VT_DISPATCH,
                            VT_BYREF | VT_VARIANT,
                            VT_BYREF | VT_DECIMAL,
                            VT_BYREF | VT_ARRAY | VT_UI1,
                            VT_CLSID,
                            VT_VOID,
                            VT_HRESULT,
                            0xFFF};
  for (const int type : kTypes) add(ofType(type));
  return values;
}

/// Every member that takes a VARIANT.
const std::vector<std::function<HRESULT(IAdoceConnection*, IAdoceRecordset*, const VARIANT&)>> kCalls = {
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return newRecordset()->Open(odd, *variant(recordset), kKeyset, kOptimistic, kUnknown);
    },
    [](IAdoceConnection* connection, IAdoceRecordset*, const VARIANT& odd) {
      return newRecordset()->Open(odd, *variant(connection), kKeyset, kOptimistic, kUnknown);
    },
    [](IAdoceConnection*, IAdoceRecordset*, const VARIANT& odd) {
      return newRecordset()->Open(*variant(L"T"), odd, kKeyset, kOptimistic, kTable);
    },
    [](IAdoceConnection*, IAdoceRecordset*, const VARIANT& odd) {
      return newRecordset()->put_ActiveConnection(odd);
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return recordset->Move(std::numeric_limits<long>::min(), odd);
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return recordset->put_Bookmark(odd);
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      OwnedVariant rows;
      return recordset->GetRows(1, odd, odd, rows.get());
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return recordset->AddNew(odd, odd);
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return recordset->Update(odd, *variant(L"x"));
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return recordset->Update(*variant(L"F"), odd);
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      return fieldOf(recordset, 0L)->put_Value(odd);
    },
    [](IAdoceConnection*, IAdoceRecordset* recordset, const VARIANT& odd) {
      ComPtr<IAdoceFields> fields;
      ComPtr<IAdoceField> field;
      recordset->get_Fields(fields.put());
      return fields->get_Item(odd, field.put());
    },
    [](IAdoceConnection* connection, IAdoceRecordset*, const VARIANT& odd) {
      ComPtr<IAdoceErrors> errors;
      ComPtr<IAdoceError> error;
      connection->get_Errors(errors.put());
      return errors->get_Item(odd, error.put());
    },
    [](IAdoceConnection* connection, IAdoceRecordset*, const VARIANT& odd) {
      OwnedVariant place;
      if (!place.copy(odd)) return S_OK;
      return connection->Execute(text(L"UPDATE T SET F = F").get(), place.get(), kText, nullptr);
    },
};

class OddArguments : public AutomationTest, public testing::WithParamInterface<const char*> {};

TEST_P(OddArguments, AreTakenOrRefusedByEveryMember) {
  const std::wstring path = makeDatabase();
  SqliteFile(path).run(std::string("CREATE TABLE T (F ") + GetParam() + "); INSERT INTO T VALUES (NULL)");
  const ComPtr<IAdoceConnection> connection = connectTo(path);
  const std::vector<OwnedVariant> values = oddValues();
  for (std::size_t value = 0; value < values.size(); ++value) {
    const ComPtr<IAdoceRecordset> recordset = recordsOf(connection.get(), L"Select * from [T]");
    for (std::size_t call = 0; call < kCalls.size(); ++call) {
      // Twice, because the first call may leave something behind.
      for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(recordset->MoveFirst(), S_OK);
        const HRESULT result = kCalls[call](connection.get(), recordset.get(), *values[value]);
        const bool isOurs = result == S_OK || (static_cast<unsigned>(result) & 0xFFFF0000u) == 0x800A0000u ||
                            result == kNoCommand || result == kErrorsInCommand || result == kNoTable;
        EXPECT_TRUE(isOurs) << "call " << call << ", value " << value << ": " << std::hex << result;
        EXPECT_EQ(recordset->CancelUpdate(), S_OK);
      }
    }
  }
  connection->Close();
  EXPECT_EQ(sqliteColumn(path, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
}

INSTANTIATE_TEST_SUITE_P(OfEveryField, OddArguments,
                         testing::Values("smallint", "integer", "float", "datetime", "bit", "unsigned int",
                                         "varchar(255)", "varbinary(9)", ""));

}  // namespace
}  // namespace automationtest
