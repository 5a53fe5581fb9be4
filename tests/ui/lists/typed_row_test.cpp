// The row of the grid that is looked for by what is typed.
#include <commctrl.h>

#include <cstdint>
#include <string>
#include <utility>

#include "gmock/gmock.h"
#include "tests/ui/lists/record_list_fixture.h"

using testing::ElementsAre;
using testing::StartsWith;

namespace {

class TypedRowTest : public RecordListFixture {
 protected:
  void showNames() {
    showTable(L"CREATE TABLE 'T' (t Text, n Integer)",
              L"INSERT INTO T VALUES ('Ada', 7), ('nobody', 40), ('Bob', 41), ('\u00C9mile', 5), "
              L"('bo', 6), (NULL, 400)");
  }
  int find(const wchar_t* typed, int first, UINT flags = LVFI_PARTIAL | LVFI_WRAP) {
    NMLVFINDITEMW search{};
    search.hdr = {list(), RecordListView::kListId, LVN_ODFINDITEMW};
    search.iStart = first;
    search.lvfi.flags = flags;
    search.lvfi.psz = typed;
    return static_cast<int>(view().handleNotification(search.hdr));
  }
};

TEST_F(TypedRowTest, IsTheNextOneWhoseFirstFieldBeginsWithIt) {
  showNames();
  EXPECT_EQ(find(L"b", 0), 2);
  EXPECT_EQ(find(L"B", 2), 2);
  EXPECT_EQ(find(L"b", 3), 4);
  EXPECT_EQ(find(L"bob", 0), 2);
  EXPECT_EQ(find(L"\u00E9", 0), 3) << "another letter case";
}

TEST_F(TypedRowTest, IsLookedForFromTheFirstOneOnAfterTheLast) {
  showNames();
  EXPECT_EQ(find(L"a", 1), 0);
  EXPECT_EQ(find(L"bob", 3), 2);
  EXPECT_EQ(find(L"n", 6), 1) << "behind the last row";
}

TEST_F(TypedRowTest, IsNoneWhereNothingBeginsWithIt) {
  showNames();
  EXPECT_EQ(find(L"ob", 0), -1) << "in the midst of texts";
  EXPECT_EQ(find(L"7", 0), -1) << "in another field";
  EXPECT_EQ(find(L"", 0), -1);
  EXPECT_EQ(find(L"b", 0, LVFI_PARAM), -1) << "not by text";
}

TEST_F(TypedRowTest, LeavesTheCurrentRecordWhereItIs) {
  showNames();
  const auto current = currentRecord;
  EXPECT_EQ(find(L"bo", 3), 4);
  EXPECT_EQ(currentRecord, current);
  EXPECT_EQ(cell(0, 0), L"Ada");
}

TEST_F(TypedRowTest, IsFoundByWhatIsShownOfNumbersToo) {
  showTable(L"CREATE TABLE 'T' (n Integer, t Text)",
            L"INSERT INTO T VALUES (7, 'x'), (40, 'x'), (-4, 'x'), (4, 'x')");
  EXPECT_EQ(find(L"4", 0), 1);
  EXPECT_EQ(find(L"4", 2), 3);
  EXPECT_EQ(find(L"-", 0), 2);
}

TEST_F(TypedRowTest, IsNotTakenForMissingWhereRowsCantBeRead) {
  showNames();
  bool isFirst = true;
  prompts().goesOnSearching = [&](std::uint32_t, std::uint32_t) {
    if (std::exchange(isFirst, false)) runStatements(path(), {L"DROP TABLE T"});
    return true;
  };
  EXPECT_EQ(find(L"b", 0), -1);
  EXPECT_FALSE(isFirst);
  EXPECT_THAT(told(), ElementsAre(StartsWith(L"Records could not be read.\n")));
}

TEST_F(TypedRowTest, IsFoundBehindOneThatIsGone) {
  showNames();
  runStatements(path(), {L"DELETE FROM T WHERE t = 'Ada'"});
  EXPECT_EQ(find(L"b", 0), 2);
}

TEST_F(TypedRowTest, IsFoundAmongVeryManyAndTheUserCanStopThat) {
  showTable(L"CREATE TABLE 'T' (t Text)",
            L"WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s LIMIT 30000) "
            L"INSERT INTO T SELECT CASE n WHEN 29000 THEN 'zebra' ELSE 'a zoo ' || n END FROM s");
  EXPECT_EQ(find(L"ze", 1), 28'999);
  std::uint32_t furthest = 0;
  prompts().goesOnSearching = [&](std::uint32_t tested, std::uint32_t all) {
    EXPECT_EQ(all, 30'000u);
    furthest = tested;
    return tested < 100;
  };
  EXPECT_EQ(find(L"zo", 0), -1) << "it is in each, but at no beginning";
  EXPECT_EQ(furthest, 100u);
  // The store may be the one that hears of the key, in the midst of a statement.
  furthest = 0;
  bool isPressed = false;
  prompts().goesOnSearching = [&](std::uint32_t tested, std::uint32_t) {
    isPressed = tested != 0 && tested == furthest;
    furthest = tested;
    return !isPressed;
  };
  EXPECT_EQ(find(L"zo", 0), -1);
  EXPECT_TRUE(isPressed) << "the store did not ask";
  EXPECT_LT(furthest, 30'000u);
}

}  // namespace
