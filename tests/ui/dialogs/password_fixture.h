#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>

#include "base/settings/app_settings.h"
#include "dialogs/password/password_lock.h"
#include "tests/ui/support/dialog_fixture.h"

/// The password dialogs over a main window of the test, answered one after the other.
class PasswordTest : public DialogTest {
 protected:
  static constexpr int kPassword = 1001;
  static constexpr int kOld = 1004;
  static constexpr int kNew = 1005;
  static constexpr int kConfirm = 1006;

  void TearDown() override {
    appUnlocked = false;
    DialogTest::TearDown();
  }

  static Box warning(const wchar_t* caption, const wchar_t* text) {
    return {.caption = caption, .text = text, .icon = LoadIconW(nullptr, IDI_WARNING), .isTopmost = true};
  }

  /// How the next dialog is answered. After the last answer every dialog is cancelled.
  void then(Step step) { steps_.push_back(std::move(step)); }
  void thenEnter(const std::wstring& password) {
    then([password](HWND dialog) {
      SetDlgItemTextW(dialog, kPassword, password.c_str());
      DialogScript::close(dialog, IDOK);
    });
  }
  void thenChange(const std::wstring& oldPassword, const std::wstring& newPassword,
                  const std::wstring& confirmation) {
    then([=](HWND dialog) {
      SetDlgItemTextW(dialog, kOld, oldPassword.c_str());
      SetDlgItemTextW(dialog, kNew, newPassword.c_str());
      SetDlgItemTextW(dialog, kConfirm, confirmation.c_str());
      DialogScript::close(dialog, IDOK);
    });
  }
  void thenCancel() {
    then([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); });
  }

  void check() {
    run([this] { checkPassword(frame()); });
  }
  void change() {
    run([this] { EXPECT_EQ(changePassword(frame()), 0); });
  }

  static void store(const wchar_t* password) {
    setRaw(L"Password", L"PasswordItem", REG_SZ, textValue(password).bytes);
  }
  static Value stored() { return raw(L"Password", L"PasswordItem"); }

  /// How often a password dialog was opened.
  int dialogCount() const { return dialogCount_; }

  /// Runs what opens the dialogs.
  void run(const std::function<void()>& command) {
    const DialogScript script([this](HWND dialog) { answer(dialog); });
    command();
    EXPECT_TRUE(steps_.empty()) << "a dialog was not opened";
  }

 private:
  void answer(HWND dialog) {
    ++dialogCount_;
    if (steps_.empty()) return DialogScript::close(dialog, IDCANCEL);
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    step(dialog);
  }

  std::deque<Step> steps_;
  int dialogCount_ = 0;
};
