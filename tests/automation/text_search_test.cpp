#include <cwchar>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/late_object.h"
#include "tests/automation/support/sqlite_file.h"

// The search that passes over records. What it finds is tested with the engine, and beside the application's
// own reading of values.

namespace automationtest {
namespace {

constexpr HRESULT kNoSearch = static_cast<HRESULT>(0x800A0CB3u);

class TextSearch : public AutomationTest {
 protected:
  TextSearch() {
    SqliteFile(path_).run(
        "CREATE TABLE T (Name TEXT, Size REAL); INSERT INTO T VALUES ('a', 1), ('b', 2.5), ('heron', 3), "
        "('d', 12)");
    recordset_ = recordsOf(connection_.get(), L"Select * from [T]");
    search_ = searchOf(recordset_.get());
  }

  static ComPtr<IAdoceTextSearch> searchOf(IAdoceRecordset* recordset) {
    ComPtr<IAdoceTextSearch> search;
    EXPECT_EQ(recordset->QueryInterface(__uuidof(IAdoceTextSearch), reinterpret_cast<void**>(search.put())),
              S_OK);
    return search;
  }

  HRESULT begin(const wchar_t* text, const OwnedVariant& field = empty(), bool matchCase = false) {
    const UniqueBstr copy(SysAllocString(text));
    return search_->BeginTextSearch(copy.get(), *field, matchCase ? VARIANT_TRUE : VARIANT_FALSE);
  }
  /// How many records it passed over, or -1.
  long passOver(long most = 1000, long milliseconds = -1) {
    long passed = -1;
    const HRESULT result = search_->PassOver(most, milliseconds, &passed);
    EXPECT_EQ(SUCCEEDED(result), passed >= 0);
    return passed;
  }

  std::wstring path_ = makeDatabase();
  ComPtr<IAdoceConnection> connection_ = connectTo(path_);
  ComPtr<IAdoceRecordset> recordset_;
  ComPtr<IAdoceTextSearch> search_;
};

TEST_F(TextSearch, IsAnInterfaceOfTheSameObject) {
  ComPtr<IUnknown> first;
  ComPtr<IUnknown> second;
  ASSERT_EQ(recordset_->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(first.put())), S_OK);
  ASSERT_EQ(search_->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(second.put())), S_OK);
  EXPECT_EQ(first.get(), second.get());
  ComPtr<IAdoceRecordset> back;
  EXPECT_EQ(search_->QueryInterface(__uuidof(IAdoceRecordset), reinterpret_cast<void**>(back.put())), S_OK);
}

TEST_F(TextSearch, StopsAtTheRecordWithTheText) {
  ASSERT_EQ(begin(L"HERON"), S_OK);
  EXPECT_EQ(passOver(), 2);
  EXPECT_EQ(position(recordset_.get()), 3);
  EXPECT_EQ(textOf(recordset_.get(), 0), L"heron");
  EXPECT_EQ(passOver(), 0);
  ASSERT_EQ(recordset_->MoveNext(), S_OK);
  EXPECT_EQ(passOver(), 1);
  EXPECT_TRUE(isEof(recordset_.get()));
  EXPECT_EQ(passOver(), 0);
}

TEST_F(TextSearch, PassesOverNoMoreThanItMay) {
  ASSERT_EQ(begin(L"d"), S_OK);
  EXPECT_EQ(passOver(2), 2);
  EXPECT_EQ(passOver(0), 0);
  EXPECT_EQ(passOver(-5), 0);
  EXPECT_EQ(passOver(5, 0), 1);
}

TEST_F(TextSearch, TheCaseOfLettersCountsWhenItIsAskedFor) {
  ASSERT_EQ(begin(L"HERON", empty(), true), S_OK);
  EXPECT_EQ(passOver(), 4);
}

TEST_F(TextSearch, AFieldIsNamedByNumberOrName) {
  ASSERT_EQ(begin(L"2", variant(L"size")), S_OK);
  EXPECT_EQ(passOver(), 1);
  ASSERT_EQ(begin(L"heron", variant(1L)), S_OK);
  EXPECT_EQ(passOver(), 3);
  EXPECT_EQ(begin(L"x", variant(2L)), objectModelError(3265));
  EXPECT_EQ(begin(L"x", variant(L"nothing")), objectModelError(3265));
}

TEST_F(TextSearch, DoublesAreSearchedWithSixDecimals) {
  ASSERT_EQ(begin(L"2.500000"), S_OK);
  EXPECT_EQ(passOver(), 1);
}

TEST_F(TextSearch, TheEmptyTextPassesOverNothing) {
  ASSERT_EQ(search_->BeginTextSearch(nullptr, *empty(), VARIANT_FALSE), S_OK);
  EXPECT_EQ(passOver(), 0);
}

TEST_F(TextSearch, WithoutABeginningThereIsNone) {
  EXPECT_EQ(passOver(), -1);
  ASSERT_EQ(begin(L"heron"), S_OK);
  ASSERT_EQ(search_->EndTextSearch(), S_OK);
  EXPECT_EQ(search_->EndTextSearch(), S_OK);
  EXPECT_EQ(passOver(), -1);
  EXPECT_EQ(search_->PassOver(1, 1, nullptr), E_POINTER);
}

TEST_F(TextSearch, EndsWithTheRecords) {
  ASSERT_EQ(begin(L"heron"), S_OK);
  ASSERT_EQ(recordset_->Close(), S_OK);
  long passed = 17;
  EXPECT_EQ(search_->PassOver(1, 1, &passed), objectModelError(3704));
  EXPECT_EQ(begin(L"heron"), objectModelError(3704));
  EXPECT_EQ(search_->EndTextSearch(), objectModelError(3704));
  EXPECT_EQ(passed, 17);
  ASSERT_EQ(openOn(recordset_.get(), connection_.get(), L"Select * from [T]"), S_OK);
  EXPECT_EQ(passOver(), -1);
}

TEST_F(TextSearch, EndsWithTheConnection) {
  ASSERT_EQ(begin(L"heron"), S_OK);
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(passOver(), -1);
  EXPECT_TRUE(DeleteFileW(path_.c_str())) << "the file is still held";
}

TEST_F(TextSearch, AReadingThatFailsIsTold) {
  ASSERT_EQ(begin(L"d"), S_OK);
  SqliteFile(path_).run("DROP TABLE T");
  EXPECT_EQ(passOver(), -1);
  EXPECT_EQ(position(recordset_.get()), 1);
}

TEST_F(TextSearch, BothInterfacesDescribeTheirFailures) {
  ComPtr<ISupportErrorInfo> describes;
  ASSERT_EQ(search_->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(describes.put())), S_OK);
  EXPECT_EQ(describes->InterfaceSupportsErrorInfo(__uuidof(IAdoceTextSearch)), S_OK);
  EXPECT_EQ(describes->InterfaceSupportsErrorInfo(__uuidof(IAdoceRecordset)), S_OK);
  EXPECT_EQ(describes->InterfaceSupportsErrorInfo(IID_IDispatch), S_FALSE);
  long passed = 0;
  EXPECT_EQ(search_->PassOver(1, 1, &passed), kNoSearch);
}

TEST_F(TextSearch, AnswersToItsNames) {
  const LateObject connection = LateObject::create(L"ADOCE.Connection.3.1");
  connection.call(L"Open", arguments(variant(path_)));
  const LateObject recordset = LateObject::create(L"ADOCE.Recordset.3.1");
  recordset.call(L"Open", arguments(variant(L"T"), variant(connection.object()), int16(1)));
  recordset.call(L"BeginTextSearch", arguments(variant(L"HERON")));
  EXPECT_EQ(described(recordset.call(L"passOver")), "I4 2");
  EXPECT_EQ(described(recordset.call(L"PassOver", arguments(variant(1L), variant(10L)))), "I4 0");
  recordset.call(L"EndTextSearch");
  EXPECT_EQ(described(recordset.get(L"AbsolutePosition")), "I4 3");
  recordset.call(L"Close");
  connection.call(L"Close");
}

}  // namespace
}  // namespace automationtest
