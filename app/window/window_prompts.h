#pragma once

#include <windows.h>

#include "app/window/progress_line.h"
#include "dialogs/find/find_dialog.h"
#include "records/user_prompts.h"

/// How a message of that kind looks, as flags of MessageBoxW.
UINT boxFlags(Notice notice);
UINT boxFlags(Question question);

/// The Document's questions as message boxes and dialogs over the program's windows.
class WindowPrompts final : public UserPrompts {
 public:
  void tell(PromptOwner owner, Notice notice, const wchar_t* text, const wchar_t* caption) override;
  bool ask(PromptOwner owner, Question question, const wchar_t* text, const wchar_t* caption) override;
  /// While it is open the main window's title names its purpose.
  std::optional<String> chooseFile(FileChoice choice, const String& suggestion = String()) override;
  std::optional<std::uint32_t> chooseSource(const NameList& sources) override;
  LostFileChoice askAboutLostFile(const String& path, bool isReplaced) override;
  std::optional<String> askPassword(const String& reason) override;
  std::optional<std::uint32_t> askRecordNumber(std::uint32_t highest) override;
  void showFindDialog(FindState& state, NameList fieldNames) override;
  void refillFindDialog() override;
  bool keepGoing(const Progress& progress) override;
  bool isInputWaiting() override;
  void endProgress() override;
  void tellWhenOver() override;
  void tellWhenTyped() override;
  void returnToFindDialog() override;
  void raiseInputPanel() override;

  /// A file dialog is open.
  bool isChoosingFile() const { return isChoosingFile_; }

 private:
  HWND ownerWindow(PromptOwner owner) const;
  HWND findWindow() const { return find_ ? find_->window() : nullptr; }
  int showMessage(PromptOwner owner, const wchar_t* text, const wchar_t* caption, UINT flags);

  bool isChoosingFile_ = false;
  FindDialog* find_ = nullptr;  // the one that runs
  ProgressLine progress_;
};
