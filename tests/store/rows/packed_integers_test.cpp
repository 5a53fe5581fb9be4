#include "platform/store/rows/packed_integers.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <random>
#include <vector>

#include "tests/store/allocation_probe.h"

namespace store {
namespace {

constexpr std::size_t kBlock = 65536;
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

std::vector<std::int64_t> contentOf(const PackedIntegers& integers) {
  std::vector<std::int64_t> all;
  for (std::size_t i = 0; i < integers.count(); ++i) all.push_back(integers.at(i));
  return all;
}

/// `count` integers from `first` on.
PackedIntegers runOf(std::int64_t first, std::size_t count) {
  PackedIntegers integers;
  for (std::size_t i = 0; i < count; ++i) integers.append(first + static_cast<std::int64_t>(i));
  return integers;
}

void erase(PackedIntegers* integers, std::size_t index) {
  integers->prepareErase(index);
  integers->eraseAt(index);
}

/// The list beside a plain vector, through the same changes.
struct Twins {
  PackedIntegers packed;
  std::vector<std::int64_t> plain;

  void append(std::int64_t integer) {
    packed.append(integer);
    plain.push_back(integer);
  }
  void eraseAt(std::size_t index) {
    erase(&packed, index);
    plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(index));
  }
  void replaceAt(std::size_t index, std::int64_t integer) {
    packed.replaceAt(index, integer);
    plain[index] = integer;
  }
};

TEST(PackedIntegersTest, AMillionThatFollowOneAnotherTakeNextToNothing) {
  const std::size_t before = testsupport::liveBytes();
  testsupport::resetPeak();
  const PackedIntegers integers = runOf(1, 1'000'000);
  EXPECT_LT(testsupport::peakBytes() - before, 4096u);
  EXPECT_EQ(integers.count(), 1'000'000u);
  EXPECT_EQ(integers.at(0), 1);
  EXPECT_EQ(integers.at(kBlock - 1), static_cast<std::int64_t>(kBlock));
  EXPECT_EQ(integers.at(999'999), 1'000'000);
}

TEST(PackedIntegersTest, AGapCostsItsOwnBlockOnly) {
  const std::size_t before = testsupport::liveBytes();
  PackedIntegers integers = runOf(0, 4 * kBlock);
  for (std::int64_t i = 0; i < static_cast<std::int64_t>(4 * kBlock); ++i) integers.append(i == 9 ? -1 : i);
  EXPECT_EQ(integers.at(4 * kBlock + 9), -1);
  EXPECT_EQ(integers.at(4 * kBlock + 10), 10);
  EXPECT_LT(testsupport::liveBytes() - before, kBlock * sizeof(std::int64_t) + 4096);
}

TEST(PackedIntegersTest, ARunGoesRoundBehindTheGreatest) {
  Twins twins;
  for (const std::int64_t integer : {kMost - 1, kMost, kLeast, kLeast + 1, kMost}) twins.append(integer);
  EXPECT_EQ(contentOf(twins.packed), twins.plain);
  twins.eraseAt(0);
  twins.eraseAt(1);
  EXPECT_EQ(contentOf(twins.packed), twins.plain);
}

TEST(PackedIntegersTest, EachPlaceOfARunOverSeveralBlocksIsErased) {
  for (const std::size_t index : {std::size_t{0}, std::size_t{1}, kBlock - 1, kBlock, kBlock + 1,
                                  2 * kBlock - 1, 2 * kBlock, 2 * kBlock + 9}) {
    Twins twins;
    for (std::size_t i = 0; i < 2 * kBlock + 10; ++i) twins.append(static_cast<std::int64_t>(i) - 5);
    twins.eraseAt(index);
    twins.append(-7);
    ASSERT_EQ(contentOf(twins.packed), twins.plain) << index;
  }
}

TEST(PackedIntegersTest, ErasingFromTheFrontKeepsARunPacked) {
  const std::size_t before = testsupport::liveBytes();
  PackedIntegers integers = runOf(10, 3 * kBlock);
  for (int n = 0; n < 5; ++n) erase(&integers, 0);
  EXPECT_EQ(integers.at(0), 15);
  EXPECT_EQ(integers.at(3 * kBlock - 6), static_cast<std::int64_t>(3 * kBlock + 9));
  EXPECT_LT(testsupport::liveBytes() - before, 4096u);
}

TEST(PackedIntegersTest, TheLastIsErasedWithoutPreparation) {
  PackedIntegers integers = runOf(0, kBlock + 2);
  integers.append(-1);
  for (std::size_t count = kBlock + 3; count > kBlock - 2; --count) integers.eraseAt(count - 1);
  EXPECT_EQ(contentOf(integers), contentOf(runOf(0, kBlock - 2)));
  integers.append(-1);
  EXPECT_EQ(integers.at(kBlock - 2), -1);
}

TEST(PackedIntegersTest, ReplacingByTheSameKeepsARunPacked) {
  const std::size_t before = testsupport::liveBytes();
  PackedIntegers integers = runOf(0, kBlock);
  integers.replaceAt(7, 7);
  EXPECT_LT(testsupport::liveBytes() - before, 4096u);
  integers.replaceAt(7, 8);
  EXPECT_EQ(integers.at(6), 6);
  EXPECT_EQ(integers.at(7), 8);
  EXPECT_EQ(integers.at(kBlock - 1), static_cast<std::int64_t>(kBlock - 1));
}

TEST(PackedIntegersTest, ErasingNeedsNoMemoryOncePrepared) {
  for (const std::size_t index :
       {std::size_t{0}, std::size_t{3}, kBlock - 1, kBlock, kBlock + 5, 3 * kBlock + 1}) {
    // Two runs, of which the second begins inside a block.
    PackedIntegers integers = runOf(0, kBlock + 100);
    for (std::size_t i = 0; i < 2 * kBlock; ++i)
      integers.append(-static_cast<std::int64_t>(3 * kBlock) + static_cast<std::int64_t>(i));
    std::vector<std::int64_t> expected = contentOf(integers);
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
    integers.prepareErase(index);
    {
      const testsupport::AllocationLimit limit(0);
      integers.eraseAt(index);
      EXPECT_FALSE(limit.wasReached()) << index;
    }
    ASSERT_EQ(contentOf(integers), expected) << index;
  }
}

TEST(PackedIntegersTest, RefusedMemoryLeavesARunAsItWas) {
  PackedIntegers integers = runOf(0, 2 * kBlock + 5);
  const std::vector<std::int64_t> before = contentOf(integers);
  {
    const testsupport::AllocationLimit limit(0);
    EXPECT_THROW(integers.append(-1), std::bad_alloc);
    EXPECT_THROW(integers.replaceAt(3, -1), std::bad_alloc);
    EXPECT_THROW(integers.prepareErase(3), std::bad_alloc);
  }
  EXPECT_EQ(contentOf(integers), before);
  integers.append(static_cast<std::int64_t>(2 * kBlock + 5));
  EXPECT_EQ(integers.at(2 * kBlock + 5), static_cast<std::int64_t>(2 * kBlock + 5));
}

TEST(PackedIntegersTest, AMovedListIsEmptyAndGoesOn) {
  PackedIntegers first = runOf(5, 10);
  PackedIntegers second(std::move(first));
  EXPECT_EQ(first.count(), 0u);  // NOLINT(bugprone-use-after-move): promised by the class
  first.append(1);
  EXPECT_EQ(contentOf(first), std::vector<std::int64_t>{1});
  second.append(15);
  second.append(0);
  first = std::move(second);
  first.append(1);
  EXPECT_EQ(first.count(), 13u);
  EXPECT_EQ(first.at(9), 14);
  EXPECT_EQ(first.at(10), 15);
  EXPECT_EQ(first.at(12), 1);
}

TEST(PackedIntegersTest, RandomChangesAgreeWithAPlainVector) {
  std::mt19937 random(40211);
  Twins twins;
  std::int64_t next = 0;
  const auto anyIndex = [&] { return random() % twins.plain.size(); };
  for (int step = 0; step < 600; ++step) {
    switch (random() % 8) {
      case 0:
        next = static_cast<std::int64_t>(random()) - (std::int64_t{1} << 31);
        [[fallthrough]];
      case 1:
      case 2:
        for (std::size_t left = random() % 9000; left != 0; --left) twins.append(next++);
        break;
      case 3:
        if (!twins.plain.empty()) twins.replaceAt(anyIndex(), static_cast<std::int64_t>(random()));
        break;
      case 4:
        if (!twins.plain.empty()) twins.eraseAt(0);
        break;
      case 5:
        if (!twins.plain.empty()) twins.eraseAt(twins.plain.size() - 1);
        break;
      case 6:
        if (!twins.plain.empty()) twins.eraseAt(anyIndex() / kBlock * kBlock);
        break;
      default:
        if (!twins.plain.empty()) twins.eraseAt(anyIndex());
    }
    if (step % 100 == 99) {
      ASSERT_EQ(contentOf(twins.packed), twins.plain) << step;
    }
  }
  EXPECT_GT(twins.plain.size(), 3 * kBlock);
  while (twins.plain.size() > 3) {
    twins.packed.eraseAt(twins.packed.count() - 1);
    twins.plain.pop_back();
  }
  EXPECT_EQ(contentOf(twins.packed), twins.plain);
}

}  // namespace
}  // namespace store
