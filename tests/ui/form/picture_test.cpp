#include "views/bytes/picture.h"

#include <cstdint>

#include "gtest/gtest.h"
#include "tests/ui/form/sample_pictures.h"
#include "tests/ui/support/with_com.h"
#include "views/bytes/picture_head.h"

namespace {

using samples::bytesOf;

class PictureTest : public testing::Test {
 protected:
  static SIZE sizeOf(const UniqueBitmap& bitmap) {
    BITMAP about{};
    GetObjectW(bitmap.get(), sizeof(about), &about);
    return {about.bmWidth, about.bmHeight};
  }
  static COLORREF pointOf(const UniqueBitmap& bitmap, int x, int y) {
    BITMAP about{};
    GetObjectW(bitmap.get(), sizeof(about), &about);
    const auto* const point = static_cast<const BYTE*>(about.bmBits) + y * about.bmWidthBytes + 3 * x;
    return RGB(point[2], point[1], point[0]);
  }
  static UniqueBitmap decode(const Bytes& bytes, SIZE room) {
    const auto head = readPictureHead(bytes);
    return head ? decodePicture(bytes, *head, room) : UniqueBitmap();
  }
  /// A BMP whose left half is black and whose right half is white.
  static Bytes halves(std::uint16_t width, std::uint16_t height) {
    Bytes bytes = bytesOf(samples::kBmp.substr(0, 108));
    bytes[18] = static_cast<std::uint8_t>(width);
    bytes[19] = static_cast<std::uint8_t>(width >> 8);
    bytes[22] = static_cast<std::uint8_t>(height);
    bytes[23] = static_cast<std::uint8_t>(height >> 8);
    for (int line = 0; line < height; ++line) {
      for (int column = 0; column < width * 3; ++column) bytes.push_back(column < width * 3 / 2 ? 0 : 255);
      while (bytes.size() % 4 != 54 % 4) bytes.push_back(0);
    }
    return bytes;
  }

 private:
  WithCom com_;
};

TEST_F(PictureTest, ItsPointsHaveTheirColours) {
  for (const std::string_view sample : {samples::kPng, samples::kBmp, samples::kGif}) {
    const UniqueBitmap bitmap = decode(bytesOf(sample), {100, 100});
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(sizeOf(bitmap).cx, 3);
    EXPECT_EQ(sizeOf(bitmap).cy, 2);
    EXPECT_EQ(pointOf(bitmap, 0, 0), RGB(255, 0, 0));
    EXPECT_EQ(pointOf(bitmap, 1, 0), RGB(0, 255, 0));
    EXPECT_EQ(pointOf(bitmap, 0, 1), RGB(0, 0, 0));
    EXPECT_EQ(pointOf(bitmap, 1, 1), RGB(255, 255, 255));
  }
  const UniqueBitmap photo = decode(bytesOf(samples::kJpeg), {100, 100});
  ASSERT_TRUE(photo);
  EXPECT_NEAR(GetRValue(pointOf(photo, 4, 4)), 0xC0, 8);
  EXPECT_NEAR(GetGValue(pointOf(photo, 4, 4)), 0x40, 8);
}

TEST_F(PictureTest, WhatItLetsThroughIsWhite) {
  const UniqueBitmap bitmap = decode(bytesOf(samples::kPng), {100, 100});
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(pointOf(bitmap, 2, 0), RGB(255, 255, 255));
  EXPECT_EQ(pointOf(bitmap, 2, 1), RGB(255, 127, 127));
}

TEST_F(PictureTest, ALargeOneIsShrunkToTheMeanOfItsPoints) {
  const UniqueBitmap bitmap = decode(halves(600, 400), {60, 60});
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(sizeOf(bitmap).cx, 60);
  EXPECT_EQ(sizeOf(bitmap).cy, 40);
  EXPECT_EQ(pointOf(bitmap, 0, 20), RGB(0, 0, 0));
  EXPECT_EQ(pointOf(bitmap, 59, 20), RGB(255, 255, 255));
  const UniqueBitmap point = decode(halves(600, 400), {1, 1});
  ASSERT_TRUE(point);
  EXPECT_NEAR(GetRValue(pointOf(point, 0, 0)), 127, 1);
}

TEST_F(PictureTest, OneThatIsVeryLongAndThinKeepsAPoint) {
  const UniqueBitmap bitmap = decode(halves(30'000, 1), {100, 100});
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(sizeOf(bitmap).cx, 100);
  EXPECT_EQ(sizeOf(bitmap).cy, 1);
}

TEST_F(PictureTest, ItStandsInTheMiddleOfWhite) {
  const UniqueBitmap bitmap = centredOnWhite(decode(bytesOf(samples::kBmp), {100, 100}), {9, 8});
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(sizeOf(bitmap).cx, 9);
  EXPECT_EQ(sizeOf(bitmap).cy, 8);
  for (const POINT corner : {POINT{0, 0}, POINT{8, 7}, POINT{2, 3}, POINT{6, 3}, POINT{3, 2}, POINT{3, 5}}) {
    EXPECT_EQ(pointOf(bitmap, corner.x, corner.y), RGB(255, 255, 255)) << corner.x << ' ' << corner.y;
  }
  EXPECT_EQ(pointOf(bitmap, 3, 3), RGB(255, 0, 0));
  EXPECT_EQ(pointOf(bitmap, 4, 3), RGB(0, 255, 0));
  EXPECT_EQ(pointOf(bitmap, 3, 4), RGB(0, 0, 0));
}

}  // namespace
