#pragma once

#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/database/database.h"
#include "data/handles/import_file.h"
#include "dialogs/exchange/import_dialog.h"
#include "dialogs/exchange/import_ids.h"
#include "tests/support/paths.h"
#include "tests/ui/support/dialog_fixture.h"
#include "tests/ui/support/test_database.h"
#include "views/shared/check_box.h"
#include "views/shared/list_view.h"

/// The dialogs of an import over a database with the tables "People" (Name, Age), "Keyed" (Id, Name), of
/// which Id is the primary key, and "Words" (Word).
class ExchangeDialogTest : public DialogTest {
 protected:
  void SetUp() override {
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    makeDatabase(path_, {L"CREATE TABLE People (Name VarChar(20), Age Integer)",
                         L"CREATE TABLE Keyed (Id Integer PRIMARY KEY, Name Text)",
                         L"CREATE TABLE Words (Word Text)"});
    DialogTest::SetUp();
    database_.emplace();
    ASSERT_TRUE(database_->open(path_.c_str()));
    database_->listTables(tables_);
  }
  void TearDown() override {
    import_.reset();
    database_.reset();
    tables_.clear();
    DialogTest::TearDown();
  }

  std::filesystem::path write(const std::string& content, std::string_view name = "guests.csv") {
    testsupport::writeFile(folder_.file(name), content);
    return folder_.file(name);
  }
  std::filesystem::path file(std::string_view name) const { return folder_.file(name); }
  Database& database() { return *database_; }
  const NameList& tables() const { return tables_; }

  /// A file with this content, opened to be imported.
  ImportFile& open(const std::string& content, std::string_view name = "guests.csv") {
    import_.reset();
    EXPECT_TRUE(database_->openImport(write(content, name).c_str(), import_));
    return *import_;
  }

  // ---- What a dialog shows

  static std::vector<std::wstring> listed(HWND dialog, int id) {
    const HWND list = GetDlgItem(dialog, id);
    std::vector<std::wstring> all;
    const auto count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
      std::wstring text(
          static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0)), L'\0');
      SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
      all.push_back(text);
    }
    return all;
  }
  static std::vector<std::wstring> columns(HWND dialog) { return listed(dialog, IDC_IMPORT_COLUMNS); }
  /// The titles of the preview and its records, each with bars between the texts.
  static std::vector<std::wstring> preview(HWND dialog) {
    const HWND list = GetDlgItem(dialog, IDC_IMPORT_PREVIEW);
    const int columnCount = Header_GetItemCount(listview::header(list));
    std::vector<std::wstring> lines(1);
    wchar_t text[300] = L"";
    for (int column = 0; column < columnCount; ++column) {
      LVCOLUMNW found{};
      found.mask = LVCF_TEXT;
      found.pszText = text;
      found.cchTextMax = ARRAYSIZE(text);
      SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&found));
      lines[0] += (column == 0 ? L"" : L"|") + std::wstring(text);
    }
    for (int row = 0; row < listview::itemCount(list); ++row) {
      lines.emplace_back();
      for (int column = 0; column < columnCount; ++column) {
        LVITEMW item{};
        item.iSubItem = column;
        text[0] = L'\0';
        item.pszText = text;
        item.cchTextMax = ARRAYSIZE(text);
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        lines.back() += (column == 0 ? L"" : L"|") + std::wstring(text);
      }
    }
    return lines;
  }
  static bool isChecked(HWND dialog, int id) { return checkbox::isChecked(GetDlgItem(dialog, id)); }

  // ---- What the user does

  static void notify(HWND dialog, int id, int code) {
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
  }
  /// Chooses an entry of a drop-down list.
  static void choose(HWND dialog, int id, const wchar_t* entry) {
    const LRESULT found = SendDlgItemMessageW(dialog, id, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                              reinterpret_cast<LPARAM>(entry));
    EXPECT_NE(found, CB_ERR) << std::filesystem::path(entry).string();
    SendDlgItemMessageW(dialog, id, CB_SETCURSEL, static_cast<WPARAM>(found), 0);
    notify(dialog, id, CBN_SELCHANGE);
  }
  static void chooseTable(HWND dialog, const wchar_t* name) {
    SendDlgItemMessageW(dialog, IDC_IMPORT_TABLE, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                        reinterpret_cast<LPARAM>(name));
    notify(dialog, IDC_IMPORT_TABLE, CBN_SELENDOK);
  }
  static void typeTable(HWND dialog, const wchar_t* name) {
    SetDlgItemTextW(dialog, IDC_IMPORT_TABLE, name);
    notify(dialog, IDC_IMPORT_TABLE, CBN_EDITCHANGE);
  }
  static void leaveTableFor(HWND dialog, int id) {
    SetFocus(GetDlgItem(dialog, IDC_IMPORT_TABLE));
    SetFocus(GetDlgItem(dialog, id));
    dispatchPosted();
  }

 private:
  testsupport::TempFolder folder_;
  std::filesystem::path path_ = folder_.file("exchange.cdb");
  std::optional<Database> database_;
  NameList tables_;
  std::unique_ptr<ImportFile> import_;
};
