// The search in tables that are too large for one part of it, while another program changes the records.
#include "tests/ui/document/find_both_ways.h"

namespace {

using testing::HasSubstr;

class DocumentFindLargeTest : public FindBothWaysTest {
 protected:
  /// T with row ids and W without, both with the numbers K from 1 to `count`, a prime, and B in another
  /// order.
  void fill(int count) {
    const std::string number = std::to_string(count);
    automationtest::SqliteFile file(path().wstring());
    file.run("BEGIN; CREATE TABLE T (K Integer PRIMARY KEY, A Text, B Integer)");
    file.run("CREATE TABLE W (J Text, K Integer, A Text, B Integer, PRIMARY KEY (J, K)) WITHOUT ROWID");
    file.run("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + number +
             ") INSERT INTO T SELECT i, 'hay', i * 7919 % " + number + " FROM n");
    file.run("INSERT INTO W SELECT K % 10, K, A, B FROM T");
    file.run("CREATE TABLE QuivaneQueries (QueryName Text, SQL Text)");
    for (std::size_t query = 0; query < std::size(kOrders); ++query) {
      file.run("INSERT INTO QuivaneQueries VALUES ('" + std::to_string(query) + "', 'Select * from " +
               kOrders[query] + "')");
    }
    file.run("COMMIT");
  }
  static constexpr const char* kOrders[] = {"T", "T order by B", "W order by J, K", "W order by B"};

  void write(int query, std::uint32_t record, const std::string& text) {
    const std::string order = kOrders[query];
    automationtest::SqliteFile(path().wstring())
        .run("UPDATE " + order.substr(0, 1) + " SET A = '" + text + "' WHERE K = (SELECT K FROM " + order +
             " LIMIT 1 OFFSET " + std::to_string(record - 1) + ")");
  }

  /// Where the search for a needle ends that begins at `start`, when another program writes `text` into a
  /// record after so many were searched; 0 when it finds none.
  std::uint32_t found(int query, std::uint32_t start, std::uint32_t after, std::uint32_t record,
                      const std::string& text) {
    show(query, start);
    enter({L"NEEDLE", std::nullopt, false});
    components().mostRecords = static_cast<long>(after);
    bool isWritten = false;
    window().prompts.goesOnSearching = [&](std::uint32_t tested, std::uint32_t) {
      // The store asks with the same number in the midst of its next statement.
      if (tested == after && !isWritten) {
        write(query, record, text);
        isWritten = true;
      }
      // The record where a part ends is tested by itself.
      components().mostRecords = tested < after ? static_cast<long>(after - tested - 1) : kNoLimit;
      return true;
    };
    messages().clear();
    const std::wstring seen = press();
    EXPECT_TRUE(isWritten);
    const bool isFoundNow = isFound();
    EXPECT_THAT(seen, HasSubstr(isFoundNow ? L"needle" : L"All records searched"));
    return isFoundNow ? *window().form.record : 0;
  }

  /// What is written is found where the search has not been yet, and nothing else is.
  void expectFollowed(int query, std::uint32_t count) {
    const std::uint32_t start = count / 3;
    const std::uint32_t after = count / 2;
    for (const std::uint32_t record : {start + after, start + after + count / 20, count - 3, start - 5}) {
      EXPECT_EQ(found(query, start, after, record, "needle"), record) << kOrders[query];
      EXPECT_EQ(found(query, start, after, record, "hay"), 0u) << kOrders[query] << ", " << record;
    }
  }

  static constexpr long kNoLimit = std::numeric_limits<long>::max();
};

// Large enough for a second thread, which reads ahead of the first.
TEST_F(DocumentFindLargeTest, WhatAnotherProgramWritesIntoALargeTableIsFollowed) {
  constexpr std::uint32_t kCount = 300'007;
  fill(kCount);
  open();
  ASSERT_NO_FATAL_FAILURE(expectFollowed(0, kCount));
}

// Large enough for them to be gone through in another order than they are shown in.
TEST_F(DocumentFindLargeTest, WhatAnotherProgramWritesIsFollowedInEveryOrder) {
  constexpr std::uint32_t kCount = 12'007;
  fill(kCount);
  open();
  for (int query = 0; query < static_cast<int>(std::size(kOrders)); ++query) expectFollowed(query, kCount);
}

}  // namespace
