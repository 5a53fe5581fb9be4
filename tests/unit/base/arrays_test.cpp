#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "base/growable_array.h"
#include "base/name_list.h"
#include "gtest/gtest.h"
#include "tests/unit/base/allocation_probe.h"

namespace {

GrowableArray<std::uint32_t> numbers(std::uint32_t count, std::uint32_t growthStep = 1) {
  GrowableArray<std::uint32_t> array(growthStep);
  array.setSize(count);
  for (std::uint32_t i = 0; i < count; ++i) array[i] = i + 1;
  return array;
}

TEST(GrowableArrayTest, BeginsEmptyWithAStepOfOne) {
  const GrowableArray<std::uint32_t> array;
  EXPECT_EQ(array.size(), 0u);
  EXPECT_EQ(array.growthStep(), 1u);
  EXPECT_EQ(array.begin(), array.end());
}

/// How many elements the block has that the new size takes; 0 when it takes none.
std::size_t elementsTaken(GrowableArray<std::uint32_t>& array, std::uint32_t size) {
  const AllocationProbe probe;
  array.setSize(size);
  EXPECT_EQ(array.size(), size);
  return probe.largestLength() / sizeof(std::uint32_t);
}

TEST(GrowableArrayTest, TakesNoMoreThanItsSizeWithAStepOfOne) {
  GrowableArray<std::uint32_t> array;
  for (const std::uint32_t size : {1u, 7u, 3u, 100u}) EXPECT_EQ(elementsTaken(array, size), size);
}

TEST(GrowableArrayTest, TakesWholeSteps) {
  GrowableArray<std::uint32_t> array(4);
  EXPECT_EQ(elementsTaken(array, 1), 4u);
  EXPECT_EQ(elementsTaken(array, 4), 0u);
  EXPECT_EQ(elementsTaken(array, 5), 8u);
  EXPECT_EQ(elementsTaken(array, 2), 4u);
}

TEST(GrowableArrayTest, GrowingKeepsTheElements) {
  GrowableArray<std::uint32_t> array = numbers(3);
  array.setSize(5);
  EXPECT_EQ(array[0], 1u);
  EXPECT_EQ(array[1], 2u);
  EXPECT_EQ(array[2], 3u);
}

TEST(GrowableArrayTest, ShrinkingKeepsTheFirstElements) {
  GrowableArray<std::uint32_t> array = numbers(5);
  array.setSize(2);
  EXPECT_EQ(array.size(), 2u);
  EXPECT_EQ(array[0], 1u);
  EXPECT_EQ(array[1], 2u);
}

TEST(GrowableArrayTest, WithinAStepEveryElementStays) {
  GrowableArray<std::uint32_t> array = numbers(4, 4);
  EXPECT_EQ(elementsTaken(array, 1), 0u);
  EXPECT_EQ(elementsTaken(array, 4), 0u);
  EXPECT_EQ(array[3], 4u) << "elements that come in are not cleared";
}

TEST(GrowableArrayTest, SizeZeroFreesTheBuffer) {
  const AllocationProbe probe;
  GrowableArray<std::uint32_t> array = numbers(5, 4);
  EXPECT_EQ(probe.liveCount(), 1);
  array.setSize(0);
  EXPECT_EQ(probe.liveCount(), 0);
  EXPECT_EQ(array.size(), 0u);
  EXPECT_EQ(array.growthStep(), 4u);
  array.setSize(0);
  EXPECT_EQ(array.size(), 0u);
}

TEST(GrowableArrayTest, AppendGrowsByOneElement) {
  GrowableArray<std::uint32_t> array;
  for (std::uint32_t i = 0; i < 50; ++i) {
    array.append(i);
    EXPECT_EQ(array.size(), i + 1);
  }
  std::uint32_t expected = 0;
  for (const std::uint32_t value : array) EXPECT_EQ(value, expected++);
  EXPECT_EQ(expected, 50u);
}

TEST(GrowableArrayTest, AppendTakesAnElementOfItsOwn) {
  GrowableArray<std::uint32_t> array = numbers(3);
  array.append(array[0]);
  EXPECT_EQ(array[3], 1u);
}

TEST(GrowableArrayTest, HoldsPlainPointers) {
  int first = 1;
  int second = 2;
  GrowableArray<int*> array;
  array.append(&first);
  array.append(&second);
  EXPECT_EQ(array[0], &first);
  EXPECT_EQ(array[1], &second);
}

TEST(GrowableArrayTest, OwningPointersComeInNullAndDeleteWhatIsCutOff) {
  const AllocationProbe probe;
  GrowableArray<std::unique_ptr<int>> array;
  array.setSize(3);
  EXPECT_EQ(array[0], nullptr);
  EXPECT_EQ(array[2], nullptr);
  for (std::unique_ptr<int>& element : array) element = std::make_unique<int>(7);
  EXPECT_EQ(probe.liveCount(), 4);
  array.setSize(1);
  EXPECT_EQ(probe.liveCount(), 2);
  EXPECT_EQ(*array[0], 7);
  array.setSize(0);
  EXPECT_EQ(probe.liveCount(), 0);
}

TEST(GrowableArrayTest, WithoutMemoryTheArrayStays) {
  GrowableArray<std::uint32_t> array = numbers(3);
  AllocationProbe probe;
  probe.failFromNowOn(true);
  EXPECT_THROW(array.setSize(4), std::bad_alloc);
  EXPECT_THROW(array.append(4), std::bad_alloc);
  probe.failFromNowOn(false);
  EXPECT_EQ(array.size(), 3u);
  EXPECT_EQ(array[2], 3u);
}

TEST(GrowableArrayTest, ACapacityBeyond32BitsIsRefused) {
  GrowableArray<std::uint32_t> array = numbers(2, 2);
  EXPECT_THROW(array.setSize(UINT32_MAX), std::bad_alloc);
  EXPECT_EQ(array.size(), 2u);
  EXPECT_EQ(array[1], 2u);
}

TEST(GrowableArrayTest, MovingLeavesTheSourceEmpty) {
  GrowableArray<std::uint32_t> source = numbers(3);
  GrowableArray<std::uint32_t> target = std::move(source);
  EXPECT_EQ(target.size(), 3u);
  EXPECT_EQ(source.size(), 0u);  // NOLINT(bugprone-use-after-move): that is the promise
  GrowableArray<std::uint32_t> assigned = numbers(9);
  assigned = std::move(target);
  EXPECT_EQ(assigned.size(), 3u);
  EXPECT_EQ(assigned[2], 3u);
}

TEST(NameListTest, KeepsTheOrderAndDuplicates) {
  NameList names;
  EXPECT_TRUE(names.isEmpty());
  for (const wchar_t* name : {L"Loans", L"Books", L"Loans"}) names.append(name);
  ASSERT_EQ(names.size(), 3u);
  EXPECT_STREQ(names[0].text(), L"Loans");
  EXPECT_STREQ(names[1].text(), L"Books");
  EXPECT_STREQ(names[2].text(), L"Loans");
}

TEST(NameListTest, HoldsANameInAnyCaseOfItsLetters) {
  NameList names;
  EXPECT_FALSE(names.holds(L"Orders"));
  names.append(L"Orders");
  names.append(L"\u00C4rzte");
  EXPECT_TRUE(names.holds(L"ORDERS"));
  EXPECT_TRUE(names.holds(L"\u00E4RZTE"));
  EXPECT_FALSE(names.holds(L"Order"));
  EXPECT_FALSE(names.holds(L""));
}

TEST(NameListTest, FindsTheVerySameNameBeforeOneInOtherCases) {
  NameList names;
  EXPECT_EQ(names.find(L"Orders"), 0u);
  for (const wchar_t* name : {L"Books", L"ORDERS", L"orders", L"Orders"}) names.append(name);
  EXPECT_EQ(names.find(L"Orders"), 3u);
  EXPECT_EQ(names.find(L"orders"), 2u);
  EXPECT_EQ(names.find(L"oRDERS"), 1u);
  EXPECT_EQ(names.find(L"Order"), 4u);
}

TEST(NameListTest, EmptyingDeletesEveryString) {
  const AllocationProbe probe;
  NameList names;
  for (const wchar_t* name : {L"Loans", L"Books", L""}) names.append(name);
  EXPECT_GT(probe.liveCount(), 0);
  names.clear();
  EXPECT_EQ(probe.liveCount(), 0);
  EXPECT_EQ(names.size(), 0u);
  names.clear();
  EXPECT_EQ(names.size(), 0u);
}

TEST(NameListTest, TheEndOfTheListDeletesEveryString) {
  const AllocationProbe probe;
  {
    NameList names;
    names.append(L"Loans");
    names.append(L"Books");
  }
  EXPECT_EQ(probe.liveCount(), 0);
}

TEST(NameListTest, NamesOfASizedListAreEmptyUntilSet) {
  NameList names;
  names.setSize(3);
  names.set(1, L"Books");
  EXPECT_STREQ(names[0].text(), L"");
  EXPECT_STREQ(names[1].text(), L"Books");
  EXPECT_STREQ(names[2].text(), L"");
  names.set(1, L"Loans");
  EXPECT_STREQ(names[1].text(), L"Loans");
}

TEST(NameListTest, ShrinkingDeletesWhatIsCutOff) {
  NameList names;
  names.append(L"Loans");
  names.append(L"Books");
  names.setSize(1);
  names.setSize(2);
  EXPECT_STREQ(names[0].text(), L"Loans");
  EXPECT_STREQ(names[1].text(), L"");
}

TEST(NameListTest, GrowingDoesNotMoveTheStrings) {
  NameList names;
  names.append(L"Loans");
  const String* const first = &names[0];
  for (int i = 0; i < 100; ++i) names.append(L"Books");
  EXPECT_EQ(&names[0], first);
}

TEST(NameListTest, WithoutMemoryTheListStays) {
  NameList names;
  names.append(L"Loans");
  String name = L"Books";
  AllocationProbe probe;
  probe.failFromNowOn(true);
  EXPECT_THROW(names.append(std::move(name)), std::bad_alloc);
  probe.failFromNowOn(false);
  ASSERT_EQ(names.size(), 1u);
  EXPECT_STREQ(names[0].text(), L"Loans");
}

}  // namespace
