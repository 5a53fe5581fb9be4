// What a session leaves behind, and how the next one goes on from it.
#include <windows.h>

#include "base/settings/settings_store.h"
#include "resources/command_ids.h"
#include "tests/ui/document/document_fixture.h"

namespace {

constexpr const wchar_t* kNames[] = {L"LastDBOnStartup", L"LastTableOnStartup", L"LastQueryOnStartup",
                                     L"LastSQLQuery", L"OpenQueryOnStartup"};

class DocumentSessionTest : public DocumentTest {
 protected:
  void SetUp() override {
    forgetSession();
    DocumentTest::SetUp();
  }
  void TearDown() override {
    DocumentTest::TearDown();
    forgetSession();
  }

  static void forget(const wchar_t* name) {
    const std::wstring key = std::wstring(SettingsStore::kRoot) + L"\\" + SettingsStore::kOptions;
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key.c_str(), name);
  }
  static void forgetSession() {
    for (const wchar_t* name : kNames) forget(name);
  }
  static std::wstring saved(const wchar_t* name) {
    String text(L"missing");
    SettingsStore::readString(SettingsStore::kOptions, name, text);
    return text.text();
  }
  static std::uint32_t savedNumber() {
    std::uint32_t number = 99;
    SettingsStore::readDword(SettingsStore::kOptions, kNames[4], 99, number);
    return number;
  }
  static void save(const wchar_t* name, const wchar_t* text) {
    SettingsStore::writeString(SettingsStore::kOptions, name, text);
  }

  /// A session in which this table or query was on the form.
  void leaveTable(int index) {
    open();
    document().openTableSelection(index);
    document().setViewMode(ViewMode::form);
    ASSERT_EQ(document().closeDatabase(), 0);
    restart();
  }
  void leaveQuery(int index) {
    addQueries();
    open();
    document().setViewMode(ViewMode::queries);
    document().openQuerySelection(index);
    document().setViewMode(ViewMode::form);
    ASSERT_EQ(document().closeDatabase(), 0);
    restart();
  }
};

TEST_F(DocumentSessionTest, ClosingSavesTheTable) {
  leaveTable(1);
  EXPECT_EQ(saved(kNames[0]), path().wstring());
  EXPECT_EQ(saved(kNames[1]), L"Second");
  EXPECT_EQ(saved(kNames[2]), L"");
  EXPECT_EQ(saved(kNames[3]), L"Select * from [Second]");
  EXPECT_EQ(savedNumber(), 0u);
}

TEST_F(DocumentSessionTest, ClosingSavesTheQuery) {
  leaveQuery(0);
  EXPECT_EQ(saved(kNames[1]), L"");
  EXPECT_EQ(saved(kNames[2]), L"big");
  EXPECT_EQ(saved(kNames[3]), L"Select * from [First One] where a > 10");
  EXPECT_EQ(savedNumber(), 1u);
}

TEST_F(DocumentSessionTest, WithoutADatabaseNothingIsSaved) {
  document().closeDatabase();
  EXPECT_EQ(saved(kNames[0]), L"missing");
}

TEST_F(DocumentSessionTest, WithoutASavedSessionNothingIsOpened) {
  EXPECT_EQ(document().restoreSession(), RestoreResult::nothing);
  EXPECT_FALSE(document().isDatabaseOpen());
}

TEST_F(DocumentSessionTest, TheTableIsBackOnTheForm) {
  leaveTable(1);
  EXPECT_EQ(document().restoreSession(), RestoreResult::records);
  EXPECT_TRUE(document().isDatabaseOpen());
  EXPECT_EQ(document().viewMode(), ViewMode::form);
  EXPECT_STREQ(document().tableName().text(), L"Second");
  EXPECT_EQ(value(), L"1");
}

TEST_F(DocumentSessionTest, TheCommandsOfARestoredTableFollowItsRecords) {
  leaveTable(1);
  ASSERT_EQ(document().restoreSession(), RestoreResult::records);
  document().updateMenusForDatabase(true);
  const auto inMenu = [this](PopupMenu menu, int command) { return window().bar.inMenu(menu, command); };
  EXPECT_FALSE(inMenu(PopupMenu::record, ID_RECORD_NUMBER));
  EXPECT_TRUE(inMenu(PopupMenu::record, ID_RECORD_DELETE));
  EXPECT_TRUE(inMenu(PopupMenu::edit, ID_FIND));
  document().closeDatabase();
  restart();
  runStatements(path(), {L"DELETE FROM Second"});
  ASSERT_EQ(document().restoreSession(), RestoreResult::records);
  document().updateMenusForDatabase(true);
  EXPECT_FALSE(inMenu(PopupMenu::record, ID_RECORD_NUMBER));
  EXPECT_FALSE(inMenu(PopupMenu::record, ID_RECORD_DELETE));
  EXPECT_FALSE(inMenu(PopupMenu::edit, ID_FIND));
  EXPECT_TRUE(inMenu(PopupMenu::record, ID_RECORD_NEW));
}

TEST_F(DocumentSessionTest, TheTablesPageThenSelectsTheTable) {
  leaveTable(1);
  ASSERT_EQ(document().restoreSession(), RestoreResult::records);
  document().setViewMode(ViewMode::tables);
  EXPECT_EQ(window().sight(), "tables");
  EXPECT_EQ(window().tables->chosen(), L"Second");
}

TEST_F(DocumentSessionTest, TheQueryIsBackOnTheForm) {
  leaveQuery(0);
  EXPECT_EQ(document().restoreSession(), RestoreResult::records);
  EXPECT_TRUE(document().openedFromQuery());
  EXPECT_STREQ(document().queryName().text(), L"big");
  EXPECT_EQ(value(), L"20");
  EXPECT_EQ(recordCount, 2u);
}

TEST_F(DocumentSessionTest, AQueryThatNoLongerRunsFallsBackToTheFirstTable) {
  leaveQuery(0);
  save(kNames[3], L"Select * from [Gone]");
  EXPECT_EQ(document().restoreSession(), RestoreResult::tables);
  EXPECT_EQ(document().viewMode(), ViewMode::tables);
  EXPECT_STREQ(document().tableName().text(), L"First One");
  EXPECT_FALSE(document().openedFromQuery());
}

TEST_F(DocumentSessionTest, ATableThatIsGoneFallsBackToTheFirstTable) {
  leaveTable(1);
  runStatements(path(), {L"DROP TABLE 'Second'"});
  EXPECT_EQ(document().restoreSession(), RestoreResult::tables);
  EXPECT_EQ(document().viewMode(), ViewMode::tables);
  EXPECT_STREQ(document().tableName().text(), L"First One");
}

TEST_F(DocumentSessionTest, ADatabaseWithoutTablesIsOpenedAndSaysSo) {
  leaveTable(1);
  runStatements(path(), {L"DROP TABLE 'Second'", L"DROP TABLE 'First One'", L"DROP TABLE 'Empty'"});
  EXPECT_EQ(document().restoreSession(), RestoreResult::noTables);
  EXPECT_TRUE(document().isDatabaseOpen());
}

TEST_F(DocumentSessionTest, ADatabaseThatIsGoneOpensNothing) {
  leaveTable(1);
  std::filesystem::remove(path());
  EXPECT_EQ(document().restoreSession(), RestoreResult::nothing);
  EXPECT_FALSE(document().isDatabaseOpen());
  EXPECT_FALSE(std::filesystem::exists(path())) << "nothing may be made in its place";
}

TEST_F(DocumentSessionTest, EachMissingValueEndsTheRestoreWhereItIsNeeded) {
  leaveTable(1);
  forget(kNames[4]);
  EXPECT_EQ(document().restoreSession(), RestoreResult::nothing);

  SettingsStore::writeDword(SettingsStore::kOptions, kNames[4], 0);
  forget(kNames[1]);
  EXPECT_EQ(document().restoreSession(), RestoreResult::tables);
}

TEST_F(DocumentSessionTest, AQueryWithoutItsTextFallsBackToTheFirstTable) {
  leaveQuery(0);
  forget(kNames[3]);
  EXPECT_EQ(document().restoreSession(), RestoreResult::tables);
}

TEST_F(DocumentSessionTest, AQueryWithoutANameFallsBackToTheTable) {
  leaveTable(1);
  SettingsStore::writeDword(SettingsStore::kOptions, kNames[4], 1);
  EXPECT_EQ(document().restoreSession(), RestoreResult::records);
  EXPECT_STREQ(document().tableName().text(), L"Second");
}

}  // namespace
