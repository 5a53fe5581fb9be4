// The open file was deleted, or another one has taken its place: what the user wants to do about it.
#include <optional>
#include <string>

#include "records/document.h"

bool Document::lookAfterFile() {
  const FileState state = database_.fileState();
  const bool isNews = state != toldFileState_;
  toldFileState_ = state;
  return state == FileState::present || !isNews || settleLostFile() != LostFileEnd::otherFile;
}

bool Document::canChangeFile() {
  return settleLostFile() == LostFileEnd::settled;
}

Document::LostFileEnd Document::settleLostFile() {
  for (;;) {
    toldFileState_ = database_.fileState();
    if (toldFileState_ == FileState::present) return LostFileEnd::settled;
    const bool isReplaced = toldFileState_ == FileState::replaced;
    switch (pages_.prompts.askAboutLostFile(databasePath_, isReplaced)) {
      case LostFileChoice::saveCopy:
        if (goOnInCopy()) return LostFileEnd::settled;
        break;
      case LostFileChoice::openPresent:
        if (openPresentFile()) return LostFileEnd::otherFile;
        break;
      case LostFileChoice::later:
        return LostFileEnd::open;
    }
  }
}

/// The editors keep what was typed: the copy holds the records that they show.
bool Document::goOnInCopy() {
  const std::optional<String> path = pages_.prompts.chooseFile(FileChoice::copy);
  if (!path) return false;
  if (const Outcome saved = database_.saveCopy(*path); !saved) {
    tellFailure(std::wstring(L"What is open could not be saved as ") + path->text() + L".", saved.reason());
    return false;
  }
  // The pages of names show none; the next switch opens them.
  const bool keepsRecords = showsRecords(viewMode_) && recordsetOpen_ && !sqlPending();
  if (!keepsRecords) closeRecords();
  if (const Outcome gone = database_.goOnIn(*path, keepsRecords); !gone) {
    tellFailure(
        std::wstring(L"What is open was saved as ") + path->text() + L", but can't be gone on with there.",
        gone.reason());
    return false;
  }
  databasePath_ = *path;
  toldFileState_ = FileState::present;
  wasEdited_ = false;
  if (viewMode_ == ViewMode::list && recordsetOpen_) pages_.grid.fill();
  if (showsRecords(viewMode_)) {
    updatePositionText();
    updateNavigationState();
  }
  return true;
}

/// On the page that is shown, with the table or query in use if that file has it. What was typed and not
/// stored goes. False when the file does not open; everything is as before then.
bool Document::openPresentFile() {
  const String path = databasePath_;
  if (const Outcome opens = database_.tryOpening(path); !opens) {
    tellFailure(std::wstring(L"Database ") + path.text() + L" could not be opened.", opens.reason());
    return false;
  }
  const OpenPlace before = place();
  closeRecords();
  closeDatabase();
  // It may have gone since.
  openAt(path, before);
  return true;
}
