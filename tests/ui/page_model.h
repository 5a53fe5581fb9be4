#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/ui/model_database.h"

/// What the window has to show, step by step: a small model of the pages, to be compared with the real ones.

/// Named things that can be compared and printed.
using Facts = std::map<std::string, std::wstring>;

/// Pages by their tabs, kNone without a database.
enum ModelPage { kBefore = -1, kTables = 0, kForm = 1, kList = 2, kQueries = 3, kNone = 4 };

class PageModel {
 public:
  explicit PageModel(std::vector<ModelStatement> statements) : statements_(std::move(statements)) {}

  // ---- What the user does

  /// Null for a file that can't be opened.
  void open(ModelDatabase* database);
  void close();
  /// The database is closed and none is opened in its place; the page stays.
  void closeOnly();
  /// A tap on the tab that is selected already tells the window nothing.
  void tapTab(int page);
  void showPage(int page);
  void tapName(int index);
  void tapRow(int row);
  void arrowKey(int step);
  /// Types at the end of the second field's editor.
  void type(wchar_t character);
  void moveFirst();
  void moveLast();
  void moveNext();
  void movePrevious();
  void moveTo(std::uint32_t position);
  void newRecord();
  void deleteRecord();
  /// What stands on the form is stored before the dialog comes.
  void openFind();
  void turnFormPage(int step, bool panelUp);
  void slideColumns(int step);
  void createTable(const std::wstring& name);
  void deleteTable();
  /// A statement is tried out on the Queries page.
  void checkStatement();
  void addQuery(const std::wstring& name, const std::wstring& sql);
  void deleteQuery();
  /// The panel has moved: what page the form then shows is the form's to say.
  void panelMoved() { formPageKnown_ = false; }
  void formShows(int page) {
    formPage_ = page;
    formPageKnown_ = true;
  }

  // ---- What there has to be

  Facts facts(bool panelUp) const;
  /// Whether the second field's editor can be typed into.
  bool canType() const;
  bool canChangeRecords() const;
  int page() const { return page_; }
  bool isOpen() const { return database_ != nullptr; }
  bool isRecordsetOpen() const { return recordsetOpen_; }
  int nameCount() const;
  int selectedName() const;
  int recordCount() const { return static_cast<int>(recordset_.size()); }
  int formPageCount(bool panelUp) const;
  int formPage() const { return formPage_; }
  bool isFormPageKnown() const { return formPageKnown_; }
  int fieldCount() const { return static_cast<int>(fields_.size()); }
  bool isNewPending() const { return newPending_; }
  std::wstring typed() const { return typed_; }
  std::wstring queryName() const { return queryName_; }
  std::wstring tableName() const { return tableName_; }

 private:
  bool enabled(int command) const;
  bool hasRecords() const { return recordsetOpen_ && !recordset_.empty(); }
  std::uint32_t count() const { return static_cast<std::uint32_t>(recordset_.size()); }
  void enterMode(int mode);
  void setMode(int mode);
  void leaveMode();
  void commit();
  void openRecords();
  void dropRecords();
  void wantTable(const std::wstring& name);
  void wantQuery(int index);
  const ModelStatement* statement(const std::wstring& sql) const;
  void barFacts(Facts& facts) const;

  std::vector<ModelStatement> statements_;
  ModelDatabase* database_ = nullptr;
  int page_ = kBefore;
  int tab_ = 0;
  int mode_ = kNone;
  std::vector<std::wstring> tableItems_;
  std::vector<std::wstring> queryItems_;
  int tableSelected_ = -1;
  int querySelected_ = 0;
  bool tableItemsStale_ = false;
  bool shown_[4] = {};

  std::wstring tableName_;
  std::wstring queryName_;
  std::wstring sql_;
  bool pending_ = false;

  bool recordsetOpen_ = false;
  bool readOnly_ = false;
  ModelTable* base_ = nullptr;
  std::vector<std::wstring> fields_;
  ModelRecords recordset_;
  std::uint32_t current_ = 0;
  bool newPending_ = false;
  std::wstring typed_;
  bool isTyped_ = false;

  bool formBuilt_ = false;
  bool hasEditors_ = false;
  bool formPageKnown_ = true;
  int formPage_ = 0;
  bool opensNow_ = false;  ///< the page that is entered is the first to show these records
  bool reposition_ = false;
  int firstSliding_ = 1;
};
