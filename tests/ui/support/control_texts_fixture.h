#pragma once

#include <windows.h>

#include <cstdlib>
#include <string>

#include "gtest/gtest.h"
#include "tests/ui/support/host_window.h"
#include "tests/ui/support/random_texts.h"
#include "views/form/form_layout.h"
#include "views/shared/edit_guard.h"

/// Shows any text whatever in controls of a window of this process. One that the system's layout does not
/// survive ends the test program.
class ControlTextsTest : public testing::Test {
 protected:
  /// Few enough for a busy machine; QUIVANE_TEXT_COUNT says another number.
  static inline const int kTextCount = [] {
    const char* const wanted = std::getenv("QUIVANE_TEXT_COUNT");
    return wanted ? std::atoi(wanted) : 4000;
  }();
  static constexpr ControlPlace kPlace{2, 2, 220, 60};

  void SetUp() override {
    guardEditControls();
    ShowWindow(host_.get(), SW_SHOW);
  }

  HWND host() const { return host_.get(); }
  HWND createControl(const wchar_t* className, DWORD style) {
    const HWND made = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, 2, 2, 220, 60, host(),
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
    EXPECT_NE(made, nullptr);
    return made;
  }
  /// Gives `show` one text after the other.
  template <typename Show>
  void showAll(int count, Show show) {
    RandomTexts texts;
    for (int i = 0; i < count; ++i) show(texts.next());
  }
  static void paint(HWND window) { RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

 private:
  HostWindow host_;
};
