#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "base/name_list.h"
#include "base/string.h"
#include "records/find_state.h"

/// Over which window a message box lies; without one it lies over none. The main window waits in any case.
enum class PromptOwner { none, mainWindow, tabControl, findDialog };

/// What a message is, which decides how it looks.
enum class Notice {
  refusal,    ///< a warning: something is not done
  remark,     ///< of what the user can see himself
  searchEnd,  ///< a warning that stays above every other window
};

/// What the user is asked, with Yes and No for an answer.
enum class Question {
  dropObject,    ///< whether a file, a table or a query is to be deleted
  deleteRecord,  ///< whether the record is to be deleted
  discard,       ///< whether what was typed, or the present state, is to be lost; No is what Enter answers
};

/// For what a file is chosen.
enum class FileChoice {
  open,        ///< a database to be opened
  create,      ///< the name of a new database
  remove,      ///< a database to be deleted
  copy,        ///< the name under which the open database is saved
  exportTo,    ///< the file that records are written into
  importFrom,  ///< a file whose records are stored
  rejects,     ///< the file that the list of records is written into which an import left out
  bytesTo,     ///< the file that the bytes of a field are written into
  bytesFrom,   ///< the file whose bytes become those of a field
};

/// What is to become of an open database whose file has lost its name.
enum class LostFileChoice {
  saveCopy,     ///< it is saved under another name and gone on with there
  openPresent,  ///< the file that has taken its place is opened instead
  later,
};

inline constexpr wchar_t kPromptCaption[] = L"Quivane";

/// What takes its time.
struct Progress {
  enum class What {
    searching,        ///< a step of the search, which has looked at `tested` of `all` records
    searchingTables,  ///< the search of all tables, `tested` of `all` of which are done
    working,          ///< a statement
    waiting,          ///< another program holds the file
    examining,        ///< a file that is looked through, `tested` per cent of it
    importing,        ///< a file whose records are stored, `tested` per cent of it
    exporting,        ///< `tested` records were written out
  };
  What what;
  std::uint32_t tested = 0;
  std::uint32_t all = 0;
  std::chrono::milliseconds lasted{};  ///< since it began, where that is known; 0: since it was told of first
};

/// What the Document asks of the user. Every call returns when the user has answered.
class UserPrompts {
 public:
  virtual ~UserPrompts() = default;

  virtual void tell(PromptOwner owner, Notice notice, const wchar_t* text,
                    const wchar_t* caption = kPromptCaption) = 0;
  /// True for Yes.
  virtual bool ask(PromptOwner owner, Question question, const wchar_t* text,
                   const wchar_t* caption = kPromptCaption) = 0;
  /// The full path; none when the user cancels. A file that exists is given for FileChoice::create,
  /// exportTo, rejects and bytesTo only when the user wants it replaced. `suggestion` is the name that stands
  /// there at first.
  virtual std::optional<String> chooseFile(FileChoice choice, const String& suggestion = String()) = 0;
  /// Which of these is to be written out, by its place, the first being what is in use; none when the user
  /// cancels.
  virtual std::optional<std::uint32_t> chooseSource(const NameList& sources) = 0;
  /// The file at `path` was deleted or renamed while it was open, or with `isReplaced` another one stands
  /// there now, which alone can be opened.
  virtual LostFileChoice askAboutLostFile(const String& path, bool isReplaced) = 0;
  /// Runs the Find dialog, which posts message 1225 to the main window for each step of the search.
  virtual void showFindDialog(FindState& state, NameList fieldNames) = 0;
  /// After a step of the search, if the dialog is still open.
  virtual void refillFindDialog() = 0;
  /// Called again and again while something takes its time. From half a second on, or one second when it
  /// waits, it shows what, and keeps the windows painted; nothing else is done meanwhile. False when the user
  /// wants it to end.
  virtual bool keepGoing(const Progress& progress) = 0;
  /// Whether a key or button of the user's waits to be taken.
  virtual bool isInputWaiting() = 0;
  /// It is over: nothing of it is shown any more.
  virtual void endProgress() = 0;
  /// Has Document::busyOver() called when what the user did is over: as soon as the program listens for what
  /// he does next.
  virtual void tellWhenOver() = 0;
  /// Has Document::tellUnwritable() called when the key that is being taken was taken.
  virtual void tellWhenTyped() = 0;
  /// Gives the keyboard back to the dialog after a message, if it is still open.
  virtual void returnToFindDialog() = 0;
  /// The user is going to type: the input panel is raised, where there is one.
  virtual void raiseInputPanel() = 0;
  /// A server's password; `reason` says why it is asked for. None when the user cancels.
  virtual std::optional<String> askPassword(const String& reason) = 0;
  /// A number from 1 to `highest`; none when the user cancels.
  virtual std::optional<std::uint32_t> askRecordNumber(std::uint32_t highest) = 0;
};
