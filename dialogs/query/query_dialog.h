#pragma once

#include <windows.h>

#include <functional>

#include "base/name_list.h"
#include "base/string.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/input_panel_hold.h"
#include "views/dialog/modal_dialog.h"

/// What the Query dialog needs of the program. All of it is set, and lasts as long as the dialog runs.
struct QueryDialogHost {
  /// The tables of the open database.
  const NameList& tableNames;
  /// Replaces `names`, which comes empty, by the field names of a SELECT; leaves it when that does not open.
  std::function<void(const String& sql, NameList& names)> listFieldNames;
  /// Whether a statement opens as a recordset; sets `reason`, which comes empty, where it knows why not.
  std::function<bool(const String& sql, String& reason)> returnsRecords;
  /// Shows a page of the help and does not wait for it.
  std::function<void(const wchar_t* topic)> showHelp;
};

/// The dialog in which a saved query is written: its name, its SQL, and lists of the tables and fields to
/// put into that. It stores nothing.
class QueryDialog final : private ModalDialog {
 public:
  static constexpr wchar_t kHelpTopic[] = L"\\Windows\\file:Quivane.htm#Queries";

  explicit QueryDialog(QueryDialogHost host);

  /// Runs the dialog over `owner`: IDOK or IDCANCEL, the latter also when it can't be made. After IDOK the
  /// name is not empty, and the SQL begins with SELECT and returns records. After IDCANCEL they are not to be
  /// used.
  int run(HWND owner);

  // In and out: what the dialog begins with, a new query unless set otherwise, and what the user confirmed.
  // NOLINTBEGIN(misc-non-private-member-variables-in-classes)
  String name;
  String sql = L"SELECT * FROM";
  // NOLINTEND(misc-non-private-member-variables-in-classes)

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void settingsChanged() override { layOutSql(); }
  void sized() override;
  void showName();
  void showSql();
  String writtenName() const;
  String writtenSql() const;
  void layOutSql();
  void fillFields();
  String selectedTable() const;
  void insertTable();
  void insertField();
  void check();
  void help();
  void confirm();
  void cancel();

  void insert(const wchar_t* text) const;
  bool returnsRecords(const String& text) const;
  void leave(int result);

  QueryDialogHost host_;
  NameList fieldNames_;  // of the selected table
  InputPanelHold panel_;
  DialogGrowth growth_;
  bool isNameShown_ = true;  // as it is; else it can't be edited
  bool isSqlShown_ = true;
  bool hasOwnBreaks_ = false;  // the SQL has itself what soft line ends are made of
};
