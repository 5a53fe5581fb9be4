#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/ui/program/states/page_model.h"

/// The windows of the program that runs on another thread of this process, to be used on that thread.

/// Calls something on the thread of a window as long as it lives, while that thread waits for messages.
class ThreadCaller {
 public:
  explicit ThreadCaller(HWND window);
  ~ThreadCaller();
  ThreadCaller(const ThreadCaller&) = delete;
  ThreadCaller& operator=(const ThreadCaller&) = delete;

  /// Returns when it is done.
  void call(const std::function<void()>& what) const;

 private:
  HWND window_;
};

/// Answers the message boxes and file dialogs of the program at once: the boxes as long as it lives, the file
/// dialogs from then on.
class PromptAnswers {
 public:
  PromptAnswers();
  ~PromptAnswers();
  PromptAnswers(const PromptAnswers&) = delete;
  PromptAnswers& operator=(const PromptAnswers&) = delete;

  /// What every message box from now on is answered with.
  static void setBox(int answer);
  /// The file that every file dialog gives; none cancels it.
  static void setFile(std::optional<std::wstring> path);
  /// The texts of the boxes since the last call.
  static std::vector<std::wstring> takeBoxes();
};

namespace pagewindow {

/// What the windows show, under the names of PageModel::facts.
Facts facts();

void command(int id);
void clickTab(int page);
/// What the list of names that is shown does and reports when an item is tapped.
void tapName(int index);
void tapRow(int row);
void pressKeyInGrid(WORD key);
void typeIntoSecondEditor(wchar_t character);
void pressPanelButton();
/// What the user does in the Find dialog: one step, after which he leaves it.
void findInAllFields(HWND dialog, const wchar_t* text);
/// What he does in the dialog that asks for a number; he leaves it when the number is refused.
void enterNumber(HWND dialog, int number);

/// In the list of names that is shown.
struct ChosenName {
  int index;  ///< -1 for none
  bool hasFocus;
  bool operator==(const ChosenName&) const = default;
};
ChosenName chosenName();
void pressKeyInNames(WORD key);

}  // namespace pagewindow
