// Colours of the system that don't fit its theme: then controls must not draw with it.
#include "platform/pocketshell/look/plain_look.h"

#include <commctrl.h>

#include <cstdint>
#include <optional>
#include <uxtheme.h>
#include <vector>

#include "gtest/gtest.h"
#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/system_colors.h"
#include "tests/shell/drawn_picture.h"
#include "tests/shell/shell_fixture.h"
#include "tests/support/system_colors.h"

using namespace pocketshell;

namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kYellow = RGB(255, 255, 0);

class PlainLookTest : public ShellTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(IsThemeActive()) << "without a theme the tests below would hold of themselves";
  }

  void setColors(COLORREF text, COLORREF ground) {
    colors_.emplace(text, ground);
    pump();
  }

  HWND make(const wchar_t* className, DWORD style) const {
    return HandheldCreateWindow(0, className, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 200, 100, top(),
                                nullptr, GetModuleHandleW(nullptr), nullptr);
  }

  static HWND titlesOf(HWND list) { return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0)); }

 private:
  std::optional<SystemColors> colors_;
};

TEST_F(PlainLookTest, LightTextsNeedIt) {
  const auto isNeeded = [](COLORREF window, COLORREF windowText, COLORREF button, COLORREF buttonText) {
    const SystemColors colors({{COLOR_WINDOW, window},
                               {COLOR_WINDOWTEXT, windowText},
                               {COLOR_BTNFACE, button},
                               {COLOR_BTNTEXT, buttonText}});
    EXPECT_EQ(HandheldWantsSystemColors() != FALSE, needsPlainLook());
    return needsPlainLook();
  };
  EXPECT_FALSE(isNeeded(kWhite, kBlack, kWhite, kBlack));
  EXPECT_TRUE(isNeeded(kBlack, kYellow, kBlack, kYellow));
  EXPECT_TRUE(isNeeded(kWhite, kBlack, kBlack, kWhite)) << "tabs and titles have the colours of buttons";
  EXPECT_TRUE(isNeeded(kBlack, kWhite, kWhite, kBlack));
}

TEST_F(PlainLookTest, WithOtherColorsControlsHaveTheTheme) {
  setColors(kBlack, kWhite);
  EXPECT_TRUE(GetWindowTheme(make(WC_TABCONTROLW, TCS_BOTTOM)));
  EXPECT_TRUE(GetWindowTheme(titlesOf(make(WC_LISTVIEWW, LVS_REPORT))));
}

TEST_F(PlainLookTest, ControlsThatAreMadeWithThemHaveNoTheme) {
  setColors(kYellow, kBlack);
  EXPECT_FALSE(GetWindowTheme(make(WC_TABCONTROLW, TCS_BOTTOM)));
  const HWND list = make(WC_LISTVIEWW, LVS_REPORT);
  EXPECT_FALSE(GetWindowTheme(list));
  EXPECT_FALSE(GetWindowTheme(titlesOf(list)));
}

TEST_F(PlainLookTest, ControlsFollowAChangeBothWays) {
  setColors(kBlack, kWhite);
  const HWND tabs = make(WC_TABCONTROLW, TCS_BOTTOM);
  const HWND titles = titlesOf(make(WC_LISTVIEWW, LVS_REPORT));
  setColors(kYellow, kBlack);
  EXPECT_FALSE(GetWindowTheme(tabs));
  EXPECT_FALSE(GetWindowTheme(titles));
  setColors(kBlack, kWhite);
  EXPECT_TRUE(GetWindowTheme(tabs));
  EXPECT_TRUE(GetWindowTheme(titles));
}

TEST_F(PlainLookTest, TheGroundOfAListInADialogFollowsAChange) {
  const UniqueWindow dialog(CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 200, 100, top(), nullptr,
                                            GetModuleHandleW(nullptr), nullptr));
  const auto groundOf = [](HWND list) {
    return static_cast<COLORREF>(SendMessageW(list, LVM_GETBKCOLOR, 0, 0));
  };
  const HWND list = HandheldCreateWindow(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 200, 100,
                                         dialog.get(), nullptr, GetModuleHandleW(nullptr), nullptr);
  const HWND ofPage = make(WC_LISTVIEWW, LVS_REPORT);
  constexpr COLORREF kChosen = RGB(1, 2, 3);
  SendMessageW(ofPage, LVM_SETBKCOLOR, 0, kChosen);
  for (const COLORREF ground : {kBlack, kWhite}) {
    setColors(kYellow, ground);
    EXPECT_EQ(groundOf(list), ground);
    EXPECT_EQ(groundOf(ofPage), kChosen);
  }
}

TEST_F(PlainLookTest, ADialogOfTheSystemHasNoneInIt) {
  setColors(kYellow, kBlack);
  const HWND tabs = CreateWindowExW(0, WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 100, top(),
                                    nullptr, GetModuleHandleW(nullptr), nullptr);
  ASSERT_TRUE(GetWindowTheme(tabs)) << "the shell has not seen it yet";
  HandheldEquipBox(top());
  EXPECT_FALSE(GetWindowTheme(tabs));
}

TEST_F(PlainLookTest, TheTextOfATabIsInTheNewColorsOfTheSystem) {
  const HWND tabs = make(WC_TABCONTROLW, TCS_BOTTOM);
  // Some systems' controls remember the colours together, and only some of them look for new ones.
  make(WC_LISTVIEWW, LVS_REPORT);
  setColors(kYellow, kBlack);
  TCITEMW item{};
  item.mask = TCIF_TEXT;
  item.pszText = const_cast<wchar_t*>(L"WWWW");
  SendMessageW(tabs, TCM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  const DrawnPicture picture(200, 100);
  SendMessageW(tabs, WM_PAINT, reinterpret_cast<WPARAM>(picture.dc()), 0);
  RECT tab{};
  SendMessageW(tabs, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&tab));
  const std::vector<std::uint32_t> pixels = picture.pixels();
  int ground = 0;
  int text = 0;
  for (LONG y = tab.top + 3; y < tab.bottom - 3; ++y) {
    for (LONG x = tab.left + 3; x < tab.right - 3; ++x) {
      const std::uint32_t pixel = pixels[static_cast<std::size_t>(y * 200 + x)] & 0xFFFFFF;
      ground += pixel == 0x000000 ? 1 : 0;
      text += pixel == 0xFFFF00 ? 1 : 0;
    }
  }
  EXPECT_GT(text, 20);
  EXPECT_GT(ground, text);
}

}  // namespace
