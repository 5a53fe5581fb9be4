#include "dialogs/query_dialog.h"

#include <array>
#include <map>
#include <new>

#include "gmock/gmock.h"
#include "tests/ui/typed_dialog_fixture.h"
#include "tests/ui/window_reading.h"
#include "views/current_dialog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kCheck = 3;
constexpr int kFilter = 4;
constexpr int kInsertField = 1028;
constexpr int kName = 1049;
constexpr int kSql = 1050;
constexpr int kFields = 1054;
constexpr int kTables = 1055;
constexpr int kInsertTable = 1057;
constexpr int kHelp = 1071;
constexpr int kLabel = -1;

const std::wstring kHostile = L"100% 'a' \"b\" [c] %s\t\x5E9\x5DC\x5D5\x5DD \xD83D\xDE00";

/// Of a drop-down list at zoom 100.
constexpr int kNormalComboHeight = 21;

class QueryDialogTest : public TypedDialogTest {
 protected:
  QueryDialogTest() {
    for (const wchar_t* const name : {L"Loans", L"authors", L"Books"}) tables.append(name);
    fields[L"Select * from [authors]"] = {L"name", L"born", L"Died"};
    fields[L"Select * from [Books]"] = {L"title"};
  }

  INT_PTR show(const Step& step) {
    return inDialog([&] { return dialog.run(top()); }, step);
  }

  std::vector<MessageBoxSpy::Box> says(HWND owner, const wchar_t* text) {
    return {{owner, text, L"Quivane", MB_SETFOREGROUND}};
  }

  void chooseTable(HWND window, const wchar_t* name) {
    SendDlgItemMessageW(window, kTables, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                        reinterpret_cast<LPARAM>(name));
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(kTables, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(window, kTables)));
  }

  static RECT sqlPlace(HWND window) { return placeInParent(GetDlgItem(window, kSql)); }

  static void cancel(HWND window) { SendMessageW(window, WM_COMMAND, IDCANCEL, 0); }
  static void confirm(HWND window) { SendMessageW(window, WM_COMMAND, IDOK, 0); }

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes): the tests set and read them
  bool returnsRecords = true;
  const wchar_t* reason = L"";       // why not
  std::vector<std::wstring> asked;   // of which statements it was asked whether they return records
  std::vector<std::wstring> listed;  // of which statements the fields were asked for
  std::vector<std::wstring> helpTopics;
  bool outOfMemory = false;

  NameList tables;
  std::map<std::wstring, std::vector<std::wstring>> fields;
  QueryDialog dialog{{tables,
                      [this](const String& sql, NameList& names) {
                        if (outOfMemory) throw std::bad_alloc();
                        listed.emplace_back(sql.text());
                        for (const std::wstring& each : fields[sql.text()]) names.append(each.c_str());
                      },
                      [this](const String& sql, String& why) {
                        if (outOfMemory) throw std::bad_alloc();
                        asked.emplace_back(sql.text());
                        why = reason;
                        return returnsRecords;
                      },
                      [this](const wchar_t* topic) { helpTopics.emplace_back(topic); }}};
  // NOLINTEND(misc-non-private-member-variables-in-classes)
};

TEST_F(QueryDialogTest, ANewQueryHasNoNameAndBeginsWithSelect) {
  EXPECT_EQ(show([&](HWND window) {
              EXPECT_EQ(textOf(window), L"Query");
              EXPECT_EQ(textIn(window, kName), L"");
              EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM");
              EXPECT_EQ(GetParent(window), top());
              EXPECT_EQ(currentDialog, window);
              cancel(window);
            }),
            IDCANCEL);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(QueryDialogTest, AQueryIsShownAsItIs) {
  dialog.name = kHostile.c_str();
  dialog.sql = L"select *\r\nfrom [Books]\r\n";
  show([&](HWND window) {
    EXPECT_EQ(textIn(window, kName), kHostile);
    EXPECT_EQ(textIn(window, kSql), L"select *\r\nfrom [Books]\r\n");
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ItsControlsAreThoseOfTheHandheld) {
  show([&](HWND window) {
    EXPECT_THAT(
        controls(window),
        ElementsAre(ControlFacts{-1, L"Static", L"Query &Name:"}, ControlFacts{kName, L"Edit", L""},
                    ControlFacts{-1, L"Static", L"&Tables:"}, ControlFacts{kTables, L"ComboBox", L""},
                    ControlFacts{kInsertTable, L"Button", L"+"}, ControlFacts{-1, L"Static", L"&Fields:"},
                    ControlFacts{kFields, L"ComboBox", L""}, ControlFacts{kInsertField, L"Button", L"+"},
                    ControlFacts{kFilter, L"Button", L"Filter"}, ControlFacts{kHelp, L"Button", L"&Help"},
                    ControlFacts{kCheck, L"Button", L"&Check"}, ControlFacts{IDCANCEL, L"Button", L"Cancel"},
                    ControlFacts{kSql, L"Edit", L"SELECT * FROM"}, ControlFacts{IDOK, L"Button", L"OK"}));
    EXPECT_THAT(tabOrder(window, kName), ElementsAre(kName, kTables, kInsertTable, kFields, kInsertField,
                                                     kHelp, kCheck, IDCANCEL, kSql, IDOK));
    constexpr DWORD kList = CBS_DROPDOWNLIST | CBS_SORT;
    EXPECT_EQ(styleOf(GetDlgItem(window, kTables)) & kList, kList);
    EXPECT_EQ(styleOf(GetDlgItem(window, kFields)) & kList, kList);
    EXPECT_NE(styleOf(GetDlgItem(window, kSql)) & ES_MULTILINE, 0u);
    EXPECT_FALSE(isShown(GetDlgItem(window, kFilter)));
    EXPECT_EQ(LOWORD(SendMessageW(window, DM_GETDEFID, 0, 0)), IDOK);
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ItCoversTheWindowBelowAndItsControlsStandApart) {
  show([&](HWND window) {
    EXPECT_EQ(clientRect(window), (RECT{0, 0, 240, 294}));
    POINT inside{};
    POINT below{};
    ClientToScreen(window, &inside);
    ClientToScreen(top(), &below);
    EXPECT_EQ(inside.x, below.x);
    EXPECT_EQ(inside.y, below.y);
    expectControlsApart(window);
    expectColors(window, kLabel, kSql);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ThePanelShrinksTheSqlTo60AndGivesItBack140) {
  setPanelPolicy(kPanelAlways);
  show([&](HWND window) {
    EXPECT_EQ(sqlPlace(window), (RECT{2, 120, 236, 260}));
    SHSipPreference(window, SIP_UP);
    EXPECT_EQ(sqlPlace(window), (RECT{2, 120, 236, 180}));
    expectControlsApart(window);
    SHSipPreference(window, SIP_DOWN);
    EXPECT_EQ(sqlPlace(window), (RECT{2, 120, 236, 260}));
    cancel(window);
  });
}

TEST_F(QueryDialogTest, AtZoom200EveryLengthIsTwiceAsLong) {
  setPanelPolicy(kPanelAlways);
  HandheldSetZoom(200);
  show([&](HWND window) {
    EXPECT_EQ(clientRect(window), (RECT{0, 0, 480, 588}));
    EXPECT_EQ(sqlPlace(window), (RECT{4, 240, 472, 520}));
    SHSipPreference(window, SIP_UP);
    EXPECT_EQ(sqlPlace(window), (RECT{4, 240, 472, 360}));
    for (const int id : {kTables, kFields}) {
      const RECT place = placeInParent(GetDlgItem(window, id));
      EXPECT_GT(place.bottom - place.top, 2 * kNormalComboHeight * 4 / 5) << id;
    }
    expectControlsApart(window);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ThePanelThatWasUpIsPutDownAndComesBack) {
  setPanelPolicy(kPanelAlways);
  for (const int command : {IDOK, IDCANCEL}) {
    SHSipPreference(top(), SIP_UP);
    ASSERT_TRUE(isPanelUp());
    dialog.name = L"q";
    EXPECT_EQ(show([&](HWND window) {
                EXPECT_FALSE(isPanelUp());
                SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
              }),
              command);
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(QueryDialogTest, ThePanelThatWasDownStaysDown) {
  setPanelPolicy(kPanelAlways);
  show([&](HWND window) { cancel(window); });
  EXPECT_FALSE(isPanelUp());
}

TEST_F(QueryDialogTest, TheListsAreSortedAndBeginWithTheirFirst) {
  show([&](HWND window) {
    EXPECT_THAT(entries(window, kTables), ElementsAre(L"authors", L"Books", L"Loans"));
    EXPECT_EQ(selected(window, kTables), L"authors");
    EXPECT_THAT(listed, ElementsAre(L"Select * from [authors]"));
    EXPECT_THAT(entries(window, kFields), ElementsAre(L"born", L"Died", L"name"));
    EXPECT_EQ(selected(window, kFields), L"born");
    cancel(window);
  });
}

TEST_F(QueryDialogTest, AnotherTableBringsItsFields) {
  show([&](HWND window) {
    chooseTable(window, L"Books");
    EXPECT_EQ(listed.back(), L"Select * from [Books]");
    EXPECT_THAT(entries(window, kFields), ElementsAre(L"title"));
    EXPECT_EQ(selected(window, kFields), L"title");
    chooseTable(window, L"Loans");
    EXPECT_THAT(entries(window, kFields), IsEmpty()) << "its fields can't be listed";
    cancel(window);
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
      EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM");
      EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    }
    cancel(window);
  });
}

TEST_F(QueryDialogTest, NamesAreInsertedBehindTheTextAtFirst) {
  show([&](HWND window) {
    click(window, kInsertTable);
    EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM[authors]");
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    cancel(window);
  });
}

TEST_F(QueryDialogTest, NamesReplaceTheSelectionTablesInBracketsAndFieldsBare) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kSql, L"SELECT * FROM x");
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 14, 15);
    click(window, kInsertTable);
    EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM [authors]");
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 7, 8);
    SetFocus(GetDlgItem(window, kName));
    click(window, kInsertField);
    EXPECT_EQ(textIn(window, kSql), L"SELECT born FROM [authors]");
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    SendDlgItemMessageW(window, kSql, EM_UNDO, 0, 0);
    EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM [authors]");
    cancel(window);
  });
}

TEST_F(QueryDialogTest, TheTabKeyLeavesTheSelectionOfTheSqlAlone) {
  show([&](HWND window) {
    SendDlgItemMessageW(window, kSql, EM_SETSEL, 3, 3);
    SendMessageW(window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(window, kSql)), TRUE);
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kSql));
    EXPECT_EQ(SendDlgItemMessageW(window, kSql, EM_GETSEL, 0, 0), MAKELRESULT(3, 3));
    cancel(window);
  });
}

TEST_F(QueryDialogTest, CheckSaysWhatItFoundAndStoresNothing) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"q");
    SetDlgItemTextW(window, kSql, L"DELETE FROM [Books]");
    click(window, kCheck);
    EXPECT_EQ(takeBoxes(), says(window, L"Queries must begin with a SELECT keyword!"));
    EXPECT_THAT(asked, IsEmpty());
    SetDlgItemTextW(window, kSql, L"select 1");
    click(window, kCheck);
    EXPECT_EQ(takeBoxes(), says(window, L"Query is OK"));
    returnsRecords = false;
    click(window, kCheck);
    EXPECT_EQ(takeBoxes(), says(window, L"Query does not return records"));
    EXPECT_THAT(asked, ElementsAre(L"select 1", L"select 1"));
    cancel(window);
  });
  EXPECT_STREQ(dialog.name.text(), L"");
  EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
}

struct Beginning {
  const char* name;
  const wchar_t* sql;
  bool passes;
};
void PrintTo(const Beginning& beginning, std::ostream* out) {
  *out << beginning.name;
}
class BeginningTest : public QueryDialogTest, public testing::WithParamInterface<Beginning> {};

TEST_P(BeginningTest, OnlyTheSixLettersCount) {
  dialog.name = L"q";
  show([&](HWND window) {
    SetDlgItemTextW(window, kSql, GetParam().sql);
    confirm(window);
    if (GetParam().passes) {
      EXPECT_THAT(asked, ElementsAre(GetParam().sql));
      EXPECT_THAT(takeBoxes(), IsEmpty());
    } else {
      EXPECT_THAT(asked, IsEmpty());
      EXPECT_EQ(takeBoxes(), says(window, L"Queries must begin with a SELECT keyword!"));
      cancel(window);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(QueryDialog, BeginningTest,
                         testing::Values(Beginning{"SelectionPasses", L"SELECTION", true},
                                         Beginning{"LowerCasePasses", L"select * from x", true},
                                         Beginning{"MixedCasePasses", L"Select", true},
                                         Beginning{"ALeadingBlankFails", L" SELECT * FROM x", false},
                                         Beginning{"ALeadingLineBreakFails", L"\r\nSELECT * FROM x", false},
                                         Beginning{"FiveLettersFail", L"SELEC", false},
                                         Beginning{"NothingFails", L"", false},
                                         Beginning{"AnotherWordFails", L"UPDATE x", false}),
                         [](const auto& each) { return each.param.name; });

TEST_F(QueryDialogTest, OkAsksForANameFirst) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kSql, L"nonsense");
    SetFocus(GetDlgItem(window, kSql));
    confirm(window);
    EXPECT_EQ(takeBoxes(), says(window, L"Please enter a query name!"));
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    EXPECT_EQ(textIn(window, kSql), L"nonsense");
    EXPECT_THAT(asked, IsEmpty());
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ANameOfBlanksIsAccepted) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kName, L"   ");
              confirm(window);
            }),
            IDOK);
  EXPECT_STREQ(dialog.name.text(), L"   ");
}

TEST_F(QueryDialogTest, OkHandsOverTheNameAndTheSql) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kName, kHostile.c_str());
              SetDlgItemTextW(window, kSql, L"select '%s'\r\nfrom [a]");
              confirm(window);
            }),
            IDOK);
  EXPECT_EQ(dialog.name.text(), kHostile);
  EXPECT_STREQ(dialog.sql.text(), L"select '%s'\r\nfrom [a]");
  EXPECT_THAT(asked, ElementsAre(L"select '%s'\r\nfrom [a]"));
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(QueryDialogTest, WhatIsRefusedStaysInTheDialog) {
  returnsRecords = false;
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"mine");
    for (const wchar_t* const sql : {L"DROP TABLE x", L"SELECT * FROM nowhere"}) {
      SetDlgItemTextW(window, kSql, sql);
      confirm(window);
      EXPECT_EQ(textIn(window, kName), L"mine");
      EXPECT_EQ(textIn(window, kSql), sql);
      EXPECT_STREQ(dialog.name.text(), L"mine");
      EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
    }
    const auto seen = takeBoxes();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], says(window, L"Queries must begin with a SELECT keyword!")[0]);
    EXPECT_EQ(seen[1], says(window, L"Query does not return records")[0]);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, TheStoresReasonComesFirst) {
  returnsRecords = false;
  reason = L"There is no table nowhere.";
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"mine");
    SetDlgItemTextW(window, kSql, L"SELECT * FROM nowhere");
    click(window, kCheck);
    confirm(window);
    const auto seen = takeBoxes();
    ASSERT_EQ(seen.size(), 4u);
    for (const std::size_t first : {0u, 2u}) {
      EXPECT_EQ(seen[first], says(window, reason)[0]);
      EXPECT_EQ(seen[first + 1], says(window, L"Query does not return records")[0]);
    }
    cancel(window);
  });
}

TEST_F(QueryDialogTest, HelpShowsTheTopicOnQueriesAndStays) {
  show([&](HWND window) {
    click(window, kHelp);
    EXPECT_THAT(helpTopics, ElementsAre(L"\\Windows\\file:Quivane.htm#Queries"));
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(currentDialog, window);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, EnterConfirmsOutsideTheSql) {
  dialog.name = L"q";
  EXPECT_EQ(show([&](HWND window) { press(window, WM_KEYDOWN, VK_RETURN); }), IDOK);
}

TEST_F(QueryDialogTest, EnterInTheSqlBreaksTheLine) {
  show([&](HWND window) {
    SetFocus(GetDlgItem(window, kSql));
    press(window, WM_CHAR, VK_RETURN);
    EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM\r\n");
    cancel(window);
  });
}

TEST_F(QueryDialogTest, EscapeCancelsEverywhere) {
  for (const int id : {kName, kTables, kCheck, kSql}) {
    EXPECT_EQ(show([&](HWND window) {
                SetFocus(GetDlgItem(window, id));
                press(window, WM_KEYDOWN, VK_ESCAPE);
              }),
              IDCANCEL)
        << id;
  }
}

TEST_F(QueryDialogTest, AccessKeysReachTheirControls) {
  show([&](HWND window) {
    pressAccessKey(window, L't');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kTables));
    pressAccessKey(window, L'f');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kFields));
    pressAccessKey(window, L'n');
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    pressAccessKey(window, L'h');
    EXPECT_EQ(helpTopics.size(), 1u);
    pressAccessKey(window, L'c');
    EXPECT_EQ(takeBoxes(), says(window, L"Query is OK"));
    cancel(window);
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
              confirm(window);
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
  fields[L"Select * from [" + table + L"]"] = {field};
  show([&](HWND window) {
    EXPECT_EQ(selected(window, kTables), table);
    EXPECT_EQ(selected(window, kFields), field);
    SetDlgItemTextW(window, kSql, L"");
    click(window, kInsertTable);
    EXPECT_EQ(textIn(window, kSql), L"[" + table + L"]");
    SetDlgItemTextW(window, kSql, L"");
    click(window, kInsertField);
    EXPECT_EQ(textIn(window, kSql), field);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, RunningOutOfMemoryKeepsWhatWasTyped) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"q");
    outOfMemory = true;
    for (const int id : {IDOK, kCheck}) {
      SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
      EXPECT_EQ(textIn(window, kSql), L"SELECT * FROM");
    }
    EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
    cancel(window);
  });
}

TEST_F(QueryDialogTest, WithoutTheMemoryToOpenItSaysSo) {
  outOfMemory = true;
  EXPECT_EQ(show([](HWND) {}), IDCANCEL);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(QueryDialogTest, AHundredOpeningsLeaveNothingBehind) {
  leavesNothingBehind([&] { return dialog.run(top()); }, [&](HWND window) { cancel(window); });
}

}  // namespace
