// Records between the open database and other files.
#include "resources/command_ids.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/document/document_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class DocumentExchangeTest : public DocumentTest {
 protected:
  void choose(const std::filesystem::path& chosen) { window().prompts.file = String(chosen.c_str()); }
  std::filesystem::path write(const std::string& content, std::string_view name = "more.csv") {
    testsupport::writeFile(file(name), content);
    return file(name);
  }
  std::unique_ptr<ImportFile> openImport(const std::filesystem::path& path, const wchar_t* table) {
    std::unique_ptr<ImportFile> import = document().openImport(path.c_str());
    if (!import) return import;
    import->setTable(table);
    const Outcome examined = import->examine();
    EXPECT_TRUE(examined) << std::filesystem::path(examined.reason().text()).string();
    return import;
  }
  bool isOffered(int command) { return document().isOffered(command); }
};

TEST_F(DocumentExchangeTest, ImportNeedsADatabaseAndExportRecordsBesides) {
  EXPECT_FALSE(isOffered(ID_IMPORT));
  EXPECT_FALSE(isOffered(ID_EXPORT));
  open();
  EXPECT_TRUE(isOffered(ID_IMPORT));
  EXPECT_TRUE(isOffered(ID_EXPORT));
  document().closeDatabase();
  EXPECT_FALSE(isOffered(ID_IMPORT));
  EXPECT_FALSE(isOffered(ID_EXPORT));
  EXPECT_EQ(document().openImport(L"none.csv"), nullptr);
  document().exportRecords();
  EXPECT_THAT(window().prompts.filesAskedFor, IsEmpty());
}

TEST_F(DocumentExchangeTest, TheTableInUseIsExported) {
  open();
  choose(file("out.csv"));
  document().exportRecords();
  EXPECT_EQ(testsupport::contentOf(file("out.csv")),
            "\xEF\xBB\xBF"
            "a\r\n10\r\n20\r\n30\r\n");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_EQ(messages()[0].text, L"3 records exported as CSV to\n" + file("out.csv").wstring());
  EXPECT_EQ(messages()[0].kind, (std::variant<Notice, Question>(Notice::remark)));
}

TEST_F(DocumentExchangeTest, TheQueryInUseIsExported) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  choose(file("out.json"));
  document().exportRecords();
  EXPECT_THAT(testsupport::contentOf(file("out.json")), HasSubstr("{\"a\":20}"));
  EXPECT_THAT(testsupport::contentOf(file("out.json")), testing::Not(HasSubstr("{\"a\":10}")));
}

TEST_F(DocumentExchangeTest, AnyTableOrQueryCanBeExportedTheOneInUseFirst) {
  addQueries();
  open();
  choose(file("out.jsonl"));
  window().prompts.source = 2;
  document().exportRecords();
  EXPECT_THAT(window().prompts.offered, ElementsAre(L"First One (in use)", L"Second", L"Empty",
                                                    L"QuivaneQueries", L"big (query)", L"wrong (query)"));
  EXPECT_EQ(testsupport::contentOf(file("out.jsonl")), "");
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, StartsWith(L"0 records exported as JSON, a record a line, to\n"));
  window().prompts.source = 4;
  document().exportRecords();
  EXPECT_EQ(testsupport::contentOf(file("out.jsonl")), "{\"a\":20}\n{\"a\":30}\n");
}

TEST_F(DocumentExchangeTest, TheQueryInUseIsOfferedOnce) {
  addQueries();
  open();
  document().setViewMode(ViewMode::queries);
  document().openQuerySelection(0);
  document().exportRecords();
  EXPECT_THAT(window().prompts.offered, ElementsAre(L"big (query, in use)", L"First One", L"Second", L"Empty",
                                                    L"QuivaneQueries", L"wrong (query)"));
}

TEST_F(DocumentExchangeTest, AQueryThatDoesNotRunIsTold) {
  addQueries();
  open();
  choose(file("out.csv"));
  window().prompts.source = 5;
  document().exportRecords();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, StartsWith(L"The records could not be exported.\n"));
  EXPECT_FALSE(std::filesystem::exists(file("out.csv")));
}

TEST_F(DocumentExchangeTest, WhoChoosesNothingToExportIsNotAskedForAFile) {
  open();
  window().prompts.source.reset();
  document().exportRecords();
  EXPECT_THAT(window().prompts.filesAskedFor, IsEmpty());
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentExchangeTest, WhatIsTypedIsStoredBeforeItIsExported) {
  open();
  document().setViewMode(ViewMode::form);
  window().form.fields.front().content = L"11";
  choose(file("out.csv"));
  document().exportRecords();
  EXPECT_EQ(testsupport::contentOf(file("out.csv")),
            "\xEF\xBB\xBF"
            "a\r\n11\r\n20\r\n30\r\n");
}

TEST_F(DocumentExchangeTest, WhatCantBeStoredKeepsTheUserFromExporting) {
  runStatements(path(),
                {L"CREATE TRIGGER no BEFORE UPDATE ON [First One] BEGIN SELECT raise(ABORT, 'no'); END"});
  open();
  document().setViewMode(ViewMode::form);
  window().form.fields.front().content = L"11";
  document().exportRecords();
  EXPECT_THAT(window().prompts.filesAskedFor, IsEmpty());
  EXPECT_EQ(window().form.fields.front().content, L"11");
  EXPECT_EQ(openImport(write("a\n1\n"), L"New"), nullptr);
  EXPECT_EQ(window().form.fields.front().content, L"11");
}

TEST_F(DocumentExchangeTest, ACancelledChoiceExportsNothing) {
  open();
  document().exportRecords();
  EXPECT_THAT(window().prompts.filesAskedFor, ElementsAre(FileChoice::exportTo));
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentExchangeTest, AFileThatCantBeWrittenIsTold) {
  open();
  choose(file("no folder") / "out.csv");
  document().exportRecords();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, StartsWith(L"The records could not be exported.\n"));
}

TEST_F(DocumentExchangeTest, TheOpenDatabaseIsNotReplaced) {
  open();
  choose(path());
  document().exportRecords();
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"is in use and is not replaced."));
  EXPECT_TRUE(document().moveFirstRecord() == 0 && document().isDatabaseOpen());
}

TEST_F(DocumentExchangeTest, ACopiedRowHasTheValuesOfTheFile) {
  runStatements(path(), {L"CREATE TABLE Exact (r Float, t Text, n Text, e Text)",
                         L"INSERT INTO Exact VALUES (1.5, 'first', 'x', 'x')",
                         L"INSERT INTO Exact VALUES (0.1234567890123, "
                         L"replace(hex(zeroblob(20000)), '00', 'ab'), NULL, '')"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::list);
  window().grid.selected = 2;
  std::wstring text;
  EXPECT_TRUE(document().readChosenRow(text));
  std::wstring longText;
  for (int i = 0; i < 20000; ++i) longText += L"ab";
  EXPECT_EQ(text, L"0.1234567890123\t" + longText + L"\t\t\"\"\r\n");
}

TEST_F(DocumentExchangeTest, ARowThatCantBeATextIsNotCopied) {
  runStatements(path(), {L"CREATE TABLE Odd (t Text)", L"INSERT INTO Odd VALUES (CAST(x'80' AS TEXT))"});
  open();
  document().openTableSelection(3);
  std::wstring text = L"before";
  EXPECT_TRUE(document().readChosenRow(text)) << "nothing is chosen on the Tables page";
  document().setViewMode(ViewMode::list);
  const Outcome read = document().readChosenRow(text);
  EXPECT_FALSE(read);
  EXPECT_STREQ(read.reason().text(), L"The text of t is not made of characters alone.");
  EXPECT_EQ(text, L"before");
}

TEST_F(DocumentExchangeTest, ANewTableIsListedAndChosen) {
  open();
  const auto import = openImport(write("Name,Age\nAda,36\n"), L"People");
  ASSERT_NE(import, nullptr);
  ImportCounts counts;
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(counts.added, 1);
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Second", L"Empty", L"People"));
  EXPECT_EQ(window().tables->chosen(), L"People");
}

TEST_F(DocumentExchangeTest, TheGridShowsWhatWasAdded) {
  open();
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(window().sight(), "grid: row 1 of 3");
  const auto import = openImport(write("a\n40\n50\n"), L"First One");
  ImportCounts counts;
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(document().viewMode(), ViewMode::list);
  EXPECT_EQ(recordCount, 5u);
  EXPECT_EQ(window().sight(), "grid: row 1 of 5");
}

TEST_F(DocumentExchangeTest, TheUserStaysWhereHeWas) {
  open();
  document().setViewMode(ViewMode::form);
  document().moveNextRecord();
  const auto import = openImport(write("a\n40\n50\n"), L"First One");
  ImportCounts counts;
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_EQ(value(), L"20");
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(currentRecord, 2u);
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(window().sight(), "grid: row 2 of 7");
}

TEST_F(DocumentExchangeTest, WhereRecordsHaveGoneMeanwhileHeIsAtTheLast) {
  open();
  document().setViewMode(ViewMode::form);
  document().moveLastRecord();
  const auto import = openImport(write("a\nx\n"), L"First One");
  runStatements(path(), {L"DELETE FROM [First One] WHERE a > 10"});
  ImportCounts counts;
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(value(), L"10");
}

TEST_F(DocumentExchangeTest, TheFormShowsWhatTheTableHoldsNow) {
  runStatements(path(), {L"CREATE TABLE Keyed (id INTEGER PRIMARY KEY, name TEXT)",
                         L"INSERT INTO Keyed VALUES (1, 'old')"});
  open();
  document().openTableSelection(3);
  document().setViewMode(ViewMode::form);
  auto import = document().openImport(write("id,name\n1,new\n").c_str());
  ASSERT_NE(import, nullptr);
  import->setTable(L"Keyed");
  import->setReplaces(true);
  ASSERT_TRUE(import->examine());
  ImportCounts counts;
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(counts.replaced, 1);
  EXPECT_EQ(document().viewMode(), ViewMode::form);
  ASSERT_EQ(window().form.fields.size(), 2u);
  EXPECT_EQ(window().form.fields[1].shown, L"new");
}

TEST_F(DocumentExchangeTest, AnImportThatAnotherProgramKeepsOutIsToldAndChangesNothing) {
  open();
  const auto import = openImport(write("a\n40\n"), L"First One");
  runStatements(path(), {L"DROP TABLE [First One]"});
  ImportCounts counts{7, 7, 7};
  EXPECT_FALSE(document().runImport(*import, false, counts));
  EXPECT_EQ(counts.added, 7);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, StartsWith(L"The file could not be imported.\n"));
  EXPECT_THAT(window().tables->items, ElementsAre(L"Second", L"Empty"));
}

TEST_F(DocumentExchangeTest, BehindALockOneMessageSaysWhyNothingWasImported) {
  open();
  const auto import = openImport(write("a\n40\n"), L"First One");
  window().prompts.goesOnBusy = [](Progress::What) { return false; };
  const auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  ImportCounts counts;
  EXPECT_FALSE(document().runImport(*import, false, counts));
  EXPECT_THAT(window().prompts.takeTexts(),
              ElementsAre(L"The file could not be imported.\nAnother program is using the database."));
  EXPECT_THAT(window().tables->items, ElementsAre(L"First One", L"Second", L"Empty"));
}

TEST_F(DocumentExchangeTest, TheUserStopsAnImportAndNothingIsStored) {
  std::string content = "a\n";
  for (int i = 0; i < 20000; ++i) content += "1\n";
  open();
  const auto import = openImport(write(content), L"First One");
  std::vector<Progress::What> asked;
  window().prompts.goesOnBusy = [&](Progress::What what) {
    asked.push_back(what);
    EXPECT_TRUE(document().isBusy());
    return false;
  };
  ImportCounts counts;
  EXPECT_FALSE(document().runImport(*import, false, counts));
  EXPECT_THAT(asked, Contains(Progress::What::importing));
  window().prompts.goesOnBusy = [](Progress::What) { return true; };
  document().setViewMode(ViewMode::list);
  EXPECT_EQ(recordCount, 3u);
}

TEST_F(DocumentExchangeTest, AFileThatHasGoneIsTold) {
  open();
  EXPECT_EQ(document().openImport(file("none.csv").c_str()), nullptr);
  ASSERT_EQ(messages().size(), 1u);
  EXPECT_THAT(messages()[0].text, HasSubstr(L"none.csv could not be opened.\n"));
}

TEST_F(DocumentExchangeTest, RecordsThatCantBeTakenAreNamed) {
  open();
  const auto import = openImport(write("a\n40\nforty\n50\n"), L"First One");
  ImportCounts counts;
  EXPECT_TRUE(document().runImport(*import, false, counts));
  EXPECT_EQ(counts.added, 0);
  EXPECT_EQ(counts.leftOut, 1);
  ASSERT_EQ(import->rejected().size(), 1u);
  EXPECT_EQ(import->rejected()[0].line, 3);
  EXPECT_TRUE(document().runImport(*import, true, counts));
  EXPECT_EQ(counts.added, 2);
}

}  // namespace
