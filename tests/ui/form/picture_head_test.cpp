#include "views/bytes/picture_head.h"

#include <algorithm>

#include "gtest/gtest.h"
#include "tests/ui/form/sample_pictures.h"

namespace {

using samples::bytesOf;

/// A picture with other numbers in it.
Bytes changed(std::string_view digits, std::size_t place, std::initializer_list<std::uint8_t> numbers) {
  Bytes bytes = bytesOf(digits);
  std::copy(numbers.begin(), numbers.end(), bytes.begin() + static_cast<std::ptrdiff_t>(place));
  return bytes;
}

void expectHead(const Bytes& bytes, PictureFormat format, std::uint32_t width, std::uint32_t height) {
  const auto head = readPictureHead(bytes);
  ASSERT_TRUE(head);
  EXPECT_EQ(head->format, format);
  EXPECT_EQ(head->width, width);
  EXPECT_EQ(head->height, height);
}

TEST(PictureHeadTest, EachFormatIsKnownByItsBytes) {
  expectHead(bytesOf(samples::kPng), PictureFormat::png, 3, 2);
  expectHead(bytesOf(samples::kBmp), PictureFormat::bmp, 3, 2);
  expectHead(bytesOf(samples::kGif), PictureFormat::gif, 3, 2);
  expectHead(bytesOf(samples::kJpeg), PictureFormat::jpeg, 8, 8);
}

TEST(PictureHeadTest, WhatIsNoPictureIsNone) {
  EXPECT_FALSE(readPictureHead({}));
  EXPECT_FALSE(readPictureHead(bytesOf("89504e")));
  EXPECT_FALSE(readPictureHead(bytesOf("49492a0008000000")));  // a TIFF
  const std::string_view text =
      "BM is how a text may begin, and it may well be longer than the head of a picture.";
  EXPECT_FALSE(readPictureHead(Bytes(text.begin(), text.end())));
}

TEST(PictureHeadTest, WhateverIsCutOffNothingIsReadBehindTheEnd) {
  for (const std::string_view digits : {samples::kPng, samples::kBmp, samples::kGif, samples::kJpeg}) {
    const Bytes whole = bytesOf(digits);
    for (std::size_t length = 0; length < whole.size(); ++length) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
      const auto head = readPictureHead(cut);
      EXPECT_TRUE(!head || (head->width <= 8 && head->height <= 8)) << length;
    }
  }
}

TEST(PictureHeadTest, ALineOrderFromAboveIsNoHugeHeight) {
  expectHead(changed(samples::kBmp, 22, {0xFE, 0xFF, 0xFF, 0xFF}), PictureFormat::bmp, 3, 2);
}

TEST(PictureHeadTest, ABmpFromBeforeWindows3HasShortNumbers) {
  expectHead(changed(samples::kBmp, 14, {12, 0, 0, 0, 5, 0, 7, 0}), PictureFormat::bmp, 5, 7);
}

TEST(PictureHeadTest, APictureOfTooManyPointsIsNotDecoded) {
  EXPECT_TRUE(mayBeDecoded(*readPictureHead(bytesOf(samples::kPng))));
  // 8000 x 5000, and one line more.
  EXPECT_TRUE(
      mayBeDecoded(*readPictureHead(changed(samples::kPng, 16, {0, 0, 0x1F, 0x40, 0, 0, 0x13, 0x88}))));
  EXPECT_FALSE(
      mayBeDecoded(*readPictureHead(changed(samples::kPng, 16, {0, 0, 0x1F, 0x40, 0, 0, 0x13, 0x89}))));
  // Their product is 0 in 64 bits.
  EXPECT_FALSE(mayBeDecoded({PictureFormat::png, 0xFFFFFFFF, 0xFFFFFFFF, 1}));
  EXPECT_FALSE(mayBeDecoded(*readPictureHead(changed(samples::kPng, 16, {0, 0, 0, 0}))));
}

TEST(PictureHeadTest, APngWhoseHeadIsMissingHasNoSize) {
  expectHead(changed(samples::kPng, 12, {'i', 'H'}), PictureFormat::png, 0, 0);
}

TEST(PictureHeadTest, TheFramesOfAnAnimationCountTogether) {
  Bytes bytes = bytesOf(samples::kGif);
  const Bytes frame = bytesOf("2c00000000ffffffff0003024c01003b");
  bytes.pop_back();
  bytes.insert(bytes.end(), frame.begin(), frame.end());
  const auto head = readPictureHead(bytes);
  ASSERT_TRUE(head);
  EXPECT_EQ(head->width, 3u);
  EXPECT_EQ(head->work, 6u + 6u + 65535ull * 65535u);
  EXPECT_FALSE(mayBeDecoded(*head));
}

TEST(PictureHeadTest, APictureThatIsGoneOverAgainAndAgainIsNotDecoded) {
  Bytes bytes = bytesOf(samples::kJpeg);
  // 4096 x 4096 points, and a thousand scans of nothing.
  constexpr std::uint8_t kFrame[] = {0xFF, 0xC0};
  const auto frame = std::search(bytes.begin(), bytes.end(), std::begin(kFrame), std::end(kFrame));
  ASSERT_NE(frame, bytes.end());
  std::fill(frame + 5, frame + 9, std::uint8_t{0});
  frame[5] = 0x10;
  frame[7] = 0x10;
  EXPECT_TRUE(mayBeDecoded(*readPictureHead(bytes)));
  bytes.resize(bytes.size() - 2);
  for (int scan = 0; scan < 1000; ++scan) {
    for (const int byte : {0xFF, 0xDA, 0, 3, 0, 0x12, 0xFF, 0})
      bytes.push_back(static_cast<std::uint8_t>(byte));
  }
  const auto head = readPictureHead(bytes);
  ASSERT_TRUE(head);
  EXPECT_EQ(head->work, 1001ull * 4096 * 4096);
  EXPECT_FALSE(mayBeDecoded(*head));
}

}  // namespace
