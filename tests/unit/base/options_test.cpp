#include "base/settings/options.h"

#include <cstdint>

#include "base/settings/app_colors.h"
#include "base/settings/app_settings.h"
#include "tests/unit/base/registry_fixture.h"

namespace {

constexpr const wchar_t* kOptions = L"Options";

class OptionsTest : public RegistryTest {
 protected:
  void SetUp() override {
    RegistryTest::SetUp();
    resetAppColors();
  }

  void TearDown() override {
    resetAppColors();
    RegistryTest::TearDown();
  }

  static void expectAllZero(const Options& options) {
    EXPECT_EQ(options.genUpdateRights(), kNoNewRecordsOrDeletions);
    EXPECT_EQ(options.warningOnDeletion(), 0u);
    EXPECT_EQ(options.usePassword(), 0u);
    EXPECT_EQ(options.openLastTableOnStartup(), 0u);
    EXPECT_EQ(options.rebarsAtTop(), 0u);
    EXPECT_EQ(options.tabLabelStyle(), kTabTextOnly);
  }

  static void setAll(Options& options, std::uint32_t first) {
    options.setGenUpdateRights(first);
    options.setWarningOnDeletion(first + 1);
    options.setUsePassword(first + 2);
    options.setOpenLastTableOnStartup(first + 3);
    options.setRebarsAtTop(first + 4);
    options.setTabLabelStyle(first + 5);
  }

  static void expectAll(const Options& options, std::uint32_t first) {
    EXPECT_EQ(options.genUpdateRights(), first);
    EXPECT_EQ(options.warningOnDeletion(), first + 1);
    EXPECT_EQ(options.usePassword(), first + 2);
    EXPECT_EQ(options.openLastTableOnStartup(), first + 3);
    EXPECT_EQ(options.rebarsAtTop(), first + 4);
    EXPECT_EQ(options.tabLabelStyle(), first + 5);
  }

  static void expectDefaultColors() {
    for (std::size_t i = 0; i < kAppColorCount; ++i) EXPECT_EQ(appColors[i], kAppColorDefaults[i].color) << i;
  }
};

TEST_F(OptionsTest, ANewRecordIsAllZero) {
  const Options options;
  expectAllZero(options);
}

TEST_F(OptionsTest, WithoutTheKeyEveryOptionIsZeroAndTheColorsAreTheDefaults) {
  appColors.fill(0x00123456);
  Options options;
  EXPECT_TRUE(options.load());
  expectAllZero(options);
  expectDefaultColors();
}

TEST_F(OptionsTest, WithTheKeyButNoValuesEveryOptionIsZeroAndTheColorsAreTheDefaults) {
  makeKey(kOptions);
  appColors.fill(0x00123456);
  Options options;
  setAll(options, 10);
  EXPECT_TRUE(options.load());
  expectAllZero(options);
  expectDefaultColors();
}

TEST_F(OptionsTest, WithoutTheKeyLoadingAgainLeavesTheValues) {
  Options options;
  setAll(options, 10);
  EXPECT_TRUE(options.load());
  expectAll(options, 10);
}

TEST_F(OptionsTest, SavesEachValueUnderItsName) {
  Options options;
  setAll(options, 10);
  EXPECT_TRUE(options.save());
  EXPECT_EQ(raw(kOptions, L"GenUpdateRights"), dwordValue(10));
  EXPECT_EQ(raw(kOptions, L"WarningOnDeletion"), dwordValue(11));
  EXPECT_EQ(raw(kOptions, L"UsePassword"), dwordValue(12));
  EXPECT_EQ(raw(kOptions, L"OpenLastTableOnStartup"), dwordValue(13));
  EXPECT_EQ(raw(kOptions, L"RebarsAtTop"), dwordValue(14));
  EXPECT_EQ(raw(kOptions, L"TabLabelStyle"), dwordValue(15));
}

TEST_F(OptionsTest, SavesTheColorsInTableOrder) {
  appColors[kTablesViewBackground] = 0x00010203;
  appColors[kQueryViewText] = 0x00A0B0C0;
  EXPECT_TRUE(Options().save());
  const Value stored = raw(kOptions, L"GeneralAppColors");
  EXPECT_EQ(stored.type, static_cast<DWORD>(REG_BINARY));
  ASSERT_EQ(stored.bytes.size(), 60u);
  EXPECT_EQ(Bytes(stored.bytes.begin(), stored.bytes.begin() + 8),
            (Bytes{0x03, 0x02, 0x01, 0x00, 0x00, 0x00, 0xFF, 0x00}));
  EXPECT_EQ(Bytes(stored.bytes.end() - 4, stored.bytes.end()), (Bytes{0xC0, 0xB0, 0xA0, 0x00}));
}

TEST_F(OptionsTest, LoadsWhatWasSaved) {
  Options saved;
  setAll(saved, 20);
  appColors[kListViewText] = 0x00445566;
  ASSERT_TRUE(saved.save());
  appColors.fill(0);
  Options loaded;
  EXPECT_TRUE(loaded.load());
  expectAll(loaded, 20);
  EXPECT_EQ(appColors[kListViewText], 0x00445566u);
  EXPECT_EQ(appColors[kTablesViewBackground], 0x0080FFFFu);
}

TEST_F(OptionsTest, AMissingValueAmongOthersIsZero) {
  setRaw(kOptions, L"RebarsAtTop", REG_DWORD, {1, 0, 0, 0});
  Options options;
  setAll(options, 10);
  EXPECT_TRUE(options.load());
  EXPECT_EQ(options.rebarsAtTop(), 1u);
  EXPECT_EQ(options.tabLabelStyle(), 0u);
  EXPECT_EQ(options.usePassword(), 0u);
}

TEST_F(OptionsTest, UpdateRightsOutOfRangeAreKept) {
  setRaw(kOptions, L"GenUpdateRights", REG_DWORD, {3, 0, 0, 0});
  Options options;
  EXPECT_TRUE(options.load());
  EXPECT_EQ(options.genUpdateRights(), 3u);
  EXPECT_TRUE(options.save());
  EXPECT_EQ(raw(kOptions, L"GenUpdateRights"), dwordValue(3));
}

TEST_F(OptionsTest, ColorsOf64BytesAreNotReadAndTheNextSaveWrites60) {
  setRaw(kOptions, L"GeneralAppColors", REG_BINARY, Bytes(64, 0x11));
  Options options;
  EXPECT_TRUE(options.load());
  expectDefaultColors();
  EXPECT_TRUE(options.save());
  EXPECT_EQ(raw(kOptions, L"GeneralAppColors").bytes.size(), 60u);
}

TEST_F(OptionsTest, ColorsOf56BytesAreNotRead) {
  setRaw(kOptions, L"GeneralAppColors", REG_BINARY, Bytes(56, 0x11));
  Options options;
  EXPECT_TRUE(options.load());
  expectDefaultColors();
}

TEST_F(OptionsTest, SaveSaysThatNothingCouldBeWritten) {
  forbidWriting();
  EXPECT_FALSE(Options().save());
}

TEST_F(OptionsTest, ResetColorsRestoresTheDefaultsInMemoryOnly) {
  Options options;
  appColors.fill(0x00123456);
  ASSERT_TRUE(options.save());
  options.resetColors();
  expectDefaultColors();
  EXPECT_EQ(raw(kOptions, L"GeneralAppColors").bytes[0], 0x56);
}

TEST_F(OptionsTest, ThePagesBeginWithNothingChosen) {
  Options options;
  EXPECT_EQ(options.generalPage().updateRights, 0u);
  EXPECT_EQ(options.generalPage().openLastTable, 0u);
  EXPECT_EQ(options.generalPage().window, nullptr);
  EXPECT_EQ(options.securityPage().usePassword, 0u);
  EXPECT_EQ(options.securityPage().warningOnDeletion, 0u);
  EXPECT_EQ(options.viewPage().rebarsAtTop, 0u);
  EXPECT_EQ(options.viewPage().tabLabelStyle, 0u);
  EXPECT_EQ(options.colorPage().window, nullptr);
  EXPECT_EQ(options.colorPage().selectedIndex, -1);
}

TEST_F(OptionsTest, TheProgramsSettingsAreLoadedWhenTheyAreCreated) {
  setRaw(kOptions, L"TabLabelStyle", REG_DWORD, {2, 0, 0, 0});
  EXPECT_EQ(theAppSettings, nullptr);
  theAppSettings = std::make_unique<AppSettings>();
  EXPECT_EQ(theAppSettings->options().tabLabelStyle(), kTabTextAndIcon);
  EXPECT_EQ(theAppSettings->databaseOpen, 0u);
  EXPECT_STREQ(theAppSettings->text.text(), L"");
  theAppSettings.reset();
}

TEST_F(OptionsTest, CreatingTheProgramsSettingsWritesNothing) {
  const AppSettings settings;
  EXPECT_FALSE(keyExists(kOptions));
}

}  // namespace
