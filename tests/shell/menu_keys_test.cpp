#include "platform/pocketshell/menu/menu_keys.h"

#include <array>
#include <functional>
#include <vector>

#include "platform/pocketshell/menu/menu_walk.h"
#include "platform/pocketshell/shell_settings.h"
#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_resources.h"
#include "tests/shell/shell_settings.h"

namespace {

using Action = pocketshell::MenuKeyEffect::Action;

TEST(MenuKeyEffectTest, WalksRoundTheEnds) {
  EXPECT_EQ(pocketshell::menuKeyEffect(VK_RIGHT, 2, 3, -1), (pocketshell::MenuKeyEffect{Action::move, 0}));
  EXPECT_EQ(pocketshell::menuKeyEffect(VK_LEFT, 0, 3, -1), (pocketshell::MenuKeyEffect{Action::move, 2}));
}

TEST(MenuKeyEffectTest, OpensByArrowsEnterAndLetters) {
  for (const WPARAM key : {VK_UP, VK_DOWN, VK_RETURN}) {
    EXPECT_EQ(pocketshell::menuKeyEffect(key, 1, 3, -1), (pocketshell::MenuKeyEffect{Action::open, 1}));
  }
  EXPECT_EQ(pocketshell::menuKeyEffect('F', 1, 3, 0), (pocketshell::MenuKeyEffect{Action::open, 0}));
  EXPECT_EQ(pocketshell::menuKeyEffect('X', 1, 3, -1), (pocketshell::MenuKeyEffect{Action::none, 1}));
}

TEST(MenuKeyEffectTest, LeavesByEscapeAltAndF10) {
  for (const WPARAM key : {VK_ESCAPE, VK_MENU, VK_F10}) {
    EXPECT_EQ(pocketshell::menuKeyEffect(key, 1, 3, -1).action, Action::leave);
  }
}

/// What stands for the first item of the desktop menu, which is the submenu of the zooms.
constexpr UINT kDesktopMenu = static_cast<UINT>(-1);

/// A window with a menu bar and an edit control that has the keyboard. Each popup that opens gets the
/// next keys.
class MenuKeysTest : public ShellTest {
 protected:
  MenuKeysTest() {
    bar_ = makeBar();
    edit_ = HandheldCreateWindow(0, WC_EDITW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, top(), nullptr,
                                 nullptr, nullptr);
    SetFocus(edit_);
    pump();
    forget();
    onMessage([this](const Got& got) {
      if (got.message != WM_INITMENUPOPUP) return;
      opened_.push_back(GetMenuItemID(reinterpret_cast<HMENU>(got.wParam), 0));
      if (opened_.size() > keys_.size()) {
        PostMessageW(top(), WM_CANCELMODE, 0, 0);
        return;
      }
      for (const WPARAM key : keys_[opened_.size() - 1]) PostMessageW(top(), WM_KEYDOWN, key, 0);
    });
  }

  void pressAltAnd(wchar_t letter) { PostMessageW(edit_, WM_SYSCHAR, letter, LPARAM{1} << 29); }
  void press(WPARAM key) { PostMessageW(edit_, WM_KEYDOWN, key, 1); }
  int commandCount(int command) const { return countOf(WM_COMMAND, static_cast<WPARAM>(command)); }
  int commandCount() const {
    int count = 0;
    for (const Got& each : got()) count += each.message == WM_COMMAND && HIWORD(each.wParam) == 0 ? 1 : 0;
    return count;
  }

  HWND bar_ = nullptr;
  HWND edit_ = nullptr;
  std::vector<std::vector<WPARAM>> keys_;  ///< for each popup in turn
  std::vector<UINT> opened_;               ///< the first items of the popups that opened
};

TEST_F(MenuKeysTest, AltAndALetterOpenAPopupAndEnterChooses) {
  keys_ = {{VK_RETURN}};
  pressAltAnd(L'e');
  pump();
  EXPECT_EQ(opened_, std::vector<UINT>{ID_UNDO});
  EXPECT_EQ(commandCount(ID_UNDO), 1);
  EXPECT_EQ(GetFocus(), edit_);
}

TEST_F(MenuKeysTest, DownWalksTheItems) {
  keys_ = {{VK_DOWN, VK_RETURN}};
  pressAltAnd(L'e');
  pump();
  EXPECT_EQ(commandCount(ID_CUT), 1);
}

TEST_F(MenuKeysTest, RightWalksFromPopupToPopupRoundTheEnd) {
  // In the last one the first item is a submenu.
  keys_ = {{VK_RIGHT}, {VK_RIGHT}, {VK_RIGHT}, {VK_RIGHT}, {VK_RIGHT}, {VK_RETURN}};
  pressAltAnd(L'f');
  pump();
  EXPECT_EQ(opened_, (std::vector<UINT>{ID_NEW, ID_UNDO, ID_DELETE, kDesktopMenu, kZoom100, ID_NEW}));
  EXPECT_EQ(commandCount(ID_NEW), 1);
}

TEST_F(MenuKeysTest, LeftWalksBack) {
  keys_ = {{VK_LEFT}, {VK_LEFT}, {VK_LEFT}, {VK_RETURN}};
  pressAltAnd(L'f');
  pump();
  EXPECT_EQ(opened_, (std::vector<UINT>{ID_NEW, kDesktopMenu, ID_DELETE, ID_UNDO}));
  EXPECT_EQ(commandCount(ID_UNDO), 1);
}

TEST_F(MenuKeysTest, RightOpensASubmenuAndLeftClosesOnlyThat) {
  keys_ = {{VK_DOWN, VK_RIGHT}, {VK_LEFT, VK_RIGHT}, {VK_DOWN, VK_RETURN}};
  pressAltAnd(L'r');
  pump();
  EXPECT_EQ(opened_, (std::vector<UINT>{ID_DELETE, ID_FIRST, ID_FIRST}));
  EXPECT_EQ(commandCount(ID_LAST), 1);
}

TEST_F(MenuKeysTest, RightInASubmenuGoesToTheNextPopup) {
  keys_ = {{VK_DOWN, VK_RIGHT}, {VK_RIGHT}, {VK_ESCAPE}};
  pressAltAnd(L'r');
  pump();
  EXPECT_EQ(opened_, (std::vector<UINT>{ID_DELETE, ID_FIRST, kDesktopMenu}));
}

TEST_F(MenuKeysTest, EscapeClosesWithoutACommand) {
  keys_ = {{VK_ESCAPE}};
  pressAltAnd(L'f');
  pump();
  EXPECT_EQ(opened_.size(), 1U);
  EXPECT_EQ(commandCount(), 0);
  EXPECT_FALSE(pocketshell::isWalkingMenus());
}

TEST_F(MenuKeysTest, AGreyItemCannotBeChosen) {
  keys_ = {{VK_UP, VK_RETURN, VK_ESCAPE}};
  pressAltAnd(L'f');
  pump();
  EXPECT_EQ(commandCount(ID_CLOSE), 0);
}

TEST_F(MenuKeysTest, AnEnabledItemCanBeChosen) {
  auto* const file = reinterpret_cast<HMENU>(SendMessageW(bar_, SHCMBM_GETSUBMENU, 0, ID_FILE_BUTTON));
  EnableMenuItem(file, ID_CLOSE, MF_ENABLED);
  keys_ = {{VK_UP, VK_RETURN}};
  pressAltAnd(L'f');
  pump();
  EXPECT_EQ(commandCount(ID_CLOSE), 1);
}

TEST_F(MenuKeysTest, ALetterWithoutAButtonOpensNothing) {
  pressAltAnd(L'x');
  pump();
  EXPECT_TRUE(opened_.empty());
}

TEST_F(MenuKeysTest, AltAloneLetsTheArrowsWalkTheButtons) {
  keys_ = {{VK_RETURN}};
  SendMessageW(top(), WM_SYSCOMMAND, SC_KEYMENU, 0);
  EXPECT_EQ(SendMessageW(bar_, TB_GETHOTITEM, 0, 0), 0);
  press(VK_RIGHT);
  pump();
  EXPECT_EQ(SendMessageW(bar_, TB_GETHOTITEM, 0, 0), 1);
  press(VK_DOWN);
  pump();
  EXPECT_EQ(opened_, std::vector<UINT>{ID_UNDO});
  EXPECT_EQ(commandCount(ID_UNDO), 1);
}

TEST_F(MenuKeysTest, F10ReachesTheBarThroughAControl) {
  PostMessageW(edit_, WM_SYSKEYDOWN, VK_F10, 1);
  PostMessageW(edit_, WM_SYSKEYUP, VK_F10, 1);
  pump();
  EXPECT_EQ(SendMessageW(bar_, TB_GETHOTITEM, 0, 0), 0);
}

TEST_F(MenuKeysTest, EscapeGivesTheKeyboardBack) {
  SendMessageW(top(), WM_SYSCOMMAND, SC_KEYMENU, 0);
  press('A');
  press(VK_ESCAPE);
  pump();
  EXPECT_EQ(GetWindowTextLengthW(edit_), 0);
  EXPECT_EQ(SendMessageW(bar_, TB_GETHOTITEM, 0, 0), -1);
  PostMessageW(edit_, WM_CHAR, L'b', 1);
  pump();
  EXPECT_EQ(GetWindowTextLengthW(edit_), 1);
}

TEST_F(MenuKeysTest, APressedButtonOpensItsPopup) {
  keys_ = {{VK_DOWN, VK_RETURN}};
  RECT record{};
  SendMessageW(bar_, TB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&record));
  PostMessageW(bar_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(record.left + 3, record.top + 3));
  pump();
  EXPECT_EQ(opened_, std::vector<UINT>{ID_DELETE});
  EXPECT_EQ(commandCount(ID_DELETE), 1);
}

TEST_F(MenuKeysTest, TheBarIsThroughWithItsButtonBeforeThePopupOpens) {
  // A bar that is replaced while its popup is open must have nothing left to do.
  RECT record{};
  SendMessageW(bar_, TB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&record));
  const LPARAM place = MAKELPARAM(record.left + 3, record.top + 3);
  SendMessageW(bar_, WM_LBUTTONDOWN, MK_LBUTTON, place);
  EXPECT_TRUE(opened_.empty());
  keys_ = {{VK_ESCAPE}};
  pump();
  EXPECT_EQ(opened_, std::vector<UINT>{ID_DELETE});
  SendMessageW(bar_, WM_LBUTTONDOWN, MK_LBUTTON, place);
  DestroyWindow(bar_);
  pump();
  EXPECT_EQ(opened_.size(), 1U) << "there is no such button any more";
}

TEST_F(MenuKeysTest, ARightClickOnTheBarOffersTheZoom) {
  keys_ = {{'Z'}, {VK_DOWN, VK_DOWN, VK_RETURN}};
  SendMessageW(bar_, WM_RBUTTONUP, 0, MAKELPARAM(200, 5));
  pump();
  EXPECT_EQ(opened_.size(), 2U);
  EXPECT_EQ(HandheldGetZoom(), 200);
}

/// A key is down as long as it lives.
class KeyDown {
 public:
  explicit KeyDown(BYTE key) : key_(key) { set(0x80); }
  ~KeyDown() { set(0); }
  KeyDown(const KeyDown&) = delete;
  KeyDown& operator=(const KeyDown&) = delete;

 private:
  void set(BYTE state) const {
    std::array<BYTE, 256> keys{};
    GetKeyboardState(keys.data());
    keys[key_] = state;
    SetKeyboardState(keys.data());
  }

  BYTE key_;
};

TEST_F(MenuKeysTest, ControlWithPlusMinusAnd0ChangesTheZoom) {
  const auto zoomAfter = [this](WPARAM key) {
    press(key);
    pump();
    return HandheldGetZoom();
  };
  EXPECT_EQ(zoomAfter(VK_OEM_PLUS), 100) << "without Ctrl";
  const KeyDown control(VK_CONTROL);
  for (const int zoom : {150, 200, 300, 400, 400}) EXPECT_EQ(zoomAfter(VK_OEM_PLUS), zoom);
  for (const int zoom : {300, 200, 150, 100, 100}) EXPECT_EQ(zoomAfter(VK_SUBTRACT), zoom);
  HandheldSetZoom(160);
  EXPECT_EQ(zoomAfter(VK_ADD), 200);
  HandheldSetZoom(160);
  EXPECT_EQ(zoomAfter(VK_OEM_MINUS), 150);
  EXPECT_EQ(pocketshell::readZoomSetting(), 150);
  zoomAfter(L'0');
  EXPECT_EQ(pocketshell::readZoomSetting(), 0);
}

// The key to the third character of a key is told as Ctrl and Alt together.
TEST_F(MenuKeysTest, ControlWithAltLeavesTheKeyToTheEditor) {
  const KeyDown control(VK_CONTROL);
  const KeyDown alt(VK_MENU);
  for (const WPARAM key : {WPARAM{VK_OEM_PLUS}, WPARAM{VK_OEM_MINUS}, WPARAM{L'0'}}) {
    HandheldSetZoom(150);
    int reached = 0;
    const auto count = [](HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                          DWORD_PTR counter) -> LRESULT {
      if (message == WM_KEYDOWN) ++*reinterpret_cast<int*>(counter);
      return DefSubclassProc(edit, message, wParam, lParam);
    };
    ASSERT_TRUE(SetWindowSubclass(edit_, count, 1, reinterpret_cast<DWORD_PTR>(&reached)));
    press(key);
    pump();
    RemoveWindowSubclass(edit_, count, 1);
    EXPECT_EQ(reached, 1) << key;
    EXPECT_EQ(pocketshell::readZoomSetting(), 150) << key;
  }
}

TEST_F(MenuKeysTest, TheBarMayBeRebuiltByTheCommand) {
  keys_ = {{VK_RETURN}};
  onMessage([this, before = bar_](const Got& got) {
    if (got.message == WM_INITMENUPOPUP) {
      DestroyWindow(before);
      bar_ = makeBar();
      PostMessageW(top(), WM_CANCELMODE, 0, 0);
    }
  });
  pressAltAnd(L'f');
  pump();
  EXPECT_TRUE(IsWindow(bar_));
  EXPECT_FALSE(pocketshell::isWalkingMenus());
}

}  // namespace
