#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "data/handles/file_state.h"
#include "records/availability.h"
#include "records/command_bar.h"
#include "records/find_state.h"
#include "records/user_prompts.h"

/// Bars without windows: what their commands follow, and the position text.
struct FakeBar final : CommandBar {
  void showCommands(const CommandFacts& shown) override { facts = shown; }
  /// The items of a new menu bar are in their first state.
  void refreshMenuBar() override {
    facts = {};
    isOutdated = false;
  }
  void setPositionText(const wchar_t* text) override { position = text; }
  void setPositionTip(const wchar_t* text) override { positionTip = text; }

  bool inMenu(PopupMenu menu, int command) const { return isAvailable(command, menu, facts); }
  bool onToolbar(int command) const { return isAvailable(command, PopupMenu::none, facts); }

  CommandFacts facts;
  bool isOutdated = false;  ///< set by a test: until the menu bar is made again
  std::wstring position;
  std::wstring positionTip;
};

/// A user who answers as the test says, and what he was told and asked.
struct FakePrompts final : UserPrompts {
  void tell(PromptOwner owner, Notice notice, const wchar_t* text, const wchar_t* caption) override {
    messages.push_back({owner, text, caption, notice});
  }
  bool ask(PromptOwner owner, Question question, const wchar_t* text, const wchar_t* caption) override {
    messages.push_back({owner, text, caption, question});
    return agrees;
  }
  std::optional<String> chooseFile(FileChoice choice, const String& suggestion) override {
    filesAskedFor.push_back(choice);
    suggestedFile = suggestion.text();
    return file;
  }
  std::optional<std::uint32_t> chooseSource(const NameList& sources) override {
    offered.clear();
    for (std::uint32_t i = 0; i < sources.size(); ++i) offered.emplace_back(sources[i].text());
    return source;
  }
  LostFileChoice askAboutLostFile(const String& path, bool isReplaced) override {
    lostFiles.push_back(isReplaced ? FileState::replaced : FileState::gone);
    lostFile = path.text();
    if (lostFileChoices.empty()) return LostFileChoice::later;
    const LostFileChoice choice = lostFileChoices.front();
    lostFileChoices.pop_front();
    return choice;
  }
  std::optional<String> askPassword(const String& reason) override {
    passwordReasons.emplace_back(reason.text());
    if (passwords.empty()) return std::nullopt;
    String given(passwords.front().c_str());
    passwords.pop_front();
    return given;
  }
  std::optional<std::uint32_t> askRecordNumber(std::uint32_t highest) override {
    highestNumber = highest;
    return number;
  }
  void showFindDialog(FindState& state, NameList fieldNames) override {
    findFields.emplace();
    for (std::uint32_t i = 0; i < fieldNames.size(); ++i) findFields->emplace_back(fieldNames[i].text());
    state.newSearch = true;
    setFind(state);
  }
  void refillFindDialog() override { isFindDialogOutdated = false; }
  bool keepGoing(const Progress& progress) override {
    isProgressShown = true;
    lasted = progress.lasted;
    if (progress.what == Progress::What::searching) return goesOnSearching(progress.tested, progress.all);
    return goesOnBusy(progress.what);
  }
  bool isInputWaiting() override { return isTyping; }
  void endProgress() override { isProgressShown = false; }
  void tellWhenOver() override { waitsForTheEnd = true; }
  void tellWhenTyped() override { ++typedCount; }
  void returnToFindDialog() override {}
  void raiseInputPanel() override { isPanelUp = true; }

  std::vector<std::wstring> takeTexts() {
    std::vector<std::wstring> texts;
    for (const Message& message : std::exchange(messages, {})) texts.push_back(message.text);
    return texts;
  }

  struct Message {
    PromptOwner owner;
    std::wstring text;
    std::wstring caption;
    std::variant<Notice, Question> kind;
    bool operator==(const Message&) const = default;
  };

  int typedCount = 0;
  std::chrono::milliseconds lasted{};  // as the user was told last

  // What he answers
  bool isTyping = false;                    ///< a key of his waits to be taken
  bool agrees = false;                      ///< to what he is asked
  std::optional<String> file;               ///< which he names
  std::optional<std::uint32_t> number;      ///< the record's that he wants
  std::optional<std::uint32_t> source = 0;  ///< which of what he is offered he writes out
  std::deque<std::wstring> passwords;       ///< one for each question, none behind the last
  std::vector<std::wstring> passwordReasons;
  std::deque<LostFileChoice> lostFileChoices;  ///< one for each question, later behind the last
  std::function<void(FindState&)> setFind = [](FindState&) {};  ///< what he enters for a search
  std::function<bool(std::uint32_t, std::uint32_t)> goesOnSearching = [](std::uint32_t, std::uint32_t) {
    return true;
  };
  std::function<bool(Progress::What)> goesOnBusy = [](Progress::What) { return true; };

  // What he has seen
  std::vector<Message> messages;
  std::vector<FileChoice> filesAskedFor;
  std::wstring suggestedFile;                           ///< the last time
  std::vector<std::wstring> offered;                    ///< to be written out, the last time
  std::vector<FileState> lostFiles;                     ///< what he was asked about, and
  std::wstring lostFile;                                ///< which file it was the last time
  std::optional<std::uint32_t> highestNumber;           ///< of those he was asked to choose from
  std::optional<std::vector<std::wstring>> findFields;  ///< those that the Find dialog has offered
  bool isFindDialogOutdated = false;                    ///< set by a test: until the dialog is filled again
  bool isPanelUp = false;
  bool isProgressShown = false;
  bool waitsForTheEnd = false;  ///< of what he did, which the Document wants to be told; a test takes it back
};
