#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/name_list.h"
#include "base/string.h"
#include "data/database/database.h"
#include "data/database/record_counters.h"
#include "data/handles/busy_listener.h"
#include "data/handles/import_file.h"
#include "records/availability.h"
#include "records/command_bar.h"
#include "records/find_state.h"
#include "records/found_places.h"
#include "records/pages.h"
#include "records/record_source.h"
#include "records/user_prompts.h"
#include "records/view_mode.h"

class Arranger;
class FormerStates;
class LookUps;
class OthersChanges;
class RecordHistory;

/// What a Document works with in the window. It owns the two lists of names; the rest belongs to the
/// window and outlives it.
struct DocumentPages {
  std::unique_ptr<TablesPage> tables;
  std::unique_ptr<QueriesPage> queries;
  RecordGrid& grid;
  FormPage& form;
  CommandBar& bar;
  UserPrompts& prompts;
};

/// How a command ended.
enum class CommandResult { done, failed, cancelled };

/// What a session leaves to be reopened.
enum class RestoreResult : std::uint32_t {
  nothing = 0,   ///< no database was opened
  tables = 1,    ///< the database was opened, the Tables page is to be shown
  records = 2,   ///< the table or query was reopened too, the Form page is to be shown
  noTables = 3,  ///< the database was opened and holds no tables
};

/// Where the user is in a database: the page, and the table or query in use.
struct OpenPlace {
  ViewMode mode = ViewMode::none;
  RecordSource wanted;
};

/// The controller of the program: the open database, the table or query whose records are shown, the
/// cursor over them, and which page is served. One exists, on the user-interface thread.
///
/// Showing a page makes its controls report their selection, which comes back here: what a list reports while
/// the Document itself changes pages or fills it is nobody's choice and changes nothing.
/// std::bad_alloc passes through.
class Document : private BusyListener {
  friend class DocumentPart;

 public:
  explicit Document(DocumentPages pages);
  /// Closes the database.
  ~Document() override;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  // ---- Its parts (parts/)

  /// Changes that are taken back and done again.
  RecordHistory& history() { return *history_; }
  /// Copies of databases, and the way back to them.
  FormerStates& formerStates() { return *formerStates_; }
  /// The order of the records, and which of them are shown.
  Arranger& arranger() { return *arranger_; }
  const Arranger& arranger() const { return *arranger_; }
  /// Fields that refer to records of another table.
  LookUps& lookUps() { return *lookUps_; }
  /// What other programs have changed.
  OthersChanges& othersChanges() { return *othersChanges_; }

  // ---- The database (document_database.cpp)

  /// Opens the file, lists its tables on the Tables page and chooses the first. No database is open
  /// when this is called. Not done when it can't be opened; nothing has changed then.
  Outcome openDatabase(const String& path);
  /// Stores what was changed on the form and the session, and closes the file. 0 on success, -1 when no
  /// database is open or the connection would not close.
  int closeDatabase();

  /// Looks whether the open file still stands under its name (document_gone_file.cpp), to be asked when the
  /// window comes to the front and before a file is left: each loss is told once, and the user chooses
  /// whether to go on in a copy under another name, in the file that stands there now, or to decide later.
  /// What is typed stays on the form unless he opens the other file. False when he did: what asked for this
  /// was meant for the former one.
  bool lookAfterFile();
  /// Asks for another password when the server has refused the present one since this was called last. What
  /// it was refused for has failed and been told; what the user does next connects with the new one.
  void lookAfterPassword();

  // The commands of the File, Tables and Queries menus (document_files.cpp). They tell the user themselves
  // what can't be done.

  /// The user chooses the file; newDatabaseCommand takes the place of one that exists, once the new one is
  /// made. After a failure, and after newDatabaseCommand in every case but success, no database is open; the
  /// page stays the same.
  CommandResult openDatabaseCommand();
  CommandResult newDatabaseCommand();
  /// The file that is open is refused.
  CommandResult deleteDatabaseCommand();
  /// The table, or the saved query, that is chosen on its page.
  CommandResult deleteTableCommand();
  CommandResult deleteQueryCommand();
  /// `columns` as Database::createTable takes it. The new table is selected on the Tables page.
  bool createTable(const String& name, const String& columns);
  /// The saved query that is chosen on the Queries page, to be edited. False when none is, or when it can't
  /// be read or another program has deleted it, which was told.
  bool chosenQuery(SavedQuery& query);
  /// Each shows the saved queries anew, with this one chosen.
  bool addQuery(const SavedQuery& query);
  /// What chosenQuery gave last is changed, unless another program has changed it since.
  bool changeChosenQuery(const SavedQuery& query);
  /// For the writing of a query: the field names of a SELECT as Database::listFieldNames gives them, and
  /// whether a statement opens, with the store's reason where it does not. The records that are in use are
  /// opened anew afterwards.
  void listFieldNames(const String& sql, NameList& names) { database_.listFieldNames(sql, names); }
  bool returnsRecords(const String& sql, String& reason);
  /// Whether a statement opens. What is in use stays so.
  Outcome tryQuery(const String& sql) { return database_.trySql(sql); }
  /// Stores a query and stays with what is in use. False when it can't be stored, which was told.
  bool keepQuery(const SavedQuery& query);

  const NameList& tableNames() const { return tableNames_; }
  bool isDatabaseOpen() const { return databaseOpen_; }
  const String& databasePath() const { return databasePath_; }
  /// What the server of the open database is, or why that can't be told now; empty for a file.
  String serverText();
  const String& tableName() const { return wanted_.tableName(); }
  const String& queryName() const { return wanted_.queryName(); }
  const String& sqlText() const { return wanted_.sqlText(); }
  bool openedFromQuery() const { return wanted_.isQuery(); }

  // ---- Records between the database and other files (document_exchange.cpp). What is typed on the form is
  // stored first.

  /// The user chooses a table or query, at first the one in use, and the file that its records are written
  /// into, and is told what came of it.
  void exportRecords();
  /// The row that is chosen in the grid, as Database::readRowText gives it. Nothing happens on another page.
  Outcome readChosenRow(std::wstring& text);
  /// A file to be imported; null when it can't be opened, which was told, or when what is typed can't be
  /// stored.
  std::unique_ptr<ImportFile> openImport(const String& path);
  /// Stores the records of a file that was examined, as ImportFile::run does, and shows what there is now.
  /// False when it could not be done, which was told.
  bool runImport(ImportFile& file, bool keepsGood, ImportCounts& counts);

  // ---- The session (document_session.cpp), kept among the settings.

  /// Writes which database, table or query and SQL text are in use. Closing the database does it.
  void saveSession();
  /// Reopens what was saved. Whatever is missing ends it at the step that needs it, without a message.
  /// No database is open when this is called.
  RestoreResult restoreSession();

  // ---- Choosing (document_choice.cpp). The records follow when the page is switched next.

  /// The table at this place of the Tables page becomes the current one.
  void openTableSelection(int index);
  /// The saved query at this place of the Queries page becomes the current one. Where it can't be read the
  /// one in use stays so; that is told, and shown on the page, when what the user did is over.
  void openQuerySelection(int index);

  // ---- Pages (document_modes.cpp)

  ViewMode viewMode() const { return viewMode_; }
  /// Leaves the page that is shown, opens the recordset anew if another table or query was chosen, and
  /// enters the page `mode`.
  void setViewMode(ViewMode mode);
  /// For the page of names that is served, nothing on any other page.
  void setNameStyle(NameStyle style);
  /// For the record grid while it is served, nothing otherwise.
  void showPreviousColumn();
  void showNextColumn();
  void fitColumns();

  // ---- Moves (document_moves.cpp). They act on the page that is served and always return 0. On the
  // form each stores what was changed before it goes.

  int moveFirstRecord();
  int moveLastRecord();
  int moveNextRecord();
  int movePreviousRecord();
  /// To a record whose number the user gives.
  int goToRecordNumber();
  int nextFormPage();
  int previousFormPage();

  /// The one veto against leaving the record that the form shows, to be asked before every move, switch of
  /// the page and close. What was changed there is stored. When the store refuses it the user is told why
  /// and asked whether to discard what was typed; false when not, and the form stays as it is. After true
  /// the form has nothing more to store: who stays on the page shows a record with loadRecord.
  bool canLeaveRecord();
  /// The same for who stays on the page: the form shows what the file holds then.
  bool settleTyped() { return viewMode_ == ViewMode::form ? settleRecord() : canLeaveRecord(); }
  /// Writes the record that the form shows if the user changed it there, or if it is new. Always 1; what
  /// the store refuses is told.
  int commitCurrentRecord();
  /// Reads the current record and shows it on the form, and the position. One that can't be read is told,
  /// and opened anew where the structure of the file has changed. Nothing happens when no database is open;
  /// without records only the position is written.
  void loadRecord();
  /// Whether the form shows a record that was read.
  bool isRecordShown() const { return shown_.isReadable(); }

  // ---- Typing into what can't be stored (document_records.cpp)

  /// The user begins to change a field, by a key or otherwise.
  void editBegun();
  /// After the first one in a file: tells that nothing can be stored, if that is so.
  void tellUnwritable();

  // ---- New and deleted records (document_records.cpp). Each returns 0 and tells the user itself what
  // can't be done.

  /// On the form only.
  int newRecord();
  /// On the form and in the grid.
  int deleteRecord();

  // ---- Whole values of the record that the form shows

  /// As Database::readBytes and saveBytes. What is typed or loaded and not stored does not count.
  Outcome readBytes(std::uint32_t field, Bytes& bytes) { return database_.readBytes(shown_, field, bytes); }
  Outcome saveBytes(std::uint32_t field, const String& path) {
    return database_.saveBytes(shown_, field, path);
  }
  /// The user chooses the file that bytes come from or go into; none when he cancels.
  std::optional<String> chooseBytesSource() { return pages_.prompts.chooseFile(FileChoice::bytesFrom); }
  std::optional<String> chooseBytesTarget(const String& suggestion) {
    return pages_.prompts.chooseFile(FileChoice::bytesTo, suggestion);
  }

  // ---- The search for text (document_find.cpp), on the form only. Each returns 0.

  /// Runs the Find dialog.
  int openFind();
  /// One step of the search, from the current record or behind the last match. A match is shown on the
  /// form, the cursor stands behind it.
  int findNext();
  /// The first row of the grid from `first` on, and then from the first one on, whose field begins with a
  /// text in any letter case. Takes its time where there are many, and the user can stop it. `row` is
  /// untouched where a row can't be read for another reason than that it is gone, and none when there is no
  /// such row.
  Outcome findRow(std::uint32_t first, std::uint32_t field, const String& beginning,
                  std::optional<std::uint32_t>& row);
  const FindState& findState() const { return find_; }

  // ---- The search through all tables (document_everywhere.cpp)

  /// Looks for a text in every searched field of every table, in any letter case, and tells each place as it
  /// is found. Takes its time, and the user can stop it: false then, and where no database is open.
  bool findEverywhere(const String& text, const FoundListener& found);
  /// Goes to a place on the Form page: chooseFound leaves the page that is shown and chooses the table, the
  /// caller shows the Form page, and showFound goes to the record and says if the text is no longer there.
  /// False when what is typed can't be stored.
  bool chooseFound(const FoundPlace& place);
  void showFound(const FoundPlace& place, const String& text);

  // ---- What takes its time (document_busy.cpp)

  /// A step of the search is under way, or an operation of the database, which can't be used then: no command
  /// may run now.
  bool isBusy() const { return isSearching_ || isAsked_; }
  /// What the user did is over; for the next thing the whole time is waited again.
  void busyOver();

  // ---- What the menus and toolbars show (document_bars.cpp)

  /// Every item of the menus and every button, from now on for a database that counts as `open`.
  void updateMenusForDatabase(bool open);
  /// Whether a command of the desktop menu is available.
  bool isOffered(int command) const { return isAvailable(command, PopupMenu::desktop, commandFacts()); }
  /// The same for the database as it counts now; on the Form and List pages only.
  void updateNavigationState();
  /// The same on every page.
  void updatePageState();
  void updatePositionText();
  /// The menu bar is made anew, after which every item gets its state.
  void updateCommandBar();
  /// Puts the lists and the grid back in their places.
  void layOutPages();
  /// Lays the form out as FormPage::layOut does; how many pages it has may have changed with that.
  void layOutForm(bool force);
  /// Shows the pages in the colours as they are now.
  void refreshColors();
  /// The pages' images at the present zoom.
  void loadImages() const;
  /// The user has chosen another row of the grid: currentRecord says which.
  void rowChosen();

  // ---- What the views read of the recordset. Field indexes and rows are 0-based.

  bool isRecordsetOpen() const { return recordsetOpen_; }
  std::uint32_t fieldCount() const { return database_.fieldCount(); }
  const String& fieldName(std::uint32_t field) const { return database_.fieldName(field); }
  FieldType fieldType(std::uint32_t field) const { return database_.fieldType(field); }
  /// 65535 for every field, whatever its declaration says: the most characters that an editor takes.
  std::uint32_t fieldWidth(std::uint32_t field) const { return database_.fieldWidth(field); }
  bool isFieldReadOnly(std::uint32_t field) const { return database_.isFieldReadOnly(field); }
  /// In characters.
  std::uint32_t longestFieldName() const { return database_.longestFieldName(); }
  bool isNewRecordPending() const { return database_.newRecordPending(); }
  /// A row of the grid, as Database::moveForList and readForList have it.
  bool moveToRow(std::uint32_t row) { return database_.moveForList(row); }
  /// Tells that `count` rows from this one on will be read soon, in their order.
  void expectRows(std::uint32_t row, std::uint32_t count) { database_.expectListRows(row, count); }
  Outcome readRow(std::uint32_t row, std::uint32_t field, String& text) {
    return database_.readForList(row, field, text);
  }
  /// Rows of the grid could not be read: tells so, or fills it anew where the records only had to be opened
  /// anew (document_moves.cpp). Shows a message box, so not to be called while drawing.
  void rowsUnreadable(const Outcome& failure);
  /// Makes the record currentRecord current in the recordset.
  bool moveToCurrentRecord() { return database_.moveTo(currentRecord); }

 private:
  static constexpr wchar_t kQueriesTable[] = L"QuivaneQueries";
  static constexpr wchar_t kGoneElsewhere[] = L"Another program has renamed or deleted it.";

  Outcome settlePassword(Outcome tried, const std::function<Outcome(const String& password)>& tryWith);
  Outcome openConnection(const String& path);
  /// What came of the choice: `settled` also when there was none to make, `open` when it was put off.
  enum class LostFileEnd { settled, open, otherFile };
  LostFileEnd settleLostFile();
  /// Before a change that is not of the form's record. False when it can't be stored, which was told, or
  /// was meant for a file that is not open any more.
  bool canChangeFile();
  bool goOnInCopy();
  bool openPresentFile();
  OpenPlace place() const { return {viewMode_, wanted_}; }
  /// Opens the file on that page, with the table or query that was in use if the file has it. No database is
  /// open when this is called. False when it does not open, which was told.
  bool openAt(const String& path, const OpenPlace& place);
  void forgetDatabase();
  void closeRecords();
  void forgetRecords();
  bool sqlPending() const { return !wanted_.isNone() && wanted_.generation() != openGeneration_; }
  bool formStale() const { return formGeneration_ != openGeneration_; }
  void formIsBuilt() { formGeneration_ = openGeneration_; }
  /// The recordset that was opened in the place of the former one has the records of `source`.
  void takeOverOpened(RecordSource source, bool hasOtherFields);
  bool restoreRecords(const String& table, const String& query, bool asQuery);
  /// The count of the former recordset outlasts one that did not open.
  std::uint32_t openRecordCount() const { return recordsetOpen_ ? database_.recordCount() : 0; }
  CommandFacts commandFacts() const;
  void updateCommands();
  static std::uint32_t updateRights();
  void refuse(PromptOwner owner, const wchar_t* text);
  /// Tells what failed and why.
  void tellFailure(const std::wstring& what, const String& reason,
                   PromptOwner owner = PromptOwner::mainWindow);
  Outcome findListedQuery(int index, std::uint32_t& place);
  Outcome readListedQuery(int index, SavedQuery& query);
  void tellUnreadQuery();
  void readTables();
  void readQueries();
  void reloadQueries();
  void showQueries(const String& chosen);
  void fillTables(Positioning positioning, const String& name);
  void fillQueries();
  bool confirmDeletion(const std::wstring& what);
  CommandResult openChosen(const String& path);
  class SearchStep;
  std::uint32_t sliceOfSearch() const;
  using IsWanted = bool (*)(const String& text, const String& wanted);
  void findInTable(const String& table, const String& text, const FoundListener& found);
  Outcome findRowAmong(std::uint32_t first, std::uint32_t end, std::uint32_t field, const String& wanted,
                       IsWanted isWanted, std::optional<std::uint32_t>& row);
  enum class SearchEnd { found, notFound, stopped };
  Outcome runSearch(SearchEnd& end);
  void standAt(std::uint32_t position);
  Outcome searchBothPasses(bool& found);
  Outcome searchAll(bool& found);
  void beginSearch();
  Outcome searchUpTo(std::uint32_t end, std::optional<std::uint32_t>& field);
  Outcome searchLeftOut(std::uint32_t first, std::optional<std::uint32_t>& field);
  void tellSearchEnd(bool found);
  void breakSearchOff(const Outcome& failure);
  Outcome storeShownRecord();
  bool settleRecord();
  /// Tells what the store refused and asks for it.
  bool mayDiscardTyped(const Outcome& refused);
  void discardTyped();
  void showNoRecords();
  void tellLeftOut(const NameList& fields);
  void readAndShow();
  void reopenRecords();
  void showGridAnew();
  void tellOpenedAnew();
  void addRecord();
  bool isRecordsetUpdatable() const;
  bool mayDelete();
  void tellNotDeleted(const Outcome& failure);
  void deleteOnForm();
  void deleteInGrid();
  bool goesOn(BusyWith busy) override;
  bool movesOn(const MovingState& state) override;
  bool keepsGoing(Progress progress);
  bool searchGoesOn(Progress progress);
  std::chrono::milliseconds searchLasted() const;
  void tellWhenOver();
  void showEverythingAnew(const String& table);
  void standAgainAt(std::uint32_t position);
  bool chooseExported(ExportedRecords& records);
  void tellNotExported(const Outcome& failure);
  bool mayWaitOn();
  Outcome findRowOfKey(std::uint32_t field, const String& key, std::optional<std::uint32_t>& row);
  Outcome switchMode(ViewMode mode);
  template <typename Move>
  void moveOnForm(Move move);
  void selectInGrid(std::uint32_t position);
  void leaveMode();
  Outcome openPendingRecordset();
  void chooseTable(const String& name);
  void chooseQuery(const String& name, const String& sql, const String& table = String());
  void enterMode(ViewMode mode, bool opensRecords);
  void enterForm(bool opensRecords);
  void enterList();
  void enterQueries();
  void enterTables();
  void goToFirstRecordOfForm(bool opensRecords);

  DocumentPages pages_;
  Database database_;

  String databasePath_;                           // empty when none is open
  FileState toldFileState_ = FileState::present;  // what the user knows of the file
  bool wasEdited_ = false;  // in this file; whether it can be written was looked at then
  RecordSource wanted_;     // whose records the next page shows
  NameList tableNames_;
  NameList queryNames_;
  ViewMode viewMode_ = ViewMode::none;
  bool databaseOpen_ = false;
  bool countsAsOpen_ = false;  // in the menus
  bool recordsetOpen_ = false;
  std::uint32_t openGeneration_ =
      RecordSource::kNeverChosen;  // of wanted_ when it was opened, or tried to be
  std::uint32_t formGeneration_ = RecordSource::kNeverChosen;  // of the recordset that the form was built for
  bool repositionFromList_ = false;  // the form goes to the record chosen in the grid
  bool reselectTable_ = false;  // the Tables page is filled and keeps its selection when it is entered next
  bool freshlyOpened_ = false;  // the Tables page does not show the catalogue yet
  bool talksToPages_ = false;   // what the lists report is the Document's own doing
  RecordSnapshot shown_;        // the reading that the form shows; empty when what stands there is none

  /// A query that was tapped on the Queries page and could not be read.
  struct UnreadQuery {
    int index;
    String name;
    Outcome reason;
  };
  std::optional<UnreadQuery> unread_;  // until that is told
  SavedQuery editedQuery_;             // as it was read to be edited
  RecordSnapshot chosenRow_;           // the row of the grid as it was read when it was chosen

  FindState find_;
  std::uint32_t findStartRecord_ = 0;    // currentRecord when the dialog was opened
  std::uint32_t findRecordCounter_ = 0;  // records passed in the present search
  std::uint32_t searchedRecords_ = 0;    // in the present step, for the user to see
  std::optional<Progress> searched_;     // how far the present step was told to be
  bool isSearching_ = false;
  bool searchStopped_ = false;   // by the user, in the present step
  std::uint32_t findField_ = 0;  // where the last match was, or where the search goes on

  using BusyClock = std::chrono::steady_clock;
  bool isAsked_ = false;                 // whether something is to go on
  bool isTold_ = false;                  // when what the user did is over
  std::optional<Progress> moved_;        // how far records were moved, in what the user did
  bool gaveUp_ = false;                  // other programs, in what the user did
  BusyClock::duration waited_{};         // for other programs, in what the user did
  BusyClock::time_point askedToWait_{};  // when it was asked last
  BusyClock::time_point searchBegan_{};  // the present step
  /// Until when other programs are waited for in what the user has not asked for; none while he has.
  std::optional<BusyClock::time_point> unaskedWaitEnd_;

  std::unique_ptr<RecordHistory> history_;
  std::unique_ptr<FormerStates> formerStates_;
  std::unique_ptr<Arranger> arranger_;
  std::unique_ptr<LookUps> lookUps_;
  std::unique_ptr<OthersChanges> othersChanges_;
};
