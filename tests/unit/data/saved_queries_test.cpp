#include <string>

#include "data/handles/adoce_constants.h"
#include "gmock/gmock.h"
#include "tests/unit/data/fake_store.h"
#include "tests/unit/data/store_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SavedQueriesTest : public DataTest {
 protected:
  void SetUp() override { openWith({L"CREATE TABLE t (a integer)", L"INSERT INTO t VALUES (7)"}); }

  std::vector<std::wstring> names() {
    NameList list;
    EXPECT_TRUE(database_.listQueries(list));
    return namesOf(list);
  }
  std::wstring sqlAt(std::uint32_t index) {
    SavedQuery query;
    EXPECT_TRUE(database_.getQuery(index, query)) << index;
    return query.sql.text();
  }
};

TEST_F(SavedQueriesTest, ListingAFileWithoutTheTableLeavesTheListAndMakesNoTable) {
  NameList list;
  list.append(L"old");
  EXPECT_TRUE(database_.listQueries(list));
  EXPECT_THAT(namesOf(list), ElementsAre(L"old"));
  NameList tables;
  database_.listTables(tables);
  EXPECT_THAT(namesOf(tables), ElementsAre(L"t"));
}

TEST_F(SavedQueriesTest, WithoutTheTableOnlyAddingSucceeds) {
  SavedQuery query{L"old", L"old sql"};
  EXPECT_FALSE(database_.getQuery(0, query));
  EXPECT_STREQ(query.name.text(), L"old");
  EXPECT_STREQ(query.sql.text(), L"old sql");
  EXPECT_FALSE(database_.updateQuery(0, query));
  EXPECT_FALSE(database_.deleteQuery(0));
}

TEST_F(SavedQueriesTest, TheFirstAddMakesTheTableAndStoresTheQuery) {
  EXPECT_TRUE(database_.addQuery({L"mine", L"Select * from t"}));
  EXPECT_THAT(names(), ElementsAre(L"mine"));
  EXPECT_EQ(sqlAt(0), L"Select * from t");
  EXPECT_EQ(stored(L"Select count(*) from QuivaneQueries"), L"1");
  ASSERT_TRUE(database_.openRecordset(L"Select * from QuivaneQueries"));
  EXPECT_STREQ(database_.fieldName(0).text(), L"QueryName");
  EXPECT_STREQ(database_.fieldName(1).text(), L"SQL");
}

TEST_F(SavedQueriesTest, NamesComeInTheirOrderWhateverOrderTheyWereAddedIn) {
  database_.addQuery({L"pear", L"2"});
  database_.addQuery({L"apple", L"1"});
  database_.addQuery({L"quince", L"3"});
  EXPECT_THAT(names(), ElementsAre(L"apple", L"pear", L"quince"));
  EXPECT_EQ(sqlAt(0), L"1");
  EXPECT_EQ(sqlAt(1), L"2");
  EXPECT_EQ(sqlAt(2), L"3");
}

TEST_F(SavedQueriesTest, QueriesOfOneNameAreBothKeptAndDeletedByTheirPlace) {
  database_.addQuery({L"same", L"one"});
  database_.addQuery({L"same", L"two"});
  database_.addQuery({L"zone", L"three"});
  EXPECT_THAT(names(), ElementsAre(L"same", L"same", L"zone"));
  const std::wstring kept = sqlAt(1);
  EXPECT_TRUE(database_.deleteQuery(0));
  EXPECT_THAT(names(), ElementsAre(L"same", L"zone"));
  EXPECT_EQ(sqlAt(0), kept);
}

TEST_F(SavedQueriesTest, AQueryIsReplacedInItsPlace) {
  database_.addQuery({L"a", L"1"});
  database_.addQuery({L"b", L"2"});
  EXPECT_TRUE(database_.updateQuery(1, {L"B two", L"2b"}));
  SavedQuery query;
  ASSERT_TRUE(database_.getQuery(0, query));
  const bool isUpper = std::wstring(query.name.text()) == L"B two";
  EXPECT_EQ(names().size(), 2u);
  EXPECT_EQ(sqlAt(isUpper ? 0 : 1), L"2b");
  EXPECT_EQ(sqlAt(isUpper ? 1 : 0), L"1");
}

TEST_F(SavedQueriesTest, AnIndexBeyondTheLastQueryIsRefused) {
  database_.addQuery({L"a", L"1"});
  SavedQuery query{L"old", L"old sql"};
  for (const std::uint32_t index : {1u, 100u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_FALSE(database_.getQuery(index, query)) << index;
    EXPECT_FALSE(database_.updateQuery(index, query)) << index;
    EXPECT_FALSE(database_.deleteQuery(index)) << index;
  }
  EXPECT_STREQ(query.name.text(), L"old");
  EXPECT_THAT(names(), ElementsAre(L"a"));
  EXPECT_EQ(sqlAt(0), L"1");
}

TEST_F(SavedQueriesTest, AfterItsTableWasDroppedTheNextAddMakesItAnew) {
  database_.addQuery({L"lost", L"1"});
  ASSERT_TRUE(database_.dropTable(L"QuivaneQueries"));
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_TRUE(database_.addQuery({L"new", L"2"}));
  EXPECT_THAT(names(), ElementsAre(L"new"));
}

TEST_F(SavedQueriesTest, TextsOfEveryKindAreKept) {
  const std::wstring longSql = L"Select '" + std::wstring(40'000, L'\x03A9') + L"'";
  const wchar_t* const name = L"It's \"my\" query; [x] \x0416 \xD83D\xDE00";
  EXPECT_TRUE(database_.addQuery({name, longSql.c_str()}));
  EXPECT_THAT(names(), ElementsAre(name));
  EXPECT_EQ(sqlAt(0), longSql);
  EXPECT_TRUE(database_.updateQuery(0, {L"", L""}));
  EXPECT_THAT(names(), ElementsAre(L""));
  EXPECT_EQ(sqlAt(0), L"");
}

TEST_F(SavedQueriesTest, TheCurrentRecordsetAndTheOpenFileAreNotTouched) {
  ASSERT_TRUE(database_.openRecordset(L"Select * from [t]"));
  currentRecord = 1;
  ASSERT_TRUE(database_.addQuery({L"a", L"1"}));
  ASSERT_TRUE(database_.updateQuery(0, {L"b", L"2"}));
  EXPECT_THAT(names(), ElementsAre(L"b"));
  ASSERT_TRUE(database_.deleteQuery(0));
  EXPECT_STREQ(database_.valueText(0).text(), L"7");
  EXPECT_EQ(currentRecord, 1u);
  EXPECT_EQ(database_.recordCount(), 1u);
  EXPECT_TRUE(database_.openRecordset(L"Select * from [t]")) << "the connection lost its file";
}

TEST_F(SavedQueriesTest, NothingIsSavedWithoutAFile) {
  database_.close();
  EXPECT_FALSE(database_.addQuery({L"a", L"1"}));
  EXPECT_THAT(names(), IsEmpty());
}

// ---- Against a store of our own

constexpr char kSelect[] =
    "Open Select * from QuivaneQueries ORDER BY QueryName cursor 1 lock 3 options 1 in a.cdb";

class FakeQueriesTest : public testing::Test {
 protected:
  FakeQueriesTest() {
    store_.isConnected = true;
    store_.connectedTo = store_.connectionString = "a.cdb";
    store_.fields.push_back({.name = L"QueryName", .type = 203});
    store_.fields.push_back({.name = L"SQL", .type = 203});
    for (const auto& [name, sql] :
         {std::pair(L"n0", L"s0"), std::pair(L"n1", L"s1"), std::pair(L"n2", L"s2")}) {
      FakeRow row;
      row.push_back(Variant::fromText(name));
      row.push_back(Variant::fromText(sql));
      store_.rows.push_back(std::move(row));
    }
  }
  std::vector<std::wstring> stored() const {
    std::vector<std::wstring> all;
    for (std::size_t row = 0; row < store_.rows.size(); ++row)
      all.push_back(store_.storedText(row, 0) + L" " + store_.storedText(row, 1));
    return all;
  }
  /// Each operation takes the connection string away, leaves the connection where it is and closes what it
  /// opened.
  void expectLeft() const {
    EXPECT_EQ(store_.connectionString, "");
    EXPECT_EQ(store_.connectedTo, "a.cdb");
    EXPECT_EQ(store_.openCursorCount(), 0);
  }

  FakeStore store_;
  FakeStoreRegistration registration_{store_};
  Database database_;
};

TEST_F(FakeQueriesTest, AQueryIsAddedBehindTheOthers) {
  EXPECT_TRUE(database_.addQuery({L"a", L"1"}));
  EXPECT_THAT(store_.statements, ElementsAre(kSelect));
  EXPECT_THAT(stored(), ElementsAre(L"n0 s0", L"n1 s1", L"n2 s2", L"a 1"));
  expectLeft();
}

TEST_F(FakeQueriesTest, AddingStopsWhereNoRecordCanBeAddedAndStillSucceeds) {
  store_.addNewResult = E_FAIL;
  EXPECT_TRUE(database_.addQuery({L"a", L"1"}));
  EXPECT_THAT(stored(), ElementsAre(L"n0 s0", L"n1 s1", L"n2 s2"));
  expectLeft();
}

TEST_F(FakeQueriesTest, AddingWithoutTheTableSendsExactlyItsStatement) {
  store_.openResult = E_FAIL;
  EXPECT_FALSE(database_.addQuery({L"a", L"1"}));
  EXPECT_THAT(
      store_.statements,
      ElementsAre(kSelect,
                  "Execute CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text) options 1 in a.cdb"));
}

TEST_F(FakeQueriesTest, WhereTheTableCantBeSeenNowNoneIsMade) {
  for (const HRESULT result : {kLocked, kStopped, kPasswordWanted}) {
    store_.statements.clear();
    store_.openResult = result;
    Outcome change;
    EXPECT_FALSE(database_.addQuery({L"a", L"1"}, &change));
    EXPECT_FALSE(change);
    EXPECT_THAT(store_.statements, ElementsAre(kSelect)) << result;
  }
}

TEST_F(FakeQueriesTest, TheOneAtThatPlaceIsChangedOrDeleted) {
  EXPECT_TRUE(database_.updateQuery(2, {L"a", L"1"}));
  EXPECT_THAT(stored(), ElementsAre(L"n0 s0", L"n1 s1", L"a 1"));
  expectLeft();
  store_.connectionString = "a.cdb";
  EXPECT_TRUE(database_.deleteQuery(1));
  EXPECT_THAT(stored(), ElementsAre(L"n0 s0", L"a 1"));
  expectLeft();
  EXPECT_THAT(store_.statements, ElementsAre(kSelect, kSelect));
}

TEST_F(FakeQueriesTest, FailuresAfterTheOpeningAreNotReported) {
  store_.moveResult = E_FAIL;
  store_.updateResult = E_FAIL;
  SavedQuery query;
  EXPECT_TRUE(database_.getQuery(0, query));
  EXPECT_FALSE(query.name.isEmpty());
  EXPECT_TRUE(database_.updateQuery(0, query));
  EXPECT_TRUE(database_.deleteQuery(0));
  EXPECT_TRUE(database_.addQuery(query));
}

}  // namespace
