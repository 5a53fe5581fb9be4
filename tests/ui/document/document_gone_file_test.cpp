// The open file loses its name to another program: what the user is asked, and what becomes of his work.
#include <fstream>
#include <utility>

#include "tests/ui/document/document_fixture.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class GoneFileTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    fs::create_directory(place_);
    makeOurs();
    ASSERT_TRUE(static_cast<bool>(document().openDatabase(ours_.c_str())));
    document().openTableSelection(0);
    theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  }

  void makeOurs() {
    makeDatabase(ours_, {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (10)",
                         L"INSERT INTO T VALUES (20)", L"INSERT INTO T VALUES (30)"});
  }
  void showForm() {
    document().setViewMode(ViewMode::form);
    document().moveNextRecord();
    ASSERT_EQ(value(), L"20");
  }
  /// What stands in the editor from now on, as the user's.
  void type(const wchar_t* text) { window().form.fields.at(0).content = text; }
  /// Nobody can rename a file that is open, but Wine lets everybody rename the folder that holds it.
  void take() { fs::rename(place_, away_); }
  void giveBack() {
    fs::remove_all(place_);
    fs::rename(away_, place_);
  }
  void replace() {
    take();
    fs::create_directory(place_);
    makeDatabase(ours_, {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (7)"});
  }
  void answerWith(std::initializer_list<LostFileChoice> choices) {
    window().prompts.lostFileChoices = choices;
  }
  void saveAs(const fs::path& path) { window().prompts.file = String(path.c_str()); }
  /// The losses that the user was asked about since the last call.
  std::vector<FileState> questions() { return std::exchange(window().prompts.lostFiles, {}); }
  static std::vector<std::wstring> stored(const fs::path& path) {
    return DocumentTest::stored(L"Select * from [T]", path);
  }

  const fs::path place_ = file("place");
  const fs::path away_ = file("away");
  const fs::path ours_ = place_ / "data.cdb";
  const fs::path theirs_ = ours_;
  const fs::path copy_ = file("copy.cdb");
};

TEST_F(GoneFileTest, NothingIsAskedOfAFileThatHasItsName) {
  showForm();
  EXPECT_TRUE(document().lookAfterFile());
  type(L"21");
  document().moveNextRecord();
  EXPECT_THAT(questions(), IsEmpty());
  EXPECT_THAT(stored(ours_), ElementsAre(L"10", L"21", L"30"));
}

TEST_F(GoneFileTest, EachLossIsToldOnceWhenTheWindowComesToTheFront) {
  showForm();
  take();
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_THAT(questions(), ElementsAre(FileState::gone));
  EXPECT_EQ(window().prompts.lostFile, ours_.wstring());
  giveBack();
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_THAT(questions(), IsEmpty());
  replace();
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_THAT(questions(), ElementsAre(FileState::replaced));
}

TEST_F(GoneFileTest, AChangeIsNotAcknowledgedAndStaysOnTheForm) {
  showForm();
  type(L"21");
  take();
  window().prompts.agrees = false;
  document().moveNextRecord();
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_THAT(questions(), ElementsAre(FileState::gone));
  EXPECT_EQ(window().sight(), "form: record 2");
  EXPECT_EQ(window().form.fields.at(0).content, L"21");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"The file was deleted or renamed while it was open."));
  EXPECT_FALSE(document().canLeaveRecord()) << "the second time";
  giveBack();
  EXPECT_THAT(stored(ours_), ElementsAre(L"10", L"20", L"30"));
}

TEST_F(GoneFileTest, WhatWasTypedIsStoredInTheCopy) {
  showForm();
  type(L"21");
  take();
  answerWith({LostFileChoice::saveCopy});
  saveAs(copy_);
  document().moveNextRecord();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_STREQ(document().databasePath().text(), copy_.c_str());
  EXPECT_EQ(currentRecord, 3u);
  EXPECT_EQ(value(), L"30");
  EXPECT_THAT(stored(copy_), ElementsAre(L"10", L"21", L"30"));
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_THAT(questions(), ElementsAre(FileState::gone));
  EXPECT_FALSE(fs::exists(place_)) << "nothing was made where the file was";
}

TEST_F(GoneFileTest, TheEditorsAreNotLoadedAnewWhenTheCopyIsGoneOnWith) {
  showForm();
  type(L"22");
  const int built = window().form.builds;
  take();
  answerWith({LostFileChoice::saveCopy});
  saveAs(copy_);
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_EQ(window().form.builds, built);
  EXPECT_EQ(window().sight(), "form: record 2");
  EXPECT_EQ(window().form.fields.at(0).shown, L"20");
  EXPECT_EQ(window().form.fields.at(0).content, L"22");
  document().moveNextRecord();
  EXPECT_THAT(stored(copy_), ElementsAre(L"10", L"22", L"30"));
}

TEST_F(GoneFileTest, ANewRecordThatWasBegunIsStoredInTheCopy) {
  showForm();
  document().newRecord();
  type(L"40");
  replace();
  answerWith({LostFileChoice::saveCopy});
  saveAs(copy_);
  document().movePreviousRecord();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_THAT(stored(copy_), ElementsAre(L"10", L"20", L"30", L"40"));
  EXPECT_THAT(stored(theirs_), ElementsAre(L"7"));
  EXPECT_EQ(value(), L"30");
}

TEST_F(GoneFileTest, TheFileThatIsThereNowIsOpenedOnThePageThatIsShown) {
  showForm();
  type(L"21");
  replace();
  answerWith({LostFileChoice::openPresent});
  document().moveNextRecord();
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_EQ(document().viewMode(), ViewMode::form);
  EXPECT_TRUE(document().isDatabaseOpen());
  EXPECT_STREQ(document().databasePath().text(), theirs_.c_str());
  EXPECT_EQ(recordCount, 1u);
  EXPECT_EQ(value(), L"7");
  EXPECT_THAT(stored(theirs_), ElementsAre(L"7"));
  EXPECT_EQ(document().closeDatabase(), 0);
  giveBack();
  EXPECT_THAT(stored(ours_), ElementsAre(L"10", L"20", L"30"));
}

TEST_F(GoneFileTest, AFileWithoutTheTableIsShownWithItsFirst) {
  document().setViewMode(ViewMode::list);
  take();
  fs::create_directory(place_);
  makeDatabase(theirs_, {L"CREATE TABLE 'Other' (b Integer)", L"INSERT INTO Other VALUES (8)",
                         L"INSERT INTO Other VALUES (9)"});
  answerWith({LostFileChoice::openPresent});
  EXPECT_FALSE(document().lookAfterFile());
  EXPECT_EQ(document().viewMode(), ViewMode::list);
  EXPECT_EQ(recordCount, 2u);
  EXPECT_STREQ(document().tableName().text(), L"Other");
}

TEST_F(GoneFileTest, AFileThatDoesNotOpenLeavesWhatIsOpen) {
  showForm();
  take();
  fs::create_directory(place_);
  std::ofstream(theirs_) << "this is a shopping list\n";
  answerWith({LostFileChoice::openPresent, LostFileChoice::later});
  EXPECT_TRUE(document().lookAfterFile());
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"data.cdb could not be opened.\n"));
  EXPECT_GT(messages()[0].text.size(), messages()[0].text.find(L'\n') + 10) << "the reason is missing";
  document().movePreviousRecord();
  EXPECT_EQ(value(), L"10") << "what is open is still read";
}

TEST_F(GoneFileTest, ACopyThatCantBeMadeIsToldAndAskedForAgain) {
  makeDatabase(copy_, {L"CREATE TABLE 'Precious' (a Integer)"});
  const auto size = fs::file_size(copy_);
  showForm();
  type(L"21");
  take();
  answerWith({LostFileChoice::saveCopy, LostFileChoice::later});
  saveAs(copy_);
  window().prompts.agrees = false;
  document().moveNextRecord();
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"copy.cdb.\n"));
  EXPECT_GT(messages()[0].text.size(), messages()[0].text.find(L'\n') + 10) << "the reason is missing";
  EXPECT_EQ(fs::file_size(copy_), size) << "a file that exists is not replaced";
  EXPECT_STREQ(document().databasePath().text(), ours_.c_str());
  EXPECT_EQ(currentRecord, 2u);
}

TEST_F(GoneFileTest, ACopyWithOtherRecordsInTheirPlacesIsNotGoneOnWith) {
  showForm();
  runStatements(ours_, {L"DELETE FROM T WHERE a = 10"});
  type(L"21");
  take();
  answerWith({LostFileChoice::saveCopy, LostFileChoice::later});
  saveAs(copy_);
  window().prompts.agrees = false;
  document().moveNextRecord();
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"copy.cdb, but can't be gone on with there.\n"));
  EXPECT_THAT(stored(copy_), ElementsAre(L"20", L"30")) << "what is open is saved all the same";
  EXPECT_STREQ(document().databasePath().text(), ours_.c_str());
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(window().form.fields.at(0).content, L"21") << "what was typed is kept";
  giveBack();
  document().moveNextRecord();
  EXPECT_THAT(stored(ours_), ElementsAre(L"21", L"30"));
}

TEST_F(GoneFileTest, WhoNamesNoFileIsAskedAgain) {
  showForm();
  take();
  answerWith({LostFileChoice::saveCopy, LostFileChoice::later});
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_THAT(questions(), ElementsAre(FileState::gone, FileState::gone));
  EXPECT_TRUE(document().isDatabaseOpen());
}

TEST_F(GoneFileTest, ARecordIsDeletedInTheCopyOrNowhere) {
  showForm();
  take();
  document().deleteRecord();
  EXPECT_EQ(recordCount, 3u);
  answerWith({LostFileChoice::saveCopy});
  saveAs(copy_);
  document().deleteRecord();
  EXPECT_THAT(stored(copy_), ElementsAre(L"10", L"30"));
  giveBack();
  EXPECT_THAT(stored(ours_), ElementsAre(L"10", L"20", L"30"));
}

TEST_F(GoneFileTest, TheGridGoesOnInTheCopy) {
  document().setViewMode(ViewMode::list);
  window().tapRow(2);
  const int filled = window().grid.fills;
  String cell;
  ASSERT_TRUE(document().readRow(0, 0, cell));
  take();
  answerWith({LostFileChoice::saveCopy});
  saveAs(copy_);
  EXPECT_TRUE(document().lookAfterFile());
  EXPECT_EQ(window().grid.fills, filled + 1);
  EXPECT_EQ(window().sight(), "grid: row 2 of 3");
  ASSERT_TRUE(document().readRow(2, 0, cell));
  EXPECT_STREQ(cell.text(), L"30");
  runStatements(copy_, {L"UPDATE T SET a = 31 WHERE a = 30"});
  ASSERT_TRUE(document().readRow(1, 0, cell));
  ASSERT_TRUE(document().readRow(2, 0, cell));
  EXPECT_STREQ(cell.text(), L"31");
}

TEST_F(GoneFileTest, TablesAndQueriesAreMadeInTheCopyOrNowhere) {
  take();
  EXPECT_FALSE(document().createTable(L"Made", L"a Integer"));
  answerWith({LostFileChoice::saveCopy});
  saveAs(copy_);
  EXPECT_TRUE(document().createTable(L"Made", L"a Integer"));
  EXPECT_THAT(window().tables->items, ElementsAre(L"T", L"Made"));
  fs::rename(copy_.parent_path() / "away", place_);
  EXPECT_TRUE(document().addQuery({L"all", L"Select * from [T]"}));
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(GoneFileTest, LeavingTheFileAsksFirst) {
  document().setViewMode(ViewMode::tables);
  take();
  EXPECT_TRUE(document().canLeaveRecord()) << "who was told may leave";
  EXPECT_THAT(questions(), ElementsAre(FileState::gone));
  EXPECT_TRUE(document().canLeaveRecord());
  EXPECT_THAT(questions(), IsEmpty());
}

}  // namespace
