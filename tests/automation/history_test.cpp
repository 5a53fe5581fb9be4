#include <string>
#include <vector>

#include "tests/automation/support/automation_test.h"
#include "tests/automation/support/late_object.h"
#include "tests/automation/support/sqlite_file.h"

// Changes that are taken back and done again. What the engine makes of them is tested there.

namespace automationtest {
namespace {

constexpr HRESULT kNoStep = static_cast<HRESULT>(0x800A0BCDu);
constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x800A0BB9u);
constexpr HRESULT kInvalidConnection = static_cast<HRESULT>(0x800A0E7Du);
constexpr HRESULT kChangedElsewhere = static_cast<HRESULT>(0x80040E38u);
constexpr long kBack = 0;
constexpr long kAgain = 1;

class History : public AutomationTest {
 protected:
  History() {
    SqliteFile(path_).run("CREATE TABLE T (Name TEXT); INSERT INTO T VALUES ('a'), ('b'), ('c')");
    EXPECT_EQ(connection_->QueryInterface(__uuidof(IAdoceHistory), reinterpret_cast<void**>(history_.put())),
              S_OK);
  }

  std::wstring next(long direction) {
    long kind = -1;
    UniqueBstr table;
    UniqueBstr record;
    hyper records = -1;
    EXPECT_EQ(history_->GetHistoryStep(direction, &kind, table.put(), record.put(), &records), S_OK);
    return std::to_wstring(kind) + L" " + table.get() + L" " + record.get() + L" " + std::to_wstring(records);
  }
  void remove(long position) {
    const ComPtr<IAdoceRecordset> records = recordsOf(connection_.get(), L"Select * from [T]");
    ASSERT_EQ(records->put_AbsolutePosition(position), S_OK);
    ASSERT_EQ(records->Delete(1), S_OK);
  }
  std::vector<std::string> names() { return sqliteColumn(path_, "SELECT Name FROM T ORDER BY rowid"); }

  std::wstring path_ = makeDatabase();
  ComPtr<IAdoceConnection> connection_ = connectTo(path_);
  ComPtr<IAdoceHistory> history_;
};

TEST_F(History, IsAnInterfaceOfTheSameObject) {
  ComPtr<IUnknown> first;
  ComPtr<IUnknown> second;
  ASSERT_EQ(connection_->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(first.put())), S_OK);
  ASSERT_EQ(history_->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(second.put())), S_OK);
  EXPECT_EQ(first.get(), second.get());
  ComPtr<IAdoceConnection> back;
  EXPECT_EQ(history_->QueryInterface(__uuidof(IAdoceConnection), reinterpret_cast<void**>(back.put())), S_OK);
}

TEST_F(History, KeepsNothingBeforeItIsTold) {
  remove(1);
  EXPECT_EQ(next(kBack), L"0   0");
  EXPECT_EQ(history_->TakeHistoryStep(kBack), kNoStep);
}

TEST_F(History, AStepIsToldTakenAndFound) {
  ASSERT_EQ(history_->KeepHistory(16), S_OK);
  remove(2);
  EXPECT_EQ(next(kBack), L"3 T b 1");
  ASSERT_EQ(history_->TakeHistoryStep(kBack), S_OK);
  EXPECT_EQ(names(), (std::vector<std::string>{"a", "b", "c"}));
  const ComPtr<IAdoceRecordset> records = recordsOf(connection_.get(), L"Select * from [T]");
  long position = -1;
  EXPECT_EQ(history_->FindHistoryRecord(records.get(), &position), S_OK);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(next(kAgain), L"3 T b 1");
  ASSERT_EQ(history_->TakeHistoryStep(kAgain), S_OK);
  EXPECT_EQ(names(), (std::vector<std::string>{"a", "c"}));
  EXPECT_EQ(history_->FindHistoryRecord(records.get(), &position), S_OK);
  EXPECT_EQ(position, 0);
}

TEST_F(History, RecordsOfAnotherConnectionDontHoldIt) {
  ASSERT_EQ(history_->KeepHistory(16), S_OK);
  remove(2);
  ASSERT_EQ(history_->TakeHistoryStep(kBack), S_OK);
  const ComPtr<IAdoceConnection> other = connectTo(path_);
  const ComPtr<IAdoceRecordset> records = recordsOf(other.get(), L"Select * from [T]");
  long position = -1;
  EXPECT_EQ(history_->FindHistoryRecord(records.get(), &position), S_OK);
  EXPECT_EQ(position, 0);
}

TEST_F(History, AChangeOfAValueKeepsTheRecords) {
  ASSERT_EQ(history_->KeepHistory(16), S_OK);
  const auto hasKept = [&] {
    VARIANT_BOOL kept = 1;
    EXPECT_EQ(history_->HistoryHasKeptRecords(&kept), S_OK);
    return kept;
  };
  EXPECT_EQ(hasKept(), VARIANT_FALSE);
  const ComPtr<IAdoceRecordset> records = recordsOf(connection_.get(), L"Select * from [T]");
  ASSERT_EQ(put(records.get(), 0, variant(L"changed")), S_OK);
  ASSERT_EQ(update(records.get()), S_OK);
  ASSERT_EQ(history_->TakeHistoryStep(kBack), S_OK);
  EXPECT_EQ(hasKept(), VARIANT_TRUE);
  remove(2);
  ASSERT_EQ(history_->TakeHistoryStep(kBack), S_OK);
  EXPECT_EQ(hasKept(), VARIANT_FALSE);
  EXPECT_EQ(history_->HistoryHasKeptRecords(nullptr), E_POINTER);
  ASSERT_EQ(connection_->Close(), S_OK);
  VARIANT_BOOL kept = VARIANT_FALSE;
  EXPECT_EQ(history_->HistoryHasKeptRecords(&kept), kInvalidConnection);
}

TEST_F(History, ARefusalSaysWhy) {
  ASSERT_EQ(history_->KeepHistory(16), S_OK);
  {
    const ComPtr<IAdoceRecordset> records = recordsOf(connection_.get(), L"Select * from [T]");
    ASSERT_EQ(put(records.get(), 0, variant(L"changed")), S_OK);
    ASSERT_EQ(update(records.get()), S_OK);
  }
  SqliteFile(path_).run("UPDATE T SET Name = 'theirs' WHERE Name = 'changed'");
  EXPECT_EQ(history_->TakeHistoryStep(kBack), kChangedElsewhere);
  EXPECT_EQ(names().front(), "theirs");
  EXPECT_EQ(next(kBack), L"0   0");
}

TEST_F(History, ClosingForgets) {
  ASSERT_EQ(history_->KeepHistory(16), S_OK);
  remove(2);
  ASSERT_EQ(connection_->Close(), S_OK);
  EXPECT_EQ(history_->TakeHistoryStep(kBack), kInvalidConnection);
  EXPECT_EQ(history_->KeepHistory(16), kInvalidConnection);
  ASSERT_EQ(connection_->Open(nullptr, nullptr, nullptr, -1), S_OK);
  EXPECT_EQ(next(kBack), L"0   0");
}

TEST_F(History, WhatCanNotBeMeantIsRefused) {
  EXPECT_EQ(history_->KeepHistory(-1), kInvalidArgument);
  EXPECT_EQ(history_->KeepHistory(1025), kInvalidArgument);
  EXPECT_EQ(history_->TakeHistoryStep(2), kInvalidArgument);
  EXPECT_EQ(history_->GetHistoryStep(kBack, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(history_->FindHistoryRecord(nullptr, nullptr), E_POINTER);
}

TEST_F(History, ScriptsCallItOnTheConnection) {
  const LateObject late(connection_.get());
  late.call(L"KeepHistory", arguments(variant(16L)));
  remove(1);
  late.call(L"TakeHistoryStep", arguments(variant(kBack)));
  EXPECT_EQ(names().size(), 3u);
  EXPECT_EQ(late.call(L"HistoryHasKeptRecords").get()->boolVal, VARIANT_FALSE);
  EXPECT_EQ(failureOf([&] { late.call(L"TakeHistoryStep", arguments(variant(kBack))); }).result, kNoStep);
}

}  // namespace
}  // namespace automationtest
