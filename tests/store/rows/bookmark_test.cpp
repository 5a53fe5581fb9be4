// Keys as bytes that leave the program, and bytes that may be anything.
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "platform/store/rows/keyset.h"
#include "tests/store/allocation_probe.h"
#include "tests/store/rows/keyset_fixture.h"

using namespace std::string_literals;

namespace store {
namespace {

std::string bytesOf(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) bytes.push_back(static_cast<char>(value));
  return bytes;
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
