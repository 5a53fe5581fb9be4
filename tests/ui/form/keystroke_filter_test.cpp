#include "views/form/keystroke_filter.h"

#include <string>

#include "gtest/gtest.h"
#include "views/form/editor_registry.h"

namespace {

using enum KeystrokeVerdict;

TEST(KeystrokeFilter, NumbersTakeDigitsAndBackspaceAlone) {
  const KeystrokeRules rules{.numeric = true, .minusAllowed = false, .maximumLength = 1};
  KeystrokeState state;
  for (wchar_t digit = L'0'; digit <= L'9'; ++digit) EXPECT_EQ(filterKeystroke(digit, rules, state), accept);
  EXPECT_EQ(state.textLength, 10u) << "numbers have no maximum";
  EXPECT_EQ(filterKeystroke(L'\b', rules, state), accept);
  EXPECT_EQ(state.textLength, 9u);
  for (const wchar_t character : std::wstring(L"/:-+.,aZ e\t\r\n\x1B\x03\x16\x7F\x0660\xFF11")) {
    EXPECT_EQ(filterKeystroke(character, rules, state), rejectWithMessage) << static_cast<int>(character);
  }
  EXPECT_EQ(state.textLength, 9u);
  EXPECT_FALSE(state.tabPressed);
}

TEST(KeystrokeFilter, SignedNumbersTakeAMinusAnywhere) {
  const KeystrokeRules rules{.numeric = true, .minusAllowed = true, .maximumLength = 1};
  KeystrokeState state;
  EXPECT_EQ(filterKeystroke(L'1', rules, state), accept);
  EXPECT_EQ(filterKeystroke(L'-', rules, state), accept);
  EXPECT_EQ(filterKeystroke(L'-', rules, state), accept);
  EXPECT_EQ(state.textLength, 3u);
}

TEST(KeystrokeFilter, ATextOfFiveTakesASixthCharacterAndRejectsTheSeventh) {
  const KeystrokeRules rules{.maximumLength = 5};
  KeystrokeState state;
  for (const wchar_t character : std::wstring(L"a-1 .X")) {
    EXPECT_EQ(filterKeystroke(character, rules, state), accept) << static_cast<int>(character);
  }
  EXPECT_EQ(filterKeystroke(L'y', rules, state), reject);
  EXPECT_EQ(state.textLength, 6u);
  EXPECT_EQ(filterKeystroke(L'\b', rules, state), accept);
  EXPECT_EQ(filterKeystroke(L'y', rules, state), accept);
}

TEST(KeystrokeFilter, ATabIsRememberedAndNotTaken) {
  const KeystrokeRules rules{.maximumLength = 5};
  KeystrokeState state;
  EXPECT_EQ(filterKeystroke(L'\t', rules, state), reject);
  EXPECT_TRUE(state.tabPressed);
  EXPECT_EQ(state.textLength, 0u);
}

TEST(KeystrokeFilter, BackspaceInAnEmptyTextDoesNotLockIt) {
  const KeystrokeRules rules{.maximumLength = 5};
  KeystrokeState state;
  EXPECT_EQ(filterKeystroke(L'\b', rules, state), accept);
  EXPECT_EQ(filterKeystroke(L'a', rules, state), accept);
  EXPECT_EQ(state.textLength, 1u);
}

TEST(EditorRegistry, KnowsFiftyWindowsAndNoMore) {
  EditorRegistry<int> registry;
  int editors[60] = {};
  const auto window = [](std::size_t i) { return reinterpret_cast<HWND>(i + 1); };
  for (std::size_t i = 0; i < 60; ++i) EXPECT_EQ(registry.add(window(i), editors[i]), i < 50) << i;
  EXPECT_EQ(registry.count(), 50u);
  for (std::size_t i = 0; i < 60; ++i)
    EXPECT_EQ(registry.find(window(i)), i < 50 ? &editors[i] : nullptr) << i;
  registry.reset();
  EXPECT_EQ(registry.find(window(0)), nullptr);
  EXPECT_TRUE(registry.add(window(59), editors[59]));
}

TEST(EditorRegistry, TheFirstOfAWindowIsFoundAndWhatIsRemovedIsNot) {
  EditorRegistry<int> registry;
  int editors[2] = {};
  const HWND window = reinterpret_cast<HWND>(std::size_t{7});
  EXPECT_FALSE(registry.add(nullptr, editors[0]));
  EXPECT_EQ(registry.find(nullptr), nullptr);
  ASSERT_TRUE(registry.add(window, editors[0]));
  ASSERT_TRUE(registry.add(window, editors[1]));
  EXPECT_EQ(registry.find(window), &editors[0]);
  registry.remove(editors[0]);
  EXPECT_EQ(registry.find(window), &editors[1]);
  EXPECT_EQ(registry.count(), 2u);
}

}  // namespace
