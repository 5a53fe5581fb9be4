// Settings that another program, or a hand, has spoilt: each of them in every way.
#include <windows.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "base/settings/app_colors.h"
#include "base/settings/app_settings.h"
#include "base/settings/recent_finds.h"
#include "base/settings/settings_file.h"
#include "base/settings/settings_store.h"
#include "base/settings/settings_table.h"
#include "tests/support/paths.h"
#include "tests/unit/base/registry_fixture.h"

namespace {

constexpr std::size_t kMegabyte = 1024 * 1024;

/// How a value is spoilt; nothing for one that is missing.
struct Spoilt {
  const char* name;
  bool isThere;
  DWORD type;
  std::size_t length;
  unsigned char content;
};

constexpr Spoilt kSpoilt[] = {
    {"Missing", false, REG_NONE, 0, 0},
    {"Empty", true, REG_NONE, 0, 0},
    {"OneByte", true, REG_BINARY, 1, 0x41},
    {"ThreeBytes", true, REG_BINARY, 3, 0x41},
    {"FourBytes", true, REG_BINARY, 4, 0x41},
    {"TextWithoutAnEnd", true, REG_SZ, 40, 0x41},
    {"SixtyOneBytes", true, REG_BINARY, 61, 0x41},
    {"ManyTexts", true, REG_MULTI_SZ, 64, 0x41},
    {"EightBytes", true, REG_QWORD, 8, 0xFF},
    {"NoTypeAtAll", true, 0xDEADBEEF, 12, 0x7F},
    {"OneMegabyte", true, REG_SZ, kMegabyte, 0x41},
    {"OneMegabyteOfZeros", true, REG_BINARY, kMegabyte, 0},
};

/// In the registry, or in a file in its place.
class HostileSettingsTest : public RegistryTest,
                            public testing::WithParamInterface<std::tuple<Spoilt, bool>> {
 protected:
  void SetUp() override {
    RegistryTest::SetUp();
    if (isInFile()) SettingsStore::keepIn(&file_);
  }
  void TearDown() override {
    SettingsStore::keepIn(nullptr);
    resetAppColors();
    RegistryTest::TearDown();
  }

  static const Spoilt& spoilt() { return std::get<0>(GetParam()); }
  static bool isInFile() { return std::get<1>(GetParam()); }
  static Bytes bytes() { return Bytes(spoilt().length, spoilt().content); }

  void spoil(const SettingRow& row) {
    if (!spoilt().isThere) {
      // The key is there without the value.
      if (!isInFile()) makeKey(row.subkey);
    } else if (isInFile()) {
      ASSERT_TRUE(
          file_.write(pathOf(row.subkey).c_str(), row.name, spoilt().type, bytes().data(), bytes().size()));
    } else {
      setRaw(row.subkey, row.name, spoilt().type, bytes());
    }
  }

  /// What stands on the disk.
  Value stored(const SettingRow& row) const {
    if (!isInFile()) return raw(row.subkey, row.name);
    settings::Value value;
    if (file_.read(pathOf(row.subkey).c_str(), row.name, value) != SettingsFile::Found::value) return {};
    return {value.type, value.bytes};
  }

  /// A number is what its first four bytes say, whatever it is called; a longer one is none.
  static std::uint32_t expectedNumber() {
    std::uint32_t number = 0;
    if (spoilt().isThere && spoilt().length <= sizeof number)
      std::memset(&number, spoilt().content, spoilt().length);
    return number;
  }
  static std::wstring expectedText() {
    if (!spoilt().isThere || spoilt().content == 0) return {};
    const wchar_t unit = static_cast<wchar_t>(spoilt().content << 8 | spoilt().content);
    return std::wstring(spoilt().length / sizeof(wchar_t), unit);
  }

 private:
  testsupport::TempFolder folder_;
  SettingsFile file_{folder_.file("Quivane.settings")};
};

TEST_P(HostileSettingsTest, EachIsReadAsItsDefaultAndIsMendedByTheNextWriting) {
  for (const SettingRow& row : settings::kTable) {
    SCOPED_TRACE(std::string(row.name, row.name + std::wcslen(row.name)));
    ASSERT_NO_FATAL_FAILURE(spoil(row));
    switch (row.kind) {
      case SettingKind::number: {
        std::uint32_t number = 0;
        SettingsStore::read(row.setting, number);
        EXPECT_EQ(number, expectedNumber());
        ASSERT_TRUE(SettingsStore::write(row.setting, std::uint32_t{1}));
        EXPECT_EQ(stored(row), dwordValue(1));
        break;
      }
      case SettingKind::text: {
        String text;
        SettingsStore::read(row.setting, text);
        // An odd byte at the end is half a character at most.
        EXPECT_EQ(text.length() - expectedText().size(), text.length() > expectedText().size() ? 1u : 0u);
        EXPECT_EQ(std::wstring(text.text()).substr(0, expectedText().size()), expectedText());
        ASSERT_TRUE(SettingsStore::write(row.setting, String(L"mended")));
        EXPECT_EQ(stored(row), textValue(L"mended"));
        break;
      }
      case SettingKind::words: {
        std::vector<std::uint32_t> words(kAppColorCount, 7);
        EXPECT_FALSE(SettingsStore::read(row.setting, words));
        ASSERT_TRUE(SettingsStore::write(row.setting, words));
        EXPECT_EQ(stored(row).type, static_cast<DWORD>(REG_BINARY));
        EXPECT_TRUE(SettingsStore::read(row.setting, words));
        break;
      }
    }
  }
}

TEST_P(HostileSettingsTest, WithAllOfThemTheOptionsAndTheRecentFindsCanBeUsed) {
  for (const SettingRow& row : settings::kTable) ASSERT_NO_FATAL_FAILURE(spoil(row));
  AppSettings settings;
  Options& options = settings.options();
  EXPECT_EQ(options.usePassword(), expectedNumber());
  EXPECT_EQ(options.genUpdateRights(), expectedNumber());
  EXPECT_EQ(appColors[0], 0x0080FFFFu) << "the built-in colours";
  EXPECT_TRUE(options.save());
  std::vector<std::uint32_t> words(kAppColorCount);
  EXPECT_TRUE(SettingsStore::read(Setting::colors, words));
  RecentFinds::remember(L"found");
  NameList finds;
  RecentFinds::list(finds);
  ASSERT_FALSE(finds.isEmpty());
  EXPECT_STREQ(finds[0].text(), L"found");
  EXPECT_EQ(stored(settings::rowOf(Setting::recentFind)), textValue(L"found"));
}

INSTANTIATE_TEST_SUITE_P(, HostileSettingsTest, testing::Combine(testing::ValuesIn(kSpoilt), testing::Bool()),
                         [](const testing::TestParamInfo<std::tuple<Spoilt, bool>>& each) {
                           return std::string(std::get<0>(each.param).name) +
                                  (std::get<1>(each.param) ? "InTheFile" : "InTheRegistry");
                         });

}  // namespace
