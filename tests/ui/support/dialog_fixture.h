#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gmock/gmock.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/dialog_reading.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/message_boxes.h"
#include "tests/ui/support/shell_frame.h"
#include "tests/unit/base/registry_fixture.h"

/// Dialogs over a main window of the test, with a registry of their own, the default colours, zoom 100, the
/// handheld's size and its input panel, which is down. Message boxes are answered with OK and kept.
class DialogTest : public RegistryTest {
 protected:
  using Step = std::function<void(HWND dialog)>;
  using Box = MessageBoxes::Box;
  /// Of a drop-down list at zoom 100.
  static constexpr int kNormalComboHeight = 21;

  void SetUp() override;
  void TearDown() override;

  HWND frame() const { return frame_->get(); }
  /// What the main window does with messages besides.
  void onMessage(ShellFrame::Handler handler) { frame_->onMessage(std::move(handler)); }

  /// The result of the dialog that `run` opens; `step` is called once its controls stand, before it is shown,
  /// and may press a button that ends it. Fails unless exactly one opens. One that the step leaves open is
  /// cancelled.
  static INT_PTR inDialog(const std::function<INT_PTR()>& run, const Step& step);
  /// Does that 101 times. After the first, which the system keeps something of, nothing may be left behind.
  static void leavesNothingBehind(const std::function<void()>& run);

  /// Sends the command of a button and waits for what it does.
  static void press(HWND dialog, int id) {
    SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
  }
  static void click(HWND dialog, int id) { SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0); }
  /// Presses a key in a control, once the dialog is shown.
  static void postKey(HWND control, WORD key) { PostMessageW(control, WM_KEYDOWN, key, 1); }
  /// A message of the keyboard to the control that has it, by way of the dialog's own keys.
  static void sendKey(HWND dialog, UINT message, WPARAM key);
  /// With Alt held.
  static void sendAccessKey(HWND dialog, wchar_t key) { sendKey(dialog, WM_SYSCHAR, key); }

  /// The message boxes since the last call.
  std::vector<Box> takeBoxes() { return boxes_.take(); }
  /// How the next box is answered instead of with OK.
  void answerNextBox(int button) { boxes_.answerNext(button); }
  /// What a dialog says to the user: without an icon, and in front of all other programs.
  static Box message(HWND dialog, const std::wstring& text, const wchar_t* caption = L"Quivane") {
    return {.caption = caption, .text = text, .owner = dialog, .comesToFront = true};
  }

  /// No larger than the main window, and every control inside.
  static void expectFits(HWND dialog);
  /// No control covers another or leaves the dialog.
  static void expectControlsApart(HWND dialog);
  /// Centred in the main window, and raised by so many handheld pixels; never beyond its edges.
  static void expectCentred(HWND dialog, int raise = 0);
  static void expectFullScreen(HWND dialog);
  /// Everything is in the interface font, and no label or button is cut.
  static void expectTextsFit(HWND dialog);
  /// No letter chooses two controls.
  static void expectAccessKeysApart(HWND dialog);
  /// Labels and check boxes blue on white, edits black on white, as the dialog answers when they ask.
  static void expectColors(HWND dialog);

 private:
  std::unique_ptr<ShellFrame> frame_;
  int windowsBefore_ = 0;
  MessageBoxes boxes_;
};

/// Calls a function once all messages of this thread are done, the painting of new windows included. One
/// waits at a time.
class WhenIdle {
 public:
  explicit WhenIdle(std::function<void()> action);

 private:
  static void CALLBACK elapsed(HWND window, UINT message, UINT_PTR timer, DWORD time);
};
