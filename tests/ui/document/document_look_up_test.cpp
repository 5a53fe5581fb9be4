// To the record that a field refers to, and back.
#include "records/parts/arranger.h"
#include "records/parts/look_ups.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class DocumentLookUpTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    runStatements(path(),
                  {L"CREATE TABLE 'Books' (Id Integer PRIMARY KEY, Title Text)",
                   L"INSERT INTO Books VALUES (3, 'Ulysses')", L"INSERT INTO Books VALUES (31, 'Emma')",
                   L"INSERT INTO Books VALUES (8, 'Persuasion')",
                   L"CREATE TABLE 'Loans' (Note Text, Book Integer REFERENCES books)",
                   L"INSERT INTO Loans VALUES ('first', 3)", L"INSERT INTO Loans VALUES ('second', 31)",
                   L"INSERT INTO Loans VALUES ('third', NULL)"});
    open();
    document().openTableSelection(4);
    ASSERT_STREQ(document().tableName().text(), L"Loans");
    document().setViewMode(ViewMode::form);
    ASSERT_EQ(value(), L"first");
  }
  bool isOffered(int command) { return document().isOffered(command); }
  void focus(std::uint32_t field) { window().form.focus = field; }
};

TEST_F(DocumentLookUpTest, TheRecordIsShownOnItsOwnFormAndTheFormerOneAgain) {
  document().moveNextRecord();
  EXPECT_FALSE(isOffered(ID_GO_TO_LOOKED_UP)) << "the note refers to nothing";
  focus(1);
  EXPECT_TRUE(isOffered(ID_LOOK_UP));
  EXPECT_TRUE(isOffered(ID_GO_TO_LOOKED_UP));
  EXPECT_FALSE(isOffered(ID_GO_BACK));
  document().lookUps().goThere();
  EXPECT_STREQ(document().tableName().text(), L"Books");
  EXPECT_EQ(value(), L"31") << "and not 3, with which it begins";
  EXPECT_EQ(window().bar.position, L"    3 / 3");
  EXPECT_TRUE(isOffered(ID_GO_BACK));
  document().lookUps().goBack();
  EXPECT_STREQ(document().tableName().text(), L"Loans");
  EXPECT_EQ(value(), L"second");
  EXPECT_EQ(window().form.focus, 1u);
  EXPECT_FALSE(isOffered(ID_GO_BACK));
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentLookUpTest, ARecordIsNotCalledMissingWhereTheSearchForItCouldNotGoOn) {
  document().moveNextRecord();
  focus(1);
  bool isFirst = true;
  window().prompts.goesOnSearching = [&](std::uint32_t, std::uint32_t) {
    if (std::exchange(isFirst, false))
      runStatements(path(), {L"ALTER TABLE Books RENAME COLUMN Title TO Heading"});
    return true;
  };
  document().lookUps().goThere();
  EXPECT_FALSE(isFirst);
  EXPECT_THAT(window().prompts.takeTexts(), ElementsAre(StartsWith(L"The search could not go on.\n")));
}

TEST_F(DocumentLookUpTest, WhatIsTypedIsStoredFirstAndFollowed) {
  focus(1);
  window().form.fields[1].content = L"8";
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"8");
  EXPECT_THAT(stored(L"Select Book from Loans"), ElementsAre(L"8", L"31", L""));
}

TEST_F(DocumentLookUpTest, WhatCanNotBeStoredHoldsTheUserBack) {
  focus(1);
  window().form.fields[1].content = L"77";
  window().prompts.agrees = false;
  document().lookUps().goThere();
  EXPECT_STREQ(document().tableName().text(), L"Loans");
  EXPECT_EQ(value(), L"first");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, StartsWith(L"The record could not be written."));
}

TEST_F(DocumentLookUpTest, AFieldWithoutAValueIsTold) {
  document().moveLastRecord();
  focus(1);
  document().lookUps().goThere();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_EQ(messages()[0].text, L"This field refers to no record.");
  EXPECT_EQ(value(), L"third");
}

TEST_F(DocumentLookUpTest, ARecordThatIsNotThereIsToldAndTheWayBackStaysOpen) {
  runStatements(path(), {L"UPDATE Loans SET Book = NULL", L"DELETE FROM Books WHERE Id = 3"});
  automationtest::SqliteFile other(path().wstring());
  other.run("UPDATE Loans SET Book = 3 WHERE Note = 'first'");
  document().loadRecord();
  focus(1);
  document().lookUps().goThere();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_EQ(messages()[0].text, L"There is no record '3' in table 'books'.");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"first");
}

TEST_F(DocumentLookUpTest, WhereTheTableIsNotThereTheRecordStaysAndCanBeChanged) {
  document().closeDatabase();
  automationtest::SqliteFile(path().wstring())
      .run(
          "DROP TABLE Loans; CREATE TABLE Loans (Note TEXT, Book INTEGER REFERENCES Gone (Id));"
          "INSERT INTO Loans VALUES ('kept', 3)");
  open();
  document().openTableSelection(4);
  document().setViewMode(ViewMode::form);
  focus(1);
  document().lookUps().goThere();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, StartsWith(L"The records of table 'Gone' could not be opened.\n"));
  EXPECT_EQ(value(), L"kept");
  EXPECT_FALSE(isOffered(ID_GO_BACK));
  EXPECT_TRUE(document().isRecordShown());
}

TEST_F(DocumentLookUpTest, AfterASearchTheWayBackLeadsToTheMatch) {
  window().prompts.setFind = [](FindState& state) {
    state.text = L"second";
    state.checkAllFields = 1;
  };
  document().openFind();
  document().findNext();
  ASSERT_EQ(value(), L"second");
  focus(1);
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"31");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"second");
}

TEST_F(DocumentLookUpTest, AFilterHidesNoRecordThatIsGoneToAndTheOrderComesBack) {
  Arrangement filter;
  filter.require({.field = L"Title",
                  .test = Arrangement::Test::containing,
                  .value = L"Ulysses",
                  .shown = L"",
                  .letters = Arrangement::Letters::ignoreCase});
  Arrangement order;
  order.orderBy({.field = L"Note", .isDescending = true});
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  ASSERT_TRUE(document().arranger().arrange(filter));
  ASSERT_EQ(recordCount, 1u);
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(4);
  document().setViewMode(ViewMode::form);
  ASSERT_TRUE(document().arranger().arrange(order));
  document().moveFirstRecord();
  document().moveNextRecord();
  ASSERT_EQ(value(), L"second");
  focus(1);
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"31");
  EXPECT_THAT(messages(), IsEmpty());
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"second");
  document().movePreviousRecord();
  EXPECT_EQ(value(), L"third") << "in the order that it had";
}

TEST_F(DocumentLookUpTest, TheWayBackLeadsToTheRecordWhereverItStandsByThen) {
  document().moveNextRecord();
  focus(1);
  document().lookUps().goThere();
  automationtest::SqliteFile other(path().wstring());
  other.run("INSERT INTO Loans (rowid, Note) VALUES (-2, 'new'), (-1, 'new'), (0, 'new')");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"second");
  EXPECT_EQ(window().bar.position, L"    5 / 6");
  document().lookUps().goThere();
  other.run("DELETE FROM Loans WHERE Note = 'new'");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"second");
  EXPECT_EQ(window().bar.position, L"    2 / 3");
}

TEST_F(DocumentLookUpTest, WhereTheRecordHasGoneTheWayBackLeadsToItsPlace) {
  document().moveNextRecord();
  focus(1);
  document().lookUps().goThere();
  automationtest::SqliteFile(path().wstring()).run("DELETE FROM Loans WHERE Note = 'second'");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"third");
  EXPECT_THAT(messages(), IsEmpty());
  document().movePreviousRecord();
  ASSERT_EQ(value(), L"first");
  focus(1);
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"3");
  automationtest::SqliteFile(path().wstring()).run("DELETE FROM Loans");
  document().lookUps().goBack();
  EXPECT_STREQ(document().tableName().text(), L"Loans");
  EXPECT_EQ(window().bar.position, L"No Records");
}

TEST_F(DocumentLookUpTest, ARecordThatWasNewIsComeBackTo) {
  theAppSettings->options().setGenUpdateRights(kNewRecordsAndDeletions);
  document().newRecord();
  window().form.fields[0].content = L"new";
  window().form.fields[1].content = L"8";
  focus(1);
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"8");
  automationtest::SqliteFile(path().wstring()).run("DELETE FROM Loans WHERE Note = 'first'");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"new");
}

TEST_F(DocumentLookUpTest, BehindAnotherProgramsLockTheNameStaysAwayAndNobodyWaits) {
  LookUps& lookUps = document().lookUps();
  for (const bool isKnown : {false, true}) {
    SCOPED_TRACE(isKnown);
    if (isKnown) {
      EXPECT_STREQ(lookUps.nameOf(1, L"3").text(), L"Ulysses");
    }
    auto lock = lockExclusively(path().wstring());
    ASSERT_TRUE(lock->isHeld());
    const ULONGLONG begin = GetTickCount64();
    EXPECT_STREQ(lookUps.nameOf(1, L"3").text(), L"");
    EXPECT_LT(GetTickCount64() - begin, 2000u) << "other waits end after 5 s";
    EXPECT_FALSE(window().prompts.isProgressShown) << "nothing is shown of it";
    lock.reset();
    EXPECT_STREQ(lookUps.nameOf(1, L"3").text(), L"Ulysses");
  }
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentLookUpTest, SeveralStepsGoBackOneByOneAndEndWithTheFile) {
  focus(1);
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"3");
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(4);
  document().setViewMode(ViewMode::form);
  document().moveNextRecord();
  focus(1);
  document().lookUps().goThere();
  EXPECT_EQ(value(), L"31");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"second");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"first");
  document().lookUps().goBack();
  EXPECT_EQ(value(), L"first");
  focus(1);
  document().lookUps().goThere();
  document().closeDatabase();
  EXPECT_FALSE(isOffered(ID_GO_BACK));
}

TEST_F(DocumentLookUpTest, TheLastFiftyStepsGoBack) {
  for (int step = 0; step < 53; ++step) {
    document().setViewMode(ViewMode::tables);
    document().openTableSelection(4);
    document().setViewMode(ViewMode::form);
    focus(1);
    document().lookUps().goThere();
    ASSERT_EQ(value(), L"3");
  }
  int back = 0;
  for (; document().lookUps().canGoBack(); ++back) document().lookUps().goBack();
  EXPECT_EQ(back, 50);
}

TEST_F(DocumentLookUpTest, OnNoOtherPageAnythingHappens) {
  for (const ViewMode mode : {ViewMode::tables, ViewMode::list, ViewMode::queries}) {
    document().setViewMode(mode);
    focus(1);
    EXPECT_FALSE(isOffered(ID_GO_TO_LOOKED_UP));
    document().lookUps().goThere();
    EXPECT_STREQ(document().tableName().text(), L"Loans");
  }
}

}  // namespace
