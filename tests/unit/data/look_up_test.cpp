// Fields that refer to records of another table.
#include <memory>
#include <string>

#include "data/database/look_up_records.h"
#include "gmock/gmock.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LookUpTest : public DataTest {
 protected:
  void openLoans() {
    openWith({L"CREATE TABLE Books (Id Integer PRIMARY KEY, Shelf Varchar (9), Title Text, Isbn Text)",
              L"CREATE TABLE Loans (Book Integer REFERENCES Books, Note Text)",
              L"INSERT INTO Books VALUES (1, 'A', 'Ulysses', '111')",
              L"INSERT INTO Books VALUES (2, 'A', 'Émile', '222')",
              L"INSERT INTO Books VALUES (17, 'B', 'O''Brien', '333')",
              L"INSERT INTO Loans VALUES (2, 'lent')"});
    ASSERT_TRUE(database_.openRecordset(L"Select * from [Loans]"));
  }
  std::unique_ptr<LookUpRecords> openBooks() {
    std::unique_ptr<LookUpRecords> records;
    EXPECT_TRUE(database_.openLookUp(0, records));
    return records;
  }
  static std::vector<std::wstring> found(LookUpRecords& records, const wchar_t* text,
                                         std::size_t most = 100) {
    std::vector<std::uint32_t> rows;
    records.beginSearch(text);
    for (bool goesOn = true; goesOn;) EXPECT_TRUE(records.searchOn(1000, most, rows, goesOn));
    std::vector<std::wstring> names;
    for (const std::uint32_t row : rows) {
      LookUpRecord record;
      EXPECT_TRUE(records.read(row, record));
      names.emplace_back(record.name.text());
    }
    return names;
  }
  std::wstring name(const wchar_t* key) { return database_.lookUpName(0, key).text(); }
};

TEST_F(LookUpTest, AFieldWithAForeignKeyRefersToTheOtherTable) {
  openLoans();
  EXPECT_STREQ(database_.lookUpTarget(0).table.text(), L"Books");
  EXPECT_STREQ(database_.lookUpTarget(0).field.text(), L"Id");
  EXPECT_TRUE(database_.lookUpTarget(1).isNone());
  EXPECT_TRUE(database_.lookUpTarget(99).isNone());
  ASSERT_TRUE(database_.openRecordset(L"Select Note, Book as B from [Loans] where Book > 0"));
  EXPECT_TRUE(database_.lookUpTarget(0).isNone());
  EXPECT_STREQ(database_.lookUpTarget(1).table.text(), L"Books");
  ASSERT_TRUE(database_.openRecordset(L"Select * from [Books]"));
  EXPECT_TRUE(database_.lookUpTarget(0).isNone());
}

TEST_F(LookUpTest, TheFirstTextThatTellsTheRecordsApartNamesThem) {
  openLoans();
  EXPECT_EQ(name(L"1"), L"Ulysses") << "the shelf is the same twice, the number has no letters";
  EXPECT_EQ(name(L"17"), L"O'Brien");
  EXPECT_EQ(name(L"3"), L"");
  EXPECT_EQ(name(L""), L"");
  EXPECT_EQ(name(L"' OR 1=1 --"), L"");
  EXPECT_EQ(name(L"1 "), L"Ulysses") << "as the store takes it for a number";
}

TEST_F(LookUpTest, WhereEveryTextOccursTwiceTheFirstNames) {
  openWith({L"CREATE TABLE P (Id Integer PRIMARY KEY, Kind Text)", L"CREATE TABLE C (P Integer REFERENCES P)",
            L"INSERT INTO P VALUES (1, 'same')", L"INSERT INTO P VALUES (2, 'same')"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  EXPECT_EQ(name(L"2"), L"same");
}

TEST_F(LookUpTest, WithoutATextThereIsOnlyTheKey) {
  openWith({L"CREATE TABLE P (Id Integer PRIMARY KEY, N Integer)", L"CREATE TABLE C (P Integer REFERENCES P)",
            L"INSERT INTO P VALUES (1, 5)"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  EXPECT_EQ(name(L"1"), L"");
  const auto records = openBooks();
  LookUpRecord record;
  ASSERT_TRUE(records->read(0, record));
  EXPECT_STREQ(record.key.text(), L"1");
  EXPECT_STREQ(record.name.text(), L"");
}

TEST_F(LookUpTest, NamesOfAnyKindAreQuoted) {
  openWith({L"CREATE TABLE \"odd ]'table\" (\"k\"\"ey\" Text PRIMARY KEY, \"na]me\" Text)",
            L"CREATE TABLE C (P Text REFERENCES \"odd ]'table\" (\"k\"\"ey\"))",
            L"INSERT INTO \"odd ]'table\" VALUES ('it''s', 'found')"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  EXPECT_EQ(name(L"it's"), L"found");
  EXPECT_THAT(found(*openBooks(), L"IT'S"), ElementsAre(L"found"));
}

TEST_F(LookUpTest, TheListNarrowsByKeyAndNameInAnyLetterCase) {
  openLoans();
  const auto books = openBooks();
  EXPECT_EQ(books->count(), 3u);
  EXPECT_THAT(found(*books, L"ÉM"), ElementsAre(L"Émile"));
  EXPECT_THAT(found(*books, L"émi"), ElementsAre(L"Émile"));
  EXPECT_THAT(found(*books, L"1"), ElementsAre(L"Ulysses", L"O'Brien"));
  EXPECT_THAT(found(*books, L"e"), ElementsAre(L"Ulysses", L"Émile", L"O'Brien"));
  EXPECT_THAT(found(*books, L"e", 2), ElementsAre(L"Ulysses", L"Émile"));
  EXPECT_THAT(found(*books, L"%"), IsEmpty());
  EXPECT_THAT(found(*books, L"nobody"), IsEmpty());
}

TEST_F(LookUpTest, AKeyIsGivenWhole) {
  openWith({L"CREATE TABLE P (K Text PRIMARY KEY)", L"CREATE TABLE C (P Text REFERENCES P)",
            L"INSERT INTO P VALUES (hex(zeroblob(3000)) || 'end'), ('short')"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  const auto records = openBooks();
  String key;
  ASSERT_TRUE(records->readKey(0, key));
  EXPECT_EQ(key.text(), std::wstring(6000, L'0') + L"end");
  ASSERT_TRUE(records->readKey(1, key));
  EXPECT_STREQ(key.text(), L"short");
  EXPECT_FALSE(records->readKey(2, key));
  EXPECT_STREQ(key.text(), L"short");
}

TEST_F(LookUpTest, AKeyThatItsTextDoesNotSayIsNotGiven) {
  openWith({L"CREATE TABLE P (K Float PRIMARY KEY)", L"CREATE TABLE C (P Float REFERENCES P)",
            L"INSERT INTO P VALUES (0.5), (0.12345678), (1e300)"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  const auto records = openBooks();
  String key;
  ASSERT_TRUE(records->readKey(0, key));
  EXPECT_STREQ(key.text(), L"0.500000");
  const Outcome read = records->readKey(1, key);
  EXPECT_FALSE(read);
  EXPECT_STREQ(read.reason().text(), L"Its key can't be written in full.");
  EXPECT_STREQ(key.text(), L"0.500000");
}

TEST_F(LookUpTest, EveryKindOfKeyThatTextsCanSayIsGiven) {
  openWith({L"CREATE TABLE P (K Integer PRIMARY KEY)", L"CREATE TABLE C (P Integer REFERENCES P)",
            L"INSERT INTO P VALUES (-5), (9223372036854775807)", L"CREATE TABLE Q (K Image PRIMARY KEY)",
            L"CREATE TABLE D (Q Image REFERENCES Q)", L"INSERT INTO Q VALUES (x'00ff'), ('word'), (7)"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  auto records = openBooks();
  String key;
  ASSERT_TRUE(records->readKey(0, key));
  EXPECT_STREQ(key.text(), L"-5");
  ASSERT_TRUE(records->readKey(1, key));
  EXPECT_STREQ(key.text(), L"9223372036854775807");
  records.reset();
  ASSERT_TRUE(database_.openRecordset(L"Select * from [D]"));
  records = openBooks();
  std::uint32_t row = 0;
  for (const wchar_t* text : {L"00 FF", L"word", L"7"}) {
    ASSERT_TRUE(records->readKey(row++, key)) << text;
    EXPECT_STREQ(key.text(), text);
  }
}

TEST_F(LookUpTest, ATableThatIsGoneIsTold) {
  openWith({L"CREATE TABLE C (P Integer REFERENCES Gone (Id))"});
  ASSERT_TRUE(database_.openRecordset(L"Select * from [C]"));
  EXPECT_STREQ(database_.lookUpTarget(0).table.text(), L"Gone");
  std::unique_ptr<LookUpRecords> records;
  const Outcome opened = database_.openLookUp(0, records);
  EXPECT_FALSE(opened);
  EXPECT_FALSE(opened.reason().isEmpty());
  EXPECT_EQ(records, nullptr);
  EXPECT_EQ(name(L"1"), L"");
}

TEST_F(LookUpTest, ARecordThatIsDeletedMeanwhileIsNotReadAndNotFound) {
  openLoans();
  const auto books = openBooks();
  runOn(path_, {L"DELETE FROM Loans", L"DELETE FROM Books WHERE Id = 2"});
  LookUpRecord record{L"as", L"before"};
  EXPECT_FALSE(books->read(1, record));
  EXPECT_STREQ(record.key.text(), L"as");
  EXPECT_THAT(found(*books, L"e"), ElementsAre(L"Ulysses", L"O'Brien"));
  EXPECT_FALSE(books->read(99, record));
}

TEST_F(LookUpTest, ASearchEndsWhereRecordsCantBeReadAnyMore) {
  openLoans();
  const auto books = openBooks();
  std::vector<std::uint32_t> rows;
  bool goesOn = true;
  books->beginSearch(L"e");
  ASSERT_TRUE(books->searchOn(1000, 1, rows, goesOn));
  ASSERT_EQ(rows.size(), 1u);
  runOn(path_, {L"ALTER TABLE Books RENAME COLUMN Title TO Heading"});
  books->beginSearch(L"e");
  goesOn = true;
  EXPECT_EQ(books->searchOn(1000, 100, rows, goesOn).cause(), Outcome::Cause::structureChanged);
  EXPECT_FALSE(goesOn);
  EXPECT_EQ(rows.size(), 1u) << "what was found stays";
}

}  // namespace
