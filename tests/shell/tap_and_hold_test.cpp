#include "platform/pocketshell/window/tap_and_hold.h"

#include <optional>

#include "tests/shell/shell_fixture.h"

namespace {

using pocketshell::TapAndHold;

class TapAndHoldTest : public ShellTest {
 protected:
  TapAndHoldTest() {
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    list_ = HandheldCreateWindow(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL, 10,
                                 20, 200, 150, top(), reinterpret_cast<HMENU>(INT_PTR{77}), nullptr, nullptr);
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH;
    column.cx = 150;
    SendMessageW(list_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    for (int i = 0; i < 3; ++i) {
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = i;
      item.pszText = const_cast<wchar_t*>(L"Item number");
      SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    onMessage([this](const Got& got) {
      if (got.message != WM_NOTIFY) return;
      const auto& header = *reinterpret_cast<const NMHDR*>(got.lParam);
      if (header.code == GN_CONTEXTMENU) {
        ++menuCount_;
        menu_ = reinterpret_cast<const NMRGINFO&>(header);
        selectedThen_ = selected();
      }
      if (header.code == static_cast<UINT>(NM_CLICK)) ++clickCount_;
    });
  }

  POINT middleOf(int item) const {
    RECT place = {LVIR_LABEL, 0, 0, 0};
    SendMessageW(list_, LVM_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&place));
    return {place.left + 10, (place.top + place.bottom) / 2};
  }
  void send(UINT message, POINT place, WPARAM keys = 0) const {
    SendMessageW(list_, message, keys, MAKELPARAM(place.x, place.y));
  }
  void press(int item) const { send(WM_LBUTTONDOWN, middleOf(item), MK_LBUTTON); }
  void letTimePass() const { SendMessageW(list_, WM_TIMER, TapAndHold::kTimer, 0); }
  int selected() const {
    return static_cast<int>(SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
  }
  POINT onScreen(POINT place) const {
    ClientToScreen(list_, &place);
    return place;
  }

  HWND list_ = nullptr;
  int menuCount_ = 0;
  int clickCount_ = 0;
  int selectedThen_ = -1;
  NMRGINFO menu_{};
};

TEST_F(TapAndHoldTest, AHeldPressAsksForTheMenuOfItsItem) {
  press(1);
  EXPECT_EQ(menuCount_, 0);
  letTimePass();
  EXPECT_EQ(menuCount_, 1);
  EXPECT_EQ(selectedThen_, 1);
  EXPECT_EQ(menu_.hdr.hwndFrom, list_);
  EXPECT_EQ(menu_.hdr.idFrom, 77U);
  EXPECT_EQ(menu_.dwItemSpec, 1U);
  EXPECT_EQ(menu_.ptAction.x, onScreen(middleOf(1)).x);
  EXPECT_EQ(menu_.ptAction.y, onScreen(middleOf(1)).y);
}

TEST_F(TapAndHoldTest, AHeldPressIsNoClickAndNoDrag) {
  press(1);
  letTimePass();
  send(WM_MOUSEMOVE, middleOf(2), MK_LBUTTON);
  send(WM_LBUTTONUP, middleOf(2));
  pump();
  EXPECT_EQ(clickCount_, 0);
  EXPECT_EQ(selected(), 1);
  EXPECT_NE(GetCapture(), list_);
}

TEST_F(TapAndHoldTest, ATapIsAClick) {
  press(2);
  send(WM_LBUTTONUP, middleOf(2));
  pump();
  EXPECT_EQ(clickCount_, 1);
  EXPECT_EQ(selected(), 2);
  EXPECT_EQ(GetFocus(), list_);
  letTimePass();
  EXPECT_EQ(menuCount_, 0);
}

TEST_F(TapAndHoldTest, AMovedPressIsNoHold) {
  press(0);
  POINT place = middleOf(0);
  place.x += GetSystemMetrics(SM_CXDRAG) + 1;
  PostMessageW(list_, WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
  send(WM_MOUSEMOVE, place, MK_LBUTTON);
  letTimePass();
  EXPECT_EQ(menuCount_, 0);
  pump();
}

TEST_F(TapAndHoldTest, ATremblingHandStillHolds) {
  press(0);
  POINT place = middleOf(0);
  place.x += GetSystemMetrics(SM_CXDRAG);
  send(WM_MOUSEMOVE, place, MK_LBUTTON);
  letTimePass();
  EXPECT_EQ(menuCount_, 1);
}

TEST_F(TapAndHoldTest, TheTimerRunsByItself) {
  press(1);
  EXPECT_TRUE(pumpUntil([this] { return menuCount_ == 1; }));
}

TEST_F(TapAndHoldTest, ARightClickSelectsAndAsks) {
  send(WM_RBUTTONDOWN, middleOf(2), MK_RBUTTON);
  send(WM_RBUTTONUP, middleOf(2));
  pump();
  EXPECT_EQ(menuCount_, 1);
  EXPECT_EQ(selectedThen_, 2);
  EXPECT_EQ(menu_.dwItemSpec, 2U);
}

TEST_F(TapAndHoldTest, TheMenuKeyAsksAtTheSelectedItem) {
  send(WM_RBUTTONDOWN, middleOf(1), MK_RBUTTON);
  SendMessageW(list_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list_), -1);
  EXPECT_EQ(menuCount_, 1);
  EXPECT_EQ(menu_.dwItemSpec, 1U);
  EXPECT_EQ(menu_.ptAction.y, onScreen(middleOf(1)).y);
}

TEST_F(TapAndHoldTest, ShiftF10ReachesTheList) {
  SetFocus(list_);
  BYTE keys[256] = {};
  GetKeyboardState(keys);
  keys[VK_SHIFT] = 0x80;
  SetKeyboardState(keys);
  SendMessageW(list_, WM_SYSKEYDOWN, VK_F10, 1);
  keys[VK_SHIFT] = 0;
  SetKeyboardState(keys);
  EXPECT_EQ(menuCount_, 1);
}

TEST_F(TapAndHoldTest, BesideTheItemsThereIsNoItem) {
  const POINT below = {20, 140};
  send(WM_LBUTTONDOWN, below, MK_LBUTTON);
  letTimePass();
  EXPECT_EQ(menuCount_, 1);
  EXPECT_EQ(menu_.dwItemSpec, static_cast<DWORD_PTR>(-1));
}

TEST_F(TapAndHoldTest, TheListMayBeGoneAfterTheMenu) {
  onMessage([this](const Got& got) {
    if (got.message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(got.lParam)->code == GN_CONTEXTMENU) {
      DestroyWindow(list_);
    }
  });
  press(1);
  letTimePass();
  EXPECT_FALSE(IsWindow(list_));
  EXPECT_EQ(TapAndHold::count(), 0U);
}

}  // namespace
