// The result of an import that left records out, and the choice of what is exported.
#include "dialogs/exchange/export_dialog.h"
#include "dialogs/exchange/export_ids.h"
#include "dialogs/exchange/import_result.h"
#include "tests/ui/dialogs/exchange_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// ---- What was left out

class ImportResultTest : public ExchangeDialogTest {
 protected:
  void show(const Step& step) {
    ImportResultDialog dialog(
        L"Table 'People': 2 records added, 1 left out.", import_->rejected(), leftOut_,
        {[this] { return chosen_; }, [this](const String& path) { return import_->saveRejected(path); }});
    inDialog(
        [&] {
          dialog.run(frame());
          return INT_PTR{0};
        },
        step);
  }
  void importInto(const wchar_t* table, const std::string& content) {
    import_ = &open(content);
    import_->setTable(table);
    ASSERT_TRUE(import_->examine());
    ImportCounts counts;
    ASSERT_TRUE(import_->run(true, counts));
    leftOut_ = counts.leftOut;
  }

  // NOLINTBEGIN(misc-non-private-member-variables-in-classes)
  ImportFile* import_ = nullptr;
  std::int64_t leftOut_ = 0;
  std::optional<String> chosen_;
  // NOLINTEND(misc-non-private-member-variables-in-classes)
};

TEST_F(ImportResultTest, EachIsNamedByItsLine) {
  importInto(L"People", "Name,Age\nAda,3\nBo,old\nCy,4\n");
  show([](HWND dialog) {
    EXPECT_EQ(textOf(dialog, IDC_IMPORT_RESULT_TEXT), L"Table 'People': 2 records added, 1 left out.");
    const std::vector<std::wstring> lines = listed(dialog, IDC_IMPORT_REJECTS);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].substr(0, 17), L"line 3: Age: \"old");
    expectControlsApart(dialog);
    expectTextsFit(dialog);
    expectAccessKeysApart(dialog);
  });
}

TEST_F(ImportResultTest, TheListIsSavedWithTheFieldsAsTheyWere) {
  importInto(L"People", "Name,Age\nAda,3\n\"B\xC3\xB6 \"\"x\"\"\",old\nCy\n");
  write("what is replaced", "list.csv");
  chosen_ = String(file("list.csv").c_str());
  show([this](HWND dialog) {
    press(dialog, IDC_IMPORT_SAVE);
    EXPECT_THAT(takeBoxes(),
                ElementsAre(message(dialog, L"The list was saved in\n" + file("list.csv").wstring())));
  });
  EXPECT_EQ(
      testsupport::contentOf(file("list.csv")),
      "\xEF\xBB\xBFLine,Reason,Fields\r\n"
      "3,\"Age: \"\"old\"\" is no whole number that the column holds\",\"B\xC3\xB6 \"\"x\"\"\",\"old\"\r\n"
      "4,\"there is 1 field instead of 2\",\"Cy\"\r\n");
}

TEST_F(ImportResultTest, TheListHasThoseTooThatAreNotShown) {
  std::string content = "Name,Age\n";
  for (int i = 0; i < 1500; ++i) content += "x,y\n";
  importInto(L"People", content);
  chosen_ = String(file("list.csv").c_str());
  show([](HWND dialog) {
    const std::vector<std::wstring> lines = listed(dialog, IDC_IMPORT_REJECTS);
    ASSERT_EQ(lines.size(), 1001u);
    EXPECT_EQ(lines.back(), L"... and 500 more");
    press(dialog, IDC_IMPORT_SAVE);
    press(dialog, IDC_IMPORT_SAVE);
  });
  const std::string saved = testsupport::contentOf(file("list.csv"));
  EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 1501);
}

TEST_F(ImportResultTest, NeitherTheDatabaseNorTheImportedFileIsReplaced) {
  importInto(L"People", "Name,Age\nBo,old\n");
  for (const char* const name : {"exchange.cdb", "guests.csv"}) {
    chosen_ = String(file(name).c_str());
    show([this](HWND dialog) {
      press(dialog, IDC_IMPORT_SAVE);
      const std::vector<Box> boxes = takeBoxes();
      ASSERT_EQ(boxes.size(), 1u);
      EXPECT_EQ(boxes[0].text, std::wstring(L"The list could not be saved.\nThe file ") + chosen_->text() +
                                   L" is in use and is not replaced.");
    });
  }
  EXPECT_EQ(testsupport::contentOf(file("guests.csv")), "Name,Age\nBo,old\n");
}

TEST_F(ImportResultTest, WhoChoosesNoFileHasSavedNothing) {
  importInto(L"People", "Name,Age\nBo,old\n");
  show([this](HWND dialog) {
    press(dialog, IDC_IMPORT_SAVE);
    EXPECT_THAT(takeBoxes(), IsEmpty());
  });
}

// ---- What is exported

class ExportDialogTest : public ExchangeDialogTest {
 protected:
  ExportDialogTest() {
    for (const wchar_t* const name : {L"Books (in use)", L"Members", L"Old books (query)"})
      sources_.append(name);
  }
  NameList sources_;  // NOLINT(misc-non-private-member-variables-in-classes)
};

TEST_F(ExportDialogTest, TheFirstIsChosenUntilAnotherOneIs) {
  ExportDialog dialog(sources_);
  EXPECT_EQ(inDialog([&] { return dialog.run(frame()); },
                     [](HWND window) {
                       EXPECT_EQ(textOf(window), L"Export");
                       EXPECT_THAT(listed(window, IDC_EXPORT_SOURCES),
                                   ElementsAre(L"Books (in use)", L"Members", L"Old books (query)"));
                       EXPECT_EQ(GetFocus(), GetDlgItem(window, IDC_EXPORT_SOURCES));
                       expectFullScreen(window);
                       expectControlsApart(window);
                       expectColors(window);
                       expectAccessKeysApart(window);
                       press(window, IDOK);
                     }),
            IDOK);
  EXPECT_EQ(dialog.chosen, 0u);
}

TEST_F(ExportDialogTest, ADoubleClickChooses) {
  ExportDialog dialog(sources_);
  EXPECT_EQ(inDialog([&] { return dialog.run(frame()); },
                     [](HWND window) {
                       SendDlgItemMessageW(window, IDC_EXPORT_SOURCES, LB_SETCURSEL, 2, 0);
                       notify(window, IDC_EXPORT_SOURCES, LBN_DBLCLK);
                     }),
            IDOK);
  EXPECT_EQ(dialog.chosen, 2u);
}

TEST_F(ExportDialogTest, EscChoosesNothing) {
  ExportDialog dialog(sources_);
  EXPECT_EQ(inDialog([&] { return dialog.run(frame()); }, [](HWND) {}), IDCANCEL);
}

}  // namespace
