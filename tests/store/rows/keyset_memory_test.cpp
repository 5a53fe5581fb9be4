// What sets of keys cost, and what is left of them when memory is refused.
#include <cstdint>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <vector>

#include "tests/store/allocation_probe.h"
#include "tests/store/rows/keyset_fixture.h"

namespace store {
namespace {

/// Runs `change` again and again, each time with one more allocation allowed, until it succeeds; after
/// each failure `check` must hold. Returns how often memory was refused.
template <typename Change, typename Check>
int failEachAllocation(const Change& change, const Check& check) {
  for (int refusals = 0;; ++refusals) {
    try {
      const testsupport::AllocationLimit limit(static_cast<std::size_t>(refusals));
      change();
      return refusals;
    } catch (const std::bad_alloc&) {
    }
    check();
  }
}

TEST(KeySetTest, NewSetIsEmptyAndHoldsNoMemory) {
  const testsupport::AllocationLimit limit(0);
  const KeySet rowIds;
  const KeySet tuples(KeySet::Kind::tuple);
  EXPECT_EQ(rowIds.count(), 0u);
  EXPECT_EQ(rowIds.kind(), KeySet::Kind::rowId);
  EXPECT_EQ(tuples.count(), 0u);
  EXPECT_EQ(tuples.kind(), KeySet::Kind::tuple);
  EXPECT_FALSE(limit.wasReached());
}

TEST(KeySetTest, ErasingEveryKeyGivesAllMemoryBack) {
  const std::size_t before = testsupport::liveBytes();
  KeySet rowIds = rowIdSet(3000);
  KeySet tuples = tupleSet(100);
  while (rowIds.count() != 0) erase(&rowIds, rowIds.count() / 2);
  while (tuples.count() != 0) erase(&tuples, 0);
  EXPECT_EQ(testsupport::liveBytes(), before);
  rowIds.append(std::int64_t{4});
  tuples.append(tupleOf(4));
  EXPECT_EQ(rowIds.rowIdAt(0), 4);
  EXPECT_EQ(tuples.keyAt(0), Key(tupleOf(4)));
}

TEST(KeySetTest, ClearGivesAllMemoryBack) {
  const std::size_t before = testsupport::liveBytes();
  KeySet rowIds = rowIdSet(kBlock * 2);
  KeySet tuples = tupleSet(1000);
  rowIds.clear();
  tuples.clear();
  EXPECT_EQ(rowIds.count(), 0u);
  EXPECT_EQ(tuples.count(), 0u);
  EXPECT_EQ(tuples.kind(), KeySet::Kind::tuple);
  EXPECT_EQ(testsupport::liveBytes(), before);
  rowIds.append(std::int64_t{1});
  EXPECT_EQ(rowIds.rowIdAt(0), 1);
}

TEST(KeySetTest, MillionRowIdsTakeTwelveBytesEachAtMostEvenWhileGrowing) {
  constexpr std::size_t kCount = 1000000;
  const std::size_t before = testsupport::liveBytes();
  testsupport::resetPeak();
  const KeySet keys = rowIdSet(kCount);
  EXPECT_EQ(keys.count(), kCount);
  EXPECT_LE(testsupport::peakBytes() - before, 12 * kCount);
  EXPECT_GE(testsupport::peakBytes() - before, 8 * kCount);
}

TEST(KeySetTest, GrowingHoldsOneBlockBesidesTheKeysAtMost) {
  const std::size_t before = testsupport::liveBytes();
  KeySet keys;
  for (std::size_t count = 1; count <= 5 * kBlock; ++count) {
    testsupport::resetPeak();
    keys.append(static_cast<std::int64_t>(count) * 3);
    // A block, and a little for the list of blocks.
    ASSERT_LE(testsupport::peakBytes() - before, (count + kBlock) * 8 + 1024) << count;
  }
}

TEST(KeySetTest, SmallSetTakesLittle) {
  const std::size_t before = testsupport::liveBytes();
  const KeySet keys = rowIdSet(100);
  EXPECT_LE(testsupport::liveBytes() - before, 10000u);
}

TEST(KeySetTest, RefusedMemoryLeavesTheRowIdsAsTheyWere) {
  for (const std::size_t count : {std::size_t{0}, std::size_t{1024}, kBlock, 2 * kBlock, 4 * kBlock}) {
    KeySet keys = rowIdSet(count);
    const std::vector<std::int64_t> before = rowIdsOf(keys);
    const int refusals = failEachAllocation([&] { keys.append(std::int64_t{-1}); },
                                            [&] { ASSERT_EQ(rowIdsOf(keys), before); });
    EXPECT_GT(refusals, 0) << count;
    ASSERT_EQ(keys.count(), count + 1);
    EXPECT_EQ(keys.rowIdAt(count), -1);
    if (count != 0) {
      EXPECT_EQ(keys.rowIdAt(count - 1), before.back());
    }
  }
}

TEST(KeySetTest, RefusedMemoryLeavesTheTuplesAsTheyWere) {
  const Tuple longTuple = {std::string(5000, 'k')};
  for (const std::size_t count : {0, 1, 1024}) {
    KeySet keys = tupleSet(count);
    const std::vector<Key> before = keysOf(keys);
    const auto check = [&] { ASSERT_EQ(keysOf(keys), before); };
    EXPECT_GT(failEachAllocation([&] { keys.append(longTuple); }, check), 0);
    ASSERT_EQ(keys.count(), count + 1);
    EXPECT_EQ(keys.keyAt(count), Key(longTuple));
    erase(&keys, count);
    EXPECT_EQ(keysOf(keys), before);
  }
}

TEST(KeySetTest, RefusedAppendsTakeNoRoomInTheBufferOfTheTuples) {
  // The words of the set are full and the buffer has room: the tuple is in before memory is refused.
  KeySet keys(KeySet::Kind::tuple);
  for (int i = 0; i < 1024; ++i) keys.append(Tuple{std::monostate()});
  const Tuple tuple = {std::int64_t{1}};
  {
    const testsupport::AllocationLimit limit(0);
    for (int i = 0; i < 10000; ++i) EXPECT_THROW(keys.append(tuple), std::bad_alloc);
  }
  {
    const testsupport::AllocationLimit limit(1);  // for the block, not for a larger buffer as well
    EXPECT_NO_THROW(keys.append(tuple));
  }
  EXPECT_EQ(keys.keyAt(1023), Key(Tuple{std::monostate()}));
  EXPECT_EQ(keys.keyAt(1024), Key(tuple));
}

TEST(KeySetTest, RefusedMemoryLeavesReplacedAndClonedSetsAsTheyWere) {
  KeySet keys = tupleSet(3);
  const std::vector<Key> before = keysOf(keys);
  const auto check = [&] { ASSERT_EQ(keysOf(keys), before); };
  KeySet copy;
  EXPECT_GT(failEachAllocation([&] { copy = keys.clone(); }, check), 0);
  EXPECT_EQ(keysOf(copy), before);
  const Key longKey = Tuple{std::string(5000, 'k')};
  EXPECT_GT(failEachAllocation([&] { keys.replaceAt(1, longKey); }, check), 0);
  EXPECT_EQ(keys.keyAt(1), longKey);
}

TEST(KeySetTest, EraseNeedsNoMemory) {
  KeySet keys = rowIdSet(kBlock + 2);
  keys.prepareErase(5);
  const testsupport::AllocationLimit limit(0);
  keys.eraseAt(5);
  keys.eraseAt(5);
  keys.eraseAt(5);
  EXPECT_FALSE(limit.wasReached());
}

}  // namespace
}  // namespace store
