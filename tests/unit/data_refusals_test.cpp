// What the store refuses: the reason is kept, and nothing is lost by it.
#include <filesystem>

#include "gmock/gmock.h"
#include "tests/unit/data_store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RefusalTest : public DataTest {
 protected:
  void write(std::uint32_t field, const wchar_t* text) {
    database_.setValueFromEditor(field, FakeEditor::withText(text));
  }
  std::wstring reason() { return database_.refusalText().text(); }
  std::wstring value() { return database_.valueText(0).text(); }
};

TEST_F(RefusalTest, AnUpdateThatIsRefusedSaysWhyAndCanBeAbandoned) {
  openTable(L"k integer CHECK (k < 10), n integer", {L"1, 0", L"2, 0"});
  write(0, L"77");
  EXPECT_TRUE(database_.update());
  EXPECT_TRUE(database_.isUpdateRefused());
  EXPECT_THAT(reason(), HasSubstr(L"k < 10"));
  EXPECT_FALSE(database_.moveNext());
  database_.abandonUpdate();
  EXPECT_FALSE(database_.isUpdateRefused());
  EXPECT_EQ(value(), L"1");
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(value(), L"2");
  EXPECT_EQ(stored(L"Select k from t"), L"1");
}

TEST_F(RefusalTest, ARefusedUpdateThatIsCorrectedIsStored) {
  openTable(L"k integer CHECK (k < 10)", {L"1"});
  write(0, L"77");
  database_.update();
  write(0, L"7");
  database_.update();
  EXPECT_FALSE(database_.isUpdateRefused());
  EXPECT_EQ(stored(L"Select k from t"), L"7");
}

TEST_F(RefusalTest, ANewRecordThatIsRefusedIsGoneWhenItIsAbandoned) {
  openTable(L"k integer NOT NULL", {L"1"});
  ASSERT_TRUE(database_.addNew());
  database_.update();
  EXPECT_TRUE(database_.isUpdateRefused());
  EXPECT_TRUE(database_.newRecordPending());
  EXPECT_THAT(reason(), HasSubstr(L"t.k"));
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
  EXPECT_FALSE(database_.deleteCurrent());
  EXPECT_FALSE(reason().empty());
  EXPECT_EQ(database_.recordCount(), 1u);
  EXPECT_EQ(stored(L"Select count(*) from t"), L"1");
}

TEST_F(RefusalTest, ContentThatDoesNotFitIsNamedOnce) {
  openTable(L"s smallint, n integer, w datetime, v text", {L"1, 2, '2001-03-09', 'x'"});
  write(0, L"99999");
  write(1, L"abc");
  write(3, L"");
  EXPECT_THAT(namesOf(database_.takeClearedFields()), ElementsAre(L"s", L"n"));
  EXPECT_THAT(namesOf(database_.takeClearedFields()), IsEmpty());
}

TEST_F(RefusalTest, ContentThatIsTakenAwayOnPurposeIsNotNamed) {
  openTable(L"n integer, w datetime", {L"2, '2001-03-09'"});
  write(0, L"");
  database_.setValueFromEditor(1, FakeEditor::withDate(L"None", std::nullopt));
  EXPECT_THAT(namesOf(database_.takeClearedFields()), IsEmpty());
  database_.update();
  EXPECT_EQ(stored(L"Select n from t"), L"(null)");
}

TEST_F(RefusalTest, AFileThatCantBeOpenedOrMadeSaysWhy) {
  EXPECT_FALSE(database_.open(pathOf("missing.cdb").c_str()));
  EXPECT_FALSE(reason().empty());
  openWith({});
  EXPECT_FALSE(database_.createDatabase(path_.c_str()));
  EXPECT_FALSE(reason().empty());
  const std::wstring longName = L"C:\\" + std::wstring(250, L'x') + L".cdb";
  EXPECT_FALSE(database_.createDatabase(longName.c_str()));
  EXPECT_THAT(reason(), HasSubstr(L"too long"));
}

TEST_F(RefusalTest, ATableThatCantBeMadeSaysWhy) {
  openWith({L"CREATE TABLE t (a integer)"});
  EXPECT_FALSE(database_.createTable(L"t", L"a integer"));
  EXPECT_THAT(reason(), HasSubstr(L"t"));
  EXPECT_FALSE(database_.createTable(L"u", (L"a integer" + std::wstring(200, L' ')).c_str()));
  EXPECT_THAT(reason(), HasSubstr(L"too long"));
  EXPECT_FALSE(database_.dropTable(L"missing"));
  EXPECT_FALSE(reason().empty());
}

TEST_F(RefusalTest, AnotherFileIsDeletedAndTheOpenOneGoesOn) {
  makeDatabase(pathOf("other.cdb"), {});
  openTable(L"a integer", {L"1", L"2"});
  EXPECT_TRUE(database_.dropDatabase(pathOf("other.cdb").c_str()));
  EXPECT_FALSE(std::filesystem::exists(pathOf("other.cdb")));
  EXPECT_TRUE(database_.isOpen());
  EXPECT_TRUE(database_.moveNext());
  EXPECT_EQ(value(), L"2");
  EXPECT_FALSE(database_.dropDatabase(pathOf("other.cdb").c_str()));
  EXPECT_FALSE(reason().empty());
  EXPECT_EQ(database_.recordCount(), 2u);
}

}  // namespace
