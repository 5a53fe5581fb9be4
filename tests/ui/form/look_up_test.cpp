// A field that refers to records of another table: its list and its tooltip.
#include <windows.h>

#include <commctrl.h>

#include "gmock/gmock.h"
#include "records/parts/look_ups.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/message_boxes.h"
#include "tests/ui/support/test_database.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/text_field_editor.h"
#include "views/lookup/look_up_ids.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LookUpFormTest : public FormFixture {
 protected:
  static constexpr const wchar_t* kLoans = L"CREATE TABLE 'T' (Book Integer REFERENCES Books, Note Text)";

  void showLoans(const wchar_t* declaration = kLoans) {
    showTable(declaration,
              {L"CREATE TABLE 'Books' (Id Integer PRIMARY KEY, Title Text)",
               L"INSERT INTO Books VALUES (3, 'Ulysses')", L"INSERT INTO Books VALUES (5, 'Emma')",
               L"INSERT INTO Books VALUES (8, 'Persuasion')", L"INSERT INTO T VALUES (3, 'n')"});
  }
  static HWND list(HWND dialog) { return GetDlgItem(dialog, IDC_LOOK_UP_RECORDS); }
  static HWND edit(HWND dialog) { return GetDlgItem(dialog, IDC_LOOK_UP_TEXT); }
  static std::wstring note(HWND dialog) { return textOf(GetDlgItem(dialog, IDC_LOOK_UP_NOTE)); }
  static std::vector<std::wstring> rows(HWND dialog) {
    std::vector<std::wstring> texts;
    const int count = static_cast<int>(SendMessageW(list(dialog), LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
      std::wstring text;
      for (int column = 0; column < 2; ++column) {
        wchar_t cell[100] = L"";
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = cell;
        item.cchTextMax = 100;
        SendMessageW(list(dialog), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
        text += (column == 0 ? L"" : L" ") + std::wstring(cell);
      }
      texts.push_back(text);
    }
    return texts;
  }
  static void press(HWND dialog, int id) { SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0); }
  void open(const DialogScript::Step& use) {
    DialogScript script(use);
    SendMessageW(textEditor(), kLookUpMessage, 0, 0);
    EXPECT_EQ(script.count(), 1);
  }
  std::wstring tip(int editor) {
    NMTTDISPINFOW question{};
    question.hdr.code = static_cast<UINT>(TTN_GETDISPINFOW);
    SendMessageW(textEditor(editor), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&question));
    return question.lpszText ? question.lpszText : L"(none)";
  }
};

TEST_F(LookUpFormTest, WhereTheSearchCantGoOnTheReasonStandsInThePlaceOfTheCount) {
  showLoans();
  open([this](HWND dialog) {
    runStatements(path(), {L"ALTER TABLE Books RENAME COLUMN Title TO Heading"});
    SetWindowTextW(edit(dialog), L"ss");
    EXPECT_THAT(note(dialog), testing::StartsWith(L"The structure of the database was changed meanwhile"));
    SetWindowTextW(edit(dialog), L"");
    EXPECT_EQ(note(dialog), L"3 records");
    press(dialog, IDCANCEL);
  });
}

TEST_F(LookUpFormTest, AllRecordsAreOfferedAndTheListNarrows) {
  showLoans();
  open([](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Book");
    EXPECT_THAT(rows(dialog), ElementsAre(L"3 Ulysses", L"5 Emma", L"8 Persuasion"));
    EXPECT_EQ(note(dialog), L"3 records");
    SetWindowTextW(edit(dialog), L"ss");
    EXPECT_THAT(rows(dialog), ElementsAre(L"3 Ulysses"));
    EXPECT_EQ(note(dialog), L"1 record");
    SetWindowTextW(edit(dialog), L"nothing");
    EXPECT_THAT(rows(dialog), IsEmpty());
    press(dialog, IDOK);
    SetWindowTextW(edit(dialog), L"");
    EXPECT_EQ(note(dialog), L"3 records");
    DialogScript::close(dialog, IDCANCEL);
  });
  EXPECT_FALSE(view().takeChange());
}

TEST_F(LookUpFormTest, TheFirstOfThoseThatWereFoundIsChosenByEnter) {
  showLoans();
  open([](HWND dialog) {
    SetWindowTextW(edit(dialog), L"PERS");
    press(dialog, IDOK);
  });
  EXPECT_EQ(textOf(textEditor()), L"8") << "the number is shown, not its name";
  commit();
  EXPECT_EQ(storedText(0), L"8");
}

TEST_F(LookUpFormTest, ALongKeyIsStoredToTheLastCharacter) {
  showTable(
      L"CREATE TABLE 'T' (Book Text REFERENCES Books, Note Text)",
      {L"CREATE TABLE 'Books' (Id Text PRIMARY KEY)",
       L"INSERT INTO Books VALUES (hex(zeroblob(3000)) || 'end')", L"INSERT INTO T VALUES (NULL, 'n')"});
  open([](HWND dialog) { press(dialog, IDOK); });
  commit();
  EXPECT_EQ(storedText(0), std::wstring(6000, L'0') + L"end");
}

TEST_F(LookUpFormTest, AKeyThatWouldBeStoredAsAnotherIsRefused) {
  showTable(
      L"CREATE TABLE 'T' (Price Float REFERENCES Prices, Note Text REFERENCES Notes)",
      {L"CREATE TABLE 'Prices' (Id Float PRIMARY KEY)", L"INSERT INTO Prices VALUES (0.12345678)",
       L"CREATE TABLE 'Notes' (Id Text PRIMARY KEY)",
       L"INSERT INTO Notes VALUES ('one' || char(13, 10) || 'two')", L"INSERT INTO T VALUES (NULL, NULL)"});
  MessageBoxes boxes;
  const auto refused = [](HWND dialog) {
    press(dialog, IDOK);
    EXPECT_TRUE(IsWindow(dialog));
    DialogScript::close(dialog, IDCANCEL);
  };
  open(refused);
  DialogScript script(refused);
  SendMessageW(textEditor(1), kLookUpMessage, 0, 0);
  EXPECT_FALSE(view().takeChange());
}

TEST_F(LookUpFormTest, TheArrowsChooseWhileTheKeyboardIsInTheText) {
  showLoans();
  open([](HWND dialog) {
    for (int step = 0; step < 2; ++step) SendMessageW(edit(dialog), WM_KEYDOWN, VK_DOWN, 1);
    EXPECT_EQ(SendMessageW(list(dialog), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), 1);
    press(dialog, IDOK);
  });
  EXPECT_EQ(textOf(textEditor()), L"5");
}

TEST_F(LookUpFormTest, WhatIsTypedTakesTheChoiceAway) {
  showLoans();
  open([](HWND dialog) {
    for (int step = 0; step < 3; ++step) SendMessageW(edit(dialog), WM_KEYDOWN, VK_DOWN, 1);
    SetWindowTextW(edit(dialog), L"a");
    EXPECT_THAT(rows(dialog), ElementsAre(L"5 Emma", L"8 Persuasion"));
    for (const UINT state : {LVNI_SELECTED, LVNI_FOCUSED})
      EXPECT_EQ(SendMessageW(list(dialog), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), state), -1) << state;
    SetWindowTextW(edit(dialog), L"");
    EXPECT_EQ(SendMessageW(list(dialog), LVM_GETSELECTEDCOUNT, 0, 0), 0);
    DialogScript::close(dialog, IDCANCEL);
  });
}

/// Of a million rows each walk takes half a second.
TEST_F(LookUpFormTest, WhatIsTypedIsNoWalkOverAllRowsOfTheList) {
  showLoans();
  open([](HWND dialog) {
    int walks = 0;
    const auto count = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                          DWORD_PTR counted) -> LRESULT {
      const bool isOfAll = message == LVM_SETITEMSTATE && static_cast<int>(wParam) == -1;
      const bool isVain = message == LVM_GETNEXTITEM && LOWORD(lParam) == LVNI_SELECTED &&
                          SendMessageW(window, LVM_GETSELECTEDCOUNT, 0, 0) == 0;
      if (isOfAll || isVain) ++*reinterpret_cast<int*>(counted);
      return DefSubclassProc(window, message, wParam, lParam);
    };
    SetWindowSubclass(list(dialog), count, 1, reinterpret_cast<DWORD_PTR>(&walks));
    for (const wchar_t* text : {L"s", L"ss", L"nothing", L""}) SetWindowTextW(edit(dialog), text);
    EXPECT_EQ(walks, 0);
    RemoveWindowSubclass(list(dialog), count, 1);
    DialogScript::close(dialog, IDCANCEL);
  });
}

TEST_F(LookUpFormTest, TheNamesStandBesideTheScrollBarAndNotBelowIt) {
  constexpr auto kScrollBars = [](HWND dialog) {
    return GetWindowLongW(list(dialog), GWL_STYLE) & (WS_HSCROLL | WS_VSCROLL);
  };
  showTable(kLoans,
            {L"CREATE TABLE 'Books' (Id Integer PRIMARY KEY, Title Text)",
             L"INSERT INTO Books VALUES (3, 'Ulysses')",
             L"INSERT INTO Books WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n LIMIT "
             L"300) SELECT i, 'Book ' || i FROM n",
             L"INSERT INTO T VALUES (3, 'n')"});
  open([&](HWND dialog) {
    EXPECT_EQ(note(dialog), L"301 records");
    EXPECT_EQ(kScrollBars(dialog), LONG{WS_VSCROLL});
    SetWindowTextW(edit(dialog), L"ss");
    EXPECT_EQ(kScrollBars(dialog), 0);
    SetWindowTextW(edit(dialog), L"Book 1");
    EXPECT_EQ(kScrollBars(dialog), LONG{WS_VSCROLL});
    SetWindowPos(dialog, nullptr, 0, 0, 500, 300, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(kScrollBars(dialog), LONG{WS_VSCROLL});
    DialogScript::close(dialog, IDCANCEL);
  });
}

TEST_F(LookUpFormTest, WithoutAChoiceNothingIsChosenAmongMany) {
  showLoans();
  SetWindowTextW(textEditor(), L"8");
  open([](HWND dialog) {
    press(dialog, IDOK);
    DialogScript::close(dialog, IDCANCEL);
  });
  EXPECT_EQ(textOf(textEditor()), L"8");
}

TEST_F(LookUpFormTest, TheRecordThatStandsThereAlreadyChangesNothing) {
  showLoans();
  open([](HWND dialog) {
    SetWindowTextW(edit(dialog), L"ulysses");
    press(dialog, IDOK);
  });
  EXPECT_FALSE(view().takeChange());
}

TEST_F(LookUpFormTest, TheKeyF4OpensItAndOnlyWhereAFieldRefers) {
  showLoans();
  DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); });
  SendMessageW(textEditor(1), WM_KEYDOWN, VK_F4, 1);
  dispatchPosted();
  EXPECT_EQ(script.count(), 0);
  SendMessageW(textEditor(0), WM_KEYDOWN, VK_F4, 1);
  dispatchPosted();
  EXPECT_EQ(script.count(), 1);
}

TEST_F(LookUpFormTest, AFieldThatCanNotBeWrittenOffersNothingButItsName) {
  showLoans(
      L"CREATE TABLE 'T' (a Integer, Note Text, "
      L"Book Integer GENERATED ALWAYS AS (a) REFERENCES Books)");
  const DialogScript script([](HWND) {});
  SendMessageW(textEditor(2), kLookUpMessage, 0, 0);
  EXPECT_EQ(script.count(), 0);
  EXPECT_EQ(tip(2), L"Ulysses");
}

TEST_F(LookUpFormTest, TheTooltipTellsTheNameOfWhatStandsThere) {
  showLoans();
  EXPECT_EQ(tip(0), L"Ulysses");
  EXPECT_EQ(tip(1), L"") << "it refers to nothing";
  SetWindowTextW(textEditor(), L"5");
  EXPECT_EQ(tip(0), L"Emma") << "typed and not stored";
  SetWindowTextW(textEditor(), L"77");
  EXPECT_EQ(tip(0), L"");
}

TEST_F(LookUpFormTest, ATableThatIsNotThereIsTold) {
  showTable(L"CREATE TABLE 'T' (Book Integer REFERENCES Gone (Id), Note Text)");
  const DialogScript script([](HWND) {});
  EXPECT_EQ(document().lookUps().open(0), nullptr);
  ASSERT_EQ(prompts().messages.size(), 1u);
  EXPECT_THAT(prompts().messages[0].text,
              testing::StartsWith(L"The records of table 'Gone' could not be opened.\n"));
}

TEST_F(LookUpFormTest, AFormThatIsTakenDownUnderTheListTakesNothing) {
  showLoans();
  open([&](HWND dialog) {
    SetWindowTextW(edit(dialog), L"emma");
    view().tearDown();
    press(dialog, IDOK);
  });
  EXPECT_EQ(storedText(0), L"3");
}

}  // namespace
