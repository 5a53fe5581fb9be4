#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/late_object.h"
#include "tests/automation/support/sqlite_file.h"

// Former states of databases. What the engine makes of them is tested there.

namespace automationtest {
namespace {

constexpr HRESULT kNotAvailable = objectModelError(3251);
constexpr HRESULT kNoSuchItem = objectModelError(3265);
constexpr HRESULT kDamaged = objectModelError(3003);
constexpr long kChange = 1;
constexpr long kGoingBack = 2;
constexpr long kTableDeletion = 3;
constexpr long kDatabaseDeletion = 4;

class Copies : public AutomationTest {
 protected:
  Copies() {
    SqliteFile(path_).run("CREATE TABLE T (Name TEXT); INSERT INTO T VALUES ('a'), ('b'), ('c')");
    EXPECT_EQ(connection_->QueryInterface(__uuidof(IAdoceCopies), reinterpret_cast<void**>(copies_.put())),
              S_OK);
  }

  void keepAndOpen() {
    ASSERT_EQ(copies_->KeepCopies(text(folder_).get()), S_OK);
    ASSERT_EQ(openAt(connection_.get(), path_), S_OK);
  }
  static UniqueBstr text(const std::wstring& content) {
    return UniqueBstr(SysAllocStringLen(content.data(), static_cast<UINT>(content.size())));
  }
  long count() {
    long number = -1;
    EXPECT_EQ(copies_->ListCopies(text(path_).get(), &number), S_OK);
    return number;
  }
  struct Copy {
    std::wstring path;
    DATE time = 0;
    hyper bytes = 0;
    hyper records = 0;
    long reason = 0;
  };
  Copy copyAt(long index) {
    Copy copy;
    UniqueBstr path;
    EXPECT_EQ(copies_->GetCopy(index, path.put(), &copy.time, &copy.bytes, &copy.records, &copy.reason),
              S_OK);
    copy.path = path.get() != nullptr ? path.get() : L"";
    return copy;
  }
  static std::vector<std::wstring> texts(OwnedVariant& variant) {
    std::vector<std::wstring> found;
    EXPECT_EQ(V_VT(variant.get()), VT_ARRAY | VT_BSTR);
    LONG last = -1;
    EXPECT_EQ(SafeArrayGetUBound(V_ARRAY(variant.get()), 1, &last), S_OK);
    for (LONG index = 0; index <= last; ++index) {
      UniqueBstr text;
      EXPECT_EQ(SafeArrayGetElement(V_ARRAY(variant.get()), &index, text.put()), S_OK);
      found.emplace_back(text.get());
    }
    return found;
  }
  std::vector<std::string> names() { return sqliteColumn(path_, "SELECT Name FROM T ORDER BY rowid"); }

  std::wstring path_ = makeDatabase();
  std::wstring folder_ = (std::filesystem::path(path_).parent_path() / L"kept copies").wstring();
  ComPtr<IAdoceConnection> connection_ = newConnection();
  ComPtr<IAdoceCopies> copies_;
};

TEST_F(Copies, WithoutAFolderThereIsNothing) {
  ASSERT_EQ(openAt(connection_.get(), path_), S_OK);
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T"), S_OK);
  long number = -1;
  EXPECT_EQ(copies_->ListCopies(text(path_).get(), &number), kNotAvailable);
  EXPECT_EQ(copies_->KeepBeforeDeletion(), kNotAvailable);
  EXPECT_EQ(copies_->PutBack(text(path_).get(), text(path_).get()), kNotAvailable);
  UniqueBstr reason;
  EXPECT_EQ(copies_->TakeCopyFailure(reason.put()), S_OK);
  EXPECT_STREQ(reason.get(), L"");
  VARIANT_BOOL isCopy = VARIANT_TRUE;
  EXPECT_EQ(copies_->IsCopy(text(path_).get(), &isCopy), S_OK);
  EXPECT_EQ(isCopy, VARIANT_FALSE);
}

TEST_F(Copies, TheStateBeforeTheFirstChangeIsToldAndPutBack) {
  keepAndOpen();
  EXPECT_EQ(count(), 0);
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T WHERE Name = 'a'"), S_OK);
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T WHERE Name = 'b'"), S_OK);
  ASSERT_EQ(connection_->Close(), S_OK);
  ASSERT_EQ(count(), 1);
  const Copy copy = copyAt(0);
  EXPECT_EQ(copy.reason, kChange);
  EXPECT_EQ(copy.bytes, 8192);
  SYSTEMTIME now{};
  GetSystemTime(&now);
  DATE present = 0;
  ASSERT_TRUE(SystemTimeToVariantTime(&now, &present));
  EXPECT_NEAR(copy.time, present, 5.0 / (24 * 60)) << "universal time";
  hyper records = -1;
  EXPECT_EQ(copies_->CountCopy(text(copy.path).get(), 60'000, &records), S_OK);
  EXPECT_EQ(records, 3);

  ASSERT_EQ(copies_->PutBack(text(path_).get(), text(copy.path).get()), S_OK);
  EXPECT_EQ(names(), (std::vector<std::string>{"a", "b", "c"}));
  ASSERT_EQ(count(), 2);
  EXPECT_EQ(copyAt(0).reason, kGoingBack);

  OwnedVariant databases;
  ASSERT_EQ(copies_->ListDatabases(databases.get()), S_OK);
  EXPECT_EQ(texts(databases), std::vector<std::wstring>{path_});
}

TEST_F(Copies, ACopyIsOpenedToBeRead) {
  keepAndOpen();
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T"), S_OK);
  ASSERT_EQ(connection_->Close(), S_OK);
  ASSERT_EQ(count(), 1);
  const Copy copy = copyAt(0);
  VARIANT_BOOL isCopy = VARIANT_FALSE;
  EXPECT_EQ(copies_->IsCopy(text(copy.path).get(), &isCopy), S_OK);
  EXPECT_EQ(isCopy, VARIANT_TRUE);
  SetFileAttributesW(copy.path.c_str(), FILE_ATTRIBUTE_NORMAL);
  ASSERT_EQ(openAt(connection_.get(), copy.path), S_OK);
  const ComPtr<IAdoceRecordset> records = recordsOf(connection_.get(), L"Select * from [T]");
  EXPECT_EQ(recordCount(records.get()), 3);
  EXPECT_EQ(execute(connection_.get(), L"DELETE FROM T"), kNotAvailable);
}

TEST_F(Copies, ADeletedTableComesBack) {
  keepAndOpen();
  ASSERT_EQ(copies_->KeepBeforeDeletion(), S_OK);
  ASSERT_EQ(execute(connection_.get(), L"DROP TABLE T"), S_OK);
  ASSERT_EQ(connection_->Close(), S_OK);
  ASSERT_EQ(count(), 1);
  const Copy copy = copyAt(0);
  EXPECT_EQ(copy.reason, kTableDeletion);
  EXPECT_EQ(copy.records, 3);
  OwnedVariant tables;
  ASSERT_EQ(copies_->ListMissingTables(text(path_).get(), text(copy.path).get(), tables.get()), S_OK);
  EXPECT_EQ(texts(tables), std::vector<std::wstring>{L"T"});
  EXPECT_EQ(copies_->PutTableBack(text(path_).get(), text(copy.path).get(), text(L"U").get()), kNoTable);
  ASSERT_EQ(copies_->PutTableBack(text(path_).get(), text(copy.path).get(), text(L"T").get()), S_OK);
  EXPECT_EQ(names().size(), 3u);
  EXPECT_EQ(copies_->PutTableBack(text(path_).get(), text(copy.path).get(), text(L"T").get()), kTableExists);
}

TEST_F(Copies, ADeletedDatabaseComesBack) {
  ASSERT_EQ(copies_->KeepCopies(text(folder_).get()), S_OK);
  ASSERT_EQ(copies_->KeepDatabase(text(path_).get()), S_OK);
  ASSERT_TRUE(DeleteFileW(path_.c_str()));
  ASSERT_EQ(count(), 1);
  const Copy copy = copyAt(0);
  EXPECT_EQ(copy.reason, kDatabaseDeletion);
  ASSERT_EQ(copies_->PutBack(text(path_).get(), text(copy.path).get()), S_OK);
  EXPECT_EQ(names().size(), 3u);
}

TEST_F(Copies, ARefusalSaysWhy) {
  keepAndOpen();
  EXPECT_EQ(copies_->PutBack(text(path_).get(), text(path_ + L" nothing").get()), kDamaged);
  writeFile(folder_, "in the way");
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T"), S_OK) << "the change is made all the same";
  EXPECT_EQ(names().size(), 0u);
  UniqueBstr reason;
  EXPECT_EQ(copies_->TakeCopyFailure(reason.put()), S_OK);
  EXPECT_NE(std::wstring(reason.get()), L"");
  EXPECT_EQ(copies_->TakeCopyFailure(reason.put()), S_OK);
  EXPECT_STREQ(reason.get(), L"") << "once";
}

TEST_F(Copies, WhatCanNotBeMeantIsRefused) {
  ASSERT_EQ(copies_->KeepCopies(text(folder_).get()), S_OK);
  UniqueBstr path;
  DATE time = 0;
  hyper number = 0;
  long reason = 0;
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(copies_->GetCopy(0, path.put(), &time, &number, &number, &reason), kNoSuchItem);
  EXPECT_EQ(copies_->GetCopy(-1, path.put(), &time, &number, &number, &reason), kNoSuchItem);
  EXPECT_EQ(copies_->GetCopy(0, nullptr, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(copies_->ListCopies(text(path_).get(), nullptr), E_POINTER);
  EXPECT_EQ(copies_->ListDatabases(nullptr), E_POINTER);
}

TEST_F(Copies, ScriptsCallItOnTheConnection) {
  const LateObject late(connection_.get());
  late.call(L"KeepCopies", arguments(variant(folder_.c_str())));
  ASSERT_EQ(openAt(connection_.get(), path_), S_OK);
  ASSERT_EQ(execute(connection_.get(), L"DELETE FROM T"), S_OK);
  OwnedVariant number = late.call(L"ListCopies", arguments(variant(path_.c_str())));
  EXPECT_EQ(V_I4(number.get()), 1);
}

}  // namespace
}  // namespace automationtest
