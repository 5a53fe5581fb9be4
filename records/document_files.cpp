// The commands for whole databases, tables and saved queries.
#include <algorithm>
#include <cwchar>
#include <optional>
#include <string>

#include "data/handles/file_identity.h"
#include "records/parts/former_states.h"
#include "records/raised.h"

namespace {

std::wstring notRead(const String& name) {
  return std::wstring(L"Query '") + name.text() + L"' could not be read.";
}

std::wstring notStored(const SavedQuery& query) {
  return std::wstring(L"Query '") + query.name.text() + L"' could not be stored.";
}

}  // namespace

void Document::tellFailure(const std::wstring& what, const String& reason, PromptOwner owner) {
  const std::wstring text = what + L"\n" + reason.text();
  refuse(owner, text.c_str());
}

bool Document::confirmDeletion(const std::wstring& what) {
  const std::wstring text = L"Are you sure you want to delete " + what + L" ?";
  return pages_.prompts.ask(PromptOwner::tabControl, Question::dropObject, text.c_str());
}

// ---- Databases

CommandResult Document::openDatabaseCommand() {
  const std::optional<String> path = pages_.prompts.chooseFile(FileChoice::open);
  if (!path) return CommandResult::cancelled;
  if (!canLeaveRecord()) return CommandResult::cancelled;
  closeDatabase();
  return openChosen(*path);
}

CommandResult Document::newDatabaseCommand() {
  if (!canLeaveRecord()) return CommandResult::cancelled;
  closeDatabase();
  const std::optional<String> path = pages_.prompts.chooseFile(FileChoice::create);
  if (!path) return CommandResult::cancelled;
  if (database_.isThere(*path) && !formerStates_->mayDelete(database_.keepDatabase(*path), path->text())) {
    return CommandResult::cancelled;
  }
  if (const Outcome created = database_.replaceDatabase(*path); !created) {
    tellFailure(std::wstring(L"Database ") + path->text() + L" could not be created.", created.reason());
    return CommandResult::failed;
  }
  return openChosen(*path);
}

CommandResult Document::openChosen(const String& path) {
  const Outcome opened = openDatabase(path);
  if (opened) return CommandResult::done;
  tellFailure(std::wstring(L"Database ") + path.text() + L" could not be opened.", opened.reason());
  return CommandResult::failed;
}

CommandResult Document::deleteDatabaseCommand() {
  const std::optional<String> path = pages_.prompts.chooseFile(FileChoice::remove);
  if (!path) return CommandResult::cancelled;
  if (database_.isOpen() && isSameFile(*path, databasePath_)) {
    const std::wstring text =
        std::wstring(L"Database ") + path->text() + L" cannot be deleted\nas it is currently open!";
    pages_.prompts.tell(PromptOwner::none, Notice::remark, text.c_str());
    return CommandResult::failed;
  }
  if (!confirmDeletion(std::wstring(L"database file ") + path->text())) return CommandResult::cancelled;
  if (!formerStates_->mayDelete(database_.keepDatabase(*path), path->text())) return CommandResult::cancelled;
  const Outcome dropped = database_.dropDatabase(*path);
  if (dropped) return CommandResult::done;
  tellFailure(std::wstring(L"Database ") + path->text() + L" could not be deleted.", dropped.reason());
  return CommandResult::failed;
}

// ---- Tables

CommandResult Document::deleteTableCommand() {
  if (!database_.isOpen() || viewMode_ != ViewMode::tables) return CommandResult::cancelled;
  // While a query is in use the page still shows which table was chosen last.
  const String name =
      wanted_.isTable() ? wanted_.tableName() : pages_.tables->itemText(pages_.tables->selectedIndex());
  if (name.isEmpty()) return CommandResult::failed;
  if (!confirmDeletion(std::wstring(L"table '") + name.text() + L"'")) return CommandResult::cancelled;
  if (!canChangeFile()) return CommandResult::cancelled;
  closeRecords();
  if (!formerStates_->mayDelete(database_.keepBeforeDeletion(),
                                std::wstring(L"table '") + name.text() + L"'")) {
    return CommandResult::cancelled;
  }
  if (const Outcome dropped = database_.dropTable(name); !dropped) {
    tellFailure(std::wstring(L"Table '") + name.text() + L"' could not be deleted.", dropped.reason());
    return CommandResult::failed;
  }
  wanted_.chooseNone();
  readTables();
  fillTables(Positioning::previous, String());
  openTableSelection(pages_.tables->selectedIndex());
  updateCommandBar();
  return CommandResult::done;
}

bool Document::createTable(const String& name, const String& columns) {
  if (!canChangeFile()) return false;
  if (const Outcome created = database_.createTable(name, columns); !created) {
    tellFailure(std::wstring(L"Table '") + name.text() + L"' could not be created.", created.reason());
    return false;
  }
  readTables();
  fillTables(Positioning::byName, name);
  openTableSelection(pages_.tables->selectedIndex());
  updateCommandBar();
  return true;
}

// ---- Saved queries

CommandResult Document::deleteQueryCommand() {
  if (!database_.isOpen() || viewMode_ != ViewMode::queries) return CommandResult::cancelled;
  const int index = pages_.queries->selectedIndex();
  const String name = pages_.queries->itemText(index);
  if (name.isEmpty()) return CommandResult::failed;
  if (!confirmDeletion(std::wstring(L"query '") + name.text() + L"'")) return CommandResult::cancelled;
  if (!canChangeFile()) return CommandResult::cancelled;
  const std::wstring failure = std::wstring(L"Query '") + name.text() + L"' could not be deleted.";
  std::uint32_t place = 0;
  if (const Outcome found = findListedQuery(index, place); !found) {
    tellFailure(failure, found.reason());
    reloadQueries();
    return CommandResult::failed;
  }
  Outcome deleted;
  database_.deleteQuery(place, &deleted, &name);
  if (!deleted) {
    tellFailure(failure, deleted.reason());
    return CommandResult::failed;
  }
  reloadQueries();
  return CommandResult::done;
}

// The store addresses a query by its place, which another program may have given to another one meanwhile.
Outcome Document::findListedQuery(int index, std::uint32_t& place) {
  if (index < 0 || static_cast<std::uint32_t>(index) >= queryNames_.size()) {
    return Outcome::failure(kGoneElsewhere);
  }
  const auto listed = static_cast<std::uint32_t>(index);
  const String& name = queryNames_[listed];
  NameList present;
  Outcome read;
  database_.listQueries(present, &read);
  if (!read) return read;
  const auto isHere = [&](std::uint32_t i) { return std::wcscmp(present[i].text(), name.text()) == 0; };
  place = listed;
  if (listed < present.size() && isHere(listed)) return {};
  std::uint32_t count = 0;
  for (std::uint32_t i = 0; i < present.size(); ++i) {
    if (!isHere(i)) continue;
    place = i;
    ++count;
  }
  return count == 1 ? Outcome() : Outcome::failure(kGoneElsewhere);
}

bool Document::chosenQuery(SavedQuery& query) {
  if (!database_.isOpen() || viewMode_ != ViewMode::queries) return false;
  const int index = pages_.queries->selectedIndex();
  if (index < 0 || queryNames_.isEmpty()) return false;
  if (const Outcome read = readListedQuery(index, query); !read) {
    if (read.cause() != Outcome::Cause::stopped) {
      tellFailure(notRead(pages_.queries->itemText(index)), read.reason());
    }
    return false;
  }
  editedQuery_ = query;
  return true;
}

Outcome Document::readListedQuery(int index, SavedQuery& query) {
  std::uint32_t place = 0;
  if (Outcome found = findListedQuery(index, place); !found) return found;
  SavedQuery present;
  Outcome read;
  if (!database_.getQuery(place, present, &read)) return read;
  // It may have got another place since.
  if (std::wcscmp(present.name.text(), queryNames_[static_cast<std::uint32_t>(index)].text()) != 0)
    return Outcome::failure(kGoneElsewhere);
  query = std::move(present);
  return {};
}

void Document::tellUnreadQuery() {
  if (!unread_) return;
  const UnreadQuery unread = std::move(*unread_);
  unread_.reset();
  if (viewMode_ == ViewMode::queries) {
    const Raised talks(talksToPages_);
    pages_.queries->select(wanted_.isQuery() ? pages_.queries->selectedIndex() : -1);
  }
  updateCommandBar();
  if (unread.reason.cause() != Outcome::Cause::stopped)
    tellFailure(notRead(unread.name), unread.reason.reason());
}

bool Document::keepQuery(const SavedQuery& query) {
  if (!canChangeFile()) return false;
  Outcome added;
  database_.addQuery(query, &added);
  if (!added) {
    tellFailure(notStored(query), added.reason());
    return false;
  }
  // The first query makes the table that they are kept in.
  readTables();
  reselectTable_ = true;
  return true;
}

bool Document::addQuery(const SavedQuery& query) {
  if (!keepQuery(query)) return false;
  showQueries(query.name);
  return true;
}

bool Document::changeChosenQuery(const SavedQuery& query) {
  if (!canChangeFile()) return false;
  std::uint32_t place = 0;
  if (const Outcome found = findListedQuery(pages_.queries->selectedIndex(), place); !found) {
    tellFailure(notStored(query), found.reason());
    return false;
  }
  Outcome changed;
  database_.updateQuery(place, query, &changed, &editedQuery_);
  if (!changed) {
    tellFailure(notStored(query), changed.reason());
    return false;
  }
  showQueries(query.name);
  return true;
}

void Document::showQueries(const String& chosen) {
  readQueries();
  for (std::uint32_t i = 0; i < queryNames_.size(); ++i) {
    if (std::wcscmp(queryNames_[i].text(), chosen.text()) != 0) continue;
    pages_.queries->setSelectedIndex(static_cast<int>(i));
    break;
  }
  fillQueries();
  openQuerySelection(pages_.queries->selectedIndex());
  updateCommandBar();
}

bool Document::returnsRecords(const String& sql, String& reason) {
  const Outcome returns = database_.checkSql(sql);
  if (!returns) reason = returns.reason();
  // The statement that was tried has taken the place of the records in use.
  forgetRecords();
  return static_cast<bool>(returns);
}

/// The list stays as it is where the catalogue can't be read.
void Document::readTables() {
  Outcome read;
  database_.listTables(tableNames_, &read);
  if (!read) tellFailure(L"The tables could not be listed.", read.reason());
}

/// The list stays as it is where the queries can't be read, unless their table has gone.
void Document::readQueries() {
  NameList tables;
  Outcome read;
  database_.listTables(tables, &read);
  if (read) {
    const bool areThere = tables.holds(kQueriesTable);
    if (!areThere) queryNames_.clear();
    database_.listQueries(queryNames_, &read);
    // Where nothing was kept yet there is nothing to be read.
    if (!areThere) read = {};
  }
  if (!read) tellFailure(L"The queries could not be listed.", read.reason());
}

void Document::reloadQueries() {
  readQueries();
  const int last = static_cast<int>(queryNames_.size()) - 1;
  if (pages_.queries->selectedIndex() > last) pages_.queries->setSelectedIndex(std::max(last, 0));
  fillQueries();
  if (!queryNames_.isEmpty()) {
    openQuerySelection(pages_.queries->selectedIndex());
  } else if (!wanted_.isTable()) {
    // The last query is gone, and its records with it.
    openTableSelection(std::max(pages_.tables->selectedIndex(), 0));
  }
  updateCommandBar();
}
