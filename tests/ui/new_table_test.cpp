#include "dialogs/new_table.h"

#include <commctrl.h>

#include <array>
#include <functional>
#include <string>

#include "data/database.h"
#include "dialogs/new_field_ids.h"
#include "dialogs/new_table_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/support/paths.h"
#include "tests/ui/modal_dialog_fixture.h"
#include "tests/ui/test_database.h"
#include "views/current_dialog.h"
#include "views/list_view.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Name and type of a row.
using Row = std::pair<std::wstring, std::wstring>;

class NewTableTest : public ModalDialogFixture {
 protected:
  /// Runs the dialog; `inTable` is done once it stands. New Field dialogs that it opens are answered
  /// with what `nextField` names, and cancelled when it names nothing.
  INT_PTR run(const std::function<void(HWND dialog)>& inTable) {
    DialogScript script([&](HWND dialog) {
      if (::textOf(dialog) == L"New Field") {
        answerField(dialog);
      } else {
        inTable(dialog);
      }
    });
    return table_.run(owner());
  }

  void add(HWND dialog, const wchar_t* name, int type) {
    nextName_ = name;
    nextType_ = type;
    press(dialog, IDC_NEW_TABLE_ADD);
  }
  /// Fields a, b and so on.
  void addLetters(HWND dialog, int count) {
    for (int i = 0; i < count; ++i) add(dialog, std::wstring(1, static_cast<wchar_t>(L'a' + i)).c_str(), i);
  }
  static void setName(HWND dialog, const std::wstring& name) {
    SetDlgItemTextW(dialog, IDC_NEW_TABLE_NAME, name.c_str());
  }
  /// Confirms a design of one field with that name; it is to be refused so.
  void expectRefused(const std::wstring& name, const std::wstring& reason) {
    EXPECT_EQ(run([&](HWND dialog) {
                addLetters(dialog, 1);
                setName(dialog, name);
                SetFocus(list(dialog));
                press(dialog, IDOK);
                EXPECT_THAT(refusals(dialog), ElementsAre(Refusal{reason, L"Quivane"}));
                EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_NAME), name);
                EXPECT_THAT(names(dialog), ElementsAre(L"a"));
                EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_TABLE_NAME));
                press(dialog, IDCANCEL);
              }),
              IDCANCEL);
    EXPECT_TRUE(table_.name.isEmpty());
    EXPECT_TRUE(table_.columns.isEmpty());
  }
  void expectTaken(const std::wstring& name) {
    EXPECT_EQ(run([&](HWND dialog) {
                if (list(dialog) && listview::itemCount(list(dialog)) == 0) addLetters(dialog, 1);
                setName(dialog, name);
                press(dialog, IDOK);
                EXPECT_THAT(refusals(dialog), IsEmpty());
              }),
              IDOK);
    EXPECT_EQ(table_.name.text(), name);
  }

  static HWND list(HWND dialog) { return GetDlgItem(dialog, IDC_NEW_TABLE_FIELDS); }
  static void select(HWND dialog, int row) {
    listview::setItemState(list(dialog), row, LVIS_SELECTED, LVIS_SELECTED);
  }
  static int selected(HWND dialog) {
    return listview::nextItem(list(dialog), listview::kFirstOfAll, LVNI_SELECTED);
  }
  static std::wstring cell(HWND dialog, int row, int column) {
    std::array<wchar_t, 512> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(list(dialog), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text.data();
  }
  static std::vector<Row> rows(HWND dialog) {
    std::vector<Row> all;
    for (int row = 0; row < listview::itemCount(list(dialog)); ++row) {
      all.emplace_back(cell(dialog, row, 0), cell(dialog, row, 1));
    }
    return all;
  }
  static std::vector<std::wstring> names(HWND dialog) {
    std::vector<std::wstring> all;
    for (const Row& row : rows(dialog)) all.push_back(row.first);
    return all;
  }

  NameList tables_;
  NewTableDialog table_{tables_};

 private:
  void answerField(HWND dialog) {
    if (nextName_.empty()) {
      press(dialog, IDCANCEL);
      return;
    }
    SetDlgItemTextW(dialog, IDC_NEW_FIELD_NAME, nextName_.c_str());
    SendDlgItemMessageW(dialog, IDC_NEW_FIELD_TYPE, CB_SETCURSEL, static_cast<WPARAM>(nextType_), 0);
    press(dialog, IDOK);
  }

  std::wstring nextName_;
  int nextType_ = 0;
};

TEST_F(NewTableTest, ItOpensEmptyAndFullScreen) {
  EXPECT_EQ(run([&](HWND dialog) {
              EXPECT_EQ(::textOf(dialog), L"New Table");
              EXPECT_EQ(GetParent(dialog), owner());
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

TEST_F(NewTableTest, AFieldIsAppendedWithTheTypeAsTheStatementSpellsIt) {
  run([&](HWND dialog) {
    add(dialog, L"Id", 4);
    add(dialog, L"Full name", 5);
    EXPECT_THAT(rows(dialog), ElementsAre(Row{L"Id", L"Integer"}, Row{L"Full name", L"Varchar (255)"}));
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
    EXPECT_THAT(refusals(dialog), IsEmpty());
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, UpAndDownMoveTheSelectedRow) {
  run([&](HWND dialog) {
    addLetters(dialog, 3);
    select(dialog, 2);
    SetFocus(GetDlgItem(dialog, IDC_NEW_TABLE_UP));
    press(dialog, IDC_NEW_TABLE_UP);
    EXPECT_THAT(rows(dialog), ElementsAre(Row{L"a", L"Bit"}, Row{L"c", L"Float"}, Row{L"b", L"Datetime"}));
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
              EXPECT_THAT(refusals(dialog), IsEmpty());
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
              EXPECT_THAT(rows(dialog), ElementsAre(Row{longName, L"Integer"}, Row{L"Born", L"Datetime"}));
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

TEST_F(NewTableTest, AnEmptyNameIsRefused) {
  expectRefused(L"", L"Please enter a table name!");
}

TEST_F(NewTableTest, ThePlainApostropheIsAcceptedAndTheTypographicOneRefused) {
  expectTaken(L"Customer's");
  table_.name.clear();
  table_.fields.clear();
  table_.columns.clear();
  expectRefused(L"Customer\u2019s", L"Table name cannot use characters:\n` . ! \u2019 [ ] \" * ?");
}

TEST_F(NewTableTest, ATableOfThatNameInAnotherCaseIsRefused) {
  tables_.append(L"ORDERS");
  expectRefused(L"orders", L"Table orders already exists!\nChoose a different name");
}

TEST_F(NewTableTest, ANameWithPercentSignsIsShownAsTyped) {
  tables_.append(L"100%S%N");
  expectRefused(L"100%s%n", L"Table 100%s%n already exists!\nChoose a different name");
}

TEST_F(NewTableTest, WithoutFieldsItIsRefused) {
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"People");
              press(dialog, IDOK);
              EXPECT_THAT(refusals(dialog), ElementsAre(Refusal{L"Please define fields!", L"Quivane"}));
              press(dialog, IDCANCEL);
            }),
            IDCANCEL);
}

TEST_F(NewTableTest, TheNameIsLookedAtBeforeTheFields) {
  tables_.append(L"T");
  run([&](HWND dialog) {
    for (const wchar_t* name : {L"", L"a*", L"t"}) {
      setName(dialog, name);
      press(dialog, IDOK);
    }
    const std::vector<Refusal> seen = refusals(dialog);
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0].text, L"Please enter a table name!");
    EXPECT_EQ(seen[1].text.substr(0, 33), L"Table name cannot use characters:");
    EXPECT_EQ(seen[2].text, L"Table t already exists!\nChoose a different name");
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, ASingleBlankIsAName) {
  expectTaken(L" ");
}

TEST_F(NewTableTest, NamesOfAllKindsPassUnchanged) {
  expectTaken(std::wstring(300, L'n'));
  expectTaken(L"\u05e9\u05dc\u05d5\u05dd 100 %s \U0001F600");
  expectTaken(std::wstring(40000, L'x'));
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

TEST_F(NewTableTest, TheInputPanelIsUpWhileItIsOpen) {
  setPanelPolicy(kPanelAlways);
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
  setPanelPolicy(kPanelAlways);
  for (const int end : {IDOK, IDCANCEL}) {
    SHSipPreference(owner(), SIP_UP);
    run([&](HWND dialog) {
      setName(dialog, L"T");
      addLetters(dialog, 1);
      press(dialog, end);
    });
    EXPECT_TRUE(isPanelUp());
  }
}

TEST_F(NewTableTest, NothingLiesUnderTheInputPanel) {
  setPanelPolicy(kPanelAlways);
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
                EXPECT_THAT(cutLabels(dialog), IsEmpty());
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

TEST_F(NewTableTest, AHundredOpeningsLeaveNothingBehind) {
  setPanelPolicy(kPanelAlways);
  const auto designOnce = [&] {
    table_.fields.clear();
    run([&](HWND dialog) {
      setName(dialog, L"T");
      addLetters(dialog, 1);
      press(dialog, IDOK);
    });
  };
  designOnce();
  const Alive before = alive();
  for (int i = 0; i < 100; ++i) designOnce();
  dispatchPosted();
  EXPECT_EQ(alive(), before);
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
