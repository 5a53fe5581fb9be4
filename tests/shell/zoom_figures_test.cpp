#include "platform/pocketshell/zoom/zoom_figures.h"

#include "tests/shell/shell_fixture.h"

namespace {

using namespace pocketshell;

TEST(ZoomFiguresTest, RoundsAwayFromZeroBetweenTwo) {
  EXPECT_EQ(toMonitor(1, 150), 2);
  EXPECT_EQ(toMonitor(-1, 150), -2);
  EXPECT_EQ(toMonitor(3, 125), 4);
  EXPECT_EQ(fromMonitor(3, 200), 2);
  EXPECT_EQ(fromMonitor(1, 400), 0);
}

TEST(ZoomFiguresTest, ThereAndBackIsTheSame) {
  for (int zoom = kNormalZoom; zoom <= kLargestZoom; ++zoom) {
    for (int figure = -400; figure <= 400; ++figure) {
      ASSERT_EQ(fromMonitor(toMonitor(figure, zoom), zoom), figure) << zoom;
    }
  }
}

TEST(ZoomFiguresTest, NeighboursKeepTouching) {
  EXPECT_EQ(toMonitor(RECT{1, 3, 5, 7}, 150), (RECT{2, 5, 8, 11}));
  EXPECT_EQ(toMonitor(RECT{5, 7, 9, 9}, 150), (RECT{8, 11, 14, 14}));
}

TEST(ZoomFiguresTest, AutomaticZoomGoesByTheResolution) {
  const SIZE large = {5000, 5000};
  const SIZE frame = {6, 25};
  EXPECT_EQ(automaticZoom(96, large, frame), 100);
  EXPECT_EQ(automaticZoom(72, large, frame), 100);
  EXPECT_EQ(automaticZoom(120, large, frame), 125);
  EXPECT_EQ(automaticZoom(144, large, frame), 150);
  EXPECT_EQ(automaticZoom(192, large, frame), 200);
  EXPECT_EQ(automaticZoom(960, large, frame), 400);
}

TEST(ZoomFiguresTest, AutomaticZoomFitsTheWorkArea) {
  const SIZE frame = {6, 25};
  EXPECT_EQ(automaticZoom(192, {1000, 294 * 2 + 25}, frame), 200);
  EXPECT_EQ(automaticZoom(192, {1000, 294 * 2 + 24}, frame), 175);
  EXPECT_EQ(automaticZoom(192, {240 * 3 / 2 + 6, 1000}, frame), 150);
  EXPECT_EQ(automaticZoom(192, {100, 100}, frame), 100);
}

}  // namespace
