#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "base/name_list.h"
#include "base/string.h"
#include "records/find_state.h"

/// Over which window a message box lies; without one it lies over none. The main window waits in any case.
enum class PromptOwner { none, mainWindow, tabControl, findDialog };

/// For what a file is chosen.
enum class FileChoice {
  open,    ///< a database to be opened
  create,  ///< the name of a new database
  remove,  ///< a database to be deleted
};

/// What the Document asks of the user. Every call returns when the user has answered.
class UserPrompts {
 public:
  virtual ~UserPrompts() = default;

  /// As MessageBoxW, whose flags and result it has.
  virtual int showMessage(PromptOwner owner, const wchar_t* text, const wchar_t* caption, UINT flags) = 0;
  /// The full path; none when the user cancels.
  virtual std::optional<String> chooseFile(FileChoice choice) = 0;
  /// Runs the Find dialog, which posts message 1225 to the main window for each step of the search.
  virtual void showFindDialog(FindState& state, NameList fieldNames) = 0;
  /// After a step of the search, if the dialog is still open.
  virtual void refillFindDialog(const FindState& state) = 0;
  /// The user is going to type: the input panel is raised, where there is one.
  virtual void raiseInputPanel() = 0;
  /// A number from 1 to `highest`; none when the user cancels.
  virtual std::optional<std::uint32_t> askRecordNumber(std::uint32_t highest) = 0;
};
