// The order of the records and which of them are shown, as the Document has it.
#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "records/parts/arranger.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using Letters = Arrangement::Letters;
using Kind = Arrangement::Test;

namespace {

class DocumentArrangementTest : public DocumentTest {
 protected:
  void SetUp() override {
    DocumentTest::SetUp();
    forget();
    runStatements(path(),
                  {L"CREATE TABLE 'Books' (Title Text, Pages Integer, Born datetime, Old Boolean, Raw, "
                   L"Price Double)",
                   L"INSERT INTO Books VALUES ('b', 2, '2001-03-09', 1, x'01', 0.1), ('A', 10, NULL, 0, 'x', "
                   L"2.5), ('c', 1, 'March 9, ' || '2001', -1, NULL, NULL)"});
  }
  void TearDown() override {
    DocumentTest::TearDown();
    forget();
  }
  static void forget() { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  static constexpr int kBooks = 3;
  void openBooks(ViewMode mode = ViewMode::list) {
    open();
    document().openTableSelection(kBooks);
    document().setViewMode(mode);
  }
  static Arrangement ordered(const wchar_t* field, bool isDescending = false,
                             Letters letters = Letters::ignoreCase) {
    Arrangement arrangement;
    arrangement.orderBy({field, isDescending, letters});
    return arrangement;
  }
  static Arrangement only(const wchar_t* field, Kind test, const wchar_t* value = L"") {
    Arrangement arrangement;
    Arrangement::Condition condition;
    if (field) condition.field = field;
    condition.test = test;
    condition.value = value;
    arrangement.require(condition);
    return arrangement;
  }
  std::vector<std::wstring> rows(std::uint32_t field = 0) {
    std::vector<std::wstring> texts;
    for (std::uint32_t row = 0; row < recordCount; ++row) {
      String text;
      texts.emplace_back(document().readRow(row, field, text) ? text.text() : L"?");
    }
    return texts;
  }
  /// The rows that have the value of a field in this row.
  std::vector<std::wstring> sameAs(std::uint32_t row, std::uint32_t field) {
    document().arranger().arrange({});
    currentRecord = row + 1;
    window().grid.selected = row + 1;
    Arrangement::Condition condition;
    EXPECT_TRUE(document().arranger().readChosenValue(field, condition));
    Arrangement arrangement;
    arrangement.require(condition);
    EXPECT_TRUE(document().arranger().arrange(arrangement));
    EXPECT_THAT(messages(), IsEmpty());
    return rows();
  }
};

TEST_F(DocumentArrangementTest, TheRecordsComeInTheOrderAndTheCurrentOneStaysSo) {
  openBooks();
  window().grid.selected = 3;
  ASSERT_TRUE(document().arranger().arrange(ordered(L"Title")));
  EXPECT_THAT(rows(), ElementsAre(L"A", L"b", L"c"));
  EXPECT_EQ(currentRecord, 3u);
  ASSERT_TRUE(document().arranger().arrange(ordered(L"Title", true)));
  EXPECT_THAT(rows(), ElementsAre(L"c", L"b", L"A"));
  EXPECT_EQ(window().bar.positionTip, L"Ordered by Title (descending)");
  EXPECT_STREQ(document().sqlText().text(), L"Select * from [Books] ORDER BY quivane_fold([Title]) DESC");
  ASSERT_TRUE(document().arranger().arrange({}));
  EXPECT_THAT(rows(), ElementsAre(L"b", L"A", L"c"));
  EXPECT_EQ(window().bar.positionTip, L"");
}

TEST_F(DocumentArrangementTest, ARecordThatIsNotShownGivesWayToTheFirst) {
  openBooks();
  window().grid.selected = 3;
  ASSERT_TRUE(document().arranger().arrange(only(L"Title", Kind::containing, L"a")));
  EXPECT_THAT(rows(), ElementsAre(L"A"));
  EXPECT_EQ(currentRecord, 1u);
  ASSERT_TRUE(document().arranger().arrange(only(L"Title", Kind::containing, L"nothing")));
  EXPECT_EQ(currentRecord, 0u);
  EXPECT_EQ(recordCount, 0u);
}

TEST_F(DocumentArrangementTest, AFormThatHadNoRecordsHasEditorsOnceThereAreSomeAgain) {
  openBooks();
  ASSERT_TRUE(document().arranger().arrange(only(L"Title", Kind::containing, L"nothing")));
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().sight(), "form: no editors");
  document().setViewMode(ViewMode::list);
  ASSERT_TRUE(document().arranger().arrange({}));
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().sight(), "form: record 1");
  EXPECT_EQ(value(), L"b");
}

TEST_F(DocumentArrangementTest, WithoutRecordsTheFormKeepsNoEditorsOfOtherFields) {
  openBooks(ViewMode::form);
  ASSERT_EQ(window().form.fields.size(), 6u);
  document().setViewMode(ViewMode::list);
  runStatements(path(), {L"ALTER TABLE Books ADD COLUMN Shelf Text"});
  ASSERT_TRUE(document().arranger().arrange(only(L"Title", Kind::containing, L"nothing")));
  document().setViewMode(ViewMode::form);
  document().setViewMode(ViewMode::list);
  ASSERT_TRUE(document().arranger().arrange({}));
  document().setViewMode(ViewMode::form);
  EXPECT_EQ(window().form.fields.size(), 7u);
  EXPECT_EQ(window().sight(), "form: record 1");
}

TEST_F(DocumentArrangementTest, TheValueOfEveryKindIsFoundAgain) {
  openBooks();
  EXPECT_THAT(sameAs(1, 0), ElementsAre(L"A"));
  EXPECT_THAT(sameAs(1, 1), ElementsAre(L"A"));
  EXPECT_THAT(sameAs(0, 2), ElementsAre(L"b")) << "a date";
  EXPECT_THAT(sameAs(1, 2), ElementsAre(L"A")) << "none";
  EXPECT_THAT(sameAs(2, 2), ElementsAre(L"c")) << "a text where a date should be";
  EXPECT_THAT(sameAs(0, 3), ElementsAre(L"b", L"c")) << "whatever the file holds for true";
  EXPECT_THAT(sameAs(1, 3), ElementsAre(L"A"));
  EXPECT_THAT(sameAs(0, 4), ElementsAre(L"b")) << "bytes";
  EXPECT_THAT(sameAs(1, 4), ElementsAre(L"A"));
  EXPECT_THAT(sameAs(2, 4), ElementsAre(L"c"));
  EXPECT_THAT(sameAs(0, 5), ElementsAre(L"b")) << "a double";
}

TEST_F(DocumentArrangementTest, AnOddValueIsFoundAgainToTheByte) {
  runStatements(path(), {L"DELETE FROM Books",
                         L"INSERT INTO Books (Title, Pages) VALUES ('it''s; -- %_', 9223372036854775807), "
                         L"('a' || char(0) || 'b', 9223372036854775806), (char(13, 10), -1), "
                         L"('x', 9223372036854775807)"});
  openBooks();
  EXPECT_EQ(sameAs(0, 0).size(), 1u);
  EXPECT_EQ(sameAs(1, 0).size(), 1u);
  EXPECT_EQ(sameAs(2, 0).size(), 1u);
  EXPECT_EQ(sameAs(0, 1).size(), 2u);
  EXPECT_EQ(sameAs(1, 1).size(), 1u);
}

TEST_F(DocumentArrangementTest, AValueThatIsTooLongIsRefused) {
  runStatements(path(), {L"UPDATE Books SET Title = hex(zeroblob(6000))"});
  openBooks();
  Arrangement::Condition condition;
  EXPECT_FALSE(document().arranger().readChosenValue(0, condition));
}

TEST_F(DocumentArrangementTest, WhatCantBeOpenedLeavesEverything) {
  openBooks();
  window().grid.selected = 1;
  EXPECT_FALSE(document().arranger().arrange(ordered(L"No such field")));
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"The records could not be ordered or filtered.\n"));
  EXPECT_THAT(rows(), ElementsAre(L"b", L"A", L"c"));
  EXPECT_TRUE(document().arranger().present().isEmpty());
}

TEST_F(DocumentArrangementTest, ANameInWhichBracketsEndIsStillANameAndNoText) {
  runStatements(path(), {L"CREATE TABLE 'Odd' (\"a]b`c\" Text)", L"INSERT INTO Odd VALUES ('2'), ('1')"});
  open();
  document().openTableSelection(kBooks + 1);
  document().setViewMode(ViewMode::list);
  EXPECT_TRUE(document().arranger().arrange(ordered(L"a]b`c")));
  EXPECT_THAT(rows(), ElementsAre(L"1", L"2"));
  EXPECT_FALSE(document().arranger().arrange(ordered(L"x]y"))) << "else a text that orders nothing";
}

TEST_F(DocumentArrangementTest, EachTableKeepsItsOwnAlsoAtTheNextStart) {
  openBooks();
  document().arranger().arrange(ordered(L"Title"));
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  document().setViewMode(ViewMode::list);
  EXPECT_TRUE(document().arranger().present().isEmpty());
  EXPECT_EQ(window().bar.positionTip, L"");
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(kBooks);
  document().setViewMode(ViewMode::list);
  EXPECT_THAT(rows(), ElementsAre(L"A", L"b", L"c"));
  document().closeDatabase();
  restart();
  EXPECT_EQ(document().restoreSession(), RestoreResult::records);
  EXPECT_EQ(value(), L"A");
}

TEST_F(DocumentArrangementTest, AnyFieldMeansTheFieldsThatThereAreAtTheOpening) {
  openBooks();
  document().arranger().arrange(only(nullptr, Kind::containing, L"2.5"));
  EXPECT_THAT(rows(), ElementsAre(L"A"));
  document().closeDatabase();
  restart();
  runStatements(path(), {L"ALTER TABLE Books ADD COLUMN More Text",
                         L"UPDATE Books SET More = '2.50' WHERE Title = 'c'"});
  openBooks();
  EXPECT_THAT(rows(), ElementsAre(L"A", L"c"));
}

TEST_F(DocumentArrangementTest, WhereTheFieldsCantBeReadNowItIsKeptForLater) {
  openBooks();
  ASSERT_TRUE(document().arranger().arrange(only(nullptr, Kind::containing, L"c")));
  ASSERT_THAT(rows(), ElementsAre(L"c"));
  document().setViewMode(ViewMode::tables);
  document().openTableSelection(0);
  {
    const auto lock = lockExclusively(path().wstring());
    ASSERT_TRUE(lock->isHeld());
    document().openTableSelection(kBooks);
    document().busyOver();
    document().setViewMode(ViewMode::form);
    document().busyOver();
    EXPECT_FALSE(document().isRecordsetOpen());
    EXPECT_THAT(window().prompts.takeTexts(),
                ElementsAre(L"The records could not be opened.\nAnother program is using the database."));
  }
  document().setViewMode(ViewMode::list);
  EXPECT_THAT(rows(), ElementsAre(L"c"));
  restart();
  openBooks();
  EXPECT_THAT(rows(), ElementsAre(L"c")) << "it stays kept";
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentArrangementTest, OneThatNoLongerFitsIsGivenUpAndTold) {
  openBooks();
  document().arranger().arrange(ordered(L"Title"));
  document().closeDatabase();
  restart();
  runStatements(path(), {L"ALTER TABLE Books DROP COLUMN Title"});
  openBooks();
  EXPECT_THAT(rows(0), ElementsAre(L"2", L"10", L"1"));
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text,
              testing::StartsWith(L"The order and filter don't fit the records any more"));
  document().closeDatabase();
  restart();
  openBooks();
  EXPECT_THAT(messages(), IsEmpty()) << "it is forgotten";
}

TEST_F(DocumentArrangementTest, AQueryWithANoteBehindItIsOrderedFilteredAndCalculated) {
  runStatements(path(),
                {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                 L"INSERT INTO QuivaneQueries VALUES ('noted', 'Select * from Books; -- all of them')"});
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  ASSERT_THAT(rows(), ElementsAre(L"b", L"A", L"c"));
  EXPECT_TRUE(document().arranger().arrange(ordered(L"Title")));
  EXPECT_THAT(rows(), ElementsAre(L"A", L"b", L"c"));
  EXPECT_TRUE(document().arranger().arrange(only(L"Title", Kind::containing, L"b")));
  EXPECT_THAT(rows(), ElementsAre(L"b"));
  document().arranger().calculate(0);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"Column 'Title'\n\n"));
}

TEST_F(DocumentArrangementTest, OfTwoColumnsOfOneNameTheChosenOneIsMeant) {
  runStatements(path(),
                {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                 L"INSERT INTO QuivaneQueries VALUES ('pairs', 'Select x.Pages, y.title, x.Title, "
                 L"y.Pages from Books x join Books y on x.Pages < y.Pages order by x.Pages, y.Pages')"});
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  ASSERT_THAT(rows(0), ElementsAre(L"1", L"1", L"2"));
  ASSERT_THAT(rows(3), ElementsAre(L"2", L"10", L"10"));
  ASSERT_THAT(rows(2), ElementsAre(L"c", L"c", L"b"));
  Arranger& arranger = document().arranger();
  const std::optional<std::wstring> pages = arranger.arrangedName(3);
  ASSERT_TRUE(pages);
  EXPECT_NE(*pages, L"Pages");
  EXPECT_EQ(arranger.arrangedName(1), L"title");
  EXPECT_EQ(arranger.arrangedName(0), L"Pages");
  EXPECT_TRUE(arranger.arrange(ordered(pages->c_str(), true)));
  EXPECT_THAT(rows(3), ElementsAre(L"10", L"10", L"2"));
  EXPECT_EQ(arranger.arrangedName(3), pages) << "also once it is arranged";
  EXPECT_TRUE(arranger.arrange({}));
  window().tapRow(1);
  Arrangement::Condition value;
  ASSERT_TRUE(arranger.readChosenValue(3, value));
  Arrangement filtered;
  filtered.require(value);
  EXPECT_TRUE(arranger.arrange(filtered));
  EXPECT_THAT(rows(3), ElementsAre(L"2"));
  EXPECT_TRUE(arranger.arrange(only(nullptr, Kind::containing, L"b")));
  EXPECT_THAT(rows(2), ElementsAre(L"c", L"b")) << "in either of them";
  EXPECT_TRUE(arranger.arrange({}));
  arranger.calculate(3);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"Column 'Pages'\n\n")) << "as its heading";
  EXPECT_THAT(messages()[0].text, testing::HasSubstr(L"22")) << "2 + 10 + 10";
}

TEST_F(DocumentArrangementTest, OfSixColumnsOfOneNameNoneIsTakenForAnother) {
  runStatements(path(),
                {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                 L"INSERT INTO QuivaneQueries VALUES ('many', 'Select a.Title, b.Title, c.Title, d.Title, "
                 L"e.Title, f.Title, f.Pages from Books a, Books b, Books c, Books d, Books e, Books f')"});
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  const Arranger& arranger = document().arranger();
  EXPECT_EQ(arranger.arrangedName(0), L"Title");
  EXPECT_EQ(arranger.arrangedName(6), L"Pages");
  EXPECT_THAT(messages(), IsEmpty());
  EXPECT_EQ(arranger.arrangedName(5), std::nullopt);
  EXPECT_THAT(window().prompts.takeTexts(),
              ElementsAre(L"The records could not be ordered or filtered.\nTwo columns are called 'Title'. "
                          L"Give one of them another name in the query."));
  EXPECT_FALSE(arranger.arrange(only(nullptr, Kind::containing, L"b")));
  EXPECT_EQ(window().prompts.takeTexts().size(), 1u);
}

TEST_F(DocumentArrangementTest, ASavedQueryIsOrderedAndStaysUpdatable) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  ASSERT_THAT(rows(), ElementsAre(L"20", L"30"));
  ASSERT_TRUE(document().arranger().arrange(ordered(L"a", true, Letters::asTheyAre)));
  EXPECT_THAT(rows(), ElementsAre(L"30", L"20"));
  EXPECT_FALSE(document().isFieldReadOnly(0));
  document().closeDatabase();
  restart();
  EXPECT_EQ(document().restoreSession(), RestoreResult::records);
  EXPECT_EQ(value(), L"30") << "not in parentheses twice";
  EXPECT_STREQ(document().sqlText().text(),
               L"SELECT * FROM (Select * from [First One] where a > 10\n) ORDER BY [a] DESC");
}

TEST_F(DocumentArrangementTest, OnTheFormTheRecordStaysAndWhatIsTypedIsStoredFirst) {
  openBooks(ViewMode::form);
  document().moveLastRecord();
  ASSERT_EQ(value(), L"c");
  window().form.fields[0].content = L"0";
  ASSERT_TRUE(document().arranger().arrange(ordered(L"Title")));
  EXPECT_EQ(value(), L"0");
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_THAT(stored(L"SELECT Title FROM Books ORDER BY Title"), ElementsAre(L"0", L"A", L"b"));
}

TEST_F(DocumentArrangementTest, WhereNoKeyTellsTheRecordAnotherOneIsNotTakenForIt) {
  openBooks(ViewMode::list);
  runStatements(path(), {L"CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)",
                         L"INSERT INTO QuivaneQueries VALUES ('counted', 'Select Title, count(*) from Books "
                         L"group by Title')"});
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().setViewMode(ViewMode::list);
  ASSERT_THAT(rows(), ElementsAre(L"A", L"b", L"c"));
  window().tapRow(3);
  ASSERT_TRUE(document().arranger().arrange(ordered(L"Title", true)));
  EXPECT_THAT(rows(), ElementsAre(L"c", L"b", L"A"));
  EXPECT_EQ(currentRecord, 1u) << "the third is another one now";
}

TEST_F(DocumentArrangementTest, WhatCantBeStoredKeepsEverything) {
  openBooks(ViewMode::form);
  runStatements(path(),
                {L"CREATE TRIGGER never BEFORE UPDATE ON Books BEGIN SELECT RAISE(ABORT, 'never'); END"});
  window().form.fields[0].content = L"changed";
  EXPECT_FALSE(document().arranger().arrange(ordered(L"Title")));
  EXPECT_TRUE(document().arranger().present().isEmpty());
  EXPECT_EQ(currentRecord, 1u);
  window().prompts.agrees = true;
  EXPECT_TRUE(document().canLeaveRecord());
}

TEST_F(DocumentArrangementTest, ARecordThatNoLongerFitsStaysUntilTheRecordsAreOpenedAnew) {
  openBooks();
  document().arranger().arrange(only(L"Title", Kind::containing, L"b"));
  document().setViewMode(ViewMode::form);
  window().form.fields[0].content = L"other";
  document().setViewMode(ViewMode::list);
  EXPECT_THAT(rows(), ElementsAre(L"other"));
  document().arranger().arrange(document().arranger().present());
  EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(DocumentArrangementTest, AQueryIsKeptAndWhatIsInUseStaysSo) {
  openBooks();
  document().arranger().arrange(ordered(L"Title"));
  EXPECT_TRUE(document().tryQuery(document().sqlText()));
  EXPECT_FALSE(document().tryQuery(L"SELECT nothing"));
  EXPECT_THAT(rows(), ElementsAre(L"A", L"b", L"c")) << "a trial leaves them";
  ASSERT_TRUE(document().keepQuery({L"sorted", document().sqlText()}));
  EXPECT_STREQ(document().tableName().text(), L"Books");
  EXPECT_THAT(rows(), ElementsAre(L"A", L"b", L"c"));
  document().setViewMode(ViewMode::queries);
  EXPECT_THAT(window().queries->items, ElementsAre(L"sorted"));
}

TEST_F(DocumentArrangementTest, AnExportOffersWhatIsShownAndThenAllOfIt) {
  openBooks();
  document().arranger().arrange(ordered(L"Title"));
  document().arranger().arrange(only(L"Pages", Kind::containing, L"1"));
  window().prompts.file = String(file("out.jsonl").c_str());
  document().exportRecords();
  ASSERT_GE(window().prompts.offered.size(), 2u);
  EXPECT_EQ(window().prompts.offered[0], L"Books (as shown)");
  EXPECT_EQ(window().prompts.offered[1], L"Books (in use)");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"2 records exported"));
  window().prompts.source = 1;
  document().exportRecords();
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_THAT(messages()[1].text, testing::StartsWith(L"3 records exported"));
}

// ---- Calculated

TEST_F(DocumentArrangementTest, EachColumnIsCalculatedByItsKind) {
  openBooks();
  for (std::uint32_t field = 0; field < 6; ++field) document().arranger().calculate(field);
  EXPECT_THAT(
      window().prompts.takeTexts(),
      ElementsAre(L"Column 'Title'\n\nRecords: 3\nNot empty: 3\nLeast: A\nGreatest: c",
                  L"Column 'Pages'\n\nRecords: 3\nNot empty: 3\nSum: 13\nMean: 4.33333333333333\n"
                  L"Least: 1\nGreatest: 10",
                  L"Column 'Born'\n\nRecords: 3\nNot empty: 2\nLeast: 3/9/2001\nGreatest: March 9, 2001",
                  L"Column 'Old'\n\nRecords: 3\nTrue: 2\nFalse: 1",
                  L"Column 'Raw'\n\nRecords: 3\nNot empty: 2\nLeast: x\nGreatest: x",
                  L"Column 'Price'\n\nRecords: 3\nNot empty: 2\nSum: 2.6\nMean: 1.3\nLeast: 0.100000\n"
                  L"Greatest: 2.500000"));
}

TEST_F(DocumentArrangementTest, OnlyTheRecordsThatAreShownAreCalculated) {
  openBooks();
  document().arranger().arrange(only(L"Title", Kind::containing, L"b"));
  document().arranger().calculate(1);
  document().arranger().arrange(only(L"Title", Kind::containing, L"nothing"));
  document().arranger().calculate(1);
  EXPECT_THAT(
      window().prompts.takeTexts(),
      ElementsAre(L"Column 'Pages'\n\nRecords: 1\nNot empty: 1\nSum: 2\nMean: 2.0\nLeast: 2\nGreatest: 2",
                  L"Column 'Pages'\n\nRecords: 0\nNot empty: 0"));
}

TEST_F(DocumentArrangementTest, WholeNumbersAreAddedUpExactlyWhateverTheirSumIs) {
  runStatements(path(), {L"UPDATE Books SET Pages = 9223372036854775807"});
  openBooks();
  document().arranger().calculate(1);
  runStatements(path(), {L"UPDATE Books SET Pages = -9223372036854775807 - 1"});
  document().arranger().calculate(1);
  const std::vector<std::wstring> texts = window().prompts.takeTexts();
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_THAT(texts[0], testing::HasSubstr(L"Sum: 27670116110564327421\n"));
  EXPECT_THAT(texts[1], testing::HasSubstr(L"Sum: -27670116110564327424\n"));
  EXPECT_THAT(texts[1], testing::HasSubstr(L"Least: -9223372036854775808\n"));
}

TEST_F(DocumentArrangementTest, WhatIsNoNumberIsCountedApart) {
  runStatements(path(), {L"UPDATE Books SET Pages = 'many' WHERE Title = 'b'",
                         L"UPDATE Books SET Pages = 0.5 "
                         L"WHERE Title = 'c'"});
  openBooks();
  document().arranger().calculate(1);
  EXPECT_THAT(
      window().prompts.takeTexts(),
      ElementsAre(L"Column 'Pages'\n\nRecords: 3\nNot empty: 3\nNot numbers: 1\nSum: 10.5\nMean: 5.25\n"
                  L"Least: 0.5\nGreatest: 10"));
}

TEST_F(DocumentArrangementTest, AColumnThatCantBeCalculatedIsTold) {
  openBooks();
  runStatements(path(), {L"DROP TABLE Books"});
  document().arranger().calculate(1);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, testing::StartsWith(L"The column could not be calculated.\n"));
}

}  // namespace
