#include "base/settings/kept_texts.h"

#include <string>

#include "base/settings/settings_store.h"
#include "tests/unit/base/registry_fixture.h"

namespace {

constexpr wchar_t kFile[] = L"C:\\data\\a.cdb";

class KeptTextsTest : public RegistryTest {
 protected:
  static std::wstring kept(const wchar_t* name, bool isQuery = false, const wchar_t* file = kFile) {
    return kepttexts::read(file, isQuery, name);
  }
};

TEST_F(KeptTextsTest, EachTableAndQueryOfEachFileHasItsOwn) {
  kepttexts::write(kFile, false, L"Books", L"one");
  kepttexts::write(kFile, true, L"Books", L"two");
  kepttexts::write(L"C:\\data\\b.cdb", false, L"Books", L"three");
  EXPECT_EQ(kept(L"Books"), L"one");
  EXPECT_EQ(kept(L"Books", true), L"two");
  EXPECT_EQ(kept(L"Books", false, L"c:\\DATA\\B.cdb"), L"three");
  EXPECT_EQ(kept(L"Members"), L"");
  kepttexts::write(kFile, false, L"Books", L"another");
  EXPECT_EQ(kept(L"Books"), L"another");
  EXPECT_EQ(kept(L"Books", true), L"two");
}

TEST_F(KeptTextsTest, TheEmptyTextForgetsIt) {
  kepttexts::write(kFile, false, L"Books", L"one");
  kepttexts::write(kFile, false, L"Members", L"two");
  kepttexts::write(kFile, false, L"Books", L"");
  EXPECT_EQ(kept(L"Books"), L"");
  EXPECT_EQ(kept(L"Members"), L"two");
}

TEST_F(KeptTextsTest, ATextThatIsTooLongIsNotKeptInAnyPart) {
  kepttexts::write(kFile, false, L"Books", std::wstring(kepttexts::kMostCount, L'x'));
  EXPECT_EQ(kept(L"Books").size(), kepttexts::kMostCount);
  kepttexts::write(kFile, false, L"Books", std::wstring(kepttexts::kMostCount + 1, L'x'));
  EXPECT_EQ(kept(L"Books"), L"");
}

TEST_F(KeptTextsTest, TheLatestTablesAreKept) {
  for (int i = 0; i < 32; ++i) kepttexts::write(kFile, false, std::to_wstring(i).c_str(), L"x");
  kepttexts::write(kFile, false, L"0", L"y");
  kepttexts::write(kFile, false, L"new", L"z");
  EXPECT_EQ(kept(L"0"), L"y") << "changed since";
  EXPECT_EQ(kept(L"1"), L"");
  EXPECT_EQ(kept(L"2"), L"x");
  EXPECT_EQ(kept(L"new"), L"z");
}

TEST_F(KeptTextsTest, WhateverElseStandsThereIsPassedOver) {
  for (const wchar_t* odd : {L"|", L"||||", L"short", L"0123456789abcdef", L"|x|0123456789abcdefy|"}) {
    ASSERT_TRUE(SettingsStore::write(Setting::arrangements, String(odd)));
    EXPECT_EQ(kept(L"Books"), L"") << testing::PrintToString(std::wstring(odd));
    kepttexts::write(kFile, false, L"Books", L"one");
    EXPECT_EQ(kept(L"Books"), L"one");
  }
}

}  // namespace
