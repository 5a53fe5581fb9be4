#include "platform/store/rows/keyset.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/store/allocation_probe.h"
#include "tests/store/rows/keyset_fixture.h"

using namespace std::string_literals;

namespace store {
namespace {

TEST(KeySetTest, RowIdsStayInTheOrderOfTheirAppending) {
  KeySet keys;
  const std::vector<std::int64_t> rowIds = {
      5, -1, std::numeric_limits<std::int64_t>::max(), 0, std::numeric_limits<std::int64_t>::min(), 5};
  for (const std::int64_t rowId : rowIds) keys.append(rowId);
  EXPECT_EQ(rowIdsOf(keys), rowIds);
  EXPECT_EQ(keys.keyAt(1), Key(std::int64_t{-1}));
}

TEST(KeySetTest, RowIdsPastEveryBlockBoundaryReadBack) {
  const KeySet keys = rowIdSet(3 * kBlock + 10);
  ASSERT_EQ(keys.count(), 3 * kBlock + 10);
  for (std::size_t i = 0; i < keys.count(); ++i) ASSERT_EQ(keys.rowIdAt(i), static_cast<std::int64_t>(i) * 3);
}

TEST(KeySetTest, TupleReadsBackWithEveryKindOfValue) {
  KeySet keys(KeySet::Kind::tuple);
  const std::vector<Tuple> tuples = {
      {std::monostate()},
      {std::int64_t{0}, std::int64_t{127}, std::int64_t{-128}, std::int64_t{128}, std::int64_t{-129}},
      {std::int64_t{32767}, std::int64_t{32768}, std::int64_t{-32769}, std::int64_t{2147483647}},
      {std::int64_t{2147483648}, std::int64_t{-2147483649}, std::numeric_limits<std::int64_t>::min()},
      {0.1, -1e300, std::numeric_limits<double>::infinity()},
      {""s, "a"s, "a\0b"s, std::string(127, 'x'), std::string(128, 'y'), std::string(100000, 'z')},
      {Blob{}, Blob{"a\0"s}, "a"s, std::monostate(), std::int64_t{1}, 1.0},
  };
  for (const Tuple& tuple : tuples) keys.append(tuple);
  ASSERT_EQ(keys.count(), tuples.size());
  for (std::size_t i = 0; i < tuples.size(); ++i) EXPECT_EQ(keys.keyAt(i), Key(tuples[i])) << i;
}

TEST(KeySetTest, KeyOfEitherKindIsAppended) {
  KeySet rowIds;
  rowIds.append(Key(std::int64_t{8}));
  EXPECT_EQ(rowIds.rowIdAt(0), 8);
  KeySet tuples(KeySet::Kind::tuple);
  tuples.append(Key(tupleOf(8)));
  EXPECT_EQ(tuples.keyAt(0), Key(tupleOf(8)));
}

TEST(KeySetTest, EraseMovesTheKeysBehindUp) {
  KeySet keys = rowIdSet(5);
  erase(&keys, 1);
  EXPECT_EQ(rowIdsOf(keys), (std::vector<std::int64_t>{0, 6, 9, 12}));
  erase(&keys, 3);
  EXPECT_EQ(rowIdsOf(keys), (std::vector<std::int64_t>{0, 6, 9}));
  erase(&keys, 0);
  EXPECT_EQ(rowIdsOf(keys), (std::vector<std::int64_t>{6, 9}));
}

TEST(KeySetTest, EraseAcrossBlocksKeepsTheOrder) {
  for (const std::size_t index :
       {std::size_t{0}, kBlock - 1, kBlock, kBlock + 1, 2 * kBlock, 2 * kBlock + 4}) {
    KeySet keys = rowIdSet(2 * kBlock + 5);
    erase(&keys, index);
    ASSERT_EQ(keys.count(), 2 * kBlock + 4);
    for (std::size_t i = 0; i < keys.count(); ++i)
      ASSERT_EQ(keys.rowIdAt(i), static_cast<std::int64_t>(i < index ? i : i + 1) * 3) << index;
  }
}

TEST(KeySetTest, EraseThatEmptiesABlockGivesItBackAndAppendGoesOn) {
  KeySet keys = rowIdSet(kBlock + 2);
  const std::size_t before = testsupport::liveBytes();
  erase(&keys, kBlock + 1);
  erase(&keys, kBlock);
  EXPECT_LE(testsupport::liveBytes() + kBlock * sizeof(std::int64_t), before);
  keys.append(std::int64_t{-7});
  keys.append(std::int64_t{-8});
  EXPECT_EQ(keys.count(), kBlock + 2);
  EXPECT_EQ(keys.rowIdAt(kBlock - 1), static_cast<std::int64_t>(kBlock - 1) * 3);
  EXPECT_EQ(keys.rowIdAt(kBlock), -7);
  EXPECT_EQ(keys.rowIdAt(kBlock + 1), -8);
}

TEST(KeySetTest, EraseInASetOfTuples) {
  KeySet keys = tupleSet(4);
  erase(&keys, 1);
  EXPECT_EQ(keysOf(keys), (std::vector<Key>{tupleOf(0), tupleOf(2), tupleOf(3)}));
}

TEST(KeySetTest, RandomChangesAgreeWithAPlainVector) {
  std::mt19937 random(20014);
  KeySet keys;
  std::vector<std::int64_t> expected;
  const auto check = [&] { ASSERT_EQ(rowIdsOf(keys), expected); };
  for (int step = 0; step < 4000; ++step) {
    const auto rowId = static_cast<std::int64_t>(random());
    const auto choice = random() % 8;
    if (choice < 4 || expected.empty()) {
      keys.append(rowId);
      expected.push_back(rowId);
    } else if (choice < 7) {
      const std::size_t index = random() % expected.size();
      erase(&keys, index);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
    } else {
      const std::size_t index = random() % expected.size();
      keys.replaceAt(index, rowId);
      expected[index] = rowId;
    }
    if (step % 100 == 0) check();
  }
  check();
}

TEST(KeySetTest, ReplaceChangesOneKey) {
  KeySet rowIds = rowIdSet(3);
  rowIds.replaceAt(1, std::int64_t{-4});
  EXPECT_EQ(rowIdsOf(rowIds), (std::vector<std::int64_t>{0, -4, 6}));

  KeySet tuples = tupleSet(3);
  tuples.replaceAt(1, Tuple{std::string(300, 'n')});
  EXPECT_EQ(keysOf(tuples), (std::vector<Key>{tupleOf(0), Tuple{std::string(300, 'n')}, tupleOf(2)}));
}

TEST(KeySetTest, FindFromAnyHint) {
  const KeySet rowIds = rowIdSet(50);
  const KeySet tuples = tupleSet(50);
  for (std::size_t index = 0; index < 50; ++index) {
    for (const std::size_t hint :
         {std::size_t{0}, index, std::size_t{25}, std::size_t{49}, std::size_t{50}, KeySet::npos}) {
      EXPECT_EQ(rowIds.find(static_cast<std::int64_t>(index) * 3, hint), index);
      EXPECT_EQ(tuples.find(tupleOf(index), hint), index);
    }
  }
}

TEST(KeySetTest, FindTakesTheNearestOfEqualKeys) {
  KeySet keys;
  for (const std::int64_t rowId : {7, 1, 2, 3, 7}) keys.append(rowId);
  EXPECT_EQ(keys.find(std::int64_t{7}, 0), 0u);
  EXPECT_EQ(keys.find(std::int64_t{7}, 1), 0u);
  EXPECT_EQ(keys.find(std::int64_t{7}, 3), 4u);
  EXPECT_EQ(keys.find(std::int64_t{7}, 100), 4u);
}

TEST(KeySetTest, FindOfAMissingKey) {
  EXPECT_EQ(rowIdSet(50).find(std::int64_t{1}, 20), KeySet::npos);
  EXPECT_EQ(tupleSet(50).find(tupleOf(50), 20), KeySet::npos);
  EXPECT_EQ(KeySet().find(std::int64_t{0}, 0), KeySet::npos);
  EXPECT_EQ(KeySet(KeySet::Kind::tuple).find(tupleOf(0), 0), KeySet::npos);
}

TEST(KeySetTest, FindOfAKeyOfTheOtherKind) {
  EXPECT_EQ(rowIdSet(5).find(Tuple{std::int64_t{3}}, 0), KeySet::npos);
  EXPECT_EQ(tupleSet(5).find(std::int64_t{3}, 0), KeySet::npos);
}

TEST(KeySetTest, FindToldApartTuplesOfWhichOneBeginsLikeTheOther) {
  KeySet keys(KeySet::Kind::tuple);
  keys.append(Tuple{"a"s, "b"s});
  keys.append(Tuple{"a"s});
  keys.append(Tuple{"ab"s});
  keys.append(Tuple{Blob{"a"}});
  EXPECT_EQ(keys.find(Tuple{"a"s}, 0), 1u);
  EXPECT_EQ(keys.find(Tuple{"ab"s}, 0), 2u);
  EXPECT_EQ(keys.find(Tuple{Blob{"a"}}, 0), 3u);
  EXPECT_EQ(keys.find(Tuple{"b"s}, 0), KeySet::npos);
}

TEST(KeySetTest, FindAfterEraseAndReplace) {
  KeySet keys = tupleSet(4);
  keys.replaceAt(2, tupleOf(9));
  erase(&keys, 0);
  EXPECT_EQ(keys.find(tupleOf(9), 0), 1u);
  EXPECT_EQ(keys.find(tupleOf(2), 0), KeySet::npos);
  EXPECT_EQ(keys.find(tupleOf(0), 0), KeySet::npos);
}

TEST(KeySetTest, ZeroOfEitherSignIsTheSameKey) {
  KeySet keys(KeySet::Kind::tuple);
  keys.append(Tuple{-0.0});
  EXPECT_EQ(keys.find(Tuple{0.0}, 0), 0u);
}

TEST(KeySetTest, CloneIsASetOfItsOwn) {
  KeySet rowIds = rowIdSet(2 * kBlock + 3);
  KeySet copy = rowIds.clone();
  EXPECT_EQ(rowIdsOf(copy), rowIdsOf(rowIds));
  erase(&copy, 0);
  copy.append(std::int64_t{-5});
  EXPECT_EQ(rowIds.rowIdAt(0), 0);
  EXPECT_EQ(rowIds.count(), 2 * kBlock + 3);

  KeySet tuples = tupleSet(3);
  KeySet tupleCopy = tuples.clone();
  tuples.clear();
  EXPECT_EQ(tupleCopy.kind(), KeySet::Kind::tuple);
  EXPECT_EQ(keysOf(tupleCopy), (std::vector<Key>{tupleOf(0), tupleOf(1), tupleOf(2)}));
  EXPECT_EQ(KeySet().clone().count(), 0u);
}

TEST(KeySetTest, MoveLeavesAnEmptyUsableSet) {
  KeySet keys = tupleSet(3);
  KeySet taken(std::move(keys));
  EXPECT_EQ(taken.count(), 3u);
  // What was moved from is empty and usable: that is the contract.
  // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
  EXPECT_EQ(keys.count(), 0u);
  EXPECT_EQ(keys.kind(), KeySet::Kind::tuple);
  keys.append(tupleOf(7));
  EXPECT_EQ(keys.keyAt(0), Key(tupleOf(7)));

  keys = std::move(taken);
  EXPECT_EQ(keysOf(keys), (std::vector<Key>{tupleOf(0), tupleOf(1), tupleOf(2)}));
  EXPECT_EQ(taken.count(), 0u);
  // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
}

TEST(KeySetTest, MoveOverAFullSetFreesItAndTakesTheKind) {
  const std::size_t before = testsupport::liveBytes();
  {
    KeySet keys = rowIdSet(5000);
    keys = tupleSet(2);
    EXPECT_EQ(keys.kind(), KeySet::Kind::tuple);
    EXPECT_EQ(keysOf(keys), (std::vector<Key>{tupleOf(0), tupleOf(1)}));
  }
  EXPECT_EQ(testsupport::liveBytes(), before);
}

}  // namespace
}  // namespace store
