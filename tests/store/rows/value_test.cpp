#include "platform/store/rows/value.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "tests/store/allocation_probe.h"

using namespace std::string_view_literals;

namespace store {
namespace {

void addText(Row* row, std::string_view text) {
  row->addBytes(CellKind::text, text.data(), text.size());
}
void addBlob(Row* row, std::string_view bytes) {
  row->addBytes(CellKind::blob, bytes.data(), bytes.size());
}

TEST(RowTest, NewRowIsEmpty) {
  EXPECT_EQ(Row().count(), 0u);
}

TEST(RowTest, EachKindReadsBackInItsPlace) {
  Row row;
  row.addNull();
  row.addInteger(std::numeric_limits<std::int64_t>::min());
  row.addReal(-2.5);
  addText(&row, "caf\xC3\xA9");
  addBlob(&row, "\x00\xFF\x00"sv);
  row.addInteger(std::numeric_limits<std::int64_t>::max());

  ASSERT_EQ(row.count(), 6u);
  EXPECT_EQ(row.at(0).kind, CellKind::null);
  EXPECT_EQ(row.at(1).kind, CellKind::integer);
  EXPECT_EQ(row.at(1).integer, std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(row.at(2).kind, CellKind::real);
  EXPECT_EQ(row.at(2).real, -2.5);
  EXPECT_EQ(row.at(3).kind, CellKind::text);
  EXPECT_EQ(row.at(3).bytes, "caf\xC3\xA9");
  EXPECT_EQ(row.at(4).kind, CellKind::blob);
  EXPECT_EQ(row.at(4).bytes, "\x00\xFF\x00"sv);
  EXPECT_EQ(row.at(5).integer, std::numeric_limits<std::int64_t>::max());
}

TEST(RowTest, CellHoldsNothingOfOtherKinds) {
  Row row;
  row.addInteger(7);
  row.addReal(7);
  addText(&row, "7");
  EXPECT_EQ(row.at(0).real, 0);
  EXPECT_TRUE(row.at(0).bytes.empty());
  EXPECT_EQ(row.at(1).integer, 0);
  EXPECT_EQ(row.at(2).integer, 0);
  EXPECT_EQ(row.at(2).real, 0);
}

TEST(RowTest, EmptyTextAndEmptyBlobKeepTheirKind) {
  Row row;
  row.addBytes(CellKind::text, nullptr, 0);
  row.addBytes(CellKind::blob, nullptr, 0);
  EXPECT_EQ(row.at(0).kind, CellKind::text);
  EXPECT_EQ(row.at(0).bytes, "");
  EXPECT_EQ(row.at(1).kind, CellKind::blob);
  EXPECT_EQ(row.at(1).bytes, "");
}

TEST(RowTest, EarlierTextsSurviveTheGrowthOfLaterOnes) {
  Row row;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < 200; ++i) texts.emplace_back(i * 7, static_cast<char>('a' + i % 26));
  for (const std::string& text : texts) addText(&row, text);
  for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(row.at(i).bytes, texts[i]) << i;
}

TEST(RowTest, ClearedRowTakesNewValues) {
  Row row;
  addText(&row, "former");
  row.addNull();
  row.clear();
  EXPECT_EQ(row.count(), 0u);
  addText(&row, "new");
  ASSERT_EQ(row.count(), 1u);
  EXPECT_EQ(row.at(0).bytes, "new");
}

TEST(RowTest, ReuseNeedsNoNewMemory) {
  const std::string text(500, 'x');
  Row row;
  const auto fill = [&] {
    row.clear();
    for (int i = 0; i < 10; ++i) {
      addText(&row, text);
      row.addInteger(i);
    }
  };
  fill();
  const testsupport::AllocationLimit limit(0);
  fill();
  EXPECT_FALSE(limit.wasReached());
}

TEST(RowTest, RefusedMemoryLeavesTheRowAsItWas) {
  const std::string text(500, 'x');
  for (std::size_t allowed = 0;; ++allowed) {
    Row row;
    row.addInteger(1);
    bool failed = false;
    {
      const testsupport::AllocationLimit limit(allowed);
      try {
        addText(&row, text);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
    }
    ASSERT_EQ(row.count(), failed ? 1u : 2u);
    EXPECT_EQ(row.at(0).integer, 1);
    if (!failed) {
      EXPECT_GT(allowed, 1u);
      break;
    }
  }
}

TEST(ValueTest, ValueOfACellOwnsTheSame) {
  Row row;
  row.addNull();
  row.addInteger(-9);
  row.addReal(0.1);
  addText(&row, "a\0b"sv);
  addBlob(&row, "a\0b"sv);
  const std::vector<Value> expected = {std::monostate(), std::int64_t{-9}, 0.1, std::string("a\0b"sv),
                                       Blob{std::string("a\0b"sv)}};
  std::vector<Value> values;
  for (std::size_t i = 0; i < row.count(); ++i) values.push_back(valueOf(row.at(i)));
  row.clear();
  EXPECT_EQ(values, expected);
}

TEST(ValueTest, SameValueIsTrueForItsOwnKindOnly) {
  Row row;
  row.addNull();
  row.addInteger(1);
  row.addReal(1);
  addText(&row, "1");
  addBlob(&row, "1");
  for (std::size_t i = 0; i < row.count(); ++i) {
    for (std::size_t j = 0; j < row.count(); ++j)
      EXPECT_EQ(sameValue(row.at(i), valueOf(row.at(j))), i == j) << i << ", " << j;
  }
}

TEST(ValueTest, SameValueComparesContent) {
  Row row;
  row.addInteger(1);
  row.addReal(1);
  addText(&row, "one");
  addBlob(&row, "one");
  EXPECT_FALSE(sameValue(row.at(0), std::int64_t{2}));
  EXPECT_FALSE(sameValue(row.at(1), 2.0));
  EXPECT_FALSE(sameValue(row.at(2), std::string("One")));
  EXPECT_FALSE(sameValue(row.at(2), std::string("one\0"sv)));
  EXPECT_FALSE(sameValue(row.at(3), Blob{"on"}));
}

TEST(ValueTest, DoublesAreComparedBitByBit) {
  Row row;
  row.addReal(std::numeric_limits<double>::quiet_NaN());
  row.addReal(0.0);
  EXPECT_TRUE(sameValue(row.at(0), std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(sameValue(row.at(1), -0.0));
}

}  // namespace
}  // namespace store
