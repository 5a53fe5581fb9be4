// Stories of records that come from other files and go into them.
#include <cstring>

#include "dialogs/exchange/export_ids.h"
#include "dialogs/exchange/import_ids.h"
#include "resources/command_ids.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"
#include "views/form/form_ids.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr int kTablesPage = 0;
constexpr int kFormPage = 1;
constexpr int kListPage = 2;

class ExchangeStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    makeDatabase(path(), {L"CREATE TABLE 'People' (Name VarChar(20), Age Integer)",
                          L"INSERT INTO People VALUES ('Ada', 36)"});
  }

  std::filesystem::path write(const std::string& content, std::string_view name = "guests.csv") {
    testsupport::writeFile(file(name), content);
    return file(name);
  }
  /// Chooses what is to be exported.
  static void beginExport(User& user, int source) {
    user.chooseDesktop(ID_EXPORT);
    const HWND dialog = user.dialog(L"Export");
    user.pick(dialog, IDC_EXPORT_SOURCES, source);
    user.accept(dialog);
  }
  /// The Import dialog of a file, open.
  HWND beginImport(User& user, const std::filesystem::path& file) {
    user.chooseDesktop(ID_IMPORT);
    user.chooseFile(file);
    return importDialog(user);
  }
  HWND importDialog(User& user) const {
    HWND found = nullptr;
    // The file dialog has the same title.
    EXPECT_TRUE(remote::waitUntil([&] {
      found = remote::dialog(program().processId(), L"Import");
      return found != nullptr && GetDlgItem(found, IDC_IMPORT_COLUMNS) != nullptr;
    }));
    return user.dialog(L"Import");
  }
  static std::wstring clipboard() {
    std::wstring text;
    if (!OpenClipboard(nullptr)) return text;
    const HANDLE held = GetClipboardData(CF_UNICODETEXT);
    if (const auto* const place = held ? static_cast<const wchar_t*>(GlobalLock(held)) : nullptr) {
      text = place;
      GlobalUnlock(held);
    }
    CloseClipboard();
    return text;
  }
  /// The line that tells how far it is, once it begins so.
  HWND awaitProgress(const wchar_t* beginning) {
    HWND line = nullptr;
    remote::waitUntil([&] {
      line = nullptr;
      while ((line = FindWindowExW(nullptr, line, L"Static", nullptr)) != nullptr) {
        if (remote::processOf(line) == program().processId() && remote::text(line).starts_with(beginning))
          break;
      }
      return line != nullptr;
    });
    return line;
  }
  /// False as long as another program has it open.
  static bool putOnClipboard(const std::wstring& text) {
    if (!OpenClipboard(nullptr)) return false;
    EmptyClipboard();
    const std::size_t length = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, length);
    std::memcpy(GlobalLock(memory), text.c_str(), length);
    GlobalUnlock(memory);
    const bool isPut = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    CloseClipboard();
    return isPut;
  }
  std::vector<std::wstring> columns(HWND dialog) const {
    return entries(GetDlgItem(dialog, IDC_IMPORT_COLUMNS));
  }
  static std::vector<std::wstring> entries(HWND list) {
    std::vector<std::wstring> all;
    const auto count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
      wchar_t text[256] = L"";
      SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      all.emplace_back(text);
    }
    return all;
  }
};

TEST_P(ExchangeStory, WhoExportsNothingFromTheListGoesOnThereWithTheKeyboard) {
  runStatements(path(), {L"INSERT INTO People VALUES ('Bo', 4)"});
  User& user = start();
  user.showPage(kFormPage);
  user.fillEditor(kFirstTextEditorId, L"Grace");
  user.showPage(kListPage);
  user.pickItem(0);
  user.chooseDesktop(ID_EXPORT);
  user.leave(user.dialog(L"Export"));
  const HWND grid = remote::recordGrid(user.main());
  EXPECT_TRUE(remote::waitUntil([&] { return remote::focus(user.main()) == grid; }));
  userinput::press(VK_DOWN);
  EXPECT_TRUE(remote::waitUntil([&] { return remote::selectedItem(grid) == 1; }));
  end();
}

TEST_P(ExchangeStory, ATableIsExportedAndImportedAgain) {
  User& user = start();
  beginExport(user, 0);
  user.chooseFile(file("people.csv"));
  user.answer(L"Quivane", L"1 record exported as CSV to\n" + file("people.csv").wstring(), IDOK);
  EXPECT_EQ(testsupport::contentOf(file("people.csv")), "\xEF\xBB\xBFName,Age\r\nAda,36\r\n");
  const HWND import = beginImport(user, file("people.csv"));
  EXPECT_THAT(columns(import), ElementsAre(L"Name\tVarChar(20)", L"Age\tINTEGER"));
  user.accept(import);
  user.answer(L"Quivane", L"Table 'people': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Name || Age FROM People"), ElementsAre("Ada36", "Ada36"));
}

TEST_P(ExchangeStory, AnotherTypeAndTableAreChosen) {
  User& user = start();
  const HWND import = beginImport(user, write("Name;Zip\nBo;12345\n"));
  EXPECT_THAT(columns(import), ElementsAre(L"Name\tText", L"Zip\tInteger"));
  user.pick(import, IDC_IMPORT_COLUMNS, 1);
  user.pick(import, IDC_IMPORT_TYPE, 0);
  EXPECT_THAT(columns(import), ElementsAre(L"Name\tText", L"Zip\tText"));
  user.fill(import, IDC_IMPORT_TABLE, L"Visitors");
  user.accept(import);
  user.answer(L"Quivane", L"Table 'Visitors': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Name || typeof(Zip) FROM Visitors"), ElementsAre("Botext"));
}

TEST_P(ExchangeStory, WhatCannotBeTakenIsShownAndTheGoodOnesAreKeptThen) {
  User& user = start();
  user.showPage(kListPage);
  const HWND grid = remote::recordGrid(user.main());
  HWND import = beginImport(user, write("Name,Age\nBo,old\nCy,3\n", "people.csv"));
  user.accept(import);
  HWND result = user.dialog(L"Import");
  EXPECT_EQ(remote::text(GetDlgItem(result, IDC_IMPORT_RESULT_TEXT)),
            L"1 record can't be taken, so nothing was imported.");
  ASSERT_EQ(entries(GetDlgItem(result, IDC_IMPORT_REJECTS)).size(), 1u);
  EXPECT_THAT(entries(GetDlgItem(result, IDC_IMPORT_REJECTS))[0],
              testing::StartsWith(L"line 2: Age: \"old\""));
  user.accept(result);
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Ada"));
  import = importDialog(user);
  user.press(import, IDC_IMPORT_KEEP_GOOD);
  user.accept(import);
  result = user.dialog(L"Import");
  EXPECT_EQ(remote::text(GetDlgItem(result, IDC_IMPORT_RESULT_TEXT)),
            L"Table 'people': 1 record added, 1 left out.");
  user.accept(result);
  EXPECT_TRUE(remote::waitUntil([&] { return remote::itemCount(grid) == 2; })) << "the grid shows it at once";
  end();
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Ada", "Cy"));
}

TEST_P(ExchangeStory, WhoLeavesTheDialogHasChangedNothing) {
  User& user = start();
  user.leave(beginImport(user, write("Name,Age\nBo,1\n")));
  end();
  EXPECT_THAT(stored("SELECT count(*) FROM sqlite_schema"), ElementsAre("1"));
}

TEST_P(ExchangeStory, WhatIsTypedIsStoredFirst) {
  User& user = start();
  user.showPage(kFormPage);
  user.fillEditor(kFirstTextEditorId, L"Grace");
  beginExport(user, 0);
  user.chooseFile(file("people.json"));
  user.answer(L"Quivane", L"1 record exported as JSON to\n" + file("people.json").wstring(), IDOK);
  EXPECT_THAT(testsupport::contentOf(file("people.json")), HasSubstr("Grace"));
  end();
}

TEST_P(ExchangeStory, AFileOfTheCommandLineGoesIntoTheDatabaseOfTheLastTime) {
  SettingsStore::writeDword(SettingsStore::kOptions, L"OpenLastTableOnStartup", 1);
  start();
  end();
  User& user = launch(write("Name,Age\nBo,1\n"));
  user.accept(importDialog(user));
  user.answer(L"Quivane", L"Table 'guests': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Name FROM guests"), ElementsAre("Bo"));
}

TEST_P(ExchangeStory, ARowIsCopiedAndPastedAsATable) {
  User& user = start();
  user.showPage(kListPage);
  user.pickItem(0);
  if (user.hasMouse()) {
    user.chooseDesktop(ID_ROW_COPY);
  } else {
    userinput::press('C', VK_CONTROL);
  }
  EXPECT_TRUE(remote::waitUntil([] { return clipboard() == L"Ada\t36\r\n"; }));
  user.showPage(kTablesPage);
  user.pickItem(0);
  if (user.hasMouse()) {
    user.chooseDesktop(ID_TABLE_PASTE);
  } else {
    userinput::press('V', VK_CONTROL);
  }
  user.accept(importDialog(user));
  user.answer(L"Quivane", L"Table 'Pasted': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT count(*) FROM Pasted"), ElementsAre("1"));
}

TEST_P(ExchangeStory, AnotherTableThanTheOneInUseIsExported) {
  runStatements(path(), {L"CREATE TABLE Towns (Name Text)", L"INSERT INTO Towns VALUES ('Rome')"});
  User& user = start();
  beginExport(user, 1);
  user.chooseFile(file("towns.html"));
  user.answer(L"Quivane", L"1 record exported as HTML to\n" + file("towns.html").wstring(), IDOK);
  EXPECT_THAT(testsupport::contentOf(file("towns.html")), HasSubstr("Rome"));
  end();
}

TEST_P(ExchangeStory, WhatWasLeftOutIsSavedAsAList) {
  User& user = start();
  const HWND import = beginImport(user, write("Name,Age\nBo,old\nCy,3\n", "people.csv"));
  user.press(import, IDC_IMPORT_KEEP_GOOD);
  user.accept(import);
  const HWND result = user.dialog(L"Import");
  user.press(result, IDC_IMPORT_SAVE);
  user.chooseFile(file("left out.csv"));
  user.answer(L"Quivane", L"The list was saved in\n" + file("left out.csv").wstring(), IDOK);
  user.accept(result);
  EXPECT_THAT(testsupport::contentOf(file("left out.csv")), HasSubstr("2,\"Age: \"\"old\"\" "));
  EXPECT_THAT(testsupport::contentOf(file("left out.csv")), testing::EndsWith(",\"Bo\",\"old\"\r\n"));
  end();
}

TEST_P(ExchangeStory, ATypedTableIsShownBeforeItIsChanged) {
  User& user = start();
  const HWND import = beginImport(user, write("Name,Age\nBo,1\n"));
  user.fill(import, IDC_IMPORT_TABLE, L"People");
  user.press(import, IDC_IMPORT_KEEP_GOOD);
  EXPECT_TRUE(remote::waitUntil([&] {
    return columns(import) == std::vector<std::wstring>{L"Name\tVarChar(20)", L"Age\tINTEGER"};
  }));
  user.accept(import);
  user.answer(L"Quivane", L"Table 'People': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Ada", "Bo"));
}

TEST_P(ExchangeStory, ManyPastedLinesKeepTheirCommas) {
  ASSERT_TRUE(remote::waitUntil([] { return putOnClipboard(L"Rossi, Bo\t1\r\nDoe, \"\"Cy\"\"\t2\r\n"); }));
  User& user = start();
  user.chooseDesktop(ID_TABLE_PASTE);
  const HWND import = importDialog(user);
  EXPECT_THAT(columns(import), testing::SizeIs(2));
  user.accept(import);
  user.answer(L"Quivane", L"Table 'Pasted': 2 records added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT * FROM Pasted"), testing::SizeIs(2));
}

TEST_P(ExchangeStory, OnePastedRowIsARecordEvenIfItsValuesAreWords) {
  ASSERT_TRUE(remote::waitUntil([] { return putOnClipboard(L"Ada\tParis\r\n"); }));
  User& user = start();
  user.chooseDesktop(ID_TABLE_PASTE);
  user.accept(importDialog(user));
  user.answer(L"Quivane", L"Table 'Pasted': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Field1 || Field2 FROM Pasted"), ElementsAre("AdaParis"));
}

TEST_P(ExchangeStory, AQuoteWithinAPastedNameHidesNoLineEnd) {
  ASSERT_TRUE(remote::waitUntil([] { return putOnClipboard(L"Height (\")\tName\r\n5\tNail\r\n"); }));
  User& user = start();
  user.chooseDesktop(ID_TABLE_PASTE);
  user.accept(importDialog(user));
  user.answer(L"Quivane", L"Table 'Pasted': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Name FROM Pasted"), ElementsAre("Nail"));
}

TEST_P(ExchangeStory, APastedRowWithALineEndInQuotesIsARecord) {
  ASSERT_TRUE(remote::waitUntil([] { return putOnClipboard(L"Ada\t\"Paris, \"\"Fr\"\"\r\nance\"\r\n"); }));
  User& user = start();
  user.chooseDesktop(ID_TABLE_PASTE);
  user.accept(importDialog(user));
  user.answer(L"Quivane", L"Table 'Pasted': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Field1 FROM Pasted"), ElementsAre("Ada"));
}

TEST_P(ExchangeStory, BehindAnotherProgramsLockNothingIsImportedAndTheDialogComesBack) {
  User& user = start();
  HWND import = beginImport(user, write("Name,Age\nBo,1\n", "people.csv"));
  {
    const auto lock = lockExclusively(path().wstring());
    ASSERT_TRUE(lock->isHeld());
    user.accept(import);
    const HWND box = user.dialog(L"Quivane");
    EXPECT_THAT(remote::messageBoxText(box), testing::StartsWith(L"The file could not be imported.\n"));
    user.accept(box);
  }
  import = importDialog(user);
  user.accept(import);
  user.answer(L"Quivane", L"Table 'people': 1 record added.", IDOK);
  end();
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Ada", "Bo"));
}

TEST_P(ExchangeStory, EscStopsAnImportAndTheDialogComesBack) {
  std::string content = "Name,Age\n";
  for (int i = 0; i < 4'000'000; ++i) content += "Bo,1\n";
  User& user = start();
  HWND import = beginImport(user, write(content, "people.csv"));
  user.accept(import);
  const HWND line = awaitProgress(L"The file is imported: ");
  ASSERT_TRUE(line);
  PostMessageW(user.main(), WM_KEYDOWN, VK_ESCAPE, 0);
  user.answer(L"Quivane", L"The file could not be imported.\nThe import was cancelled. Nothing was changed.",
              IDOK);
  import = importDialog(user);
  user.leave(import);
  end();
  EXPECT_THAT(stored("SELECT Name FROM People"), ElementsAre("Ada"));
}

TELL_WITH_BOTH_HANDS(ExchangeStory);

}  // namespace
