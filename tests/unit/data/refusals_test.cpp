// What the store refuses: the reason is kept, and nothing is lost by it.
#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RefusalTest : public DataTest {
 protected:
  /// Stores the current record with this text in its first fields.
  Outcome store(std::initializer_list<const wchar_t*> texts) {
    std::vector<FakeEditor> contents;
    for (const wchar_t* text : texts) contents.push_back(FakeEditor::withText(text));
    FieldEditors editors;
    for (const FakeEditor& content : contents) editors.push_back(&content);
    return database_.storeRecord(database_.readRecord(), editors, leftOut_);
  }
  std::wstring value() { return database_.valueText(0).text(); }

  NameList leftOut_;
};

std::wstring reasonOf(const Outcome& outcome) {
  EXPECT_FALSE(outcome);
  return outcome.reason().text();
}

TEST_F(RefusalTest, AChangeThatIsRefusedSaysWhyAndIsTakenBack) {
  openTable(L"k integer CHECK (k < 10), n integer", {L"1, 0", L"2, 0"});
  EXPECT_THAT(reasonOf(store({L"77"})), HasSubstr(L"k < 10"));
  EXPECT_EQ(value(), L"1");
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(value(), L"2");
  EXPECT_EQ(stored(L"Select k from t"), L"1");
}

TEST_F(RefusalTest, ARefusedChangeThatIsCorrectedIsStored) {
  openTable(L"k integer CHECK (k < 10)", {L"1"});
  EXPECT_FALSE(store({L"77"}));
  EXPECT_TRUE(store({L"7"}));
  EXPECT_EQ(stored(L"Select k from t"), L"7");
}

TEST_F(RefusalTest, ANewRecordThatIsRefusedStaysBegunUntilItIsAbandoned) {
  openTable(L"k integer NOT NULL", {L"1"});
  ASSERT_TRUE(database_.addNew());
  EXPECT_THAT(reasonOf(store({L""})), HasSubstr(L"t.k"));
  EXPECT_TRUE(database_.newRecordPending());
  database_.abandonUpdate();
  EXPECT_FALSE(database_.newRecordPending());
  EXPECT_EQ(database_.recordCount(), 1u);
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_TRUE(database_.moveFirst());
  EXPECT_EQ(value(), L"1");
}

TEST_F(RefusalTest, ADeletionThatIsRefusedSaysWhy) {
  openTable(L"k integer PRIMARY KEY", {L"1"});
  runOn(path_, {L"CREATE TABLE child (p integer REFERENCES t(k))", L"INSERT INTO child VALUES (1)"});
  EXPECT_NE(reasonOf(database_.deleteCurrent()), L"");
  EXPECT_EQ(database_.recordCount(), 1u);
  EXPECT_EQ(stored(L"Select count(*) from t"), L"1");
}

TEST_F(RefusalTest, ContentThatDoesNotFitIsNamed) {
  openTable(L"s smallint, n integer, v text", {L"1, 2, 'x'"});
  EXPECT_TRUE(store({L"99999", L"abc", L""}));
  EXPECT_THAT(namesOf(leftOut_), ElementsAre(L"s", L"n"));
}

TEST_F(RefusalTest, ContentThatIsTakenAwayOnPurposeIsNotNamed) {
  openTable(L"n integer, w datetime", {L"2, '2001-03-09'"});
  const FakeEditor empty = FakeEditor::withText(L"");
  const FakeEditor none = FakeEditor::withDate(L"None", std::nullopt);
  EXPECT_TRUE(database_.storeRecord(database_.readRecord(), {&empty, &none}, leftOut_));
  EXPECT_THAT(namesOf(leftOut_), IsEmpty());
  EXPECT_EQ(stored(L"Select n from t"), L"(null)");
}

TEST_F(RefusalTest, AFieldThatCantBeWrittenIsNoReasonAgainstANewRecord) {
  openTable(L"a integer, b integer AS (a + 1)", {});
  ASSERT_TRUE(database_.addNew());
  const FakeEditor number = FakeEditor::withText(L"4");
  const FakeEditor empty = FakeEditor::withText(L"").unedited();
  EXPECT_TRUE(database_.storeRecord(database_.readRecord(), {&number, &empty}, leftOut_));
  EXPECT_EQ(stored(L"Select a || ' ' || b from t"), L"4 5");
}

TEST_F(RefusalTest, WhatWasTypedIntoAFieldThatCantBeWrittenIsNotDroppedSilently) {
  openTable(L"a integer, b integer AS (a + 1)", {L"1"});
  const FakeEditor number = FakeEditor::withText(L"4");
  EXPECT_THAT(reasonOf(database_.storeRecord(database_.readRecord(), {&number, &number}, leftOut_)),
              HasSubstr(L"b"));
  EXPECT_EQ(stored(L"Select a || ' ' || b from t"), L"1 2");
}

TEST_F(RefusalTest, AFileThatCantBeOpenedOrMadeSaysWhy) {
  EXPECT_NE(reasonOf(database_.open(pathOf("missing.cdb").c_str())), L"");
  openWith({});
  EXPECT_NE(reasonOf(database_.createDatabase(path_.c_str())), L"");
  const std::wstring longName = L"C:\\" + std::wstring(250, L'x') + L".cdb";
  EXPECT_THAT(reasonOf(database_.createDatabase(longName.c_str())), HasSubstr(L"too long"));
}

TEST_F(RefusalTest, ATableThatCantBeMadeSaysWhy) {
  openWith({L"CREATE TABLE t (a integer)"});
  EXPECT_THAT(reasonOf(database_.createTable(L"t", L"a integer")), HasSubstr(L"t"));
  EXPECT_THAT(reasonOf(database_.createTable(L"u", (L"a integer" + std::wstring(200, L' ')).c_str())),
              HasSubstr(L"too long"));
  EXPECT_NE(reasonOf(database_.dropTable(L"missing")), L"");
}

TEST_F(RefusalTest, AnotherFileIsDeletedAndTheOpenOneGoesOn) {
  makeDatabase(pathOf("other.cdb"), {});
  openTable(L"a integer", {L"1", L"2"});
  EXPECT_TRUE(database_.dropDatabase(pathOf("other.cdb").c_str()));
  EXPECT_FALSE(std::filesystem::exists(pathOf("other.cdb")));
  EXPECT_TRUE(database_.isOpen());
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(value(), L"2");
  EXPECT_NE(reasonOf(database_.dropDatabase(pathOf("other.cdb").c_str())), L"");
  EXPECT_EQ(database_.recordCount(), 2u);
}

}  // namespace
