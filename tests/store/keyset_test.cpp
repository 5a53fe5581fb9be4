#include "platform/store/engine/keyset.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/store/allocation_probe.h"

using namespace std::string_literals;

namespace store {
namespace {

using Tuple = std::vector<Value>;

constexpr std::size_t kBlock = 65536;  // keys in one block

KeySet rowIdSet(std::size_t count) {
  KeySet keys;
  for (std::size_t i = 0; i < count; ++i) keys.append(static_cast<std::int64_t>(i) * 3);
  return keys;
}

Tuple tupleOf(std::size_t number) {
  return {static_cast<std::int64_t>(number), "name " + std::to_string(number)};
}

KeySet tupleSet(std::size_t count) {
  KeySet keys(KeySet::Kind::tuple);
  for (std::size_t i = 0; i < count; ++i) keys.append(tupleOf(i));
  return keys;
}

std::vector<Key> keysOf(const KeySet& keys) {
  std::vector<Key> all;
  for (std::size_t i = 0; i < keys.count(); ++i) all.push_back(keys.keyAt(i));
  return all;
}

std::vector<std::int64_t> rowIdsOf(const KeySet& keys) {
  std::vector<std::int64_t> all;
  for (std::size_t i = 0; i < keys.count(); ++i) all.push_back(keys.rowIdAt(i));
  return all;
}

std::string bytesOf(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes.push_back(static_cast<char>(value));
  return bytes;
}

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
  keys.eraseAt(1);
  EXPECT_EQ(rowIdsOf(keys), (std::vector<std::int64_t>{0, 6, 9, 12}));
  keys.eraseAt(3);
  EXPECT_EQ(rowIdsOf(keys), (std::vector<std::int64_t>{0, 6, 9}));
  keys.eraseAt(0);
  EXPECT_EQ(rowIdsOf(keys), (std::vector<std::int64_t>{6, 9}));
}

TEST(KeySetTest, EraseAcrossBlocksKeepsTheOrder) {
  for (const std::size_t index :
       {std::size_t{0}, kBlock - 1, kBlock, kBlock + 1, 2 * kBlock, 2 * kBlock + 4}) {
    KeySet keys = rowIdSet(2 * kBlock + 5);
    keys.eraseAt(index);
    ASSERT_EQ(keys.count(), 2 * kBlock + 4);
    for (std::size_t i = 0; i < keys.count(); ++i)
      ASSERT_EQ(keys.rowIdAt(i), static_cast<std::int64_t>(i < index ? i : i + 1) * 3) << index;
  }
}

TEST(KeySetTest, EraseThatEmptiesABlockGivesItBackAndAppendGoesOn) {
  KeySet keys = rowIdSet(kBlock + 1);
  const std::size_t before = testsupport::liveBytes();
  keys.eraseAt(kBlock);
  EXPECT_LE(testsupport::liveBytes() + kBlock * sizeof(std::int64_t), before);
  keys.append(std::int64_t{-7});
  keys.append(std::int64_t{-8});
  EXPECT_EQ(keys.count(), kBlock + 2);
  EXPECT_EQ(keys.rowIdAt(kBlock - 1), static_cast<std::int64_t>(kBlock - 1) * 3);
  EXPECT_EQ(keys.rowIdAt(kBlock), -7);
  EXPECT_EQ(keys.rowIdAt(kBlock + 1), -8);
}

TEST(KeySetTest, ErasingEveryKeyGivesAllMemoryBack) {
  const std::size_t before = testsupport::liveBytes();
  KeySet rowIds = rowIdSet(3000);
  KeySet tuples = tupleSet(100);
  while (rowIds.count() != 0) rowIds.eraseAt(rowIds.count() / 2);
  while (tuples.count() != 0) tuples.eraseAt(0);
  EXPECT_EQ(testsupport::liveBytes(), before);
  rowIds.append(std::int64_t{4});
  tuples.append(tupleOf(4));
  EXPECT_EQ(rowIds.rowIdAt(0), 4);
  EXPECT_EQ(tuples.keyAt(0), Key(tupleOf(4)));
}

TEST(KeySetTest, EraseInASetOfTuples) {
  KeySet keys = tupleSet(4);
  keys.eraseAt(1);
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
      keys.eraseAt(index);
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
  keys.eraseAt(0);
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
  copy.eraseAt(0);
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
  EXPECT_EQ(keys.count(), 0u);  // NOLINT(bugprone-use-after-move): the contract allows it
  EXPECT_EQ(keys.kind(), KeySet::Kind::tuple);
  keys.append(tupleOf(7));
  EXPECT_EQ(keys.keyAt(0), Key(tupleOf(7)));

  keys = std::move(taken);
  EXPECT_EQ(keysOf(keys), (std::vector<Key>{tupleOf(0), tupleOf(1), tupleOf(2)}));
  EXPECT_EQ(taken.count(), 0u);  // NOLINT(bugprone-use-after-move): the contract allows it
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
    keys.append(static_cast<std::int64_t>(count));
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
    keys.eraseAt(count);
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
  const testsupport::AllocationLimit limit(0);
  keys.eraseAt(5);
  keys.eraseAt(5);
  keys.eraseAt(5);
  EXPECT_FALSE(limit.wasReached());
}

TEST(BookmarkTest, KeysOfEachKindSurvive) {
  const std::vector<Key> keys = {
      std::int64_t{0},
      std::int64_t{-1},
      std::numeric_limits<std::int64_t>::max(),
      std::numeric_limits<std::int64_t>::min(),
      Tuple{std::monostate()},
      Tuple{std::int64_t{0}},
      Tuple{std::int64_t{300}, 0.5, "\xD0\x96\0"s, Blob{"\0\xFF"s}, std::monostate()},
      Tuple{std::string(70000, 'a')},
      Tuple(kMaxKeyValueCount, Value(std::int64_t{1})),
  };
  for (const Key& key : keys) EXPECT_EQ(keyOfBookmark(bookmarkOf(key)), key);
}

TEST(BookmarkTest, FormatIsAsDocumented) {
  EXPECT_EQ(bookmarkOf(std::int64_t{5}), bytesOf({1, 1, 5}));
  EXPECT_EQ(bookmarkOf(std::int64_t{-2}), bytesOf({1, 1, 0xFE}));
  EXPECT_EQ(bookmarkOf(std::int64_t{0x1234}), bytesOf({1, 2, 0x34, 0x12}));
  EXPECT_EQ(bookmarkOf(std::int64_t{0x12345678}), bytesOf({1, 3, 0x78, 0x56, 0x34, 0x12}));
  EXPECT_EQ(bookmarkOf(std::int64_t{0x100000000}), bytesOf({1, 4, 0, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(bookmarkOf(Tuple{std::monostate(), 1.0, "ab"s, Blob{"c"}}),
            bytesOf({2, 0, 5, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 6, 2, 'a', 'b', 7, 1, 'c'}));
  EXPECT_EQ(bookmarkOf(Tuple{std::string(300, 'x')}).substr(0, 5), bytesOf({2, 6, 0xAC, 0x02, 'x'}));
}

TEST(BookmarkTest, DifferentKeysHaveDifferentBytes) {
  const std::vector<Key> keys = {
      std::int64_t{1},   Tuple{std::int64_t{1}},  Tuple{1.0},   Tuple{"1"s},
      Tuple{Blob{"1"}},  Tuple{"1"s, "1"s},       Tuple{"11"s}, Tuple{""s, "11"s},
      Tuple{"11"s, ""s}, Tuple{std::monostate()}, Tuple{""s},   Tuple{Blob{}},
  };
  for (std::size_t i = 0; i < keys.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(bookmarkOf(keys[i]), bookmarkOf(keys[j])) << i << ", " << j;
  }
}

TEST(BookmarkTest, EqualKeysHaveEqualBytes) {
  EXPECT_EQ(bookmarkOf(Tuple{-0.0}), bookmarkOf(Tuple{0.0}));
  EXPECT_EQ(bookmarkOf(Tuple{"a"s}), bookmarkOf(Tuple{std::string("abc", 1)}));
}

TEST(BookmarkTest, HostileBytesAreRefused) {
  struct Case {
    const char* name;
    std::string bytes;
  };
  const std::vector<Case> cases = {
      {"nothing", ""},
      {"a row id without content", bytesOf({1})},
      {"an unknown kind of key", bytesOf({0, 1, 5})},
      {"another unknown kind of key", bytesOf({3, 1, 5})},
      {"a row id that is null", bytesOf({1, 0})},
      {"a row id that is a text", bytesOf({1, 6, 1, 'a'})},
      {"two row ids", bytesOf({1, 1, 5, 1, 6})},
      {"a byte behind the row id", bytesOf({1, 1, 5, 9})},
      {"a row id that is cut", bytesOf({1, 4, 0, 0, 0, 0, 1, 0, 0})},
      {"an integer wider than it need be", bytesOf({1, 2, 5, 0})},
      {"a negative integer wider than it need be", bytesOf({1, 4, 0xFE, 255, 255, 255, 255, 255, 255, 255})},
      {"a tuple without values", bytesOf({2})},
      {"an unknown kind of value", bytesOf({2, 8})},
      {"a kind of value above all", bytesOf({2, 255})},
      {"a double that is cut", bytesOf({2, 5, 0, 0, 0})},
      {"a negative zero", bytesOf({2, 5, 0, 0, 0, 0, 0, 0, 0, 0x80})},
      {"a text without a length", bytesOf({2, 6})},
      {"a text that is cut", bytesOf({2, 6, 3, 'a', 'b'})},
      {"a length that is cut", bytesOf({2, 6, 0x80})},
      {"a length with a superfluous byte", bytesOf({2, 6, 0x81, 0, 'a'})},
      {"the largest length", bytesOf({2, 6, 255, 255, 255, 255, 255, 255, 255, 255, 0x7F, 'a'})},
      {"a length beyond 64 bits", bytesOf({2, 6, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 1, 'a'})},
      {"a length that wraps round to 1",
       bytesOf({2, 6, 0x81, 128, 128, 128, 128, 128, 128, 128, 128, 2, 'a'})},
      {"a blob that is cut", bytesOf({2, 7, 2, 'a'})},
      {"something behind the values", bytesOf({2, 1, 5, 9})},
      {"too many values", bytesOf({2}) + std::string(kMaxKeyValueCount + 1, '\0')},
  };
  for (const Case& c : cases) EXPECT_EQ(keyOfBookmark(c.bytes), std::nullopt) << c.name;
}

TEST(BookmarkTest, HostileLengthReservesNoMemory) {
  const std::string bytes = bytesOf({2, 6, 255, 255, 255, 255, 0x0F, 'a'});
  const std::size_t before = testsupport::liveBytes();
  testsupport::resetPeak();
  EXPECT_EQ(keyOfBookmark(bytes), std::nullopt);
  EXPECT_LE(testsupport::peakBytes() - before, 1000u);
}

TEST(BookmarkTest, BytesThatAreTakenAreExactlyThoseOfTheKey) {
  std::mt19937 random(20015);
  int takenCount = 0;
  for (int round = 0; round < 200000; ++round) {
    std::string bytes(1 + random() % 12, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random() % (random() % 4 == 0 ? 256 : 9));
    const std::optional<Key> key = keyOfBookmark(bytes);
    if (!key.has_value()) continue;
    ++takenCount;
    ASSERT_EQ(bookmarkOf(*key), bytes);
  }
  EXPECT_GT(takenCount, 100);
}

}  // namespace
}  // namespace store
