// Records of other files into the database.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/automation/support/exchange_fixture.h"

namespace automationtest {
namespace {

constexpr HRESULT kIllegal = objectModelError(3219);
constexpr HRESULT kBadArgument = objectModelError(3001);
constexpr HRESULT kNoItem = objectModelError(3265);
constexpr HRESULT kCannotOpen = objectModelError(3002);
constexpr long kAllOrNothing = 0;
constexpr long kGoodRecords = 1;

struct Counts {
  hyper added = -1;
  hyper replaced = -1;
  hyper leftOut = -1;
  bool operator==(const Counts&) const = default;
};

class Import : public ExchangeTest {
 protected:
  ComPtr<IAdoceImport> open(const std::string& content, const std::wstring& name = L"People.csv") {
    writeFile(pathOf(name), content);
    ComPtr<IAdoceImport> import;
    EXPECT_EQ(connection_->OpenImport(text(pathOf(name)).get(), import.put()), S_OK);
    return import;
  }
  ComPtr<IAdoceImport> examined(const std::string& content) {
    ComPtr<IAdoceImport> import = open(content);
    EXPECT_EQ(import->Examine(nullptr), S_OK);
    return import;
  }
  static std::wstring columnOf(IAdoceImport* import, long index) {
    UniqueBstr source;
    UniqueBstr target;
    UniqueBstr type;
    if (FAILED(import->GetColumn(index, source.put(), target.put(), type.put()))) return L"none";
    return std::wstring(source.get()) + L">" + target.get() + L":" + type.get();
  }
  static Counts run(IAdoceImport* import, long mode = kAllOrNothing, HRESULT expected = S_OK) {
    Counts counts;
    EXPECT_EQ(import->Run(mode, nullptr, &counts.added, &counts.replaced, &counts.leftOut), expected);
    return counts;
  }
  static std::vector<std::wstring> rejects(IAdoceImport* import) {
    std::vector<std::wstring> all;
    long count = -1;
    EXPECT_EQ(import->get_RejectCount(&count), S_OK);
    for (long i = 0; i < count; ++i) {
      hyper line = 0;
      UniqueBstr reason;
      EXPECT_EQ(import->GetReject(i, &line, reason.put()), S_OK);
      all.push_back(std::to_wstring(line) + L": " + reason.get());
    }
    return all;
  }
  std::vector<std::string> tables() const {
    return stored("SELECT name FROM sqlite_schema WHERE type = 'table'");
  }
};

TEST_F(Import, AFileIsExaminedAndStored) {
  const auto import = examined("Name;Age;Zip\r\nAda;36;00123\r\nBo;;4567\r\n");
  long header = -1;
  VARIANT_BOOL isNew = VARIANT_FALSE;
  UniqueBstr delimiter;
  UniqueBstr table;
  EXPECT_EQ(import->get_Header(&header), S_OK);
  EXPECT_EQ(import->get_IsNewTable(&isNew), S_OK);
  EXPECT_EQ(import->get_Delimiter(delimiter.put()), S_OK);
  EXPECT_EQ(import->get_Table(table.put()), S_OK);
  EXPECT_EQ(header, 1);
  EXPECT_EQ(isNew, VARIANT_TRUE);
  EXPECT_STREQ(delimiter.get(), L";");
  EXPECT_STREQ(table.get(), L"People");
  EXPECT_EQ(columnOf(import.get(), 0), L"Name>Name:Text");
  EXPECT_EQ(columnOf(import.get(), 1), L"Age>Age:Integer");
  EXPECT_EQ(columnOf(import.get(), 2), L"Zip>Zip:Text");
  EXPECT_EQ(columnOf(import.get(), 3), L"none");
  EXPECT_EQ(run(import.get()), (Counts{2, 0, 0}));
  EXPECT_THAT(stored("SELECT Name || ifnull(Age, '-') || Zip FROM People"),
              testing::ElementsAre("Ada3600123", "Bo-4567"));
}

TEST_F(Import, TypesAndColumnsAreChosen) {
  const auto import = examined("Name,Age\nAda,36\n");
  EXPECT_EQ(import->SetColumn(1, text(L"Text").get()), S_OK);
  EXPECT_EQ(columnOf(import.get(), 1), L"Age>Age:Text");
  EXPECT_EQ(import->SetColumn(0, text(L"").get()), S_OK);
  EXPECT_EQ(columnOf(import.get(), 0), L"Name>:Text");
  EXPECT_EQ(import->SetColumn(1, text(L"Text; DROP TABLE x").get()), kBadArgument);
  EXPECT_EQ(import->SetColumn(2, text(L"Text").get()), kNoItem);
  EXPECT_EQ(import->SetColumn(-1, text(L"Text").get()), kNoItem);
  run(import.get());
  EXPECT_THAT(stored("SELECT typeof(Age) FROM People"), testing::ElementsAre("text"));
  EXPECT_THAT(stored("SELECT name FROM pragma_table_info('People')"), testing::ElementsAre("Age"));
}

TEST_F(Import, WhatWasChosenOfAColumnStaysForAnotherTable) {
  const auto import = examined("Name,Age,Zip\nAda,36,1\n");
  EXPECT_EQ(import->SetColumn(0, nullptr), S_OK);
  EXPECT_EQ(import->SetColumn(1, text(L"Text").get()), S_OK);
  EXPECT_EQ(import->put_Table(text(L"Guests").get()), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(columnOf(import.get(), 0), L"Name>:Text");
  EXPECT_EQ(columnOf(import.get(), 1), L"Age>Age:Text");
  EXPECT_EQ(columnOf(import.get(), 2), L"Zip>Zip:Integer");
  ASSERT_EQ(execute(connection_.get(), L"CREATE TABLE There (Age integer, Zip integer)"), S_OK);
  EXPECT_EQ(import->put_Table(text(L"There").get()), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(columnOf(import.get(), 1), L"Age>Age:INTEGER") << "its types rule";
}

TEST_F(Import, WithoutAnyColumnNothingIsStored) {
  const auto import = examined("Name\nAda\n");
  EXPECT_EQ(import->SetColumn(0, nullptr), S_OK);
  run(import.get(), kAllOrNothing, kBadColumn);
  EXPECT_THAT(tables(), testing::IsEmpty());
}

TEST_F(Import, WhatATableHasNoPlaceForIsLeftOut) {
  ASSERT_EQ(execute(connection_.get(), L"CREATE TABLE People (Name varchar(20))"), S_OK);
  const auto import = examined("Name,Age\nAda,36\n");
  EXPECT_EQ(columnOf(import.get(), 1), L"Age>:");
  EXPECT_EQ(import->SetColumn(1, text(L"Integer").get()), kBadArgument);
  EXPECT_EQ(run(import.get()), (Counts{1, 0, 0}));
  EXPECT_THAT(stored("SELECT Name FROM People"), testing::ElementsAre("Ada"));
}

TEST_F(Import, RecordsAreReplacedByTheirKey) {
  SqliteFile(pathOf(L"test.cdb"))
      .run(
          "CREATE TABLE People (Id INTEGER PRIMARY KEY, Name TEXT);"
          "INSERT INTO People VALUES (1, 'old'), (2, 'stays')");
  const auto import = open("Id,Name\n1,new\n3,more\n");
  EXPECT_EQ(import->put_Replaces(VARIANT_TRUE), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(run(import.get()), (Counts{1, 1, 0}));
  EXPECT_THAT(stored("SELECT Id || Name FROM People"), testing::ElementsAre("1new", "2stays", "3more"));
}

TEST_F(Import, WhatCannotBeTakenIsToldByItsLine) {
  ASSERT_EQ(execute(connection_.get(), L"CREATE TABLE People (Name text, Age integer)"), S_OK);
  const auto import = examined("Name,Age\nAda,36\nBo,old\n\"C\nD\",1\nE,2,3\n");
  EXPECT_EQ(run(import.get()), (Counts{0, 0, 2}));
  EXPECT_THAT(stored("SELECT Name FROM People"), testing::IsEmpty());
  ASSERT_EQ(rejects(import.get()).size(), 2u);
  EXPECT_THAT(rejects(import.get()).front(), testing::StartsWith(L"3: Age: \"old\""));
  EXPECT_THAT(rejects(import.get()).back(), testing::StartsWith(L"6: there are 3 fields instead of 2"));
  EXPECT_EQ(run(import.get(), kGoodRecords), (Counts{2, 0, 2}));
  EXPECT_THAT(stored("SELECT Name FROM People"), testing::ElementsAre("Ada", "C\nD"));
}

TEST_F(Import, OnlyAThousandAreTold) {
  ASSERT_EQ(execute(connection_.get(), L"CREATE TABLE People (Age integer)"), S_OK);
  std::string content = "Age\n";
  for (int i = 0; i < 1500; ++i) content += "x\n";
  const auto import = examined(content);
  EXPECT_EQ(run(import.get()), (Counts{0, 0, 1500}));
  EXPECT_EQ(rejects(import.get()).size(), 1000u);
}

TEST_F(Import, AllOfThemCanBeSaved) {
  execute(connection_.get(), L"CREATE TABLE People (Name text, Age integer)");
  std::string content = "Name,Age\n";
  for (int i = 0; i < 1500; ++i) content += "\"a, b\",x\n";
  const auto import = examined(content);
  EXPECT_EQ(import->SaveRejects(text(pathOf(L"none.csv")).get()), S_OK);
  EXPECT_EQ(contentOf(pathOf(L"none.csv")), "\xEF\xBB\xBFLine,Reason,Fields\r\n")
      << "nothing was left out yet";
  EXPECT_EQ(run(import.get()), (Counts{0, 0, 1500}));
  const std::wstring list = pathOf(L"list.csv");
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(import->SaveRejects(text(list).get()), S_OK);
    const std::string saved = contentOf(list);
    EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 1501);
    EXPECT_TRUE(saved.ends_with(",\"a, b\",\"x\"\r\n")) << saved.substr(saved.size() - 100);
  }
  for (const wchar_t* const inUse : {L"test.cdb", L"People.csv"}) {
    EXPECT_EQ(import->SaveRejects(text(pathOf(inUse)).get()), objectModelError(3731));
  }
  EXPECT_EQ(contentOf(pathOf(L"People.csv")), content);
  EXPECT_EQ(import->SaveRejects(text(pathOf(L"no folder\\list.csv")).get()), objectModelError(3000));
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(import->SaveRejects(text(list).get()), S_OK);
  EXPECT_EQ(contentOf(list).size(), contentOf(pathOf(L"none.csv")).size())
      << "they were those of the last run";
}

TEST_F(Import, TheFormatIsFoundOutOrChosen) {
  const auto import = open("{\"a\":1}\n");
  const auto format = [&] {
    UniqueBstr name;
    EXPECT_EQ(import->get_Format(name.put()), S_OK);
    return std::wstring(name.get());
  };
  EXPECT_EQ(format(), L"");
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(format(), L"json");
  EXPECT_EQ(columnOf(import.get(), 0), L"a>a:Integer");
  EXPECT_EQ(import->put_Format(text(L"csv").get()), S_OK);
  EXPECT_EQ(format(), L"csv");
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_NE(columnOf(import.get(), 0), L"a>a:Integer");
  EXPECT_EQ(import->put_Format(text(L"xml").get()), kBadArgument);
  EXPECT_EQ(import->put_Format(nullptr), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(format(), L"json");
}

TEST_F(Import, ATextStandsForNull) {
  const auto import = open("Name,Age\nAda,-\n\"-\",4\n");
  UniqueBstr nullText;
  EXPECT_EQ(import->get_NullText(nullText.put()), S_OK);
  EXPECT_STREQ(nullText.get(), L"");
  EXPECT_EQ(import->put_NullText(text(L"-").get()), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(columnOf(import.get(), 1), L"Age>Age:Integer");
  EXPECT_EQ(run(import.get()), (Counts{2, 0, 0}));
  EXPECT_THAT(stored("SELECT quote(Name) || quote(Age) FROM People"),
              testing::ElementsAre("'Ada'NULL", "'-'4"));
}

TEST_F(Import, AKeyIsChosenOrIsThePrimaryOne) {
  SqliteFile(pathOf(L"test.cdb"))
      .run(
          "CREATE TABLE People (Id INTEGER PRIMARY KEY, Name TEXT, Town TEXT);"
          "INSERT INTO People VALUES (1, 'Ada', 'Rome'); CREATE TABLE Other (Name TEXT)");
  const auto import = open("Id,Name,Town,More\n7,Ada,Paris,x\n");
  const auto isKey = [&](long index, HRESULT expected = S_OK) {
    VARIANT_BOOL key = VARIANT_FALSE;
    EXPECT_EQ(import->IsKey(index, &key), expected);
    return key != VARIANT_FALSE;
  };
  isKey(0, kIllegal);
  EXPECT_EQ(import->SetKey(0, VARIANT_TRUE), kIllegal);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_TRUE(isKey(0));
  EXPECT_FALSE(isKey(1));
  isKey(3, kBadArgument);
  isKey(4, kNoItem);
  EXPECT_EQ(import->SetKey(0, VARIANT_FALSE), S_OK);
  EXPECT_EQ(import->SetKey(1, VARIANT_TRUE), S_OK);
  EXPECT_EQ(import->SetKey(1, VARIANT_TRUE), S_OK);
  EXPECT_FALSE(isKey(0));
  EXPECT_TRUE(isKey(1));
  EXPECT_EQ(import->put_Replaces(VARIANT_TRUE), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(run(import.get()), (Counts{0, 1, 0}));
  EXPECT_THAT(stored("SELECT Name || Town FROM People"), testing::ElementsAre("AdaParis"));
  EXPECT_EQ(import->SetKey(1, VARIANT_FALSE), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_TRUE(isKey(0)) << "without any it is the primary key again";
  EXPECT_EQ(import->SetKey(1, VARIANT_TRUE), S_OK);
  EXPECT_EQ(import->put_Table(text(L"Other").get()), S_OK);
  EXPECT_EQ(import->put_Replaces(VARIANT_FALSE), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_FALSE(isKey(1)) << "another table has a key of its own";
}

TEST_F(Import, WhatIsGuessedIsTold) {
  const auto doubts = [&](IAdoceImport* import) {
    long found = -1;
    EXPECT_EQ(import->get_Doubts(&found), S_OK);
    return found;
  };
  long none = -1;
  EXPECT_EQ(open("a,b\n")->get_Doubts(&none), kIllegal);
  EXPECT_EQ(doubts(examined("Name,Age\nAda,36\n").get()), 0);
  EXPECT_EQ(doubts(examined("1,2\n3,4\n").get()), 0) << "no names";
  EXPECT_EQ(doubts(examined("Ada,Paris\nBo,Rome\n").get()), 2);
  EXPECT_EQ(doubts(examined("Name,Age\nB\xF6,36\n").get()), 1);
  EXPECT_EQ(doubts(examined("Name,Town\nB\xF6,Rome\n").get()), 3);
  EXPECT_EQ(doubts(examined("Name,Age\nB\xC3\xB6,36\n").get()), 0);
  const auto chosen = open("Name,Town\nB\xF6,Rome\n");
  EXPECT_EQ(chosen->put_Encoding(text(L"windows-1252").get()), S_OK);
  EXPECT_EQ(chosen->put_Header(1), S_OK);
  EXPECT_EQ(chosen->Examine(nullptr), S_OK);
  EXPECT_EQ(doubts(chosen.get()), 0);
  execute(connection_.get(), L"CREATE TABLE People (Name text, Town text)");
  EXPECT_EQ(doubts(examined("Name,Town\nBo,Rome\n").get()), 0) << "its own names";
  EXPECT_EQ(doubts(examined("Ada,Paris\nBo,Rome\n").get()), 2);
}

TEST_F(Import, ThePreviewHasTheColumnsFirst) {
  const auto import = examined("Name,Age\nAda,36\nBo\n");
  OwnedVariant texts;
  EXPECT_EQ(import->Preview(5, texts.get()), S_OK);
  ASSERT_EQ(V_VT(texts.get()), VT_ARRAY | VT_BSTR);
  SAFEARRAY* const array = V_ARRAY(texts.get());
  const auto at = [array](LONG column, LONG record) {
    LONG place[] = {column, record};
    UniqueBstr found;
    EXPECT_EQ(SafeArrayGetElement(array, place, found.put()), S_OK);
    return std::wstring(found.get() ? found.get() : L"");
  };
  LONG last = 0;
  SafeArrayGetUBound(array, 1, &last);
  EXPECT_EQ(last, 1);
  SafeArrayGetUBound(array, 2, &last);
  EXPECT_EQ(last, 1);
  EXPECT_EQ(at(0, 0), L"Ada");
  EXPECT_EQ(at(1, 0), L"36");
  EXPECT_EQ(at(0, 1), L"Bo");
  EXPECT_EQ(at(1, 1), L"");
  OwnedVariant none;
  EXPECT_EQ(import->Preview(-3, none.get()), S_OK);
  ASSERT_EQ(V_VT(none.get()), VT_ARRAY | VT_BSTR);
  SafeArrayGetUBound(V_ARRAY(none.get()), 2, &last);
  EXPECT_EQ(last, -1) << "no record";
}

TEST_F(Import, ChoicesAreChecked) {
  const auto import = open("a,b\n1,2\n");
  EXPECT_EQ(import->put_Encoding(text(L"martian").get()), kBadArgument);
  EXPECT_EQ(import->put_Delimiter(text(L"ab").get()), kBadArgument);
  EXPECT_EQ(import->put_Delimiter(text(L"\"").get()), kBadArgument);
  EXPECT_EQ(import->put_Header(2), kBadArgument);
  EXPECT_EQ(import->put_Table(text(L"a[b").get()), S_OK);
  EXPECT_EQ(import->Examine(nullptr), kBadArgument);
  long count = 0;
  EXPECT_EQ(import->get_ColumnCount(&count), kIllegal);
  run(import.get(), kAllOrNothing, kIllegal);
  EXPECT_EQ(import->get_ColumnCount(nullptr), E_POINTER);
  EXPECT_EQ(import->put_Table(text(L"T").get()), S_OK);
  EXPECT_EQ(import->put_Header(0), S_OK);
  EXPECT_EQ(import->put_Delimiter(text(L"|").get()), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  EXPECT_EQ(import->get_ColumnCount(&count), S_OK);
  EXPECT_EQ(count, 1);
  run(import.get(), 2, kBadArgument);
}

TEST_F(Import, JsonHasNoDelimiterAlsoWhereOneWasChosen) {
  const auto import = open("[{\"a\":1}]", L"Things.json");
  EXPECT_EQ(import->put_Delimiter(text(L"\t").get()), S_OK);
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  UniqueBstr delimiter;
  EXPECT_EQ(import->get_Delimiter(delimiter.put()), S_OK);
  EXPECT_STREQ(delimiter.get(), L"");
  EXPECT_EQ(run(import.get()), (Counts{1, 0, 0}));
}

TEST_F(Import, AFileThatIsNotThereIsTold) {
  ComPtr<IAdoceImport> import;
  EXPECT_EQ(connection_->OpenImport(text(pathOf(L"none.csv")).get(), import.put()), kCannotOpen);
  EXPECT_EQ(import.get(), nullptr);
}

TEST_F(Import, AnImportEndsWithItsConnection) {
  const auto import = examined("Name\nAda\n");
  EXPECT_EQ(connection_->Close(), S_OK);
  run(import.get(), kAllOrNothing, objectModelError(3709));
  EXPECT_EQ(import->Examine(nullptr), objectModelError(3709));
}

TEST_F(Import, AStoppedImportHasChangedNothing) {
  std::string content = "Name\n";
  for (int i = 0; i < 5000; ++i) content += "some text\n";
  const auto import = open(content);
  Stopper looking;
  EXPECT_EQ(import->Examine(&looking), kIllegal);
  EXPECT_THAT(looking.what, testing::ElementsAre(kLooking));
  EXPECT_EQ(looking.total, static_cast<double>(content.size()));
  EXPECT_EQ(import->Examine(nullptr), S_OK);
  Stopper storing(connection_.get());
  Counts counts;
  EXPECT_EQ(import->Run(kAllOrNothing, &storing, &counts.added, &counts.replaced, &counts.leftOut), kIllegal);
  EXPECT_EQ(counts, Counts());
  EXPECT_THAT(storing.what, testing::ElementsAre(kStoring));
  EXPECT_EQ(storing.total, static_cast<double>(content.size()));
  EXPECT_THAT(storing.used, testing::ElementsAre(kIllegal)) << "it is in the midst of something";
  EXPECT_THAT(tables(), testing::IsEmpty());
  EXPECT_EQ(run(import.get()).added, 5000);
}

TEST_F(Import, AnImportBesideOpenRecordsIsSeenWhenTheyAreOpenedAnew) {
  SqliteFile(pathOf(L"test.cdb")).run("CREATE TABLE People (Name TEXT); INSERT INTO People VALUES ('first')");
  const auto records = recordsOfTable(connection_.get(), L"People");
  EXPECT_EQ(textOf(records.get(), 0), L"first");
  const auto import = examined("Name\nsecond\n");
  EXPECT_EQ(run(import.get()), (Counts{1, 0, 0}));
  EXPECT_EQ(textOf(records.get(), 0), L"first");
  EXPECT_EQ(recordCount(recordsOfTable(connection_.get(), L"People").get()), 2);
}

}  // namespace
}  // namespace automationtest
