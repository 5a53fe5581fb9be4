// The desktop menu's commands, in the whole program on a thread of the test.
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/settings/app_colors.h"
#include "base/settings/settings_store.h"
#include "dialogs/exchange/import_ids.h"
#include "gmock/gmock.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/remote/program_thread_test.h"
#include "views/form/form_ids.h"
#include "views/shared/clipboard_text.h"

using automationtest::SqliteFile;
using testing::ElementsAre;

namespace {

class DesktopCommandsTest : public ProgramThreadTest {
 protected:
  void SetUp() override { start({L"CREATE TABLE 'T' (Name Text)", L"INSERT INTO T VALUES ('as it was')"}); }
  void TearDown() override {
    ProgramThreadTest::TearDown();
    resetAppColors();
  }

  static AppColorTable storedColors() {
    AppColorTable colors{};
    SettingsStore::readBinary(SettingsStore::kOptions, L"GeneralAppColors", colors.data(), kAppColorCount);
    return colors;
  }
  /// Whether the system menu, once it opens, offers a command.
  bool isOffered(int command) const {
    const HMENU system = GetSystemMenu(main(), FALSE);
    for (int i = 0; i < GetMenuItemCount(system); ++i) {
      const HMENU below = GetSubMenu(system, i);
      SendMessageW(main(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(below ? below : system), 0);
    }
    const UINT state = GetMenuState(system, static_cast<UINT>(command), MF_BYCOMMAND);
    return state != static_cast<UINT>(-1) && (state & MF_GRAYED) == 0;
  }
  bool isMarked(int command) const {
    isOffered(command);
    return (GetMenuState(GetSystemMenu(main(), FALSE), static_cast<UINT>(command), MF_BYCOMMAND) &
            MF_CHECKED) != 0;
  }
  HWND waitForDialog(const wchar_t* title) const {
    HWND dialog = nullptr;
    EXPECT_TRUE(remote::waitUntil(
        [&] { return (dialog = remote::dialog(GetCurrentProcessId(), title)) != nullptr; }));
    return dialog;
  }
  std::vector<std::string> storedNames() const { return stored("SELECT Name FROM T"); }
};

TEST_F(DesktopCommandsTest, EachSetOfColorsIsSetStoredAndMarked) {
  struct Row {
    int command;
    ColorSet set;
  };
  EXPECT_TRUE(isMarked(ID_COLORS_OWN));
  for (const Row& row : {Row{ID_COLORS_DARK, ColorSet::dark}, Row{ID_COLORS_SYSTEM, ColorSet::system},
                         Row{ID_COLORS_OWN, ColorSet::own}}) {
    EXPECT_FALSE(isMarked(row.command));
    give(row.command);
    EXPECT_EQ(appColors, colorsOfSet(row.set)) << row.command;
    EXPECT_EQ(storedColors(), colorsOfSet(row.set)) << row.command;
    EXPECT_TRUE(isMarked(row.command));
  }
  appColors[kListViewText] ^= 1;
  EXPECT_FALSE(isMarked(ID_COLORS_OWN)) << "one of the fifteen is another one";
}

TEST_F(DesktopCommandsTest, TheListsShowTheColorsAtOnce) {
  const HWND list = remote::shownPage(main());
  give(ID_COLORS_DARK);
  EXPECT_EQ(static_cast<COLORREF>(SendMessageW(list, LVM_GETBKCOLOR, 0, 0)),
            appColors[kTablesViewBackground]);
  EXPECT_EQ(static_cast<COLORREF>(SendMessageW(list, LVM_GETTEXTCOLOR, 0, 0)), appColors[kTablesViewText]);
}

TEST_F(DesktopCommandsTest, TheyAreThereOnEachPageAndWithoutADatabase) {
  for (int page = 0; page < kPages; ++page) {
    ASSERT_TRUE(remote::switchToPage(main(), page));
    for (const int command : {ID_COLORS_DARK, ID_COLORS_OWN}) {
      EXPECT_TRUE(isOffered(command)) << page;
      give(command);
    }
    EXPECT_EQ(appColors, colorsOfSet(ColorSet::own)) << page;
  }
  give(ID_DATABASE_CLOSE);
  EXPECT_TRUE(isOffered(ID_COLORS_DARK));
  give(ID_COLORS_DARK);
  EXPECT_EQ(appColors, colorsOfSet(ColorSet::dark));
}

TEST_F(DesktopCommandsTest, WhatIsTypedStaysAsItIs) {
  ASSERT_TRUE(remote::switchToPage(main(), kFormPage));
  SetWindowTextW(control(kFirstTextEditorId), L"typed");
  give(ID_COLORS_DARK);
  EXPECT_EQ(remote::text(control(kFirstTextEditorId)), L"typed");
  EXPECT_THAT(storedNames(), ElementsAre("as it was")) << "nobody has left the record";
  ASSERT_TRUE(remote::switchToPage(main(), 0));
  EXPECT_THAT(storedNames(), ElementsAre("typed"));
}

TEST_F(DesktopCommandsTest, UnderADialogNothingIsDone) {
  PostMessageW(main(), WM_COMMAND, ID_ABOUT, 0);
  const HWND about = waitForDialog(L"About Quivane for Pocket PC");
  give(ID_COLORS_DARK);
  SendMessageW(main(), WM_SYSCOMMAND, ID_COLORS_DARK, 0);
  EXPECT_EQ(appColors, colorsOfSet(ColorSet::own));
  PostMessageW(about, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(about) && IsWindowEnabled(main()); }));
  SendMessageW(main(), WM_SYSCOMMAND, ID_COLORS_DARK, 0);
  EXPECT_EQ(appColors, colorsOfSet(ColorSet::dark));
}

// ---- Files that are dropped

/// A drop of one file, as the system describes it. The window that gets it frees it.
HDROP dropOf(const std::filesystem::path& file) {
  const std::wstring path = file.wstring();
  const std::size_t length = sizeof(DROPFILES) + (path.size() + 2) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, length);
  auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
  drop->pFiles = sizeof(DROPFILES);
  drop->fWide = TRUE;
  std::memcpy(drop + 1, path.c_str(), path.size() * sizeof(wchar_t));
  GlobalUnlock(memory);
  return static_cast<HDROP>(memory);
}

TEST_F(DesktopCommandsTest, AFileOfRecordsThatIsDroppedIsOfferedForImport) {
  std::ofstream(file("guests.csv")) << "Name\nBo\n";
  PostMessageW(main(), WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf(file("guests.csv"))), 0);
  const HWND import = waitForDialog(L"Import");
  EXPECT_EQ(remote::text(GetDlgItem(import, IDC_IMPORT_TABLE)), L"guests");
  // What is dropped under a dialog is not taken.
  SendMessageW(main(), WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf(file("other.cdb"))), 0);
  PostMessageW(import, WM_COMMAND, IDOK, 0);
  const HWND told = waitForDialog(L"Quivane");
  EXPECT_EQ(remote::messageBoxText(told), L"Table 'guests': 1 record added.");
  PostMessageW(told, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(told) && IsWindowEnabled(main()); }));
  EXPECT_EQ(remote::itemCount(remote::shownPage(main())), 2);
}

TEST_F(DesktopCommandsTest, AnyOtherFileThatIsDroppedIsOpenedAsADatabase) {
  makeDatabase(file("other.cdb"), {L"CREATE TABLE 'Other' (a Integer)"});
  PostMessageW(main(), WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf(file("other.cdb"))), 0);
  EXPECT_TRUE(remote::waitUntil([&] {
    const HWND list = remote::shownPage(main());
    return list != nullptr && remote::itemText(list, 0) == L"Other";
  }));
}

TEST_F(DesktopCommandsTest, WithoutADatabaseAnImportIsToldWhatItNeeds) {
  std::ofstream(file("guests.csv")) << "Name\nBo\n";
  give(ID_DATABASE_CLOSE);
  EXPECT_FALSE(isOffered(ID_IMPORT));
  EXPECT_FALSE(isOffered(ID_EXPORT));
  PostMessageW(main(), WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf(file("guests.csv"))), 0);
  const HWND told = waitForDialog(L"Quivane");
  EXPECT_THAT(remote::messageBoxText(told), testing::HasSubstr(L"can be imported into an open database."));
  PostMessageW(told, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(told); }));
}

// ---- The clipboard

TEST_F(DesktopCommandsTest, TheChosenRowIsCopiedAsSpreadsheetsTakeIt) {
  EXPECT_FALSE(isOffered(ID_ROW_COPY)) << "the Tables page has no rows";
  SqliteFile(database().wstring())
      .run("ALTER TABLE T ADD COLUMN Note TEXT; UPDATE T SET Note = 'a\tb \"c\"'");
  ASSERT_TRUE(remote::switchToPage(main(), kListPage));
  EXPECT_TRUE(isOffered(ID_ROW_COPY));
  give(ID_ROW_COPY);
  EXPECT_EQ(clipboardText(nullptr), L"as it was\t\"a\tb \"\"c\"\"\"\r\n");
}

TEST_F(DesktopCommandsTest, WhatIsPastedIsOfferedForImport) {
  ASSERT_TRUE(setClipboardText(nullptr, L"Name\tAge\r\n\u00C4da\t36\r\n"));
  PostMessageW(main(), WM_COMMAND, ID_TABLE_PASTE, 0);
  const HWND import = waitForDialog(L"Import");
  EXPECT_EQ(remote::text(GetDlgItem(import, IDC_IMPORT_TABLE)), L"Pasted");
  PostMessageW(import, WM_COMMAND, IDOK, 0);
  const HWND told = waitForDialog(L"Quivane");
  EXPECT_EQ(remote::messageBoxText(told), L"Table 'Pasted': 1 record added.");
  PostMessageW(told, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(told) && IsWindowEnabled(main()); }));
  EXPECT_THAT(automationtest::sqliteColumn(database().wstring(), "SELECT Name || Age FROM Pasted"),
              ElementsAre("\u00C4da36"));
}

}  // namespace
