#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/ui/program/states/model_database.h"

/// What the window has to show, step by step: a small model of the pages, to be compared with the real ones.

/// Named things that can be compared and printed.
using Facts = std::map<std::string, std::wstring>;

/// Pages by their tabs, kNone without a database.
enum ModelPage { kBefore = -1, kTables = 0, kForm = 1, kList = 2, kQueries = 3, kNone = 4 };

class PageModel {
 public:
  explicit PageModel(std::vector<ModelStatement> statements) : statements_(std::move(statements)) {}

  // ---- What the user does (page_model.cpp)

  /// Whether what asks for the writing of the form's record may go on, which is written then: not with a
  /// record that the store refuses, unless the user discards it.
  bool leaveRecord();
  /// From here on the user answers that what was typed is to be discarded, or not.
  void setDiscards(bool discards) { discards_ = discards; }

  /// In place of the one that is open, whose record was left.
  void open(ModelDatabase* database);
  void close();
  /// The database is closed and none is opened in its place; the page stays.
  void closeOnly();
  /// A tap on the tab that is selected already tells the window nothing.
  void tapTab(int page);
  void showPage(int page);
  void tapName(int index);
  void createTable(const std::wstring& name);
  void deleteTable();
  /// A statement is tried out on the Queries page.
  void checkStatement();
  void addQuery(const std::wstring& name, const std::wstring& sql);
  void deleteQuery();

  // ---- With records (page_model_records.cpp)

  void tapRow(int row);
  void arrowKey(int step);
  /// Types at the end of the second field's editor.
  void type(wchar_t character);
  void moveFirst();
  void moveLast();
  void moveNext();
  void movePrevious();
  void newRecord();
  void deleteRecord();
  /// What stands on the form is stored before the dialog comes, which has the panel up as long as it is open.
  void openFind();
  /// One step in all fields from there, and the end of the dialog.
  void find(const std::wstring& text);
  void openNumber();
  void confirmNumber(std::uint32_t number);
  void turnFormPage(int step);
  void slideColumns(int step);
  void movePanel(bool up);
  /// A dialog has the panel up, or down, as long as it is open.
  void holdPanel(bool up);

  // ---- What there has to be (page_model_facts.cpp)

  Facts facts() const;
  /// Whether the second field's editor can be typed into.
  bool canType() const;
  bool canChangeRecords() const;
  /// A new record that the store does not take stands on the form.
  bool isRefused() const;
  int page() const { return page_; }
  bool isOpen() const { return database_ != nullptr; }
  bool isRecordsetOpen() const { return recordsetOpen_; }
  int nameCount() const;
  int selectedName() const;
  int recordCount() const { return static_cast<int>(recordset_.size()); }
  bool isPanelUp() const { return panelUp_; }

 private:
  bool enabled(int command) const;
  void barFacts(Facts& facts) const;
  void formFacts(Facts& facts) const;
  void gridFacts(Facts& facts) const;
  bool hasRecords() const { return recordsetOpen_ && !recordset_.empty(); }
  std::uint32_t count() const { return static_cast<std::uint32_t>(recordset_.size()); }
  /// Where the cursor stands: at the record that is shown, or behind it after a match.
  std::uint32_t cursor() const { return current_ + (isBehind_ ? 1 : 0); }
  int fieldCount() const { return static_cast<int>(fields_.size()); }
  int formPageCount() const;

  void enterMode(int mode);
  void setMode(int mode);
  void leaveMode();
  void openRecords();
  void dropRecords();
  void wantTable(const std::wstring& name);
  void wantQuery(int index);
  const ModelStatement* statement(const std::wstring& sql) const;
  void commit();
  void discard();
  void show(std::uint32_t position);
  std::uint32_t searched(const std::wstring& text) const;

  int fieldsAbovePanel() const { return panelUp_ ? 6 : 9; }
  void buildForm();
  void showFormPage(bool isShown);
  void layOutForm();

  std::vector<ModelStatement> statements_;
  ModelDatabase* database_ = nullptr;
  bool discards_ = false;
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
  bool isBehind_ = false;
  bool newPending_ = false;
  std::wstring typed_;
  bool isTyped_ = false;
  bool opensNow_ = false;  ///< the page that is entered is the first to show these records
  bool reposition_ = false;
  int firstSliding_ = 1;

  bool panelUp_ = false;
  bool formBuilt_ = false;
  int fieldsPerPage_ = 9;
  int formPage_ = 0;
  std::vector<bool> editorShown_;  ///< one for each editor that there is
};
