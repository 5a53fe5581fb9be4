// How a file that is to be imported is shown, and what of it can be chosen.
#include "tests/ui/dialogs/exchange_fixture.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class ImportDialogTest : public ExchangeDialogTest {
 protected:
  /// Runs the dialog of the file; dialogs that it opens are answered by `inMore`.
  INT_PTR run(ImportFile& import, const Step& step, const Step& inMore = nullptr) {
    ImportDialog dialog(import, tables());
    const DialogScript script([&](HWND window) {
      if (GetDlgItem(window, IDC_IMPORT_FORMAT) != nullptr) {
        inMore(window);
        DialogScript::close(window, IDCANCEL);
        return;
      }
      step(window);
      DialogScript::close(window, IDCANCEL);
    });
    return dialog.run(frame());
  }
  static std::wstring doubt(HWND dialog) { return textOf(dialog, IDC_IMPORT_DOUBT); }
};

TEST_F(ImportDialogTest, AFileIsShownAsItWasFoundOut) {
  run(open("Name;Zip\r\nAda;007\r\n\"Bo; the \"\"second\"\"\";12\r\n"), [](HWND dialog) {
    EXPECT_EQ(textOf(dialog, IDC_IMPORT_TABLE), L"guests");
    EXPECT_THAT(entries(dialog, IDC_IMPORT_TABLE), ElementsAre(L"People", L"Keyed", L"Words"));
    EXPECT_EQ(selectedEntry(dialog, IDC_IMPORT_ENCODING), L"UTF-8");
    EXPECT_EQ(selectedEntry(dialog, IDC_IMPORT_DELIMITER), L"Semicolon");
    EXPECT_TRUE(isChecked(dialog, IDC_IMPORT_HEADER));
    EXPECT_FALSE(isChecked(dialog, IDC_IMPORT_REPLACE));
    EXPECT_FALSE(isChecked(dialog, IDC_IMPORT_KEEP_GOOD));
    EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tText", L"Zip\tText"));
    EXPECT_THAT(preview(dialog), ElementsAre(L"Name|Zip", L"Ada|007", L"Bo; the \"second\"|12"));
    EXPECT_EQ(GetFocus(), GetWindow(GetDlgItem(dialog, IDC_IMPORT_TABLE), GW_CHILD));
  });
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(ImportDialogTest, AChosenTableIsMeantByItsNameAndNotByWhatTheListShowsOfIt) {
  // The mark of an accent at the beginning is shown as U+FFFD.
  NameList names;
  names.append(L"People");
  names.append(L"\u0301x");
  ImportFile& import = open("Name,Age\nAda,3\n");
  ImportDialog dialog(import, names);
  const DialogScript script([&](HWND window) {
    chooseTable(window, L"\uFFFDx");
    EXPECT_EQ(textOf(window, IDC_IMPORT_TABLE), L"\uFFFDx");
    press(window, IDOK);
    DialogScript::close(window, IDCANCEL);
  });
  EXPECT_EQ(dialog.run(frame()), IDOK);
  EXPECT_STREQ(import.table().text(), L"\u0301x");
}

TEST_F(ImportDialogTest, ThePreviewShowsTheFirstTwentyRecords) {
  std::string content = "n\n";
  for (int i = 1; i <= 30; ++i) content += std::to_string(i) + "\n";
  run(open(content), [](HWND dialog) {
    EXPECT_THAT(preview(dialog), SizeIs(21));
    EXPECT_EQ(preview(dialog).back(), L"20");
  });
}

TEST_F(ImportDialogTest, AnotherEncodingReadsTheFileAnew) {
  run(open("Name,Age\nM\xC3\xBCller,3\n"), [](HWND dialog) {
    EXPECT_THAT(preview(dialog), ElementsAre(L"Name|Age", L"M\u00fcller|3"));
    choose(dialog, IDC_IMPORT_ENCODING, L"Windows-1252");
    EXPECT_THAT(preview(dialog), ElementsAre(L"Name|Age", L"M\u00c3\u00bcller|3"));
    EXPECT_EQ(doubt(dialog), L"") << "the user has chosen it";
  });
}

TEST_F(ImportDialogTest, ABareEncodingIsFoundOutAndInDoubt) {
  run(open("Name,Age\nM\xFCller,3\n"), [](HWND dialog) {
    EXPECT_EQ(selectedEntry(dialog, IDC_IMPORT_ENCODING), L"Windows-1252");
    EXPECT_THAT(preview(dialog), ElementsAre(L"Name|Age", L"M\u00fcller|3"));
    EXPECT_EQ(doubt(dialog), L"Check the letters!");
  });
  run(open("\xEF\xBB\xBFName,Age\nM\xC3\xBCller,3\n"), [](HWND dialog) { EXPECT_EQ(doubt(dialog), L""); });
}

TEST_F(ImportDialogTest, AFirstLineThatMayBeARecordIsInDoubt) {
  run(open("Ada,Paris\nBo,Rome\n"), [](HWND dialog) {
    EXPECT_TRUE(isChecked(dialog, IDC_IMPORT_HEADER));
    EXPECT_EQ(doubt(dialog), L"Check the first line!");
    click(dialog, IDC_IMPORT_HEADER);
    EXPECT_FALSE(isChecked(dialog, IDC_IMPORT_HEADER));
    EXPECT_EQ(doubt(dialog), L"");
    EXPECT_THAT(preview(dialog), ElementsAre(L"Field1|Field2", L"Ada|Paris", L"Bo|Rome"));
  });
  run(open("Ada,M\xFCnchen\nBo,Rome\n"),
      [](HWND dialog) { EXPECT_EQ(doubt(dialog), L"Check letters and first line!"); });
  run(open("Name,Age\nAda,3\n"), [](HWND dialog) { EXPECT_EQ(doubt(dialog), L""); });
}

TEST_F(ImportDialogTest, AnotherSeparatorPartsTheFileAnew) {
  run(open("a;b,c\n1;2,3\n"), [](HWND dialog) {
    choose(dialog, IDC_IMPORT_DELIMITER, L"Semicolon");
    EXPECT_THAT(preview(dialog), ElementsAre(L"a|b,c", L"1|2,3"));
    choose(dialog, IDC_IMPORT_DELIMITER, L"Comma");
    EXPECT_THAT(preview(dialog), ElementsAre(L"a;b|c", L"1;2|3"));
    choose(dialog, IDC_IMPORT_DELIMITER, L"Tab");
    EXPECT_THAT(preview(dialog), ElementsAre(L"a;b,c", L"1;2,3"));
  });
}

TEST_F(ImportDialogTest, JsonHasNeitherSeparatorNorHeader) {
  run(open("[{\"a\": 1, \"b\": \"x\"}, {\"a\": 2}]", "things.json"), [](HWND dialog) {
    EXPECT_EQ(textOf(dialog, IDC_IMPORT_TABLE), L"things");
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_IMPORT_DELIMITER)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_IMPORT_HEADER)));
    EXPECT_THAT(columns(dialog), ElementsAre(L"a\tInteger", L"b\tText"));
    EXPECT_THAT(preview(dialog), ElementsAre(L"a|b", L"1|x", L"2|"));
  });
}

TEST_F(ImportDialogTest, ATypeIsChosenForAColumn) {
  ImportFile& import = open("Name,Zip\nAda,12345\n");
  EXPECT_EQ(run(import,
                [](HWND dialog) {
                  SendDlgItemMessageW(dialog, IDC_IMPORT_COLUMNS, LB_SETCURSEL, 1, 0);
                  notify(dialog, IDC_IMPORT_COLUMNS, LBN_SELCHANGE);
                  EXPECT_EQ(selectedEntry(dialog, IDC_IMPORT_TYPE), L"Integer");
                  choose(dialog, IDC_IMPORT_TYPE, L"Text");
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tText", L"Zip\tText"));
                  choose(dialog, IDC_IMPORT_TYPE, L"(left out)");
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tText", L"Zip\t(left out)"));
                  press(dialog, IDOK);
                }),
            IDOK);
}

// ---- The table

TEST_F(ImportDialogTest, AChosenTablesTypesRule) {
  run(open("Name,Age\nAda,3\n"), [](HWND dialog) {
    chooseTable(dialog, L"People");
    EXPECT_EQ(textOf(dialog, IDC_IMPORT_TABLE), L"People");
    EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tVarChar(20)", L"Age\tINTEGER"));
  });
}

TEST_F(ImportDialogTest, ATypedNameTakesThePlanOfTheFormerTableAway) {
  run(open("Name,Age\nAda,3\n"), [](HWND dialog) {
    typeTable(dialog, L"Peop");
    EXPECT_THAT(columns(dialog), IsEmpty());
    EXPECT_THAT(preview(dialog), ElementsAre(L""));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_IMPORT_TYPE)));
    typeTable(dialog, L"People");
    leaveTableFor(dialog, IDC_IMPORT_COLUMNS);
    EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tVarChar(20)", L"Age\tINTEGER"));
    EXPECT_THAT(preview(dialog), ElementsAre(L"Name|Age", L"Ada|3"));
  });
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(ImportDialogTest, ANameThatCantBeOneIsToldWhenItIsLeft) {
  run(open("Name,Age\nAda,3\n"), [this](HWND dialog) {
    typeTable(dialog, L"a[b");
    EXPECT_THAT(takeBoxes(), IsEmpty());
    leaveTableFor(dialog, IDCANCEL);
    EXPECT_THAT(takeBoxes(), IsEmpty()) << "who leaves the dialog is not held up";
    leaveTableFor(dialog, IDC_IMPORT_ENCODING);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, L"A table can't be called \"a[b\".")));
    choose(dialog, IDC_IMPORT_ENCODING, L"Windows-1252");
    EXPECT_THAT(columns(dialog), IsEmpty()) << "nor does another choice bring the former plan back";
    EXPECT_THAT(takeBoxes(), SizeIs(1));
  });
}

TEST_F(ImportDialogTest, ATypedTableThatIsThereIsShownBeforeItIsChanged) {
  ImportFile& import = open("Name,Age\nAda,3\n");
  EXPECT_EQ(run(import,
                [](HWND dialog) {
                  typeTable(dialog, L"People");
                  press(dialog, IDOK);
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tVarChar(20)", L"Age\tINTEGER"));
                  press(dialog, IDOK);
                }),
            IDOK);
  EXPECT_STREQ(import.table().text(), L"People");
}

TEST_F(ImportDialogTest, FromOneTableThatIsThereToAnotherToo) {
  ImportFile& import = open("Name,Age\nAda,3\n", "People.csv");
  EXPECT_EQ(run(import,
                [](HWND dialog) {
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tVarChar(20)", L"Age\tINTEGER"));
                  typeTable(dialog, L"Keyed");
                  press(dialog, IDOK);
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tTEXT", L"Age\t(left out)"));
                }),
            IDCANCEL);
}

TEST_F(ImportDialogTest, AnotherNameOfANewTableGoesAtOnce) {
  ImportFile& import = open("Name,Age\nAda,3\n");
  EXPECT_EQ(run(import,
                [](HWND dialog) {
                  typeTable(dialog, L"Visitors");
                  press(dialog, IDOK);
                }),
            IDOK);
  EXPECT_STREQ(import.table().text(), L"Visitors");
}

TEST_F(ImportDialogTest, WithoutANameNothingIsStored) {
  ImportFile& import = open("Name,Age\nAda,3\n");
  EXPECT_EQ(run(import,
                [this](HWND dialog) {
                  typeTable(dialog, L"");
                  press(dialog, IDOK);
                  EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, L"Please enter a table name!")));
                }),
            IDCANCEL);
}

// ---- Replacing, and what is chosen seldom

TEST_F(ImportDialogTest, RecordsAreReplacedByThePrimaryKey) {
  ImportFile& import = open("Id,Name\n1,Ada\n");
  EXPECT_EQ(run(import,
                [](HWND dialog) {
                  chooseTable(dialog, L"Keyed");
                  click(dialog, IDC_IMPORT_REPLACE);
                  press(dialog, IDOK);
                }),
            IDOK);
  EXPECT_TRUE(import.replaces());
}

TEST_F(ImportDialogTest, WithoutAKeyTheTickIsTakenBack) {
  run(open("Name,Age\nAda,3\n"), [this](HWND dialog) {
    chooseTable(dialog, L"People");
    click(dialog, IDC_IMPORT_REPLACE);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(
                                 dialog, L"The table has no primary key: say which columns are the key.")));
    EXPECT_FALSE(isChecked(dialog, IDC_IMPORT_REPLACE));
    EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tVarChar(20)", L"Age\tINTEGER"));
  });
}

TEST_F(ImportDialogTest, AnotherKeyIsChosen) {
  ImportFile& import = open("Name,Age\nAda,3\n");
  EXPECT_EQ(run(
                import,
                [](HWND dialog) {
                  chooseTable(dialog, L"People");
                  press(dialog, IDC_IMPORT_MORE);
                  click(dialog, IDC_IMPORT_REPLACE);
                  EXPECT_TRUE(isChecked(dialog, IDC_IMPORT_REPLACE));
                  press(dialog, IDOK);
                },
                [](HWND more) {
                  EXPECT_THAT(listed(more, IDC_IMPORT_KEY), ElementsAre(L"Name", L"Age"));
                  SendDlgItemMessageW(more, IDC_IMPORT_KEY, LB_SETSEL, TRUE, 0);
                  press(more, IDOK);
                }),
            IDOK);
  EXPECT_TRUE(import.isKey(0));
  EXPECT_FALSE(import.isKey(1));
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(ImportDialogTest, ThePrimaryKeyIsMarkedAtFirst) {
  run(
      open("Id,Name\n1,Ada\n"),
      [](HWND dialog) {
        chooseTable(dialog, L"Keyed");
        press(dialog, IDC_IMPORT_MORE);
      },
      [](HWND more) {
        EXPECT_GT(SendDlgItemMessageW(more, IDC_IMPORT_KEY, LB_GETSEL, 0, 0), 0);
        EXPECT_EQ(SendDlgItemMessageW(more, IDC_IMPORT_KEY, LB_GETSEL, 1, 0), 0);
      });
}

TEST_F(ImportDialogTest, ANewTableHasNoKeyToChoose) {
  run(
      open("Id,Name\n1,Ada\n"), [](HWND dialog) { press(dialog, IDC_IMPORT_MORE); },
      [](HWND more) {
        EXPECT_EQ(textOf(more), L"Import Details");
        EXPECT_EQ(selectedEntry(more, IDC_IMPORT_FORMAT), L"CSV");
        EXPECT_THAT(listed(more, IDC_IMPORT_KEY), IsEmpty());
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(more, IDC_IMPORT_KEY)));
      });
}

TEST_F(ImportDialogTest, ATextIsTakenForNoValue) {
  ImportFile& import = open("Name,Age\nAda,NULL\nBo,4\n");
  EXPECT_EQ(run(
                import,
                [](HWND dialog) {
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tText", L"Age\tText"));
                  press(dialog, IDC_IMPORT_MORE);
                  EXPECT_THAT(columns(dialog), ElementsAre(L"Name\tText", L"Age\tInteger"));
                  press(dialog, IDOK);
                },
                [](HWND more) {
                  SetDlgItemTextW(more, IDC_IMPORT_NULL, L"NULL");
                  press(more, IDOK);
                }),
            IDOK);
  ImportCounts counts;
  ASSERT_TRUE(import.run(false, counts));
  EXPECT_EQ(counts.added, 2);
}

TEST_F(ImportDialogTest, AFormatThatTheFileIsNotInIsTakenBack) {
  run(
      open("Name,Age\nAda,3\n"),
      [this](HWND dialog) {
        press(dialog, IDC_IMPORT_MORE);
        EXPECT_THAT(takeBoxes(), SizeIs(1));
        EXPECT_THAT(preview(dialog), ElementsAre(L"Name|Age", L"Ada|3"));
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, IDC_IMPORT_DELIMITER)));
      },
      [](HWND more) {
        choose(more, IDC_IMPORT_FORMAT, L"JSON");
        press(more, IDOK);
      });
}

TEST_F(ImportDialogTest, JsonCanBeReadAsSeparatedValues) {
  run(
      open("{\"a\",\"b\"}\n", "odd.txt"),
      [](HWND dialog) {
        press(dialog, IDC_IMPORT_MORE);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, IDC_IMPORT_DELIMITER)));
      },
      [](HWND more) {
        choose(more, IDC_IMPORT_FORMAT, L"CSV");
        press(more, IDOK);
      });
}

// ---- The windows

TEST_F(ImportDialogTest, TheControlsStandApartWithKeysOfTheirOwn) {
  const auto look = [](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_IMPORT_DOUBT, L"Check letters and first line!");
    expectFullScreen(dialog);
    expectControlsApart(dialog);
    expectTextsFit(dialog);
    expectColors(dialog);
    expectAccessKeysApart(dialog);
  };
  run(
      open("Name,Age\nAda,3\n"),
      [&](HWND dialog) {
        look(dialog);
        press(dialog, IDC_IMPORT_MORE);
      },
      look);
}

TEST_F(ImportDialogTest, NothingIsLeftBehind) {
  ImportFile& import = open("Name,Age\nAda,3\n");
  leavesNothingBehind([&] { run(import, [](HWND) {}); });
}

}  // namespace
