#include "platform/pocketshell/panel/input_panel.h"

#include <string>

#include "platform/pocketshell/panel/panel_keys.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"
#include "tests/shell/shell_settings.h"

namespace {

using pocketshell::PanelKey;

TEST(PanelKeysTest, CoverThePanelWithoutGaps) {
  for (LONG y = 0; y < pocketshell::kPanelHeight; ++y) {
    for (LONG x = 0; x < pocketshell::kPanelWidth; ++x) {
      int count = 0;
      for (const PanelKey& key : pocketshell::panelKeys()) count += PtInRect(&key.place, {x, y}) ? 1 : 0;
      ASSERT_EQ(count, 1) << x << ", " << y;
    }
  }
  for (const PanelKey& key : pocketshell::panelKeys()) {
    EXPECT_LE(key.place.right, pocketshell::kPanelWidth);
    EXPECT_LE(key.place.bottom, pocketshell::kPanelHeight);
  }
}

TEST(PanelKeysTest, EveryPrintableCharacterCanBeTyped) {
  std::string missing;
  for (wchar_t wanted = L' '; wanted <= L'~'; ++wanted) {
    bool found = false;
    for (const PanelKey& key : pocketshell::panelKeys()) {
      found = found || key.plain == wanted || key.shifted == wanted;
    }
    if (!found) missing += static_cast<char>(wanted);
  }
  EXPECT_EQ(missing, "");
}

TEST(PanelKeysTest, LockActsOnLettersOnlyAndShiftUndoesIt) {
  PanelKey letter;
  letter.plain = L'a';
  letter.shifted = L'A';
  PanelKey digit;
  digit.plain = L'1';
  digit.shifted = L'!';
  EXPECT_EQ(characterOf(letter, {false, true}), L'A');
  EXPECT_EQ(characterOf(letter, {true, true}), L'a');
  EXPECT_EQ(characterOf(digit, {false, true}), L'1');
  EXPECT_EQ(characterOf(digit, {true, true}), L'!');
}

class InputPanelTest : public ShellTest {
 protected:
  InputPanelTest() {
    setPanelPolicy(kPanelAlways);
    edit_ = HandheldCreateWindow(0, WC_EDITW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, top(), nullptr,
                                 nullptr, nullptr);
    SetFocus(edit_);
    pump();
    forget();
  }
  ~InputPanelTest() override { SHSipPreference(top(), SIP_FORCEDOWN); }

  static SIPINFO state() {
    SIPINFO info{};
    info.cbSize = sizeof(info);
    EXPECT_TRUE(SHSipInfo(SPI_GETSIPINFO, 0, &info, 0));
    return info;
  }
  static bool isUp() { return (state().fdwFlags & (SIPF_ON | SIPF_DOCKED)) == (SIPF_ON | SIPF_DOCKED); }
  static HWND panel() { return FindWindowW(L"Pocket Shell Input Panel", nullptr); }
  int changeCount() const { return countOf(WM_SETTINGCHANGE, SPI_SETSIPINFO); }

  static void tap(const PanelKey& key) {
    const int x = HandheldToMonitor(static_cast<int>(key.place.left + key.place.right) / 2);
    const int y = HandheldToMonitor(static_cast<int>(key.place.top + key.place.bottom) / 2);
    SendMessageW(panel(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(panel(), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
  }
  static void tapCharacter(wchar_t character) {
    for (const PanelKey& key : pocketshell::panelKeys()) {
      if (key.kind == PanelKey::Kind::character && key.plain == character) return tap(key);
    }
    FAIL() << "no such key";
  }
  static void tapKind(PanelKey::Kind kind, WORD stroke = 0) {
    for (const PanelKey& key : pocketshell::panelKeys()) {
      if (key.kind == kind && key.stroke == stroke) return tap(key);
    }
    FAIL() << "no such key";
  }
  static std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
  }

  HWND edit_ = nullptr;
};

TEST_F(InputPanelTest, RisesAndGoesDownAndTellsTheWindowOnce) {
  EXPECT_FALSE(isUp());
  EXPECT_TRUE(SHSipPreference(top(), SIP_UP));
  EXPECT_TRUE(isUp());
  EXPECT_TRUE(SHSipPreference(top(), SIP_UP));
  EXPECT_EQ(changeCount(), 1);
  EXPECT_TRUE(SHSipPreference(top(), SIP_UNCHANGED));
  EXPECT_TRUE(isUp());
  EXPECT_TRUE(SHSipPreference(top(), SIP_DOWN));
  EXPECT_FALSE(isUp());
  EXPECT_TRUE(SHSipPreference(top(), SIP_FORCEDOWN));
  EXPECT_EQ(changeCount(), 2);
}

TEST_F(InputPanelTest, TheWindowIsToldWhenTheStateIsThere) {
  bool upWhenTold = false;
  onMessage([&](const Got& got) {
    if (got.message == WM_SETTINGCHANGE && got.wParam == SPI_SETSIPINFO) upWhenTold = isUp();
  });
  SHSipPreference(top(), SIP_UP);
  EXPECT_TRUE(upWhenTold);
}

TEST_F(InputPanelTest, HasTheHandheldsRectangles) {
  EXPECT_EQ(state().rcSipRect, (RECT{0, 214, 240, 294}));
  EXPECT_EQ(state().rcVisibleDesktop, (RECT{0, 26, 240, 320}));
  SHSipPreference(top(), SIP_UP);
  EXPECT_EQ(state().rcSipRect, (RECT{0, 214, 240, 294}));
  EXPECT_EQ(state().rcVisibleDesktop, (RECT{0, 26, 240, 214}));
}

TEST_F(InputPanelTest, LiesAboveTheMenuBarAndFollowsTheWindow) {
  SHSipPreference(top(), SIP_UP);
  for (const int x : {40, 90}) {
    SetWindowPos(top(), nullptr, x, 60, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    RECT place{};
    GetWindowRect(panel(), &place);
    MapWindowPoints(nullptr, top(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place, (RECT{0, 188, 240, 268}));
  }
  HandheldSetZoom(200);
  RECT place{};
  GetWindowRect(panel(), &place);
  MapWindowPoints(nullptr, top(), reinterpret_cast<POINT*>(&place), 2);
  EXPECT_EQ(place, (RECT{0, 376, 480, 536}));
}

TEST_F(InputPanelTest, CanBeSetByItsInformation) {
  SIPINFO wanted = state();
  wanted.fdwFlags |= SIPF_ON;
  EXPECT_TRUE(SHSipInfo(SPI_SETSIPINFO, 0, &wanted, 0));
  EXPECT_TRUE(isUp());
  wanted.fdwFlags &= ~static_cast<DWORD>(SIPF_ON);
  EXPECT_TRUE(SHSipInfo(SPI_SETSIPINFO, 0, &wanted, 0));
  EXPECT_FALSE(isUp());
}

TEST_F(InputPanelTest, RefusesWhatItDoesNotKnow) {
  SIPINFO info{};
  info.cbSize = sizeof(info) - 1;
  info.fdwFlags = 77;
  EXPECT_FALSE(SHSipInfo(SPI_GETSIPINFO, 0, &info, 0));
  info.cbSize = sizeof(info);
  EXPECT_FALSE(SHSipInfo(SPI_GETSIPINFO + 1, 0, &info, 0));
  EXPECT_EQ(info.fdwFlags, 77U);
  EXPECT_FALSE(SHSipInfo(SPI_GETSIPINFO, 0, nullptr, 0));
}

TEST_F(InputPanelTest, NeverMeansNever) {
  setPanelPolicy(kPanelNever);
  EXPECT_TRUE(SHSipPreference(top(), SIP_UP));
  EXPECT_FALSE(isUp());
  EXPECT_EQ(changeCount(), 0);
  EXPECT_EQ(FindWindowExW(makeBar(), nullptr, L"Pocket Shell Panel Button", nullptr), nullptr);
}

TEST_F(InputPanelTest, AutomaticGoesByTheTouchScreen) {
  const int digitizer = GetSystemMetrics(SM_DIGITIZER);
  const bool touch =
      (digitizer & NID_READY) != 0 && (digitizer & (NID_INTEGRATED_TOUCH | NID_EXTERNAL_TOUCH)) != 0;
  for (const DWORD policy : {0U, 3U}) {
    setPanelPolicy(policy);
    EXPECT_TRUE(SHSipPreference(top(), SIP_UP));
    EXPECT_EQ(isUp(), touch);
  }
}

TEST_F(InputPanelTest, TheBarsButtonToggles) {
  const HWND button = FindWindowExW(makeBar(), nullptr, L"Pocket Shell Panel Button", nullptr);
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(placeInParent(button), (RECT{212, 0, 240, 26}));
  SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  EXPECT_TRUE(isUp());
  SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  EXPECT_FALSE(isUp());
}

LRESULT CALLBACK countLifts(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                            DWORD_PTR count) {
  if (message == WM_WINDOWPOSCHANGING) {
    const auto& position = *reinterpret_cast<const WINDOWPOS*>(lParam);
    if ((position.flags & SWP_NOZORDER) == 0) ++*reinterpret_cast<int*>(count);
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(InputPanelTest, ComesUpAgainWhenTheKeyboardGoesToAControlOfItsOwnerOnly) {
  const HWND other = CreateWindowExW(0, WC_EDITW, L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                     nullptr, nullptr);
  SetFocus(top());
  SHSipPreference(top(), SIP_UP);
  pump();
  int lifts = 0;
  SetWindowSubclass(panel(), countLifts, 0, reinterpret_cast<DWORD_PTR>(&lifts));
  SetFocus(edit_);
  pump();
  EXPECT_GT(lifts, 0);
  SetFocus(other);
  pump();
  lifts = 0;
  SetFocus(nullptr);
  SetFocus(other);
  pump();
  EXPECT_EQ(lifts, 0);
  DestroyWindow(other);
}

TEST_F(InputPanelTest, TypesIntoTheWindowWithTheKeyboardAndTakesNothing) {
  SHSipPreference(top(), SIP_UP);
  tapCharacter(L'q');
  tapKind(PanelKey::Kind::shift);
  tapCharacter(L'1');
  tapCharacter(L'1');
  pump();
  EXPECT_EQ(textOf(edit_), L"q!1");
  EXPECT_EQ(GetFocus(), edit_);
  EXPECT_EQ(GetActiveWindow(), top());
  EXPECT_EQ(SendMessageW(panel(), WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(top()),
                         MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)),
            MA_NOACTIVATE);
  tapKind(PanelKey::Kind::stroke, VK_BACK);
  pump();
  EXPECT_EQ(textOf(edit_), L"q!");
}

TEST_F(InputPanelTest, ATapThatLeavesItsKeyTypesNothing) {
  SHSipPreference(top(), SIP_UP);
  SendMessageW(panel(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  SendMessageW(panel(), WM_LBUTTONUP, 0, MAKELPARAM(100, 70));
  pump();
  EXPECT_EQ(textOf(edit_), L"");
}

TEST_F(InputPanelTest, TheStrokesReachTheWindowAsKeys) {
  SHSipPreference(top(), SIP_UP);
  SetFocus(top());
  pump();
  forget();
  tapKind(PanelKey::Kind::stroke, VK_RETURN);
  pump();
  EXPECT_EQ(countOf(WM_KEYDOWN, VK_RETURN), 1);
  EXPECT_EQ(countOf(WM_CHAR, L'\r'), 1);
}

constexpr UINT kTapMessage = WM_APP + 1;
constexpr UINT kLookMessage = WM_APP + 2;

struct InDialog {
  bool aboveDialog = false;
  bool enabled = false;
  int changeCount = 0;
  std::wstring typed;
};
InDialog* inDialog = nullptr;

INT_PTR CALLBACK typeIntoDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  const HWND panelWindow = FindWindowW(L"Pocket Shell Input Panel", nullptr);
  if (message == WM_INITDIALOG) {
    SHSipPreference(dialog, SIP_UP);
    PostMessageW(dialog, kTapMessage, 0, 0);
    return TRUE;
  }
  if (message == WM_SETTINGCHANGE && wParam == SPI_SETSIPINFO) ++inDialog->changeCount;
  if (message == kTapMessage) {
    inDialog->aboveDialog = GetWindow(panelWindow, GW_OWNER) == dialog;
    inDialog->enabled = IsWindowEnabled(panelWindow) != FALSE;
    SendMessageW(panelWindow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(panelWindow, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    PostMessageW(dialog, kLookMessage, 0, 0);
    return TRUE;
  }
  if (message == kLookMessage) {
    wchar_t text[10] = L"";
    GetDlgItemTextW(dialog, IDC_NAME, text, 10);
    inDialog->typed = text;
    EndDialog(dialog, IDOK);
    return TRUE;
  }
  return FALSE;
}

TEST_F(InputPanelTest, WorksWhileADialogIsOpenAndOutlivesIt) {
  InDialog seen;
  inDialog = &seen;
  EXPECT_EQ(HandheldDialogBox(GetModuleHandleW(nullptr), IDD_OLD, top(), typeIntoDialog, 0), IDOK);
  inDialog = nullptr;
  EXPECT_TRUE(seen.aboveDialog);
  EXPECT_TRUE(seen.enabled);
  EXPECT_EQ(seen.changeCount, 1);
  EXPECT_EQ(seen.typed, L"1");
  EXPECT_TRUE(isUp());
  EXPECT_TRUE(pumpUntil([] { return panel() != nullptr; }));
  EXPECT_EQ(GetWindow(panel(), GW_OWNER), top());
}

TEST_F(InputPanelTest, GoesWithItsWindow) {
  SHSipPreference(top(), SIP_UP);
  DestroyWindow(top());
  EXPECT_EQ(panel(), nullptr);
  EXPECT_FALSE(isUp());
}

}  // namespace
