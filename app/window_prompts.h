#pragma once

#include "app/search_progress.h"
#include "records/user_prompts.h"

/// The Document's questions as message boxes and dialogs over the program's windows.
class WindowPrompts final : public UserPrompts {
 public:
  int showMessage(PromptOwner owner, const wchar_t* text, const wchar_t* caption, UINT flags) override;
  /// While it is open the main window's title names its purpose.
  std::optional<String> chooseFile(FileChoice choice) override;
  LostFileChoice askAboutLostFile(const String& path, bool isReplaced) override;
  std::optional<std::uint32_t> askRecordNumber(std::uint32_t highest) override;
  void showFindDialog(FindState& state, NameList fieldNames) override;
  void refillFindDialog(const FindState& state) override;
  bool keepSearching(std::uint32_t tested, std::uint32_t all) override;
  void endSearching() override;
  void returnToFindDialog(const FindState& state) override;
  void raiseInputPanel() override;

  /// A file dialog is open.
  bool isChoosingFile() const { return isChoosingFile_; }

 private:
  bool isChoosingFile_ = false;
  SearchProgress progress_;
};
