// How the dialog for a new table lies on the screen, with the input panel and at every zoom.
#include "platform/pocketshell/handheld_windows.h"
#include "tests/ui/dialogs/new_table_fixture.h"
#include "views/dialog/current_dialog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(NewTableTest, ItOpensEmptyAndFullScreen) {
  EXPECT_EQ(run([&](HWND dialog) {
              EXPECT_EQ(textOf(dialog), L"New Table");
              EXPECT_EQ(GetParent(dialog), frame());
              EXPECT_EQ(currentDialog, dialog);
              EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_NAME), L"");
              EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_TABLE_NAME));
              EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_ADD), L"+");
              EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_REMOVE), L"-");
              EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_UP), L"&Up");
              EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_DOWN), L"&Down");
              EXPECT_EQ(textOf(dialog, IDCANCEL), L"Cancel");
              EXPECT_EQ(textOf(dialog, IDOK), L"OK");
              EXPECT_THAT(rows(dialog), IsEmpty());
              press(dialog, IDCANCEL);
            }),
            IDCANCEL);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(NewTableTest, TheListHasTwoColumnsAndWholeRows) {
  run([&](HWND dialog) {
    const HWND header = listview::header(list(dialog));
    ASSERT_EQ(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0), 2);
    const std::array<std::pair<const wchar_t*, int>, 2> wanted = {{{L"Field", 110}, {L"Type", 120}}};
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      std::array<wchar_t, 40> title{};
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
      column.pszText = title.data();
      column.cchTextMax = static_cast<int>(title.size());
      SendMessageW(list(dialog), LVM_GETCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
      EXPECT_STREQ(title.data(), wanted[i].first);
      EXPECT_EQ(column.cx, wanted[i].second);
      EXPECT_EQ(column.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
    }
    EXPECT_EQ(SendMessageW(list(dialog), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0), LVS_EX_FULLROWSELECT);
    EXPECT_NE(styleOf(list(dialog)) & LVS_SINGLESEL, 0u);
    EXPECT_EQ(styleOf(list(dialog)) & WS_HSCROLL, 0u) << "both columns are in view";
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, TheInputPanelIsUpWhileItIsOpen) {
  for (const int end : {IDOK, IDCANCEL}) {
    ASSERT_FALSE(isPanelUp());
    run([&](HWND dialog) {
      EXPECT_TRUE(isPanelUp());
      setName(dialog, L"T");
      addLetters(dialog, 1);
      EXPECT_TRUE(isPanelUp()) << "the field's dialog found it up";
      press(dialog, end);
    });
    EXPECT_FALSE(isPanelUp());
  }
}

TEST_F(NewTableTest, AnInputPanelThatWasUpStays) {
  for (const int end : {IDOK, IDCANCEL}) {
    SHSipPreference(frame(), SIP_UP);
    run([&](HWND dialog) {
      setName(dialog, L"T");
      addLetters(dialog, 1);
      press(dialog, end);
    });
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(NewTableTest, NothingLiesUnderTheInputPanel) {
  run([&](HWND dialog) {
    constexpr int kPanelTop = 188;
    const auto bottomOf = [&](int id) {
      const ControlPlace place = placeOf(GetDlgItem(dialog, id));
      return place.y + place.height;
    };
    EXPECT_LE(bottomOf(IDC_NEW_TABLE_ADD), kPanelTop);
    const int low = bottomOf(IDC_NEW_TABLE_FIELDS);
    SHSipPreference(dialog, SIP_DOWN);
    EXPECT_EQ(bottomOf(IDC_NEW_TABLE_FIELDS), low + 80) << "the list takes the room";
    expectFits(dialog);
    EXPECT_LE(bottomOf(IDC_NEW_TABLE_DOWN), placeOf(GetDlgItem(dialog, IDCANCEL)).y);
    SHSipPreference(dialog, SIP_UP);
    EXPECT_EQ(bottomOf(IDC_NEW_TABLE_FIELDS), low);
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, ItFillsTheScreenAtEveryZoom) {
  for (const int zoom : {100, 200, 100}) {
    HandheldSetZoom(zoom);
    EXPECT_EQ(run([&](HWND dialog) {
                expectFits(dialog);
                expectFullScreen(dialog);
                expectColors(dialog);
                expectTextsFit(dialog);
                EXPECT_THAT(
                    tabOrder(dialog),
                    ElementsAre(IDC_NEW_TABLE_NAME, IDC_NEW_TABLE_FIELDS, IDC_NEW_TABLE_ADD,
                                IDC_NEW_TABLE_REMOVE, IDC_NEW_TABLE_UP, IDC_NEW_TABLE_DOWN, IDCANCEL, IDOK));
                EXPECT_EQ(SendMessageW(list(dialog), LVM_GETCOLUMNWIDTH, 0, 0), HandheldToMonitor(110));
                press(dialog, IDCANCEL);
              }),
              IDCANCEL);
  }
}

TEST_F(NewTableTest, AChangeOfTheZoomTakesTheColumnsAlong) {
  run([&](HWND dialog) {
    HandheldSetZoom(200);
    EXPECT_EQ(SendMessageW(list(dialog), LVM_GETCOLUMNWIDTH, 0, 0), 220);
    EXPECT_EQ(SendMessageW(list(dialog), LVM_GETCOLUMNWIDTH, 1, 0), 240);
    press(dialog, IDCANCEL);
  });
}

}  // namespace
