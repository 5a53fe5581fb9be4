#include "tests/ui/support/dialog_fixture.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/settings/app_colors.h"
#include "owners/live_resources.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/current_dialog.h"

namespace {

/// Of dialogs and frames; what the shell and the system keep for themselves stays out.
int frameCount() {
  int count = 0;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM result) -> BOOL {
        if ((styleOf(window) & WS_CAPTION) == WS_CAPTION) ++*reinterpret_cast<int*>(result);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

BOOL CALLBACK countWithChildren(HWND window, LPARAM count) {
  *reinterpret_cast<int*>(count) += 1;
  EnumChildWindows(
      window,
      [](HWND, LPARAM children) -> BOOL {
        ++*reinterpret_cast<int*>(children);
        return TRUE;
      },
      count);
  return TRUE;
}

int windowCount() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), countWithChildren, reinterpret_cast<LPARAM>(&count));
  return count;
}

}  // namespace

void DialogTest::SetUp() {
  RegistryTest::SetUp();
  setPanelPolicy(kPanelAlways);
  setHandheldSize(true);
  HandheldSetZoom(100);
  resetAppColors();
  frame_ = std::make_unique<ShellFrame>(WS_VISIBLE);
  ASSERT_NE(frame(), nullptr);
  windowsBefore_ = frameCount();
}

void DialogTest::TearDown() {
  EXPECT_EQ(frameCount(), windowsBefore_) << "a window was left open";
  EXPECT_EQ(currentDialog, nullptr);
  EXPECT_TRUE(IsWindowEnabled(frame()));
  SHSipPreference(frame(), SIP_DOWN);
  frame_.reset();
  HandheldSetZoom(100);
  RegistryTest::TearDown();
}

INT_PTR DialogTest::inDialog(const std::function<INT_PTR()>& run, const Step& step) {
  const DialogScript script([&](HWND dialog) {
    step(dialog);
    // One that the step did not close, because it failed, must not stay open for ever.
    DialogScript::close(dialog, IDCANCEL);
  });
  const INT_PTR result = run();
  EXPECT_EQ(script.count(), 1);
  return result;
}

void DialogTest::leavesNothingBehind(const std::function<void()>& run) {
  run();
  dispatchPosted();
  const int windows = windowCount();
  const long resources = LiveResources::countOfAll();
  for (int i = 0; i < 100; ++i) run();
  dispatchPosted();
  EXPECT_EQ(windowCount(), windows);
  EXPECT_EQ(LiveResources::countOfAll(), resources);
}

void DialogTest::sendKey(HWND dialog, UINT message, WPARAM key) {
  constexpr LPARAM kWithAlt = 0x20000001;
  MSG pressed{GetFocus(), message, key, message == WM_SYSCHAR ? kWithAlt : 1, 0, {}};
  EXPECT_TRUE(IsDialogMessageW(dialog, &pressed));
}

void DialogTest::expectFits(HWND dialog) {
  RECT outer{};
  GetWindowRect(dialog, &outer);
  EXPECT_LE(outer.right - outer.left, HandheldToMonitor(240) + 2 * GetSystemMetrics(SM_CXFIXEDFRAME));
  EXPECT_LE(outer.bottom - outer.top,
            HandheldToMonitor(294) + GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFIXEDFRAME));
  EXPECT_THAT(controlsOutside(dialog), testing::IsEmpty());
}

void DialogTest::expectControlsApart(HWND dialog) {
  EXPECT_THAT(controlsOutside(dialog), testing::IsEmpty());
  std::vector<HWND> shown = childrenOf(dialog);
  std::erase_if(shown, [](HWND child) { return !isShown(child); });
  for (auto each = shown.begin(); each != shown.end(); ++each) {
    const ControlPlace place = placeOf(*each);
    for (auto other = shown.begin(); other != each; ++other) {
      const ControlPlace covered = placeOf(*other);
      EXPECT_TRUE(place.x >= covered.x + covered.width || covered.x >= place.x + place.width ||
                  place.y >= covered.y + covered.height || covered.y >= place.y + place.height)
          << "controls " << GetDlgCtrlID(*each) << " and " << GetDlgCtrlID(*other);
    }
  }
}

void DialogTest::expectCentred(HWND dialog, int raise) {
  const SIZE area = clientSize(GetParent(dialog));
  RECT outer{};
  GetWindowRect(dialog, &outer);
  const LONG width = outer.right - outer.left;
  const LONG height = outer.bottom - outer.top;
  MapWindowPoints(nullptr, GetParent(dialog), reinterpret_cast<POINT*>(&outer), 2);
  EXPECT_EQ(outer.left, std::max(0L, (area.cx - width) / 2));
  EXPECT_EQ(outer.top, std::max(0L, (area.cy - height) / 2 - HandheldToMonitor(raise)));
}

void DialogTest::expectFullScreen(HWND dialog) {
  RECT own{};
  RECT below{};
  GetClientRect(dialog, &own);
  GetClientRect(GetParent(dialog), &below);
  EXPECT_TRUE(EqualRect(&own, &below));
  MapWindowPoints(dialog, GetParent(dialog), reinterpret_cast<POINT*>(&own), 2);
  EXPECT_TRUE(EqualRect(&own, &below));
}

void DialogTest::expectTextsFit(HWND dialog) {
  for (const HWND control : childrenOf(dialog)) {
    const std::wstring name = classOf(control);
    if (name == L"Static" && (styleOf(control) & SS_TYPEMASK) == SS_ICON) continue;
    EXPECT_EQ(SendMessageW(control, WM_GETFONT, 0, 0), reinterpret_cast<LRESULT>(HandheldGetFont()));
    if (name != L"Static" && name != L"Button") continue;
    EXPECT_TRUE(textFits(control, HandheldGetFont())) << testing::PrintToString(textOf(control));
  }
}

void DialogTest::expectAccessKeysApart(HWND dialog) {
  const std::multiset<wchar_t> keys = accessKeys(dialog);
  EXPECT_FALSE(keys.empty());
  for (const wchar_t key : keys) EXPECT_EQ(keys.count(key), 1u) << static_cast<char>(key);
}

void DialogTest::expectColors(HWND dialog) {
  const HDC context = CreateCompatibleDC(nullptr);
  const auto white = reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
  const auto answer = [&](UINT message, HWND window) {
    SetTextColor(context, RGB(1, 2, 3));
    SetBkColor(context, RGB(1, 2, 3));
    return SendMessageW(dialog, message, reinterpret_cast<WPARAM>(context), reinterpret_cast<LPARAM>(window));
  };
  int texts = 0;
  for (const HWND control : childrenOf(dialog)) {
    const std::wstring name = classOf(control);
    if (name != L"Static" && name != L"Button" && name != L"Edit") continue;
    ++texts;
    EXPECT_EQ(answer(WM_CTLCOLORSTATIC, control), white);
    EXPECT_EQ(GetTextColor(context), name == L"Edit" ? RGB(0, 0, 0) : RGB(0, 0, 255));
    EXPECT_EQ(GetBkColor(context), RGB(255, 255, 255));
  }
  EXPECT_GT(texts, 0);
  EXPECT_EQ(answer(WM_CTLCOLORDLG, dialog), white);
  DeleteDC(context);
}

namespace {

std::function<void()> waiting;
UINT_PTR waitingTimer = 0;

}  // namespace

WhenIdle::WhenIdle(std::function<void()> action) {
  waiting = std::move(action);
  waitingTimer = SetTimer(nullptr, 0, 1, elapsed);
}

void CALLBACK WhenIdle::elapsed(HWND, UINT, UINT_PTR, DWORD) {
  KillTimer(nullptr, waitingTimer);
  std::exchange(waiting, nullptr)();
}
