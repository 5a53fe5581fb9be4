// Every value that the program keeps, under the name that it has on the disk.
#include "base/settings/settings_table.h"

#include <string>
#include <vector>

#include "base/settings/app_colors.h"
#include "base/settings/settings_store.h"
#include "tests/unit/base/registry_fixture.h"

namespace {

struct Expected {
  const wchar_t* subkey;
  const wchar_t* name;
  SettingKind kind;
};

constexpr Expected kExpected[] = {
    {L"Options", L"UsePassword", SettingKind::number},
    {L"Options", L"WarningOnDeletion", SettingKind::number},
    {L"Options", L"GenUpdateRights", SettingKind::number},
    {L"Options", L"OpenLastTableOnStartup", SettingKind::number},
    {L"Options", L"RebarsAtTop", SettingKind::number},
    {L"Options", L"TabLabelStyle", SettingKind::number},
    {L"Options", L"GeneralAppColors", SettingKind::words},
    {L"Options", L"CheckAllFields", SettingKind::number},
    {L"Options", L"MatchCase", SettingKind::number},
    {L"Options", L"LastDBOnStartup", SettingKind::text},
    {L"Options", L"LastTableOnStartup", SettingKind::text},
    {L"Options", L"LastQueryOnStartup", SettingKind::text},
    {L"Options", L"LastSQLQuery", SettingKind::text},
    {L"Options", L"OpenQueryOnStartup", SettingKind::number},
    {L"RecentUserFinds", L"FI1", SettingKind::text},
    {L"RecentUserFinds", L"FI2", SettingKind::text},
    {L"RecentUserFinds", L"FI3", SettingKind::text},
    {L"RecentUserFinds", L"FI4", SettingKind::text},
    {L"RecentUserFinds", L"FI5", SettingKind::text},
    {L"Password", L"PasswordItem", SettingKind::text},
    {L"ColumnWidths", L"Widths", SettingKind::words},
    {L"Arrangements", L"Latest", SettingKind::text},
};

using SettingsTableTest = RegistryTest;

TEST_F(SettingsTableTest, HoldsEveryValueOnceUnderItsNameOnDisk) {
  ASSERT_EQ(settings::kTable.size(), std::size(kExpected));
  for (std::size_t i = 0; i < std::size(kExpected); ++i) {
    const SettingRow& row = settings::kTable[i];
    EXPECT_STREQ(row.subkey, kExpected[i].subkey) << i;
    EXPECT_STREQ(row.name, kExpected[i].name) << i;
    EXPECT_EQ(row.kind, kExpected[i].kind) << i;
  }
}

TEST_F(SettingsTableTest, WhatIsWrittenForARowStandsThereAndIsReadAgain) {
  for (const SettingRow& row : settings::kTable) {
    SCOPED_TRACE(static_cast<int>(row.setting));
    const std::uint32_t index = static_cast<std::uint32_t>(row.setting) + 1;
    if (row.kind == SettingKind::number) {
      std::uint32_t number = 99;
      EXPECT_FALSE(SettingsStore::read(row.setting, number));
      ASSERT_TRUE(SettingsStore::write(row.setting, index));
      EXPECT_EQ(raw(row.subkey, row.name), dwordValue(index));
      EXPECT_TRUE(SettingsStore::read(row.setting, number));
      EXPECT_EQ(number, index);
    } else if (row.kind == SettingKind::text) {
      const std::wstring written = L"text " + std::to_wstring(index);
      String text = L"before";
      EXPECT_FALSE(SettingsStore::read(row.setting, text));
      EXPECT_STREQ(text.text(), L"before");
      ASSERT_TRUE(SettingsStore::write(row.setting, String(written.c_str())));
      EXPECT_EQ(raw(row.subkey, row.name), textValue(written));
      EXPECT_TRUE(SettingsStore::read(row.setting, text));
      EXPECT_EQ(text.text(), written);
    } else {
      std::vector<std::uint32_t> words(kAppColorCount, index);
      std::vector<std::uint32_t> read(kAppColorCount);
      EXPECT_FALSE(SettingsStore::read(row.setting, read));
      ASSERT_TRUE(SettingsStore::write(row.setting, words));
      EXPECT_EQ(raw(row.subkey, row.name).type, static_cast<DWORD>(REG_BINARY));
      EXPECT_TRUE(SettingsStore::read(row.setting, read));
      EXPECT_EQ(read, words);
    }
  }
}

}  // namespace
