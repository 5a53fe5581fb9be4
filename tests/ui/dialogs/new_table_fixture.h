#pragma once

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/table/new_field_ids.h"
#include "dialogs/table/new_table.h"
#include "dialogs/table/new_table_ids.h"
#include "tests/ui/support/dialog_fixture.h"
#include "views/shared/list_view.h"

/// Name and type of a row.
using TableRow = std::pair<std::wstring, std::wstring>;

class NewTableTest : public DialogTest {
 protected:
  NewTableTest() {
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
  }

  /// Runs the dialog; `inTable` is done once it stands. New Field dialogs that it opens are answered
  /// with what `nextField` names, and cancelled when it names nothing.
  INT_PTR run(const std::function<void(HWND dialog)>& inTable) {
    DialogScript script([&](HWND dialog) {
      if (textOf(dialog) == L"New Field") {
        answerField(dialog);
      } else {
        inTable(dialog);
      }
    });
    return table_.run(frame());
  }

  void add(HWND dialog, const wchar_t* name, int type) {
    nextName_ = name;
    nextType_ = type;
    press(dialog, IDC_NEW_TABLE_ADD);
  }
  /// Fields a, b and so on.
  void addLetters(HWND dialog, int count) {
    for (int i = 0; i < count; ++i) add(dialog, std::wstring(1, static_cast<wchar_t>(L'a' + i)).c_str(), i);
  }
  static void setName(HWND dialog, const std::wstring& name) {
    SetDlgItemTextW(dialog, IDC_NEW_TABLE_NAME, name.c_str());
  }
  /// Confirms a design of one field with that name; it is to be refused so.
  void expectRefused(const std::wstring& name, const std::wstring& reason) {
    EXPECT_EQ(run([&](HWND dialog) {
                addLetters(dialog, 1);
                setName(dialog, name);
                SetFocus(list(dialog));
                press(dialog, IDOK);
                EXPECT_THAT(takeBoxes(), testing::ElementsAre(message(dialog, reason)));
                EXPECT_EQ(textOf(dialog, IDC_NEW_TABLE_NAME), name);
                EXPECT_THAT(names(dialog), testing::ElementsAre(L"a"));
                EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_TABLE_NAME));
                press(dialog, IDCANCEL);
              }),
              IDCANCEL);
    EXPECT_TRUE(table_.name.isEmpty());
    EXPECT_TRUE(table_.columns.isEmpty());
  }
  void expectTaken(const std::wstring& name) {
    EXPECT_EQ(run([&](HWND dialog) {
                if (list(dialog) && listview::itemCount(list(dialog)) == 0) addLetters(dialog, 1);
                setName(dialog, name);
                press(dialog, IDOK);
                EXPECT_THAT(takeBoxes(), testing::IsEmpty());
              }),
              IDOK);
    EXPECT_EQ(table_.name.text(), name);
  }

  static HWND list(HWND dialog) { return GetDlgItem(dialog, IDC_NEW_TABLE_FIELDS); }
  static void select(HWND dialog, int row) {
    listview::setItemState(list(dialog), row, LVIS_SELECTED, LVIS_SELECTED);
  }
  static int selected(HWND dialog) {
    return listview::nextItem(list(dialog), listview::kFirstOfAll, LVNI_SELECTED);
  }
  static std::wstring cell(HWND dialog, int row, int column) {
    std::array<wchar_t, 512> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(list(dialog), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text.data();
  }
  static std::vector<TableRow> rows(HWND dialog) {
    std::vector<TableRow> all;
    for (int row = 0; row < listview::itemCount(list(dialog)); ++row) {
      all.emplace_back(cell(dialog, row, 0), cell(dialog, row, 1));
    }
    return all;
  }
  static std::vector<std::wstring> names(HWND dialog) {
    std::vector<std::wstring> all;
    for (const TableRow& row : rows(dialog)) all.push_back(row.first);
    return all;
  }

  NameList tables_;
  NewTableDialog table_{tables_};

 private:
  void answerField(HWND dialog) {
    if (nextName_.empty()) {
      press(dialog, IDCANCEL);
      return;
    }
    SetDlgItemTextW(dialog, IDC_NEW_FIELD_NAME, nextName_.c_str());
    SendDlgItemMessageW(dialog, IDC_NEW_FIELD_TYPE, CB_SETCURSEL, static_cast<WPARAM>(nextType_), 0);
    press(dialog, IDOK);
  }

  std::wstring nextName_;
  int nextType_ = 0;
};
