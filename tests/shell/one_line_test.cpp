// Texts that have more to say than the one line of the control that shows them.
#include <algorithm>
#include <string>

#include "gtest/gtest.h"
#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/text/text_line.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "tests/shell/drawn_picture.h"
#include "tests/shell/shell_fixture.h"

using namespace pocketshell;

namespace {

constexpr int kWidth = 119;
constexpr int kHeight = 60;
constexpr int kLabelHeight = 18;

using Pixels = std::vector<std::uint32_t>;

class OneLineTest : public ShellTest {
 protected:
  HWND makeLabel(const wchar_t* text, int height) {
    return HandheldCreateWindow(0, WC_STATICW, text, WS_CHILD | WS_VISIBLE, 0, 0, kWidth, height, top(),
                                nullptr, GetModuleHandleW(nullptr), nullptr);
  }

  static Pixels pictureOf(HWND control) {
    const DrawnPicture picture(kWidth, kHeight);
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
    Pixels pixels = picture.pixels();
    for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
  }

  /// Of the interface font.
  static int lineHeight() {
    const DrawnPicture picture(1, 1);
    const HGDIOBJ former = SelectObject(picture.dc(), presentFont());
    TEXTMETRICW metrics{};
    GetTextMetricsW(picture.dc(), &metrics);
    SelectObject(picture.dc(), former);
    return static_cast<int>(metrics.tmHeight);
  }

  /// Whether anything is drawn from the row `first` to the row before `end`.
  static bool hasInk(const Pixels& pixels, int first, int end) {
    const auto from = pixels.begin() + static_cast<std::ptrdiff_t>(first) * kWidth;
    return !std::all_of(from, pixels.begin() + static_cast<std::ptrdiff_t>(end) * kWidth,
                        [&](std::uint32_t pixel) { return pixel == *from; });
  }
};

TEST_F(OneLineTest, a_label_that_is_too_long_for_its_line_ends_with_an_ellipsis) {
  const wchar_t* const text = L"Name with a very long title indeed:";
  const Pixels pixels = pictureOf(makeLabel(text, kLabelHeight));
  const int line = lineHeight();
  ASSERT_GT(2 * line, kLabelHeight);
  EXPECT_TRUE(hasInk(pixels, 0, line));
  EXPECT_FALSE(hasInk(pixels, line, kLabelHeight)) << "the upper edge of the next line";
  const DrawnPicture expected(kWidth, kHeight);
  const HGDIOBJ former = SelectObject(expected.dc(), presentFont());
  std::wstring cut = text;
  const auto width = [&](const std::wstring& each) {
    SIZE size{};
    GetTextExtentPoint32W(expected.dc(), each.c_str(), static_cast<int>(each.size()), &size);
    return size.cx;
  };
  while (width(cut + L"...") > kWidth) cut.pop_back();
  SelectObject(expected.dc(), former);
  EXPECT_TRUE(pixels == pictureOf(makeLabel((cut + L"...").c_str(), kLabelHeight)));
}

TEST_F(OneLineTest, a_label_with_room_for_more_lines_is_left_to_the_control) {
  const Pixels pixels = pictureOf(makeLabel(L"Name with a very long title indeed:", 2 * lineHeight()));
  EXPECT_TRUE(hasInk(pixels, 0, lineHeight()));
  EXPECT_TRUE(hasInk(pixels, lineHeight() + 1, 2 * lineHeight()));
}

/// Of a list with two columns, of which the other is hidden.
class CellTest : public OneLineTest {
 protected:
  void SetUp() override {
    OneLineTest::SetUp();
    list_ =
        HandheldCreateWindow(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_NOCOLUMNHEADER, 0,
                             0, kWidth, kHeight, top(), nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
    LVCOLUMNW column{};
    for (const int place : {0, 1}) {
      SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&column));
    }
  }

  Pixels shown(int place, const wchar_t* text) {
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(1 - place), 0);
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(place), kWidth);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.pszText = const_cast<wchar_t*>(L"");
    SendMessageW(list_, LVM_DELETEALLITEMS, 0, 0);
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    item.iSubItem = place;
    item.pszText = const_cast<wchar_t*>(text);
    SendMessageW(list_, LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item));
    return pictureOf(list_);
  }

 private:
  HWND list_ = nullptr;
};

TEST_F(CellTest, its_line_ends_are_blanks) {
  EXPECT_EQ(onOneLine(L"one\r\ntwo\nthree\tfour"), L"one two three four");
  EXPECT_EQ(onOneLine(L"\n\r\n"), L"  ");
  EXPECT_EQ(onOneLine(L""), L"");
  for (const int place : {0, 1}) {
    SCOPED_TRACE(place);
    EXPECT_TRUE(shown(place, L"12 High St\r\nLeeds") == shown(place, L"12 High St\nLeeds"));
    EXPECT_TRUE(shown(place, L"12 High St\nLeeds") == shown(place, L"12 High St Leeds"));
    EXPECT_TRUE(shown(place, L"12 High St Leeds") != shown(place, L""));
  }
}

TEST_F(CellTest, its_text_stands_where_the_others_do_with_letters_of_another_font_too) {
  constexpr int kFirstLetterEnd = 11;
  const auto firstLetter = [&](int place, const wchar_t* text) {
    Pixels pixels = shown(place, text);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      if (i % kWidth >= kFirstLetterEnd) pixels[i] = 0;
    }
    return pixels;
  };
  for (const int place : {0, 1}) {
    SCOPED_TRACE(place);
    EXPECT_TRUE(firstLetter(place, L"E") != firstLetter(place, L""));
    EXPECT_TRUE(firstLetter(place, L"E  \u05D0") == firstLetter(place, L"E"));
  }
}

}  // namespace
