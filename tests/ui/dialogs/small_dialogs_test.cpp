#include <windows.h>

#include <commctrl.h>

#include <string>

#include "dialogs/small/about.h"
#include "dialogs/small/about_ids.h"
#include "dialogs/small/database_info.h"
#include "dialogs/small/database_info_ids.h"
#include "dialogs/small/go_to.h"
#include "dialogs/small/go_to_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/ui/support/dialog_fixture.h"
#include "views/dialog/current_dialog.h"
#include "views/form/field_zoom.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// ---- Go to record

class GoToTest : public DialogTest {
 protected:
  static void enter(HWND dialog, const std::wstring& text) {
    SetDlgItemTextW(dialog, IDC_GO_TO_NUMBER, text.c_str());
    press(dialog, IDOK);
  }
  void expectRefused(const std::wstring& text) {
    GoToDialog goTo;
    goTo.highest = 7;
    DialogScript script([&](HWND dialog) {
      enter(dialog, text);
      EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, L"Enter number in range 1 to 7", L"Error")));
      EXPECT_EQ(textOf(dialog, IDC_GO_TO_NUMBER), text);
      EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_GO_TO_NUMBER));
      press(dialog, IDCANCEL);
    });
    EXPECT_EQ(goTo.run(frame()), IDCANCEL) << "it stayed open";
    EXPECT_EQ(goTo.chosen, 0u);
  }
};

TEST_F(GoToTest, ItAsksForANumber) {
  GoToDialog goTo;
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Move to Record...");
    EXPECT_EQ(textOf(GetWindow(dialog, GW_CHILD)), L"&Move to record\nnumber: ");
    EXPECT_EQ(textOf(dialog, IDC_GO_TO_NUMBER), L"");
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_GO_TO_NUMBER));
    EXPECT_EQ(currentDialog, dialog);
    EXPECT_EQ(GetParent(dialog), frame());
    press(dialog, IDCANCEL);
  });
  goTo.run(frame());
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(GoToTest, TheLastRecordsNumberIsTaken) {
  GoToDialog goTo;
  goTo.highest = 7;
  DialogScript script([&](HWND dialog) { enter(dialog, L"7"); });
  EXPECT_EQ(goTo.run(frame()), IDOK);
  EXPECT_EQ(goTo.chosen, 7u);
  EXPECT_FALSE(goTo.cancelled);
}

TEST_F(GoToTest, TheFirstRecordsNumberIsTaken) {
  GoToDialog goTo;
  goTo.highest = 7;
  DialogScript script([&](HWND dialog) { enter(dialog, L"1"); });
  EXPECT_EQ(goTo.run(frame()), IDOK);
  EXPECT_EQ(goTo.chosen, 1u);
}

TEST_F(GoToTest, ZeroIsRefused) {
  expectRefused(L"0");
}

TEST_F(GoToTest, OneMoreThanTheCountIsRefused) {
  expectRefused(L"8");
}

TEST_F(GoToTest, ANegativeNumberIsRefused) {
  expectRefused(L"-3");
}

TEST_F(GoToTest, NothingIsRefused) {
  expectRefused(L"");
}

TEST_F(GoToTest, ALetterIsRefused) {
  expectRefused(L"a");
}

TEST_F(GoToTest, WhateverElseIsNoNumberIsRefused) {
  for (const std::wstring& text :
       {std::wstring(L" "), std::wstring(L"4294967299"), std::wstring(L"99999999999999999999"),
        std::wstring(L"%d"), std::wstring(L"\u0663"), std::wstring(L"\U0001F600")}) {
    expectRefused(text);
  }
}

TEST_F(GoToTest, APastedBookIsRefusedAtOnce) {
  GoToDialog goTo;
  goTo.highest = 7;
  DialogScript script([&](HWND dialog) {
    SendDlgItemMessageW(dialog, IDC_GO_TO_NUMBER, EM_REPLACESEL, TRUE,
                        reinterpret_cast<LPARAM>(std::wstring(40000, L'7').c_str()));
    EXPECT_EQ(textOf(dialog, IDC_GO_TO_NUMBER), std::wstring(20, L'7'));
    press(dialog, IDOK);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, L"Enter number in range 1 to 7", L"Error")));
    press(dialog, IDCANCEL);
  });
  EXPECT_EQ(goTo.run(frame()), IDCANCEL);
}

TEST_F(GoToTest, TheLargestCountIsShownAndTakenWhole) {
  GoToDialog goTo;
  goTo.highest = 4294967294u;
  DialogScript script([&](HWND dialog) {
    enter(dialog, L"0");
    EXPECT_THAT(takeBoxes(),
                ElementsAre(message(dialog, L"Enter number in range 1 to 4294967294", L"Error")));
    enter(dialog, L"4294967294");
  });
  EXPECT_EQ(goTo.run(frame()), IDOK);
  EXPECT_EQ(goTo.chosen, 4294967294u);
}

TEST_F(GoToTest, ARefusedNumberIsCorrectedInTheSameDialog) {
  GoToDialog goTo;
  goTo.highest = 7;
  DialogScript script([&](HWND dialog) {
    enter(dialog, L"8");
    DWORD first = 1;
    DWORD last = 0;
    SendDlgItemMessageW(dialog, IDC_GO_TO_NUMBER, EM_GETSEL, reinterpret_cast<WPARAM>(&first),
                        reinterpret_cast<LPARAM>(&last));
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(last, 1u) << "the next key replaces it";
    enter(dialog, L"6");
  });
  EXPECT_EQ(goTo.run(frame()), IDOK);
  EXPECT_EQ(goTo.chosen, 6u);
}

TEST_F(GoToTest, CancellingIsNoted) {
  GoToDialog goTo;
  goTo.highest = 7;
  DialogScript script([&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_GO_TO_NUMBER, L"3");
    press(dialog, IDCANCEL);
  });
  EXPECT_EQ(goTo.run(frame()), IDCANCEL);
  EXPECT_TRUE(goTo.cancelled);
  EXPECT_EQ(goTo.chosen, 0u);
}

TEST_F(GoToTest, EnterConfirmsAndEscapeCancels) {
  GoToDialog goTo;
  goTo.highest = 7;
  {
    DialogScript script([&](HWND dialog) {
      SetDlgItemTextW(dialog, IDC_GO_TO_NUMBER, L"3");
      postKey(GetDlgItem(dialog, IDC_GO_TO_NUMBER), VK_RETURN);
    });
    EXPECT_EQ(goTo.run(frame()), IDOK);
    EXPECT_EQ(goTo.chosen, 3u);
  }
  DialogScript script([&](HWND dialog) { postKey(GetDlgItem(dialog, IDC_GO_TO_NUMBER), VK_ESCAPE); });
  EXPECT_EQ(goTo.run(frame()), IDCANCEL);
  EXPECT_TRUE(goTo.cancelled);
}

TEST_F(GoToTest, TheInputPanelIsUpWhileItIsOpen) {
  for (const int end : {IDOK, IDCANCEL}) {
    GoToDialog goTo;
    goTo.highest = 7;
    ASSERT_FALSE(isPanelUp());
    DialogScript script([&](HWND dialog) {
      EXPECT_TRUE(isPanelUp());
      SetDlgItemTextW(dialog, IDC_GO_TO_NUMBER, L"3");
      press(dialog, end);
    });
    EXPECT_EQ(goTo.run(frame()), end);
    EXPECT_FALSE(isPanelUp());
  }
}

TEST_F(GoToTest, AnInputPanelThatWasUpStays) {
  for (const int end : {IDOK, IDCANCEL}) {
    SHSipPreference(frame(), SIP_UP);
    GoToDialog goTo;
    goTo.highest = 7;
    DialogScript script([&](HWND dialog) {
      SetDlgItemTextW(dialog, IDC_GO_TO_NUMBER, L"3");
      press(dialog, end);
    });
    EXPECT_EQ(goTo.run(frame()), end);
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(GoToTest, ItStandsAboveTheMiddleAtEveryZoom) {
  for (const int zoom : {100, 200, 100}) {
    HandheldSetZoom(zoom);
    GoToDialog goTo;
    DialogScript script([&](HWND dialog) {
      expectFits(dialog);
      expectCentred(dialog, 20);
      expectColors(dialog);
      expectTextsFit(dialog);
      EXPECT_THAT(tabOrder(dialog), ElementsAre(IDC_GO_TO_NUMBER, IDOK, IDCANCEL));
      press(dialog, IDCANCEL);
    });
    goTo.run(frame());
    EXPECT_EQ(script.count(), 1);
  }
}

// ---- Database information

class DatabaseInfoTest : public DialogTest {
 protected:
  DatabaseInfoTest() {
    info_.databasePath = L"C:\\My Documents\\people.cdb";
    info_.tableName = L"People";
    info_.sqlText = L"Select * from [People]";
  }
  DatabaseInfoDialog info_;
};

TEST_F(DatabaseInfoTest, ATableHasAnEmptyQueryAndItsStatement) {
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Database Information");
    EXPECT_EQ(textOf(dialog, IDC_INFO_DATABASE), L"C:\\My Documents\\people.cdb");
    EXPECT_EQ(textOf(dialog, IDC_INFO_TABLE), L"People");
    EXPECT_EQ(textOf(dialog, IDC_INFO_QUERY), L"");
    EXPECT_EQ(textOf(dialog, IDC_INFO_SQL), L"Select * from [People]");
    EXPECT_EQ(currentDialog, dialog);
    EXPECT_EQ(GetParent(dialog), frame());
    press(dialog, IDOK);
  });
  EXPECT_EQ(info_.run(frame()), IDOK);
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(DatabaseInfoTest, EachTextHasItsLabel) {
  DialogScript script([&](HWND dialog) {
    const auto labelOf = [&](int id) { return textOf(GetWindow(GetDlgItem(dialog, id), GW_HWNDPREV)); };
    EXPECT_EQ(labelOf(IDC_INFO_DATABASE), L"&Database file name:");
    EXPECT_EQ(labelOf(IDC_INFO_TABLE), L"Current &Table:");
    EXPECT_EQ(labelOf(IDC_INFO_QUERY), L"Current &Query:");
    EXPECT_EQ(labelOf(IDC_INFO_SQL), L"Current &SQL Query:");
    press(dialog, IDOK);
  });
  info_.run(frame());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(DatabaseInfoTest, AServersDatabaseHasAFieldMore) {
  info_.serverText = L"Encrypted (TLSv1.3), PostgreSQL 15.14 at db.example.org";
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Database Information");
    EXPECT_EQ(textOf(dialog, IDC_INFO_DATABASE), L"C:\\My Documents\\people.cdb");
    EXPECT_EQ(textOf(dialog, IDC_INFO_SERVER), L"Encrypted (TLSv1.3), PostgreSQL 15.14 at db.example.org");
    EXPECT_EQ(textOf(dialog, IDC_INFO_TABLE), L"People");
    EXPECT_EQ(textOf(dialog, IDC_INFO_QUERY), L"");
    EXPECT_EQ(textOf(dialog, IDC_INFO_SQL), L"Select * from [People]");
    EXPECT_EQ(textOf(GetWindow(GetDlgItem(dialog, IDC_INFO_SERVER), GW_HWNDPREV)), L"S&erver:");
    EXPECT_NE(styleOf(GetDlgItem(dialog, IDC_INFO_SERVER)) & ES_READONLY, 0u);
    expectFits(dialog);
    expectControlsApart(dialog);
    expectTextsFit(dialog);
    expectAccessKeysApart(dialog);
    expectColors(dialog);
    press(dialog, IDOK);
  });
  EXPECT_EQ(info_.run(frame()), IDOK);
  EXPECT_EQ(script.count(), 1);
}

TEST_F(DatabaseInfoTest, AFileHasNoServer) {
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(GetDlgItem(dialog, IDC_INFO_SERVER), nullptr);
    press(dialog, IDOK);
  });
  info_.run(frame());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(DatabaseInfoTest, NothingCanBeTyped) {
  DialogScript script([&](HWND dialog) {
    for (const int id : {IDC_INFO_DATABASE, IDC_INFO_TABLE, IDC_INFO_QUERY, IDC_INFO_SQL}) {
      const HWND edit = GetDlgItem(dialog, id);
      EXPECT_NE(styleOf(edit) & ES_READONLY, 0u);
      EXPECT_EQ((styleOf(edit) & ES_MULTILINE) != 0, id == IDC_INFO_SQL);
      const std::wstring before = textOf(edit);
      SendMessageW(edit, WM_CHAR, L'x', 1);
      EXPECT_EQ(textOf(edit), before);
    }
    press(dialog, IDCANCEL);
  });
  EXPECT_EQ(info_.run(frame()), IDCANCEL);
  EXPECT_EQ(script.count(), 1);
}

TEST_F(DatabaseInfoTest, WithoutADatabaseAllIsEmpty) {
  DatabaseInfoDialog info;
  DialogScript script([&](HWND dialog) {
    for (const int id : {IDC_INFO_DATABASE, IDC_INFO_TABLE, IDC_INFO_QUERY, IDC_INFO_SQL}) {
      EXPECT_EQ(textOf(dialog, id), L"");
    }
    press(dialog, IDOK);
  });
  EXPECT_EQ(info.run(frame()), IDOK);
}

TEST_F(DatabaseInfoTest, LongTextsAreShownWhole) {
  const std::wstring path(300, L'p');
  std::wstring sql = L"SELECT '100 %s' AS a,\r\n'\u05e9\u05dc\u05d5\u05dd \U0001F600'\r\n";
  while (sql.size() < 40000) sql += L"A line like those that people write, of sixty characters.\r\n";
  info_.databasePath = path.c_str();
  info_.sqlText = sql.c_str();
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog, IDC_INFO_DATABASE), path);
    EXPECT_EQ(textOf(dialog, IDC_INFO_SQL), sql);
    press(dialog, IDOK);
  });
  info_.run(frame());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(DatabaseInfoTest, EnterAndEscapeClose) {
  for (const auto& [key, result] : {std::pair<WORD, int>{VK_RETURN, IDOK}, {VK_ESCAPE, IDCANCEL}}) {
    for (const int id : {IDC_INFO_DATABASE, IDC_INFO_SQL, IDOK}) {
      DialogScript script([&](HWND dialog) { postKey(GetDlgItem(dialog, id), key); });
      EXPECT_EQ(info_.run(frame()), result);
    }
  }
}

TEST_F(DatabaseInfoTest, ItStandsInTheMiddleAtEveryZoom) {
  for (const int zoom : {100, 200, 100}) {
    HandheldSetZoom(zoom);
    DialogScript script([&](HWND dialog) {
      expectFits(dialog);
      expectCentred(dialog, 0);
      expectColors(dialog);
      expectTextsFit(dialog);
      EXPECT_THAT(tabOrder(dialog),
                  ElementsAre(IDC_INFO_DATABASE, IDC_INFO_TABLE, IDC_INFO_QUERY, IDC_INFO_SQL, IDOK));
      EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDOK));
      press(dialog, IDOK);
    });
    info_.run(frame());
    EXPECT_EQ(script.count(), 1);
  }
}

// ---- About

class AboutTest : public DialogTest {};

TEST_F(AboutTest, ItNamesTheProgramAndItsVersion) {
  AboutDialog about;
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"About Quivane for Pocket PC");
    EXPECT_EQ(textOf(dialog, IDC_ABOUT_VERSION), L"1.1");
    EXPECT_NE(FindWindowExW(dialog, nullptr, WC_STATICW, L"Quivane for Pocket PC "), nullptr);
    EXPECT_NE(FindWindowExW(dialog, nullptr, WC_STATICW, L"Version:"), nullptr);
    EXPECT_EQ(currentDialog, dialog);
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDOK));
    press(dialog, IDOK);
  });
  EXPECT_EQ(about.run(frame()), IDOK);
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(AboutTest, ItShowsTheIconAtTheZoom) {
  for (const int zoom : {100, 200}) {
    HandheldSetZoom(zoom);
    AboutDialog about;
    DialogScript script([&](HWND dialog) {
      const auto icon =
          reinterpret_cast<HICON>(SendDlgItemMessageW(dialog, IDC_ABOUT_ICON, STM_GETICON, 0, 0));
      ICONINFO parts{};
      ASSERT_TRUE(GetIconInfo(icon, &parts));
      BITMAP image{};
      GetObjectW(parts.hbmMask, sizeof(image), &image);
      DeleteObject(parts.hbmMask);
      DeleteObject(parts.hbmColor);
      EXPECT_EQ(image.bmWidth, HandheldToMonitor(32));
      EXPECT_EQ(placeOf(GetDlgItem(dialog, IDC_ABOUT_ICON)).width, HandheldToMonitor(32));
      press(dialog, IDOK);
    });
    about.run(frame());
    EXPECT_EQ(script.count(), 1);
  }
}

TEST_F(AboutTest, AChangeOfTheZoomTakesTheIconAlong) {
  AboutDialog about;
  DialogScript script([&](HWND dialog) {
    HandheldSetZoom(200);
    EXPECT_EQ(placeOf(GetDlgItem(dialog, IDC_ABOUT_ICON)).width, 64);
    press(dialog, IDOK);
  });
  about.run(frame());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(AboutTest, EnterAndEscapeClose) {
  AboutDialog about;
  for (const auto& [key, result] : {std::pair<WORD, int>{VK_RETURN, IDOK}, {VK_ESCAPE, IDCANCEL}}) {
    DialogScript script([&](HWND dialog) { postKey(GetDlgItem(dialog, IDOK), key); });
    EXPECT_EQ(about.run(frame()), result);
  }
}

TEST_F(AboutTest, TheInputPanelIsDownWhileItIsOpen) {
  for (const int end : {IDOK, IDCANCEL}) {
    SHSipPreference(frame(), SIP_UP);
    ASSERT_TRUE(isPanelUp());
    AboutDialog about;
    DialogScript script([&](HWND dialog) {
      EXPECT_FALSE(isPanelUp());
      press(dialog, end);
    });
    EXPECT_EQ(about.run(frame()), end);
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(AboutTest, AnInputPanelThatWasDownStaysDown) {
  AboutDialog about;
  DialogScript script([&](HWND dialog) { press(dialog, IDOK); });
  about.run(frame());
  EXPECT_FALSE(isPanelUp());
}

TEST_F(AboutTest, ItFillsTheScreenAtEveryZoom) {
  for (const int zoom : {100, 200, 100}) {
    HandheldSetZoom(zoom);
    AboutDialog about;
    DialogScript script([&](HWND dialog) {
      expectFits(dialog);
      expectFullScreen(dialog);
      expectColors(dialog);
      expectTextsFit(dialog);
      EXPECT_THAT(tabOrder(dialog), ElementsAre(IDOK));
      press(dialog, IDOK);
    });
    about.run(frame());
    EXPECT_EQ(script.count(), 1);
  }
}

// ---- The text of a field

class TextDialogTest : public DialogTest {};

TEST_F(TextDialogTest, CancelledItKeepsTheTextAsItWasEvenAfterTyping) {
  constexpr int kText = 1015;
  FieldZoom zoom(L"note", L"as it was", false);
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"note");
    SendDlgItemMessageW(dialog, kText, WM_CHAR, L'x', 1);
    EXPECT_EQ(textOf(dialog, kText), L"xas it was");
    press(dialog, IDCANCEL);
  });
  EXPECT_FALSE(zoom.run(frame()));
  EXPECT_EQ(script.count(), 1);
  EXPECT_STREQ(zoom.text().text(), L"as it was");
}

// ---- All of them

class SmallDialogsTest : public DialogTest {};

TEST_F(SmallDialogsTest, AHundredOpeningsLeaveNothingBehind) {
  DialogScript script([&](HWND dialog) { press(dialog, IDCANCEL); });
  leavesNothingBehind([&] {
    GoToDialog().run(frame());
    DatabaseInfoDialog().run(frame());
    AboutDialog().run(frame());
  });
  EXPECT_EQ(script.count(), 303);
}

}  // namespace
