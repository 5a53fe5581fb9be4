// What the main window answers to messages of the system, in the whole program on a thread of the test.
#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/program_thread_test.h"
#include "views/form/form_ids.h"

using testing::ElementsAre;

namespace {

constexpr int kFormWindow = 6;

class WindowMessagesTest : public ProgramThreadTest {
 protected:
  void SetUp() override {
    start({L"CREATE TABLE 'T' (Name Text, Born Datetime)",
           L"INSERT INTO T VALUES ('as it was', '2001-03-09')"});
  }

  std::vector<std::string> storedNames() const { return stored("SELECT Name FROM T"); }
  /// Its size in the handheld's pixels.
  static std::vector<LONG> sizeOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return {place.right - place.left, place.bottom - place.top};
  }
};

TEST_F(WindowMessagesTest, OfTheSettingsOnlyThatOfTheInputPanelLaysThePagesOut) {
  const HWND tab = remote::tabControl(main());
  SetWindowPos(tab, nullptr, 0, 0, 200, 100, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  EXPECT_EQ(send(WM_SETTINGCHANGE, SPI_SETWORKAREA, 0), -1);
  EXPECT_THAT(sizeOf(tab), ElementsAre(200, 100));
  constexpr WPARAM kInputPanel = 224;
  EXPECT_EQ(send(WM_SETTINGCHANGE, kInputPanel, 0), 0);
  EXPECT_THAT(sizeOf(tab), ElementsAre(240, 269));
}

TEST_F(WindowMessagesTest, TheFormsScrollRangeIsToggledByItsCommand) {
  const auto range = [this] {
    int least = -1;
    int most = -1;
    GetScrollRange(control(kFormWindow), SB_VERT, &least, &most);
    return std::vector<int>{least, most};
  };
  const auto hasBar = [this] {
    return (GetWindowLongPtrW(control(kFormWindow), GWL_STYLE) & WS_VSCROLL) != 0;
  };
  EXPECT_THAT(range(), ElementsAre(0, 0));
  EXPECT_FALSE(hasBar());
  for (int i = 0; i < 2; ++i) {
    send(WM_COMMAND, ID_FORM_SCROLL_RANGE, 0);
    EXPECT_THAT(range(), ElementsAre(0, 4));
    EXPECT_TRUE(hasBar());
    send(WM_COMMAND, ID_FORM_SCROLL_RANGE, 0);
    EXPECT_THAT(range(), ElementsAre(0, 0));
    EXPECT_FALSE(hasBar());
  }
}

TEST_F(WindowMessagesTest, AnItemToBeDrawnIsAnsweredWithZero) {
  DRAWITEMSTRUCT item{};
  EXPECT_EQ(send(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&item)), 0);
}

// Of another program; the user can give none.
TEST_F(WindowMessagesTest, ACommandUnderADialogDoesNothing) {
  for (const int opening : {ID_ABOUT, ID_DATABASE_OPEN}) {
    PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(opening), 0);
    HWND dialog = nullptr;
    ASSERT_TRUE(remote::waitUntil(
        [&] { return (dialog = remote::dialog(GetCurrentProcessId(), nullptr)) != nullptr; }));
    for (const int under : {ID_ABOUT, ID_DATABASE_OPEN, ID_DATABASE_CLOSE, ID_EXIT})
      PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(under), 0);
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(dialog); })) << opening;
    EXPECT_TRUE(remote::waitUntil([&] { return IsWindowEnabled(main()) != FALSE; })) << opening;
    EXPECT_EQ(remote::dialog(GetCurrentProcessId(), nullptr), nullptr) << opening;
    EXPECT_NE(remote::shownPage(main()), nullptr) << opening;
  }
}

TEST_F(WindowMessagesTest, WhoComesBackFindsTheCalendarShown) {
  ASSERT_TRUE(remote::switchToPage(main(), kFormPage));
  PostMessageW(control(kFirstDateEditorId), WM_LBUTTONDOWN, MK_LBUTTON, 0);
  HWND calendar = nullptr;
  ASSERT_TRUE(remote::waitUntil(
      [&] { return (calendar = remote::dialog(GetCurrentProcessId(), L"Born")) != nullptr; }));
  ShowWindow(calendar, SW_HIDE);
  ASSERT_FALSE(IsWindowVisible(calendar));
  send(WM_ACTIVATE, WA_CLICKACTIVE, 0);
  EXPECT_TRUE(IsWindowVisible(calendar));
  SendMessageW(calendar, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(remote::waitUntil([&] { return !IsWindow(calendar); }));
}

/// Counts what is sent to a window of another thread of this process, as long as it lives. One at a time.
class SentMessages {
 public:
  explicit SentMessages(HWND window) {
    watched = window;
    shown = 0;
    destroyed = 0;
    hook_ = SetWindowsHookExW(WH_CALLWNDPROC, note, nullptr, GetWindowThreadProcessId(window, nullptr));
  }
  ~SentMessages() { UnhookWindowsHookEx(hook_); }
  SentMessages(const SentMessages&) = delete;
  SentMessages& operator=(const SentMessages&) = delete;

  static int shownCount() { return shown; }
  static int destroyedCount() { return destroyed; }

 private:
  static LRESULT CALLBACK note(int code, WPARAM wParam, LPARAM lParam) {
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent.hwnd == watched) {
      if (sent.message == WM_SHOWWINDOW && sent.wParam != FALSE) ++shown;
      if (sent.message == WM_DESTROY) ++destroyed;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }

  static inline std::atomic<HWND> watched;
  static inline std::atomic<int> shown;
  static inline std::atomic<int> destroyed;
  HHOOK hook_ = nullptr;
};

TEST_F(WindowMessagesTest, ADialogThatEndsIsNotShownOnceMore) {
  for (const int command : {ID_ABOUT, ID_DATABASE_INFO, ID_OPTIONS}) {
    PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    HWND dialog = nullptr;
    ASSERT_TRUE(remote::waitUntil(
        [&] { return (dialog = remote::dialog(GetCurrentProcessId(), nullptr)) != nullptr; }));
    const SentMessages sent(dialog);
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    ASSERT_TRUE(remote::waitUntil([&] { return IsWindowEnabled(main()) && !IsWindow(dialog); }));
    EXPECT_EQ(SentMessages::destroyedCount(), 1) << command;
    EXPECT_EQ(SentMessages::shownCount(), 0) << command;
  }
}

TEST_F(WindowMessagesTest, WhatStandsOnTheFormIsStoredWhenTheUserLogsOff) {
  ASSERT_TRUE(remote::switchToPage(main(), kFormPage));
  SetWindowTextW(control(kFirstTextEditorId), L"typed");
  send(WM_ENDSESSION, FALSE, 0);
  EXPECT_THAT(storedNames(), ElementsAre("as it was")) << "the session goes on";
  send(WM_ENDSESSION, TRUE, 0);
  EXPECT_THAT(storedNames(), ElementsAre("typed"));
}

TEST_F(WindowMessagesTest, WhatStandsOnTheFormIsStoredWhenTheUserWantsToLogOff) {
  ASSERT_TRUE(remote::switchToPage(main(), kFormPage));
  EXPECT_NE(send(WM_QUERYENDSESSION, 0, 0), FALSE);
  SetWindowTextW(control(kFirstTextEditorId), L"typed");
  EXPECT_NE(send(WM_QUERYENDSESSION, 0, 0), FALSE);
  EXPECT_THAT(storedNames(), ElementsAre("typed"));
}

}  // namespace
