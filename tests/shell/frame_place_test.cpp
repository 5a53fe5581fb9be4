// Where a frame stands, as pure functions, and where the user left it, as settings.
#include "platform/pocketshell/window/frame_place.h"

#include <array>

#include "platform/pocketshell/window/kept_places.h"
#include "platform/pocketshell/zoom/present_screen.h"
#include "platform/pocketshell/zoom/zoom_figures.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_settings.h"

namespace pocketshell {

void PrintTo(const FramePlace& place, std::ostream* out) {
  *out << "{" << place.corner.x << ", " << place.corner.y << ", " << place.inside.cx << " x "
       << place.inside.cy << (place.maximised ? ", maximised}" : "}");
}

namespace {

constexpr SIZE kBorder = {8, 27};

struct Comfort {
  SIZE free;
  int zoom;
  SIZE inside;
};

TEST(FramePlaceTest, TheFirstSizeIsComfortableWhereItFitsAndNeverLessThanTheHandhelds) {
  constexpr std::array kCases = {
      Comfort{{1920, 1040}, 100, {400, 480}}, Comfort{{1920, 1040}, 200, {400, 480}},
      Comfort{{1920, 1040}, 300, {400, 337}}, Comfort{{408, 507}, 100, {400, 480}},
      Comfort{{407, 506}, 100, {399, 479}},   Comfort{{808, 1000}, 200, {400, 480}},
      Comfort{{640, 400}, 150, {400, 294}},   Comfort{{240, 240}, 100, {240, 294}},
      Comfort{{0, 0}, 100, {240, 294}},
  };
  for (const Comfort& each : kCases) {
    const SIZE inside = comfortableInside(each.free, kBorder, each.zoom);
    EXPECT_EQ(inside.cx, each.inside.cx) << each.free.cx << " at " << each.zoom;
    EXPECT_EQ(inside.cy, each.inside.cy) << each.free.cy << " at " << each.zoom;
  }
  const int sixteenFields = 16 * 28;
  EXPECT_GE(480 - kBelowPagesHeight, sixteenFields);
}

TEST(FramePlaceTest, AFrameIsMovedAndMadeSmallerUntilItFits) {
  constexpr RECT kFree = {100, 50, 1100, 850};
  constexpr SIZE kLeast = {248, 321};
  EXPECT_EQ(keptWithin({200, 100}, {400, 500}, kFree, kLeast), (RECT{200, 100, 600, 600}));
  EXPECT_EQ(keptWithin({-5000, -5000}, {400, 500}, kFree, kLeast), (RECT{100, 50, 500, 550}));
  EXPECT_EQ(keptWithin({5000, 5000}, {400, 500}, kFree, kLeast), (RECT{700, 350, 1100, 850}));
  EXPECT_EQ(keptWithin({200, 100}, {4000, 5000}, kFree, kLeast), kFree);
  EXPECT_EQ(keptWithin({200, 100}, {10, 10}, kFree, kLeast), (RECT{200, 100, 448, 421}));
  constexpr RECT kTiny = {0, 0, 100, 100};
  EXPECT_EQ(keptWithin({60, 60}, {400, 500}, kTiny, kLeast), (RECT{0, 0, 248, 321}));
}

TEST(FramePlaceTest, InsidesAreCoveredAtEveryZoomAndWholeFiguresStayWhatTheyAre) {
  for (int zoom = kNormalZoom; zoom <= kLargestZoom; zoom += 7) {
    for (const int figure : {0, 1, 240, 269, 294, 401, 1919}) {
      EXPECT_EQ(coveringFigure(toMonitor(figure, zoom), zoom), figure) << zoom;
    }
    for (int pixels = 0; pixels < 2000; ++pixels) {
      const int figure = coveringFigure(pixels, zoom);
      ASSERT_GE(toMonitor(figure, zoom), pixels) << zoom;
      ASSERT_TRUE(figure == 0 || toMonitor(figure - 1, zoom) < pixels) << zoom;
    }
  }
}

TEST(FramePlaceTest, APlaceComesBackFromItsNumbers) {
  for (const FramePlace& place :
       {FramePlace{{0, 0}, {240, 294}, false}, FramePlace{{-1920, -7}, {400, 480}, true},
        FramePlace{{32767, -32768}, {32767, 32767}, false}}) {
    EXPECT_EQ(unpackFramePlace(packFramePlace(place)), place);
  }
}

TEST(FramePlaceTest, NumbersThatAreNoPlaceCountAsNone) {
  for (const DWORD inside : {0UL, 1UL, 0x80000000UL, (294UL << 16) | 239UL, (293UL << 16) | 240UL}) {
    EXPECT_FALSE(unpackFramePlace({0, inside})) << inside;
  }
  EXPECT_TRUE(unpackFramePlace({0xFFFFFFFF, 0xFFFFFFFF})) << "is brought onto a monitor";
}

class KeptPlacesTest : public testing::Test {
 protected:
  KeptPlacesTest() { forgetShellSettings(); }
  ~KeptPlacesTest() override { forgetShellSettings(); }

  static FramePlace place(LONG number) { return {{number, -number}, {300 + number, 400 + number}, false}; }
};

TEST_F(KeptPlacesTest, EachArrangementOfMonitorsHasItsOwn) {
  EXPECT_FALSE(readKeptPlace(7));
  writeKeptPlace(7, place(1));
  writeKeptPlace(8, place(2));
  EXPECT_EQ(readKeptPlace(7), place(1));
  EXPECT_EQ(readKeptPlace(8), place(2));
  writeKeptPlace(7, place(3));
  EXPECT_EQ(readKeptPlace(7), place(3));
  EXPECT_EQ(readKeptPlace(8), place(2));
}

TEST_F(KeptPlacesTest, TheFourLatestAreKept) {
  for (LONG number = 1; number <= 4; ++number) writeKeptPlace(static_cast<DWORD>(number), place(number));
  writeKeptPlace(1, place(10));
  writeKeptPlace(5, place(5));
  EXPECT_EQ(readKeptPlace(1), place(10)) << "used since";
  EXPECT_FALSE(readKeptPlace(2));
  for (LONG number = 3; number <= 5; ++number) {
    EXPECT_EQ(readKeptPlace(static_cast<DWORD>(number)), place(number));
  }
}

TEST_F(KeptPlacesTest, TheArrangementIsThatOfTheMonitorsAndStaysTheSame) {
  EXPECT_NE(presentArrangement(), 0U);
  EXPECT_EQ(presentArrangement(), presentArrangement());
}

}  // namespace
}  // namespace pocketshell
