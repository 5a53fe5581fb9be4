#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/shell/shell_fixture.h"
#include "tests/shell/shell_settings.h"
#include "tests/ui/support/dialog_reading.h"
#include "tests/ui/support/message_box_spy.h"

/// A control as a dialog's resource gives it: identifier, class, text.
struct ControlFacts {
  int id = 0;
  std::wstring className;
  std::wstring text;
  bool operator==(const ControlFacts&) const = default;
};
void PrintTo(const ControlFacts& facts, std::ostream* out);

/// Dialogs over a shell window, with the program's settings as they are when nothing was set. What happens
/// in a dialog is a step, called once its controls stand.
class TypedDialogTest : public ShellTest {
 protected:
  using Step = std::function<void(HWND dialog)>;
  using Run = std::function<INT_PTR()>;

  void SetUp() override;
  void TearDown() override;

  /// The result of the dialog that `run` opens. Fails unless exactly one opens. A dialog that the step
  /// leaves open is cancelled.
  static INT_PTR inDialog(const Run& run, const Step& step);
  /// The same 100 times, after which as many windows and owned resources must be there as before.
  static void leavesNothingBehind(const Run& run, const Step& step);

  static void click(HWND dialog, int id);
  /// A message of the keyboard to the control that has it, by way of the dialog's own keys.
  static void press(HWND dialog, UINT message, WPARAM key);
  /// With Alt held.
  static void pressAccessKey(HWND dialog, wchar_t key);

  static std::wstring textIn(HWND dialog, int id);
  /// The texts of a combo box's list.
  static std::vector<std::wstring> entries(HWND dialog, int id);
  static std::wstring selected(HWND dialog, int id);
  /// All controls in the order of the Tab key; the labels stand before what they name.
  static std::vector<ControlFacts> controls(HWND dialog);

  /// A label is drawn blue on white, all else black; the dialog is white.
  static void expectColors(HWND dialog, int labelId, int otherId);
  /// No control leaves the dialog, and none covers another.
  static void expectControlsApart(HWND dialog);

  /// The message boxes since the last call.
  static std::vector<MessageBoxSpy::Box> takeBoxes() { return MessageBoxSpy::take(); }

 private:
  MessageBoxSpy boxes_;
};
