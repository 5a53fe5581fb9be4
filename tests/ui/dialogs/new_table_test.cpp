#include "data/database/database.h"
#include "tests/support/paths.h"
#include "tests/ui/dialogs/new_table_fixture.h"
#include "tests/ui/support/test_database.h"
#include "views/dialog/current_dialog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST_F(NewTableTest, AFieldIsAppendedWithTheTypeAsTheStatementSpellsIt) {
  run([&](HWND dialog) {
    add(dialog, L"Id", 4);
    add(dialog, L"Full name", 5);
    EXPECT_THAT(rows(dialog),
                ElementsAre(TableRow{L"Id", L"Integer"}, TableRow{L"Full name", L"Varchar (255)"}));
    EXPECT_EQ(currentDialog, dialog) << "it is again the one that is open";
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_TABLE_ADD));
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, ACancelledFieldIsNotAppended) {
  run([&](HWND dialog) {
    add(dialog, L"", 0);
    EXPECT_THAT(rows(dialog), IsEmpty());
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_TABLE_ADD));
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, MinusDeletesTheSelectedRowAtOnce) {
  run([&](HWND dialog) {
    addLetters(dialog, 3);
    select(dialog, 1);
    press(dialog, IDC_NEW_TABLE_REMOVE);
    EXPECT_THAT(names(dialog), ElementsAre(L"a", L"c"));
    press(dialog, IDC_NEW_TABLE_REMOVE);
    EXPECT_THAT(names(dialog), ElementsAre(L"a", L"c")) << "nothing is selected";
    EXPECT_THAT(takeBoxes(), IsEmpty());
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, UpAndDownMoveTheSelectedRow) {
  run([&](HWND dialog) {
    addLetters(dialog, 3);
    select(dialog, 2);
    SetFocus(GetDlgItem(dialog, IDC_NEW_TABLE_UP));
    press(dialog, IDC_NEW_TABLE_UP);
    EXPECT_THAT(rows(dialog),
                ElementsAre(TableRow{L"a", L"Bit"}, TableRow{L"c", L"Float"}, TableRow{L"b", L"Datetime"}));
    EXPECT_EQ(selected(dialog), 1);
    EXPECT_EQ(GetFocus(), list(dialog));
    press(dialog, IDC_NEW_TABLE_UP);
    EXPECT_THAT(names(dialog), ElementsAre(L"c", L"a", L"b"));
    EXPECT_EQ(selected(dialog), 0);
    SetFocus(GetDlgItem(dialog, IDC_NEW_TABLE_DOWN));
    press(dialog, IDC_NEW_TABLE_DOWN);
    EXPECT_THAT(names(dialog), ElementsAre(L"a", L"c", L"b"));
    EXPECT_EQ(selected(dialog), 1);
    EXPECT_EQ(GetFocus(), list(dialog));
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, UpOnTheFirstAndDownOnTheLastRowDoNothing) {
  run([&](HWND dialog) {
    addLetters(dialog, 2);
    select(dialog, 0);
    press(dialog, IDC_NEW_TABLE_UP);
    EXPECT_THAT(names(dialog), ElementsAre(L"a", L"b"));
    EXPECT_EQ(selected(dialog), 0);
    select(dialog, 1);
    press(dialog, IDC_NEW_TABLE_DOWN);
    EXPECT_THAT(names(dialog), ElementsAre(L"a", L"b"));
    EXPECT_EQ(selected(dialog), 1);
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, DownInAListOfOneRowDoesNothing) {
  run([&](HWND dialog) {
    addLetters(dialog, 1);
    select(dialog, 0);
    press(dialog, IDC_NEW_TABLE_DOWN);
    EXPECT_THAT(names(dialog), ElementsAre(L"a"));
    EXPECT_EQ(selected(dialog), 0);
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, UpAndDownWithoutASelectionDoNothing) {
  run([&](HWND dialog) {
    press(dialog, IDC_NEW_TABLE_UP);
    press(dialog, IDC_NEW_TABLE_DOWN);
    addLetters(dialog, 2);
    press(dialog, IDC_NEW_TABLE_UP);
    press(dialog, IDC_NEW_TABLE_DOWN);
    EXPECT_THAT(names(dialog), ElementsAre(L"a", L"b"));
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, AMovedNameIsCutAt100Characters) {
  run([&](HWND dialog) {
    add(dialog, std::wstring(100, L'n').c_str(), 0);
    add(dialog, std::wstring(300, L'm').c_str(), 0);
    select(dialog, 1);
    press(dialog, IDC_NEW_TABLE_UP);
    EXPECT_THAT(names(dialog), ElementsAre(std::wstring(100, L'm'), std::wstring(100, L'n')));
    press(dialog, IDC_NEW_TABLE_DOWN);
    EXPECT_THAT(names(dialog), ElementsAre(std::wstring(100, L'n'), std::wstring(100, L'm')));
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, ConfirmedItHandsOverNameAndColumns) {
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"People");
              add(dialog, L"Id", 4);
              add(dialog, L"Full name", 5);
              add(dialog, L"Born", 1);
              press(dialog, IDOK);
              EXPECT_THAT(takeBoxes(), IsEmpty());
              EXPECT_THAT(rows(dialog), IsEmpty());
            }),
            IDOK);
  EXPECT_STREQ(table_.name.text(), L"People");
  EXPECT_STREQ(table_.columns.text(), L"Id Integer ,'Full name' Varchar (255) ,Born Datetime");
}

TEST_F(NewTableTest, RunAgainItShowsTheSameDesign) {
  const std::wstring longName(300, L'n');
  run([&](HWND dialog) {
    setName(dialog, L"People");
    add(dialog, longName.c_str(), 4);
    add(dialog, L"Born", 1);
    press(dialog, IDOK);
  });
  EXPECT_EQ(run([&](HWND dialog) {
              EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_NAME), L"People");
              EXPECT_THAT(rows(dialog),
                          ElementsAre(TableRow{longName, L"Integer"}, TableRow{L"Born", L"Datetime"}));
              press(dialog, IDOK);
            }),
            IDOK);
}

TEST_F(NewTableTest, CancelledItHandsOverNothing) {
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"People");
              addLetters(dialog, 1);
              press(dialog, IDCANCEL);
              EXPECT_THAT(rows(dialog), IsEmpty());
            }),
            IDCANCEL);
  EXPECT_TRUE(table_.name.isEmpty());
  EXPECT_TRUE(table_.fields.empty());
}

TEST_F(NewTableTest, TwoFieldsOfOneNameAreAccepted) {
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"T");
              add(dialog, L"a", 0);
              add(dialog, L"a", 6);
              press(dialog, IDOK);
            }),
            IDOK);
  EXPECT_STREQ(table_.columns.text(), L"a Bit ,a Text");
}

TEST_F(NewTableTest, HundredsOfFieldsKeepTheirOrder) {
  for (int i = 0; i < 300; ++i) table_.fields.push_back({(L"f" + std::to_wstring(i)).c_str(), L"Bit"});
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"T");
              add(dialog, L"last", 0);
              select(dialog, 299);
              press(dialog, IDC_NEW_TABLE_UP);
              press(dialog, IDOK);
            }),
            IDOK);
  ASSERT_EQ(table_.fields.size(), 301u);
  EXPECT_STREQ(table_.fields[0].name.text(), L"f0");
  EXPECT_STREQ(table_.fields[298].name.text(), L"f299");
  EXPECT_STREQ(table_.fields[299].name.text(), L"f298");
  EXPECT_STREQ(table_.fields[300].name.text(), L"last");
}

TEST_F(NewTableTest, EnterConfirmsAndEscapeCancels) {
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"T");
              addLetters(dialog, 1);
              postKey(GetDlgItem(dialog, IDC_NEW_TABLE_NAME), VK_RETURN);
            }),
            IDOK);
  EXPECT_EQ(run([&](HWND dialog) { postKey(GetDlgItem(dialog, IDC_NEW_TABLE_NAME), VK_ESCAPE); }), IDCANCEL);
}

TEST_F(NewTableTest, AHundredOpeningsLeaveNothingBehind) {
  leavesNothingBehind([&] {
    table_.fields.clear();
    run([&](HWND dialog) {
      setName(dialog, L"T");
      addLetters(dialog, 1);
      press(dialog, IDOK);
    });
  });
}

TEST_F(NewTableTest, TheDatabaseTakesWhatWasDesigned) {
  const testsupport::TempFolder folder;
  const std::filesystem::path path = folder.file("designed.cdb");
  makeDatabase(path, {});
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"Customer's");
              add(dialog, L"Id", 4);
              add(dialog, L"Full name", 5);
              add(dialog, L"Customer's", 6);
              press(dialog, IDOK);
            }),
            IDOK);
  Database database;
  ASSERT_TRUE(database.open(path.c_str()));
  EXPECT_TRUE(database.createTable(table_.name, table_.columns));
  NameList fields;
  database.listFieldNames(L"Select * from [Customer's]", fields);
  ASSERT_EQ(fields.size(), 3u);
  EXPECT_STREQ(fields[1].text(), L"Full name");
  EXPECT_STREQ(fields[2].text(), L"Customer's");
}

}  // namespace
