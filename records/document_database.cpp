// Opening and closing the database file.
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/settings/app_settings.h"
#include "base/wait_cursor.h"
#include "records/parts/arranger.h"
#include "records/parts/former_states.h"
#include "records/parts/look_ups.h"
#include "records/parts/others_changes.h"
#include "records/parts/record_history.h"

namespace {

void markDatabaseOpen(bool isOpen) {
  if (theAppSettings) theAppSettings->databaseOpen = isOpen ? 1 : 0;
}

}  // namespace

Document::Document(DocumentPages pages)
    : pages_(std::move(pages)),
      history_(std::make_unique<RecordHistory>(*this)),
      formerStates_(std::make_unique<FormerStates>(*this)),
      arranger_(std::make_unique<Arranger>(*this)),
      lookUps_(std::make_unique<LookUps>(*this)),
      othersChanges_(std::make_unique<OthersChanges>(*this)) {
  database_.setBusyListener(this);
}

Document::~Document() {
  closeDatabase();
}

/// Asks the user for the password of a server as long as it wants another one and he gives one, for which
/// `tried` is what became of trying without it or the former one.
Outcome Document::settlePassword(Outcome tried,
                                 const std::function<Outcome(const String& password)>& tryWith) {
  while (tried.cause() == Outcome::Cause::passwordWanted) {
    pages_.prompts.endProgress();
    std::optional<String> password = pages_.prompts.askPassword(tried.reason());
    if (!password) break;
    const WaitCursor wait;
    tried = tryWith(*password);
    password->wipe();
  }
  return tried;
}

void Document::lookAfterPassword() {
  const Outcome settled = settlePassword(
      database_.takeRefusal(), [this](const String& password) { return database_.givePassword(password); });
  const bool isCancelled = settled.cause() == Outcome::Cause::passwordWanted;
  if (!settled && !isCancelled) tellFailure(L"The server can't be reached.", settled.reason());
}

Outcome Document::openConnection(const String& path) {
  const WaitCursor wait;
  Outcome opened = settlePassword(database_.open(path),
                                  [&](const String& password) { return database_.open(path, password); });
  if (!opened) return opened;
  Outcome listed;
  database_.listTables(tableNames_, &listed);
  if (!listed) {
    database_.close();
    return listed;
  }
  freshlyOpened_ = true;
  leaveMode();
  pages_.form.hide();
  markDatabaseOpen(true);
  databasePath_ = path;
  toldFileState_ = FileState::present;
  othersChanges_->forget();
  wasEdited_ = false;
  repositionFromList_ = false;
  viewMode_ = ViewMode::none;
  return {};
}

Outcome Document::openDatabase(const String& path) {
  if (Outcome opened = openConnection(path); !opened) return opened;
  setViewMode(ViewMode::tables);
  if (!tableNames_.isEmpty()) openTableSelection(0);
  databaseOpen_ = true;
  updateMenusForDatabase(true);
  return {};
}

bool Document::openAt(const String& path, const OpenPlace& place) {
  if (const Outcome opened = openConnection(path); !opened) {
    updateCommandBar();
    tellFailure(std::wstring(L"Database ") + path.text() + L" could not be opened.", opened.reason());
    return false;
  }
  databaseOpen_ = true;
  reselectTable_ = true;
  wanted_ = place.wanted;
  if (wanted_.isTable() && !tableNames_.holds(wanted_.tableName())) {
    wanted_.chooseNone();
    if (!tableNames_.isEmpty()) chooseTable(tableNames_[0]);
  }
  setViewMode(place.mode);
  return true;
}

String Document::serverText() {
  const WaitCursor wait;
  String text;
  const Outcome described = database_.describeServer(text);
  return described ? text : described.reason();
}

int Document::closeDatabase() {
  if (!database_.isOpen()) return -1;
  if (viewMode_ == ViewMode::form && recordsetOpen_ && recordCount != 0) commitCurrentRecord();
  saveSession();
  closeRecords();
  wanted_.chooseNone();
  if (viewMode_ == ViewMode::list) {
    pages_.grid.clear();
    setViewMode(ViewMode::tables);
  }
  pages_.tables->deleteAllItems();
  pages_.tables->clearRememberedSelection();
  pages_.queries->deleteAllItems();
  pages_.queries->setSelectedIndex(0);
  tableNames_.clear();
  queryNames_.clear();
  markDatabaseOpen(false);
  forgetDatabase();
  const bool closed = database_.close();
  currentRecord = 0;
  recordCount = 0;
  return closed ? 0 : -1;
}

void Document::forgetDatabase() {
  databaseOpen_ = false;
  reselectTable_ = false;
  freshlyOpened_ = false;
  databasePath_.clear();
  unread_.reset();
  lookUps_->forgetWay();
}
