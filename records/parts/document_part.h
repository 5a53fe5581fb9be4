#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "records/document.h"

/// A part of the Document with a subject and a state of its own, which the Document owns. What is listed here
/// is all that the parts share with it besides what everybody may ask it.
class DocumentPart {
 public:
  DocumentPart(const DocumentPart&) = delete;
  DocumentPart& operator=(const DocumentPart&) = delete;

 protected:
  explicit DocumentPart(Document& document) : document_(document) {}
  ~DocumentPart() = default;

  Document& document() const { return document_; }
  Database& database() const { return document_.database_; }
  DocumentPages& pages() const { return document_.pages_; }

  // ---- What is in use

  RecordSource& wanted() const { return document_.wanted_; }
  NameList& tableNames() const { return document_.tableNames_; }
  NameList& queryNames() const { return document_.queryNames_; }
  RecordSnapshot& shown() const { return document_.shown_; }
  RecordSnapshot& chosenRow() const { return document_.chosenRow_; }
  bool sqlPending() const { return document_.sqlPending(); }
  std::uint32_t openRecordCount() const { return document_.openRecordCount(); }

  void chooseTable(const String& name) const { document_.chooseTable(name); }
  void chooseQuery(const String& name, const String& sql) const { document_.chooseQuery(name, sql); }
  /// The Tables page shows the choice when it is entered next.
  void reselectTable() const { document_.reselectTable_ = true; }
  void closeRecords() const { document_.closeRecords(); }
  OpenPlace place() const { return document_.place(); }
  bool openAt(const String& path, const OpenPlace& place) const { return document_.openAt(path, place); }
  void takeOverOpened(RecordSource source, bool hasOtherFields) const {
    document_.takeOverOpened(std::move(source), hasOtherFields);
  }
  void formIsBuilt() const { document_.formIsBuilt(); }
  /// The form goes to currentRecord when it is entered next.
  void formFollows() const { document_.repositionFromList_ = true; }

  // ---- What is typed, and the user

  Outcome storeShownRecord() const { return document_.storeShownRecord(); }
  bool settleRecord() const { return document_.settleRecord(); }
  bool mayDiscardTyped(const Outcome& refused) const { return document_.mayDiscardTyped(refused); }
  void discardTyped() const { document_.discardTyped(); }
  bool canChangeFile() const { return document_.canChangeFile(); }
  void refuse(const wchar_t* text) const { document_.refuse(PromptOwner::mainWindow, text); }
  void tellFailure(const std::wstring& what, const String& reason) const {
    document_.tellFailure(what, reason);
  }

  /// What is done as long as it lives the user has not asked for: it is given up as soon as he does anything,
  /// and where another program would have to be waited for any longer. Nothing is shown of it.
  class Unasked {
   public:
    Unasked(const DocumentPart& part, std::chrono::milliseconds mostWaiting)
        : end_(part.document_.unaskedWaitEnd_), former_(end_) {
      end_ = Document::BusyClock::now() + mostWaiting;
    }
    ~Unasked() { end_ = former_; }
    Unasked(const Unasked&) = delete;
    Unasked& operator=(const Unasked&) = delete;

   private:
    std::optional<Document::BusyClock::time_point>& end_;
    std::optional<Document::BusyClock::time_point> former_;
  };

  // ---- What the pages show

  void fillTables(Positioning positioning, const String& name) const {
    document_.fillTables(positioning, name);
  }
  void fillQueries() const { document_.fillQueries(); }
  void reloadQueries() const { document_.reloadQueries(); }
  void showEverythingAnew(const String& table) const { document_.showEverythingAnew(table); }
  void showGridAnew() const { document_.showGridAnew(); }
  void selectInGrid(std::uint32_t position) const { document_.selectInGrid(position); }
  void showNoRecords() const { document_.showNoRecords(); }
  void standAt(std::uint32_t position) const { document_.standAt(position); }
  Outcome findRowOfKey(std::uint32_t field, const String& key, std::optional<std::uint32_t>& row) const {
    return document_.findRowOfKey(field, key, row);
  }
  /// By the user, in the search that was the last one.
  bool wasSearchStopped() const { return document_.searchStopped_; }

  static constexpr const wchar_t* kQueriesTable = Document::kQueriesTable;
  static constexpr const wchar_t* kGoneElsewhere = Document::kGoneElsewhere;

 private:
  Document& document_;
};
