#include <string>

#include "gtest/gtest.h"
#include "records/history_text.h"

namespace {

using Kind = HistoryStep::Kind;

std::wstring undo(Kind kind, const wchar_t* record, const wchar_t* table = L"Books",
                  std::int64_t records = 1) {
  return historyText(HistoryWay::back, {kind, table, record, records});
}

TEST(HistoryText, SaysWhatWasDoneToWhichRecord) {
  EXPECT_EQ(undo(Kind::added, L"Ulysses"), L"Undo addition of 'Ulysses'");
  EXPECT_EQ(undo(Kind::changed, L"Ulysses"), L"Undo change of 'Ulysses'");
  EXPECT_EQ(undo(Kind::deleted, L"Ulysses"), L"Undo deletion of 'Ulysses'");
  EXPECT_EQ(historyText(HistoryWay::again, {Kind::deleted, L"Books", L"Ulysses", 1}),
            L"Redo deletion of 'Ulysses'");
}

TEST(HistoryText, SaysOnlyWhatItIsWithoutAStep) {
  EXPECT_EQ(historyText(HistoryWay::back, {}), L"Undo");
  EXPECT_EQ(historyText(HistoryWay::again, {}), L"Redo");
}

TEST(HistoryText, CountsSeveralRecords) {
  EXPECT_EQ(undo(Kind::imported, L"", L"Books", 12), L"Undo import of 12 records in 'Books'");
  EXPECT_EQ(undo(Kind::statement, L"", L"", 2), L"Undo change of 2 records");
  EXPECT_EQ(undo(Kind::statement, L"", L"", 0), L"Undo change of 0 records");
}

TEST(HistoryText, NamesTheTableOfARecordWithoutAName) {
  EXPECT_EQ(undo(Kind::deleted, L""), L"Undo deletion of a record in 'Books'");
  EXPECT_EQ(undo(Kind::deleted, L"", L""), L"Undo deletion of a record");
}

TEST(HistoryText, CutsALongNameBetweenTwoLetters) {
  EXPECT_EQ(undo(Kind::added, L"123456789012345678901234"), L"Undo addition of '123456789012345678901234'");
  EXPECT_EQ(undo(Kind::added, L"1234567890123456789012345"),
            L"Undo addition of '123456789012345678901234\u2026'");
  EXPECT_EQ(undo(Kind::added, L"12345678901234567890123\U0001F426!"),
            L"Undo addition of '12345678901234567890123\u2026'");
}

}  // namespace
