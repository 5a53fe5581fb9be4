#include "base/settings/recent_finds.h"

#include <string>
#include <vector>

#include "tests/unit/base/registry_fixture.h"

namespace {

using Texts = std::vector<std::wstring>;

class RecentFindsTest : public RegistryTest {
 protected:
  /// Stores "FI1", "FI2" ... as they are.
  static void store(const Texts& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      ASSERT_TRUE(SettingsStore::writeString(L"RecentUserFinds", name(i + 1).c_str(), texts[i].c_str()));
    }
  }

  /// The five values as they are stored, "-" for a missing one.
  static Texts stored() {
    Texts texts;
    for (std::size_t position = 1; position <= 5; ++position) {
      String text = L"-";
      SettingsStore::readString(L"RecentUserFinds", name(position).c_str(), text);
      texts.emplace_back(text.text());
    }
    return texts;
  }

  static Texts listed() {
    NameList finds;
    finds.append(L"from before");
    RecentFinds::list(finds);
    Texts texts;
    for (std::uint32_t i = 0; i < finds.size(); ++i) texts.emplace_back(finds[i].text());
    return texts;
  }

  static std::wstring name(std::size_t position) { return L"FI" + std::to_wstring(position); }
};

TEST_F(RecentFindsTest, WithoutTheKeyTheListIsEmpty) {
  EXPECT_EQ(listed(), Texts{});
}

TEST_F(RecentFindsTest, TheFirstTextIsListedAlone) {
  RecentFinds::remember(L"first");
  EXPECT_EQ(listed(), Texts{L"first"});
}

TEST_F(RecentFindsTest, TheNewestComesFirst) {
  for (const wchar_t* text : {L"a", L"b", L"c"}) RecentFinds::remember(text);
  EXPECT_EQ(listed(), (Texts{L"c", L"b", L"a"}));
}

TEST_F(RecentFindsTest, FreePlacesOfAListNotYetFullHoldEmptyTextsAtMost) {
  RecentFinds::remember(L"a");
  RecentFinds::remember(L"b");
  EXPECT_EQ(stored(), (Texts{L"b", L"a", L"", L"", L""}));
}

TEST_F(RecentFindsTest, TheOldestFallsOffAFullList) {
  store({L"a", L"b", L"c", L"d", L"e"});
  RecentFinds::remember(L"x");
  EXPECT_EQ(stored(), (Texts{L"x", L"a", L"b", L"c", L"d"}));
}

TEST_F(RecentFindsTest, ATextInTheMiddleMovesToTheFront) {
  store({L"a", L"b", L"c", L"d", L"e"});
  RecentFinds::remember(L"c");
  EXPECT_EQ(stored(), (Texts{L"c", L"a", L"b", L"d", L"e"}));
}

TEST_F(RecentFindsTest, TheLastTextMovesToTheFrontAndTheOthersKeepTheirOrder) {
  store({L"a", L"b", L"c", L"d", L"e"});
  RecentFinds::remember(L"e");
  EXPECT_EQ(stored(), (Texts{L"e", L"a", L"b", L"c", L"d"}));
}

TEST_F(RecentFindsTest, ATextInAListNotYetFullMovesToTheFront) {
  store({L"a", L"b", L"c"});
  RecentFinds::remember(L"c");
  EXPECT_EQ(listed(), (Texts{L"c", L"a", L"b"}));
}

TEST_F(RecentFindsTest, TheSameTextTwiceInARowLeavesTheListUnchanged) {
  store({L"a", L"b", L"c", L"d", L"e"});
  RecentFinds::remember(L"x");
  const Texts once = stored();
  RecentFinds::remember(L"x");
  EXPECT_EQ(stored(), once);
}

TEST_F(RecentFindsTest, TheNewestTextAgainIsNotWritten) {
  store({L"a"});
  RecentFinds::remember(L"a");
  EXPECT_EQ(stored(), (Texts{L"a", L"-", L"-", L"-", L"-"}));
}

TEST_F(RecentFindsTest, ATextThatMovedOnAndLeftItselfBehindMakesRoom) {
  store({L"a", L"a", L"c", L"d", L"e"});
  RecentFinds::remember(L"x");
  EXPECT_EQ(stored(), (Texts{L"x", L"a", L"c", L"d", L"e"}));
}

TEST_F(RecentFindsTest, TextsThatDifferInCaseOrLengthAreDifferent) {
  for (const wchar_t* text : {L"Word", L"word", L"words"}) RecentFinds::remember(text);
  EXPECT_EQ(listed(), (Texts{L"words", L"word", L"Word"}));
}

TEST_F(RecentFindsTest, EmptyAndMissingTextsAreSkipped) {
  store({L"", L"b", L"", L"d"});
  EXPECT_EQ(listed(), (Texts{L"b", L"d"}));
}

TEST_F(RecentFindsTest, TheEmptyTextPushesTheOldestOutOfAFullList) {
  store({L"a", L"b", L"c", L"d", L"e"});
  RecentFinds::remember(L"");
  EXPECT_EQ(stored(), (Texts{L"", L"a", L"b", L"c", L"d"}));
  EXPECT_EQ(listed(), (Texts{L"a", L"b", L"c", L"d"}));
}

TEST_F(RecentFindsTest, TheEmptyTextTwiceInARowLeavesTheListUnchanged) {
  store({L"a", L"b", L"c", L"d", L"e"});
  RecentFinds::remember(L"");
  RecentFinds::remember(L"");
  EXPECT_EQ(stored(), (Texts{L"", L"a", L"b", L"c", L"d"}));
}

TEST_F(RecentFindsTest, TheEmptyTextTakesAFreePlaceAndNoTextIsListedTwice) {
  store({L"a", L"b"});
  RecentFinds::remember(L"");
  EXPECT_EQ(stored(), (Texts{L"", L"a", L"b", L"", L""}));
  RecentFinds::remember(L"x");
  EXPECT_EQ(listed(), (Texts{L"x", L"a", L"b"}));
}

TEST_F(RecentFindsTest, LongTextsOfEveryScriptAreRemembered) {
  const std::wstring text = std::wstring(2'000, L'\u0416') + L"\u65E5\xD83D\xDE00";
  RecentFinds::remember(text.c_str());
  EXPECT_EQ(listed(), Texts{text});
}

TEST_F(RecentFindsTest, AnUnwritableRegistryIsNoFailure) {
  forbidWriting();
  RecentFinds::remember(L"a");
  EXPECT_EQ(listed(), Texts{});
}

}  // namespace
