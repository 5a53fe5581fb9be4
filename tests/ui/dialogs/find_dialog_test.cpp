#include "dialogs/find/find_dialog.h"

#include <commctrl.h>

#include <utility>

#include "base/settings/recent_finds.h"
#include "base/settings/settings_store.h"
#include "gmock/gmock.h"
#include "tests/support/system_colors.h"
#include "tests/ui/support/dialog_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/window_reading.h"
#include "views/dialog/current_dialog.h"
#include "views/shared/typed_watch.h"
#include "views/shared/unowned_box.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kFieldLabel = 1000;
constexpr int kAllFields = 1017;
constexpr int kMatchCase = 1018;
constexpr int kField = 1022;
constexpr int kNext = 1023;
constexpr int kText = 1026;
constexpr UINT kFindNext = 1225;
constexpr std::uint32_t kMissing = 99;

class FindDialogTest : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    onMessage([this](UINT message, WPARAM wParam, LPARAM lParam) {
      if (message != kFindNext) return;
      EXPECT_EQ(wParam, 0u);
      EXPECT_EQ(lParam, 0);
      ++searches_;
      onSearch();
    });
  }

  INT_PTR show(const Step& step, const std::vector<const wchar_t*>& fields = {L"title", L"Author", L"born"}) {
    NameList names;
    for (const wchar_t* const each : fields) names.append(each);
    FindDialog dialog(state, std::move(names));
    dialog_ = &dialog;
    const INT_PTR result = inDialog([&] { return dialog.run(frame()); }, step);
    dialog_ = nullptr;
    return result;
  }
  /// The window of the dialog that runs, null when none is open.
  HWND openWindow() const { return dialog_ ? dialog_->window() : nullptr; }
  void refill() const {
    if (dialog_) dialog_->refill();
  }

  static void chooseField(HWND window, WPARAM index) {
    SendDlgItemMessageW(window, kField, CB_SETCURSEL, index, 0);
  }

  static std::uint32_t stored(const wchar_t* name) {
    std::uint32_t value = kMissing;
    return SettingsStore::readDword(SettingsStore::kOptions, name, kMissing, value) ? value : kMissing;
  }
  static void store(const wchar_t* name, std::uint32_t value) {
    ASSERT_TRUE(SettingsStore::writeDword(SettingsStore::kOptions, name, value));
  }
  /// The last becomes the newest.
  static void remember(std::initializer_list<const wchar_t*> texts) {
    for (const wchar_t* const each : texts) RecentFinds::remember(each);
  }
  static std::vector<std::wstring> recent() {
    NameList finds;
    RecentFinds::list(finds);
    std::vector<std::wstring> texts;
    for (std::uint32_t i = 0; i < finds.size(); ++i) texts.emplace_back(finds[i].text());
    return texts;
  }

  static bool isChecked(HWND window, int id) { return IsDlgButtonChecked(window, id) == BST_CHECKED; }
  static bool isEnabled(HWND window, int id) { return IsWindowEnabled(GetDlgItem(window, id)) != FALSE; }

  /// How many searches have begun, and how many were asked for by now.
  int searchesBegun() const { return searches_; }
  int searches() {
    dispatchPosted();
    return searches_;
  }

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes): the tests set and read them
  FindState state;
  /// What a search does.
  std::function<void()> onSearch = [] {};
  // NOLINTEND(misc-non-private-member-variables-in-classes)

 private:
  int searches_ = 0;
  FindDialog* dialog_ = nullptr;
};

TEST_F(FindDialogTest, ItsControlsAreThoseOfTheHandheld) {
  show([&](HWND window) {
    EXPECT_EQ(textOf(window), L"Find");
    EXPECT_EQ(GetParent(window), frame());
    EXPECT_FALSE(IsWindowEnabled(frame())) << "it is modal";
    EXPECT_EQ(currentDialog, window);
    EXPECT_THAT(
        controls(window),
        ElementsAre(ControlFacts{-1, L"Static", L"Find &what:"}, ControlFacts{kText, L"ComboBox", L""},
                    ControlFacts{kFieldLabel, L"Static", L"&Field to check:"},
                    ControlFacts{kField, L"ComboBox", L""},
                    ControlFacts{kAllFields, L"Button", L"&All fields"},
                    ControlFacts{kMatchCase, L"Button", L"&Match case"},
                    ControlFacts{kNext, L"Button", L"&Next"}, ControlFacts{IDOK, L"Button", L"OK"}));
    EXPECT_THAT(tabOrder(window, kText), ElementsAre(kText, kField, kAllFields, kMatchCase, kNext, IDOK));
    constexpr DWORD kKind = 3;
    EXPECT_EQ(styleOf(GetDlgItem(window, kText)) & kKind, static_cast<DWORD>(CBS_DROPDOWN));
    EXPECT_EQ(styleOf(GetDlgItem(window, kField)) & kKind, static_cast<DWORD>(CBS_DROPDOWNLIST));
    EXPECT_EQ(LOWORD(SendMessageW(window, DM_GETDEFID, 0, 0)), kNext);
    EXPECT_EQ(GetParent(GetFocus()), GetDlgItem(window, kText));
    expectControlsApart(window);
    expectColors(window);
    press(window, IDCANCEL);
  });
  EXPECT_EQ(currentDialog, nullptr);
  EXPECT_TRUE(IsWindowEnabled(frame()));
}

/// What is greyed is so in the system's colours, which may be as light as the dialog's ground.
TEST_F(FindDialogTest, WithLightTextsOnDarkItHasTheSystemsColors) {
  const SystemColors colors(RGB(255, 255, 1), RGB(1, 0, 0));
  show([&](HWND window) {
    const HDC context = CreateCompatibleDC(nullptr);
    for (const UINT message : {WM_CTLCOLORDLG, WM_CTLCOLORSTATIC}) {
      const HWND asking = message == WM_CTLCOLORDLG ? window : GetDlgItem(window, kAllFields);
      EXPECT_EQ(
          SendMessageW(window, message, reinterpret_cast<WPARAM>(context), reinterpret_cast<LPARAM>(asking)),
          reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW)));
      EXPECT_EQ(GetTextColor(context), RGB(255, 255, 1));
      EXPECT_EQ(GetBkColor(context), RGB(1, 0, 0));
    }
    DeleteDC(context);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, ItIsCentredInItsOwner) {
  show([&](HWND window) {
    expectCentred(window);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, AtZoom200ItIsCentredAndTwiceAsLarge) {
  SIZE normal{};
  show([&](HWND window) {
    normal = clientSize(window);
    press(window, IDCANCEL);
  });
  HandheldSetZoom(200);
  show([&](HWND window) {
    EXPECT_EQ(clientSize(window).cx, 2 * normal.cx);
    EXPECT_EQ(clientSize(window).cy, 2 * normal.cy);
    expectCentred(window);
    for (const int id : {kText, kField}) {
      EXPECT_GT(placeOf(GetDlgItem(window, id)).height, 2 * kNormalComboHeight * 4 / 5) << id;
    }
    expectControlsApart(window);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, InAnOwnerThatIsTooSmallItBeginsAtTheCorner) {
  SetWindowPos(frame(), nullptr, 0, 0, 60, 60, SWP_NOMOVE | SWP_NOZORDER);
  show([&](HWND window) {
    RECT outer{};
    GetWindowRect(window, &outer);
    POINT corner{};
    ClientToScreen(frame(), &corner);
    EXPECT_EQ(outer.left, corner.x);
    EXPECT_EQ(outer.top, corner.y);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, WithNothingStoredTheListAndTheEditAreEmpty) {
  state.text = L"of the last use";
  show([&](HWND window) {
    EXPECT_THAT(entries(window, kText), IsEmpty());
    EXPECT_EQ(textOf(window, kText), L"");
    EXPECT_FALSE(isChecked(window, kAllFields));
    EXPECT_FALSE(isChecked(window, kMatchCase));
    EXPECT_TRUE(isEnabled(window, kField));
    EXPECT_TRUE(isEnabled(window, kFieldLabel));
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, TheRecentTextsAreOfferedNewestFirst) {
  remember({L"a", L"b", L"c", L"d", L"e", L"f"});
  show([&](HWND window) {
    EXPECT_THAT(entries(window, kText), ElementsAre(L"f", L"e", L"d", L"c", L"b"));
    EXPECT_EQ(textOf(window, kText), L"f");
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, TheFieldsAreOfferedInTheirOrder) {
  show([&](HWND window) {
    EXPECT_THAT(entries(window, kField), ElementsAre(L"title", L"Author", L"born"));
    EXPECT_EQ(selectedEntry(window, kField), L"title");
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, OpeningBeginsANewSearchAndNamesTheDialog) {
  show([&](HWND window) {
    EXPECT_TRUE(state.newSearch);
    EXPECT_EQ(openWindow(), window);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, ADialogThatIsNotOpenHasNoWindowAndIsNotRefilled) {
  remember({L"a"});
  FindDialog dialog(state, NameList());
  EXPECT_EQ(dialog.window(), nullptr);
  dialog.refill();
  EXPECT_EQ(inDialog([&] { return dialog.run(frame()); }, [&](HWND window) { press(window, IDCANCEL); }),
            IDCANCEL);
  EXPECT_EQ(dialog.window(), nullptr);
  dialog.refill();
  EXPECT_EQ(state.checkAllFields, 0u);
}

TEST_F(FindDialogTest, TheCheckBoxesAreAsTheyWereStored) {
  store(L"CheckAllFields", 1);
  store(L"MatchCase", 7);
  show([&](HWND window) {
    EXPECT_TRUE(isChecked(window, kAllFields));
    EXPECT_TRUE(isChecked(window, kMatchCase));
    EXPECT_EQ(state.checkAllFields, 1u);
    EXPECT_EQ(state.matchCase, 1u);
    EXPECT_FALSE(isEnabled(window, kField));
    EXPECT_FALSE(isEnabled(window, kFieldLabel));
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, TickingAllFieldsGreysTheFieldAtOnceAndLasts) {
  show([&](HWND window) {
    click(window, kAllFields);
    EXPECT_FALSE(isEnabled(window, kField));
    EXPECT_FALSE(isEnabled(window, kFieldLabel));
    EXPECT_EQ(stored(L"CheckAllFields"), 1u);
    EXPECT_EQ(state.checkAllFields, 1u);
    press(window, IDCANCEL);
  });
  state = {};
  show([&](HWND window) {
    EXPECT_TRUE(isChecked(window, kAllFields));
    click(window, kAllFields);
    EXPECT_TRUE(isEnabled(window, kField));
    EXPECT_TRUE(isEnabled(window, kFieldLabel));
    EXPECT_EQ(stored(L"CheckAllFields"), 0u);
    EXPECT_EQ(state.checkAllFields, 0u);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, MatchCaseIsTakenWhenTheDialogIsUsedOrLeft) {
  show([&](HWND window) {
    click(window, kMatchCase);
    EXPECT_EQ(stored(L"MatchCase"), kMissing);
    EXPECT_EQ(state.matchCase, 0u);
    click(window, kNext);
    EXPECT_EQ(stored(L"MatchCase"), 1u);
    EXPECT_EQ(state.matchCase, 1u);
    click(window, kMatchCase);
    press(window, IDCANCEL);
  });
  EXPECT_EQ(stored(L"MatchCase"), 0u);
  EXPECT_EQ(state.matchCase, 0u);
  show([&](HWND window) {
    click(window, kMatchCase);
    press(window, IDOK);
  });
  EXPECT_EQ(stored(L"MatchCase"), 1u);
  EXPECT_EQ(state.matchCase, 1u);
  EXPECT_EQ(stored(L"CheckAllFields"), 0u) << "both are stored";
}

TEST_F(FindDialogTest, NextStoresTheInputAsksForASearchAndStays) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kText, L"dune");
    chooseField(window, 1);
    EXPECT_EQ(searches(), 0);
    click(window, kNext);
    EXPECT_STREQ(state.text.text(), L"dune");
    EXPECT_STREQ(state.fieldName.text(), L"Author");
    EXPECT_EQ(state.fieldPosition, 2u);
    EXPECT_EQ(stored(L"CheckAllFields"), 0u);
    EXPECT_EQ(stored(L"MatchCase"), 0u);
    EXPECT_THAT(recent(), ElementsAre(L"dune"));
    EXPECT_EQ(searchesBegun(), 0) << "the search is posted";
    EXPECT_EQ(searches(), 1);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(openWindow(), window);
    EXPECT_TRUE(state.newSearch) << "the search clears it";
    state.newSearch = false;
    click(window, kNext);
    EXPECT_FALSE(state.newSearch);
    EXPECT_EQ(searches(), 2);
    press(window, IDCANCEL);
  });
  EXPECT_EQ(searches(), 2);
}

TEST_F(FindDialogTest, AFieldIsNamedAsTheFileNamesItWhateverTheListShows) {
  // Marks that stand on no letter.
  constexpr wchar_t kUnshowable[] = L"\x05B0\x05B1";
  show(
      [&](HWND window) {
        chooseField(window, 1);
        wchar_t shown[10] = L"";
        SendDlgItemMessageW(window, kField, CB_GETLBTEXT, 1, reinterpret_cast<LPARAM>(shown));
        EXPECT_STREQ(shown, L"\xFFFD\xFFFD");
        click(window, kNext);
        press(window, IDCANCEL);
      },
      {L"\xFFFD\xFFFD", kUnshowable});
  EXPECT_STREQ(state.fieldName.text(), kUnshowable);
  EXPECT_EQ(state.fieldPosition, 2u);
}

TEST_F(FindDialogTest, WithoutFieldsNoneIsChosen) {
  state.fieldName = L"of another table";
  state.fieldPosition = 3;
  show(
      [&](HWND window) {
        click(window, kNext);
        press(window, IDCANCEL);
      },
      {});
  EXPECT_STREQ(state.fieldName.text(), L"");
  EXPECT_EQ(state.fieldPosition, 0u);
}

TEST_F(FindDialogTest, TheSecondOfTheListMovesToItsTopAtTheNextOpening) {
  remember({L"c", L"b", L"a"});
  show([&](HWND window) {
    SendDlgItemMessageW(window, kText, CB_SETCURSEL, 1, 0);
    click(window, kNext);
    EXPECT_STREQ(state.text.text(), L"b");
    press(window, IDCANCEL);
  });
  show([&](HWND window) {
    EXPECT_THAT(entries(window, kText), ElementsAre(L"b", L"a", L"c"));
    EXPECT_EQ(textOf(window, kText), L"b");
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, OnlyNextRemembersATextAndReadsIt) {
  remember({L"a"});
  for (const int command : {IDOK, IDCANCEL}) {
    show([&](HWND window) {
      SetDlgItemTextW(window, kText, L"typed");
      press(window, command);
    });
    EXPECT_THAT(recent(), ElementsAre(L"a"));
    EXPECT_STREQ(state.text.text(), L"");
  }
}

TEST_F(FindDialogTest, OkWithoutNextSearchesForTheTextOfThePreviousUse) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kText, L"earlier");
    chooseField(window, 2);
    click(window, kNext);
    press(window, IDCANCEL);
  });
  EXPECT_EQ(searches(), 1);
  state.newSearch = false;
  HWND during = frame();
  onSearch = [&] { during = openWindow(); };
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kText, L"not read");
              press(window, IDOK);
            }),
            IDOK);
  EXPECT_EQ(searches(), 2);
  EXPECT_EQ(during, nullptr) << "the dialog is closed when the search begins";
  EXPECT_STREQ(state.text.text(), L"earlier");
  EXPECT_STREQ(state.fieldName.text(), L"born");
  EXPECT_EQ(state.fieldPosition, 3u);
  EXPECT_TRUE(state.newSearch);
}

TEST_F(FindDialogTest, CancelSearchesNothing) {
  EXPECT_EQ(show([&](HWND window) { press(window, IDCANCEL); }), IDCANCEL);
  EXPECT_EQ(searches(), 0);
  EXPECT_EQ(stored(L"CheckAllFields"), 0u);
  EXPECT_EQ(stored(L"MatchCase"), 0u);
}

TEST_F(FindDialogTest, AfterASearchTheTextHeadsTheListAndTheBoxesAreAsStored) {
  remember({L"b", L"a"});
  onSearch = [&] { refill(); };
  show([&](HWND window) {
    SetDlgItemTextW(window, kText, L"new");
    click(window, kMatchCase);
    click(window, kAllFields);
    chooseField(window, 2);
    click(window, kNext);
    EXPECT_EQ(searches(), 1);
    EXPECT_THAT(entries(window, kText), ElementsAre(L"new", L"a", L"b"));
    EXPECT_EQ(textOf(window, kText), L"new");
    EXPECT_TRUE(isChecked(window, kMatchCase));
    EXPECT_TRUE(isChecked(window, kAllFields));
    EXPECT_FALSE(isEnabled(window, kField));
    EXPECT_EQ(selectedEntry(window, kField), L"born");
    press(window, IDOK);
  });
  // The search that OK asked for finds the dialog closed.
  EXPECT_EQ(searches(), 2);
}

/// Of a list that is as it is to be nothing is made anew.
TEST_F(FindDialogTest, RefilledItShowsWhatIsStoredNow) {
  remember({L"b", L"a"});
  int refills = 0;
  const auto count = [](HWND combo, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                        DWORD_PTR counter) -> LRESULT {
    if (message == CB_RESETCONTENT) ++*reinterpret_cast<int*>(counter);
    return DefSubclassProc(combo, message, wParam, lParam);
  };
  show([&](HWND window) {
    const HWND combo = GetDlgItem(window, kText);
    ASSERT_TRUE(SetWindowSubclass(combo, count, 1, reinterpret_cast<DWORD_PTR>(&refills)));
    refill();
    EXPECT_EQ(refills, 0);

    SetWindowTextW(combo, L"typed");
    refill();
    EXPECT_EQ(textOf(window, kText), L"a");
    SendMessageW(combo, CB_SETCURSEL, 1, 0);
    refill();
    EXPECT_EQ(textOf(window, kText), L"a");
    EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 0);

    remember({L"c"});
    refill();
    EXPECT_THAT(entries(window, kText), ElementsAre(L"c", L"a", L"b"));
    EXPECT_EQ(textOf(window, kText), L"c");
    ASSERT_TRUE(SettingsStore::write(static_cast<Setting>(static_cast<int>(Setting::recentFind) + 1), L"A"));
    refill();
    EXPECT_THAT(entries(window, kText), ElementsAre(L"c", L"A", L"b"));
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
    refill();
    EXPECT_THAT(entries(window, kText), IsEmpty());
    EXPECT_EQ(textOf(window, kText), L"");
    EXPECT_EQ(refills, 5);
    refill();
    EXPECT_EQ(refills, 5);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, WhoKeepsWhatIsTypedIsToldOfEachCharacterAndOfTheEnd) {
  static int told = 0;
  typedWatch = []() noexcept { ++told; };
  show([&](HWND window) {
    told = 0;
    SetFocus(GetDlgItem(window, kText));
    const HWND edit = GetFocus();
    for (const wchar_t letter : {L'a', L'b'}) SendMessageW(edit, WM_CHAR, static_cast<WPARAM>(letter), 1);
    EXPECT_EQ(textOf(window, kText), L"ab");
    EXPECT_EQ(told, 2);
    press(window, IDCANCEL);
    told = 0;
  });
  EXPECT_GE(told, 1);
  told = 0;
  takeBoxes();
  showBox(frame(), L"text", L"caption", MB_OK);
  EXPECT_EQ(takeBoxes().size(), 1u);
  EXPECT_EQ(told, 1) << "before a box";
  typedWatch = nullptr;
}

TEST_F(FindDialogTest, ThePanelIsUpForTypingAndGoesDownForTheMatches) {
  show([&](HWND window) {
    EXPECT_TRUE(isPanelUp());
    click(window, kNext);
    EXPECT_FALSE(isPanelUp());
    SHSipPreference(window, SIP_UP);
    press(window, IDCANCEL);
  });
  EXPECT_FALSE(isPanelUp());
  show([&](HWND window) { press(window, IDOK); });
  EXPECT_FALSE(isPanelUp());
}

TEST_F(FindDialogTest, ThePanelThatWasUpBeforeStaysUp) {
  SHSipPreference(frame(), SIP_UP);
  show([&](HWND window) {
    click(window, kNext);
    EXPECT_TRUE(isPanelUp());
    press(window, IDCANCEL);
  });
  EXPECT_TRUE(isPanelUp());
}

TEST_F(FindDialogTest, EnterIsNextAndEscapeCancels) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kText, L"typed");
              sendKey(window, WM_KEYDOWN, VK_RETURN);
              EXPECT_STREQ(state.text.text(), L"typed");
              EXPECT_EQ(searches(), 1);
              sendKey(window, WM_KEYDOWN, VK_ESCAPE);
            }),
            IDCANCEL);
}

TEST_F(FindDialogTest, AccessKeysReachTheirControls) {
  show([&](HWND window) {
    sendAccessKey(window, L'f');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kField));
    sendAccessKey(window, L'w');
    EXPECT_EQ(GetParent(GetFocus()), GetDlgItem(window, kText));
    sendAccessKey(window, L'm');
    EXPECT_TRUE(isChecked(window, kMatchCase));
    sendAccessKey(window, L'a');
    EXPECT_TRUE(isChecked(window, kAllFields));
    sendAccessKey(window, L'n');
    EXPECT_EQ(searches(), 1);
    press(window, IDCANCEL);
  });
}

TEST_F(FindDialogTest, HostileTextsGoThroughWhole) {
  const std::wstring hostile = L"100% 'a' \"b\" [c] %s &d \x5E9\x5DC\x5D5\x5DD \xD83D\xDE00";
  const std::wstring longName = hostile + std::wstring(300, L'f');
  for (const std::wstring& text : {hostile, std::wstring(40000, L'x')}) {
    show(
        [&](HWND window) {
          const HWND edit = GetFocus();
          SendMessageW(edit, EM_SETSEL, 0, -1);
          SendMessageW(edit, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text.c_str()));
          click(window, kNext);
          refill();
          EXPECT_EQ(textOf(window, kText), text);
          press(window, IDCANCEL);
        },
        {longName.c_str()});
    EXPECT_EQ(state.text.text(), text);
    EXPECT_EQ(state.fieldName.text(), longName);
    EXPECT_EQ(recent().front(), text);
  }
}

TEST_F(FindDialogTest, AHundredOpeningsLeaveNothingBehind) {
  leavesNothingBehind([&] {
    show([&](HWND window) {
      click(window, kNext);
      press(window, IDOK);
    });
  });
}

}  // namespace
