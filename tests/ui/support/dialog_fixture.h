#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/app_colors.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/shell_frame.h"
#include "tests/ui/support/window_reading.h"
#include "tests/unit/base_registry_fixture.h"
#include "views/dialog/current_dialog.h"

/// Dialogs over a main window of the test, with a registry of their own, the default colours, zoom 100, the
/// handheld's size and its input panel, which is down.
class DialogTest : public RegistryTest {
 protected:
  void SetUp() override {
    RegistryTest::SetUp();
    setPanelPolicy(kPanelAlways);
    setHandheldSize(true);
    HandheldSetZoom(100);
    resetAppColors();
    frame_ = std::make_unique<ShellFrame>();
    ASSERT_NE(frame_->get(), nullptr);
    windowsBefore_ = windowCount();
  }

  void TearDown() override {
    EXPECT_EQ(windowCount(), windowsBefore_) << "a window was left open";
    EXPECT_EQ(currentDialog, nullptr);
    EXPECT_TRUE(IsWindowEnabled(frame()));
    SHSipPreference(frame(), SIP_DOWN);
    frame_.reset();
    HandheldSetZoom(100);
    RegistryTest::TearDown();
  }

  HWND frame() const { return frame_->get(); }

 private:
  /// Of dialogs and frames; what the shell and the system keep for themselves stays out.
  static int windowCount() {
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

  std::unique_ptr<ShellFrame> frame_;
  int windowsBefore_ = 0;
};

/// Calls a function once all messages of this thread are done, the painting of new windows included. One
/// waits at a time.
class WhenIdle {
 public:
  explicit WhenIdle(std::function<void()> action) {
    waiting() = std::move(action);
    timer() = SetTimer(nullptr, 0, 1, elapsed);
  }

 private:
  static std::function<void()>& waiting() {
    static std::function<void()> action;
    return action;
  }
  static UINT_PTR& timer() {
    static UINT_PTR id = 0;
    return id;
  }
  static void CALLBACK elapsed(HWND, UINT, UINT_PTR, DWORD) {
    KillTimer(nullptr, timer());
    std::exchange(waiting(), nullptr)();
  }
};
