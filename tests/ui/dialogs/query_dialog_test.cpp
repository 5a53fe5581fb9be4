#include "data/database/sql_names.h"
#include "tests/ui/dialogs/query_fixture.h"
#include "views/dialog/current_dialog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace querytest {
namespace {

TEST_F(QueryDialogTest, ANewQueryHasNoNameAndBeginsWithSelect) {
  EXPECT_EQ(show([&](HWND window) {
              EXPECT_EQ(textOf(window), L"Query");
              EXPECT_EQ(textOf(window, kName), L"");
              EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM");
              EXPECT_EQ(GetParent(window), frame());
              EXPECT_EQ(currentDialog, window);
              press(window, IDCANCEL);
            }),
            IDCANCEL);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(QueryDialogTest, AQueryIsShownAsItIs) {
  dialog.name = kHostile.c_str();
  dialog.sql = L"select *\r\nfrom [Books]\r\n";
  show([&](HWND window) {
    EXPECT_EQ(textOf(window, kName), kHostile);
    EXPECT_EQ(textOf(window, kSql), L"select *\r\nfrom [Books]\r\n");
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, TheListsAreSortedAndBeginWithTheirFirst) {
  show([&](HWND window) {
    EXPECT_THAT(entries(window, kTables), ElementsAre(L"authors", L"Books", L"Loans"));
    EXPECT_EQ(selectedEntry(window, kTables), L"authors");
    EXPECT_THAT(listed, ElementsAre(L"Select * from [authors]"));
    EXPECT_THAT(entries(window, kFields), ElementsAre(L"born", L"Died", L"name"));
    EXPECT_EQ(selectedEntry(window, kFields), L"born");
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, AnotherTableBringsItsFields) {
  show([&](HWND window) {
    chooseTable(window, L"Books");
    EXPECT_EQ(listed.back(), L"Select * from [Books]");
    EXPECT_THAT(entries(window, kFields), ElementsAre(L"title"));
    EXPECT_EQ(selectedEntry(window, kFields), L"title");
    chooseTable(window, L"Loans");
    EXPECT_THAT(entries(window, kFields), IsEmpty()) << "its fields can't be listed";
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, ATableIsAskedForByItsNameAndNotByWhatTheListShowsOfIt) {
  // The mark of an accent at the beginning is shown as U+FFFD.
  tables.append(L"\u0301x");
  fields[L"Select * from [\u0301x]"] = {L"f"};
  show([&](HWND window) {
    chooseTable(window, L"\uFFFDx");
    EXPECT_EQ(selectedEntry(window, kTables), L"\uFFFDx");
    EXPECT_EQ(listed.back(), L"Select * from [\u0301x]");
    EXPECT_THAT(entries(window, kFields), ElementsAre(L"f"));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, WithoutTablesNothingIsListedOrInserted) {
  tables.clear();
  show([&](HWND window) {
    EXPECT_THAT(listed, IsEmpty());
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 0, -1);
    for (const int button : {kInsertTable, kInsertField}) {
      SetFocus(GetDlgItem(window, kName));
      click(window, button);
      EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM");
      EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    }
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, NamesAreInsertedBehindTheTextAtFirst) {
  show([&](HWND window) {
    click(window, kInsertTable);
    EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM[authors]");
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, NamesReplaceTheSelectionTablesInBracketsAndFieldsBare) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kSql, L"SELECT * FROM x");
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 14, 15);
    click(window, kInsertTable);
    EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM [authors]");
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 7, 8);
    SetFocus(GetDlgItem(window, kName));
    click(window, kInsertField);
    EXPECT_EQ(textOf(window, kSql), L"SELECT born FROM [authors]");
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    SendDlgItemMessageW(window, kSql, EM_UNDO, 0, 0);
    EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM [authors]");
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, TheTabKeyLeavesTheSelectionOfTheSqlAlone) {
  show([&](HWND window) {
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 3, 3);
    SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(window, kSql)), TRUE);
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    EXPECT_EQ(SendDlgItemMessageW(window, kSql, EM_GETSEL, 0, 0), MAKELRESULT(3, 3));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, HelpShowsTheTopicOnQueriesAndStays) {
  show([&](HWND window) {
    click(window, kHelp);
    EXPECT_THAT(helpTopics, ElementsAre(L"\\Windows\\file:Quivane.htm#Queries"));
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(currentDialog, window);
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, EnterConfirmsOutsideTheSql) {
  dialog.name = L"q";
  EXPECT_EQ(show([&](HWND window) { sendKey(window, WM_KEYDOWN, VK_RETURN); }), IDOK);
}

TEST_F(QueryDialogTest, EnterInTheSqlBreaksTheLine) {
  show([&](HWND window) {
    SetFocus(GetDlgItem(window, kSql));
    sendKey(window, WM_CHAR, VK_RETURN);
    EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM\r\n");
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, EscapeCancelsEverywhere) {
  for (const int id : {kName, kTables, kCheck, kSql}) {
    EXPECT_EQ(show([&](HWND window) {
                SetFocus(GetDlgItem(window, id));
                sendKey(window, WM_KEYDOWN, VK_ESCAPE);
              }),
              IDCANCEL)
        << id;
  }
}

TEST_F(QueryDialogTest, AccessKeysReachTheirControls) {
  show([&](HWND window) {
    sendAccessKey(window, L't');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kTables));
    sendAccessKey(window, L'f');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kFields));
    sendAccessKey(window, L'n');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    sendAccessKey(window, L'h');
    EXPECT_EQ(helpTopics.size(), 1u);
    sendAccessKey(window, L'c');
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Query is OK")));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, LongTextsGoThroughWhole) {
  const std::wstring name(40000, L'n');
  std::wstring sql = L"SELECT '";
  while (sql.size() < 40000) sql += L"a line of the text\r\n";
  sql += L"'";
  EXPECT_EQ(show([&](HWND window) {
              for (const int id : {kName, kSql}) SendDlgItemMessageW(window, id, EM_SETSEL, 0, -1);
              SendDlgItemMessageW(window, kName, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(name.c_str()));
              SendDlgItemMessageW(window, kSql, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(sql.c_str()));
              press(window, IDOK);
            }),
            IDOK);
  EXPECT_EQ(dialog.name.text(), name);
  EXPECT_EQ(dialog.sql.text(), sql);
}

TEST_F(QueryDialogTest, HostileNamesAreListedAndInsertedAsTheyAre) {
  const std::wstring table = kHostile + std::wstring(300, L't');
  const std::wstring field = kHostile + std::wstring(300, L'f');
  tables.clear();
  tables.append(table.c_str());
  fields[L"Select * from " + selectedName(table.c_str())] = {field};
  show([&](HWND window) {
    EXPECT_EQ(selectedEntry(window, kTables), table);
    EXPECT_EQ(selectedEntry(window, kFields), field);
    SetDlgItemTextW(window, kSql, L"");
    click(window, kInsertTable);
    EXPECT_EQ(textOf(window, kSql), L"[" + table + L"]");
    SetDlgItemTextW(window, kSql, L"");
    click(window, kInsertField);
    EXPECT_EQ(textOf(window, kSql), field);
    press(window, IDCANCEL);
  });
}

MessageBoxes::Box notEnoughMemory(HWND window) {
  return {.caption = L"Quivane",
          .text = L"There is not enough memory.",
          .icon = LoadIconW(nullptr, IDI_WARNING),
          .owner = window};
}

TEST_F(QueryDialogTest, RunningOutOfMemoryKeepsWhatWasTyped) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"q");
    outOfMemory = true;
    for (const int id : {IDOK, kCheck}) {
      press(window, id);
      EXPECT_EQ(textOf(window, kSql), L"SELECT * FROM");
      EXPECT_THAT(takeBoxes(), ElementsAre(notEnoughMemory(window)));
    }
    EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, WithoutTheMemoryToOpenItSaysSo) {
  outOfMemory = true;
  HWND opened = nullptr;
  EXPECT_EQ(show([&](HWND window) { opened = window; }), IDCANCEL);
  EXPECT_THAT(takeBoxes(), ElementsAre(notEnoughMemory(opened)));
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(QueryDialogTest, AHundredOpeningsLeaveNothingBehind) {
  leavesNothingBehind([&] { show([&](HWND window) { press(window, IDCANCEL); }); });
}

// ---- What can't be shown

TEST_F(QueryDialogTest, AStatementThatCantBeShownAsItIsStaysWhatItIs) {
  dialog.name = L"n";
  dialog.sql = L"Select '\x0636\x02A9\x05B0'";
  EXPECT_EQ(show([&](HWND window) {
              EXPECT_NE(styleOf(GetDlgItem(window, kSql)) & ES_READONLY, 0u);
              EXPECT_EQ(textOf(window, kSql), L"Select '\x0636\x02A9\xFFFD'");
              SetDlgItemTextW(window, kName, L"renamed");
              press(window, IDOK);
            }),
            IDOK);
  EXPECT_STREQ(dialog.name.text(), L"renamed");
  EXPECT_STREQ(dialog.sql.text(), L"Select '\x0636\x02A9\x05B0'");
}

TEST_F(QueryDialogTest, ALongLineIsBrokenAndComesBackWhole) {
  std::wstring sql = L"Select 1";
  while (sql.size() < 20000) sql += L", 12345678";
  dialog.name = L"n";
  dialog.sql = sql.c_str();
  EXPECT_EQ(show([&](HWND window) {
              EXPECT_EQ(styleOf(GetDlgItem(window, kSql)) & ES_READONLY, 0u);
              EXPECT_NE(textOf(window, kSql).find(L"\r\r\n"), std::wstring::npos);
              press(window, IDOK);
            }),
            IDOK);
  EXPECT_EQ(dialog.sql.text(), sql);
}

}  // namespace
}  // namespace querytest
