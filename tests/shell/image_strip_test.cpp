#include "platform/pocketshell/menu/image_strip.h"

#include "owners/control_handles.h"
#include "tests/shell/drawn_picture.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"

namespace {

using namespace pocketshell;

TEST(ImageStripTest, TheKeyColorIsTakenOut) {
  const ImageStrip strip = keyedStrip(1, 2, {0xFF112233, 0x00C0C0C0}, 0xC0C0C0);
  EXPECT_EQ(strip.pixels, (std::vector<std::uint32_t>{0x112233, 0}));
  EXPECT_EQ(strip.transparent, (std::vector<bool>{false, true}));
}

TEST(ImageStripTest, EnlargedPixelsStayPixels) {
  const ImageStrip strip = scaledStrip(keyedStrip(1, 2, {0x112233, 0xC0C0C0}, 0xC0C0C0), 2);
  EXPECT_EQ(strip.pixels, (std::vector<std::uint32_t>{0x112233, 0x112233, 0, 0, 0x112233, 0x112233, 0, 0}));
  EXPECT_EQ(strip.transparent, (std::vector<bool>{false, false, true, true, false, false, true, true}));
}

TEST(ImageStripTest, ReducedPixelsAreTheMeanOfWhatIsOpaque) {
  const ImageStrip strip =
      scaledStrip(keyedStrip(2, 1, {0x000000, 0x0000FF, 0xC0C0C0, 0x00FF00}, 0xC0C0C0), 1);
  EXPECT_EQ(strip.pixels, std::vector<std::uint32_t>{0x005555});
  EXPECT_FALSE(strip.transparent[0]);
}

TEST(ImageStripTest, MostlyTransparentIsTransparent) {
  const ImageStrip strip =
      scaledStrip(keyedStrip(2, 1, {0xC0C0C0, 0xC0C0C0, 0xC0C0C0, 0x00FF00}, 0xC0C0C0), 1);
  EXPECT_TRUE(strip.transparent[0]);
  EXPECT_EQ(strip.pixels[0], 0U);
}

TEST(ImageStripTest, NeighbouringImagesDoNotMix) {
  const ImageStrip strip =
      scaledStrip(keyedStrip(2, 2, {0xFF, 0xFF, 0xFF00, 0xFF00, 0xFF, 0xFF, 0xFF00, 0xFF00}, 0xC0C0C0), 3);
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 6; ++x) {
      EXPECT_EQ(strip.pixels[static_cast<std::size_t>(y * 6 + x)], x < 3 ? 0xFFU : 0xFF00U) << x << ", " << y;
    }
  }
}

TEST(ImageStripTest, TheNextLargerDrawingIsTaken) {
  EXPECT_EQ(bestFactor({true, true, true, true}, 100), 1);
  EXPECT_EQ(bestFactor({true, true, true, true}, 150), 2);
  EXPECT_EQ(bestFactor({true, false, true, true}, 150), 3);
  EXPECT_EQ(bestFactor({true, true, false, false}, 400), 2);
  EXPECT_EQ(bestFactor({false, false, false, false}, 100), 0);
}

class LoadedImagesTest : public ShellTest {
 protected:
  static SIZE sizeOfImages(WORD id) {
    const UniqueImageList images(HandheldLoadImages(GetModuleHandleW(nullptr), id, RGB(192, 192, 192)));
    if (!images) return {};
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(images.get(), &width, &height);
    EXPECT_EQ(ImageList_GetImageCount(images.get()), 3);
    return {width, height};
  }
  /// Without the byte that no colour is in.
  static std::vector<std::uint32_t> colors(const DrawnPicture& picture) {
    std::vector<std::uint32_t> pixels = picture.pixels();
    for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
  }
};

TEST_F(LoadedImagesTest, HaveTheSizeOfTheZoom) {
  for (const int zoom : {100, 150, 200, 400}) {
    HandheldSetZoom(zoom);
    const SIZE size = sizeOfImages(IDB_STRIP);
    EXPECT_EQ(size.cx, 16 * zoom / 100);
    EXPECT_EQ(size.cy, 16 * zoom / 100);
  }
}

TEST_F(LoadedImagesTest, AreAsHighAsIsAskedForWithTheDrawingInTheMiddle) {
  const UniqueImageList images(
      HandheldLoadImages(GetModuleHandleW(nullptr), IDB_STRIP, RGB(192, 192, 192), 26));
  const UniqueImageList plain(HandheldLoadImages(GetModuleHandleW(nullptr), IDB_STRIP, RGB(192, 192, 192)));
  ASSERT_TRUE(images && plain);
  int width = 0;
  int height = 0;
  ImageList_GetIconSize(images.get(), &width, &height);
  EXPECT_EQ(width, 16);
  EXPECT_EQ(height, 26);
  const DrawnPicture tall(16, 26);
  const DrawnPicture expected(16, 26);
  for (int image = 0; image < 3; ++image) {
    ImageList_Draw(images.get(), image, tall.dc(), 0, 0, ILD_TRANSPARENT);
    ImageList_Draw(plain.get(), image, expected.dc(), 0, 5, ILD_TRANSPARENT);
    EXPECT_EQ(colors(tall), colors(expected)) << image;
  }
}

TEST_F(LoadedImagesTest, AreRefusedWhenTheyAreNoStripOrMissing) {
  EXPECT_EQ(HandheldLoadImages(GetModuleHandleW(nullptr), IDB_BAD_STRIP, 0), nullptr);
  EXPECT_EQ(HandheldLoadImages(GetModuleHandleW(nullptr), 999, 0), nullptr);
}

}  // namespace
