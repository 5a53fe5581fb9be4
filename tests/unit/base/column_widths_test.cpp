#include "base/settings/column_widths.h"

#include <array>
#include <string>

#include "base/settings/settings_store.h"
#include "tests/unit/base/registry_fixture.h"

namespace {

constexpr wchar_t kFile[] = L"C:\\data\\a.cdb";

class ColumnWidthsTest : public RegistryTest {
 protected:
  static void keep(const wchar_t* file, bool isQuery, const wchar_t* name, const wchar_t* field, int width) {
    ColumnWidths widths(file, isQuery, name);
    widths.set(field, width);
    widths.keep();
  }
  static int kept(const wchar_t* file, bool isQuery, const wchar_t* name, const wchar_t* field) {
    return ColumnWidths(file, isQuery, name).of(field).value_or(0);
  }
};

TEST_F(ColumnWidthsTest, EachTableAndQueryOfEachFileHasItsOwn) {
  keep(kFile, false, L"Books", L"Title", 120);
  keep(kFile, true, L"Books", L"Title", 130);
  keep(kFile, false, L"Members", L"Title", 140);
  keep(L"C:\\data\\b.cdb", false, L"Books", L"Title", 150);
  EXPECT_EQ(kept(kFile, false, L"Books", L"Title"), 120);
  EXPECT_EQ(kept(kFile, true, L"Books", L"Title"), 130);
  EXPECT_EQ(kept(kFile, false, L"Members", L"Title"), 140);
  EXPECT_EQ(kept(L"c:\\DATA\\B.cdb", false, L"Books", L"Title"), 150);
  EXPECT_EQ(kept(kFile, false, L"Books", L"Author"), 0);
  EXPECT_EQ(kept(kFile, false, L"books", L"Title"), 0);
}

TEST_F(ColumnWidthsTest, WhatIsNotKeptIsNotWritten) {
  ColumnWidths widths(kFile, false, L"Books");
  widths.set(L"Title", 120);
  EXPECT_EQ(widths.of(L"Title"), 120);
  EXPECT_EQ(kept(kFile, false, L"Books", L"Title"), 0);
  widths.keep();
  EXPECT_EQ(kept(kFile, false, L"Books", L"Title"), 120);
  // Another program, or a second grid, is not overwritten by what has not changed.
  keep(kFile, false, L"Books", L"Title", 200);
  widths.set(L"Title", 120);
  widths.keep();
  EXPECT_EQ(kept(kFile, false, L"Books", L"Title"), 200);
}

TEST_F(ColumnWidthsTest, TheLatestTablesAndFieldsAreKept) {
  for (int i = 0; i < 32; ++i) keep(kFile, false, std::to_wstring(i).c_str(), L"f", 100 + i);
  keep(kFile, false, L"0", L"f", 99);
  keep(kFile, false, L"new", L"f", 98);
  EXPECT_EQ(kept(kFile, false, L"0", L"f"), 99) << "changed since";
  EXPECT_EQ(kept(kFile, false, L"1", L"f"), 0);
  EXPECT_EQ(kept(kFile, false, L"2", L"f"), 102);
  EXPECT_EQ(kept(kFile, false, L"31", L"f"), 131);
  EXPECT_EQ(kept(kFile, false, L"new", L"f"), 98);

  ColumnWidths widths(kFile, false, L"wide");
  for (int i = 0; i < 20; ++i) widths.set(std::to_wstring(i).c_str(), 50 + i);
  widths.set(L"0", 49);
  widths.set(L"new", 48);
  widths.keep();
  EXPECT_EQ(kept(kFile, false, L"wide", L"0"), 49);
  EXPECT_EQ(kept(kFile, false, L"wide", L"1"), 0);
  EXPECT_EQ(kept(kFile, false, L"wide", L"2"), 52);
  EXPECT_EQ(kept(kFile, false, L"wide", L"19"), 69);
  EXPECT_EQ(kept(kFile, false, L"wide", L"new"), 48);
}

TEST_F(ColumnWidthsTest, WidthsAreBroughtToWhatAColumnMayHave) {
  keep(kFile, false, L"T", L"none", 0);
  keep(kFile, false, L"T", L"less", -5);
  keep(kFile, false, L"T", L"huge", 1'000'000);
  EXPECT_EQ(kept(kFile, false, L"T", L"none"), ColumnWidths::kLeast);
  EXPECT_EQ(kept(kFile, false, L"T", L"less"), ColumnWidths::kLeast);
  EXPECT_EQ(kept(kFile, false, L"T", L"huge"), ColumnWidths::kMost);
}

TEST_F(ColumnWidthsTest, WhatSomebodyElseHasWrittenDoesNoHarm) {
  keep(kFile, false, L"T", L"f", 100);
  const std::array<std::uint32_t, 3> tooShort = {1, 2, 3};
  ASSERT_TRUE(SettingsStore::write(Setting::columnWidths, tooShort));
  EXPECT_EQ(kept(kFile, false, L"T", L"f"), 0);
  keep(kFile, false, L"T", L"f", 100);
  EXPECT_EQ(kept(kFile, false, L"T", L"f"), 100);
  std::array<std::uint32_t, 32 * 42> words{};
  ASSERT_TRUE(SettingsStore::read(Setting::columnWidths, words));
  for (std::uint32_t& word : words) word = word == 100 ? 0xFFFFFFFF : word;
  ASSERT_TRUE(SettingsStore::write(Setting::columnWidths, words));
  EXPECT_EQ(kept(kFile, false, L"T", L"f"), ColumnWidths::kMost);
}

TEST_F(ColumnWidthsTest, OfNothingThereIsNothing) {
  ColumnWidths none;
  EXPECT_FALSE(none.of(L"f"));
  none.keep();
  std::array<std::uint32_t, 32 * 42> words{};
  EXPECT_FALSE(SettingsStore::read(Setting::columnWidths, words));
}

}  // namespace
