#pragma once

#include <windows.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/database/database.h"
#include "data/handles/connection_handle.h"
#include "gtest/gtest.h"
#include "tests/support/paths.h"

/// Everything here goes through the project's own data-access components, adoce31.dll in the folder
/// "bin"; they are registered for the running user before the first test.

/// Makes an empty database file and runs statements on it, through a connection of its own.
void makeDatabase(const std::wstring& path, std::initializer_list<const wchar_t*> statements);

/// Runs statements on the file through a connection of its own.
void runOn(const std::wstring& path, std::initializer_list<const wchar_t*> statements);

std::vector<std::wstring> namesOf(const NameList& names);

/// A Database, and an empty folder for its files.
class DataTest : public testing::Test {
 protected:
  DataTest();

  std::wstring pathOf(std::string_view name) const { return folder_.file(name).wstring(); }

  /// Makes "test.cdb" with the statements and opens it.
  void openWith(std::initializer_list<const wchar_t*> statements);
  /// The same with a table t of these columns and one record for each row of values, opened as the
  /// current recordset and standing on its first record.
  void openTable(const std::wstring& columns, std::initializer_list<const wchar_t*> rows);

  /// What another connection finds in "test.cdb": the first field of the first record that the
  /// statement yields, as text, or "(null)".
  std::wstring stored(const std::wstring& select);

  testsupport::TempFolder folder_;
  std::wstring path_ = pathOf("test.cdb");

 private:
  // It outlives the Database: closing it while another has the file open takes more than a second.
  ConnectionHandle reader_;
  bool isReaderOpen_ = false;

 protected:
  Database database_;
};

/// An editor that holds what a test puts into it.
class FakeEditor final : public FieldValueSource {
 public:
  static FakeEditor withText(const wchar_t* text) {
    FakeEditor editor;
    editor.text_ = text;
    return editor;
  }
  static FakeEditor withCheck(bool checked) {
    FakeEditor editor;
    editor.checked_ = checked;
    return editor;
  }
  static FakeEditor withDate(const wchar_t* text, std::optional<double> date) {
    FakeEditor editor;
    editor.text_ = text;
    editor.date_ = date;
    return editor;
  }

  /// It holds what it was given to show.
  FakeEditor unedited() const {
    FakeEditor editor = *this;
    editor.edited_ = false;
    return editor;
  }

  bool isEdited() const override { return edited_; }
  String text() const override { return text_; }
  bool isChecked() const override { return checked_; }
  std::optional<double> date() const override { return date_; }

 private:
  String text_;
  bool edited_ = true;
  bool checked_ = false;
  std::optional<double> date_;
};
